// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Fiscal figures per year. The franchise each scheme type and category group gets in 2024, 2025 and
// 2026 is computed here from the published figures themselves, not read back from the program's
// figures file; a case keeps the year it was made with; moving a case to another year changes the
// franchise of the schemes that compute it, and only those.

#include "fiscalfigures.h"
#include "casebackend.h"
#include "hostapplication.h"
#include "rules.h"
#include "store.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

#include <cmath>

using namespace VandrelApplication;
using Zarnoveld::HostApplication;
namespace FiscalFigures = Zarnoveld::FiscalFigures;

namespace {

// The published figures (sources in src/host/parameters/fiscalfigures.json and the README).
struct Cited
{
    int year;
    double aowSamenwonend;       // statutory old-age benefit, married, per year incl. holiday pay
    double franchiseA;           // fiscal minimum franchise, career average / defined contribution
    double franchiseEindloonA;   // fiscal minimum franchise, final pay
    double anw;                  // survivors' benefit per year
};
const Cited kCited[] = {
    // SVB: EUR 1,047.60 a month including EUR 5.50 income support, holiday pay EUR 54.44.
    {2024, (1047.60 - 5.50 + 54.44) * 12, 17545, 19853, 19331},
    {2025, (1081.50 + 73.18) * 12, 18475, 20905, 19870},
    {2026, (1122.12 + 76.10) * 12, 19172, 21694, 20619.25},
};

double cents(double v)
{
    return std::round(v * 100.0) / 100.0;
}

double expectedFranchise(const Cited &c, int type, int category)
{
    const bool first = category == 1 || category == 2 || category == 4 || category == 6 || category == 7;
    if (type == 1)
        return first ? c.franchiseEindloonA : cents(c.aowSamenwonend * 100.0 / 66.28);
    return first ? c.franchiseA : cents(c.aowSamenwonend * 100.0 / 75.0);
}

template <typename Body>
HostError errorOf(Body &&body)
{
    return TestSupport::hostErrorOf(body);
}

QJsonObject scheme(int type, double salary, double franchise, float accrual = 0)
{
    return QJsonObject{{QStringLiteral("Uitvoerder"), QStringLiteral("Fonds %1").arg(type)},
                       {QStringLiteral("SoortRegeling"), type},
                       {QStringLiteral("Salaris"), salary},
                       {QStringLiteral("Franchise"), franchise},
                       {QStringLiteral("OpbouwPercentage"), double(accrual)}};
}

QJsonObject caseDocument(int year, int sync, int category, const QJsonArray &schemes)
{
    QJsonObject applicant{{QStringLiteral("Naam"), QStringLiteral("Deelnemer")},
                          {QStringLiteral("Categorie"), category},
                          {QStringLiteral("Pensioenen"), schemes}};
    QJsonObject doc{{QStringLiteral("SyncVlaggen"), sync}, {QStringLiteral("Aanvragers"), QJsonArray{applicant}}};
    if (year)
        doc.insert(QStringLiteral("Rekenjaar"), year);
    return doc;
}

} // namespace

class TstFiscalFigures : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString newPath() { return TestSupport::newCase(m_dir, QStringLiteral("case")); }

private Q_SLOTS:
    void initTestCase() { SKIP_WITHOUT_SERVER(); }

    void everyYearHasItsPublishedFigures_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(kCited)); ++i)
            QTest::newRow(qPrintable(QString::number(kCited[i].year))) << i;
    }

    void everyYearHasItsPublishedFigures()
    {
        QFETCH(int, index);
        const Cited &c = kCited[index];
        const FiscalFigures::Year *y = FiscalFigures::find(c.year);
        QVERIFY(y);
        QCOMPARE(y->aowJaarbedragSamenwonend, cents(c.aowSamenwonend));
        QCOMPARE(y->values.franchiseA, c.franchiseA);
        QCOMPARE(y->values.franchiseEindloonA, c.franchiseEindloonA);
        QCOMPARE(y->values.defaultOpbouwEindloon, 1.657f);
        QCOMPARE(y->values.defaultOpbouwMiddelloon, 1.875f);
        QCOMPARE(y->values.maxAnwCompensation, cents(c.anw * 0.75));
        // The published career-average franchise is 100/75 of the benefit, rounded to euros: the
        // benefit and the franchise were looked up apart, so this checks one against the other.
        QCOMPARE(std::round(c.aowSamenwonend * 100.0 / 75.0), c.franchiseA);
        // Final pay: 100/66.28 (not the 10/7 of before 2015).
        QVERIFY(std::abs(y->values.franchiseEindloonB - c.aowSamenwonend * 10.0 / 7.0) > 100);
        QCOMPARE(y->maxPensioengevendLoon, 137800.0);
        // Every figure carries its source.
        for (const FiscalFigures::Figure &f : y->figures)
            QVERIFY2(!f.source.trimmed().isEmpty(), qPrintable(f.name));
    }

    // A hostile reader may suspect "verified" is set everywhere: the figures not found in a
    // publication say so.
    void unverifiedFiguresAreMarked()
    {
        const auto verified = [](int year, const char *name) {
            for (const auto &f : FiscalFigures::find(year)->figures)
                if (f.name == QLatin1String(name))
                    return f.verified;
            return true;
        };
        QVERIFY(!verified(2025, "FranchiseEindloonA"));
        QVERIFY(!verified(2026, "FranchiseEindloonA"));
        QVERIFY(!verified(2026, "AnwNabestaandenuitkeringJaar"));
        QVERIFY(verified(2026, "FranchiseA"));
    }

    void franchisePerYearTypeAndCategory_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("category");
        for (int i = 0; i < int(std::size(kCited)); ++i)
            for (int type : {1, 2, 3, 0})
                for (int category : {1, 2, 4, 6, 7, 0, 3, 5, 8})
                    QTest::newRow(qPrintable(QStringLiteral("%1 soort %2 categorie %3").arg(kCited[i].year).arg(type).arg(category)))
                        << i << type << category;
    }

    // Through a real case file: made with other figures, moved to the year, read back reopened.
    void franchisePerYearTypeAndCategory()
    {
        QFETCH(int, index);
        QFETCH(int, type);
        QFETCH(int, category);
        const Cited &c = kCited[index];
        const double expected = expectedFranchise(c, type, category);
        QCOMPARE(Zarnoveld::Rules::franchiseFor(type, category, FiscalFigures::find(c.year)->values), expected);

        // A case only holds types 1 to 3; an unknown type computes as career average all the same.
        if (type == 0)
            return;
        const int other = c.year == 2024 ? 2026 : 2024;
        const QString path = newPath();
        {
            auto app = HostApplication::importJson(caseDocument(other, 16, category, {scheme(type, 60000, 1)}), path);
            QCOMPARE(app->figureYear(), other);
            app->moveToFigureYear(c.year);
        }
        auto reopened = HostApplication::openFile(path);
        QCOMPARE(reopened->figureYear(), c.year);
        QCOMPARE(reopened->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->Franchise(), expected);
    }

    void yearForADate()
    {
        QCOMPARE(FiscalFigures::years(), (QList<int>{2024, 2025, 2026}));
        QCOMPARE(FiscalFigures::yearFor(QDate(2025, 6, 1)), 2025);
        QCOMPARE(FiscalFigures::yearFor(QDate(2026, 1, 1)), 2026);
        // No figures are guessed for a year still to come, nor for one long gone.
        QCOMPARE(FiscalFigures::yearFor(QDate(2031, 3, 1)), 2026);
        QCOMPARE(FiscalFigures::yearFor(QDate(2019, 3, 1)), 2024);
    }

    void newCaseGetsTheFiguresOfItsYear()
    {
        const int year = FiscalFigures::yearFor(QDate::currentDate());
        const QString path = newPath();
        {
            auto app = HostApplication::createFile(path);
            QCOMPARE(app->figureYear(), year);
            QCOMPARE(app->Get_Parameters()->FranchiseA(), FiscalFigures::find(year)->values.franchiseA);
        }
        auto reopened = HostApplication::openFile(path);
        QCOMPARE(reopened->figureYear(), year);
        QCOMPARE(HostApplication::createInMemory()->figureYear(), year);
        // A JSON document with neither figures nor year is a new case too.
        auto imported = HostApplication::importJson(caseDocument(0, 0, 1, {}));
        QCOMPARE(imported->figureYear(), year);
        QCOMPARE(imported->Get_Parameters()->FranchiseEindloonA(), FiscalFigures::find(year)->values.franchiseEindloonA);
    }

    void oldCaseKeepsItsYear()
    {
        const QString path = newPath();
        HostApplication::importJson(caseDocument(2024, 16, 3, {scheme(1, 50000, 1)}), path);
        auto reopened = HostApplication::openFile(path);
        QCOMPARE(reopened->figureYear(), 2024);
        QCOMPARE(reopened->Get_Parameters()->FranchiseA(), 17545.0);
        QCOMPARE(reopened->Get_Parameters()->FranchiseEindloonB(), cents(kCited[0].aowSamenwonend * 100.0 / 66.28));
        // Exported and imported again: the same year and figures.
        const QJsonObject exported = reopened->exportJson();
        QCOMPARE(exported.value(QStringLiteral("Rekenjaar")).toInt(), 2024);
        auto back = HostApplication::importJson(exported);
        QCOMPARE(back->figureYear(), 2024);
        QCOMPARE(back->Get_Parameters()->FranchiseEindloonA(), 19853.0);
    }

    // Files made before the year was recorded (schema version 2) carry figures without a year.
    void fileWithoutYearGetsTheYearItsFiguresMatch_data()
    {
        QTest::addColumn<double>("franchiseA");
        QTest::addColumn<int>("expectedYear");
        QTest::newRow("figures of 2024") << 17545.0 << 2024;
        QTest::newRow("figures of no known year") << 15859.0 << 2025;
    }

    void fileWithoutYearGetsTheYearItsFiguresMatch()
    {
        using Zarnoveld::detail::Store;
        ONLY_FOR_CASE_FILES();
        QFETCH(double, franchiseA);
        QFETCH(int, expectedYear);
        const QString path = newPath();
        {
            const QString name = QUuid::createUuid().toString();
            {
                QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
                db.setDatabaseName(path);
                QVERIFY(db.open());
                Store::migrate(db, Store::migrations(), 2);
                QSqlQuery q(db);
                QVERIFY(q.exec(QStringLiteral("INSERT INTO dossier (id, pos, SyncVlaggen) VALUES (1, 1, 0)")));
                QVERIFY(q.exec(QStringLiteral("INSERT INTO aanvrager (id, parent_id, pos, Naam, Categorie) VALUES (1, 1, 1, 'Oud', 1)")));
                FiscalFigures::Values old = FiscalFigures::find(2024)->values;
                old.franchiseA = franchiseA;
                const std::vector<double> values = FiscalFigures::asList(old);
                for (size_t i = 0; i < values.size(); ++i) {
                    q.prepare(QStringLiteral("INSERT INTO parameters (naam, waarde) VALUES (?, ?)"));
                    q.addBindValue(FiscalFigures::names().at(qsizetype(i)));
                    q.addBindValue(values[i]);
                    QVERIFY(q.exec());
                }
                db.close();
            }
            QSqlDatabase::removeDatabase(name);
        }
        auto app = HostApplication::openFile(path);
        QCOMPARE(app->figureYear(), expectedYear);
        // Its figures stay what they were: moving is the adviser's decision.
        QCOMPARE(app->Get_Parameters()->FranchiseA(), franchiseA);
    }

    void moveChangesOnlyComputedFranchises()
    {
        const QString computed = newPath();
        const QString typed = newPath();
        {
            // Franchise, basis and accrual computed (16 + 32 + 64).
            auto app = HostApplication::importJson(
                caseDocument(2025, 112, 1, {scheme(2, 50000, 18475, 1.875f), scheme(3, 0, 18475)}), computed);
            const auto move = app->moveToFigureYear(2026);
            QCOMPARE(move.from, 2025);
            QCOMPARE(move.to, 2026);
            QVERIFY(move.figures.contains(QStringLiteral("FranchiseA: 18.475,00 -> 19.172,00")));
            QCOMPARE(move.schemes.size(), 2);
            QVERIFY2(move.schemes.at(0).startsWith(QStringLiteral("Deelnemer, regeling 1 (Fonds 2): Franchise 18.475,00 -> 19.172,00")),
                     qPrintable(move.schemes.at(0)));
            // The same case moved to the year it has: nothing left to change.
            QVERIFY(!app->moveToFigureYear(2026).changed());
        }
        {
            auto reopened = HostApplication::openFile(computed);
            auto pen = reopened->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1);
            QCOMPARE(pen->Franchise(), 19172.0);
            QCOMPARE(pen->Grondslag(), 30828.0);
            QCOMPARE(pen->Aangroei(), double(1.875f) * 30828.0 / 100.0);
            // Defined contribution: the franchise follows, no accrual is computed.
            auto dc = reopened->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(2);
            QCOMPARE(dc->Franchise(), 19172.0);
            QCOMPARE(dc->Aangroei(), 0.0);
        }
        {
            // A franchise the adviser typed stays; the figures move all the same.
            auto app = HostApplication::importJson(caseDocument(2025, 0, 1, {scheme(2, 50000, 15000)}), typed);
            const auto move = app->moveToFigureYear(2026);
            QVERIFY(move.schemes.isEmpty());
            QVERIFY(!move.figures.isEmpty());
        }
        auto reopened = HostApplication::openFile(typed);
        QCOMPARE(reopened->figureYear(), 2026);
        QCOMPARE(reopened->Get_Parameters()->FranchiseA(), 19172.0);
        QCOMPARE(reopened->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->Franchise(), 15000.0);
    }

    void unknownYearChangesNothing()
    {
        const QString path = newPath();
        auto app = HostApplication::importJson(caseDocument(2025, 16, 1, {scheme(2, 50000, 18475)}), path);
        const HostError e = errorOf([&] { app->moveToFigureYear(2031); });
        QCOMPARE(e.number(), HostErrorCode::OutOfRange);
        QCOMPARE(e.description(), QStringLiteral("Voor 2031 zijn geen fiscale cijfers bekend. Kies een van deze jaren: 2024, 2025, 2026."));
        QCOMPARE(app->figureYear(), 2025);
        QCOMPARE(app->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->Franchise(), 18475.0);
        // A document naming a year without figures is refused with the path of the field.
        const HostError bad = errorOf([] { HostApplication::importJson(caseDocument(1999, 0, 1, {})); });
        QVERIFY2(bad.description().contains(QStringLiteral("$.Rekenjaar")), qPrintable(bad.description()));
        QVERIFY2(bad.description().contains(QStringLiteral("voor 1999 zijn geen fiscale cijfers bekend")), qPrintable(bad.description()));
    }
};

QTEST_GUILESS_MAIN(TstFiscalFigures)
#include "tst_fiscalfigures.moc"
