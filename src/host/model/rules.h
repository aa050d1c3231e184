// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The host's own date and age rules, as plain functions so they can be tested without a case.

#include "fiscalfigures.h"

#include <QDate>

namespace Zarnoveld::Rules {

// Whole months completed from birth to date; 0 when either date is not filled.
int ageOnDate(const QDate &birth, const QDate &date);
// The start date that belongs to an age in months (see rules.cpp); null when it cannot be derived.
QDate startDateForAge(const QDate &birth, int months);
// Statutory AOW age in whole years for a birth date.
int aowLeeftijd(const QDate &birth);
// A scheme's age-65 date: the first day of the month in which the participant turns 65; null when
// the birth date is not filled. The host keeps every scheme's Dt_65 equal to it.
QDate dateOf65(const QDate &birth);
// The date the participant's own income ends.
QDate eindeInkomen(const QDate &birth);

// The synchronisation bits of a case that keep a scheme field computed.
inline constexpr int kSyncFranchise = 16;
inline constexpr int kSyncGrondslag = 32;
inline constexpr int kSyncAangroei = 64;

// Category codes 1, 2, 4, 6 and 7 take the first franchise amount; every other code the second.
bool isFirstFranchiseGroup(int categorie);
// The franchise a scheme computes from the case's figures: final pay (1) has its own pair, every
// other type shares the second pair.
double franchiseFor(int soortRegeling, int categorie, const FiscalFigures::Values &figures);
// Salary minus franchise, never below 0.
double grondslagFor(double salaris, double franchise);
// The computed accrual amount: the single-precision percentage widened, every cent kept.
double aangroeiFor(float opbouwPercentage, double grondslag);

} // namespace Zarnoveld::Rules
