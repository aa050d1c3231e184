#pragma once

#include "formats.h"
#include "vandrelcontrol_export.h"

#include <QDate>
#include <QLineEdit>

#include <memory>

namespace VandrelControl {

// The suite's validating text box. Leaving the field as a user (Tab, Shift+Tab, a click elsewhere,
// Enter) emits Validate(Cancel); a handler that sets Cancel keeps the focus in the field. Text
// that cannot be read as the field's kind never reaches a handler: the user gets an
// "Ongeldige invoer" message and stays in the field. Values set by code never emit Validate.
class VANDRELCONTROL_EXPORT TextBox : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(VandrelControl::FieldKind kind READ kind WRITE setKind)
    Q_PROPERTY(int decimals READ decimals WRITE setDecimals)
    Q_PROPERTY(bool causesValidation READ causesValidation WRITE setCausesValidation)

public:
    explicit TextBox(QWidget *parent = nullptr);
    ~TextBox() override;

    FieldKind kind() const;
    void setKind(FieldKind kind);
    // Decimals shown for Percentage and Factor ("#,##0.000" is 3, the default); Amount shows 0.
    int decimals() const;
    void setDecimals(int decimals);
    // While false, leaving the field emits nothing and checks nothing.
    bool causesValidation() const;
    void setCausesValidation(bool on);

    // Numeric value: what code set last (exactly, not the rounded text) until the user edits,
    // then the text read as the field's kind. Empty text is 0.
    double value() const;
    void setValue(double value);
    // Date value; a null QDate when not filled.
    QDate date() const;
    void setDate(const QDate &value);
    // Whether the text is empty (a cleared number still reads as 0 through value()).
    bool isEmpty() const;
    // Whether the current text can be read as the field's kind.
    bool isReadable() const;

Q_SIGNALS:
    void Validate(bool &Cancel);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace VandrelControl

Q_DECLARE_METATYPE(VandrelControl::FieldKind)
