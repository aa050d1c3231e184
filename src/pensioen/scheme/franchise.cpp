// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "franchise.h"

#include "formats.h"
#include "hostmodel.h"
#include "platformroutines.h"

namespace VandrelPensioen {

FranchiseBedragen FranchiseBedragen::from(const VandrelApplication::Parameters &parameters)
{
    return {parameters.FranchiseEindloonA(), parameters.FranchiseEindloonB(),
            parameters.FranchiseA(), parameters.FranchiseB()};
}

bool isEersteCategorieGroep(int categorie)
{
    return IsNameInList(categorie, EersteCategorieGroep);
}

double calcFranchise(qint16 soortRegeling, int categorie, const FranchiseBedragen &bedragen)
{
    const bool eerste = isEersteCategorieGroep(categorie);
    if (soortRegeling == VandrelApplication::SoortRegeling::Eindloon)
        return eerste ? bedragen.EindloonA : bedragen.EindloonB;
    return eerste ? bedragen.A : bedragen.B;
}

std::optional<double> salarisVanDienstverband(const QString &key,
                                              const QList<DienstverbandSalaris> &dienstverbanden)
{
    std::optional<double> salaris;
    // No early exit: with duplicate keys the host's last employment is the one that counts.
    for (const auto &dienstverband : dienstverbanden)
        if (dienstverband.key == key)
            salaris = dienstverband.salaris;
    return salaris;
}

double berekenGrondslag(double salaris, double franchise)
{
    return MaxOf(0.0, salaris - franchise);
}

double berekenAangroei(float opbouwPercentage, double grondslag)
{
    // The single-precision percentage is widened, not the basis narrowed: 1.875 x 33333 keeps
    // 624.99375.
    return double(opbouwPercentage) * grondslag / 100.0;
}

double berekenAangroeiAfgekapt(float opbouwPercentage, double grondslag)
{
    return VandrelControl::Format::cutOff(berekenAangroei(opbouwPercentage, grondslag));
}

} // namespace VandrelPensioen
