// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The register's overview file read from disk as the user hands it over: both serialisations,
// single-element lists, refused statuses, and files that are broken on purpose or by accident.

#include "overview.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace VandrelPensioen::Overzicht;

namespace {

QString example(const QString &name)
{
    return QStringLiteral(VANDREL_SOURCE_DIR "/examples/pensioenoverzicht/") + name;
}

QByteArray bytesOf(const QString &name)
{
    QFile f(example(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

ReadResult readBytes(const QByteArray &data)
{
    return readOverview(data, QStringLiteral("kapot.json"));
}

// A compact, comparable picture of everything the typed tree holds.
QString dump(const Overview &o)
{
    QStringList out{o.statusCode, o.createdAt, o.remarks.join(QLatin1Char('|')), o.unreachableProviders.join(QLatin1Char('|')),
                    o.providersWithoutData.join(QLatin1Char('|'))};
    const auto bound = [](const Bound &b) { return b.isAge() ? QString::number(*b.months) : b.event; };
    const auto num = [](const std::optional<double> &v) { return v ? QString::number(*v, 'f', 2) : QStringLiteral("-"); };
    for (const OldAgePeriod &p : o.oldAge) {
        out << QStringLiteral("OP %1-%2 aow=%3").arg(bound(p.from), bound(p.to)).arg(p.aow ? num(p.aow->reachableSingle) : QStringLiteral("geen"));
        for (const auto *list : {&p.pension, &p.indicative, &p.single})
            for (const OldAgeItem &i : *list)
                out << QStringLiteral("  %1 %2 %3 %4 %5").arg(i.provider, i.schemeId, i.asOf.toString(Qt::ISODate), num(i.reachable), num(i.accrued));
    }
    for (const auto *periods : {&o.partner, &o.orphans})
        for (const SurvivorPeriod &p : *periods) {
            out << QStringLiteral("NB %1-%2").arg(bound(p.from), bound(p.to));
            for (const SurvivorItem &i : p.items)
                out << QStringLiteral("  %1 %2 %3 %4 %5 %6 kind=%7").arg(i.provider, i.schemeId, num(i.amounts.insured), num(i.amounts.accrued),
                                                                    num(i.amounts.insuredAfter), num(i.amounts.accruedAfter))
                           .arg(i.perChild);
        }
    return out.join(QLatin1Char('\n'));
}

} // namespace

class TstOverzichtReader : public QObject
{
    Q_OBJECT

private slots:
    void jsonAndXmlOfTheSameOverviewGiveTheSameTree()
    {
        const ReadResult json = readOverviewFile(example(QStringLiteral("overzicht-aanvrager.json")));
        const ReadResult xml = readOverviewFile(example(QStringLiteral("overzicht-aanvrager.xml")));
        QVERIFY2(json.ok(), qPrintable(json.error));
        QVERIFY2(xml.ok(), qPrintable(xml.error));
        QCOMPARE(dump(*xml.overview), dump(*json.overview));
        QCOMPARE(json.overview->oldAge.size(), 3);
        QCOMPARE(json.overview->oldAge[2].pension.size(), 2);
        QCOMPARE(json.overview->oldAge[2].indicative.size(), 1);
        QCOMPARE(*json.overview->oldAge[1].from.months, 67 * 12 + 3);
        QCOMPARE(json.overview->oldAge[2].to.event, QStringLiteral("Overlijden"));
        QCOMPARE(*json.overview->oldAge[2].pension[0].reachable, 14400.0);
        QVERIFY(json.overview->orphans[0].items[0].perChild);
        QCOMPARE(json.overview->statusCode, QStringLiteral("000"));
    }

    void aSingleXmlElementIsStillAListOfOne()
    {
        const ReadResult r = readOverviewFile(example(QStringLiteral("overzicht-partner-een-regeling.xml")));
        QVERIFY2(r.ok(), qPrintable(r.error));
        QCOMPARE(r.overview->remarks, QStringList{QStringLiteral("De bedragen zijn bruto bedragen per jaar.")});
        QCOMPARE(r.overview->oldAge.size(), 1);
        QCOMPARE(r.overview->oldAge[0].pension.size(), 1);
        QCOMPARE(r.overview->oldAge[0].pension[0].schemeId, QStringLiteral("PZK-552019"));
        QCOMPARE(r.overview->partner.size(), 1);
        QCOMPARE(r.overview->partner[0].items.size(), 1);
        QCOMPARE(*r.overview->partner[0].items[0].amounts.insured, 6860.0);
        QVERIFY(r.overview->orphans.isEmpty());
    }

    void failedStatusIsRefusedWithItsStatus()
    {
        const ReadResult r = readOverviewFile(example(QStringLiteral("overzicht-fout.json")));
        QVERIFY(!r.ok());
        QVERIFY2(r.error.contains(QStringLiteral("overzicht-fout.json")), qPrintable(r.error));
        QVERIFY2(r.error.contains(QStringLiteral("\"003\"")), qPrintable(r.error));
        QVERIFY2(r.error.contains(QStringLiteral("technische fout")), qPrintable(r.error));
    }

    void incompleteOverviewNamesTheMissingProvider()
    {
        const ReadResult r = readOverviewFile(example(QStringLiteral("overzicht-onvolledig.json")));
        QVERIFY2(r.ok(), qPrintable(r.error));
        QCOMPARE(r.overview->unreachableProviders, QStringList{QStringLiteral("Stichting Pensioenfonds Meridiaan")});
    }

    void statusCodeWrittenAsANumberIsNotAccepted()
    {
        QByteArray data = bytesOf(QStringLiteral("overzicht-aanvrager.json"));
        data.replace("\"StatusCode\": \"000\"", "\"StatusCode\": 0");
        const ReadResult r = readBytes(data);
        QVERIFY(!r.ok());
        QVERIFY2(r.error.contains(QStringLiteral("StatusCode")), qPrintable(r.error));
    }

    void truncatedDownloadIsRefused_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("json") << QStringLiteral("overzicht-aanvrager.json");
        QTest::newRow("xml") << QStringLiteral("overzicht-aanvrager.xml");
    }
    void truncatedDownloadIsRefused()
    {
        QFETCH(QString, file);
        const QByteArray data = bytesOf(file);
        for (const qsizetype cut : {data.size() / 3, data.size() / 2, data.size() - 3}) {
            const ReadResult r = readOverview(data.left(cut), file);
            QVERIFY2(!r.ok(), qPrintable(QStringLiteral("cut at %1 accepted").arg(cut)));
            QVERIFY2(r.error.contains(file), qPrintable(r.error));
            QVERIFY2(r.error.contains(QStringLiteral("halverwege")) || r.error.contains(QStringLiteral("geldige")), qPrintable(r.error));
        }
    }

    void somethingElseThanAnOverviewIsRefused_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("expected");
        QTest::newRow("case file json") << QByteArray("{\"Dossier\": {\"SyncVlaggen\": 0}}") << QStringLiteral("StatusCode ontbreekt");
        QTest::newRow("json array") << QByteArray("[1, 2, 3]") << QStringLiteral("JSON-object");
        QTest::newRow("other xml root") << QByteArray("<?xml version=\"1.0\"?><Dossier><StatusCode>000</StatusCode></Dossier>")
                                        << QStringLiteral("<Dossier>");
        QTest::newRow("plain text") << QByteArray("Pensioen: 14400 per jaar") << QStringLiteral("JSON- of XML");
        QTest::newRow("empty") << QByteArray("  \n") << QStringLiteral("leeg");
        QTest::newRow("pdf") << QByteArray("%PDF-1.7\n") << QStringLiteral("JSON- of XML");
    }
    void somethingElseThanAnOverviewIsRefused()
    {
        QFETCH(QByteArray, data);
        QFETCH(QString, expected);
        const ReadResult r = readBytes(data);
        QVERIFY(!r.ok());
        QVERIFY2(r.error.contains(expected), qPrintable(r.error));
        QVERIFY2(r.error.startsWith(QStringLiteral("Het pensioenoverzicht kapot.json")), qPrintable(r.error));
    }

    void amountWithADecimalCommaIsRefusedNotGuessed()
    {
        QByteArray xml = bytesOf(QStringLiteral("overzicht-aanvrager.xml"));
        xml.replace("<TeBereiken>14400</TeBereiken>", "<TeBereiken>12,5</TeBereiken>");
        ReadResult r = readOverview(xml, QStringLiteral("komma.xml"));
        QVERIFY(!r.ok());
        QVERIFY2(r.error.contains(QStringLiteral("\"12,5\"")) && r.error.contains(QStringLiteral("TeBereiken")), qPrintable(r.error));

        QByteArray json = bytesOf(QStringLiteral("overzicht-aanvrager.json"));
        json.replace("\"TeBereiken\": 14400", "\"TeBereiken\": \"12,5\"");
        r = readOverview(json, QStringLiteral("komma.json"));
        QVERIFY(!r.ok());
        QVERIFY2(r.error.contains(QStringLiteral("\"12,5\"")), qPrintable(r.error));
    }

    void pointDecimalsAndNilAndPrefixesAreRead()
    {
        QByteArray xml = bytesOf(QStringLiteral("overzicht-partner-een-regeling.xml"));
        xml.replace("<TeBereiken>9800</TeBereiken>", "<TeBereiken>9800.55</TeBereiken>");
        xml.replace("<Opgebouwd>6150</Opgebouwd>", "<Opgebouwd xsi:nil=\"true\"/>");
        xml.replace("<PensioenAanspraken xmlns:xsi", "<pr:PensioenAanspraken xmlns:pr=\"urn:register\" xmlns:xsi");
        xml.replace("</PensioenAanspraken>", "</pr:PensioenAanspraken>");
        xml.replace("<StatusCode>000</StatusCode>", "<pr:StatusCode>000</pr:StatusCode>");
        const ReadResult r = readOverview(xml, QStringLiteral("prefix.xml"));
        QVERIFY2(r.ok(), qPrintable(r.error));
        QCOMPARE(*r.overview->oldAge[0].pension[0].reachable, 9800.55);
        QVERIFY(!r.overview->oldAge[0].pension[0].accrued.has_value());
    }

    void twentyMegabyteFileIsRefusedUnread()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("groot.json"));
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        QByteArray filler = "{\"StatusCode\": \"000\", \"Bijzonderheden\": [";
        const QByteArray remark = "\"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\",";
        f.write(filler);
        for (int i = 0; i < 20 * 1024 * 1024 / remark.size() + 1; ++i)
            f.write(remark);
        f.write("\"einde\"]}");
        f.close();
        QVERIFY(QFileInfo(path).size() >= 20 * 1024 * 1024);
        const ReadResult r = readOverviewFile(path);
        QVERIFY(!r.ok());
        QVERIFY2(r.error.contains(QStringLiteral("groot.json")) && r.error.contains(QStringLiteral("MB")), qPrintable(r.error));
    }

    void deepNestingIsRefused_data()
    {
        QTest::addColumn<QByteArray>("data");
        QByteArray json = "{\"StatusCode\": \"000\", \"Details\": ";
        QByteArray xml = "<PensioenAanspraken><StatusCode>000</StatusCode><Details>";
        for (int i = 0; i < 5000; ++i) {
            json += "{\"a\": ";
            xml += "<a>";
        }
        json += "1";
        for (int i = 0; i < 5000; ++i) {
            json += "}";
            xml += "</a>";
        }
        json += "}";
        xml += "</Details></PensioenAanspraken>";
        QTest::newRow("json") << json;
        QTest::newRow("xml") << xml;
    }
    void deepNestingIsRefused()
    {
        QFETCH(QByteArray, data);
        const ReadResult r = readBytes(data);
        QVERIFY(!r.ok());
        QVERIFY2(r.error.contains(QStringLiteral("genest")), qPrintable(r.error));
    }

    void moderateNestingBeyondTheFormatIsRefusedByOurOwnLimit()
    {
        QByteArray json = "{\"StatusCode\": \"000\", \"Details\": ";
        for (int i = 0; i < 40; ++i)
            json += "{\"a\": ";
        json += "1";
        for (int i = 0; i < 40; ++i)
            json += "}";
        json += "}";
        const ReadResult r = readBytes(json);
        QVERIFY(!r.ok());
        QVERIFY2(r.error.contains(QStringLiteral("genest")), qPrintable(r.error));
    }

    void entityExpansionIsNotFollowed()
    {
        const QByteArray xml = "<?xml version=\"1.0\"?><!DOCTYPE x [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;\">]>"
                               "<PensioenAanspraken><StatusCode>000</StatusCode><Bijzonderheden>&b;</Bijzonderheden></PensioenAanspraken>";
        const ReadResult r = readBytes(xml);
        QVERIFY(!r.ok());
        QVERIFY2(r.error.contains(QStringLiteral("DTD")), qPrintable(r.error));
    }

    void negativeAmountIsRefused()
    {
        QByteArray json = bytesOf(QStringLiteral("overzicht-aanvrager.json"));
        json.replace("\"TeBereiken\": 14400", "\"TeBereiken\": -14400");
        const ReadResult r = readBytes(json);
        QVERIFY(!r.ok());
        QVERIFY2(r.error.contains(QStringLiteral("negatief")), qPrintable(r.error));
    }
};

QTEST_GUILESS_MAIN(TstOverzichtReader)
#include "tst_overzichtreader.moc"
