// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "schemevalidation.h"

#include "formats.h"

#include <array>

namespace VandrelPensioen {

namespace {

const QString kOngeldig = QStringLiteral("Ongeldige invoer");
const QString kVerplicht = QStringLiteral("Invoer verplicht");

SchemeCheckFailure fail(qint16 nr, const QString &message, const QString &title = kOngeldig)
{
    return {nr, title, message};
}

// The rates' message says "vanaf 0" while 0 itself is refused; the range is (0, 20].
bool buitenRenteBereik(double rente)
{
    return rente <= 0 || rente > 20;
}

std::optional<SchemeCheckFailure> runCheck(qint16 nr, const SchemeFields &f, const QDateTime &now)
{
    switch (nr) {
    case SchemeCheck::Eindloon:
        if (f.regelingVisible && f.eindloonEnabled && f.eindloon <= 0)
            return fail(nr, QStringLiteral("Vul een positief percentage in."));
        break;
    case SchemeCheck::Grondslag:
        if (f.grondslagFrameVisible && f.grondslagVisible && f.grondslag > f.salaris)
            return fail(nr, QStringLiteral(
                "Pensioengrondslag kan niet groter dan pensioengevend salaris zijn."));
        break;
    case SchemeCheck::Middelloon:
        if (f.regelingVisible && f.middelloonEnabled && f.middelloon <= 0)
            return fail(nr, QStringLiteral("Vul een positief percentage in."));
        break;
    case SchemeCheck::Overzicht:
        // The field holds a day without a time: it stands for that day's start, so today passes.
        if (f.grondslagFrameVisible && f.overzicht.isValid()
            && f.overzicht.startOfDay() >= now)
            return fail(nr, QStringLiteral("Datum pensioenoverzicht moet in het verleden liggen."));
        break;
    case SchemeCheck::Aangroei:
        if (f.grondslagFrameVisible && !f.beschikbarePremie) {
            // The field of the type not chosen shows 0, so the sum is the scheme's percentage.
            const double p = f.eindloon + f.middelloon;
            if (f.aangroei > aangroeiLimiet(p, f.grondslag))
                return fail(nr, aangroeiMelding(p, f.grondslag));
        }
        break;
    case SchemeCheck::Doelvermogen:
        if (f.grondslagFrameVisible && f.beschikbarePremie && f.doelvermogen == 0)
            return fail(nr, QStringLiteral("Doelvermogen niet ingevuld."), kVerplicht);
        break;
    case SchemeCheck::PcOpbouw:
        if (f.grondslagFrameVisible && f.beschikbarePremie && buitenRenteBereik(f.pcOpbouw))
            return fail(nr, QStringLiteral(
                "Rekenrente opbouwfase doelvermogen vanaf 0 t/m 20% invullen."));
        break;
    case SchemeCheck::PcUitkering:
        if (f.grondslagFrameVisible && f.beschikbarePremie && buitenRenteBereik(f.pcUitkering))
            return fail(nr, QStringLiteral(
                "Rekenrente uitkeringsfase doelvermogen vanaf 0 t/m 20% invullen."));
        break;
    default:
        break;
    }
    return std::nullopt;
}

} // namespace

std::optional<SchemeCheckFailure> checkSchemeFields(const SchemeFields &fields, qint32 controleNr,
                                                    const QDateTime &now)
{
    static constexpr std::array<qint16, 8> order{
        SchemeCheck::Eindloon,   SchemeCheck::Grondslag,    SchemeCheck::Middelloon,
        SchemeCheck::Overzicht,  SchemeCheck::Aangroei,     SchemeCheck::Doelvermogen,
        SchemeCheck::PcOpbouw,   SchemeCheck::PcUitkering};
    for (const qint16 nr : order) {
        if (controleNr != 0 && controleNr != nr)
            continue;
        if (auto failure = runCheck(nr, fields, now))
            return failure;
    }
    return std::nullopt;
}

double aangroeiLimiet(double percentage, double grondslag)
{
    return VandrelControl::Format::roundHalfEven(grondslag * percentage / 100.0);
}

double aangroeiGetoondMaximum(double percentage, double grondslag)
{
    // Cut off rather than rounded: the text may name one euro less than the tested limit, which
    // is how advisers have always seen it.
    return VandrelControl::Format::cutOff(grondslag * percentage / 100.0);
}

QString aangroeiMelding(double percentage, double grondslag)
{
    using namespace VandrelControl;
    return QStringLiteral("Pensioenaangroei (factor A) mag maximaal het opbouwpercentage (")
         + Format::decimal(percentage, 3)
         + QStringLiteral("%) vermenigvuldigd met de Pensioengrondslag (€ ")
         + Format::amount(grondslag)
         + QStringLiteral(") zijn (€ ")
         + Format::amount(aangroeiGetoondMaximum(percentage, grondslag))
         + QStringLiteral(").");
}

} // namespace VandrelPensioen
