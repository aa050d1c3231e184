// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vandrelcontrol_export.h"

#include <QLabel>

namespace VandrelControl {

/// An information icon that shows its text as a balloon when the user points at or clicks it.
class VANDRELCONTROL_EXPORT Hint : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(QString hintText READ hintText WRITE setHintText)

public:
    explicit Hint(QWidget *parent = nullptr);  ///< An information icon without text.

    QString hintText() const;               ///< The text the balloon shows.
    void setHintText(const QString &text);  ///< Sets hintText() (also the tool tip).

protected:
    void mousePressEvent(QMouseEvent *event) override;    ///< A click shows the balloon.
    void mouseReleaseEvent(QMouseEvent *event) override;  ///< Ends the click.

private:
    QString m_text;
};

} // namespace VandrelControl
