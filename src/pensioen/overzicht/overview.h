// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The pension register's overview ("XML/JSON download", data model version 1.2) as one typed
// tree, whichever of the two serialisations it was read from. The format notes are in
// docs/pensioenoverzicht.md.

#include "vandreloverzicht_export.h"

#include <QByteArray>
#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace VandrelPensioen::Overzicht {

// One bound of a period: an age, or an event (death of the participant, of the partner, ...).
struct Bound
{
    std::optional<qint32> months;   // age in whole months when the bound is an age
    QString event;                  // "Overlijden", "OverlijdenPartner", "OverlijdenOuder", ...
    bool isAge() const { return months.has_value(); }
};

// An old-age amount of one scheme in one period.
struct OldAgeItem
{
    QString provider;               // PensioenUitvoerder
    QString schemeId;               // HerkenningsNummer
    QDate asOf;                     // StandPer
    std::optional<double> reachable;  // TeBereiken
    std::optional<double> accrued;    // Opgebouwd
    QString settlement;             // AfhandelingVerevening
};

struct StatePension
{
    QDate asOf;
    std::optional<double> reachableCohabiting, accruedCohabiting;
    std::optional<double> reachableSingle, accruedSingle;
};

struct OldAgePeriod
{
    Bound from, to;
    std::optional<StatePension> aow;
    QList<OldAgeItem> pension;      // Pensioen
    QList<OldAgeItem> indicative;   // IndicatiefPensioen
    QList<OldAgeItem> single;       // AlleenstaandenPensioen
};

struct Amounts
{
    std::optional<double> insured;            // VerzekerdBedrag
    std::optional<double> accrued;            // OpgebouwdBedrag
    std::optional<double> insuredAfter;       // VerzekerdBedragNaPens
    std::optional<double> accruedAfter;       // OpgebouwdBedragNaPens
};

// A partner's or orphans' pension of one scheme in one period.
struct SurvivorItem
{
    QString provider;
    QString schemeId;
    QDate asOf;
    Amounts amounts;
    bool indicative = false;        // from IndicatiefPensioen
    bool perChild = false;          // PerKind (orphans' pension)
    QString settlement;             // AfhandelingScheiding
};

struct SurvivorPeriod
{
    Bound from, to;
    QList<SurvivorItem> items;
};

struct Overview
{
    QString fileName;               // for messages: the name the user picked
    QString statusCode;
    QString createdAt;              // TijdstipAanmakenBericht, as written
    QStringList remarks;            // Bijzonderheden
    QStringList unreachableProviders;   // OntbrekendePuvsError
    QStringList providersWithoutData;   // OntbrekendePuvsGeenGegevens
    QList<OldAgePeriod> oldAge;
    QList<SurvivorPeriod> partner;
    QList<SurvivorPeriod> orphans;
};

struct ReadResult
{
    std::optional<Overview> overview;
    QString error;                  // Dutch, names the file and the problem; empty on success
    bool ok() const { return overview.has_value(); }
};

// Guards against files no register ever writes; a real overview is a few tens of kilobytes and
// nests about ten levels deep.
inline constexpr qint64 MaxFileBytes = 8 * 1024 * 1024;
inline constexpr int MaxDepth = 32;
inline constexpr int MaxNodes = 500000;

// Reads a file in either serialisation (recognised by its first character). Refuses what is not
// an overview, a truncated file, and a StatusCode other than "000".
VANDRELOVERZICHT_EXPORT ReadResult readOverviewFile(const QString &path);
// The same on bytes already in memory; fileName is only used in messages.
VANDRELOVERZICHT_EXPORT ReadResult readOverview(const QByteArray &data, const QString &fileName);

} // namespace VandrelPensioen::Overzicht
