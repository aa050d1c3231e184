// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The case in the office's PostgreSQL database. Every case has a schema of its own
// ("dossier_<id>") holding exactly the tables of a case file, made by the same migration steps;
// the catalogue zarnoveld.dossiers gives each case its name and records who has it open.
//
// One adviser works in a case at a time: opening it for editing takes a session-level advisory
// lock on the case's id. The server itself lets go of that lock when the session ends, however
// it ends (a program killed, a PC switched off, a network cable pulled), so a lock is never left
// behind. Who holds it is written next to the case in the catalogue, with a key only that session
// knows; the holder shown is only believed while the server still has the lock.

#include "store.h"

#include "caseaddress.h"
#include "dialect.h"
#include "sqlsupport.h"

#include <QDateTime>
#include <QLocale>
#include <QSqlError>
#include <QSysInfo>
#include <QThread>
#include <QUuid>

#include <pwd.h>
#include <unistd.h>

namespace Zarnoveld::detail {

using VandrelApplication::HostError;
namespace Code = VandrelApplication::HostErrorCode;

namespace {

// The first key of every advisory lock this program takes; the second is the case's id (0 guards
// the catalogue while a case is made).
constexpr int kLockSpace = 0x5A52;

QString loginName()
{
    if (const passwd *pw = ::getpwuid(::getuid()); pw && pw->pw_name)
        return QString::fromLocal8Bit(pw->pw_name);
    return qEnvironmentVariable("USER", QStringLiteral("onbekend"));
}

QString schemaOf(qint64 id)
{
    return QStringLiteral("dossier_%1").arg(id);
}

const QString kHeldBy = QStringLiteral(
    "EXISTS (SELECT 1 FROM pg_locks l WHERE l.locktype = 'advisory' AND l.granted AND l.objsubid = 2 "
    "AND l.classid::bigint = %1 AND l.objid::bigint = d.id)").arg(kLockSpace);

QString inUseText(const QString &name, const QString &user, const QString &pc, const QDateTime &since)
{
    return QStringLiteral("Dossier %1 is in gebruik door %2 op %3 sinds %4.")
        .arg(name, user, pc, QLocale(QLocale::Dutch, QLocale::Netherlands).toString(since.toLocalTime(), QStringLiteral("d-M-yyyy HH:mm")));
}

// One connection to the server, with its own name so that several cases and tests live side by
// side. Closed (and its locks released by the server) when the object goes.
class Connection
{
public:
    explicit Connection(const CaseAddress::Server &server)
        : m_name(QStringLiteral("zarnoveld-pg-%1").arg(QUuid::createUuid().toString(QUuid::Id128)))
    {
        if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QPSQL")))
            fail(Code::StoreFailed, QStringLiteral("Zarnoveld kan geen PostgreSQL-database gebruiken: de PostgreSQL-koppeling "
                                                   "van Qt ontbreekt (Debian-pakket libqt6sql6-psql)."));
        db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_name);
        db.setHostName(server.host);
        db.setPort(server.port);
        db.setDatabaseName(server.database);
        if (!server.user.isEmpty())
            db.setUserName(server.user);
        // A server that does not answer is reported within seconds, and a connection whose network
        // went away is noticed by the next write instead of hanging on it.
        QStringList options{QStringLiteral("application_name=zarnoveld"), QStringLiteral("keepalives_idle=10"),
                            QStringLiteral("keepalives_interval=5"), QStringLiteral("keepalives_count=3"),
                            QStringLiteral("tcp_user_timeout=15000")};
        if (!server.options.contains(QStringLiteral("connect_timeout=")))
            options << QStringLiteral("connect_timeout=5");
        if (!server.options.isEmpty())
            options << server.options;
        db.setConnectOptions(options.join(QLatin1Char(';')));
        if (!db.open()) {
            const QString reason = db.lastError().databaseText().isEmpty() ? db.lastError().text() : db.lastError().databaseText();
            close();
            fail(Code::StoreFailed, QStringLiteral("De database %1 is niet bereikbaar: %2").arg(server.display(), reason.trimmed()));
        }
        // The server's notices ("already exists, skipping") are for its administrator, not for
        // the adviser's terminal.
        QSqlQuery(db).exec(QStringLiteral("SET client_min_messages TO error"));
    }
    ~Connection() { close(); }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    QString name() const { return m_name; }
    QSqlDatabase db;

    void close()
    {
        if (db.isValid())
            db.close();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }

private:
    QString m_name;
};

QSqlQuery run(QSqlDatabase &db, const QString &sql, const QVariantList &values = {})
{
    QSqlQuery q(db);
    q.setForwardOnly(true);
    bool ok = true;
    if (values.isEmpty()) {
        ok = q.exec(sql);
    } else {
        ok = q.prepare(sql);
        for (const QVariant &v : values)
            q.addBindValue(v);
        ok = ok && q.exec();
    }
    if (!ok)
        fail(Code::StoreFailed, QStringLiteral("De database weigerde een opdracht: %1").arg(q.lastError().text().trimmed()));
    return q;
}

// The catalogue, made by whoever comes first; the transaction lock keeps two first comers apart.
void ensureCatalogue(QSqlDatabase &db)
{
    run(db, QStringLiteral("BEGIN"));
    try {
        run(db, QStringLiteral("SELECT pg_advisory_xact_lock(%1, 0)").arg(kLockSpace));
        run(db, QStringLiteral("CREATE SCHEMA IF NOT EXISTS zarnoveld"));
        run(db, QStringLiteral("CREATE TABLE IF NOT EXISTS zarnoveld.dossiers ("
                               "id BIGSERIAL PRIMARY KEY, naam TEXT NOT NULL UNIQUE, "
                               "gemaakt TIMESTAMPTZ NOT NULL DEFAULT now(), "
                               "houder_gebruiker TEXT, houder_pc TEXT, houder_sinds TIMESTAMPTZ, houder_sleutel TEXT)"));
        run(db, QStringLiteral("COMMIT"));
    } catch (...) {
        QSqlQuery(db).exec(QStringLiteral("ROLLBACK"));
        throw;
    }
}

bool hasCatalogue(QSqlDatabase &db)
{
    QSqlQuery q = run(db, QStringLiteral("SELECT to_regclass('zarnoveld.dossiers') IS NOT NULL"));
    return q.next() && q.value(0).toBool();
}

// The holder of case `name`, as the sentence an adviser reads; empty when nobody holds it.
QString holderText(QSqlDatabase &db, const QString &name)
{
    if (!hasCatalogue(db))
        return QString();
    QSqlQuery q = run(db, QStringLiteral("SELECT d.houder_gebruiker, d.houder_pc, d.houder_sinds FROM zarnoveld.dossiers d "
                                         "WHERE d.naam = ? AND %1").arg(kHeldBy),
                      {name});
    if (!q.next())
        return QString();
    return inUseText(name, q.value(0).toString(), q.value(1).toString(), q.value(2).toDateTime());
}

class ServerStore : public Store
{
public:
    explicit ServerStore(const QString &address)
        : m_server(CaseAddress::parse(address))
    {
        m_address = address;
        m_name = m_server.caseName;
        if (m_name.isEmpty())
            fail(Code::InvalidState, QStringLiteral("Het adres %1 noemt geen dossier.").arg(m_server.display()));
    }
    ~ServerStore() override
    {
        // Let go of the case before the connection goes: the server frees a closed session's
        // locks only once its process has ended, a moment after the close, and a colleague
        // opening the case right now must not meet that moment.
        if (m_caseId && !m_readOnly && m_db.isOpen())
            QSqlQuery(m_db).exec(QStringLiteral("SELECT pg_advisory_unlock(%1, %2)").arg(kLockSpace).arg(m_caseId));
        forgetStatements();
        m_db = QSqlDatabase();
        m_link.reset();
    }

    void connect()
    {
        forgetStatements();
        m_db = QSqlDatabase();
        m_link.reset();
        m_link = std::make_unique<Connection>(m_server);
        m_db = m_link->db;
        m_dialect = &Dialect::of(m_db);
    }

    void useCaseSchema()
    {
        run(m_db, QStringLiteral("SET search_path TO %1").arg(schemaOf(m_caseId)));
    }

    qint64 findCase()
    {
        if (hasCatalogue(m_db)) {
            QSqlQuery q = run(m_db, QStringLiteral("SELECT id FROM zarnoveld.dossiers WHERE naam = ?"), {m_name});
            if (q.next())
                return q.value(0).toLongLong();
        }
        fail(Code::NotFound, QStringLiteral("Dossier %1 bestaat niet in %2.").arg(m_name, m_server.display()));
    }

    bool tryLock()
    {
        QSqlQuery q = run(m_db, QStringLiteral("SELECT pg_try_advisory_lock(%1, %2)").arg(kLockSpace).arg(m_caseId));
        return q.next() && q.value(0).toBool();
    }

    // The lock, allowing a program that just died the few milliseconds the server needs to end
    // its session; short enough that a colleague who really has the case open is never waited out.
    bool tryLockSoon()
    {
        for (int attempt = 0; attempt < 5; ++attempt) {
            if (tryLock())
                return true;
            QThread::msleep(30);
        }
        return false;
    }

    // Writes who has the case, with this session's key.
    void claim()
    {
        m_key = QUuid::createUuid().toString(QUuid::WithoutBraces);
        run(m_db, QStringLiteral("UPDATE zarnoveld.dossiers SET houder_gebruiker = ?, houder_pc = ?, houder_sinds = now(), "
                                 "houder_sleutel = ? WHERE id = ?"),
            {loginName(), QSysInfo::machineHostName(), m_key, m_caseId});
    }

    void begin() override;
    [[noreturn]] void failed(const QString &what, const QString &driverText) override;

    static std::shared_ptr<DossierNode> loadCase(QSqlDatabase &db, ParameterValues &params) { return load(db, params); }

    friend std::unique_ptr<Store> Zarnoveld::detail::createOnServer(const QString &, const DossierNode &,
                                                                    const ParameterValues &, const std::vector<BinItem> &,
                                                                    std::shared_ptr<DossierNode> *, ParameterValues *);
    friend std::unique_ptr<Store> Zarnoveld::detail::openOnServer(const QString &, std::shared_ptr<DossierNode> &,
                                                                  ParameterValues &, Store::Access);

    CaseAddress::Server m_server;
    std::unique_ptr<Connection> m_link;
    qint64 m_caseId = 0;
    QString m_key;
    bool m_broken = false;

private:
    bool alive();
    void reconnect();
};

bool ServerStore::alive()
{
    if (!m_db.isOpen())
        return false;
    // An error inside a transaction spoils the transaction, not the connection: roll it back
    // before asking the server whether it is still there.
    QSqlQuery q(m_db);
    q.exec(QStringLiteral("ROLLBACK"));
    return q.exec(QStringLiteral("SELECT 1")) && q.next();
}

void ServerStore::failed(const QString &what, const QString &driverText)
{
    if (!m_broken && alive())
        Store::failed(what, driverText);
    m_broken = true;
    fail(Code::StoreFailed, QStringLiteral("De verbinding met de database %1 is verbroken: de wijziging is niet opgeslagen. "
                                           "Zarnoveld maakt opnieuw verbinding zodra de server weer bereikbaar is.")
                                .arg(m_server.display()));
}

void ServerStore::begin()
{
    if (m_readOnly || !m_broken) {
        try {
            Store::begin();
            return;
        } catch (const HostError &) {
            // A connection that died while the case lay idle (the server restarted) is only
            // noticed here; one new connection is tried before the adviser hears of it.
            if (!m_broken)
                throw;
        }
    }
    reconnect();
    Store::begin();
}

void ServerStore::reconnect()
{
    try {
        connect();
    } catch (const HostError &) {
        fail(Code::StoreFailed, QStringLiteral("De database %1 is nog niet bereikbaar: de wijziging is niet opgeslagen. "
                                               "Probeer het opnieuw zodra de server weer bereikbaar is.")
                                    .arg(m_server.display()));
    }
    // The case stays this adviser's only if nobody took it in between: the lock must be free and
    // the catalogue must still carry this session's key (a holder in between writes its own).
    const auto lost = [this](const QString &why) {
        run(m_db, QStringLiteral("SELECT pg_advisory_unlock_all()"));
        m_readOnly = true;
        m_broken = false;
        fail(Code::InvalidState, why + QStringLiteral(" Uw wijziging is niet opgeslagen; het dossier is nu alleen-lezen. "
                                                      "Open het opnieuw om verder te werken."));
    };
    if (!tryLock()) {
        const QString holder = holderText(m_db, m_name);
        lost(holder.isEmpty() ? QStringLiteral("Dossier %1 is inmiddels door een ander geopend.").arg(m_name) : holder);
    }
    QSqlQuery q = run(m_db, QStringLiteral("SELECT houder_sleutel FROM zarnoveld.dossiers WHERE id = ?"), {m_caseId});
    if (!q.next() || q.value(0).toString() != m_key)
        lost(QStringLiteral("Dossier %1 is intussen door een ander geopend.").arg(m_name));
    useCaseSchema();
    m_broken = false;
    // A change whose commit was cut off may or may not have reached the server: the case is
    // written again as the program holds it, which is what the adviser saw accepted.
    Store::begin();
    try {
        runRewrite();
        commit();
    } catch (...) {
        rollback();
        throw;
    }
}

} // namespace

std::unique_ptr<Store> createOnServer(const QString &address, const DossierNode &tree, const ParameterValues &params,
                                      const std::vector<BinItem> &bin, std::shared_ptr<DossierNode> *loaded,
                                      ParameterValues *loadedParams)
{
    auto store = std::make_unique<ServerStore>(address);
    store->connect();
    ensureCatalogue(store->m_db);
    QSqlDatabase &db = store->m_db;
    // The whole case, its schema and its entry in the catalogue in one transaction: a kill at
    // any moment leaves the complete case or nothing.
    run(db, QStringLiteral("BEGIN"));
    try {
        run(db, QStringLiteral("SELECT pg_advisory_xact_lock(%1, 0)").arg(kLockSpace));
        if (run(db, QStringLiteral("SELECT 1 FROM zarnoveld.dossiers WHERE naam = ?"), {store->m_name}).next())
            fail(Code::InvalidState, QStringLiteral("Dossier %1 bestaat al in %2; kies een andere naam.")
                                         .arg(store->m_name, store->m_server.display()));
        QSqlQuery q = run(db, QStringLiteral("INSERT INTO zarnoveld.dossiers (naam) VALUES (?) RETURNING id"), {store->m_name});
        if (!q.next())
            fail(Code::StoreFailed, QStringLiteral("Dossier %1 kan niet worden gemaakt.").arg(store->m_name));
        store->m_caseId = q.value(0).toLongLong();
        run(db, QStringLiteral("CREATE SCHEMA %1").arg(schemaOf(store->m_caseId)));
        store->useCaseSchema();
        Store::migrateInTransaction(db, Store::migrations(), Store::SchemaVersion);
        store->fill(tree, params, bin);
        if (!store->tryLock())
            fail(Code::StoreFailed, QStringLiteral("Dossier %1 kan niet worden vergrendeld.").arg(store->m_name));
        store->claim();
        run(db, QStringLiteral("COMMIT"));
    } catch (...) {
        QSqlQuery(db).exec(QStringLiteral("ROLLBACK"));
        throw;   // the store goes, and with its session the lock
    }
    if (loaded && loadedParams)
        *loaded = ServerStore::loadCase(db, *loadedParams);
    return store;
}

std::unique_ptr<Store> openOnServer(const QString &address, std::shared_ptr<DossierNode> &tree,
                                    ParameterValues &params, Store::Access access)
{
    auto store = std::make_unique<ServerStore>(address);
    store->connect();
    QSqlDatabase &db = store->m_db;
    store->m_caseId = store->findCase();
    store->useCaseSchema();
    const QString name = store->m_name;
    if (access == Store::Access::Read) {
        store->m_readOnly = true;
        // One snapshot: a change another adviser makes meanwhile is seen whole or not at all.
        run(db, QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"));
    } else if (!store->tryLockSoon()) {
        const QString holder = holderText(db, name);
        fail(Code::InvalidState, holder.isEmpty() ? QStringLiteral("Dossier %1 is in gebruik door een ander.").arg(name) : holder);
    }
    const int version = Store::versionOf(db);
    if (version > Store::SchemaVersion)
        fail(Code::InvalidState, QStringLiteral("Dossier %1 is gemaakt met een nieuwere versie van Zarnoveld (versie %2). "
                                                "Deze versie kan dossiers tot en met versie %3 openen.")
                                     .arg(name).arg(version).arg(Store::SchemaVersion));
    if (version < 1)
        fail(Code::InvalidState, QStringLiteral("Dossier %1 is onvolledig in de database.").arg(name));
    if (access == Store::Access::Read) {
        if (version < Store::SchemaVersion)
            fail(Code::InvalidState, QStringLiteral("Dossier %1 is gemaakt met een oudere versie van Zarnoveld; open het eerst "
                                                    "om te bewerken, dan wordt het bijgewerkt.").arg(name));
        tree = ServerStore::loadCase(db, params);
        run(db, QStringLiteral("COMMIT"));
        return store;
    }
    store->claim();
    Store::migrate(db, Store::migrations(), Store::SchemaVersion);
    tree = ServerStore::loadCase(db, params);
    return store;
}

QString holderOnServer(const QString &address)
{
    const CaseAddress::Server server = CaseAddress::parse(address);
    Connection link(server);
    return holderText(link.db, server.caseName);
}

std::vector<ServerCase> casesOnServer(const QString &databaseUrl)
{
    const CaseAddress::Server server = CaseAddress::parse(databaseUrl);
    Connection link(server);
    std::vector<ServerCase> cases;
    if (!hasCatalogue(link.db))
        return cases;
    QSqlQuery q = run(link.db, QStringLiteral("SELECT d.naam, d.houder_gebruiker, d.houder_pc, d.houder_sinds, %1 "
                                              "FROM zarnoveld.dossiers d ORDER BY d.naam").arg(kHeldBy));
    while (q.next()) {
        ServerCase c;
        c.name = q.value(0).toString();
        if (q.value(4).toBool()) {
            c.user = q.value(1).toString();
            c.pc = q.value(2).toString();
            c.since = q.value(3).toDateTime();
        }
        cases.push_back(std::move(c));
    }
    return cases;
}

} // namespace Zarnoveld::detail
