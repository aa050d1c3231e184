// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "casebackend.h"

#include "caseaddress.h"
#include "store.h"

#include <QFileInfo>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QSqlQuery>
#include <QUrl>
#include <QUuid>

namespace TestSupport {

namespace {

QString clusterFile(const QString &name)
{
    const QString folder = qEnvironmentVariable("ZARNOVELD_TEST_CLUSTER");
    if (folder.isEmpty())
        return QString();
    QFile file(folder + QLatin1Char('/') + name);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll()).trimmed();
}

// Names differ from run to run, so a test never meets a case of an earlier run or of another test.
const QString &runTag()
{
    static const QString tag = QUuid::createUuid().toString(QUuid::Id128).left(8);
    return tag;
}

} // namespace

void serverAction(const char *action)
{
    QProcess p;
    p.start(QStringLiteral(VANDREL_SOURCE_DIR "/scripts/pgcluster"),
            {QString::fromLatin1(action), qEnvironmentVariable("ZARNOVELD_TEST_CLUSTER")});
    QVERIFY(p.waitForFinished(120000));
    QVERIFY2(p.exitCode() == 0, p.readAllStandardError().constData());
}

bool onServer()
{
    return qEnvironmentVariable("ZARNOVELD_TEST_BACKEND") == QStringLiteral("postgresql");
}

QString serverMissing()
{
    if (qEnvironmentVariableIsEmpty("ZARNOVELD_TEST_CLUSTER"))
        return QStringLiteral("PostgreSQL-server niet beschikbaar: ZARNOVELD_TEST_CLUSTER is niet gezet "
                              "(de test hoort bij ctest, dat het cluster start).");
    const QString skip = clusterFile(QStringLiteral("skip"));
    if (!skip.isEmpty())
        return skip;
    if (clusterFile(QStringLiteral("url")).isEmpty())
        return QStringLiteral("PostgreSQL-server niet beschikbaar: het cluster is niet gestart.");
    return QString();
}

QString serverUrl()
{
    if (!serverMissing().isEmpty())
        return QString();
    qputenv("PGPASSWORD", clusterFile(QStringLiteral("password")).toUtf8());
    return clusterFile(QStringLiteral("url"));
}

QString freshDatabase()
{
    const QString url = serverUrl();
    if (url.isEmpty())
        return QString();
    const QString name = QStringLiteral("t_%1").arg(QUuid::createUuid().toString(QUuid::Id128).left(12));
    {
        QSqlDatabase db = openRaw(url + QStringLiteral("#-"), QStringLiteral("aanmaken"));
        if (!QSqlQuery(db).exec(QStringLiteral("CREATE DATABASE %1").arg(name)))
            return QString();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("aanmaken"));
    QString fresh = url;
    fresh.replace(QRegularExpression(QStringLiteral("/[^/]+$")), QLatin1Char('/') + name);
    return fresh;
}

QString newCase(const QTemporaryDir &dir, const QString &stem)
{
    static int n = 0;
    ++n;
    if (!onServer())
        return dir.filePath(QStringLiteral("%1-%2.zdossier").arg(stem).arg(n));
    return Zarnoveld::CaseAddress::ofCase(serverUrl(), QStringLiteral("%1 %2-%3").arg(stem, runTag()).arg(n));
}

bool caseExists(const QString &address)
{
    if (!Zarnoveld::CaseAddress::isServer(address))
        return QFileInfo::exists(address);
    const QString name = Zarnoveld::CaseAddress::parse(address).caseName;
    for (const auto &c : Zarnoveld::detail::casesOnServer(address))
        if (c.name == name)
            return true;
    return false;
}

QSqlDatabase openRaw(const QString &address, const QString &connection)
{
    if (!Zarnoveld::CaseAddress::isServer(address)) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(address);
        db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
        db.open();
        return db;
    }
    const auto server = Zarnoveld::CaseAddress::parse(address);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), connection);
    db.setHostName(server.host);
    db.setPort(server.port);
    db.setUserName(server.user);
    db.setDatabaseName(server.database);
    if (db.open()) {
        QSqlQuery q(db);
        q.exec(QStringLiteral("SET client_min_messages TO error"));
        q.prepare(QStringLiteral("SELECT id FROM zarnoveld.dossiers WHERE naam = ?"));
        q.addBindValue(server.caseName);
        if (q.exec() && q.next())
            QSqlQuery(db).exec(QStringLiteral("SET search_path TO dossier_%1").arg(q.value(0).toLongLong()));
    }
    return db;
}

void removeCase(const QString &address)
{
    if (!Zarnoveld::CaseAddress::isServer(address)) {
        for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral(".lock")})
            QFile::remove(address + suffix);
        return;
    }
    {
        QSqlDatabase db = openRaw(address, QStringLiteral("verwijderen"));
        QSqlQuery q(db);
        q.prepare(QStringLiteral("DELETE FROM zarnoveld.dossiers WHERE naam = ? RETURNING id"));
        q.addBindValue(Zarnoveld::CaseAddress::parse(address).caseName);
        if (q.exec() && q.next())
            QSqlQuery(db).exec(QStringLiteral("DROP SCHEMA dossier_%1 CASCADE").arg(q.value(0).toLongLong()));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("verwijderen"));
}

QString caseNameOf(const QString &address)
{
    if (Zarnoveld::CaseAddress::isServer(address))
        return Zarnoveld::CaseAddress::parse(address).caseName;
    return address.section(QLatin1Char('/'), -1);
}

} // namespace TestSupport
