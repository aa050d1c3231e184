// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Percentage and factor fields: typed text reads as a finite number or is refused; a shown
// percentage (2 to 4 decimals as the forms use them) reads back as the value it shows.

#include "fuzzsupport.h"

#include <cmath>

using namespace VandrelControl;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString typed = Fuzz::text(data, size);
    if (const auto value = Parse::percentage(typed)) {
        Fuzz::require(std::isfinite(*value), "parsed percentage is finite", typed);
        Fuzz::requireTypeable(FieldKind::Percentage, typed);
        const QString shown = Format::decimal(*value, 3);
        const auto again = Parse::percentage(shown);
        Fuzz::require(again.has_value(), "shown percentage is readable", typed + " -> " + shown);
        Fuzz::require(Format::decimal(*again, 3) == shown, "showing is stable", typed + " -> " + shown);
    }

    double x = 0;
    if (Fuzz::doubleFrom(data, size, x) && std::isfinite(x)) {
        // Zero decimals is never used for a percentage: "1.234" would read as 1,234 by design.
        const int decimals = size > sizeof(double) ? 1 + data[sizeof(double)] % 4 : 3;
        const QString shown = Format::decimal(x, decimals);
        const auto back = Parse::percentage(shown);
        Fuzz::require(back.has_value(), "Format::decimal is readable as a percentage", shown);
        Fuzz::require(Format::decimal(*back, decimals) == shown, "percentage text stable", shown);
        // Half a unit of the last shown decimal, plus what reading the text back as a double may
        // be off by at this size: 2261634,0625 shown as "2.261.634,063" reads back a hair more
        // than 0,0005 away.
        if (std::fabs(x) < 1e9)
            Fuzz::require(std::fabs(*back - x) <= 0.5 * std::pow(10.0, -decimals) + std::fabs(x) * 1e-15,
                          "percentage round trip within the shown precision",
                          QString::number(x, 'g', 17) + " -> " + shown);
    }
    return 0;
}
