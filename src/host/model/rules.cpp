// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "rules.h"

#include "hostmodel.h"

#include <algorithm>

namespace Zarnoveld::Rules {

using VandrelApplication::isFilled;

// A month counts once the day-of-month of the birth is reached. When the birth day does not exist
// in the target month (born on the 31st, date in a 30-day month or February) the month's last day
// counts as reaching it, otherwise a month-end birth would "miss" whole months. A date before the
// birth gives a negative age so that checks on it fail visibly instead of seeing 0.
int ageOnDate(const QDate &birth, const QDate &date)
{
    if (!isFilled(birth) || !isFilled(date))
        return 0;
    int months = (date.year() - birth.year()) * 12 + (date.month() - birth.month());
    const int birthDay = std::min(birth.day(), date.daysInMonth());
    if (months > 0 && date.day() < birthDay)
        --months;
    else if (months < 0 && date.day() > birthDay)
        ++months;
    return months;
}

// Pensions start on the first of a month: the date that belongs to an age is the day the age is
// reached, moved to the first day of the next month when that day is not already the 1st. Then
// ageOnDate(startDateForAge(b, m)) == m for every birth date, so the two fields of a commitment
// never drift apart when the user types one of them.
QDate startDateForAge(const QDate &birth, int months)
{
    if (!isFilled(birth) || months <= 0)
        return {};
    const QDate reached = birth.addMonths(months);
    if (reached.day() == 1 && birth.day() == 1)
        return reached;
    const QDate nextMonth = reached.addMonths(1);
    return QDate(nextMonth.year(), nextMonth.month(), 1);
}

// The statutory AOW age is a number of years and months (66 years 10 months for births in 1956,
// 67 years from births in 1957, 67 years 3 months announced for 2028). The interface asks whole
// years, so the statutory age is cut off to its years: 65 for births before 1948 (the old fixed
// age), 66 for 1948-1956 (66 up to 66 years 10 months), 67 from 1957 on. A birth date that is not
// filled gets the age that applies to everyone now of working age.
int aowLeeftijd(const QDate &birth)
{
    if (!isFilled(birth))
        return 67;
    if (birth.year() < 1948)
        return 65;
    if (birth.year() < 1957)
        return 66;
    return 67;
}

// A participant's own income is taken to end when the AOW starts: the day the AOW age in whole
// years is reached. Employments carry their own end dates; this is the fallback for the person.
QDate eindeInkomen(const QDate &birth)
{
    if (!isFilled(birth))
        return {};
    return birth.addYears(aowLeeftijd(birth));
}

// The same date the pension screen derives on binding a scheme, so that its write is a no-op. A
// birth on 29 February turns 65 in February too, so the month is the birth month either way.
QDate dateOf65(const QDate &birth)
{
    if (!isFilled(birth))
        return {};
    const QDate at65 = birth.addYears(65);
    return QDate(at65.year(), at65.month(), 1);
}

// The host does not link the pension screen (it loads it at run time), yet a case moved to another
// figure year must store the franchise the screen would compute, without the screen open. These
// are the screen's own rules for the computed franchise, basis and accrual; an end-to-end test
// shows a moved scheme on the screen and checks that nothing changes.
bool isFirstFranchiseGroup(int categorie)
{
    for (int code : {1, 2, 4, 6, 7})
        if (categorie == code)
            return true;
    return false;
}

double franchiseFor(int soortRegeling, int categorie, const FiscalFigures::Values &figures)
{
    const bool first = isFirstFranchiseGroup(categorie);
    if (soortRegeling == 1)
        return first ? figures.franchiseEindloonA : figures.franchiseEindloonB;
    return first ? figures.franchiseA : figures.franchiseB;
}

double grondslagFor(double salaris, double franchise)
{
    const double difference = salaris - franchise;
    return 0.0 > difference ? 0.0 : difference;   // the screen's MaxOf(0, difference)
}

double aangroeiFor(float opbouwPercentage, double grondslag)
{
    return double(opbouwPercentage) * grondslag / 100.0;
}

} // namespace Zarnoveld::Rules
