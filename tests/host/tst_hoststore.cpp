// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The case file: write-through, reopening, renumbering, deferred writes, refusing foreign files.

#include "casebackend.h"
#include "hostapplication.h"
#include "fiscalfigures.h"
#include "store.h"

#include <QFile>
#include <QLockFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

using namespace VandrelApplication;
using Zarnoveld::HostApplication;

namespace {

template <typename Body>
HostError errorOf(Body &&body)
{
    return TestSupport::hostErrorOf(body);
}

// A second, independent look at the file, as another program would have.
struct RawFile
{
    explicit RawFile(const QString &path)
        : name(QUuid::createUuid().toString())
    {
        db = TestSupport::openRaw(path, name);
    }
    ~RawFile()
    {
        db.close();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
    }
    QVariant scalar(const QString &sql)
    {
        QSqlQuery q(db);
        if (!q.exec(sql) || !q.next())
            return {};
        return q.value(0);
    }
    bool exec(const QString &sql)
    {
        QSqlQuery q(db);
        return q.exec(sql);
    }
    QString name;
    QSqlDatabase db;
};

QByteArray bytesOf(const QString &path)
{
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    return f.readAll();
}

} // namespace

class TstHostStore : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString newPath() { return TestSupport::newCase(m_dir, QStringLiteral("case")); }

private slots:
    void initTestCase() { SKIP_WITHOUT_SERVER(); }

    void newFileIsAValidCase()
    {
        ONLY_FOR_CASE_FILES();
        const QString path = newPath();
        {
            auto app = HostApplication::createFile(path);
            QCOMPARE(app->filePath(), path);
            QVERIFY(app->Get_Dossier()->Get_Aanvrager(1));
        }
        RawFile raw(path);
        QCOMPARE(raw.scalar(QStringLiteral("SELECT version FROM schema_version")).toInt(),
                 Zarnoveld::detail::Store::SchemaVersion);
        QCOMPARE(raw.scalar(QStringLiteral("PRAGMA journal_mode")).toString(), QStringLiteral("wal"));
        QCOMPARE(raw.scalar(QStringLiteral("SELECT COUNT(*) FROM aanvrager")).toInt(), 1);
        // A new case carries this year's figures and says which year they are.
        const int year = Zarnoveld::FiscalFigures::yearFor(QDate::currentDate());
        QCOMPARE(raw.scalar(QStringLiteral("SELECT waarde FROM parameters WHERE naam = 'FranchiseA'")).toDouble(),
                 Zarnoveld::FiscalFigures::find(year)->values.franchiseA);
        QCOMPARE(raw.scalar(QStringLiteral("SELECT Rekenjaar FROM dossier")).toInt(), year);
        // Foreign keys are declared: removing a scheme takes its rows along.
        QVERIFY(raw.scalar(QStringLiteral("SELECT sql FROM sqlite_master WHERE name = 'ouderdomregel'"))
                    .toString().contains(QStringLiteral("REFERENCES pensioen(id) ON DELETE CASCADE")));
        QVERIFY(!QFile::exists(path + QStringLiteral(".lock")));
    }

    void createRefusesAnExistingFile()
    {
        ONLY_FOR_CASE_FILES();
        const QString path = newPath();
        HostApplication::createFile(path);
        const QByteArray before = bytesOf(path);
        const HostError e = errorOf([&] { HostApplication::createFile(path); });
        QCOMPARE(e.number(), HostErrorCode::InvalidState);
        QVERIFY(e.description().contains(QStringLiteral("bestaat al")));
        QCOMPARE(bytesOf(path), before);
    }

    void everySetterSurvivesReopening()
    {
        const QString path = newPath();
        QJsonObject written;
        {
            auto app = HostApplication::createFile(path);
            auto dossier = app->Get_Dossier();
            dossier->setSyncVlaggen(SyncVlag::Salaris | SyncVlag::Grondslag);
            dossier->AddAanvrager();
            auto anv = dossier->Get_Aanvrager(1);
            anv->setNaam(QStringLiteral("J. de Vries"));
            anv->setGeboorteDatum(QDate(1969, 7, 31));
            anv->setCategorie(5);
            anv->AddDienstverband();
            auto dv = anv->Get_Dienstverband(1);
            dv->setWerkgever(QStringLiteral("Gemeente Zwolle"));
            dv->setDt_Begin(QDate(1995, 2, 1));
            dv->setDt_Einde(QDate(2036, 8, 1));
            dv->setSalaris(56789.5);
            dv->setDt_InkomenMeetellenTot(QDate(2030, 1, 1));
            dossier->Get_Aanvrager(2)->setNaam(QStringLiteral("A. de Vries-Bakker"));

            anv->AddPension();
            auto p = anv->Get_Pensioen(1);
            p->setHuidigeWerkgever(true);
            p->setUitvoerder(QStringLiteral("ABP"));
            p->setBranche(QStringLiteral("Overheid"));
            p->setDienstverbandKey(dv->Key());
            p->setRemoveOnClose(true);
            p->setSoortRegeling(2);
            p->setRegelingBekend(false);
            p->setSalaris(55000.25);
            p->setFranchise(15859);
            p->setGrondslag(39141.25);
            p->setOpbouwPercentage(1.875f);
            p->setAangroei(733.9);
            p->setPremie(1200.5);
            p->setDoelvermogen(250000);
            p->setRekenrenteOpbouw(3.1f);
            p->setRekenrenteUitkering(2.7f);
            p->setOpgebouwd(12345.67);
            p->setDt_Overzicht(QDate(2024, 12, 31));
            p->setBijdrageOP(101);
            p->setBijdragePreP(102);
            p->setBijdrageVrijwillig(103);
            p->setTOP(true);
            p->setBedragTOP(2000);
            p->setPP(true);
            p->setBedragPP(9000);
            p->setPc_PP(70);
            p->setPPNaAow(true);
            p->setBedragPPNaAow(8000);
            p->setPc_PPNaAow(65.5f);
            p->setPPna65(true);
            p->setBedragPPna65(7000);
            p->setPc_PPna65(60.25f);
            p->setPpNa65TotAow(true);
            p->setBedragPpNa65TotAow(6000);
            p->setPc_PpNa65TotAow(55.75f);
            p->setWzP(true);
            p->setBedragWzP(1500);
            p->setPc_WzP(14);
            p->setEindLeeftijdWzP(27);
            p->setDienstjaren(12);
            p->setIP(true);
            p->setBedragIP(20000);
            p->setPc_IP(70);
            p->setCd_UitkeringSoort(UitkeringSoort::ProRata);
            p->setCd_UitkeringObv(2);
            p->setAnwCompensatie(true);
            p->setBedragAnwCompensatie(12000);
            p->setDt_65(QDate(2034, 7, 1));
            p->setHeeftSpecificatie(true);
            p->SetProperty(QStringLiteral("Cd_RvcAfwijking"), 1);
            p->SetProperty(QStringLiteral("Pc_RvcAfwijking"), 12.5f);
            p->SetProperty(QStringLiteral("Pc_RvcUitkering"), 0.7f);
            auto row = p->Get_OuderdomRegel(1);
            row->setLeeftijd(67 * 12);
            row->setOP(true);
            row->setBedragOP(24000);
            row->setLeeftijdOP(67 * 12 + 3);
            row->setPreP(true);
            row->setBedragPreP(3000);
            row->setDt_IngangPreP(QDate(2029, 8, 1));
            auto sc = row->ScenarioOP();
            sc->setBedrag(2000);
            auto r = sc->Add_Regel();
            r->setMaand(13);
            r->setBedrag(1900.5);
            p->AoUitkeringAdd();
            auto ao = p->AoUitkeringItem(1);
            ao->setPc_AoVanaf(35);
            ao->setPc_AoTot(80);
            ao->setPc_Uitkering(-1);
            written = app->exportJson();
        }
        auto app = HostApplication::openFile(path);
        QCOMPARE(app->exportJson(), written);
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        QCOMPARE(app->Get_Dossier()->SyncVlaggen(), SyncVlag::Salaris | SyncVlag::Grondslag);
        QCOMPARE(anv->Naam(), QStringLiteral("J. de Vries"));
        QCOMPARE(anv->GeboorteDatum(), QDate(1969, 7, 31));
        QCOMPARE(anv->Categorie(), quint8(5));
        QCOMPARE(anv->Get_Dienstverband(1)->Salaris(), 56789.5);
        QCOMPARE(anv->Get_Dienstverband(1)->Dt_InkomenMeetellenTot(), QDate(2030, 1, 1));
        QCOMPARE(app->Get_Dossier()->Get_Aanvrager(2)->Naam(), QStringLiteral("A. de Vries-Bakker"));
        auto p = anv->Get_Pensioen(1);
        QVERIFY(p->HuidigeWerkgever());
        QCOMPARE(p->DienstverbandKey(), anv->Get_Dienstverband(1)->Key());
        QCOMPARE(p->SoortRegeling(), qint16(2));
        QVERIFY(!p->RegelingBekend());
        QCOMPARE(p->OpbouwPercentage(), 1.875f);
        QCOMPARE(p->RekenrenteOpbouw(), 3.1f);
        QCOMPARE(p->Pc_PPNaAow(), 65.5f);
        QCOMPARE(p->Pc_PpNa65TotAow(), 55.75f);
        QCOMPARE(p->EindLeeftijdWzP(), qint16(27));
        QCOMPARE(p->Dienstjaren(), qint16(12));
        QCOMPARE(p->Cd_UitkeringSoort(), UitkeringSoort::ProRata);
        QCOMPARE(p->Cd_UitkeringObv(), 2);
        QCOMPARE(p->BedragAnwCompensatie(), 12000.0);
        QCOMPARE(p->Dt_65(), QDate(2034, 7, 1));
        QCOMPARE(p->Dt_Overzicht(), QDate(2024, 12, 31));
        QCOMPARE(p->Property(QStringLiteral("Pc_RvcUitkering")).toFloat(), 0.7f);
        auto row = p->Get_OuderdomRegel(1);
        QCOMPARE(row->Dt_IngangOP(), QDate(2036, 11, 1));
        QCOMPARE(p->Dt_PensioenIngang(), QDate(2036, 11, 1));
        QCOMPARE(row->LeeftijdPreP(), anv->AgeOnDate(QDate(2029, 8, 1)));
        QCOMPARE(row->ScenarioOP()->Regel(1)->Bedrag(), 1900.5);
        QCOMPARE(p->AoUitkeringItem(1)->Pc_Uitkering(), -1.0f);
    }

    void setterIsInTheFileBeforeItReturns()
    {
        const QString path = newPath();
        auto app = HostApplication::createFile(path);
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        anv->AddPension();
        auto pen = anv->Get_Pensioen(1);
        RawFile raw(path);
        pen->setBedragTOP(4321);
        QCOMPARE(raw.scalar(QStringLiteral("SELECT BedragTOP FROM pensioen")).toDouble(), 4321.0);
        anv->setNaam(QStringLiteral("Smit"));
        QCOMPARE(raw.scalar(QStringLiteral("SELECT Naam FROM aanvrager")).toString(), QStringLiteral("Smit"));
    }

    void removeAndRenumberSurviveReopening()
    {
        const QString path = newPath();
        {
            auto app = HostApplication::createFile(path);
            auto anv = app->Get_Dossier()->Get_Aanvrager(1);
            for (int i = 1; i <= 4; ++i) {
                anv->AddPension();
                anv->Get_Pensioen(qint16(i))->setUitvoerder(QStringLiteral("U%1").arg(i));
                anv->Get_Pensioen(qint16(i))->AddOuderdomRegel();
            }
            anv->RemovePension(2);
            anv->RemovePension(1);
            anv->AddPension();
            anv->Get_Pensioen(3)->setUitvoerder(QStringLiteral("U5"));
            auto pen = anv->Get_Pensioen(1);
            pen->RemoveOuderdomRegel(1);
        }
        auto app = HostApplication::openFile(path);
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        QCOMPARE(anv->Get_Pensioen(1)->Uitvoerder(), QStringLiteral("U3"));
        QCOMPARE(anv->Get_Pensioen(2)->Uitvoerder(), QStringLiteral("U4"));
        QCOMPARE(anv->Get_Pensioen(3)->Uitvoerder(), QStringLiteral("U5"));
        QVERIFY(!anv->Get_Pensioen(4));
        QCOMPARE(anv->Get_Pensioen(1)->OuderdomRegelCount(), qint16(1));
        // Ids continue after the highest one in the file.
        anv->AddPension();
        anv->Get_Pensioen(4)->setUitvoerder(QStringLiteral("U6"));
        RawFile raw(path);
        QCOMPARE(raw.scalar(QStringLiteral("SELECT COUNT(*) FROM ouderdomregel")).toInt(), 5);
        QCOMPARE(raw.scalar(QStringLiteral("SELECT Uitvoerder FROM pensioen WHERE pos = 4")).toString(), QStringLiteral("U6"));
    }

    void copyFromIsOneTransactionAndPersists()
    {
        const QString path = newPath();
        {
            auto app = HostApplication::createFile(path);
            auto anv = app->Get_Dossier()->Get_Aanvrager(1);
            anv->AddPension();
            auto pen = anv->Get_Pensioen(1);
            pen->setUitvoerder(QStringLiteral("Oud"));
            pen->AoUitkeringAdd();
            pen->AddOuderdomRegel();
            pen->Get_OuderdomRegel(2)->ScenarioOP()->Add_Regel()->setBedrag(5);
            auto snap = pen->Snapshot();
            pen->setUitvoerder(QStringLiteral("Nieuw"));
            pen->AoUitkeringDelete(1);
            pen->RemoveOuderdomRegel(2);
            pen->CopyFrom(*snap);
        }
        auto app = HostApplication::openFile(path);
        auto pen = app->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1);
        QCOMPARE(pen->Uitvoerder(), QStringLiteral("Oud"));
        QVERIFY(pen->AoUitkeringItem(1));
        QCOMPARE(pen->Get_OuderdomRegel(2)->ScenarioOP()->Regel(1)->Bedrag(), 5.0);
    }

    void deferredWritesWaitForTheSwitch()
    {
        const QString path = newPath();
        auto app = HostApplication::createFile(path);
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        anv->AddPension();
        auto pen = anv->Get_Pensioen(1);
        RawFile raw(path);
        pen->setUitgesteldSchrijven(true);
        pen->setSalaris(777);
        pen->setPc_PP(70);
        pen->Get_OuderdomRegel(1)->setBedragOP(888);
        QCOMPARE(raw.scalar(QStringLiteral("SELECT Salaris FROM pensioen")).toDouble(), 0.0);
        QCOMPARE(raw.scalar(QStringLiteral("SELECT BedragOP FROM ouderdomregel")).toDouble(), 0.0);
        pen->setUitgesteldSchrijven(false);
        QCOMPARE(raw.scalar(QStringLiteral("SELECT Salaris FROM pensioen")).toDouble(), 777.0);
        QCOMPARE(raw.scalar(QStringLiteral("SELECT Pc_PP FROM pensioen")).toDouble(), 70.0);
        QCOMPARE(raw.scalar(QStringLiteral("SELECT BedragOP FROM ouderdomregel")).toDouble(), 888.0);
    }

    void openRefusesWhatIsNotACase()
    {
        ONLY_FOR_CASE_FILES();
        const QString text = newPath();
        {
            QFile f(text);
            f.open(QIODevice::WriteOnly);
            f.write("Dit is geen dossier maar een briefje.\n");
        }
        const QByteArray before = bytesOf(text);
        HostError e = errorOf([&] { HostApplication::openFile(text); });
        QCOMPARE(e.number(), HostErrorCode::InvalidState);
        QCOMPARE(e.description(), QStringLiteral("Het bestand %1 is geen Zarnoveld-dossier.").arg(QFileInfo(text).fileName()));
        QCOMPARE(bytesOf(text), before);

        const QString empty = newPath();
        QFile(empty).open(QIODevice::WriteOnly);
        QCOMPARE(errorOf([&] { HostApplication::openFile(empty); }).number(), HostErrorCode::InvalidState);

        const QString foreign = newPath();
        {
            RawFile raw(foreign);
            QVERIFY(raw.exec(QStringLiteral("CREATE TABLE klanten (naam TEXT)")));
        }
        const QByteArray foreignBefore = bytesOf(foreign);
        e = errorOf([&] { HostApplication::openFile(foreign); });
        QVERIFY(e.description().contains(QStringLiteral("geen Zarnoveld-dossier")));
        QCOMPARE(bytesOf(foreign), foreignBefore);
        QVERIFY(!QFile::exists(foreign + QStringLiteral("-wal")));

        e = errorOf([&] { HostApplication::openFile(m_dir.filePath(QStringLiteral("bestaat-niet"))); });
        QCOMPARE(e.number(), HostErrorCode::NotFound);
    }

    void openRefusesANewerVersion()
    {
        ONLY_FOR_CASE_FILES();
        const QString path = newPath();
        HostApplication::createFile(path);
        {
            RawFile raw(path);
            QVERIFY(raw.exec(QStringLiteral("UPDATE schema_version SET version = %1")
                                 .arg(Zarnoveld::detail::Store::SchemaVersion + 1)));
            raw.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
        }
        const QByteArray before = bytesOf(path);
        const HostError e = errorOf([&] { HostApplication::openFile(path); });
        QCOMPARE(e.number(), HostErrorCode::InvalidState);
        QVERIFY(e.description().contains(QStringLiteral("nieuwere versie van Zarnoveld")));
        QVERIFY(e.description().contains(QStringLiteral("bestandsversie %1").arg(Zarnoveld::detail::Store::SchemaVersion + 1)));
        QCOMPARE(bytesOf(path), before);
    }

    void openRefusesACaseOpenElsewhere()
    {
        ONLY_FOR_CASE_FILES();
        const QString path = newPath();
        HostApplication::createFile(path);
        {
            // Another zarnoveld holds the case.
            auto first = HostApplication::openFile(path);
            const HostError e = errorOf([&] { HostApplication::openFile(path); });
            QCOMPARE(e.number(), HostErrorCode::InvalidState);
            QVERIFY(e.description().contains(QStringLiteral("al geopend in een ander programma")));
            first->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("nog steeds schrijfbaar"));
        }
        {
            // Any other SQLite program in the middle of writing.
            RawFile raw(path);
            QVERIFY(raw.exec(QStringLiteral("BEGIN IMMEDIATE")));
            const HostError e = errorOf([&] { HostApplication::openFile(path); });
            QCOMPARE(e.number(), HostErrorCode::InvalidState);
            QVERIFY(e.description().contains(QStringLiteral("door een ander programma bewerkt")));
            raw.exec(QStringLiteral("ROLLBACK"));
        }
        // Once released, it opens, and the earlier edit is there.
        auto app = HostApplication::openFile(path);
        QCOMPARE(app->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("nog steeds schrijfbaar"));
    }

    void staleLockOfADeadProgramIsTakenOver()
    {
        ONLY_FOR_CASE_FILES();
        const QString path = newPath();
        HostApplication::createFile(path);
        {
            QFile lock(path + QStringLiteral(".lock"));
            QVERIFY(lock.open(QIODevice::WriteOnly));
            // The format QLockFile writes: pid, application name, host name.
            lock.write("999999\nzarnoveld\n" + QSysInfo::machineHostName().toUtf8() + "\n");
        }
        auto app = HostApplication::openFile(path);
        QVERIFY(app->Get_Dossier());
    }

    void emptyLockOfAWriterKilledMidwayIsTakenOver()
    {
        ONLY_FOR_CASE_FILES();
        const QString path = newPath();
        HostApplication::createFile(path);
        {
            // Killed between making the lock file and writing its details into it.
            QFile lock(path + QStringLiteral(".lock"));
            QVERIFY(lock.open(QIODevice::WriteOnly));
        }
        auto app = HostApplication::openFile(path);
        QVERIFY(app->Get_Dossier());
    }

    void migrationStepsRunInOrderAndStampTheVersion()
    {
        ONLY_FOR_CASE_FILES();
        using Zarnoveld::detail::Store;
        const QString path = newPath();
        RawFile raw(path);
        QCOMPARE(Store::versionOf(raw.db), 0);
        Store::migrate(raw.db, Store::migrations(), 1);
        QCOMPARE(Store::versionOf(raw.db), 1);
        // The real step 1 -> 2 adds the years-of-service column to a version-1 file.
        QVERIFY(!raw.exec(QStringLiteral("SELECT Dienstjaren FROM pensioen")));
        Store::migrate(raw.db, Store::migrations(), 2);
        QCOMPARE(Store::versionOf(raw.db), 2);
        QVERIFY(raw.exec(QStringLiteral("SELECT Dienstjaren FROM pensioen")));
        // The real step 2 -> 3 adds the pension register's identifier of a scheme.
        QVERIFY(!raw.exec(QStringLiteral("SELECT HerkenningsNummer FROM pensioen")));
        Store::migrate(raw.db, Store::migrations(), 3);
        QCOMPARE(Store::versionOf(raw.db), 3);
        QVERIFY(raw.exec(QStringLiteral("SELECT HerkenningsNummer FROM pensioen")));
        // The real step 3 -> 4 records each case's figure year.
        QVERIFY(!raw.exec(QStringLiteral("SELECT Rekenjaar FROM dossier")));
        Store::migrate(raw.db, Store::migrations(), 4);
        QVERIFY(raw.exec(QStringLiteral("SELECT Rekenjaar FROM dossier")));
        // Step 4 -> 5 makes the bin of removed schemes.
        QVERIFY(!raw.exec(QStringLiteral("SELECT regeling FROM prullenbak")));
        Store::migrate(raw.db, Store::migrations(), Store::SchemaVersion);
        QCOMPARE(Store::versionOf(raw.db), Store::SchemaVersion);
        QVERIFY(raw.exec(QStringLiteral("SELECT regeling FROM prullenbak")));
        const int next = Store::SchemaVersion;
        std::vector<Store::Migration> steps = Store::migrations();
        steps.push_back({next, [](QSqlDatabase &db) {
                             QSqlQuery(db).exec(QStringLiteral("ALTER TABLE pensioen ADD COLUMN Notitie TEXT"));
                         }});
        Store::migrate(raw.db, steps, next + 1);
        QCOMPARE(Store::versionOf(raw.db), next + 1);
        QVERIFY(raw.exec(QStringLiteral("SELECT Notitie FROM pensioen")));
        // A step that fails leaves the file at the version before it.
        steps.push_back({next + 1, [](QSqlDatabase &db) {
                             QSqlQuery(db).exec(QStringLiteral("CREATE TABLE extra (x INTEGER)"));
                             throw HostError(HostErrorCode::StoreFailed, QStringLiteral("mislukt"));
                         }});
        QCOMPARE(errorOf([&] { Store::migrate(raw.db, steps, next + 2); }).number(), HostErrorCode::StoreFailed);
        QCOMPARE(Store::versionOf(raw.db), next + 1);
        QVERIFY(!raw.exec(QStringLiteral("SELECT x FROM extra")));
        // No known step: refused.
        QCOMPARE(errorOf([&] { Store::migrate(raw.db, Store::migrations(), next + 3); }).number(), HostErrorCode::StoreFailed);
    }

    void writeRefusedKeepsTheOldValue()
    {
        ONLY_FOR_CASE_FILES();
        const QString path = newPath();
        auto app = HostApplication::createFile(path);
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        anv->setNaam(QStringLiteral("Voor"));
        RawFile raw(path);
        QVERIFY(raw.exec(QStringLiteral("BEGIN IMMEDIATE")));
        const HostError e = errorOf([&] { anv->setNaam(QStringLiteral("Na")); });
        QCOMPARE(e.number(), HostErrorCode::StoreFailed);
        QCOMPARE(anv->Naam(), QStringLiteral("Voor"));
        raw.exec(QStringLiteral("ROLLBACK"));
        anv->setNaam(QStringLiteral("Na"));
        QCOMPARE(anv->Naam(), QStringLiteral("Na"));
    }

    void twoCasesSideBySide()
    {
        auto a = HostApplication::createFile(newPath());
        auto b = HostApplication::createFile(newPath());
        a->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("A"));
        b->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("B"));
        QCOMPARE(a->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("A"));
        QCOMPARE(b->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("B"));
    }
};

QTEST_GUILESS_MAIN(TstHostStore)
#include "tst_hoststore.moc"
