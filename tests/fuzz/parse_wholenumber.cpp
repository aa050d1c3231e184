// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Whole-number fields (ages, years): typed text reads as a whole number or is refused, and the
// "#0" text of a number reads back as that number rounded.

#include "fuzzsupport.h"

#include <cmath>

using namespace VandrelControl;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString typed = Fuzz::text(data, size);
    if (const auto value = Parse::wholeNumber(typed)) {
        Fuzz::requireTypeable(FieldKind::WholeNumber, typed);
        // Shown numbers go through a double; beyond 2^53 the last digits are not kept.
        if (*value > -9007199254740992LL && *value < 9007199254740992LL) {
            const QString shown = Format::whole(double(*value));
            const auto again = Parse::wholeNumber(shown);
            Fuzz::require(again.has_value() && *again == *value, "whole number round trip",
                          typed + " -> " + shown);
        }
    }

    double x = 0;
    if (Fuzz::doubleFrom(data, size, x) && std::isfinite(x) && std::fabs(x) < 4503599627370496.0) {
        const QString shown = Format::whole(x);
        const auto back = Parse::wholeNumber(shown);
        Fuzz::require(back.has_value(), "Format::whole is readable", shown);
        Fuzz::require(double(*back) == std::round(x), "whole round trip",
                      QString::number(x, 'g', 17) + " -> " + shown);
        // The grouped amount text of a whole number reads as the same whole number.
        const auto grouped = Parse::wholeNumber(Format::amount(x));
        Fuzz::require(grouped.has_value() && *grouped == *back, "grouped whole number",
                      Format::amount(x));
    }
    return 0;
}
