// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "store.h"

#include "caseaddress.h"
#include "dialect.h"
#include "sqlsupport.h"

#include <QSqlError>
#include <QSqlRecord>

#include <type_traits>
#include <unordered_map>
#include <vector>

namespace Zarnoveld::detail {

using VandrelApplication::HostError;
namespace Code = VandrelApplication::HostErrorCode;

namespace {

QVariant toSql(Kind kind, const QVariant &value)
{
    switch (kind) {
    case Kind::Bool: return value.toBool() ? 1 : 0;
    case Kind::Int16:
    case Kind::Int32:
    case Kind::Byte: return value.toInt();
    case Kind::Double: return value.toDouble();
    case Kind::Float: return static_cast<double>(value.toFloat());
    case Kind::Date: {
        const QDate date = value.toDate();
        return date.isValid() ? QVariant(date.toString(Qt::ISODate)) : QVariant(QMetaType(QMetaType::QString));
    }
    case Kind::Text: return value.toString();
    }
    return value;
}

QVariant fromSql(Kind kind, const QVariant &value)
{
    switch (kind) {
    case Kind::Date:
        return value.isNull() ? QVariant(QDate()) : QVariant(QDate::fromString(value.toString(), Qt::ISODate));
    case Kind::Float:
        return QVariant(static_cast<float>(value.toDouble()));
    default:
        return normalise(kind, value);
    }
}

QString quoted(const Dialect &dialect, const char *name)
{
    return dialect.column(QLatin1String(name));
}

void createSchemaV1(QSqlDatabase &db)
{
    const Dialect &dialect = Dialect::of(db);
    for (const TableDef *t : allTables()) {
        QStringList columns{QStringLiteral("id %1 PRIMARY KEY").arg(dialect.idType)};
        if (t->parentTable)
            columns << QStringLiteral("parent_id %1 NOT NULL REFERENCES %2(id) ON DELETE CASCADE")
                           .arg(dialect.idType, QLatin1String(t->parentTable));
        columns << QStringLiteral("pos INTEGER NOT NULL");
        for (const FieldDef &f : t->fields)
            if (f.since <= 1)
                columns << QStringLiteral("%1 %2").arg(quoted(dialect, f.name), dialect.columnType(f.kind));
        execOrThrow(db, QStringLiteral("CREATE TABLE %1 (%2)").arg(QLatin1String(t->table), columns.join(QStringLiteral(", "))));
        if (t->parentTable)
            execOrThrow(db, QStringLiteral("CREATE INDEX %1_parent ON %1(parent_id, pos)").arg(QLatin1String(t->table)));
    }
    execOrThrow(db, QStringLiteral("CREATE TABLE parameters (naam TEXT PRIMARY KEY, waarde %1 NOT NULL)")
                        .arg(dialect.columnType(Kind::Double)));
}

ParameterValues readParameters(QSqlDatabase &db)
{
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT naam, waarde FROM parameters")))
        fail(Code::StoreFailed, QStringLiteral("De parameters van het dossier kunnen niet worden gelezen."));
    std::unordered_map<QString, double> values;
    while (q.next())
        values[q.value(0).toString()] = q.value(1).toDouble();
    const auto get = [&values](const char *n) { return values[QLatin1String(n)]; };
    ParameterValues params;
    params.defaultOpbouwEindloon = static_cast<float>(get("DefaultOpbouwEindloon"));
    params.defaultOpbouwMiddelloon = static_cast<float>(get("DefaultOpbouwMiddelloon"));
    params.franchiseEindloonA = get("FranchiseEindloonA");
    params.franchiseEindloonB = get("FranchiseEindloonB");
    params.franchiseA = get("FranchiseA");
    params.franchiseB = get("FranchiseB");
    params.maxAnwCompensation = get("MaxAnwCompensation");
    return params;
}

} // namespace

// A version that only adds fields adds their columns; existing rows read them as 0/empty.
static std::function<void(QSqlDatabase &)> addColumnsOfVersion(int version)
{
    return [version](QSqlDatabase &db) {
        const Dialect &dialect = Dialect::of(db);
        for (const TableDef *t : allTables())
            for (const FieldDef &f : t->fields)
                if (f.since == version)
                    execOrThrow(db, QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3 DEFAULT %4")
                                        .arg(QLatin1String(t->table), quoted(dialect, f.name), dialect.columnType(f.kind),
                                             f.kind == Kind::Text ? QStringLiteral("''")
                                             : f.kind == Kind::Date ? QStringLiteral("NULL") : QStringLiteral("0")));
    };
}

// Version 4 records each case's figure year. A file from before then carries figures without a
// year: it gets the known year whose figures it holds exactly, otherwise 2025, the year the figures
// of those versions were labelled with. Its figures stay as they are; moving the case to another
// year is the adviser's decision (zarnoveld parameters CASE --jaar N).
static void addFigureYear(QSqlDatabase &db)
{
    addColumnsOfVersion(4)(db);
    const int matched = FiscalFigures::matchingYear(readParameters(db));
    const int year = matched ? matched : FiscalFigures::kYearOfUnmarkedCases;
    execOrThrow(db, QStringLiteral("UPDATE dossier SET %1 = %2").arg(Dialect::of(db).column(QStringLiteral("Rekenjaar"))).arg(year));
}

// Version 5: the bin. A scheme there belongs to its participant: removing the participant takes
// its removed schemes along.
static void createBinTable(QSqlDatabase &db)
{
    const QString id = Dialect::of(db).idType;
    execOrThrow(db, QStringLiteral("CREATE TABLE prullenbak (id %1 PRIMARY KEY, "
                                   "aanvrager_id %1 NOT NULL REFERENCES aanvrager(id) ON DELETE CASCADE, "
                                   "positie INTEGER NOT NULL, verwijderd TEXT NOT NULL, regeling TEXT NOT NULL)").arg(id));
}

const std::vector<Store::Migration> &Store::migrations()
{
    static const std::vector<Migration> steps{
        {0, createSchemaV1},
        {1, addColumnsOfVersion(2)},
        {2, addColumnsOfVersion(3)},
        {3, addFigureYear},
        {4, createBinTable},
    };
    return steps;
}

int Store::versionOf(QSqlDatabase &db)
{
    if (!hasTable(db, QStringLiteral("schema_version")))
        return 0;
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT version FROM schema_version")) || !q.next())
        return 0;
    return q.value(0).toInt();
}

namespace {

const Store::Migration &stepFrom(const std::vector<Store::Migration> &steps, int version)
{
    auto step = std::find_if(steps.begin(), steps.end(), [version](const Store::Migration &m) { return m.from == version; });
    if (step == steps.end())
        fail(Code::StoreFailed, QStringLiteral("Het dossier kan niet van versie %1 naar versie %2 worden bijgewerkt.")
                                    .arg(version).arg(version + 1));
    return *step;
}

void stamp(QSqlDatabase &db, int version)
{
    execOrThrow(db, QStringLiteral("CREATE TABLE IF NOT EXISTS schema_version (version INTEGER NOT NULL)"));
    execOrThrow(db, QStringLiteral("DELETE FROM schema_version"));
    execOrThrow(db, QStringLiteral("INSERT INTO schema_version (version) VALUES (%1)").arg(version));
}

} // namespace

void Store::migrate(QSqlDatabase &db, const std::vector<Migration> &steps, int target)
{
    for (int version = versionOf(db); version < target; ++version) {
        const Migration &step = stepFrom(steps, version);
        if (!db.transaction())
            fail(Code::StoreFailed, QStringLiteral("Het dossier kan niet worden bijgewerkt: %1").arg(db.lastError().text()));
        try {
            step.apply(db);
            stamp(db, version + 1);
            if (!db.commit())
                fail(Code::StoreFailed, QStringLiteral("Het dossier kan niet worden bijgewerkt: %1").arg(db.lastError().text()));
        } catch (...) {
            db.rollback();
            throw;
        }
    }
}

void Store::migrateInTransaction(QSqlDatabase &db, const std::vector<Migration> &steps, int target)
{
    for (int version = versionOf(db); version < target; ++version) {
        stepFrom(steps, version).apply(db);
        stamp(db, version + 1);
    }
}

Store::Store() = default;

Store::~Store()
{
    m_queries.clear();
    if (m_db.isValid())
        m_db.close();
    m_db = QSqlDatabase();
    if (!m_connection.isEmpty())
        QSqlDatabase::removeDatabase(m_connection);
}

std::unique_ptr<Store> Store::create(const QString &address, const DossierNode &tree,
                                     const ParameterValues &params, bool replaceLeftover)
{
    if (CaseAddress::isServer(address))
        return createOnServer(address, tree, params, {}, nullptr, nullptr);
    return createSqlite(address, tree, params, replaceLeftover);
}

std::unique_ptr<Store> Store::createWhole(const QString &address, const DossierNode &tree,
                                          const ParameterValues &params, const std::vector<BinItem> &bin,
                                          std::shared_ptr<DossierNode> &loaded, ParameterValues &loadedParams)
{
    if (CaseAddress::isServer(address))
        return createOnServer(address, tree, params, bin, &loaded, &loadedParams);
    return createWholeSqlite(address, tree, params, bin, loaded, loadedParams);
}

std::unique_ptr<Store> Store::open(const QString &address, std::shared_ptr<DossierNode> &tree,
                                   ParameterValues &params, Access access)
{
    if (CaseAddress::isServer(address))
        return openOnServer(address, tree, params, access);
    return openSqlite(address, tree, params);
}

QString Store::holderOf(const QString &address)
{
    return CaseAddress::isServer(address) ? holderOnServer(address) : holderOfSqlite(address);
}

namespace {

// A new node at the end of its parent's list.
template <typename Node>
Node *adopt(std::vector<std::shared_ptr<Node>> &children)
{
    children.push_back(std::make_shared<Node>());
    return children.back().get();
}

} // namespace

std::shared_ptr<DossierNode> Store::load(QSqlDatabase &db, ParameterValues &params)
{
    params = readParameters(db);

    // Reads every row of a table in order; fill gets the record and its parent id.
    const Dialect &dialect = Dialect::of(db);
    const auto readTable = [&db, &dialect](const TableDef &t, auto &&make) {
        QStringList columns{QStringLiteral("id"), t.parentTable ? QStringLiteral("parent_id") : QStringLiteral("0")};
        for (const FieldDef &f : t.fields)
            columns << quoted(dialect, f.name);
        QSqlQuery q(db);
        q.setForwardOnly(true);
        if (!q.exec(QStringLiteral("SELECT %1 FROM %2 ORDER BY %3pos")
                        .arg(columns.join(QStringLiteral(", ")), QLatin1String(t.table),
                             t.parentTable ? QStringLiteral("parent_id, ") : QString())))
            fail(Code::StoreFailed, QStringLiteral("Het dossier kan niet worden gelezen: %1").arg(q.lastError().text()));
        while (q.next()) {
            auto record = make(q.value(1).toLongLong());
            if (!record)
                continue;
            record->id = q.value(0).toLongLong();
            for (size_t i = 0; i < t.fields.size(); ++i)
                record->v[i] = fromSql(t.fields[i].kind, q.value(static_cast<int>(i) + 2));
        }
    };

    std::shared_ptr<DossierNode> dossier;
    readTable(DossierTable, [&](qint64) -> Record * {
        if (dossier)
            return nullptr;
        dossier = std::make_shared<DossierNode>();
        return dossier.get();
    });
    if (!dossier)
        fail(Code::InvalidState, QStringLiteral("Het dossier bevat geen dossier."));

    // Reads a table whose records hang under records read before. makeChild adds a node to its
    // parent and returns it; a record whose parent is missing is skipped, as the foreign key
    // would have refused it. Returns the nodes read by id, for the tables under this one.
    const auto readChildren = [&readTable](const TableDef &t, const auto &parents, auto &&makeChild) {
        using Node = std::remove_pointer_t<decltype(makeChild(*parents.begin()->second))>;
        std::vector<Node *> read;
        readTable(t, [&](qint64 parent) -> Record * {
            const auto it = parents.find(parent);
            if (it == parents.end())
                return nullptr;
            read.push_back(makeChild(*it->second));
            return read.back();
        });
        // A node's id is filled in after makeChild returns, so the map is built afterwards.
        std::unordered_map<qint64, Node *> byId;
        for (Node *node : read)
            byId[node->id] = node;
        return byId;
    };

    std::unordered_map<qint64, AanvragerNode *> aanvragers;
    readTable(AanvragerTable, [&](qint64) -> Record * { return adopt(dossier->aanvragers); });
    for (const auto &a : dossier->aanvragers)
        aanvragers[a->id] = a.get();
    readChildren(DienstverbandTable, aanvragers, [](AanvragerNode &a) { return adopt(a.dienstverbanden); });
    const auto pensioenen = readChildren(PensioenTable, aanvragers, [](AanvragerNode &a) {
        PensioenNode *node = adopt(a.pensioenen);
        node->aanvrager = &a;
        return node;
    });
    const auto rows = readChildren(OuderdomTable, pensioenen, [](PensioenNode &p) {
        OuderdomNode *node = adopt(p.rows);
        node->pensioen = &p;
        return node;
    });
    readChildren(ScenarioRegelTable, rows, [](OuderdomNode &r) { return adopt(r.regels); });
    readChildren(AoTable, pensioenen, [](PensioenNode &p) { return adopt(p.ao); });
    if (dossier->aanvragers.empty())
        fail(Code::InvalidState, QStringLiteral("Het dossier bevat geen aanvrager."));
    return dossier;
}

QSqlQuery &Store::prepared(const QString &key, const QString &sql)
{
    auto it = m_queries.find(key);
    if (it != m_queries.end())
        return it->second;
    QSqlQuery q(m_db);
    if (!q.prepare(sql))
        failed(QStringLiteral("prepare"), q.lastError().text());
    return m_queries.emplace(key, std::move(q)).first->second;
}

void Store::exec(QSqlQuery &query)
{
    if (!query.exec())
        failed(query.lastQuery(), query.lastError().text());
}

void Store::failed(const QString &, const QString &driverText)
{
    fail(Code::StoreFailed, QStringLiteral("Het dossier weigerde de wijziging: %1").arg(driverText));
}

void Store::begin()
{
    if (m_readOnly)
        fail(Code::InvalidState, QStringLiteral("Het dossier %1 is alleen-lezen geopend: de wijziging is niet opgeslagen.")
                                     .arg(m_name));
    control(QStringLiteral("begin"), m_dialect->begin);
}

void Store::commit()
{
    control(QStringLiteral("commit"), QStringLiteral("COMMIT"));
}

void Store::control(const QString &key, const QString &sql)
{
    if (m_dialect->preparesControl) {
        exec(prepared(key, sql));
        return;
    }
    QSqlQuery q(m_db);
    if (!q.exec(sql))
        failed(sql, q.lastError().text());
}

void Store::rollback()
{
    // Called while another failure is on its way to the adviser: it must not replace that one.
    try {
        control(QStringLiteral("rollback"), QStringLiteral("ROLLBACK"));
    } catch (const HostError &) {
    }
}

void Store::clear()
{
    for (const char *table : {"prullenbak", "dossier", "parameters"})
        exec(prepared(QStringLiteral("clear:%1").arg(QLatin1String(table)),
                      QStringLiteral("DELETE FROM %1").arg(QLatin1String(table))));
}

void Store::fill(const DossierNode &tree, const ParameterValues &params, const std::vector<BinItem> &bin)
{
    writeParameters(params);
    insertTree(tree);
    for (const BinItem &item : bin)
        binInsert(item);
}

void Store::update(const Record &record, int field, const QVariant &value)
{
    const FieldDef &f = record.def->fields[field];
    QSqlQuery &q = prepared(QStringLiteral("u:%1:%2").arg(QLatin1String(record.def->table)).arg(field),
                            QStringLiteral("UPDATE %1 SET %2 = ? WHERE id = ?").arg(QLatin1String(record.def->table), quoted(*m_dialect, f.name)));
    q.bindValue(0, toSql(f.kind, value));
    q.bindValue(1, record.id);
    exec(q);
    if (q.numRowsAffected() != 1)
        fail(Code::StoreFailed, QStringLiteral("Het dossier mist een gegeven dat het programma wel kent (%1 %2).")
                                    .arg(QLatin1String(record.def->table)).arg(record.id));
}

void Store::updateAll(const Record &record)
{
    const TableDef &t = *record.def;
    QSqlQuery &q = prepared(QStringLiteral("ua:%1").arg(QLatin1String(t.table)), [&t, this] {
        QStringList sets;
        for (const FieldDef &f : t.fields)
            sets << quoted(*m_dialect, f.name) + QStringLiteral(" = ?");
        return QStringLiteral("UPDATE %1 SET %2 WHERE id = ?").arg(QLatin1String(t.table), sets.join(QStringLiteral(", ")));
    }());
    int i = 0;
    for (const FieldDef &f : t.fields) {
        q.bindValue(i, toSql(f.kind, record.v[static_cast<size_t>(i)]));
        ++i;
    }
    q.bindValue(i, record.id);
    exec(q);
}

void Store::insert(const Record &record, qint64 parentId, int pos)
{
    const TableDef &t = *record.def;
    QSqlQuery &q = prepared(QStringLiteral("i:%1").arg(QLatin1String(t.table)), [&t, this] {
        QStringList columns{QStringLiteral("id")};
        if (t.parentTable)
            columns << QStringLiteral("parent_id");
        columns << QStringLiteral("pos");
        for (const FieldDef &f : t.fields)
            columns << quoted(*m_dialect, f.name);
        QStringList marks;
        for (qsizetype i = 0; i < columns.size(); ++i)
            marks << QStringLiteral("?");
        return QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
            .arg(QLatin1String(t.table), columns.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
    }());
    int i = 0;
    q.bindValue(i++, record.id);
    if (t.parentTable)
        q.bindValue(i++, parentId);
    q.bindValue(i++, pos);
    for (size_t f = 0; f < t.fields.size(); ++f)
        q.bindValue(i++, toSql(t.fields[f].kind, record.v[f]));
    exec(q);
}

void Store::remove(const Record &record)
{
    QSqlQuery &q = prepared(QStringLiteral("d:%1").arg(QLatin1String(record.def->table)),
                            QStringLiteral("DELETE FROM %1 WHERE id = ?").arg(QLatin1String(record.def->table)));
    q.bindValue(0, record.id);
    exec(q);
}

void Store::shift(const TableDef &table, qint64 parentId, int afterPos, int delta)
{
    QSqlQuery &q = prepared(QStringLiteral("s:%1").arg(QLatin1String(table.table)),
                            QStringLiteral("UPDATE %1 SET pos = pos + ? WHERE parent_id = ? AND pos > ?").arg(QLatin1String(table.table)));
    q.bindValue(0, delta);
    q.bindValue(1, parentId);
    q.bindValue(2, afterPos);
    exec(q);
}

void Store::insertPensioen(const PensioenNode &pen, qint64 parentId, int pos)
{
    insert(pen, parentId, pos);
    int r = 0;
    for (const auto &row : pen.rows) {
        insert(*row, pen.id, ++r);
        int k = 0;
        for (const auto &regel : row->regels)
            insert(*regel, row->id, ++k);
    }
    int a = 0;
    for (const auto &ao : pen.ao)
        insert(*ao, pen.id, ++a);
}

void Store::writeParameters(const ParameterValues &params)
{
    // The same upsert in both dialects (SQLite has it since 3.24).
    QSqlQuery &q = prepared(QStringLiteral("param"),
                            QStringLiteral("INSERT INTO parameters (naam, waarde) VALUES (?, ?) "
                                           "ON CONFLICT (naam) DO UPDATE SET waarde = excluded.waarde"));
    const std::vector<double> values = FiscalFigures::asList(params);
    for (size_t i = 0; i < values.size(); ++i) {
        q.bindValue(0, FiscalFigures::names().at(qsizetype(i)));
        q.bindValue(1, values[i]);
        exec(q);
    }
}

void Store::insertTree(const DossierNode &tree)
{
    insert(tree, 0, 1);
    int n = 0;
    for (const auto &anv : tree.aanvragers) {
        insert(*anv, tree.id, ++n);
        int k = 0;
        for (const auto &dv : anv->dienstverbanden)
            insert(*dv, anv->id, ++k);
        k = 0;
        for (const auto &pen : anv->pensioenen)
            insertPensioen(*pen, anv->id, ++k);
    }
}

void Store::binInsert(const BinItem &item)
{
    QSqlQuery &q = prepared(QStringLiteral("bin:i"), QStringLiteral("INSERT INTO prullenbak (id, aanvrager_id, positie, verwijderd, regeling) "
                                                                      "VALUES (?, ?, ?, ?, ?)"));
    q.bindValue(0, item.id);
    q.bindValue(1, item.aanvragerId);
    q.bindValue(2, item.position);
    q.bindValue(3, item.removedAt.toString(Qt::ISODate));
    q.bindValue(4, QString::fromUtf8(item.scheme));
    exec(q);
}

void Store::binRemove(qint64 id)
{
    QSqlQuery &q = prepared(QStringLiteral("bin:d"), QStringLiteral("DELETE FROM prullenbak WHERE id = ?"));
    q.bindValue(0, id);
    exec(q);
}

std::vector<BinItem> Store::loadBin()
{
    std::vector<BinItem> items;
    QSqlQuery q(m_db);
    q.setForwardOnly(true);
    if (!q.exec(QStringLiteral("SELECT id, aanvrager_id, positie, verwijderd, regeling FROM prullenbak ORDER BY id")))
        fail(Code::StoreFailed, QStringLiteral("De prullenbak van het dossier kan niet worden gelezen: %1").arg(q.lastError().text()));
    while (q.next()) {
        BinItem item;
        item.id = q.value(0).toLongLong();
        item.aanvragerId = q.value(1).toLongLong();
        item.position = q.value(2).toInt();
        item.removedAt = QDateTime::fromString(q.value(3).toString(), Qt::ISODate);
        item.scheme = q.value(4).toString().toUtf8();
        items.push_back(std::move(item));
    }
    return items;
}

} // namespace Zarnoveld::detail
