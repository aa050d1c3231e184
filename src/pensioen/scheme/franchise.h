// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The rules that keep salary, franchise, basis and accrual computed. Pure functions: the panel
// reads the host, calls these and writes the results back, so tests can call them without widgets.

#include <QList>
#include <QString>

#include <array>
#include <optional>

namespace VandrelApplication {
class Parameters;
}

namespace VandrelPensioen {

// The four franchise amounts of the host's parameters.
struct FranchiseBedragen
{
    double EindloonA = 0;   // final pay, first category group
    double EindloonB = 0;   // final pay, second category group
    double A = 0;           // every other scheme type, first group
    double B = 0;           // every other scheme type, second group

    static FranchiseBedragen from(const VandrelApplication::Parameters &parameters);
};

// Category codes of the first group. 3 and 5 are deliberately outside it.
inline constexpr std::array<int, 5> EersteCategorieGroep{1, 2, 4, 6, 7};

bool isEersteCategorieGroep(int categorie);

// The franchise for a scheme type and the participant's category code. Only final pay (1) has its
// own pair; every other value shares the second pair.
double calcFranchise(qint16 soortRegeling, int categorie, const FranchiseBedragen &bedragen);

// One employment as the salary rule sees it.
struct DienstverbandSalaris
{
    QString key;
    double salaris = 0;
};

// The salary of the employment with exactly this key; when several match the last one wins, when
// none matches there is no salary (the scheme keeps its own).
std::optional<double> salarisVanDienstverband(const QString &key,
                                              const QList<DienstverbandSalaris> &dienstverbanden);

// Salary minus franchise, never below 0.
double berekenGrondslag(double salaris, double franchise);

// Accrual amount kept computed (bit 64): every cent kept.
double berekenAangroei(float opbouwPercentage, double grondslag);

// Accrual amount after the user entered a percentage: cut off to whole euros.
double berekenAangroeiAfgekapt(float opbouwPercentage, double grondslag);

} // namespace VandrelPensioen
