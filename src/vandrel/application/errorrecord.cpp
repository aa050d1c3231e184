// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "errorrecord.h"

#include <QStringList>

namespace VandrelApplication {

void ErrorRecord::clear()
{
    *this = ErrorRecord();
}

QString ErrorRecord::toText() const
{
    // Field labels stay Dutch: hosts show this block to the adviser as is.
    QStringList lines;
    lines << Message;
    const auto add = [&lines](const char *label, const QString &value) {
        if (!value.isEmpty())
            lines << QStringLiteral("%1: %2").arg(QLatin1String(label), value);
    };
    add("Programma", Title);
    add("Onderdeel", Component);
    add("Product", Product);
    add("Onderwerp", Subject);
    add("Procedure", Procedure);
    add("Foutnummer", Number);
    add("Omschrijving", Description);
    add("Bron", Source);
    if (lines.first().isEmpty())
        lines.removeFirst();
    return lines.join(QLatin1Char('\n'));
}

} // namespace VandrelApplication
