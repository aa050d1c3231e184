// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// An overview mapped onto one participant of a case as a plan of changes: what would be added,
// what updated (old -> new), what stays, what the adviser still has to fill in. Making a plan
// changes nothing; applyPlan() carries it out in one go.

#include "overview.h"

#include "hostmodel.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace VandrelPensioen::Overzicht {

// The case values one scheme of the overview stands for (see schemesFromOverview()).
struct SchemeValues
{
    QString schemeId;               // HerkenningsNummer
    QString provider;               // Uitvoerder
    QDate asOf;                     // Dt_Overzicht
    bool indicative = false;        // only indicative old-age amounts
    std::optional<double> accrued;  // Opgebouwd
    bool op = false;
    double opAmount = 0;            // row 1 BedragOP
    qint32 opAgeMonths = 0;         // row 1 LeeftijdOP
    bool top = false;
    double topAmount = 0;
    bool ppBefore = false;          // PP and PPNaAow (death before the pension date)
    double ppBeforeAmount = 0;
    bool ppBeforeLifelong = false;  // also paid after the partner's state pension age
    bool ppAfter = false;           // PpNa65TotAow and PPna65 (death after the pension date)
    double ppAfterAmount = 0;
    bool ppAfterLifelong = false;
    bool wzp = false;
    double wzpAmount = 0;
    std::optional<qint16> wzpEndAge;
    QStringList notes;              // what the register says that the case cannot hold
};

// The rules of the mapping, in one place (docs/pensioenoverzicht.md has them as a table).
VANDRELOVERZICHT_EXPORT QList<SchemeValues> schemesFromOverview(const Overview &overview);

enum class PlanStatus { New, Updated, Unchanged };

struct FieldChange
{
    QString label;                  // Dutch, as the screen calls the field
    QString before;                 // shown as the screen shows it; empty for a new scheme
    QString after;
};

struct PlannedScheme
{
    PlanStatus status = PlanStatus::New;
    SchemeValues values;
    qint16 penId = 0;               // the matched scheme; 0 for a new one
    QList<FieldChange> changes;     // a new scheme: every value it gets
    QStringList toFill;             // what the adviser still has to fill in
    QStringList checkFailures;      // what the pension screen's full check will stop on
    QString skipReason;             // why an update is left out (an older overview)
    bool isComplete() const { return checkFailures.isEmpty(); }
};

struct VANDRELOVERZICHT_EXPORT ImportPlan
{
    QString fileName;
    qint16 anvId = 1;
    QString participant;            // name as the case has it, or "aanvrager"/"partner"
    QString createdAt;
    QStringList remarks;            // Bijzonderheden
    QStringList unreachableProviders;
    QStringList providersWithoutData;
    bool canRecognise = true;       // the host keeps HerkenningsNummer
    bool atomic = true;             // the host applies it as one change
    QList<PlannedScheme> schemes;
    QString refusal;                // non-empty: the plan may not be applied (limit, no participant)

    int count(PlanStatus status) const;
    bool hasChanges() const;
};

inline constexpr int MaxSchemesPerParticipant = 99;

// Compares the overview with the participant's schemes. today is the day the statement date must
// lie before (the screen's check). Reads the case only.
VANDRELOVERZICHT_EXPORT ImportPlan planImport(const Overview &overview,
                                              VandrelApplication::Application &application,
                                              qint16 anvId, const QDate &today);

// Carries the plan out: all of it, or (the host throws) none of it. Throws HostError (Dutch).
// A refused plan throws without touching the case.
VANDRELOVERZICHT_EXPORT void applyPlan(const ImportPlan &plan, VandrelApplication::Application &application);

// The preview as plain text (the command line prints it; the dialog shows the same content).
VANDRELOVERZICHT_EXPORT QString previewText(const ImportPlan &plan);
VANDRELOVERZICHT_EXPORT QString statusText(PlanStatus status);
// The day the register made the file, as the screens show dates.
VANDRELOVERZICHT_EXPORT QString createdOn(const ImportPlan &plan);

} // namespace VandrelPensioen::Overzicht
