#pragma once

#include "vandrelcontrol_export.h"

#include <QPushButton>

namespace VandrelControl {

// The suite's push button.
class VANDRELCONTROL_EXPORT ActionButton : public QPushButton
{
    Q_OBJECT

public:
    explicit ActionButton(QWidget *parent = nullptr);
    explicit ActionButton(const QString &text, QWidget *parent = nullptr);
};

} // namespace VandrelControl
