// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Killing the program at any moment loses no setter that had returned, and leaves a sound file.

#include "hostapplication.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace VandrelApplication;
using Zarnoveld::HostApplication;

class TstHostCrash : public QObject
{
    Q_OBJECT

private:
    // powerCut: besides the kill, the disk loses every write no sync had flushed (see crashhelper).
    void killAtRandomMoments(bool powerCut)
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("crash.zarnoveld"));
        {
            auto app = HostApplication::createFile(path);
            app->Get_Dossier()->Get_Aanvrager(1)->AddPension();
        }
        QRandomGenerator random(20250101);
        qint64 lastReported = 0;
        for (int round = 0; round < 20; ++round) {
            QProcess helper;
            helper.setProcessChannelMode(QProcess::SeparateChannels);
            helper.start(QStringLiteral(CRASH_HELPER),
                         powerCut ? QStringList{path, QStringLiteral("--stroomuitval")} : QStringList{path});
            QVERIFY2(helper.waitForStarted(5000), qPrintable(helper.errorString()));
            const int target = static_cast<int>(random.bounded(1, 80));
            QByteArray out;
            while (out.count('\n') < target && helper.state() == QProcess::Running) {
                helper.waitForReadyRead(2000);
                out += helper.readAllStandardOutput();
            }
            helper.kill();   // SIGKILL: no destructors, no clean close
            QVERIFY(helper.waitForFinished(5000));
            out += helper.readAllStandardOutput();
            QVERIFY2(out.count('\n') >= 1, helper.readAllStandardError().constData());
            const QList<QByteArray> lines = out.trimmed().split('\n');
            if (powerCut) {
                // The machine comes back: the disk holds what was flushed, the shared-memory index
                // is gone.
                for (const QString &suffix : {QString(), QStringLiteral("-wal")}) {
                    const QString durable = path + suffix + QStringLiteral(".durable");
                    QFile::remove(path + suffix);
                    if (QFileInfo::exists(durable))
                        QVERIFY(QFile::rename(durable, path + suffix));
                }
                QFile::remove(path + QStringLiteral("-shm"));
            }
            const qint64 reported = lines.last().toLongLong();
            QVERIFY(reported > lastReported);
            lastReported = reported;

            // Every step up to `reported` returned, so it must be there; the step in flight may be too.
            {
                auto app = HostApplication::openFile(path);
                auto anv = app->Get_Dossier()->Get_Aanvrager(1);
                auto pen = anv->Get_Pensioen(1);
                const qint64 salary = static_cast<qint64>(pen->Salaris());
                QVERIFY2(salary == reported || salary == reported + 1,
                         qPrintable(QStringLiteral("round %1: reported %2, file has %3").arg(round).arg(reported).arg(salary)));
                auto scenario = pen->Get_OuderdomRegel(1)->ScenarioOP();
                // A step adds a rule and then sets its amount: a kill between the two leaves a rule
                // of 0 that the restarted run does not reuse. Every reported step's amount is there.
                QSet<qint64> amounts;
                for (qint16 i = 1; i <= scenario->RegelCount(); ++i)
                    amounts.insert(static_cast<qint64>(scenario->Regel(i)->Bedrag()));
                for (qint64 step = 3; step <= reported; step += 3)
                    QVERIFY2(amounts.contains(step), qPrintable(QStringLiteral("round %1: step %2 lost").arg(round).arg(step)));
                if (reported >= 5) {
                    const qint64 name = anv->Naam().mid(1).toLongLong();
                    QVERIFY(name >= reported - reported % 5 && name <= reported + 1);
                }
            }
            {
                auto db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("check"));
                db.setDatabaseName(path);
                QVERIFY(db.open());
                QSqlQuery q(db);
                QVERIFY(q.exec(QStringLiteral("PRAGMA integrity_check")) && q.next());
                QCOMPARE(q.value(0).toString(), QStringLiteral("ok"));
                q = QSqlQuery();
                db.close();
            }
            QSqlDatabase::removeDatabase(QStringLiteral("check"));
        }
    }
private slots:
    void killedAtRandomMomentsLosesNothingThatReturned()
    {
        killAtRandomMoments(false);
    }

    // The power goes instead: only what reached the disk counts, and every edit the setter
    // accepted must be among it.
    void powerCutAtRandomMomentsLosesNothingThatReturned()
    {
        killAtRandomMoments(true);
    }
};

QTEST_GUILESS_MAIN(TstHostCrash)
#include "tst_hostcrash.moc"
