// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Where a case is kept, behind one interface: the model writes every accepted change through a
// Store, one transaction per change, and never learns whether a file on this PC (SQLite) or the
// office's database server (PostgreSQL) holds it. The tables and their history are written once,
// here; what the two dialects spell differently lives in dialect.h, what only one back end does
// (a lock file, a write-ahead log; a session lock, a reconnect) in its own source file.

#include "casedata.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace Zarnoveld::detail {

struct Dialect;

class Store
{
public:
    static constexpr int SchemaVersion = 5;

    // One step of the schema's history: brings a case from version `from` to `from + 1`.
    struct Migration
    {
        int from;
        std::function<void(QSqlDatabase &)> apply;
    };
    // The steps this program knows; step 0 -> 1 lays out the tables in an empty case.
    static const std::vector<Migration> &migrations();
    // Brings db up to `target` with `steps`, each step and its version stamp in one transaction.
    // Throws HostError when a step fails; the case then stays at the last version reached.
    static void migrate(QSqlDatabase &db, const std::vector<Migration> &steps, int target);
    // The same steps inside a transaction the caller holds (a new case on a server is made whole
    // or not at all).
    static void migrateInTransaction(QSqlDatabase &db, const std::vector<Migration> &steps, int target);
    // The version stamped in a case; 0 for one without a version table.
    static int versionOf(QSqlDatabase &db);

    // How a case is opened: to work in it (the case is taken: nobody else may change it until it
    // is closed), or only to read it (export, check: allowed while somebody else works in it).
    enum class Access { Edit, Read };

    // A new case at address (a file path, or a server address, see caseaddress.h) holding tree
    // and params; fails when it exists. With replaceLeftover an existing file of that name (what a
    // killed run left of a temporary case) is removed first, once this program holds its lock.
    static std::unique_ptr<Store> create(const QString &address, const DossierNode &tree,
                                         const ParameterValues &params, bool replaceLeftover = false);
    // A new case made whole or not at all (an import, a case moved to a server): a kill at any
    // moment leaves either the complete case or nothing under its name. The case is then opened
    // for editing and read back into loaded/loadedParams, exactly as a later open would read it.
    static std::unique_ptr<Store> createWhole(const QString &address, const DossierNode &tree,
                                              const ParameterValues &params, const std::vector<BinItem> &bin,
                                              std::shared_ptr<DossierNode> &loaded, ParameterValues &loadedParams);
    // Opens a case and reads it into tree and params. A case this user may not change, or one
    // opened for reading, is read as it is, and every change is refused.
    static std::unique_ptr<Store> open(const QString &address, std::shared_ptr<DossierNode> &tree,
                                       ParameterValues &params, Access access = Access::Edit);
    // Who works in the case now, as the sentence an adviser reads ("Dossier ... is in gebruik
    // door ... op ... sinds ..."); empty when nobody does or the back end cannot tell.
    static QString holderOf(const QString &address);

    virtual ~Store();

    // The address the case was opened with, and the name an adviser knows it by.
    QString path() const { return m_address; }
    QString displayName() const { return m_name; }
    bool readOnly() const { return m_readOnly; }
    // Makes the stored case complete on its own (an SQLite file folds its write-ahead log in).
    // Throws HostError when that fails.
    virtual void checkpoint() {}

    virtual void begin();
    void commit();
    void rollback();

    // What the back end calls, after it lost and regained its connection, to write the whole
    // case again as the program holds it: a change whose commit was cut off may or may not have
    // reached the server, and the program's copy is the one the adviser saw accepted.
    void setRewrite(std::function<void(Store &)> rewrite) { m_rewrite = std::move(rewrite); }
    // Removes everything of the case (for that rewrite); the next insertTree fills it again.
    void clear();

    void update(const Record &record, int field, const QVariant &value);
    void updateAll(const Record &record);
    void insert(const Record &record, qint64 parentId, int pos);
    void remove(const Record &record);
    // Moves positions of the children of parentId that lie after pos by delta.
    void shift(const TableDef &table, qint64 parentId, int afterPos, int delta);
    // Writes a whole record with its children (new cases, imports).
    void insertTree(const DossierNode &tree);
    void insertPensioen(const PensioenNode &pen, qint64 parentId, int pos);
    // Replaces the case's stored figures (the dossier's year is an ordinary field).
    void writeParameters(const ParameterValues &params);

    // The case's bin of removed schemes.
    void binInsert(const BinItem &item);
    void binRemove(qint64 id);
    std::vector<BinItem> loadBin();

protected:
    Store();
    QSqlQuery &prepared(const QString &key, const QString &sql);
    // Transaction control (BEGIN, COMMIT, ROLLBACK), prepared once where the dialect allows it.
    void control(const QString &key, const QString &sql);
    void exec(QSqlQuery &query);
    // A statement failed: the back end decides what the adviser is told (a lost connection reads
    // differently from a refused value) and throws HostError.
    [[noreturn]] virtual void failed(const QString &what, const QString &driverText);
    void forgetStatements() { m_queries.clear(); }
    // Writes tree, figures and bin into the empty tables of a case, inside the caller's transaction.
    void fill(const DossierNode &tree, const ParameterValues &params, const std::vector<BinItem> &bin);
    static std::shared_ptr<DossierNode> load(QSqlDatabase &db, ParameterValues &params);
    void runRewrite() { if (m_rewrite) m_rewrite(*this); }

    QString m_address;
    QString m_name;
    bool m_readOnly = false;
    const Dialect *m_dialect = nullptr;
    QString m_connection;
    QSqlDatabase m_db;

private:
    std::map<QString, QSqlQuery> m_queries;
    std::function<void(Store &)> m_rewrite;
};

// The two back ends (sqlitestore.cpp, serverstore.cpp); Store's factory picks one by address.
std::unique_ptr<Store> createSqlite(const QString &path, const DossierNode &tree, const ParameterValues &params,
                                    bool replaceLeftover);
std::unique_ptr<Store> createWholeSqlite(const QString &path, const DossierNode &tree, const ParameterValues &params,
                                         const std::vector<BinItem> &bin, std::shared_ptr<DossierNode> &loaded,
                                         ParameterValues &loadedParams);
std::unique_ptr<Store> openSqlite(const QString &path, std::shared_ptr<DossierNode> &tree, ParameterValues &params);
QString holderOfSqlite(const QString &path);
std::unique_ptr<Store> createOnServer(const QString &address, const DossierNode &tree, const ParameterValues &params,
                                      const std::vector<BinItem> &bin, std::shared_ptr<DossierNode> *loaded,
                                      ParameterValues *loadedParams);
std::unique_ptr<Store> openOnServer(const QString &address, std::shared_ptr<DossierNode> &tree,
                                    ParameterValues &params, Store::Access access);
QString holderOnServer(const QString &address);

// A case in a server's catalogue, with who works in it now (empty user: nobody).
struct ServerCase
{
    QString name;
    QString user;
    QString pc;
    QDateTime since;
};
// Every case in the database at databaseUrl, by name. Throws HostError (Dutch) when the server
// cannot be reached.
std::vector<ServerCase> casesOnServer(const QString &databaseUrl);

} // namespace Zarnoveld::detail
