// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Date fields: typed text is a valid date, "not filled", or refused; every filled date the
// screen shows reads back as the very same date.

#include "fuzzsupport.h"

#include <QDate>

using namespace VandrelControl;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString typed = Fuzz::text(data, size);
    if (const auto value = Parse::date(typed)) {
        Fuzz::requireTypeable(FieldKind::Date, typed);
        Fuzz::require(value->isNull() || value->isValid(), "parsed date is valid or empty", typed);
        Fuzz::require(!value->isNull() || typed.trimmed().isEmpty(), "only empty text is no date", typed);
        const QString shown = Format::date(*value);
        const auto again = Parse::date(shown);
        Fuzz::require(again.has_value(), "shown date is readable", typed + " -> " + shown);
        if (value->year() > 1900)
            Fuzz::require(*again == *value, "date round trip", typed + " -> " + shown);
        else
            Fuzz::require(again->isNull(), "an unfilled date shows empty", typed + " -> " + shown);
    }

    // Every day a four-digit year can hold (the fields take "yyyy"), from 01-01-1901.
    if (size >= 4) {
        quint32 raw = 0;
        std::memcpy(&raw, data, sizeof raw);
        const qint64 first = QDate(1901, 1, 1).toJulianDay();
        const qint64 last = QDate(9999, 12, 31).toJulianDay();
        const QDate day = QDate::fromJulianDay(first + qint64(raw % quint32(last - first + 1)));
        const QString shown = Format::date(day);
        const auto back = Parse::date(shown);
        Fuzz::require(back.has_value() && *back == day, "Format::date round trip", shown);
        const QString compact = day.toString(QStringLiteral("ddMMyyyy"));
        const auto fromCompact = Parse::date(compact);
        Fuzz::require(fromCompact.has_value() && *fromCompact == day, "ddMMyyyy reads", compact);
    }
    return 0;
}
