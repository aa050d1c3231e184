// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "hostcheck.h"

namespace VandrelApplication {

HostCheck &HostCheck::instance()
{
    static HostCheck service;
    return service;
}

namespace {

QString dateText(const QDate &date)
{
    return date.toString(QStringLiteral("dd-MM-yyyy"));
}

QString schemeName(const AanvragerPtr &anv, qint16 penId, const PensioenPtr &pen)
{
    const QString who = anv->Anv_Id() == 1 ? QStringLiteral("aanvrager") : QStringLiteral("partner");
    const QString provider = pen->Uitvoerder().trimmed();
    if (provider.isEmpty())
        return QStringLiteral("Pensioenregeling %1 van de %2").arg(penId).arg(who);
    return QStringLiteral("Pensioenregeling %1 (%2) van de %3").arg(penId).arg(provider, who);
}

} // namespace

// What the service checks. Soort 1 is the pension data of the open case; other kinds belong to
// other screens of the suite and find nothing here. Niveau 1 reports errors only; niveau 2 and up
// add the doubtful-but-allowed findings (no provider name, a start date after the AOW date).
// van/tot narrow the dated checks to start dates inside that period; an unfilled bound leaves that
// side open, so two empty dates check the whole period. The service only reports: it never changes
// host data and never throws, because the caller is usually already leaving a screen.
void HostCheck::RunHostCheck(ApplicationPtr &Application, qint32 soort, const QDate &van,
                             qint32 niveau, const QDate &tot)
{
    ++m_runCount;
    m_bevindingen.clear();
    if (soort != 1)
        return;
    try {
        if (!Application) {
            m_bevindingen << QStringLiteral("Er is geen toepassing om te controleren.");
            return;
        }
        const DossierPtr dossier = Application->Get_Dossier();
        if (!dossier) {
            m_bevindingen << QStringLiteral("Er is geen dossier geopend.");
            return;
        }
        const auto inPeriod = [&](const QDate &d) {
            return (!isFilled(van) || d >= van) && (!isFilled(tot) || d <= tot);
        };
        for (qint16 anvId = 1;; ++anvId) {
            const AanvragerPtr anv = dossier->Get_Aanvrager(anvId);
            if (!anv)
                break;
            const QDate birth = anv->GeboorteDatum();
            // Runs on every full validation of the pension screen: the employment keys are read
            // only once a scheme names one, and a scheme's name only once there is a finding.
            QStringList keys;
            bool keysRead = false;
            for (qint16 penId = 1;; ++penId) {
                const PensioenPtr pen = anv->Get_Pensioen(penId);
                if (!pen)
                    break;
                QString schemeNameText;
                const auto nameOf = [&]() -> const QString & {
                    if (schemeNameText.isNull())
                        schemeNameText = schemeName(anv, penId, pen);
                    return schemeNameText;
                };
                const qint16 soortRegeling = pen->SoortRegeling();
                if (soortRegeling < SoortRegeling::Eindloon || soortRegeling > SoortRegeling::BeschikbarePremie)
                    m_bevindingen << QStringLiteral("%1: onbekend soort regeling (%2).").arg(nameOf()).arg(soortRegeling);
                const QString key = pen->DienstverbandKey();
                if (!key.isEmpty() && !keysRead) {
                    for (qint16 i = 1;; ++i) {
                        const DienstverbandPtr dv = anv->Get_Dienstverband(i);
                        if (!dv)
                            break;
                        keys << dv->Key();
                    }
                    keysRead = true;
                }
                if (!key.isEmpty() && !keys.contains(key))
                    m_bevindingen << QStringLiteral("%1: het dienstverband bestaat niet (meer).").arg(nameOf());
                if (niveau >= 2 && pen->Uitvoerder().trimmed().isEmpty())
                    m_bevindingen << QStringLiteral("%1: de pensioenuitvoerder is niet ingevuld.").arg(nameOf());
                const qint16 rows = pen->OuderdomRegelCount();
                for (qint16 r = 1; r <= rows; ++r) {
                    const OuderdomRegelPtr row = pen->Get_OuderdomRegel(r);
                    if (!row)
                        continue;
                    const QDate op = row->Dt_IngangOP();
                    const QDate prep = row->Dt_IngangPreP();
                    if (row->OP() && isFilled(op) && inPeriod(op)) {
                        if (isFilled(birth) && op < birth)
                            m_bevindingen << QStringLiteral("%1: de ingangsdatum van het ouderdomspensioen (%2) ligt voor de geboortedatum.")
                                                 .arg(nameOf(), dateText(op));
                        if (niveau >= 2 && isFilled(anv->Dt_EindeInkomen()) && op > anv->Dt_EindeInkomen().addYears(5))
                            m_bevindingen << QStringLiteral("%1: het ouderdomspensioen gaat pas op %2 in, ruim na de AOW-datum.")
                                                 .arg(nameOf(), dateText(op));
                    }
                    if (row->PreP() && isFilled(prep) && inPeriod(prep)) {
                        if (isFilled(birth) && prep < birth)
                            m_bevindingen << QStringLiteral("%1: de ingangsdatum van het prepensioen (%2) ligt voor de geboortedatum.")
                                                 .arg(nameOf(), dateText(prep));
                        if (row->OP() && isFilled(op) && prep > op)
                            m_bevindingen << QStringLiteral("%1: het prepensioen gaat later in dan het ouderdomspensioen.").arg(nameOf());
                    }
                    if (row->BedragOP() < 0 || row->BedragPreP() < 0)
                        m_bevindingen << QStringLiteral("%1: een bedrag van het ouderdomspensioen is negatief.").arg(nameOf());
                }
                if (pen->Salaris() < 0 || pen->Franchise() < 0)
                    m_bevindingen << QStringLiteral("%1: salaris of franchise is negatief.").arg(nameOf());
            }
        }
    } catch (const HostError &e) {
        m_bevindingen << QStringLiteral("De controle kon niet worden afgemaakt: %1").arg(e.description());
    } catch (...) {
        m_bevindingen << QStringLiteral("De controle kon niet worden afgemaakt.");
    }
}

QStringList HostCheck::Bevindingen() const
{
    return m_bevindingen;
}

qint32 HostCheck::RunCount() const
{
    return m_runCount;
}

} // namespace VandrelApplication
