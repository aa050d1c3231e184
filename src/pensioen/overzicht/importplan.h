// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// \file importplan.h
/// \brief An overview mapped onto one participant of a case as a plan of changes.
///
/// The import is split in two so that the adviser sees everything before anything is written:
/// planImport() compares the overview with the participant's schemes and says, per scheme, what
/// would be added, what updated (old -> new), what stays, and what the adviser still has to fill
/// in; it only reads the case. applyPlan() then carries the plan out as one change. Between the
/// two a host shows the plan: previewText() on a terminal, PreviewDialog in a window.
///
/// The plan is a plain value: it holds no handle on the case, so it may be kept, copied and
/// applied later; applyPlan() checks again that the case still matches it. All texts in a plan
/// (labels, values as shown, reasons, notes) are Dutch, meant for the adviser.
///
/// A host that implements VandrelApplication::RegisterLink on its Application gets two things
/// more: a scheme imported before is recognised by its HerkenningsNummer and updated instead of
/// added again, and the whole plan is applied in the host's own transaction. Without it every
/// scheme is new each time, and applyPlan() undoes a half-done import itself.

#include "overview.h"

#include "hostmodel.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace VandrelPensioen::Overzicht {

/// The case values one scheme of the overview stands for: the register's periods folded into the
/// fields the pension screen has. Amounts are euros per year. A flag (op, top, ...) says whether the
/// commitment is to be ticked; its amount means nothing while the flag is false. An amount of 0
/// never sets a flag, because the screen refuses a ticked commitment without an amount.
struct SchemeValues
{
    QString schemeId;               ///< HerkenningsNummer; empty when the register gives none (the scheme is then keyed by provider).
    QString provider;               ///< Uitvoerder: the provider's name as the register writes it.
    QDate asOf;                     ///< Dt_Overzicht: the latest StandPer of the scheme; invalid when none is filled.
    bool indicative = false;        ///< Every old-age amount is indicative (not guaranteed, e.g. defined contribution).
    std::optional<double> accrued;  ///< Opgebouwd: accrued so far, of the same period as opAmount; empty when the file has none.
    bool op = false;                ///< The scheme pays an old-age pension (OP).
    double opAmount = 0;            ///< Row 1 BedragOP: the lifelong amount, else the amount of the last period.
    qint32 opAgeMonths = 0;         ///< Row 1 LeeftijdOP: the earliest age at which the scheme pays, in whole months; 0 when unknown.
    bool top = false;               ///< A bridging pension (TOP): more is paid before the state pension age than after.
    double topAmount = 0;           ///< BedragTOP: the difference paid until the state pension age.
    bool ppBefore = false;          ///< A partner's pension on death before the pension date (PP, and PPNaAow when lifelong).
    double ppBeforeAmount = 0;      ///< Its amount (VerzekerdBedrag, else OpgebouwdBedrag), summed over the periods.
    bool ppBeforeLifelong = false;  ///< It is also paid after the partner's state pension age (PPNaAow).
    bool ppAfter = false;           ///< A partner's pension on death after the pension date (PpNa65TotAow, and PPna65 when lifelong).
    double ppAfterAmount = 0;       ///< Its amount (VerzekerdBedragNaPens, else OpgebouwdBedragNaPens).
    bool ppAfterLifelong = false;   ///< It is also paid after the partner's state pension age (PPna65).
    bool wzp = false;               ///< An orphans' pension (WzP).
    double wzpAmount = 0;           ///< BedragWzP: the highest amount of its periods.
    std::optional<qint16> wzpEndAge;  ///< EindLeeftijdWzP in whole years, when the register ends it at an age.
    /// What the register says that the case cannot hold (an old-age pension that stops, the extra
    /// for living alone, divorce arrangements, a missing identifier), Dutch, shown in the preview.
    QStringList notes;
};

/// The mapping rules in one place, one SchemeValues per scheme of the overview in the order first
/// met; docs/pensioenoverzicht.md of the source tree has them as a table. Pure: reads nothing but
/// \p overview, never throws.
VANDRELOVERZICHT_EXPORT QList<SchemeValues> schemesFromOverview(const Overview &overview);

/// What the import does with one scheme.
enum class PlanStatus {
    New,        ///< Not in the case (or not recognisable): a scheme is added.
    Updated,    ///< Recognised by its HerkenningsNummer, and at least one field changes.
    Unchanged   ///< Recognised, and nothing changes (or the case holds newer figures, see PlannedScheme::skipReason).
};

/// One field the import writes, as the preview shows it.
struct FieldChange
{
    QString label;    ///< The field as the pension screen calls it, Dutch (e.g. "Ouderdomspensioen (OP)").
    QString before;   ///< The case's value as the screen shows it (amounts in whole euros, "€ 1.234"); empty for a new scheme.
    QString after;    ///< The value it gets, shown the same way.
};

/// The plan for one scheme of the overview.
struct PlannedScheme
{
    PlanStatus status = PlanStatus::New;  ///< What happens to the scheme.
    SchemeValues values;            ///< What the overview says.
    qint16 penId = 0;               ///< The number of the matched scheme in the case (from 1); 0 for a new one.
    QList<FieldChange> changes;     ///< An update: the fields that differ; a new scheme: every value it gets.
    QStringList toFill;             ///< What the adviser still has to fill in (Dutch field names: the overview lacks them).
    /// What the pension screen's full check would stop on once applied, for the values the import
    /// is responsible for (Dutch, the screen's own messages). The import still writes them: the
    /// adviser corrects them on the screen.
    QStringList checkFailures;
    QString skipReason;             ///< Why a recognised scheme is left alone (the case has newer figures), Dutch; empty otherwise.
    bool isComplete() const { return checkFailures.isEmpty(); }  ///< Whether the screen's check would pass on the imported values.
};

/// The plan for one participant: every scheme of the overview with what happens to it, and what
/// the register says about the overview as a whole. Made by planImport(); applied by applyPlan().
struct VANDRELOVERZICHT_EXPORT ImportPlan
{
    QString fileName;               ///< The overview's file name, for the preview.
    qint16 anvId = 1;               ///< The participant: 1 the applicant, 2 the partner.
    QString participant;            ///< "aanvrager" or "partner", with the name from the case in brackets when it has one.
    QString createdAt;              ///< When the register made the file, as written; createdOn() shows it.
    QStringList remarks;            ///< The register's remarks (Bijzonderheden), Dutch.
    QStringList unreachableProviders;   ///< Providers the register could not reach: the overview is incomplete.
    QStringList providersWithoutData;   ///< Providers that hold nothing for the client.
    bool canRecognise = true;       ///< The host implements RegisterLink, so schemes imported before are recognised.
    bool atomic = true;             ///< The host implements RegisterLink, so the plan is applied in the host's own transaction.
    QList<PlannedScheme> schemes;   ///< One entry per scheme of the overview, in schemesFromOverview() order.
    /// Why the plan may not be applied, Dutch (the participant does not exist, or the new schemes
    /// would take the participant past MaxSchemesPerParticipant); empty when it may. A refused plan
    /// is still complete, so the preview can show what the overview holds.
    QString refusal;

    int count(PlanStatus status) const;  ///< How many schemes have \p status.
    /// Whether applying would change the case: not refused, and at least one scheme new or updated.
    bool hasChanges() const;
};

/// The most schemes one participant can have, as the pension screen's list holds them. An import
/// that would pass it is refused whole rather than cut short.
inline constexpr int MaxSchemesPerParticipant = 99;

/// Compares \p overview with the schemes of participant \p anvId (1 applicant, 2 partner) of the
/// case of \p application and returns the plan. A scheme is matched by its HerkenningsNummer
/// when the application implements RegisterLink; a recognised scheme whose statement date
/// (Dt_Overzicht) is newer than the overview's is left unchanged. \p today is the day the
/// statement date must lie before, as the screen's check demands (pass QDate::currentDate()).
/// Reads the case only; a missing participant gives a refused plan, not an exception. A HostError
/// the host throws while the case is read is passed on unchanged.
VANDRELOVERZICHT_EXPORT ImportPlan planImport(const Overview &overview,
                                              VandrelApplication::Application &application,
                                              qint16 anvId, const QDate &today);

/// Carries \p plan out on the case of \p application: adds the new schemes, writes the changed
/// fields of the updated ones (a field the adviser already has at the overview's value is not
/// written) and, through RegisterLink, stores each new scheme's HerkenningsNummer. All of it or
/// nothing: with RegisterLink inside RegisterLink::RunAsOneChange(), without it by removing the
/// schemes it added and copying back (Pensioen::CopyFrom) snapshots of the ones it changed.
///
/// Throws VandrelApplication::HostError with a Dutch description, ready to show: InvalidState for
/// a refused plan (before touching the case) or when the participant's schemes changed since the
/// plan was made; NotFound when the participant is gone; and any HostError the host itself throws
/// while writing. After a throw the case is as it was.
VANDRELOVERZICHT_EXPORT void applyPlan(const ImportPlan &plan, VandrelApplication::Application &application);

/// The preview as plain Dutch text, one line per fact: what the command line prints and the same
/// content the dialog shows. Never empty; mentions a refusal at the end.
VANDRELOVERZICHT_EXPORT QString previewText(const ImportPlan &plan);
/// The Dutch word for \p status as the preview shows it: "nieuw", "bijgewerkt", "ongewijzigd".
VANDRELOVERZICHT_EXPORT QString statusText(PlanStatus status);
/// The day the register made the file as the screens show dates (dd-mm-jjjj); the text as
/// written (at most 20 characters) when it is not a date.
VANDRELOVERZICHT_EXPORT QString createdOn(const ImportPlan &plan);

} // namespace VandrelPensioen::Overzicht
