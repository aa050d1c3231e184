// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "actionbutton.h"

namespace VandrelControl {

ActionButton::ActionButton(QWidget *parent)
    : QPushButton(parent)
{
    // A button click must reach the field being left first, so that its check runs before the
    // button acts; hence the button takes the focus on click like any other control.
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(false);
}

ActionButton::ActionButton(const QString &text, QWidget *parent)
    : ActionButton(parent)
{
    setText(text);
}

ActionButton::~ActionButton() = default;

bool ActionButton::causesValidation() const
{
    return m_causesValidation;
}

void ActionButton::setCausesValidation(bool on)
{
    m_causesValidation = on;
}

} // namespace VandrelControl
