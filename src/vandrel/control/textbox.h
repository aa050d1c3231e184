// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats.h"
#include "vandrelcontrol_export.h"

#include <QDate>
#include <QLineEdit>

#include <memory>

namespace VandrelControl {

/// The suite's validating text box. Leaving the field as a user (Tab, Shift+Tab, a click elsewhere,
/// Enter) emits Validate(Cancel); a handler that sets Cancel keeps the focus in the field. Text
/// that cannot be read as the field's kind never reaches a handler: the user gets an
/// "Ongeldige invoer" message and stays in the field. Values set by code never emit Validate.
class VANDRELCONTROL_EXPORT TextBox : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(VandrelControl::FieldKind kind READ kind WRITE setKind)
    Q_PROPERTY(int decimals READ decimals WRITE setDecimals)
    Q_PROPERTY(bool causesValidation READ causesValidation WRITE setCausesValidation)

public:
    explicit TextBox(QWidget *parent = nullptr);  ///< An empty Text field that checks on leaving.
    ~TextBox() override;

    FieldKind kind() const;         ///< What the field holds; decides how text is read and shown.
    void setKind(FieldKind kind);   ///< Sets kind() and shows the value again in that kind's format.
    /// Decimals shown for Percentage and Factor ("#,##0.000" is 3, the default); Amount shows 0.
    int decimals() const;
    void setDecimals(int decimals);  ///< Sets decimals().
    /// While false, leaving the field emits nothing and checks nothing.
    bool causesValidation() const;
    void setCausesValidation(bool on);  ///< Sets causesValidation().

    /// Numeric value: what code set last (exactly, not the rounded text) until the user edits,
    /// then the text read as the field's kind. Empty text is 0.
    double value() const;
    void setValue(double value);  ///< Shows value in the field's format; emits nothing.
    /// Date value; a null QDate when not filled.
    QDate date() const;
    void setDate(const QDate &value);  ///< Shows value as dd-MM-yyyy (empty when not filled); emits nothing.
    /// Whether the text is empty (a cleared number still reads as 0 through value()).
    bool isEmpty() const;
    /// Whether the current text can be read as the field's kind.
    bool isReadable() const;

Q_SIGNALS:
    /// The user leaves the field with readable text; set Cancel to keep the focus in it.
    void Validate(bool &Cancel);

protected:
    void keyPressEvent(QKeyEvent *event) override;      ///< Blocks characters the kind cannot hold; Enter leaves the field.
    void focusOutEvent(QFocusEvent *event) override;    ///< Leaving the field: reads, checks, emits Validate().
    void focusInEvent(QFocusEvent *event) override;     ///< Selects the text for overtyping.
    void changeEvent(QEvent *event) override;           ///< Follows enabled and read-only changes.
    bool event(QEvent *event) override;                 ///< Sees Tab and Shift+Tab before the focus moves.

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelControl

Q_DECLARE_METATYPE(VandrelControl::FieldKind)
