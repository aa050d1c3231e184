// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Whole-case JSON: the samples, the round trip through a case file, and all-or-nothing import.

#include "fiscalfigures.h"
#include "casebackend.h"
#include "hostapplication.h"
#include "hostcheck.h"
#include "usersim.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

using namespace VandrelApplication;
using Zarnoveld::HostApplication;

namespace {

QJsonObject example(const char *name)
{
    return TestSupport::exampleCase(name);
}

// Sets a value deep inside a document: path parts are object keys or array indexes.
QJsonValue changed(const QJsonValue &node, QList<QVariant> path, const QJsonValue &value, bool remove = false)
{
    if (path.isEmpty())
        return value;
    const QVariant head = path.takeFirst();
    if (head.typeId() == QMetaType::Int) {
        QJsonArray a = node.toArray();
        if (path.isEmpty() && head.toInt() == a.size())
            a.append(value);
        else
            a[head.toInt()] = changed(a.at(head.toInt()), path, value, remove);
        return a;
    }
    QJsonObject o = node.toObject();
    if (path.isEmpty() && remove)
        o.remove(head.toString());
    else
        o[head.toString()] = changed(o.value(head.toString()), path, value, remove);
    return o;
}

} // namespace

class TstHostJson : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString newPath() { return TestSupport::newCase(m_dir, QStringLiteral("import")); }

private slots:
    void initTestCase() { SKIP_WITHOUT_SERVER(); }

    void samplesImport()
    {
        for (const char *name : {"sample-couple.json", "single.json", "stress-99.json", "stress-99-in-orde.json", "check-errors.json"}) {
            const QJsonObject doc = example(name);
            QVERIFY2(!doc.isEmpty(), name);
            auto app = HostApplication::importJson(doc);
            QVERIFY(app->Get_Dossier()->Get_Aanvrager(1));
        }
        auto couple = HostApplication::importJson(example("sample-couple.json"));
        auto partner = couple->Get_Dossier()->Get_Aanvrager(2);
        QCOMPARE(partner->Naam(), QStringLiteral("Ria van den Berg-Smit"));
        QVERIFY(partner->Get_Dienstverband(2));
        QCOMPARE(partner->Get_Pensioen(1)->Get_OuderdomRegel(1)->ScenarioOP()->RegelCount(), qint16(3));
        auto stress = HostApplication::importJson(example("stress-99.json"));
        QVERIFY(stress->Get_Dossier()->Get_Aanvrager(2)->Get_Pensioen(99));
    }

    void roundTripThroughTheFileIsIdentical()
    {
        for (const char *name : {"sample-couple.json", "stress-99.json"}) {
            const QJsonObject doc = example(name);
            const QString path = newPath();
            HostApplication::importJson(doc, path);
            auto reopened = HostApplication::openFile(path);
            if (QLatin1String(name) == QLatin1String("sample-couple.json"))
                QCOMPARE(reopened->exportJson(), doc);
            // Whatever the input left out comes back filled in, and stays the same from then on.
            const QJsonObject once = reopened->exportJson();
            reopened.reset();
            const QString path2 = newPath();
            HostApplication::importJson(once, path2);
            QCOMPARE(HostApplication::openFile(path2)->exportJson(), once);
        }
    }

    void checkSampleHasFindings()
    {
        ApplicationPtr app = HostApplication::importJson(example("check-errors.json"));
        HostCheck::instance().RunHostCheck(app, 1, QDate(), 1, QDate());
        const QStringList found = HostCheck::instance().Bevindingen();
        QVERIFY(found.join(QLatin1Char('\n')).contains(QStringLiteral("het dienstverband bestaat niet (meer)")));
        QVERIFY(found.join(QLatin1Char('\n')).contains(QStringLiteral("ligt voor de geboortedatum")));
        ApplicationPtr good = HostApplication::importJson(example("sample-couple.json"));
        HostCheck::instance().RunHostCheck(good, 1, QDate(), 1, QDate());
        QVERIFY2(HostCheck::instance().Bevindingen().isEmpty(), qPrintable(HostCheck::instance().Bevindingen().join(QLatin1Char('\n'))));
    }

    void badInput_data()
    {
        QTest::addColumn<QList<QVariant>>("path");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<bool>("remove");
        QTest::addColumn<QString>("message");
        using L = QList<QVariant>;
        const QString p0 = QStringLiteral("$.Aanvragers[0]");
        QTest::newRow("wrong type text") << L{"Aanvragers", 0, "Naam"} << QJsonValue(12) << false
                                         << QStringLiteral("Fout in het dossier bij %1.Naam: verwacht een tekst, gevonden 12.").arg(p0);
        QTest::newRow("wrong type bool") << L{"Aanvragers", 0, "Pensioenen", 1, "PP"} << QJsonValue(QStringLiteral("ja")) << false
                                         << QStringLiteral("Fout in het dossier bij %1.Pensioenen[1].PP: verwacht true of false, gevonden \"ja\".").arg(p0);
        QTest::newRow("wrong type number") << L{"Aanvragers", 1, "Pensioenen", 0, "Salaris"} << QJsonValue(QStringLiteral("46750")) << false
                                           << QStringLiteral("Fout in het dossier bij $.Aanvragers[1].Pensioenen[0].Salaris: verwacht een getal, gevonden \"46750\".");
        QTest::newRow("fraction in whole number") << L{"Aanvragers", 0, "Categorie"} << QJsonValue(1.5) << false
                                                  << QStringLiteral("Fout in het dossier bij %1.Categorie: verwacht een geheel getal, gevonden 1.5.").arg(p0);
        QTest::newRow("out of range") << L{"Aanvragers", 0, "Pensioenen", 0, "SoortRegeling"} << QJsonValue(4) << false
                                      << QStringLiteral("Fout in het dossier bij %1.Pensioenen[0].SoortRegeling: 4 ligt buiten het toegestane bereik (1 tot en met 3).").arg(p0);
        QTest::newRow("percentage over 100") << L{"Aanvragers", 0, "Pensioenen", 0, "AoUitkeringen", 1, "Pc_AoTot"} << QJsonValue(120) << false
                                             << QStringLiteral("Fout in het dossier bij %1.Pensioenen[0].AoUitkeringen[1].Pc_AoTot: 120 ligt buiten het toegestane bereik (0 tot en met 100).").arg(p0);
        QTest::newRow("missing participant 1") << L{"Aanvragers"} << QJsonValue(QJsonArray()) << false
                                               << QStringLiteral("Fout in het dossier bij $.Aanvragers: de aanvrager (deelnemer 1) ontbreekt.");
        QTest::newRow("no participants at all") << L{"Aanvragers"} << QJsonValue() << true
                                                << QStringLiteral("Fout in het dossier bij $.Aanvragers: de aanvrager (deelnemer 1) ontbreekt.");
        QTest::newRow("date 1900") << L{"Aanvragers", 0, "GeboorteDatum"} << QJsonValue(QStringLiteral("1900-12-31")) << false
                                   << QStringLiteral("Fout in het dossier bij %1.GeboorteDatum: een datum moet na 1900 liggen (gebruik null voor geen datum), gevonden \"1900-12-31\".").arg(p0);
        // Found by the fuzzer: the age-65 date of such a birth lies beyond 9999 and cannot be written back.
        QTest::newRow("birth far ahead") << L{"Aanvragers", 0, "GeboorteDatum"} << QJsonValue(QStringLiteral("9970-03-15")) << false
                                         << QStringLiteral("Fout in het dossier bij %1.GeboorteDatum: een geboortedatum ligt in het verleden, gevonden \"9970-03-15\".").arg(p0);
        QTest::newRow("date format") << L{"Aanvragers", 0, "Dienstverbanden", 0, "Dt_Begin"} << QJsonValue(QStringLiteral("01-09-2004")) << false
                                     << QStringLiteral("Fout in het dossier bij %1.Dienstverbanden[0].Dt_Begin: verwacht een datum als \"jjjj-mm-dd\" of null, gevonden \"01-09-2004\".").arg(p0);
        QTest::newRow("unknown field") << L{"Aanvragers", 0, "Pensioenen", 2, "Rendement"} << QJsonValue(4) << false
                                       << QStringLiteral("Fout in het dossier bij %1.Pensioenen[2].Rendement: onbekend veld \"Rendement\".").arg(p0);
        QTest::newRow("unknown top field") << L{"Versie"} << QJsonValue(2) << false
                                           << QStringLiteral("Fout in het dossier bij $.Versie: onbekend veld \"Versie\".");
        QTest::newRow("unknown scenario field") << L{"Aanvragers", 0, "Pensioenen", 0, "OuderdomRegels", 0, "ScenarioOP", "Start"} << QJsonValue(1) << false
                                                << QStringLiteral("Fout in het dossier bij %1.Pensioenen[0].OuderdomRegels[0].ScenarioOP.Start: onbekend veld \"Start\".").arg(p0);
        QTest::newRow("bad employment key") << L{"Aanvragers", 0, "Dienstverbanden", 1, "Key"} << QJsonValue(QStringLiteral("abc")) << false
                                            << QStringLiteral("Fout in het dossier bij %1.Dienstverbanden[1].Key: verwacht een sleutel als {xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}, gevonden \"abc\".").arg(p0);
        QTest::newRow("no old-age row") << L{"Aanvragers", 0, "Pensioenen", 0, "OuderdomRegels"} << QJsonValue(QJsonArray()) << false
                                        << QStringLiteral("Fout in het dossier bij %1.Pensioenen[0].OuderdomRegels: een pensioenregeling heeft minstens één regel ouderdomspensioen.").arg(p0);
        QTest::newRow("third participant") << L{"Aanvragers", 2} << QJsonValue(QJsonObject()) << false
                                           << QStringLiteral("Fout in het dossier bij $.Aanvragers[2]: een dossier heeft alleen een aanvrager en eventueel een partner.");
    }

    void badInput()
    {
        QFETCH(QList<QVariant>, path);
        QFETCH(QJsonValue, value);
        QFETCH(bool, remove);
        QFETCH(QString, message);
        const QJsonObject doc = changed(example("sample-couple.json"), path, value, remove).toObject();
        const QString file = newPath();
        try {
            HostApplication::importJson(doc, file);
            QFAIL("import must refuse");
        } catch (const HostError &e) {
            QCOMPARE(e.number(), HostErrorCode::OutOfRange);
            QCOMPARE(e.description(), message);
        }
        QVERIFY(!TestSupport::caseExists(file));
        QVERIFY(!QFile::exists(file + QStringLiteral(".lock")));
    }

    void hundredthSchemeIsRefused()
    {
        QJsonObject doc = example("stress-99.json");
        QJsonArray pens = doc[QStringLiteral("Aanvragers")].toArray()[0].toObject()[QStringLiteral("Pensioenen")].toArray();
        QJsonObject extra = pens.last().toObject();
        extra[QStringLiteral("OuderdomRegels")] = QJsonArray{QJsonObject{{QStringLiteral("OP"), true}}};
        doc = changed(doc, {QStringLiteral("Aanvragers"), 0, QStringLiteral("Pensioenen"), 99}, extra).toObject();
        const QString file = newPath();
        try {
            HostApplication::importJson(doc, file);
            QFAIL("import must refuse");
        } catch (const HostError &e) {
            QCOMPARE(e.description(), QStringLiteral("Fout in het dossier bij $.Aanvragers[0].Pensioenen[99]: meer dan 99 pensioenregelingen per aanvrager kunnen niet worden vastgelegd."));
        }
        QVERIFY(!TestSupport::caseExists(file));
    }

    void importIntoAnExistingFileChangesNothing()
    {
        const QString path = newPath();
        HostApplication::createFile(path)->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("Bestaand"));
        QCOMPARE([&] {
            try {
                HostApplication::importJson(example("single.json"), path);
            } catch (const HostError &e) {
                return e.number();
            }
            return 0;
        }(), HostErrorCode::InvalidState);
        QCOMPARE(HostApplication::openFile(path)->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("Bestaand"));
    }

    void minimalDocumentGetsDefaults()
    {
        const QJsonObject doc = QJsonDocument::fromJson(R"({"Aanvragers": [{"Naam": "Kort", "Pensioenen": [{}]}]})").object();
        auto app = HostApplication::importJson(doc);
        auto pen = app->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1);
        QCOMPARE(pen->SoortRegeling(), qint16(1));
        QCOMPARE(pen->OuderdomRegelCount(), qint16(1));
        // No figures and no year: a new case, with this year's figures.
        const int year = Zarnoveld::FiscalFigures::yearFor(QDate::currentDate());
        QCOMPARE(app->figureYear(), year);
        QCOMPARE(app->Get_Parameters()->FranchiseA(), Zarnoveld::FiscalFigures::find(year)->values.franchiseA);
        QVERIFY(!app->Get_Dossier()->Get_Aanvrager(2));
    }
};

QTEST_GUILESS_MAIN(TstHostJson)
#include "tst_hostjson.moc"
