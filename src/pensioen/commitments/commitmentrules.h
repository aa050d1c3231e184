// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The arithmetic of the commitments panel, free of widgets and host objects so that it can be
// checked on its own.

#include <QDate>
#include <QtGlobal>

namespace VandrelPensioen::CommitmentRules {

// Amount that follows the OP: percentage x OP / 100, rounded to whole units, halves to even.
double amountFromPercentage(float percentage, double opAmount);
// Percentage of the OP, not rounded; 0 when there is no OP to relate it to.
float percentageFromAmount(double amount, double opAmount);

// An age held as whole months, shown as years and months.
struct YearsMonths
{
    qint32 years = 0;
    qint32 months = 0;
};
YearsMonths splitMonths(qint32 months);
qint32 joinMonths(qint32 years, qint32 months);

// First day of the month in which the person turns 65.
QDate dateOf65(const QDate &birthDate);
// Birth date plus the AOW age in whole years.
QDate aowDate(const QDate &birthDate, qint16 aowAgeYears);

// Default percentages when a commitment is ticked.
inline constexpr float DefaultPcPartnerPensioen = 70.0f;
inline constexpr float DefaultPcWezenPensioen = 14.0f;

// Ranges of the checks.
inline constexpr qint32 MinOpYears = 50;
inline constexpr qint32 MaxOpYears = 99;
inline constexpr qint32 MinPrePMonths = 40 * 12;
inline constexpr qint32 MaxPrePMonths = 99 * 12;
inline constexpr qint32 MinPrePYearsOnDate = 40;
inline constexpr qint32 MaxPrePYearsOnDate = 80;
inline constexpr qint32 MinEindWzp = 10;
inline constexpr qint32 MaxEindWzp = 30;
inline constexpr double MaxPcPartnerPensioen = 1000.0;
inline constexpr double MaxPcWezenPensioen = 100.0;
inline constexpr double Regel85Factor = 0.85;

} // namespace VandrelPensioen::CommitmentRules
