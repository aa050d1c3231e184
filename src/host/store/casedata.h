// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// In-memory data of one advice case: plain records with a generic field table, so that the store,
// the JSON exchange and CopyFrom all walk the same list of fields.

#include "fiscalfigures.h"
#include "hostmodel.h"

#include <QByteArray>
#include <QDateTime>
#include <QDate>
#include <QString>
#include <QVariant>

#include <memory>
#include <span>
#include <vector>

namespace Zarnoveld::detail {

using ParameterValues = FiscalFigures::Values;

// A scheme the host removed, kept in the case's bin until the adviser puts it back or empties it.
struct BinItem
{
    qint64 id = 0;
    qint64 aanvragerId = 0;   // the record id of the participant it belonged to
    int position = 0;         // its number in the participant's list when it was removed
    QDateTime removedAt;      // UTC, whole seconds
    QByteArray scheme;        // the scheme in the export's JSON form
};


enum class Kind { Bool, Int16, Int32, Byte, Double, Float, Date, Text };

struct FieldDef
{
    const char *name;   // host operation name; also the column and the JSON field
    Kind kind;
    int since = 1;      // the schema version that added the column
};

struct TableDef
{
    const char *table;        // SQLite table
    const char *parentTable;  // nullptr for the root
    std::span<const FieldDef> fields;
    const char *notFound;     // Dutch text when a handle outlives its record
};

QVariant defaultValue(Kind kind);
// Normalises a value to the field's C++ type; a date not filled becomes a null QDate.
QVariant normalise(Kind kind, const QVariant &value);

namespace DossierF { enum : int { SyncVlaggen, Rekenjaar, Count }; }
namespace AanvragerF { enum : int { Naam, GeboorteDatum, Categorie, Count }; }
namespace DienstverbandF { enum : int { Key, Werkgever, Dt_Begin, Dt_Einde, Salaris, Dt_InkomenMeetellenTot, Count }; }
namespace PensioenF {
enum : int {
    HuidigeWerkgever, Uitvoerder, Branche, DienstverbandKey, RemoveOnClose,
    SoortRegeling, RegelingBekend, Salaris, Franchise, Grondslag, OpbouwPercentage, Aangroei,
    Premie, Doelvermogen, RekenrenteOpbouw, RekenrenteUitkering, Opgebouwd, Dt_Overzicht,
    BijdrageOP, BijdragePreP, BijdrageVrijwillig,
    TOP, BedragTOP,
    PP, BedragPP, Pc_PP,
    PPNaAow, BedragPPNaAow, Pc_PPNaAow,
    PPna65, BedragPPna65, Pc_PPna65,
    PpNa65TotAow, BedragPpNa65TotAow, Pc_PpNa65TotAow,
    WzP, BedragWzP, Pc_WzP, EindLeeftijdWzP,
    IP, BedragIP, Pc_IP, Cd_UitkeringSoort, Cd_UitkeringObv,
    AnwCompensatie, BedragAnwCompensatie,
    Dt_65, Dt_PensioenIngang, HeeftSpecificatie,
    Cd_RvcAfwijking, Pc_RvcAfwijking, Pc_RvcUitkering,
    Dienstjaren,
    HerkenningsNummer,
    Count
};
}
namespace OuderdomF {
enum : int {
    Key, Leeftijd, OP, BedragOP, Dt_IngangOP, LeeftijdOP,
    PreP, BedragPreP, Dt_IngangPreP, LeeftijdPreP, ScenarioBedrag, Count
};
}
namespace ScenarioRegelF { enum : int { Maand, Bedrag, Count }; }
namespace AoF { enum : int { Pc_AoVanaf, Pc_AoTot, Pc_Uitkering, Count }; }

extern const TableDef DossierTable;
extern const TableDef AanvragerTable;
extern const TableDef DienstverbandTable;
extern const TableDef PensioenTable;
extern const TableDef OuderdomTable;
extern const TableDef ScenarioRegelTable;
extern const TableDef AoTable;
// Parent before child: the order in which tables are created and a case is written.
std::span<const TableDef *const> allTables();

struct Record : std::enable_shared_from_this<Record>
{
    explicit Record(const TableDef &def);
    virtual ~Record() = default;

    const TableDef *def;
    qint64 id = 0;
    bool alive = true;
    std::vector<QVariant> v;

    bool b(int f) const { return v[f].toBool(); }
    qint32 i(int f) const { return v[f].toInt(); }
    double d(int f) const { return v[f].toDouble(); }
    float fl(int f) const { return v[f].toFloat(); }
    QDate date(int f) const { return v[f].toDate(); }
    QString s(int f) const { return v[f].toString(); }
    // Throws HostError(NotFound) when the record was removed.
    void check() const;
};

struct PensioenNode;
struct AanvragerNode;

struct ScenarioRegelNode : Record
{
    ScenarioRegelNode() : Record(ScenarioRegelTable) {}
};

struct OuderdomNode : Record
{
    OuderdomNode() : Record(OuderdomTable) {}
    std::vector<std::shared_ptr<ScenarioRegelNode>> regels;
    PensioenNode *pensioen = nullptr;
};

struct AoNode : Record
{
    AoNode() : Record(AoTable) {}
};

struct PensioenNode : Record
{
    PensioenNode() : Record(PensioenTable) {}
    std::vector<std::shared_ptr<OuderdomNode>> rows;
    std::vector<std::shared_ptr<AoNode>> ao;
    AanvragerNode *aanvrager = nullptr;   // nullptr for a snapshot
    bool deferred = false;
    struct Pending { std::shared_ptr<Record> record; int field; };
    std::vector<Pending> pending;
};

struct DienstverbandNode : Record
{
    DienstverbandNode() : Record(DienstverbandTable) {}
};

struct AanvragerNode : Record
{
    AanvragerNode() : Record(AanvragerTable) {}
    std::vector<std::shared_ptr<DienstverbandNode>> dienstverbanden;
    std::vector<std::shared_ptr<PensioenNode>> pensioenen;
};

struct DossierNode : Record
{
    DossierNode() : Record(DossierTable) {}
    std::vector<std::shared_ptr<AanvragerNode>> aanvragers;
};

// Marks a record and everything below it as gone, so that handles to them throw.
void kill(Record &record);

} // namespace Zarnoveld::detail
