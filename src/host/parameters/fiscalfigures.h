// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Fiscal and statutory figures per year, each with its source. A case carries the figures of one
// year; this is where the program finds the figures of every year it knows.

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

#include <vector>

namespace Zarnoveld::FiscalFigures {

// The figures a case stores and the pension screen reads through its parameters object.
struct Values
{
    float defaultOpbouwEindloon = 0;
    float defaultOpbouwMiddelloon = 0;
    double franchiseEindloonA = 0;
    double franchiseEindloonB = 0;
    double franchiseA = 0;
    double franchiseB = 0;
    double maxAnwCompensation = 0;
};

// One figure as published (or derived), for the reader: name, amount, where it comes from.
struct Figure
{
    QString name;
    double value = 0;
    QString source;
    bool verified = false;
};

struct Year
{
    int year = 0;
    Values values;
    double aowJaarbedragSamenwonend = 0;
    double anwNabestaandenuitkeringJaar = 0;
    double maxPensioengevendLoon = 0;
    std::vector<Figure> figures;   // the figures of the file for this year, in file order
};

// Group B franchises: the statutory old-age benefit for a married person times the inbuilt factor.
inline constexpr double kFactorEindloon = 100.0 / 66.28;
inline constexpr double kFactorMiddelloon = 100.0 / 75.0;
inline constexpr double kAnwCompensationShare = 0.75;

// Files from before figures were kept per year carry no year. Their figures were labelled 2025,
// so that is the year they get unless their figures match another year exactly.
inline constexpr int kYearOfUnmarkedCases = 2025;

// The years with figures, ascending.
QList<int> years();
// The figures of a year; nullptr when the year is not known.
const Year *find(int year);
// The year whose figures a case made on `date` gets: that calendar year, or the nearest known
// year when the program has none for it.
int yearFor(const QDate &date);
// The known year whose figures equal `values` (to the cent); 0 when none does.
int matchingYear(const Values &values);
// One Dutch line per figure that differs between the two sets ("FranchiseA: 18.475,00 -> 19.172,00").
QStringList differences(const Values &from, const Values &to);
// The names of the seven stored figures, in the order of `asList`.
const QStringList &names();
std::vector<double> asList(const Values &values);

} // namespace Zarnoveld::FiscalFigures
