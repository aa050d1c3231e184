// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Small helpers shared by the fuzz targets: a failed property aborts with a readable line, so
// libFuzzer keeps the input as a crash and the log says which property broke.

#include "formats.h"

#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace Fuzz {

[[noreturn]] inline void fail(const char *property, const QString &detail)
{
    std::fprintf(stderr, "property failed: %s\n  %s\n", property, detail.toUtf8().constData());
    std::abort();
}

inline void require(bool holds, const char *property, const QString &detail)
{
    if (!holds)
        fail(property, detail);
}

inline QString text(const uint8_t *data, size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
}

// A parser that accepts a text must accept every character of it as typed, or the user could
// never type that value into the field.
inline void requireTypeable(VandrelControl::FieldKind kind, const QString &accepted)
{
    for (QChar c : accepted.trimmed())
        require(VandrelControl::Parse::allowedCharacter(kind, c), "accepted text can be typed",
                accepted);
}

// The first eight bytes as a double, for the Format -> Parse direction.
inline bool doubleFrom(const uint8_t *data, size_t size, double &out)
{
    if (size < sizeof(double))
        return false;
    std::memcpy(&out, data, sizeof(double));
    return true;
}

} // namespace Fuzz
