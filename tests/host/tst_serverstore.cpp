// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Cases in the office's PostgreSQL database: one editor per case, the holder named to everybody
// else, reading beside the editor, a server that goes away in the middle of an edit and comes
// back, and addresses that must be refused. Runs against the test command's throwaway cluster.

#include "caseaddress.h"
#include "casebackend.h"
#include "hostapplication.h"
#include "store.h"

#include <QJsonArray>
#include <QSqlError>
#include <QSqlQuery>
#include <QProcess>
#include <QSysInfo>
#include <QTest>

#include <pwd.h>
#include <unistd.h>

using namespace VandrelApplication;
using Zarnoveld::HostApplication;

namespace {

QString login()
{
    return QString::fromLocal8Bit(::getpwuid(::getuid())->pw_name);
}

} // namespace

class TstServerStore : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString newCase(const QString &stem) { return TestSupport::newCase(m_dir, stem); }

private slots:
    void initTestCase()
    {
        qputenv("ZARNOVELD_TEST_BACKEND", "postgresql");
        SKIP_WITHOUT_SERVER();
    }

    void secondAdviserIsToldWhoHasTheCaseAndMayRead()
    {
        const QString address = newCase(QStringLiteral("Jansen"));
        auto first = HostApplication::createFile(address);
        first->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("Jan Jansen"));
        QCOMPARE(first->caseName(), TestSupport::caseNameOf(address));

        const HostError refused = TestSupport::hostErrorOf([&] { HostApplication::openFile(address); });
        QCOMPARE(refused.number(), HostErrorCode::InvalidState);
        const QString expected = QStringLiteral("Dossier %1 is in gebruik door %2 op %3 sinds ")
                                     .arg(TestSupport::caseNameOf(address), login(), QSysInfo::machineHostName());
        QVERIFY2(refused.description().startsWith(expected), qPrintable(refused.description()));
        QVERIFY(HostApplication::holderOf(address).startsWith(expected));

        // Reading beside the editor: what the editor stored, and no change of its own.
        auto reader = HostApplication::openForReading(address);
        QVERIFY(reader->readOnly());
        QCOMPARE(reader->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("Jan Jansen"));
        const HostError change = TestSupport::hostErrorOf([&] { reader->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("X")); });
        QCOMPARE(change.number(), HostErrorCode::InvalidState);
        QCOMPARE(reader->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("Jan Jansen"));

        // The editor closes: the case opens again at once, with nobody named as holder.
        first.reset();
        QVERIFY(HostApplication::holderOf(address).isEmpty());
        auto second = HostApplication::openFile(address);
        QCOMPARE(second->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("Jan Jansen"));
    }

    void theCatalogueListsCasesWithTheirHolder()
    {
        const QString held = newCase(QStringLiteral("Lijst open"));
        const QString free = newCase(QStringLiteral("Lijst dicht"));
        auto app = HostApplication::createFile(held);
        HostApplication::createFile(free);
        bool sawHeld = false, sawFree = false;
        for (const auto &c : Zarnoveld::detail::casesOnServer(TestSupport::serverUrl())) {
            if (c.name == TestSupport::caseNameOf(held)) {
                sawHeld = true;
                QCOMPARE(c.user, login());
                QCOMPARE(c.pc, QSysInfo::machineHostName());
                QVERIFY(qAbs(c.since.secsTo(QDateTime::currentDateTime())) < 120);
            }
            if (c.name == TestSupport::caseNameOf(free)) {
                sawFree = true;
                QVERIFY(c.user.isEmpty());
            }
        }
        QVERIFY(sawHeld && sawFree);
    }

    void aSecondCaseOfTheSameNameIsRefusedAndTheFirstKept()
    {
        const QString address = newCase(QStringLiteral("Dubbel"));
        HostApplication::createFile(address)->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("Eerste"));
        const HostError e = TestSupport::hostErrorOf([&] { HostApplication::createFile(address); });
        QCOMPARE(e.number(), HostErrorCode::InvalidState);
        QVERIFY2(e.description().contains(QStringLiteral("bestaat al")), qPrintable(e.description()));
        QCOMPARE(HostApplication::openFile(address)->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("Eerste"));
    }

    void anImportTheServerRefusesLeavesNoCase()
    {
        // PostgreSQL stores no NUL character in text: the whole import is refused, and nothing of
        // it, not even its name, is left in the catalogue.
        const QString address = newCase(QStringLiteral("Geweigerd"));
        QJsonObject doc{{QStringLiteral("Aanvragers"),
                         QJsonArray{QJsonObject{{QStringLiteral("Naam"), QStringLiteral("Piet") + QChar(0) + QStringLiteral("X")}}}}};
        const HostError e = TestSupport::hostErrorOf([&] { HostApplication::importJson(doc, address); });
        QVERIFY(e.number() != 0);
        for (const auto &c : Zarnoveld::detail::casesOnServer(TestSupport::serverUrl()))
            QVERIFY(c.name != TestSupport::caseNameOf(address));
        QCOMPARE(TestSupport::hostErrorOf([&] { HostApplication::openFile(address); }).number(), HostErrorCode::NotFound);
    }

    void aCaseThatIsNotThereIsNamed()
    {
        const QString address = newCase(QStringLiteral("Bestaat niet"));
        const HostError e = TestSupport::hostErrorOf([&] { HostApplication::openFile(address); });
        QCOMPARE(e.number(), HostErrorCode::NotFound);
        QVERIFY(e.description().contains(TestSupport::caseNameOf(address)));
    }

    void addressesWithAPasswordOrUnknownOptionsAreRefused()
    {
        const QString url = TestSupport::serverUrl();
        const QString withPassword = QString(url).replace(QStringLiteral("zarnoveld@"), QStringLiteral("zarnoveld:geheim@"));
        HostError e = TestSupport::hostErrorOf([&] { Zarnoveld::CaseAddress::ofCase(withPassword, QStringLiteral("X")); });
        QVERIFY(e.description().contains(QStringLiteral("PGPASSWORD")));
        QVERIFY(!e.description().contains(QStringLiteral("geheim")));
        e = TestSupport::hostErrorOf([&] { Zarnoveld::CaseAddress::ofCase(url + QStringLiteral("?password=geheim"), QStringLiteral("X")); });
        QVERIFY(e.description().contains(QStringLiteral("PGPASSWORD")));
        e = TestSupport::hostErrorOf([&] { Zarnoveld::CaseAddress::ofCase(url + QStringLiteral("?options=-c%20x"), QStringLiteral("X")); });
        QVERIFY(e.description().contains(QStringLiteral("niet ondersteund")));
        e = TestSupport::hostErrorOf([&] { Zarnoveld::CaseAddress::ofCase(QStringLiteral("postgresql://server"), QStringLiteral("X")); });
        QVERIFY(e.description().contains(QStringLiteral("noemt geen database")));
        e = TestSupport::hostErrorOf([&] { Zarnoveld::CaseAddress::ofCase(url, QStringLiteral("a\nb")); });
        QVERIFY(e.description().contains(QStringLiteral("teken")));
        e = TestSupport::hostErrorOf([&] { Zarnoveld::CaseAddress::ofCase(url, QString(201, QLatin1Char('x'))); });
        QVERIFY(e.description().contains(QStringLiteral("te lang")));
        // A wrong password is the server's refusal, named as such, and opens nothing.
        const QByteArray right = qgetenv("PGPASSWORD");
        qputenv("PGPASSWORD", "fout");
        e = TestSupport::hostErrorOf([&] { HostApplication::openFile(Zarnoveld::CaseAddress::ofCase(url, QStringLiteral("X"))); });
        qputenv("PGPASSWORD", right);
        QCOMPARE(e.number(), HostErrorCode::StoreFailed);
        QVERIFY2(e.description().contains(QStringLiteral("niet bereikbaar")), qPrintable(e.description()));
    }

    void anotherRoleOnTheServerReadsNoCase()
    {
        // Another user of the same database server (another office's role, a reporting tool)
        // sees neither the catalogue nor a case's tables.
        const QString address = newCase(QStringLiteral("Prive"));
        HostApplication::createFile(address)->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("Geheim"));
        const auto server = Zarnoveld::CaseAddress::parse(address);
        {
            QSqlDatabase admin = TestSupport::openRaw(address, QStringLiteral("beheer"));
            QSqlQuery(admin).exec(QStringLiteral("DROP ROLE IF EXISTS buitenstaander"));
            QVERIFY(QSqlQuery(admin).exec(QStringLiteral("CREATE ROLE buitenstaander LOGIN PASSWORD 'buiten'")));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("beheer"));
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("buiten"));
            other.setHostName(server.host);
            other.setPort(server.port);
            other.setDatabaseName(server.database);
            other.setUserName(QStringLiteral("buitenstaander"));
            other.setPassword(QStringLiteral("buiten"));
            QVERIFY2(other.open(), qPrintable(other.lastError().text()));
            QSqlQuery q(other);
            QVERIFY(!q.exec(QStringLiteral("SELECT naam FROM zarnoveld.dossiers")));
            QVERIFY(q.lastError().text().contains(QStringLiteral("permission denied")));
            // The names of schemas are public in PostgreSQL; what is in them is not.
            QVERIFY(q.exec(QStringLiteral("SELECT nspname FROM pg_namespace WHERE nspname LIKE 'dossier_%' LIMIT 1")));
            QVERIFY(q.next());
            const QString schema = q.value(0).toString();
            QVERIFY(!q.exec(QStringLiteral("SELECT naam FROM %1.aanvrager").arg(schema)));
            QVERIFY(q.lastError().text().contains(QStringLiteral("permission denied")));
            other.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("buiten"));
    }

    void serverStoppedAndStartedDuringScriptedEditsLosesNoAcceptedEdit()
    {
        const QString address = newCase(QStringLiteral("Storing"));
        auto app = HostApplication::createFile(address);
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        anv->AddPension();
        QStringList accepted, refused;
        const auto edit = [&](int i) {
            const QString value = QStringLiteral("Uitvoerder %1").arg(i);
            try {
                anv->Get_Pensioen(1)->setUitvoerder(value);
                anv->Get_Pensioen(1)->setBedragTOP(i);
                accepted << value;
            } catch (const HostError &e) {
                refused << e.description();
                // What the screen shows is what is stored: the refused value is not held.
                QVERIFY(anv->Get_Pensioen(1)->Uitvoerder() != value);
            }
        };
        for (int i = 1; i <= 5; ++i)
            edit(i);
        TestSupport::serverAction("pause");
        for (int i = 6; i <= 8; ++i)
            edit(i);
        QCOMPARE(refused.size(), 3);
        QVERIFY2(refused.first().contains(QStringLiteral("verbroken")) || refused.first().contains(QStringLiteral("niet bereikbaar")),
                 qPrintable(refused.first()));
        QVERIFY(refused.first().contains(QStringLiteral("niet opgeslagen")));
        TestSupport::serverAction("resume");
        for (int i = 9; i <= 12; ++i)
            edit(i);
        QCOMPARE(accepted.size(), 9);
        QCOMPARE(accepted.last(), QStringLiteral("Uitvoerder 12"));
        // The case stayed this adviser's across the reconnect.
        QVERIFY(!app->readOnly());
        QVERIFY(HostApplication::holderOf(address).contains(login()));
        const QJsonObject held = app->exportJson();
        app.reset();
        anv.reset();
        auto reopened = HostApplication::openFile(address);
        QCOMPARE(reopened->exportJson(), held);
        QCOMPARE(reopened->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->Uitvoerder(), accepted.last());
        QCOMPARE(reopened->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->BedragTOP(), 12.0);
    }

    void aCaseTakenByAnotherDuringTheOutageIsRefusedCleanly()
    {
        const QString address = newCase(QStringLiteral("Overgenomen"));
        auto app = HostApplication::createFile(address);
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        anv->setNaam(QStringLiteral("Voor"));
        TestSupport::serverAction("pause");
        TestSupport::serverAction("resume");
        // The restart ended the first session and with it its lock: a colleague opens the case
        // and changes it.
        {
            auto colleague = HostApplication::openFile(address);
            colleague->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("Collega"));
        }
        const HostError e = TestSupport::hostErrorOf([&] { anv->setNaam(QStringLiteral("Mijn wijziging")); });
        QCOMPARE(e.number(), HostErrorCode::InvalidState);
        QVERIFY2(e.description().contains(QStringLiteral("alleen-lezen")), qPrintable(e.description()));
        QVERIFY(app->readOnly());
        QCOMPARE(anv->Naam(), QStringLiteral("Voor"));
        app.reset();
        anv.reset();
        QCOMPARE(HostApplication::openFile(address)->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("Collega"));
    }

    void aCaseStillHeldByAnotherAfterTheOutageIsRefusedCleanly()
    {
        const QString address = newCase(QStringLiteral("Bezet"));
        auto app = HostApplication::createFile(address);
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        TestSupport::serverAction("pause");
        TestSupport::serverAction("resume");
        auto colleague = HostApplication::openFile(address);
        const HostError e = TestSupport::hostErrorOf([&] { anv->setNaam(QStringLiteral("Mijn wijziging")); });
        QCOMPARE(e.number(), HostErrorCode::InvalidState);
        QVERIFY2(e.description().contains(QStringLiteral("is in gebruik door")), qPrintable(e.description()));
        QVERIFY(app->readOnly());
    }
};

QTEST_GUILESS_MAIN(TstServerStore)
#include "tst_serverstore.moc"
