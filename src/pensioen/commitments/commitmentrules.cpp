// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "commitmentrules.h"

#include "formats.h"

#include <QString>

namespace VandrelPensioen::CommitmentRules {

double amountFromPercentage(float percentage, double opAmount)
{
    return VandrelControl::Format::roundHalfEven(double(percentage) * opAmount / 100.0);
}

float percentageFromAmount(double amount, double opAmount)
{
    if (opAmount == 0.0)
        return 0.0f;
    return float(amount * 100.0 / opAmount);
}

YearsMonths splitMonths(qint32 months)
{
    // Years are cut off (floor), so the months part is never negative.
    qint32 years = months / 12;
    qint32 rest = months % 12;
    if (rest < 0) {
        rest += 12;
        --years;
    }
    return {years, rest};
}

qint32 joinMonths(qint32 years, qint32 months)
{
    return years * 12 + months;
}

QDate dateOf65(const QDate &birthDate)
{
    if (!birthDate.isValid())
        return {};
    const QDate at65 = birthDate.addYears(65);
    // Built as text "01-MM-yyyy" and read back, so it is exactly the date a user would type.
    const QString text = QStringLiteral("01-%1-%2")
                             .arg(at65.month(), 2, 10, QLatin1Char('0'))
                             .arg(at65.year(), 4, 10, QLatin1Char('0'));
    return VandrelControl::Parse::date(text).value_or(QDate());
}

QDate aowDate(const QDate &birthDate, qint16 aowAgeYears)
{
    if (!birthDate.isValid())
        return {};
    return birthDate.addYears(aowAgeYears);
}

} // namespace VandrelPensioen::CommitmentRules
