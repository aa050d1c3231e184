// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "casedata.h"

#include <array>

namespace Zarnoveld::detail {

using VandrelApplication::HostError;
namespace Code = VandrelApplication::HostErrorCode;

namespace {

constexpr FieldDef dossierFields[] = {
    {"SyncVlaggen", Kind::Int32},
    {"Rekenjaar", Kind::Int16, 4},   // the year of the case's fiscal figures
};
constexpr FieldDef aanvragerFields[] = {
    {"Naam", Kind::Text},
    {"GeboorteDatum", Kind::Date},
    {"Categorie", Kind::Byte},
};
constexpr FieldDef dienstverbandFields[] = {
    {"Key", Kind::Text},
    {"Werkgever", Kind::Text},
    {"Dt_Begin", Kind::Date},
    {"Dt_Einde", Kind::Date},
    {"Salaris", Kind::Double},
    {"Dt_InkomenMeetellenTot", Kind::Date},
};
constexpr FieldDef pensioenFields[] = {
    {"HuidigeWerkgever", Kind::Bool},
    {"Uitvoerder", Kind::Text},
    {"Branche", Kind::Text},
    {"DienstverbandKey", Kind::Text},
    {"RemoveOnClose", Kind::Bool},
    {"SoortRegeling", Kind::Int16},
    {"RegelingBekend", Kind::Bool},
    {"Salaris", Kind::Double},
    {"Franchise", Kind::Double},
    {"Grondslag", Kind::Double},
    {"OpbouwPercentage", Kind::Float},
    {"Aangroei", Kind::Double},
    {"Premie", Kind::Double},
    {"Doelvermogen", Kind::Double},
    {"RekenrenteOpbouw", Kind::Float},
    {"RekenrenteUitkering", Kind::Float},
    {"Opgebouwd", Kind::Double},
    {"Dt_Overzicht", Kind::Date},
    {"BijdrageOP", Kind::Double},
    {"BijdragePreP", Kind::Double},
    {"BijdrageVrijwillig", Kind::Double},
    {"TOP", Kind::Bool},
    {"BedragTOP", Kind::Double},
    {"PP", Kind::Bool},
    {"BedragPP", Kind::Double},
    {"Pc_PP", Kind::Float},
    {"PPNaAow", Kind::Bool},
    {"BedragPPNaAow", Kind::Double},
    {"Pc_PPNaAow", Kind::Float},
    {"PPna65", Kind::Bool},
    {"BedragPPna65", Kind::Double},
    {"Pc_PPna65", Kind::Float},
    {"PpNa65TotAow", Kind::Bool},
    {"BedragPpNa65TotAow", Kind::Double},
    {"Pc_PpNa65TotAow", Kind::Float},
    {"WzP", Kind::Bool},
    {"BedragWzP", Kind::Double},
    {"Pc_WzP", Kind::Float},
    {"EindLeeftijdWzP", Kind::Int16},
    {"IP", Kind::Bool},
    {"BedragIP", Kind::Double},
    {"Pc_IP", Kind::Float},
    {"Cd_UitkeringSoort", Kind::Int16},
    {"Cd_UitkeringObv", Kind::Int32},
    {"AnwCompensatie", Kind::Bool},
    {"BedragAnwCompensatie", Kind::Double},
    {"Dt_65", Kind::Date},
    {"Dt_PensioenIngang", Kind::Date},
    {"HeeftSpecificatie", Kind::Bool},
    {"Cd_RvcAfwijking", Kind::Int32},
    {"Pc_RvcAfwijking", Kind::Float},
    {"Pc_RvcUitkering", Kind::Float},
    {"Dienstjaren", Kind::Int16, 2},
    // The pension register's identifier of the scheme the record was imported from.
    {"HerkenningsNummer", Kind::Text, 3},
};
constexpr FieldDef ouderdomFields[] = {
    {"Key", Kind::Text},
    {"Leeftijd", Kind::Int32},
    {"OP", Kind::Bool},
    {"BedragOP", Kind::Double},
    {"Dt_IngangOP", Kind::Date},
    {"LeeftijdOP", Kind::Int32},
    {"PreP", Kind::Bool},
    {"BedragPreP", Kind::Double},
    {"Dt_IngangPreP", Kind::Date},
    {"LeeftijdPreP", Kind::Int32},
    {"ScenarioBedrag", Kind::Double},
};
constexpr FieldDef scenarioRegelFields[] = {
    {"Maand", Kind::Int16},
    {"Bedrag", Kind::Double},
};
constexpr FieldDef aoFields[] = {
    {"Pc_AoVanaf", Kind::Float},
    {"Pc_AoTot", Kind::Float},
    {"Pc_Uitkering", Kind::Float},
};

static_assert(std::size(dossierFields) == DossierF::Count);
static_assert(std::size(aanvragerFields) == AanvragerF::Count);
static_assert(std::size(dienstverbandFields) == DienstverbandF::Count);
static_assert(std::size(pensioenFields) == PensioenF::Count);
static_assert(std::size(ouderdomFields) == OuderdomF::Count);
static_assert(std::size(scenarioRegelFields) == ScenarioRegelF::Count);
static_assert(std::size(aoFields) == AoF::Count);

} // namespace

const TableDef DossierTable{"dossier", nullptr, dossierFields, "Het dossier bestaat niet meer."};
const TableDef AanvragerTable{"aanvrager", "dossier", aanvragerFields,
                              "Deze aanvrager bestaat niet meer in het dossier."};
const TableDef DienstverbandTable{"dienstverband", "aanvrager", dienstverbandFields,
                                  "Dit dienstverband bestaat niet meer."};
const TableDef PensioenTable{"pensioen", "aanvrager", pensioenFields,
                             "Deze pensioenregeling bestaat niet meer."};
const TableDef OuderdomTable{"ouderdomregel", "pensioen", ouderdomFields,
                             "Deze regel van de pensioenspecificatie bestaat niet meer."};
const TableDef ScenarioRegelTable{"scenarioregel", "ouderdomregel", scenarioRegelFields,
                                  "Deze regel van het scenario bestaat niet meer."};
const TableDef AoTable{"aouitkering", "pensioen", aoFields,
                       "Deze regel van de AO-uitkeringsstaffel bestaat niet meer."};

std::span<const TableDef *const> allTables()
{
    static const std::array<const TableDef *, 7> tables{
        &DossierTable, &AanvragerTable, &DienstverbandTable, &PensioenTable,
        &OuderdomTable, &ScenarioRegelTable, &AoTable};
    return tables;
}

QVariant defaultValue(Kind kind)
{
    switch (kind) {
    case Kind::Bool: return QVariant(false);
    case Kind::Int16:
    case Kind::Int32:
    case Kind::Byte: return QVariant(0);
    case Kind::Double: return QVariant(0.0);
    case Kind::Float: return QVariant(0.0f);
    case Kind::Date: return QVariant(QDate());
    case Kind::Text: return QVariant(QString());
    }
    return {};
}

QVariant normalise(Kind kind, const QVariant &value)
{
    // Whole numbers of every width are held as int, cut to their width first: reading an int back
    // is direct, while a short or a byte goes through Qt's type conversion on every read.
    switch (kind) {
    case Kind::Bool: return QVariant(value.toBool());
    case Kind::Int16: return QVariant(int(static_cast<qint16>(value.toInt())));
    case Kind::Int32: return QVariant(value.toInt());
    case Kind::Byte: return QVariant(int(static_cast<quint8>(value.toUInt())));
    case Kind::Double: return QVariant(value.toDouble());
    case Kind::Float: return QVariant(value.toFloat());
    case Kind::Date: {
        // Kept as given (a 1900 placeholder stays 1900) so that what the library wrote reads back.
        const QDate date = value.toDate();
        return QVariant(date.isValid() ? date : QDate());
    }
    case Kind::Text: return QVariant(value.toString());
    }
    return value;
}

Record::Record(const TableDef &table)
    : def(&table)
{
    v.reserve(table.fields.size());
    for (const FieldDef &field : table.fields)
        v.push_back(defaultValue(field.kind));
}

void Record::check() const
{
    if (!alive)
        throw HostError(Code::NotFound, QString::fromUtf8(def->notFound), QStringLiteral("Zarnoveld"));
}

void kill(Record &record)
{
    record.alive = false;
    if (auto *p = dynamic_cast<PensioenNode *>(&record)) {
        for (auto &row : p->rows)
            kill(*row);
        for (auto &a : p->ao)
            kill(*a);
        p->pending.clear();
    } else if (auto *o = dynamic_cast<OuderdomNode *>(&record)) {
        for (auto &r : o->regels)
            kill(*r);
    } else if (auto *a = dynamic_cast<AanvragerNode *>(&record)) {
        for (auto &dv : a->dienstverbanden)
            kill(*dv);
        for (auto &pen : a->pensioenen)
            kill(*pen);
    } else if (auto *d = dynamic_cast<DossierNode *>(&record)) {
        for (auto &anv : d->aanvragers)
            kill(*anv);
    }
}

} // namespace Zarnoveld::detail
