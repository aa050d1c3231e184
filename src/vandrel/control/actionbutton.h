// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vandrelcontrol_export.h"

#include <QPushButton>

namespace VandrelControl {

/// The suite's push button.
class VANDRELCONTROL_EXPORT ActionButton : public QPushButton
{
    Q_OBJECT
    /// False for buttons such as "Annuleren": moving the focus onto them does not check the field
    /// the user leaves.
    Q_PROPERTY(bool causesValidation READ causesValidation WRITE setCausesValidation)

public:
    explicit ActionButton(QWidget *parent = nullptr);  ///< A button without text.
    explicit ActionButton(const QString &text, QWidget *parent = nullptr);  ///< A button showing text.
    ~ActionButton() override;  ///< Destroys the button.

    bool causesValidation() const;      ///< Whether focusing the button checks the field being left.
    void setCausesValidation(bool on);  ///< Sets causesValidation().

private:
    bool m_causesValidation = true;
};

} // namespace VandrelControl
