// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "dienstverbanditem.h"

#include "formats.h"
#include "hostmodel.h"

#include <QStringList>

namespace VandrelPensioen::DienstverbandItem {

QString description(const QString &werkgever, const QDate &begin, const QDate &einde,
                    double salaris, const QDate &meetellenTot)
{
    using VandrelApplication::isFilled;
    using namespace VandrelControl;

    // Employer first: that is what an adviser recognises an employment by; the period and salary
    // tell two jobs at the same employer apart. The counting date is the employment's own
    // "datum inkomen meetellen tot", the end of the period whose income counts for the pension;
    // when it is not filled the part is left out like every empty date.
    QStringList parts;
    if (!werkgever.trimmed().isEmpty())
        parts << werkgever.trimmed();
    QStringList dates;
    if (isFilled(begin))
        dates << Format::date(begin);
    if (isFilled(einde))
        dates << Format::date(einde);
    if (!dates.isEmpty())
        parts << dates.join(QStringLiteral(" - "));
    parts << QStringLiteral("€ ") + Format::amount(salaris);

    QString text = parts.join(QStringLiteral(", "));
    if (isFilled(meetellenTot))
        text += QStringLiteral(", meetellen tot ") + Format::date(meetellenTot);
    return text + QStringLiteral("  ");
}

QString paddedText(const QString &description, const QString &key)
{
    return description + QString(Padding, QLatin1Char(' ')) + key;
}

QString keyOf(const QString &paddedText)
{
    return paddedText.right(KeyLength);
}

QString visiblePart(const QString &paddedText)
{
    const qsizetype visible = qMax<qsizetype>(0, paddedText.size() - KeyLength - Padding);
    QString text = paddedText.left(visible);
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

} // namespace VandrelPensioen::DienstverbandItem
