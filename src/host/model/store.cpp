// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "store.h"

#include "safefile.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlRecord>
#include <QUrl>
#include <QUuid>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>
#include <unordered_map>
#include <vector>

namespace Zarnoveld::detail {

using VandrelApplication::HostError;
namespace Code = VandrelApplication::HostErrorCode;

namespace {

const QString kSource = QStringLiteral("Zarnoveld");

[[noreturn]] void fail(qint32 code, const QString &text)
{
    throw HostError(code, text, kSource);
}

QString columnType(Kind kind)
{
    switch (kind) {
    case Kind::Double:
    case Kind::Float:
        return QStringLiteral("REAL");
    case Kind::Date:
    case Kind::Text:
        return QStringLiteral("TEXT");
    default:
        return QStringLiteral("INTEGER");
    }
}

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

QString quoted(const char *name)
{
    return QLatin1Char('"') + QLatin1String(name) + QLatin1Char('"');
}

void execOrThrow(QSqlDatabase &db, const QString &sql)
{
    QSqlQuery q(db);
    if (!q.exec(sql))
        fail(Code::StoreFailed, QStringLiteral("Het dossierbestand kon niet worden bijgewerkt: %1")
                                    .arg(q.lastError().text()));
}

void createSchemaV1(QSqlDatabase &db)
{
    for (const TableDef *t : allTables()) {
        QStringList columns{QStringLiteral("id INTEGER PRIMARY KEY")};
        if (t->parentTable)
            columns << QStringLiteral("parent_id INTEGER NOT NULL REFERENCES %1(id) ON DELETE CASCADE")
                           .arg(QLatin1String(t->parentTable));
        columns << QStringLiteral("pos INTEGER NOT NULL");
        for (const FieldDef &f : t->fields)
            if (f.since <= 1)
                columns << QStringLiteral("%1 %2").arg(quoted(f.name), columnType(f.kind));
        execOrThrow(db, QStringLiteral("CREATE TABLE %1 (%2)").arg(QLatin1String(t->table), columns.join(QStringLiteral(", "))));
        if (t->parentTable)
            execOrThrow(db, QStringLiteral("CREATE INDEX %1_parent ON %1(parent_id, pos)").arg(QLatin1String(t->table)));
    }
    execOrThrow(db, QStringLiteral("CREATE TABLE parameters (naam TEXT PRIMARY KEY, waarde REAL NOT NULL)"));
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

bool hasTable(QSqlDatabase &db, const QString &name)
{
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?"));
    q.addBindValue(name);
    return q.exec() && q.next();
}

QString fileName(const QString &path)
{
    return QFileInfo(path).fileName();
}

} // namespace

// A version that only adds fields adds their columns; existing rows read them as 0/empty.
static std::function<void(QSqlDatabase &)> addColumnsOfVersion(int version)
{
    return [version](QSqlDatabase &db) {
        for (const TableDef *t : allTables())
            for (const FieldDef &f : t->fields)
                if (f.since == version)
                    execOrThrow(db, QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3 DEFAULT %4")
                                        .arg(QLatin1String(t->table), quoted(f.name), columnType(f.kind),
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
    execOrThrow(db, QStringLiteral("UPDATE dossier SET \"Rekenjaar\" = %1").arg(year));
}

// Version 5: the bin. A scheme there belongs to its participant: removing the participant takes
// its removed schemes along.
static void createBinTable(QSqlDatabase &db)
{
    execOrThrow(db, QStringLiteral("CREATE TABLE prullenbak (id INTEGER PRIMARY KEY, "
                                   "aanvrager_id INTEGER NOT NULL REFERENCES aanvrager(id) ON DELETE CASCADE, "
                                   "positie INTEGER NOT NULL, verwijderd TEXT NOT NULL, regeling TEXT NOT NULL)"));
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

void Store::migrate(QSqlDatabase &db, const std::vector<Migration> &steps, int target)
{
    for (int version = versionOf(db); version < target; ++version) {
        auto step = std::find_if(steps.begin(), steps.end(), [version](const Migration &m) { return m.from == version; });
        if (step == steps.end())
            fail(Code::StoreFailed, QStringLiteral("Het dossierbestand kan niet van versie %1 naar versie %2 worden bijgewerkt.")
                                        .arg(version).arg(version + 1));
        if (!db.transaction())
            fail(Code::StoreFailed, QStringLiteral("Het dossierbestand kan niet worden bijgewerkt: %1").arg(db.lastError().text()));
        try {
            step->apply(db);
            execOrThrow(db, QStringLiteral("CREATE TABLE IF NOT EXISTS schema_version (version INTEGER NOT NULL)"));
            execOrThrow(db, QStringLiteral("DELETE FROM schema_version"));
            execOrThrow(db, QStringLiteral("INSERT INTO schema_version (version) VALUES (%1)").arg(version + 1));
            if (!db.commit())
                fail(Code::StoreFailed, QStringLiteral("Het dossierbestand kan niet worden bijgewerkt: %1").arg(db.lastError().text()));
        } catch (...) {
            db.rollback();
            throw;
        }
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

void Store::openConnection(bool readOnly)
{
    m_queries.clear();
    if (m_db.isValid())
        m_db.close();
    m_db = QSqlDatabase();
    if (!m_connection.isEmpty())
        QSqlDatabase::removeDatabase(m_connection);
    // Each case has its own connection: several cases (and tests) may be open side by side.
    m_connection = QStringLiteral("zarnoveld-%1").arg(QUuid::createUuid().toString(QUuid::Id128));
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    // A case this user may not change, with nothing in its log, is read as an unchanging file:
    // SQLite then needs no shared-memory index next to it, which such a folder may not allow
    // and which would be a change.
    const QFileInfo wal(m_path + QStringLiteral("-wal"));
    if (m_readOnly && (!wal.exists() || wal.size() == 0)) {
        m_db.setDatabaseName(QUrl::fromLocalFile(QFileInfo(m_path).absoluteFilePath()).toString(QUrl::FullyEncoded)
                             + QStringLiteral("?immutable=1"));
        m_db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=0"));
    } else {
        m_db.setDatabaseName(m_path);
        m_db.setConnectOptions(readOnly ? QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=0")
                                        : QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
    }
    if (!m_db.open())
        fail(Code::StoreFailed, QStringLiteral("Het dossier %1 kan niet worden geopend: %2")
                                    .arg(fileName(m_path), m_db.lastError().text()));
}

// Write-ahead log: a reader never blocks the single writer and a commit is one append. With
// synchronous=FULL the log is flushed to disk before a commit returns, so an edit the screen
// accepted survives a power cut, not only a crash of the program. Leaving a field then costs one
// flush of the disk, which is most of its time (bench_leavefield measures both).
static void configure(QSqlDatabase &db)
{
    execOrThrow(db, QStringLiteral("PRAGMA journal_mode=WAL"));
    execOrThrow(db, QStringLiteral("PRAGMA synchronous=FULL"));
    execOrThrow(db, QStringLiteral("PRAGMA foreign_keys=ON"));
}

// The case file and what SQLite keeps next to it hold personal data: owner only.
static void makeCasePrivate(const QString &path)
{
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral(".lock")})
        Zarnoveld::SafeFile::makePrivate(path + suffix);
}

// Another program "has the case open" when it holds our lock file next to the case (another
// zarnoveld), or when it holds a write transaction on the file itself (any SQLite tool). The lock
// file is a QLockFile: a lock left behind by a killed process is seen as stale and taken over.
static std::unique_ptr<QLockFile> takeLock(const QString &path)
{
    auto lock = std::make_unique<QLockFile>(path + QStringLiteral(".lock"));
    lock->setStaleLockTime(0);
    if (lock->tryLock(0)) {
        Zarnoveld::SafeFile::makePrivate(path + QStringLiteral(".lock"));
        return lock;
    }
    qint64 pid = 0;
    QString host, app;
    lock->getLockInfo(&pid, &host, &app);
    if (lock->error() == QLockFile::LockFailedError)
        fail(Code::InvalidState, QStringLiteral("Het dossier %1 is al geopend in een ander programma (%2, proces %3). Sluit het daar eerst.")
                                     .arg(fileName(path), app.isEmpty() ? QStringLiteral("onbekend") : app)
                                     .arg(pid));
    fail(Code::StoreFailed, QStringLiteral("Het dossier %1 kan niet worden vergrendeld.").arg(fileName(path)));
}

std::unique_ptr<Store> Store::create(const QString &path, const DossierNode &tree,
                                     const ParameterValues &params, bool replaceLeftover)
{
    const auto exists = [&path] { return QFileInfo::exists(path) || QFileInfo(path).isSymLink(); };
    if (!replaceLeftover && exists())
        fail(Code::InvalidState, QStringLiteral("Het bestand %1 bestaat al; kies een andere naam.").arg(fileName(path)));
    std::unique_ptr<Store> store(new Store);
    store->m_path = path;
    store->m_lock = takeLock(path);
    if (replaceLeftover)
        for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
            QFile::remove(path + suffix);
    {
        // Made here, owner only and never through a symlink, so that SQLite (which gives its side
        // files the mode of the case file) never creates anything others can read.
        const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        const int error = errno;
        if (fd < 0)
            fail(error == EEXIST ? Code::InvalidState : Code::StoreFailed,
                 error == EEXIST ? QStringLiteral("Het bestand %1 bestaat al; kies een andere naam.").arg(fileName(path))
                                 : QStringLiteral("Het dossier %1 kan niet worden gemaakt: %2.")
                                       .arg(fileName(path), Zarnoveld::SafeFile::reason(error)));
        ::fchmod(fd, 0600);
        ::close(fd);
    }
    try {
        store->openConnection(false);
        configure(store->m_db);
        migrate(store->m_db, migrations(), SchemaVersion);
        store->begin();
        store->writeParameters(params);
        store->insertTree(tree);
        store->commit();
    } catch (...) {
        store.reset();
        for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
            QFile::remove(path + suffix);
        throw;
    }
    return store;
}

std::unique_ptr<Store> Store::open(const QString &path, std::shared_ptr<DossierNode> &tree,
                                   ParameterValues &params)
{
    const QString name = fileName(path);
    if (!QFileInfo(path).isFile())
        fail(Code::NotFound, QStringLiteral("Het dossier %1 bestaat niet.").arg(name));
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            fail(Code::StoreFailed, QStringLiteral("Het dossier %1 kan niet worden gelezen: %2").arg(name, file.errorString()));
        if (file.read(16) != QByteArray("SQLite format 3\0", 16))
            fail(Code::InvalidState, QStringLiteral("Het bestand %1 is geen Zarnoveld-dossier.").arg(name));
    }
    std::unique_ptr<Store> store(new Store);
    store->m_path = path;
    // A case this user may not change (its file, or the folder its log and lock live in) is shown
    // as it is: read-only, without a lock of its own, which such a folder could not hold anyway.
    const QByteArray native = QFile::encodeName(path);
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    store->m_readOnly = ::access(native.constData(), W_OK) != 0 || ::access(folder.constData(), W_OK) != 0;
    if (!store->m_readOnly)
        store->m_lock = takeLock(path);

    // Look before touching: read-only, so a foreign or newer file is left exactly as it was.
    store->openConnection(true);
    if (!hasTable(store->m_db, QStringLiteral("schema_version")) || !hasTable(store->m_db, QStringLiteral("pensioen")))
        fail(Code::InvalidState, QStringLiteral("Het bestand %1 is geen Zarnoveld-dossier.").arg(name));
    const int version = versionOf(store->m_db);
    if (version > SchemaVersion)
        fail(Code::InvalidState, QStringLiteral("Het dossier %1 is gemaakt met een nieuwere versie van Zarnoveld (bestandsversie %2). "
                                                "Deze versie kan bestanden tot en met versie %3 openen.")
                                     .arg(name).arg(version).arg(SchemaVersion));
    if (version < 1)
        fail(Code::InvalidState, QStringLiteral("Het bestand %1 is geen Zarnoveld-dossier.").arg(name));
    if (store->m_readOnly) {
        if (version < SchemaVersion)
            fail(Code::InvalidState, QStringLiteral("Het dossier %1 is alleen-lezen en gemaakt met een oudere versie van Zarnoveld; "
                                                    "het kan pas worden geopend als u het mag wijzigen.").arg(name));
        tree = load(store->m_db, params);
        return store;
    }

    makeCasePrivate(path);
    store->openConnection(false);
    {
        QSqlQuery probe(store->m_db);
        if (!probe.exec(QStringLiteral("BEGIN IMMEDIATE")))
            fail(Code::InvalidState, QStringLiteral("Het dossier %1 wordt door een ander programma bewerkt. Sluit het daar eerst.").arg(name));
        probe.exec(QStringLiteral("ROLLBACK"));
    }
    configure(store->m_db);
    migrate(store->m_db, migrations(), SchemaVersion);
    tree = load(store->m_db, params);
    return store;
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
    const auto readTable = [&db](const TableDef &t, auto &&make) {
        QStringList columns{QStringLiteral("id"), t.parentTable ? QStringLiteral("parent_id") : QStringLiteral("0")};
        for (const FieldDef &f : t.fields)
            columns << quoted(f.name);
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
        fail(Code::InvalidState, QStringLiteral("Het dossierbestand bevat geen dossier."));

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
        fail(Code::InvalidState, QStringLiteral("Het dossierbestand bevat geen aanvrager."));
    return dossier;
}

QSqlQuery &Store::prepared(const QString &key, const QString &sql)
{
    auto it = m_queries.find(key);
    if (it != m_queries.end())
        return it->second;
    QSqlQuery q(m_db);
    if (!q.prepare(sql))
        fail(Code::StoreFailed, QStringLiteral("Het dossierbestand kan deze opdracht niet uitvoeren: %1").arg(q.lastError().text()));
    return m_queries.emplace(key, std::move(q)).first->second;
}

void Store::exec(QSqlQuery &query)
{
    if (!query.exec())
        fail(Code::StoreFailed, QStringLiteral("Het dossierbestand weigerde de wijziging: %1").arg(query.lastError().text()));
}

void Store::checkpoint()
{
    if (m_readOnly)
        return;
    QSqlQuery q(m_db);
    if (!q.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")) || !q.next() || q.value(0).toInt() != 0)
        fail(Code::StoreFailed, QStringLiteral("Het dossier %1 kan niet worden afgerond: %2")
                                    .arg(fileName(m_path), q.lastError().text()));
}

void Store::begin()
{
    if (m_readOnly)
        fail(Code::InvalidState, QStringLiteral("Het dossier %1 is alleen-lezen geopend: de wijziging is niet opgeslagen.")
                                     .arg(fileName(m_path)));
    exec(prepared(QStringLiteral("begin"), QStringLiteral("BEGIN IMMEDIATE")));
}

void Store::commit()
{
    exec(prepared(QStringLiteral("commit"), QStringLiteral("COMMIT")));
}

void Store::rollback()
{
    prepared(QStringLiteral("rollback"), QStringLiteral("ROLLBACK")).exec();
}

void Store::update(const Record &record, int field, const QVariant &value)
{
    const FieldDef &f = record.def->fields[field];
    QSqlQuery &q = prepared(QStringLiteral("u:%1:%2").arg(QLatin1String(record.def->table)).arg(field),
                            QStringLiteral("UPDATE %1 SET %2 = ? WHERE id = ?").arg(QLatin1String(record.def->table), quoted(f.name)));
    q.bindValue(0, toSql(f.kind, value));
    q.bindValue(1, record.id);
    exec(q);
    if (q.numRowsAffected() != 1)
        fail(Code::StoreFailed, QStringLiteral("Het dossierbestand mist een gegeven dat het programma wel kent (%1 %2).")
                                    .arg(QLatin1String(record.def->table)).arg(record.id));
}

void Store::updateAll(const Record &record)
{
    const TableDef &t = *record.def;
    QSqlQuery &q = prepared(QStringLiteral("ua:%1").arg(QLatin1String(t.table)), [&t] {
        QStringList sets;
        for (const FieldDef &f : t.fields)
            sets << quoted(f.name) + QStringLiteral(" = ?");
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
    QSqlQuery &q = prepared(QStringLiteral("i:%1").arg(QLatin1String(t.table)), [&t] {
        QStringList columns{QStringLiteral("id")};
        if (t.parentTable)
            columns << QStringLiteral("parent_id");
        columns << QStringLiteral("pos");
        for (const FieldDef &f : t.fields)
            columns << quoted(f.name);
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
    QSqlQuery &q = prepared(QStringLiteral("param"),
                            QStringLiteral("INSERT OR REPLACE INTO parameters (naam, waarde) VALUES (?, ?)"));
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
