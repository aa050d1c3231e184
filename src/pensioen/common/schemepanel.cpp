// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "schemepanel.h"

#include "platformroutines.h"

namespace VandrelPensioen {

QColor SchemePanel::BackColor() const
{
    return BackColorOf(this);
}

void SchemePanel::setBackColor(const QColor &colour)
{
    ApplyBackColor(this, colour);
}

} // namespace VandrelPensioen
