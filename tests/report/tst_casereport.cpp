// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The case report as the adviser reads it on paper: written to PDF, read back with pdftotext.

#include "casereport.h"
#include "formats.h"
#include "hostapplication.h"
#include "pdftext.h"
#include "usersim.h"

#include <QBuffer>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QPrinter>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace VandrelReport;
namespace Format = VandrelControl::Format;

class TestCaseReport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyParticipantProviderAndAmountOfTheSampleCaseIsOnPaper();
    void everyPageSaysItsNumberAndTheCase();
    void stressCasesFillThePagesTheLayoutRulePredicts_data();
    void stressCasesFillThePagesTheLayoutRulePredicts();
    void findingsHandedInAreListedUnderTheirScheme();
    void aPrinterOfAnotherResolutionGetsTheSamePages();
    void anEmptyCaseStillPrintsOnePage();
    void markupTypedIntoANameIsPrintedAsText();
    void aVeryLongCaseNameDoesNotRunIntoTheDate();

private:
    QString writePdf(const CaseReport &report, const QString &name);
    QTemporaryDir m_dir;
};

namespace {

std::shared_ptr<Zarnoveld::HostApplication> load(const char *example)
{
    const QJsonObject json = TestSupport::exampleCase(example);
    return json.isEmpty() ? nullptr : Zarnoveld::HostApplication::importJson(json);
}

QString amountOf(const QJsonObject &o, const char *key)
{
    return Format::amount(o.value(QLatin1String(key)).toDouble());
}

QString dateOf(const QJsonObject &o, const char *key)
{
    return Format::date(QDate::fromString(o.value(QLatin1String(key)).toString(), Qt::ISODate));
}

// The page count the layout rule gives for these blocks: a block that does not fit in what is
// left of the page opens the next one.
int pagesByRule(const QList<Block> &blocks, qreal body)
{
    int pages = 0;
    qreal y = 0;
    for (const Block &b : blocks) {
        if (pages == 0 || (y > 0 && y + b.gapBefore + b.height > body)) {
            ++pages;
            y = b.height;
        } else {
            y += (y > 0 ? b.gapBefore : 0) + b.height;
        }
    }
    return qMax(pages, 1);
}

} // namespace

void TestCaseReport::initTestCase()
{
    QVERIFY(m_dir.isValid());
    // To look at the pages: VANDREL_KEEP_PDF=1 keeps the folder and names it.
    if (qEnvironmentVariableIsSet("VANDREL_KEEP_PDF")) {
        m_dir.setAutoRemove(false);
        qInfo() << "PDFs in" << m_dir.path();
    }
    QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty(), "poppler-utils is missing");
}

QString TestCaseReport::writePdf(const CaseReport &report, const QString &name)
{
    const QString path = m_dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QString();
    QString error;
    if (!report.writePdf(&file, &error)) {
        qWarning() << error;
        return QString();
    }
    file.close();
    return path;
}

void TestCaseReport::everyParticipantProviderAndAmountOfTheSampleCaseIsOnPaper()
{
    const auto app = load("sample-couple.json");
    QVERIFY(app);
    Options options;
    options.caseName = QStringLiteral("sample-couple");
    options.printDate = QDate(2026, 11, 24);
    const CaseReport report(app, options);
    const QString pdf = writePdf(report, QStringLiteral("sample.pdf"));
    QVERIFY(!pdf.isEmpty());
    QCOMPARE(PdfText::pageSize(pdf).contains(QStringLiteral("(A4)")), true);
    const QString text = PdfText::squeezed(PdfText::text(pdf));
    QVERIFY(!text.isEmpty());

    QVERIFY(text.contains(QStringLiteral("Pensioenoverzicht")));
    QVERIFY(text.contains(QStringLiteral("24-11-2026")));
    // A few values written out by hand, so that a broken number format cannot hide behind itself.
    for (const char *literal : {"58.200", "14-03-1971", "1,750 %", "14.320", "31-12-2024", "95.000"})
        QVERIFY2(text.contains(QLatin1String(literal)), literal);

    QStringList missing;
    const auto expect = [&](const QString &value, const QString &what) {
        if (!value.isEmpty() && !text.contains(value))
            missing << QStringLiteral("%1 = %2").arg(what, value);
    };
    const QJsonObject doc = TestSupport::exampleCase("sample-couple.json");
    for (const QJsonValue &a : doc.value(QStringLiteral("Aanvragers")).toArray()) {
        const QJsonObject aanvrager = a.toObject();
        const QString naam = aanvrager.value(QStringLiteral("Naam")).toString();
        expect(naam, QStringLiteral("Naam"));
        expect(dateOf(aanvrager, "GeboorteDatum"), naam + QStringLiteral(" geboortedatum"));
        // The AOW date is the birth date plus the AOW age the host derives.
        for (const QJsonValue &dv : aanvrager.value(QStringLiteral("Dienstverbanden")).toArray()) {
            const QJsonObject o = dv.toObject();
            expect(o.value(QStringLiteral("Werkgever")).toString(), QStringLiteral("Werkgever"));
            expect(amountOf(o, "Salaris"), QStringLiteral("dienstverband salaris"));
            expect(dateOf(o, "Dt_Begin"), QStringLiteral("in dienst"));
            expect(dateOf(o, "Dt_InkomenMeetellenTot"), QStringLiteral("inkomen meetellen tot"));
        }
        for (const QJsonValue &p : aanvrager.value(QStringLiteral("Pensioenen")).toArray()) {
            const QJsonObject s = p.toObject();
            const QString provider = s.value(QStringLiteral("Uitvoerder")).toString();
            expect(provider, QStringLiteral("Uitvoerder"));
            expect(s.value(QStringLiteral("Branche")).toString(), provider + QStringLiteral(" branche"));
            for (const char *key : {"Salaris", "Franchise", "Grondslag", "Aangroei", "Premie", "Doelvermogen",
                                    "Opgebouwd", "BijdrageOP", "BijdragePreP", "BijdrageVrijwillig"})
                expect(amountOf(s, key), provider + QLatin1Char(' ') + QLatin1String(key));
            expect(Format::decimal(s.value(QStringLiteral("OpbouwPercentage")).toDouble(), 3),
                   provider + QStringLiteral(" opbouw"));
            expect(dateOf(s, "Dt_Overzicht"), provider + QStringLiteral(" overzicht"));
            const std::pair<const char *, const char *> flagged[] = {
                {"TOP", "BedragTOP"}, {"PP", "BedragPP"}, {"PPNaAow", "BedragPPNaAow"}, {"PPna65", "BedragPPna65"},
                {"PpNa65TotAow", "BedragPpNa65TotAow"}, {"WzP", "BedragWzP"}, {"IP", "BedragIP"},
                {"AnwCompensatie", "BedragAnwCompensatie"}};
            for (const auto &[flag, bedrag] : flagged)
                if (s.value(QLatin1String(flag)).toBool())
                    expect(amountOf(s, bedrag), provider + QLatin1Char(' ') + QLatin1String(bedrag));
            for (const char *pc : {"Pc_PP", "Pc_PPna65", "Pc_WzP", "Pc_IP"}) {
                const QString flag = QLatin1String(pc).mid(3);
                if (s.value(flag).toBool())
                    expect(Format::decimal(s.value(QLatin1String(pc)).toDouble(), 3), provider + QLatin1Char(' ') + QLatin1String(pc));
            }
            const QJsonArray regels = s.value(QStringLiteral("OuderdomRegels")).toArray();
            for (qsizetype i = 0; i < regels.size(); ++i) {
                const QJsonObject r = regels[i].toObject();
                // Row 1 is the commitments table's; the others are only in the pension breakdown.
                if (i > 0 && !s.value(QStringLiteral("HeeftSpecificatie")).toBool())
                    continue;
                if (r.value(QStringLiteral("OP")).toBool()) {
                    expect(amountOf(r, "BedragOP"), provider + QStringLiteral(" OP"));
                    expect(dateOf(r, "Dt_IngangOP"), provider + QStringLiteral(" ingang OP"));
                }
                if (r.value(QStringLiteral("PreP")).toBool()) {
                    expect(amountOf(r, "BedragPreP"), provider + QStringLiteral(" PreP"));
                    expect(dateOf(r, "Dt_IngangPreP"), provider + QStringLiteral(" ingang PreP"));
                }
                for (const QJsonValue &sr : r.value(QStringLiteral("ScenarioOP")).toObject().value(QStringLiteral("Regels")).toArray())
                    expect(amountOf(sr.toObject(), "Bedrag"), provider + QStringLiteral(" scenario"));
            }
            for (const QJsonValue &ao : s.value(QStringLiteral("AoUitkeringen")).toArray()) {
                const QJsonObject o = ao.toObject();
                expect(Format::decimal(o.value(QStringLiteral("Pc_AoTot")).toDouble(), 3), provider + QStringLiteral(" AO% tot"));
            }
        }
    }
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QStringLiteral("; "))));
    QVERIFY(text.contains(QStringLiteral("Specificatie pensioen")));
    QVERIFY(text.contains(QStringLiteral("Scenario ouderdomspensioen")));
    QVERIFY(text.contains(QStringLiteral("Uitkering bij arbeidsongeschiktheid")));
}

void TestCaseReport::everyPageSaysItsNumberAndTheCase()
{
    const auto app = load("sample-couple.json");
    QVERIFY(app);
    Options options;
    options.caseName = QStringLiteral("Familie Van den Berg");
    const CaseReport report(app, options);
    const QString pdf = writePdf(report, QStringLiteral("pages.pdf"));
    const int pages = PdfText::pageCount(pdf);
    QVERIFY(pages >= 2);
    QCOMPARE(pages, report.pageCount());
    for (int n = 1; n <= pages; ++n) {
        const QString page = PdfText::squeezed(PdfText::text(pdf, n));
        QVERIFY2(page.contains(QStringLiteral("pagina %1 van %2").arg(n).arg(pages)), qPrintable(page.right(200)));
        QVERIFY(page.contains(QStringLiteral("Familie Van den Berg")));
    }
}

void TestCaseReport::stressCasesFillThePagesTheLayoutRulePredicts_data()
{
    QTest::addColumn<QString>("example");
    QTest::newRow("every scheme in order") << QStringLiteral("stress-99-in-orde.json");
    QTest::newRow("every scheme failing") << QStringLiteral("stress-99.json");
}

void TestCaseReport::stressCasesFillThePagesTheLayoutRulePredicts()
{
    QFETCH(QString, example);
    const auto app = load(qPrintable(example));
    QVERIFY(app);
    Options options;
    options.caseName = example;
    const CaseReport report(app, options);
    const QString pdf = writePdf(report, example + QStringLiteral(".pdf"));
    const int pages = PdfText::pageCount(pdf);

    const QList<Block> &blocks = report.blocks();
    int schemes = 0;
    for (const Block &b : blocks) {
        QVERIFY2(b.height <= CaseReport::bodyHeight(), qPrintable(b.heading));
        schemes += b.schemeHeading ? 1 : 0;
    }
    QCOMPARE(schemes, 198);
    const int expected = pagesByRule(blocks, CaseReport::bodyHeight());
    // Bounds any pagination must keep: no fewer pages than the content fills, no more than blocks.
    qreal content = 0;
    for (const Block &b : blocks)
        content += b.height;
    QVERIFY(expected >= int(std::ceil(content / CaseReport::bodyHeight())));
    QVERIFY(expected <= blocks.size());
    QCOMPARE(pages, expected);
    QCOMPARE(report.pageCount(), expected);

    // Per page: a scheme heading is followed on the same page by its data and the commitments'
    // title, never by the footer alone.
    const QRegularExpression heading(QStringLiteral("^\\s*Regeling \\d+: "));
    int headingsSeen = 0;
    for (int n = 1; n <= pages; ++n) {
        const QStringList lines = PdfText::text(pdf, n).split(QLatin1Char('\n'));
        for (int i = 0; i < lines.size(); ++i) {
            if (!heading.match(lines[i]).hasMatch())
                continue;
            ++headingsSeen;
            const QString rest = lines.mid(i + 1).join(QLatin1Char('\n'));
            const qsizetype footer = rest.indexOf(QStringLiteral("pagina %1 van").arg(n));
            const QString before = rest.left(footer);
            QVERIFY2(before.contains(QStringLiteral("Uitvoerder")) && before.contains(QStringLiteral("Pensioentoezeggingen")),
                     qPrintable(QStringLiteral("page %1: %2 stands alone").arg(n).arg(lines[i].trimmed())));
        }
    }
    QCOMPARE(headingsSeen, 198);

    // The rule is really at work: some page has room for a heading line but not for its block,
    // so a scheme had to move on (otherwise this test would prove nothing).
    bool moved = false;
    const QList<int> &pageOf = report.pageOfBlock();
    for (int i = 1; i < blocks.size(); ++i)
        if (blocks[i].schemeHeading && pageOf[i] != pageOf[i - 1])
            moved = true;
    QVERIFY(moved);
}

void TestCaseReport::findingsHandedInAreListedUnderTheirScheme()
{
    const auto app = load("single.json");
    QVERIFY(app);
    Options options;
    options.caseName = QStringLiteral("single");
    options.findings = {{Finding::Kind::Refusal, QStringLiteral("Aanvrager Piet, regeling 1 (ABP)"),
                         QStringLiteral("Het salaris moet groter zijn dan de franchise.")},
                        {Finding::Kind::Question, QStringLiteral("Aanvrager Piet, regeling 1 (ABP)"),
                         QStringLiteral("LET OP! De ingangsdatum ligt na de AOW-datum.")},
                        {Finding::Kind::Remark, QString(), QStringLiteral("Geen partner ingevuld.")}};
    const QString text = PdfText::squeezed(PdfText::text(writePdf(CaseReport(app, options), QStringLiteral("f.pdf"))));
    QVERIFY(text.contains(QStringLiteral("Bevindingen van de controle")));
    QVERIFY(text.contains(QStringLiteral("Aanvrager Piet, regeling 1 (ABP)")));
    QVERIFY(text.contains(QStringLiteral("Geweigerd Het salaris moet groter zijn dan de franchise.")));
    QVERIFY(text.contains(QStringLiteral("Vraag LET OP! De ingangsdatum ligt na de AOW-datum.")));
    QVERIFY(text.contains(QStringLiteral("Opmerking Geen partner ingevuld.")));

    options.findings.clear();
    QVERIFY(PdfText::text(writePdf(CaseReport(app, options), QStringLiteral("g.pdf")))
                .contains(QStringLiteral("Geen bevindingen")));
    options.checked = false;
    QVERIFY(PdfText::text(writePdf(CaseReport(app, options), QStringLiteral("h.pdf")))
                .contains(QStringLiteral("De controle is niet uitgevoerd.")));
}

void TestCaseReport::aPrinterOfAnotherResolutionGetsTheSamePages()
{
    const auto app = load("sample-couple.json");
    QVERIFY(app);
    Options options;
    options.caseName = QStringLiteral("printer");
    const CaseReport report(app, options);
    QPrinter printer(QPrinter::HighResolution);
    printer.setResolution(600);
    printer.setOutputFormat(QPrinter::PdfFormat);
    const QString path = m_dir.filePath(QStringLiteral("printer.pdf"));
    printer.setOutputFileName(path);
    QString error;
    QVERIFY2(report.print(&printer, &error), qPrintable(error));
    QCOMPARE(PdfText::pageCount(path), report.pageCount());
    QVERIFY(PdfText::pageSize(path).contains(QStringLiteral("(A4)")));
    const QString text = PdfText::squeezed(PdfText::text(path));
    QVERIFY(text.contains(QStringLiteral("Jan van den Berg")));
    QVERIFY(text.contains(QStringLiteral("pagina %1 van %1").arg(report.pageCount())));
    // Header and footer at the size they have in the PDF: whole on the page, one line each.
    for (int n = 1; n <= report.pageCount(); ++n) {
        QStringList lines;
        for (const QString &line : PdfText::text(path, n).split(QLatin1Char('\n')))
            if (!line.trimmed().isEmpty())
                lines << line;
        QVERIFY(!lines.isEmpty());
        QVERIFY2(PdfText::squeezed(lines.first()).contains(QStringLiteral("Pensioenoverzicht - dossier printer Afgedrukt op")),
                 qPrintable(lines.first()));
        QCOMPARE(lines.last().trimmed(), QStringLiteral("pagina %1 van %2").arg(n).arg(report.pageCount()));
    }
}

void TestCaseReport::anEmptyCaseStillPrintsOnePage()
{
    const auto app = Zarnoveld::HostApplication::createInMemory();
    Options options;
    options.caseName = QStringLiteral("leeg");
    const CaseReport report(app, options);
    const QString pdf = writePdf(report, QStringLiteral("empty.pdf"));
    QCOMPARE(PdfText::pageCount(pdf), 1);
    QVERIFY(PdfText::text(pdf).contains(QStringLiteral("pagina 1 van 1")));

    const CaseReport nothing(nullptr, options);
    QCOMPARE(nothing.pageCount(), 1);
}

void TestCaseReport::markupTypedIntoANameIsPrintedAsText()
{
    const auto app = load("single.json");
    QVERIFY(app);
    app->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("<b>Jan</b> & <i>Co</i>"));
    Options options;
    options.caseName = QStringLiteral("<h1>x</h1>");
    const QString text = PdfText::text(writePdf(CaseReport(app, options), QStringLiteral("markup.pdf")));
    QVERIFY(text.contains(QStringLiteral("<b>Jan</b> & <i>Co</i>")));
}

void TestCaseReport::aVeryLongCaseNameDoesNotRunIntoTheDate()
{
    const auto app = load("single.json");
    QVERIFY(app);
    Options options;
    options.caseName = QStringLiteral("dossier-van-de-familie-").repeated(8) + QStringLiteral("einde");
    options.printDate = QDate(2026, 1, 2);
    const CaseReport report(app, options);
    const QString pdf = writePdf(report, QStringLiteral("long.pdf"));
    for (int n = 1; n <= report.pageCount(); ++n) {
        QString header;
        for (const QString &line : PdfText::text(pdf, n).split(QLatin1Char('\n')))
            if (!line.trimmed().isEmpty()) {
                header = line;
                break;
            }
        // Shortened in the middle, the date still whole beside it.
        QVERIFY2(header.contains(QChar(0x2026)) && header.trimmed().endsWith(QStringLiteral("Afgedrukt op 02-01-2026")),
                 qPrintable(header));
    }
    // The title gives the name in full (wrapped if need be).
    const QString all = PdfText::text(pdf).remove(QRegularExpression(QStringLiteral("\\s")));
    QVERIFY(all.contains(options.caseName));
}

QTEST_MAIN(TestCaseReport)
#include "tst_casereport.moc"
