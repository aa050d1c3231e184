// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Moving a case to the fiscal figures of another year.

#include "hostapplication.h"
#include "hostapplication_p.h"

#include "rules.h"
#include "store.h"

#include <QLocale>

#include <cmath>

namespace Zarnoveld {

using namespace detail;
using VandrelApplication::HostError;
namespace Code = VandrelApplication::HostErrorCode;

int HostApplication::figureYear() const
{
    return d->core && d->core->dossier ? d->core->dossier->i(DossierF::Rekenjaar) : 0;
}

HostApplication::FigureYearMove HostApplication::moveToFigureYear(int year)
{
    CaseCore &core = *d->core;
    core.checkOpen();
    const FiscalFigures::Year *target = FiscalFigures::find(year);
    if (!target) {
        QStringList known;
        for (int y : FiscalFigures::years())
            known << QString::number(y);
        throw HostError(Code::OutOfRange,
                        QStringLiteral("Voor %1 zijn geen fiscale cijfers bekend. Kies een van deze jaren: %2.")
                            .arg(year)
                            .arg(known.join(QStringLiteral(", "))),
                        QStringLiteral("Zarnoveld"));
    }
    const ParameterValues &to = target->values;

    FigureYearMove move;
    move.from = figureYear();
    move.to = year;
    move.figures = FiscalFigures::differences(core.params, to);

    // The franchise follows only where the case keeps it computed; a typed franchise is the
    // adviser's own figure and stays. The basis and accrual follow the new franchise when they
    // are computed too, in the order the screen applies them.
    const int sync = core.dossier->i(DossierF::SyncVlaggen);
    std::vector<Change> changes;
    const QLocale dutch(QLocale::Dutch, QLocale::Netherlands);
    const auto amount = [&dutch](double v) { return dutch.toString(v, 'f', 2); };
    if (sync & Rules::kSyncFranchise) {
        for (const auto &anv : core.dossier->aanvragers) {
            int number = 0;
            for (const auto &pen : anv->pensioenen) {
                ++number;
                const int type = pen->i(PensioenF::SoortRegeling);
                const double oldFranchise = pen->d(PensioenF::Franchise);
                const double franchise = Rules::franchiseFor(type, anv->i(AanvragerF::Categorie), to);
                double grondslag = pen->d(PensioenF::Grondslag);
                double aangroei = pen->d(PensioenF::Aangroei);
                if (sync & Rules::kSyncGrondslag)
                    grondslag = Rules::grondslagFor(pen->d(PensioenF::Salaris), franchise);
                if ((sync & Rules::kSyncAangroei) && type != 3)
                    aangroei = Rules::aangroeiFor(pen->fl(PensioenF::OpbouwPercentage), grondslag);
                QStringList what;
                const auto follow = [&](int field, const char *name, double before, double after) {
                    if (before == after)
                        return;
                    changes.push_back({pen, field, after});
                    what << QStringLiteral("%1 %2 -> %3").arg(QLatin1String(name), amount(before), amount(after));
                };
                follow(PensioenF::Franchise, "Franchise", oldFranchise, franchise);
                follow(PensioenF::Grondslag, "Grondslag", pen->d(PensioenF::Grondslag), grondslag);
                follow(PensioenF::Aangroei, "Aangroei", pen->d(PensioenF::Aangroei), aangroei);
                if (!what.isEmpty()) {
                    const QString provider = pen->s(PensioenF::Uitvoerder);
                    move.schemes << QStringLiteral("%1, regeling %2%3: %4")
                                        .arg(anv->s(AanvragerF::Naam).isEmpty() ? QStringLiteral("deelnemer")
                                                                                 : anv->s(AanvragerF::Naam))
                                        .arg(number)
                                        .arg(provider.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(provider))
                                        .arg(what.join(QStringLiteral(", ")));
                }
            }
        }
    }

    const QVariant yearValue = normalise(Kind::Int16, year);
    core.write([&](Store *s) {
        if (!s)
            return;
        s->writeParameters(to);
        s->update(*core.dossier, DossierF::Rekenjaar, yearValue);
        for (const Change &c : changes)
            s->update(*c.record, c.field, c.value);
    });
    core.params = to;
    core.dossier->v[DossierF::Rekenjaar] = yearValue;
    for (Change &c : changes)
        c.record->v[c.field] = normalise(c.record->def->fields[c.field].kind, c.value);
    return move;
}

} // namespace Zarnoveld
