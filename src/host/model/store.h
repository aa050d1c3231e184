// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The SQLite side of a case: one file, one connection, prepared statements kept for reuse.

#include "casecore.h"

#include <QLockFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace Zarnoveld::detail {

class Store
{
public:
    static constexpr int SchemaVersion = 5;

    // One step of the schema's history: brings a file from version `from` to `from + 1`.
    struct Migration
    {
        int from;
        std::function<void(QSqlDatabase &)> apply;
    };
    // The steps this program knows; step 0 -> 1 lays out the tables in an empty file.
    static const std::vector<Migration> &migrations();
    // Brings db up to `target` with `steps`, each step and its version stamp in one transaction.
    // Throws HostError when a step fails; the file then stays at the last version reached.
    static void migrate(QSqlDatabase &db, const std::vector<Migration> &steps, int target);
    // The version stamped in a file; 0 for a file without a version table.
    static int versionOf(QSqlDatabase &db);

    // A new case file holding tree and params, readable by its owner only; fails when the file
    // exists. With replaceLeftover an existing file of that name (what a killed run left of a
    // temporary case) is removed first, once this program holds its lock.
    static std::unique_ptr<Store> create(const QString &path, const DossierNode &tree,
                                         const ParameterValues &params, bool replaceLeftover = false);
    // Opens a case file and reads it into tree and params. A file this user may not change is
    // opened read-only: it is read as it is, and every change is refused.
    static std::unique_ptr<Store> open(const QString &path, std::shared_ptr<DossierNode> &tree,
                                       ParameterValues &params);
    ~Store();

    QString path() const { return m_path; }
    bool readOnly() const { return m_readOnly; }
    // Moves everything in the write-ahead log into the file itself and empties the log, so the
    // file alone holds the whole case. Throws HostError when the log cannot be emptied.
    void checkpoint();

    void begin();
    void commit();
    void rollback();

    void update(const Record &record, int field, const QVariant &value);
    void updateAll(const Record &record);
    void insert(const Record &record, qint64 parentId, int pos);
    void remove(const Record &record);
    // Moves positions of the children of parentId that lie after pos by delta.
    void shift(const TableDef &table, qint64 parentId, int afterPos, int delta);
    // Writes a whole record with its children (new files, imports).
    void insertTree(const DossierNode &tree);
    void insertPensioen(const PensioenNode &pen, qint64 parentId, int pos);
    // Replaces the case's stored figures (the dossier's year is an ordinary field).
    void writeParameters(const ParameterValues &params);

    // The case's bin of removed schemes.
    void binInsert(const BinItem &item);
    void binRemove(qint64 id);
    std::vector<BinItem> loadBin();

private:
    Store();
    QSqlQuery &prepared(const QString &key, const QString &sql);
    void exec(QSqlQuery &query);
    void openConnection(bool readOnly);
    static std::shared_ptr<DossierNode> load(QSqlDatabase &db, ParameterValues &params);

    QString m_path;
    bool m_readOnly = false;
    QString m_connection;
    QSqlDatabase m_db;
    std::unique_ptr<QLockFile> m_lock;
    std::map<QString, QSqlQuery> m_queries;
};

} // namespace Zarnoveld::detail
