// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "importplan.h"

#include "commitmentrules.h"
#include "formats.h"
#include "registerlink.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <functional>

namespace VandrelPensioen::Overzicht {

using namespace VandrelApplication;
namespace Rules = VandrelPensioen::CommitmentRules;
namespace Format = VandrelControl::Format;

namespace {

struct OldAgeEntry
{
    Bound from, to;
    double amount = 0;
    std::optional<double> accrued;
    bool indicative = false;
};

struct Collected
{
    SchemeValues values;
    QList<OldAgeEntry> oldAge;
    double singleExtra = 0;
};

QString ageText(qint32 months)
{
    const auto ym = Rules::splitMonths(months);
    if (ym.months == 0)
        return QStringLiteral("%1 jaar").arg(ym.years);
    return QStringLiteral("%1 jaar en %2 %3").arg(ym.years).arg(ym.months)
        .arg(ym.months == 1 ? QStringLiteral("maand") : QStringLiteral("maanden"));
}

QString euro(double value)
{
    return QStringLiteral("€ ") + Format::amount(value);
}

} // namespace

// The mapping rules. Each scheme is keyed by its HerkenningsNummer (a scheme without one by its
// provider's name) and gets:
// - old-age pension: the amount of the lifelong period (Tot is an event); when the scheme only
//   pays for a while, the amount of its last period. Starting age: the earliest Van in which the
//   scheme pays. Indicative amounts count like committed ones, flagged as such.
// - bridging: a period that ends at or before the state pension age (the first period with AOW)
//   and pays more than the lifelong amount pays the difference as TOP.
// - accrued: Opgebouwd of the same period as the old-age amount; the statement date the latest
//   StandPer of the scheme.
// - partner pension: VerzekerdBedrag (else OpgebouwdBedrag) is what is paid on death before the
//   pension date, VerzekerdBedragNaPens (else OpgebouwdBedragNaPens) on death after it. A period
//   that ends with the partner's death pays both before and after the state pension age; one
//   that ends at an age only before it.
// - orphans' pension: VerzekerdBedrag (else OpgebouwdBedrag) with the end age from Tot.
// Amounts of 0 do not tick a commitment: the screen refuses a ticked commitment without amount.
QList<SchemeValues> schemesFromOverview(const Overview &overview)
{
    QList<Collected> schemes;
    QHash<QString, qsizetype> index;
    const auto schemeFor = [&](const QString &provider, const QString &schemeId, const QDate &asOf) -> Collected & {
        const QString key = schemeId.isEmpty() ? QStringLiteral("uitvoerder:") + provider : schemeId;
        auto it = index.find(key);
        if (it == index.end()) {
            Collected c;
            c.values.schemeId = schemeId;
            c.values.provider = provider;
            if (schemeId.isEmpty())
                c.values.notes << QStringLiteral("Het register geeft geen herkenningsnummer: een volgende import herkent deze regeling niet.");
            it = index.insert(key, schemes.size());
            schemes.append(c);
        }
        Collected &c = schemes[*it];
        // A date the case cannot hold (1900 or earlier counts as not filled) says nothing.
        if (isFilled(asOf) && (!c.values.asOf.isValid() || asOf > c.values.asOf))
            c.values.asOf = asOf;
        return c;
    };

    std::optional<qint32> aowAge;
    for (const OldAgePeriod &p : overview.oldAge)
        if (p.aow && p.from.isAge() && (!aowAge || *p.from.months < *aowAge))
            aowAge = p.from.months;

    for (const OldAgePeriod &p : overview.oldAge) {
        const auto add = [&](const OldAgeItem &item, bool indicative) {
            Collected &c = schemeFor(item.provider, item.schemeId, item.asOf);
            c.oldAge << OldAgeEntry{p.from, p.to, item.reachable.value_or(item.accrued.value_or(0)), item.accrued, indicative};
            if (!item.settlement.isEmpty())
                c.values.notes << QStringLiteral("Verevening bij scheiding: %1.").arg(item.settlement);
        };
        for (const OldAgeItem &item : p.pension)
            add(item, false);
        for (const OldAgeItem &item : p.indicative)
            add(item, true);
        for (const OldAgeItem &item : p.single) {
            Collected &c = schemeFor(item.provider, item.schemeId, item.asOf);
            c.singleExtra = std::max(c.singleExtra, item.reachable.value_or(0));
        }
    }
    for (const SurvivorPeriod &p : overview.partner) {
        const bool lifelong = !p.to.isAge();
        for (const SurvivorItem &item : p.items) {
            Collected &c = schemeFor(item.provider, item.schemeId, item.asOf);
            const double before = item.amounts.insured.value_or(item.amounts.accrued.value_or(0));
            const double after = item.amounts.insuredAfter.value_or(item.amounts.accruedAfter.value_or(0));
            if (before > 0) {
                c.values.ppBefore = true;
                c.values.ppBeforeAmount += before;
                c.values.ppBeforeLifelong = c.values.ppBeforeLifelong || lifelong;
            }
            if (after > 0) {
                c.values.ppAfter = true;
                c.values.ppAfterAmount += after;
                c.values.ppAfterLifelong = c.values.ppAfterLifelong || lifelong;
            }
            if (!item.settlement.isEmpty())
                c.values.notes << QStringLiteral("Partnerpensioen bij scheiding: %1.").arg(item.settlement);
        }
    }
    for (const SurvivorPeriod &p : overview.orphans) {
        for (const SurvivorItem &item : p.items) {
            Collected &c = schemeFor(item.provider, item.schemeId, item.asOf);
            const double amount = item.amounts.insured.value_or(item.amounts.accrued.value_or(0));
            if (amount > 0) {
                c.values.wzp = true;
                c.values.wzpAmount = std::max(c.values.wzpAmount, amount);
                if (p.to.isAge())
                    c.values.wzpEndAge = qint16(*p.to.months / 12);
                if (!item.perChild)
                    c.values.notes << QStringLiteral("Het wezenpensioen is één bedrag voor alle kinderen samen.");
            }
        }
    }

    QList<SchemeValues> out;
    for (Collected &c : schemes) {
        SchemeValues &v = c.values;
        if (!c.oldAge.isEmpty()) {
            v.op = true;
            v.indicative = std::all_of(c.oldAge.begin(), c.oldAge.end(), [](const OldAgeEntry &e) { return e.indicative; });
            std::optional<qint32> start;
            for (const OldAgeEntry &e : c.oldAge)
                if (e.from.isAge() && (!start || *e.from.months < *start))
                    start = e.from.months;
            v.opAgeMonths = start.value_or(0);
            // The lifelong entry, else the one that starts last.
            const OldAgeEntry *main = nullptr;
            for (const OldAgeEntry &e : c.oldAge) {
                const bool lifelong = !e.to.isAge();
                const bool mainLifelong = main && !main->to.isAge();
                if (!main || (lifelong && !mainLifelong)
                    || (lifelong == mainLifelong && e.from.months.value_or(0) >= main->from.months.value_or(0)))
                    main = &e;
            }
            v.opAmount = main->amount;
            v.accrued = main->accrued;
            if (main->to.isAge())
                v.notes << QStringLiteral("Het ouderdomspensioen loopt tot %1; het scherm rekent met een levenslang bedrag.")
                               .arg(ageText(*main->to.months));
            if (aowAge) {
                double before = 0;
                for (const OldAgeEntry &e : c.oldAge)
                    if (e.to.isAge() && *e.to.months <= *aowAge)
                        before = std::max(before, e.amount);
                if (before > v.opAmount) {
                    v.top = true;
                    v.topAmount = before - v.opAmount;
                }
            }
            if (v.indicative)
                v.notes << QStringLiteral("Indicatief bedrag (bijvoorbeeld een beschikbare-premieregeling): de uitkomst is niet gegarandeerd.");
        }
        if (c.singleExtra > 0)
            v.notes << QStringLiteral("Extra pensioen voor alleenstaanden (%1 per jaar) is niet overgenomen.").arg(euro(c.singleExtra));
        v.notes.removeDuplicates();
        out << v;
    }
    return out;
}

namespace {

// One field of the case that the import fills: how to read it, what the overview says it should
// be, and how to write it. Kept as a table so that the preview, the comparison and the write
// cannot disagree.
enum class Shown { Text, Date, Amount, Age, Years };

struct FieldRule
{
    const char *label;
    Shown shown;
    std::function<std::optional<QVariant>(const SchemeValues &)> target;
    std::function<QVariant(Pensioen &, OuderdomRegel &)> read;
    std::function<void(Pensioen &, OuderdomRegel &, const QVariant &)> write;
};

// A commitment with a tick and an amount reads as its amount, 0 when not ticked.
template <typename Flag, typename Amount, typename SetFlag, typename SetAmount>
FieldRule commitment(const char *label, std::function<std::optional<QVariant>(const SchemeValues &)> target,
                     Flag flag, Amount amount, SetFlag setFlag, SetAmount setAmount)
{
    return FieldRule{label, Shown::Amount, std::move(target),
                     [flag, amount](Pensioen &p, OuderdomRegel &) {
                         return QVariant((p.*flag)() ? (p.*amount)() : 0.0);
                     },
                     [setFlag, setAmount](Pensioen &p, OuderdomRegel &, const QVariant &v) {
                         (p.*setFlag)(true);
                         (p.*setAmount)(v.toDouble());
                     }};
}

const std::vector<FieldRule> &fieldRules()
{
    using V = std::optional<QVariant>;
    static const std::vector<FieldRule> rules{
        {"Uitvoerder", Shown::Text,
         [](const SchemeValues &s) -> V { return s.provider.isEmpty() ? V() : V(s.provider); },
         [](Pensioen &p, OuderdomRegel &) { return QVariant(p.Uitvoerder()); },
         [](Pensioen &p, OuderdomRegel &, const QVariant &v) { p.setUitvoerder(v.toString()); }},
        {"Datum overzicht", Shown::Date,
         [](const SchemeValues &s) -> V { return s.asOf.isValid() ? V(s.asOf) : V(); },
         [](Pensioen &p, OuderdomRegel &) { return QVariant(isFilled(p.Dt_Overzicht()) ? p.Dt_Overzicht() : QDate()); },
         [](Pensioen &p, OuderdomRegel &, const QVariant &v) { p.setDt_Overzicht(v.toDate()); }},
        {"Huidig opgebouwd bedrag", Shown::Amount,
         [](const SchemeValues &s) -> V { return s.accrued ? V(*s.accrued) : V(); },
         [](Pensioen &p, OuderdomRegel &) { return QVariant(p.Opgebouwd()); },
         [](Pensioen &p, OuderdomRegel &, const QVariant &v) { p.setOpgebouwd(v.toDouble()); }},
        {"Ouderdomspensioen (OP)", Shown::Amount,
         [](const SchemeValues &s) -> V { return s.op ? V(s.opAmount) : V(); },
         [](Pensioen &, OuderdomRegel &r) { return QVariant(r.OP() ? r.BedragOP() : 0.0); },
         [](Pensioen &, OuderdomRegel &r, const QVariant &v) {
             r.setOP(true);
             r.setBedragOP(v.toDouble());
         }},
        {"Ingangsleeftijd ouderdomspensioen", Shown::Age,
         [](const SchemeValues &s) -> V { return s.op && s.opAgeMonths > 0 ? V(s.opAgeMonths) : V(); },
         [](Pensioen &, OuderdomRegel &r) { return QVariant(r.LeeftijdOP()); },
         [](Pensioen &p, OuderdomRegel &r, const QVariant &v) {
             r.setLeeftijdOP(v.toInt());
             // The scheme's own start date follows the OP start, as the commitments panel keeps it.
             if (isFilled(r.Dt_IngangOP()))
                 p.setDt_PensioenIngang(r.Dt_IngangOP());
         }},
        commitment("Overbruggingspensioen",
                   [](const SchemeValues &s) -> V { return s.top ? V(s.topAmount) : V(); },
                   &Pensioen::TOP, &Pensioen::BedragTOP, &Pensioen::setTOP, &Pensioen::setBedragTOP),
        commitment("Nabestaandenpensioen tot AOW bij overlijden voor AOW",
                   [](const SchemeValues &s) -> V { return s.ppBefore ? V(s.ppBeforeAmount) : V(); },
                   &Pensioen::PP, &Pensioen::BedragPP, &Pensioen::setPP, &Pensioen::setBedragPP),
        commitment("Nabestaandenpensioen na AOW bij overlijden voor AOW",
                   [](const SchemeValues &s) -> V { return s.ppBefore && s.ppBeforeLifelong ? V(s.ppBeforeAmount) : V(); },
                   &Pensioen::PPNaAow, &Pensioen::BedragPPNaAow, &Pensioen::setPPNaAow, &Pensioen::setBedragPPNaAow),
        commitment("Nabestaandenpensioen tot AOW bij overlijden na AOW",
                   [](const SchemeValues &s) -> V { return s.ppAfter ? V(s.ppAfterAmount) : V(); },
                   &Pensioen::PpNa65TotAow, &Pensioen::BedragPpNa65TotAow, &Pensioen::setPpNa65TotAow,
                   &Pensioen::setBedragPpNa65TotAow),
        commitment("Nabestaandenpensioen na AOW bij overlijden na AOW",
                   [](const SchemeValues &s) -> V { return s.ppAfter && s.ppAfterLifelong ? V(s.ppAfterAmount) : V(); },
                   &Pensioen::PPna65, &Pensioen::BedragPPna65, &Pensioen::setPPna65, &Pensioen::setBedragPPna65),
        commitment("Wezenpensioen",
                   [](const SchemeValues &s) -> V { return s.wzp ? V(s.wzpAmount) : V(); },
                   &Pensioen::WzP, &Pensioen::BedragWzP, &Pensioen::setWzP, &Pensioen::setBedragWzP),
        {"Eindleeftijd wezenpensioen", Shown::Years,
         [](const SchemeValues &s) -> V { return s.wzp && s.wzpEndAge ? V(int(*s.wzpEndAge)) : V(); },
         [](Pensioen &p, OuderdomRegel &) { return QVariant(int(p.EindLeeftijdWzP())); },
         [](Pensioen &p, OuderdomRegel &, const QVariant &v) { p.setEindLeeftijdWzP(qint16(v.toInt())); }},
    };
    return rules;
}

QString shownValue(Shown shown, const QVariant &v)
{
    switch (shown) {
    case Shown::Text: return v.toString();
    case Shown::Date: return v.toDate().isValid() ? Format::date(v.toDate()) : QStringLiteral("(leeg)");
    case Shown::Amount: return euro(v.toDouble());
    case Shown::Age: return v.toInt() > 0 ? ageText(v.toInt()) : QStringLiteral("(leeg)");
    case Shown::Years: return QStringLiteral("%1 jaar").arg(v.toInt());
    }
    return {};
}

bool same(Shown shown, const QVariant &a, const QVariant &b)
{
    switch (shown) {
    case Shown::Text: return a.toString() == b.toString();
    case Shown::Date: return a.toDate() == b.toDate();
    case Shown::Amount: return std::abs(a.toDouble() - b.toDouble()) < 0.005;
    case Shown::Age:
    case Shown::Years: return a.toInt() == b.toInt();
    }
    return false;
}

// The percentages of the commitments that follow the OP, for a scheme the import creates: the
// screen shows them beside the amounts and checks them. A matched scheme keeps the adviser's.
struct Percentage
{
    bool (Pensioen::*flag)() const;
    double (Pensioen::*amount)() const;
    void (Pensioen::*setPc)(float);
    double limit;
    const char *message;
};

const Percentage kPercentages[] = {
    {&Pensioen::PP, &Pensioen::BedragPP, &Pensioen::setPc_PP, Rules::MaxPcPartnerPensioen,
     "Percentage partnerpensioen voor AOW bij overlijden voor AOW (t.o.v. OP) van 0% t/m 1000% invullen."},
    {&Pensioen::PPNaAow, &Pensioen::BedragPPNaAow, &Pensioen::setPc_PPNaAow, Rules::MaxPcPartnerPensioen,
     "Percentage partnerpensioen na AOW bijoverlijden voor AOW (t.o.v. OP) van 0% t/m 1000% invullen."},
    {&Pensioen::WzP, &Pensioen::BedragWzP, &Pensioen::setPc_WzP, Rules::MaxPcWezenPensioen,
     "Percentage wezenpensioen (t.o.v. OP) van 0% t/m 100% invullen."},
    {&Pensioen::PPna65, &Pensioen::BedragPPna65, &Pensioen::setPc_PPna65, Rules::MaxPcPartnerPensioen,
     "Percentage partnerpensioen na AOW bij overlijden na AOW (t.o.v. OP) van 0% t/m 1000% invullen."},
    {&Pensioen::PpNa65TotAow, &Pensioen::BedragPpNa65TotAow, &Pensioen::setPc_PpNa65TotAow,
     Rules::MaxPcPartnerPensioen,
     "Percentage partnerpensioen voor AOW bij overlijden na AOW (t.o.v. OP) van 0% t/m 1000% invullen."},
};

// Percentages a new scheme gets, in the order above (amount relative to the OP).
std::vector<double> percentagesFor(const SchemeValues &s)
{
    const double op = s.op ? s.opAmount : 0.0;
    const auto pc = [op](bool on, double amount) { return on ? double(Rules::percentageFromAmount(amount, op)) : 0.0; };
    return {pc(s.ppBefore, s.ppBeforeAmount), pc(s.ppBefore && s.ppBeforeLifelong, s.ppBeforeAmount),
            pc(s.wzp, s.wzpAmount), pc(s.ppAfter && s.ppAfterLifelong, s.ppAfterAmount),
            pc(s.ppAfter, s.ppAfterAmount)};
}

// What the pension screen's full check stops on, for the values this import is responsible for:
// the statement date, the OP (age, date, amount), the orphans' end age and amount, and for a new
// scheme the percentages it derives. What an adviser typed earlier is the adviser's to answer for.
QStringList predictedFailures(const SchemeValues &s, bool newScheme, bool schemeKnown, const QDate &birth,
                              const QDate &today)
{
    QStringList out;
    if (schemeKnown && s.asOf.isValid() && s.asOf >= today)
        out << QStringLiteral("Datum pensioenoverzicht moet in het verleden liggen (het overzicht staat per %1).")
                   .arg(Format::date(s.asOf));
    if (s.op) {
        const qint32 years = Rules::splitMonths(s.opAgeMonths).years;
        if (years < Rules::MinOpYears || years > Rules::MaxOpYears)
            out << QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet tussen 50 en 99 jaar liggen.");
        else if (!isFilled(birth))
            out << QStringLiteral("Ingangsdatum ouderdomspensioen niet ingevuld: de geboortedatum van de deelnemer ontbreekt.");
        if (s.opAmount == 0)
            out << QStringLiteral("Bedrag ouderdomspensioen niet ingevuld.");
    }
    if (s.wzp && s.wzpEndAge && (*s.wzpEndAge < Rules::MinEindWzp || *s.wzpEndAge > Rules::MaxEindWzp))
        out << QStringLiteral("Eindleeftijd wezenpensioen van 10 t/m 30 jaar invullen.");
    if (newScheme) {
        const auto pcs = percentagesFor(s);
        for (size_t i = 0; i < pcs.size(); ++i)
            if (pcs[i] > kPercentages[i].limit)
                out << QString::fromUtf8(kPercentages[i].message);
    }
    return out;
}

QString participantWord(qint16 anvId)
{
    return anvId == 2 ? QStringLiteral("partner") : QStringLiteral("aanvrager");
}

} // namespace

int ImportPlan::count(PlanStatus status) const
{
    return int(std::count_if(schemes.begin(), schemes.end(), [status](const PlannedScheme &s) { return s.status == status; }));
}

bool ImportPlan::hasChanges() const
{
    return refusal.isEmpty() && (count(PlanStatus::New) > 0 || count(PlanStatus::Updated) > 0);
}

QString statusText(PlanStatus status)
{
    switch (status) {
    case PlanStatus::New: return QStringLiteral("nieuw");
    case PlanStatus::Updated: return QStringLiteral("bijgewerkt");
    case PlanStatus::Unchanged: return QStringLiteral("ongewijzigd");
    }
    return {};
}

ImportPlan planImport(const Overview &overview, Application &application, qint16 anvId, const QDate &today)
{
    ImportPlan plan;
    plan.fileName = overview.fileName;
    plan.anvId = anvId;
    plan.participant = participantWord(anvId);
    plan.createdAt = overview.createdAt;
    plan.remarks = overview.remarks;
    plan.unreachableProviders = overview.unreachableProviders;
    plan.providersWithoutData = overview.providersWithoutData;

    auto *link = dynamic_cast<RegisterLink *>(&application);
    plan.canRecognise = link != nullptr;
    plan.atomic = link != nullptr;

    const DossierPtr dossier = application.Get_Dossier();
    const AanvragerPtr aanvrager = dossier ? dossier->Get_Aanvrager(anvId) : nullptr;
    if (!aanvrager) {
        plan.refusal = anvId == 2 ? QStringLiteral("Het dossier heeft geen partner. Voeg eerst de partner toe op het scherm Deelnemers.")
                                  : QStringLiteral("Het dossier heeft geen aanvrager.");
        return plan;
    }
    if (!aanvrager->Naam().trimmed().isEmpty())
        plan.participant += QStringLiteral(" (%1)").arg(aanvrager->Naam().trimmed());
    const QDate birth = aanvrager->GeboorteDatum();

    struct Existing
    {
        qint16 penId;
        PensioenPtr pensioen;
        QString schemeId;
    };
    std::vector<Existing> existing;
    for (qint16 id = 1; id <= MaxSchemesPerParticipant + 1; ++id) {
        PensioenPtr p = aanvrager->Get_Pensioen(id);
        if (!p)
            break;
        existing.push_back({id, p, link ? link->HerkenningsNummer(*p) : QString()});
    }

    for (const SchemeValues &values : schemesFromOverview(overview)) {
        PlannedScheme planned;
        planned.values = values;
        const auto match = values.schemeId.isEmpty()
                             ? existing.end()
                             : std::find_if(existing.begin(), existing.end(),
                                            [&values](const Existing &e) { return e.schemeId == values.schemeId; });
        if (match == existing.end()) {
            planned.status = PlanStatus::New;
            for (const FieldRule &rule : fieldRules())
                if (const auto target = rule.target(values))
                    planned.changes << FieldChange{QString::fromUtf8(rule.label), QString(), shownValue(rule.shown, *target)};
            planned.toFill = {QStringLiteral("soort regeling"), QStringLiteral("opbouwpercentage"),
                              QStringLiteral("pensioengevend salaris"), QStringLiteral("dienstverband")};
            // A new scheme is one whose details count as known, as a host makes it; the adviser
            // then sees and checks the statement date.
            planned.checkFailures = predictedFailures(values, true, true, birth, today);
        } else {
            Pensioen &p = *match->pensioen;
            planned.penId = match->penId;
            const OuderdomRegelPtr row = p.Get_OuderdomRegel(1);
            const QDate stored = p.Dt_Overzicht();
            if (isFilled(stored) && values.asOf.isValid() && values.asOf < stored) {
                planned.status = PlanStatus::Unchanged;
                planned.skipReason = QStringLiteral("Het dossier heeft nieuwere cijfers (stand per %1) dan dit overzicht (stand per %2); niets overgenomen.")
                                         .arg(Format::date(stored), Format::date(values.asOf));
            } else if (row) {
                for (const FieldRule &rule : fieldRules()) {
                    const auto target = rule.target(values);
                    if (!target)
                        continue;
                    const QVariant now = rule.read(p, *row);
                    if (!same(rule.shown, now, *target))
                        planned.changes << FieldChange{QString::fromUtf8(rule.label), shownValue(rule.shown, now),
                                                       shownValue(rule.shown, *target)};
                }
                planned.status = planned.changes.isEmpty() ? PlanStatus::Unchanged : PlanStatus::Updated;
            }
            if (p.Salaris() == 0 && p.SoortRegeling() != SoortRegeling::BeschikbarePremie)
                planned.toFill << QStringLiteral("pensioengevend salaris");
            if (p.OpbouwPercentage() == 0 && p.SoortRegeling() != SoortRegeling::BeschikbarePremie)
                planned.toFill << QStringLiteral("opbouwpercentage");
            if (p.DienstverbandKey().isEmpty())
                planned.toFill << QStringLiteral("dienstverband");
            if (planned.status == PlanStatus::Updated)
                planned.checkFailures = predictedFailures(values, false, p.RegelingBekend(), birth, today);
        }
        plan.schemes << planned;
    }

    const int added = plan.count(PlanStatus::New);
    const int total = int(existing.size()) + added;
    if (added > 0 && total > MaxSchemesPerParticipant)
        plan.refusal = QStringLiteral("De %1 heeft al %2 pensioenregelingen; met de %3 nieuwe uit het overzicht zouden het er %4 worden, "
                                      "meer dan de %5 die een deelnemer kan hebben. Er is niets ingelezen.")
                           .arg(participantWord(anvId))
                           .arg(existing.size())
                           .arg(added)
                           .arg(total)
                           .arg(MaxSchemesPerParticipant);
    return plan;
}

namespace {

void writeScheme(Pensioen &p, const PlannedScheme &planned, bool isNew)
{
    const OuderdomRegelPtr row = p.Get_OuderdomRegel(1) ? p.Get_OuderdomRegel(1)
                                                        : p.Get_OuderdomRegel(p.AddOuderdomRegel());
    for (const FieldRule &rule : fieldRules()) {
        const auto target = rule.target(planned.values);
        if (!target)
            continue;
        if (isNew || !same(rule.shown, rule.read(p, *row), *target))
            rule.write(p, *row, *target);
    }
    if (isNew) {
        const auto pcs = percentagesFor(planned.values);
        for (size_t i = 0; i < pcs.size(); ++i)
            if (((p).*(kPercentages[i].flag))())
                ((p).*(kPercentages[i].setPc))(float(pcs[i]));
    }
}

} // namespace

void applyPlan(const ImportPlan &plan, Application &application)
{
    const QString source = QStringLiteral("VandrelOverzicht");
    if (!plan.refusal.isEmpty())
        throw HostError(HostErrorCode::InvalidState, plan.refusal, source);
    const DossierPtr dossier = application.Get_Dossier();
    const AanvragerPtr aanvrager = dossier ? dossier->Get_Aanvrager(plan.anvId) : nullptr;
    if (!aanvrager)
        throw HostError(HostErrorCode::NotFound, QStringLiteral("De deelnemer bestaat niet meer in het dossier."), source);
    auto *link = dynamic_cast<RegisterLink *>(&application);

    const auto body = [&] {
        for (const PlannedScheme &planned : plan.schemes) {
            if (planned.status == PlanStatus::Unchanged)
                continue;
            PensioenPtr p;
            if (planned.status == PlanStatus::New) {
                p = aanvrager->Get_Pensioen(aanvrager->AddPension());
            } else {
                p = aanvrager->Get_Pensioen(planned.penId);
                // The case may have changed since the preview; never write onto another scheme.
                if (!p || (link && link->HerkenningsNummer(*p) != planned.values.schemeId))
                    throw HostError(HostErrorCode::InvalidState,
                                    QStringLiteral("De regelingen van de deelnemer zijn veranderd sinds het voorbeeld; lees het overzicht opnieuw in."),
                                    source);
            }
            if (!p)
                throw HostError(HostErrorCode::StoreFailed, QStringLiteral("De nieuwe regeling kon niet worden gemaakt."), source);
            writeScheme(*p, planned, planned.status == PlanStatus::New);
            if (link && planned.status == PlanStatus::New && !planned.values.schemeId.isEmpty())
                link->setHerkenningsNummer(*p, planned.values.schemeId);
        }
    };

    if (link) {
        link->RunAsOneChange(body);
        return;
    }
    // Without the host's transaction: put back by hand what was changed before a failure.
    std::vector<std::pair<qint16, PensioenPtr>> saved;
    for (const PlannedScheme &planned : plan.schemes)
        if (planned.status == PlanStatus::Updated)
            if (PensioenPtr p = aanvrager->Get_Pensioen(planned.penId))
                saved.emplace_back(planned.penId, p->Snapshot());
    qint16 before = 0;
    while (aanvrager->Get_Pensioen(qint16(before + 1)))
        ++before;
    try {
        body();
    } catch (...) {
        while (aanvrager->Get_Pensioen(qint16(before + 1)))
            aanvrager->RemovePension(qint16(before + 1));
        for (auto &[penId, snapshot] : saved)
            if (PensioenPtr p = aanvrager->Get_Pensioen(penId))
                p->CopyFrom(*snapshot);
        throw;
    }
}

QString createdOn(const ImportPlan &plan)
{
    const QDate day = QDate::fromString(plan.createdAt.left(10), Qt::ISODate);
    return day.isValid() ? Format::date(day) : plan.createdAt.left(20);
}

QString previewText(const ImportPlan &plan)
{
    QString t;
    t += QStringLiteral("Pensioenoverzicht: %1").arg(plan.fileName);
    if (!plan.createdAt.isEmpty())
        t += QStringLiteral(" (gemaakt door het pensioenregister op %1)").arg(createdOn(plan));
    t += QLatin1Char('\n');
    t += QStringLiteral("Deelnemer: %1\n").arg(plan.participant);
    if (!plan.unreachableProviders.isEmpty())
        t += QStringLiteral("\nLET OP: het overzicht is onvolledig. Het pensioenregister kon de gegevens van deze uitvoerders niet ophalen: %1. "
                            "Vraag hun gegevens zelf op.\n")
                 .arg(plan.unreachableProviders.join(QStringLiteral(", ")));
    if (!plan.providersWithoutData.isEmpty())
        t += QStringLiteral("Geen gegevens bij: %1.\n").arg(plan.providersWithoutData.join(QStringLiteral(", ")));
    if (!plan.canRecognise)
        t += QStringLiteral("\nLET OP: dit programma bewaart geen herkenningsnummers; bij een volgende import worden de regelingen opnieuw toegevoegd.\n");
    t += QStringLiteral("\nRegelingen: %1 nieuw, %2 bijgewerkt, %3 ongewijzigd\n")
             .arg(plan.count(PlanStatus::New))
             .arg(plan.count(PlanStatus::Updated))
             .arg(plan.count(PlanStatus::Unchanged));
    for (const PlannedScheme &s : plan.schemes) {
        t += QStringLiteral("\n[%1] %2").arg(statusText(s.status), s.values.provider);
        if (!s.values.schemeId.isEmpty())
            t += QStringLiteral(" (%1)").arg(s.values.schemeId);
        t += QLatin1Char('\n');
        for (const FieldChange &c : s.changes) {
            if (s.status == PlanStatus::New)
                t += QStringLiteral("    %1: %2\n").arg(c.label, c.after);
            else
                t += QStringLiteral("    %1: %2 → %3\n").arg(c.label, c.before, c.after);
        }
        if (!s.skipReason.isEmpty())
            t += QStringLiteral("    %1\n").arg(s.skipReason);
        for (const QString &note : s.values.notes)
            t += QStringLiteral("    Opmerking: %1\n").arg(note);
        if (!s.toFill.isEmpty())
            t += QStringLiteral("    Nog in te vullen door de adviseur: %1\n").arg(s.toFill.join(QStringLiteral(", ")));
        if (s.status != PlanStatus::Unchanged) {
            if (s.checkFailures.isEmpty())
                t += QStringLiteral("    Controle pensioenscherm: in orde\n");
            else
                for (const QString &f : s.checkFailures)
                    t += QStringLiteral("    Controle pensioenscherm houdt tegen: %1\n").arg(f);
        }
    }
    if (!plan.remarks.isEmpty()) {
        t += QStringLiteral("\nBijzonderheden van het pensioenregister:\n");
        for (const QString &r : plan.remarks)
            t += QStringLiteral("  - %1\n").arg(r);
    }
    if (!plan.refusal.isEmpty())
        t += QStringLiteral("\nNIET INGELEZEN: %1\n").arg(plan.refusal);
    return t;
}

} // namespace VandrelPensioen::Overzicht
