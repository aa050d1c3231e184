// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Amount fields: whatever is typed either reads as a finite number or is refused, and every
// amount the screen shows reads back as the same whole amount.

#include "fuzzsupport.h"

#include <cmath>

using namespace VandrelControl;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString typed = Fuzz::text(data, size);
    if (const auto value = Parse::amount(typed)) {
        Fuzz::require(std::isfinite(*value), "parsed amount is finite", typed);
        Fuzz::requireTypeable(FieldKind::Amount, typed);
        const QString shown = Format::amount(*value);
        const auto again = Parse::amount(shown);
        Fuzz::require(again.has_value(), "shown amount is readable", typed + " -> " + shown);
        Fuzz::require(Format::amount(*again) == shown, "showing is stable", typed + " -> " + shown);
    }

    double x = 0;
    // Beyond 2^52 a double has no fraction left to round; the text is then exact digits.
    if (Fuzz::doubleFrom(data, size, x) && std::isfinite(x)) {
        const QString shown = Format::amount(x);
        const auto back = Parse::amount(shown);
        Fuzz::require(back.has_value(), "Format::amount is readable", shown);
        if (std::fabs(x) < 4503599627370496.0)
            Fuzz::require(*back == std::round(x), "amount round trip to whole units",
                          QString::number(x, 'g', 17) + " -> " + shown);
        Fuzz::require(Format::amount(*back) == shown, "amount text stable", shown);
    }
    return 0;
}
