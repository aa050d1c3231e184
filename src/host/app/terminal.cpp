// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "terminal.h"

#include <QList>

namespace Zarnoveld::Terminal {

namespace {

bool reorders(char32_t c)
{
    return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E)
        || (c >= 0x2066 && c <= 0x2069);
}

bool control(char32_t c)
{
    return c < 0x20 || (c >= 0x7F && c <= 0x9F);
}

} // namespace

QString escaped(const QString &text)
{
    QString out;
    out.reserve(text.size());
    const auto codePoints = text.toUcs4();
    for (const uint point : codePoints) {
        const char32_t c = point;
        if (c == U'\\') {
            out += QStringLiteral("\\\\");
        } else if (control(c) || reorders(c) || (c >= 0xD800 && c <= 0xDFFF)) {
            out += QStringLiteral("\\u{") + QString::number(static_cast<uint>(c), 16).toUpper().rightJustified(4, QLatin1Char('0'))
                + QLatin1Char('}');
        } else {
            out += QString::fromUcs4(&c, 1);
        }
    }
    return out;
}

} // namespace Zarnoveld::Terminal
