// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// \file overview.h
/// \brief The pension register's overview file read into one typed tree (Vandrel::Overzicht).
///
/// The client downloads the overview from the national pension register (mijnpensioenoverzicht.nl,
/// "XML/JSON download", data model version 1.2). Both serialisations are read into the same
/// plain value types below, so that the mapping onto a case (importplan.h) has one set of rules
/// and never sees which file format it came from. Everything here is a value: copy it freely;
/// nothing refers to the file or to a case. The field notes give the register's element name;
/// the format notes are in docs/pensioenoverzicht.md of the source tree.
///
/// Reading never throws and never touches a case: a file that is not a usable overview yields a
/// ReadResult with a Dutch message for the adviser instead.

#include "vandreloverzicht_export.h"

#include <QByteArray>
#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// The pension register import: reading the overview, planning and applying it, the preview.
namespace VandrelPensioen::Overzicht {

/// One bound (Van or Tot) of a period in the overview. The register states a bound either as an
/// age or as an event; exactly one of the two is set, which isAge() tells.
struct Bound
{
    /// The age in whole months (years * 12 + months) when the bound is an age; empty for an event.
    std::optional<qint32> months;
    /// The register's event name when the bound is an event, as written ("Overlijden",
    /// "OverlijdenPartner", "OverlijdenOuder", ...); empty for an age. A Tot that is an event
    /// means "lifelong" to the mapping.
    QString event;
    bool isAge() const { return months.has_value(); }  ///< Whether the bound is an age (months set).
};

/// The old-age amount of one scheme in one period (a Pensioen, IndicatiefPensioen or
/// AlleenstaandenPensioen element). Amounts are euros per year; an amount the file leaves out is
/// empty, which is not the same as 0.
struct OldAgeItem
{
    QString provider;                 ///< PensioenUitvoerder: the provider's name as the register writes it.
    /// HerkenningsNummer: the scheme's identifier at its provider; the key by which a later import
    /// recognises the scheme again. May be empty.
    QString schemeId;
    QDate asOf;                       ///< StandPer: the date the provider's figures are from; invalid when absent.
    std::optional<double> reachable;  ///< TeBereiken: the amount reachable when the participant stays until the pension date.
    std::optional<double> accrued;    ///< Opgebouwd: the amount accrued so far.
    QString settlement;               ///< AfhandelingVerevening: how the amount is shared after a divorce, as written.
};

/// The state pension (AOW) part of an old-age period. Amounts are euros per year; empty when the
/// file leaves them out.
struct StatePension
{
    QDate asOf;  ///< StandPer of the state pension figures; invalid when absent.
    std::optional<double> reachableCohabiting;  ///< TeBereikenSamenwonend: reachable for someone living together.
    std::optional<double> accruedCohabiting;    ///< OpgebouwdSamenwonend: accrued for someone living together.
    std::optional<double> reachableSingle;      ///< TeBereikenAlleenstaand: reachable for someone living alone.
    std::optional<double> accruedSingle;        ///< OpgebouwdAlleenstaand: accrued for someone living alone.
};

/// One period of the old-age overview (OuderdomsPensioen): from one bound to the next, with the
/// state pension and every scheme that pays in it.
struct OldAgePeriod
{
    Bound from;  ///< Van: where the period starts.
    Bound to;    ///< Tot: where it ends; an event means the period is lifelong.
    /// The state pension in this period; set only for periods in which it is paid, which is how
    /// the mapping finds the state pension age.
    std::optional<StatePension> aow;
    QList<OldAgeItem> pension;      ///< Pensioen: committed amounts.
    QList<OldAgeItem> indicative;   ///< IndicatiefPensioen: amounts that are not guaranteed (defined contribution).
    QList<OldAgeItem> single;       ///< AlleenstaandenPensioen: the extra for a participant living alone.
};

/// The amounts of a partner's or orphans' pension. Euros per year; each is empty when the file
/// leaves it out. "After" is the cover on death after the pension date.
struct Amounts
{
    std::optional<double> insured;       ///< VerzekerdBedrag: insured on death before the pension date.
    std::optional<double> accrued;       ///< OpgebouwdBedrag: accrued so far, for death before the pension date.
    std::optional<double> insuredAfter;  ///< VerzekerdBedragNaPens: insured on death after the pension date.
    std::optional<double> accruedAfter;  ///< OpgebouwdBedragNaPens: accrued, for death after the pension date.
};

/// A partner's or orphans' pension of one scheme in one period.
struct SurvivorItem
{
    QString provider;          ///< PensioenUitvoerder, as written.
    QString schemeId;          ///< HerkenningsNummer; may be empty (see OldAgeItem::schemeId).
    QDate asOf;                ///< StandPer; invalid when absent.
    Amounts amounts;           ///< Bedragen.
    bool indicative = false;   ///< The item came from an IndicatiefPensioen element.
    bool perChild = false;     ///< PerKind: an orphans' pension paid per child rather than for all children together.
    QString settlement;        ///< AfhandelingScheiding: what happens to it after a divorce, as written.
};

/// One period of the partner's or orphans' pension overview.
struct SurvivorPeriod
{
    Bound from;                 ///< Van: where the period starts.
    Bound to;                   ///< Tot: where it ends; an age ends an orphans' pension, an event makes it lifelong.
    QList<SurvivorItem> items;  ///< Every scheme that pays in this period.
};

/// A whole overview as the register wrote it, only ever produced by a successful read
/// (StatusCode "000"). Texts are the register's own (Dutch) and are shown to the adviser as they are.
struct Overview
{
    QString fileName;               ///< The file's name without its folder, as messages and the preview show it.
    QString statusCode;             ///< StatusCode; always "000" in an overview that was read.
    QString createdAt;              ///< TijdstipAanmakenBericht as written (ISO date and time); createdOn() shows it.
    QStringList remarks;            ///< Bijzonderheden: the register's remarks, Dutch.
    QStringList unreachableProviders;   ///< OntbrekendePuvsError: providers the register could not reach; the overview is incomplete.
    QStringList providersWithoutData;   ///< OntbrekendePuvsGeenGegevens: providers that hold nothing for the client.
    QList<OldAgePeriod> oldAge;     ///< OuderdomsPensioenDetails, in file order.
    QList<SurvivorPeriod> partner;  ///< PartnerPensioenDetails, in file order.
    QList<SurvivorPeriod> orphans;  ///< WezenPensioenDetails, in file order.
};

/// The outcome of a read: either an overview or a Dutch message, never both.
struct ReadResult
{
    std::optional<Overview> overview;  ///< The overview; empty when the file was refused.
    /// Why the file was refused, Dutch and ready to show the adviser: it names the file and the
    /// problem (for a field, its path in the file), e.g. "Het pensioenoverzicht x.json kan niet
    /// worden ingelezen: het bestand houdt halverwege op (afgebroken download?)". Empty on success.
    QString error;
    bool ok() const { return overview.has_value(); }  ///< Whether an overview was read.
};

/// The largest file read (8 MB). A real overview is a few tens of kilobytes; the limit keeps a
/// wrong or hostile file from filling memory, and a larger file is refused before it is read.
inline constexpr qint64 MaxFileBytes = 8 * 1024 * 1024;
/// The deepest nesting accepted. A real overview nests about ten levels; the limit keeps a
/// crafted file from exhausting the stack.
inline constexpr int MaxDepth = 32;
/// The most elements (objects, values) accepted in one file, for the same reason.
inline constexpr int MaxNodes = 500000;

/// Reads the overview file at \p path, JSON or XML (recognised by its first character, a UTF-8
/// byte-order mark and white space skipped). Refuses, with ReadResult::error, a file it cannot
/// open, one above MaxFileBytes, one that is not an overview or is truncated, one with a DTD, a
/// negative or absurd amount, a malformed date, and a StatusCode other than "000" (the register's
/// own refusal, with its remarks). Never throws; safe on any input.
VANDRELOVERZICHT_EXPORT ReadResult readOverviewFile(const QString &path);
/// The same as readOverviewFile() on bytes already in memory (an upload, a test). \p fileName is
/// used only in messages and becomes Overview::fileName.
VANDRELOVERZICHT_EXPORT ReadResult readOverview(const QByteArray &data, const QString &fileName);

} // namespace VandrelPensioen::Overzicht
