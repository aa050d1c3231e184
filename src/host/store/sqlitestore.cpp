// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The case as one SQLite file on this PC: a lock file next to it names the program that has it
// open, a write-ahead log makes every commit one append, and a new case from an import is built
// under a hidden name and renamed only when whole.

#include "store.h"

#include "dialect.h"
#include "sqlsupport.h"
#include "safefile.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSqlError>
#include <QThread>
#include <QUrl>
#include <QUuid>

#include <cerrno>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Zarnoveld::detail {

using VandrelApplication::HostError;
namespace Code = VandrelApplication::HostErrorCode;

namespace {

QString fileName(const QString &path)
{
    return QFileInfo(path).fileName();
}

// Write-ahead log: a reader never blocks the single writer and a commit is one append. With
// synchronous=FULL the log is flushed to disk before a commit returns, so an edit the screen
// accepted survives a power cut, not only a crash of the program. Leaving a field then costs one
// flush of the disk, which is most of its time (bench_leavefield measures both).
void configure(QSqlDatabase &db)
{
    execOrThrow(db, QStringLiteral("PRAGMA journal_mode=WAL"));
    execOrThrow(db, QStringLiteral("PRAGMA synchronous=FULL"));
    execOrThrow(db, QStringLiteral("PRAGMA foreign_keys=ON"));
}

// The case file and what SQLite keeps next to it hold personal data: owner only.
void makeCasePrivate(const QString &path)
{
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral(".lock")})
        SafeFile::makePrivate(path + suffix);
}

QString lockPath(const QString &path)
{
    return path + QStringLiteral(".lock");
}

// Another program "has the case open" when it holds our lock file next to the case (another
// zarnoveld), or when it holds a write transaction on the file itself (any SQLite tool). The lock
// file is a QLockFile: a lock left behind by a killed process is seen as stale and taken over.
std::unique_ptr<QLockFile> takeLock(const QString &path)
{
    auto lock = std::make_unique<QLockFile>(lockPath(path));
    lock->setStaleLockTime(0);
    if (lock->tryLock(0)) {
        SafeFile::makePrivate(lockPath(path));
        return lock;
    }
    qint64 pid = 0;
    QString host, app;
    // A lock file without its owner's details is one whose writer was killed between making the
    // file and filling it (a live one fills it within microseconds). QLockFile cannot tell whether
    // such a lock is stale; looked at twice, a moment apart, it is taken over.
    if (!lock->getLockInfo(&pid, &host, &app)) {
        QThread::msleep(200);
        if (!lock->getLockInfo(&pid, &host, &app) && lock->removeStaleLockFile() && lock->tryLock(0)) {
            SafeFile::makePrivate(lockPath(path));
            return lock;
        }
    }
    if (lock->error() == QLockFile::LockFailedError)
        fail(Code::InvalidState, QStringLiteral("Het dossier %1 is al geopend in een ander programma (%2, proces %3). Sluit het daar eerst.")
                                     .arg(fileName(path), app.isEmpty() ? QStringLiteral("onbekend") : app)
                                     .arg(pid));
    fail(Code::StoreFailed, QStringLiteral("Het dossier %1 kan niet worden vergrendeld.").arg(fileName(path)));
}

class SqliteStore : public Store
{
public:
    explicit SqliteStore(const QString &path)
    {
        m_address = path;
        m_name = fileName(path);
    }

    void openConnection(bool readOnly);
    void checkpoint() override;
    static std::shared_ptr<DossierNode> loadCase(QSqlDatabase &db, ParameterValues &params) { return load(db, params); }

    std::unique_ptr<QLockFile> lock;
    friend std::unique_ptr<Store> Zarnoveld::detail::createSqlite(const QString &, const DossierNode &,
                                                                  const ParameterValues &, bool);
    friend std::unique_ptr<Store> Zarnoveld::detail::openSqlite(const QString &, std::shared_ptr<DossierNode> &,
                                                                ParameterValues &);
};

void SqliteStore::openConnection(bool readOnly)
{
    forgetStatements();
    if (m_db.isValid())
        m_db.close();
    m_db = QSqlDatabase();
    if (!m_connection.isEmpty())
        QSqlDatabase::removeDatabase(m_connection);
    // Each case has its own connection: several cases (and tests) may be open side by side.
    m_connection = QStringLiteral("zarnoveld-%1").arg(QUuid::createUuid().toString(QUuid::Id128));
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    m_dialect = &Dialect::of(m_db);
    // A case this user may not change, with nothing in its log, is read as an unchanging file:
    // SQLite then needs no shared-memory index next to it, which such a folder may not allow
    // and which would be a change.
    const QFileInfo wal(m_address + QStringLiteral("-wal"));
    if (m_readOnly && (!wal.exists() || wal.size() == 0)) {
        m_db.setDatabaseName(QUrl::fromLocalFile(QFileInfo(m_address).absoluteFilePath()).toString(QUrl::FullyEncoded)
                             + QStringLiteral("?immutable=1"));
        m_db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=0"));
    } else {
        m_db.setDatabaseName(m_address);
        m_db.setConnectOptions(readOnly ? QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=0")
                                        : QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
    }
    if (!m_db.open())
        fail(Code::StoreFailed, QStringLiteral("Het dossier %1 kan niet worden geopend: %2")
                                    .arg(m_name, m_db.lastError().text()));
}

void SqliteStore::checkpoint()
{
    if (m_readOnly)
        return;
    QSqlQuery q(m_db);
    if (!q.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")) || !q.next() || q.value(0).toInt() != 0)
        fail(Code::StoreFailed, QStringLiteral("Het dossier %1 kan niet worden afgerond: %2").arg(m_name, q.lastError().text()));
}

void removeCaseFiles(const QString &path)
{
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
        QFile::remove(path + suffix);
}

} // namespace

std::unique_ptr<Store> createSqlite(const QString &path, const DossierNode &tree, const ParameterValues &params,
                                    bool replaceLeftover)
{
    const auto exists = [&path] { return QFileInfo::exists(path) || QFileInfo(path).isSymLink(); };
    if (!replaceLeftover && exists())
        fail(Code::InvalidState, QStringLiteral("Het bestand %1 bestaat al; kies een andere naam.").arg(fileName(path)));
    std::unique_ptr<SqliteStore> store(new SqliteStore(path));
    store->lock = takeLock(path);
    if (replaceLeftover)
        removeCaseFiles(path);
    {
        // Made here, owner only and never through a symlink, so that SQLite (which gives its side
        // files the mode of the case file) never creates anything others can read.
        const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        const int error = errno;
        if (fd < 0)
            fail(error == EEXIST ? Code::InvalidState : Code::StoreFailed,
                 error == EEXIST ? QStringLiteral("Het bestand %1 bestaat al; kies een andere naam.").arg(fileName(path))
                                 : QStringLiteral("Het dossier %1 kan niet worden gemaakt: %2.")
                                       .arg(fileName(path), SafeFile::reason(error)));
        ::fchmod(fd, 0600);
        ::close(fd);
    }
    try {
        store->openConnection(false);
        configure(store->m_db);
        Store::migrate(store->m_db, Store::migrations(), Store::SchemaVersion);
        store->begin();
        store->fill(tree, params, {});
        store->commit();
    } catch (...) {
        store.reset();
        removeCaseFiles(path);
        throw;
    }
    return store;
}

std::unique_ptr<Store> createWholeSqlite(const QString &path, const DossierNode &tree, const ParameterValues &params,
                                         const std::vector<BinItem> &bin, std::shared_ptr<DossierNode> &loaded,
                                         ParameterValues &loadedParams)
{
    // Built complete under a hidden temporary name next to the target and given the target's
    // name in one step only when whole, so a killed import leaves no half case under the
    // user's name; a later import of the same name clears what a killed one left.
    const QFileInfo target(path);
    const QString temp = target.absolutePath() + QStringLiteral("/.") + target.fileName() + QStringLiteral(".import");
    if (target.exists() || target.isSymLink())
        fail(Code::InvalidState, QStringLiteral("Het bestand %1 bestaat al; kies een andere naam.").arg(target.fileName()));
    {
        auto store = createSqlite(temp, tree, params, true);
        if (!bin.empty()) {
            store->begin();
            try {
                for (const BinItem &item : bin)
                    store->binInsert(item);
                store->commit();
            } catch (...) {
                store->rollback();
                store.reset();
                removeCaseFiles(temp);
                throw;
            }
        }
        store->checkpoint();
    }
    const QByteArray from = QFile::encodeName(temp);
    const QByteArray to = QFile::encodeName(path);
    int moved = ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE);
    if (moved != 0 && (errno == EINVAL || errno == ENOSYS)) {
        moved = ::link(from.constData(), to.constData());
        if (moved == 0)
            ::unlink(from.constData());
    }
    if (moved != 0) {
        const int error = errno;
        removeCaseFiles(temp);
        fail(error == EEXIST ? Code::InvalidState : Code::StoreFailed,
             error == EEXIST ? QStringLiteral("Het bestand %1 bestaat al; kies een andere naam.").arg(target.fileName())
                             : QStringLiteral("Het dossier %1 kan niet worden gemaakt: %2.")
                                   .arg(target.fileName(), SafeFile::reason(error)));
    }
    QFile::remove(temp + QStringLiteral("-shm"));
    SafeFile::syncDir(target.absolutePath());
    return openSqlite(path, loaded, loadedParams);
}

std::unique_ptr<Store> openSqlite(const QString &path, std::shared_ptr<DossierNode> &tree, ParameterValues &params)
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
    std::unique_ptr<SqliteStore> store(new SqliteStore(path));
    // A case this user may not change (its file, or the folder its log and lock live in) is shown
    // as it is: read-only, without a lock of its own, which such a folder could not hold anyway.
    const QByteArray native = QFile::encodeName(path);
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    store->m_readOnly = ::access(native.constData(), W_OK) != 0 || ::access(folder.constData(), W_OK) != 0;
    if (!store->m_readOnly)
        store->lock = takeLock(path);

    // Look before touching: read-only, so a foreign or newer file is left exactly as it was.
    store->openConnection(true);
    if (!hasTable(store->m_db, QStringLiteral("schema_version")) || !hasTable(store->m_db, QStringLiteral("pensioen")))
        fail(Code::InvalidState, QStringLiteral("Het bestand %1 is geen Zarnoveld-dossier.").arg(name));
    const int version = Store::versionOf(store->m_db);
    if (version > Store::SchemaVersion)
        fail(Code::InvalidState, QStringLiteral("Het dossier %1 is gemaakt met een nieuwere versie van Zarnoveld (bestandsversie %2). "
                                                "Deze versie kan bestanden tot en met versie %3 openen.")
                                     .arg(name).arg(version).arg(Store::SchemaVersion));
    if (version < 1)
        fail(Code::InvalidState, QStringLiteral("Het bestand %1 is geen Zarnoveld-dossier.").arg(name));
    if (store->m_readOnly) {
        if (version < Store::SchemaVersion)
            fail(Code::InvalidState, QStringLiteral("Het dossier %1 is alleen-lezen en gemaakt met een oudere versie van Zarnoveld; "
                                                    "het kan pas worden geopend als u het mag wijzigen.").arg(name));
        tree = SqliteStore::loadCase(store->m_db, params);
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
    Store::migrate(store->m_db, Store::migrations(), Store::SchemaVersion);
    tree = SqliteStore::loadCase(store->m_db, params);
    return store;
}

QString holderOfSqlite(const QString &path)
{
    QLockFile lock(lockPath(path));
    qint64 pid = 0;
    QString host, app;
    if (!QFileInfo::exists(lockPath(path)) || !lock.getLockInfo(&pid, &host, &app))
        return QString();
    // A lock whose process is gone is no holder: the next open takes it over.
    if (lock.tryLock(0)) {
        lock.unlock();
        return QString();
    }
    return QStringLiteral("Dossier %1 is in gebruik door %2 (proces %3) op %4.")
        .arg(fileName(path), app.isEmpty() ? QStringLiteral("een ander programma") : app)
        .arg(pid)
        .arg(host);
}

} // namespace Zarnoveld::detail
