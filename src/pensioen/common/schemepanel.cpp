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
