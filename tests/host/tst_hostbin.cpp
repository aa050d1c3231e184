// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The case's bin: RemovePension keeps the scheme, restoring puts it back where it was, and the
// bin follows its participant and the file.

#include "casebackend.h"
#include "hostapplication.h"

#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

using namespace VandrelApplication;
using Zarnoveld::HostApplication;

namespace {

template <typename Body>
qint32 errorOf(Body &&body)
{
    return TestSupport::hostErrorOf(body).number();
}

// Three schemes with providers A, B, C; B with a second old-age row and a disability row.
void fill(HostApplication &app, qint16 anvId)
{
    auto participant = app.Get_Dossier()->Get_Aanvrager(anvId);
    for (const char *name : {"A", "B", "C"}) {
        auto scheme = participant->Get_Pensioen(participant->AddPension());
        scheme->setUitvoerder(QLatin1String(name));
        scheme->setSalaris(40000 + name[0]);
    }
    auto b = participant->Get_Pensioen(2);
    b->AddOuderdomRegel();
    b->AoUitkeringAdd();
    b->Get_OuderdomRegel(2)->ScenarioOP()->Add_Regel();
}

QStringList providers(HostApplication &app, qint16 anvId)
{
    QStringList names;
    auto participant = app.Get_Dossier()->Get_Aanvrager(anvId);
    for (qint16 i = 1; auto scheme = participant->Get_Pensioen(i); ++i)
        names << scheme->Uitvoerder();
    return names;
}

QByteArray exported(const HostApplication &app)
{
    return QJsonDocument(app.exportJson()).toJson();
}

} // namespace

class TstHostBin : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase() { SKIP_WITHOUT_SERVER(); }

    void removedSchemeIsKeptWithItsTime()
    {
        auto app = HostApplication::createInMemory();
        fill(*app, 1);
        const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
        app->Get_Dossier()->Get_Aanvrager(1)->RemovePension(2);
        QCOMPARE(providers(*app, 1), (QStringList{QStringLiteral("A"), QStringLiteral("C")}));
        const auto entries = app->binEntries();
        QCOMPARE(entries.size(), 1);
        QCOMPARE(entries[0].uitvoerder, QStringLiteral("B"));
        QCOMPARE(entries[0].anvId, qint16(1));
        QCOMPARE(entries[0].position, 2);
        QVERIFY(entries[0].removedAt >= before && entries[0].removedAt <= QDateTime::currentDateTimeUtc());
    }

    void restoreGivesBackTheSameCase()
    {
        auto app = HostApplication::createInMemory();
        fill(*app, 1);
        const QByteArray original = exported(*app);
        app->Get_Dossier()->Get_Aanvrager(1)->RemovePension(2);
        QVERIFY(exported(*app) != original);
        QCOMPARE(app->restoreFromBin(app->binEntries().first().id), qint16(2));
        QCOMPARE(exported(*app), original);
        QVERIFY(app->binEntries().isEmpty());
        // Gone from the bin: a second restore is refused.
        QCOMPARE(errorOf([&] { app->restoreFromBin(1); }), HostErrorCode::NotFound);
    }

    void shorterListTakesTheSchemeAtItsEnd()
    {
        auto app = HostApplication::createInMemory();
        fill(*app, 1);
        auto participant = app->Get_Dossier()->Get_Aanvrager(1);
        participant->RemovePension(3);
        participant->RemovePension(2);
        participant->RemovePension(1);
        QCOMPARE(providers(*app, 1), QStringList());
        const auto entries = app->binEntries();
        QCOMPARE(entries.size(), 3);
        // C was number 3; in an empty list it becomes number 1.
        QCOMPARE(app->restoreFromBin(entries[0].id), qint16(1));
        QCOMPARE(app->restoreFromBin(entries[2].id), qint16(1));
        QCOMPARE(providers(*app, 1), (QStringList{QStringLiteral("A"), QStringLiteral("C")}));
    }

    void removedPartnerTakesItsBinAlong()
    {
        const QString path = TestSupport::newCase(m_dir, QStringLiteral("partner"));
        {
            auto app = HostApplication::createFile(path);
            app->Get_Dossier()->AddAanvrager();
            fill(*app, 2);
            fill(*app, 1);
            app->Get_Dossier()->Get_Aanvrager(2)->RemovePension(1);
            app->Get_Dossier()->Get_Aanvrager(1)->RemovePension(1);
            QCOMPARE(app->binEntries().size(), 2);
            app->Get_Dossier()->RemoveAanvrager(2);
            QCOMPARE(app->binEntries().size(), 1);
            QCOMPARE(app->binEntries().first().anvId, qint16(1));
        }
        auto again = HostApplication::openFile(path);
        QCOMPARE(again->binEntries().size(), 1);
        QCOMPARE(again->binEntries().first().uitvoerder, QStringLiteral("A"));
    }

    void binIsKeptInTheFileAndEmptiedByAge()
    {
        const QString path = TestSupport::newCase(m_dir, QStringLiteral("bin"));
        QByteArray original;
        {
            auto app = HostApplication::createFile(path);
            fill(*app, 1);
            original = exported(*app);
            app->Get_Dossier()->Get_Aanvrager(1)->RemovePension(1);
            app->Get_Dossier()->Get_Aanvrager(1)->RemovePension(1);
        }
        {
            auto app = HostApplication::openFile(path);
            QCOMPARE(app->binEntries().size(), 2);
            // Nothing removed before an hour ago.
            QCOMPARE(app->emptyBin(QDateTime::currentDateTimeUtc().addSecs(-3600)), 0);
            QCOMPARE(app->restoreFromBin(app->binEntries()[1].id), qint16(1));
            QCOMPARE(app->restoreFromBin(app->binEntries()[0].id), qint16(1));
            QCOMPARE(exported(*app), original);
            app->Get_Dossier()->Get_Aanvrager(1)->RemovePension(3);
            QCOMPARE(app->emptyBin(QDateTime::currentDateTimeUtc().addSecs(5)), 1);
        }
        auto app = HostApplication::openFile(path);
        QVERIFY(app->binEntries().isEmpty());
        QCOMPARE(providers(*app, 1), (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
    }

    void fullListRefusesARestore()
    {
        auto app = HostApplication::createInMemory();
        auto participant = app->Get_Dossier()->Get_Aanvrager(1);
        for (int i = 0; i < 99; ++i)
            participant->AddPension();
        participant->RemovePension(1);
        participant->AddPension();
        QCOMPARE(errorOf([&] { app->restoreFromBin(app->binEntries().first().id); }), HostErrorCode::OutOfRange);
        QCOMPARE(app->binEntries().size(), 1);
    }
};

QTEST_GUILESS_MAIN(TstHostBin)
#include "tst_hostbin.moc"
