// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// zarnoveld check, run as a user runs it: the built program on case files, read back from its
// report and exit code.

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include "programrun.h"
#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = TestSupport::ProgramRun;

Run zarnoveld(const QStringList &arguments)
{
    return TestSupport::runProgram(QStringLiteral(ZARNOVELD_EXECUTABLE), arguments);
}

QString example(const QString &name)
{
    return QStringLiteral(VANDREL_SOURCE_DIR "/examples/") + name;
}

QJsonObject readJson(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

bool writeJson(const QString &path, const QJsonObject &document)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(document).toJson()) > 0;
}

QByteArray hashOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

const QString kLegend = QStringLiteral(
    "Per pensioenregeling staat de eerste melding die de gebruiker zou tegenhouden bij het verlaten "
    "van het pensioenscherm. Vragen met Ja/Nee (zoals \"LET OP!\") zijn met Ja beantwoord en houden "
    "niemand tegen.");

} // namespace

class TestCheck : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    // single.json with a partner whose second scheme lacks its old-age amount; the partner's
    // first scheme and the applicant's scheme are sound.
    QString partnerCase()
    {
        QJsonObject document = readJson(example(QStringLiteral("single.json")));
        QJsonArray aanvragers = document.value(QStringLiteral("Aanvragers")).toArray();
        QJsonObject partner = aanvragers.at(0).toObject();
        partner.insert(QStringLiteral("Naam"), QStringLiteral("Bram de Partner"));
        QJsonArray schemes = partner.value(QStringLiteral("Pensioenen")).toArray();
        QJsonObject second = schemes.at(0).toObject();
        second.insert(QStringLiteral("Uitvoerder"), QStringLiteral("Tweede Fonds"));
        second.insert(QStringLiteral("DienstverbandKey"), QString());
        QJsonArray rows = second.value(QStringLiteral("OuderdomRegels")).toArray();
        QJsonObject row = rows.at(0).toObject();
        row.insert(QStringLiteral("BedragOP"), 0);
        row.insert(QStringLiteral("Key"), QStringLiteral("{0D0000FF-7A7A-4B4B-9C9C-0000000000FF}"));
        rows.replace(0, row);
        second.insert(QStringLiteral("OuderdomRegels"), rows);
        schemes.append(second);
        partner.insert(QStringLiteral("Pensioenen"), schemes);
        aanvragers.append(partner);
        document.insert(QStringLiteral("Aanvragers"), aanvragers);
        const QString path = m_dir.filePath(QStringLiteral("partner.json"));
        return writeJson(path, document) ? path : QString();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        QVERIFY(QFile::exists(QStringLiteral(ZARNOVELD_EXECUTABLE)));
    }

    void passingCaseExitsZero()
    {
        const Run run = zarnoveld({QStringLiteral("check"), example(QStringLiteral("single.json"))});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.out.contains(QStringLiteral("  Aanvrager Fatima el Amrani, regeling 1 (PME): in orde\n")), qPrintable(run.out));
        QVERIFY(run.out.contains(QStringLiteral("Resultaat: 1 regeling gecontroleerd, 1 in orde, 0 met een fout.\n")));
        QVERIFY(run.out.contains(kLegend));
        // Not a terminal: no progress bar, nothing else on stderr.
        QCOMPARE(run.err, QString());
    }

    void errorsCaseTextReport()
    {
        const Run run = zarnoveld({QStringLiteral("check"), example(QStringLiteral("check-errors.json"))});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.out.contains(QStringLiteral(
                     "  Aanvrager Controle Geval, regeling 1 (bpfBOUW): FOUT [Pensioentoezeggingen] "
                     "De ingangsleeftijd van het ouderdomspensioen moet tussen 50 en 99 jaar liggen.\n")),
                 qPrintable(run.out));
        QVERIFY(run.out.contains(QStringLiteral(
            "  Aanvrager Controle Geval, regeling 2 (geen uitvoerder): FOUT [Ongeldige invoer] "
            "Pensioengrondslag kan niet groter dan pensioengevend salaris zijn.\n")));
        // What the suite's check service finds is listed, but stops nobody.
        QVERIFY(run.out.contains(QStringLiteral(
            "    - Pensioenregeling 1 (bpfBOUW) van de aanvrager: het dienstverband bestaat niet (meer).\n")));
        // The deliberately questionable scheme: its early retirement starts before its employment's
        // income ends. The question is answered Yes and stops nobody.
        QVERIFY(run.out.contains(
            QStringLiteral("  Aanvrager Controle Geval, regeling 3 (PMT): in orde (1 vraag met Ja beantwoord)\n")));
        QVERIFY(run.out.contains(QStringLiteral("Resultaat: 3 regelingen gecontroleerd, 1 in orde, 2 met een fout.\n")));
    }

    void errorsCaseJsonReport()
    {
        const Run run = zarnoveld({QStringLiteral("check"), QStringLiteral("--json"),
                                   example(QStringLiteral("check-errors.json"))});
        QCOMPARE(run.exitCode, 1);
        QJsonParseError error;
        const QJsonObject report = QJsonDocument::fromJson(run.out.toUtf8(), &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(report.value(QStringLiteral("geslaagd")).toBool(true), false);
        QCOMPARE(report.value(QStringLiteral("legenda")).toString(), kLegend);
        const QJsonArray dossiers = report.value(QStringLiteral("dossiers")).toArray();
        QCOMPARE(dossiers.size(), 1);
        const QJsonArray schemes = dossiers.at(0).toObject().value(QStringLiteral("regelingen")).toArray();
        QCOMPARE(schemes.size(), 3);

        const QJsonObject first = schemes.at(0).toObject();
        QCOMPARE(first.value(QStringLiteral("deelnemer")).toString(), QStringLiteral("Aanvrager"));
        QCOMPARE(first.value(QStringLiteral("Anv_Id")).toInt(), 1);
        QCOMPARE(first.value(QStringLiteral("naam")).toString(), QStringLiteral("Controle Geval"));
        QCOMPARE(first.value(QStringLiteral("Pen_Id")).toInt(), 1);
        QCOMPARE(first.value(QStringLiteral("uitvoerder")).toString(), QStringLiteral("bpfBOUW"));
        QCOMPARE(first.value(QStringLiteral("geslaagd")).toBool(true), false);
        const QJsonObject stop = first.value(QStringLiteral("melding")).toObject();
        QCOMPARE(stop.value(QStringLiteral("titel")).toString(), QStringLiteral("Pensioentoezeggingen"));
        QCOMPARE(stop.value(QStringLiteral("tekst")).toString(),
                 QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet tussen 50 en 99 jaar liggen."));
        QCOMPARE(stop.value(QStringLiteral("soort")).toString(), QStringLiteral("melding"));

        const QJsonObject second = schemes.at(1).toObject();
        QCOMPARE(second.value(QStringLiteral("Pen_Id")).toInt(), 2);
        QCOMPARE(second.value(QStringLiteral("uitvoerder")).toString(), QString());
        QCOMPARE(second.value(QStringLiteral("melding")).toObject().value(QStringLiteral("titel")).toString(),
                 QStringLiteral("Ongeldige invoer"));
        QCOMPARE(second.value(QStringLiteral("melding")).toObject().value(QStringLiteral("tekst")).toString(),
                 QStringLiteral("Pensioengrondslag kan niet groter dan pensioengevend salaris zijn."));

        const QJsonObject third = schemes.at(2).toObject();
        QCOMPARE(third.value(QStringLiteral("uitvoerder")).toString(), QStringLiteral("PMT"));
        QCOMPARE(third.value(QStringLiteral("geslaagd")).toBool(false), true);
        const QJsonArray asked = third.value(QStringLiteral("meldingen")).toArray();
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked.at(0).toObject().value(QStringLiteral("titel")).toString(), QStringLiteral("Ongelijke data"));
    }

    void passingCaseJsonHasNoMessage()
    {
        const Run run = zarnoveld({QStringLiteral("check"), example(QStringLiteral("single.json")),
                                   QStringLiteral("--json")});
        QCOMPARE(run.exitCode, 0);
        const QJsonObject report = QJsonDocument::fromJson(run.out.toUtf8()).object();
        QCOMPARE(report.value(QStringLiteral("geslaagd")).toBool(false), true);
        const QJsonObject scheme = report.value(QStringLiteral("dossiers")).toArray().at(0).toObject()
                                       .value(QStringLiteral("regelingen")).toArray().at(0).toObject();
        QCOMPARE(scheme.value(QStringLiteral("geslaagd")).toBool(false), true);
        QVERIFY(scheme.value(QStringLiteral("melding")).isNull());
    }

    // The screen always shows the first row of its list; a partner's later scheme must still be
    // checked itself and reported under its own number.
    void partnerSchemeReportedUnderItsOwnNumber()
    {
        const QString path = partnerCase();
        QVERIFY(!path.isEmpty());
        const Run run = zarnoveld({QStringLiteral("check"), path});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.out.contains(QStringLiteral("  Aanvrager Fatima el Amrani, regeling 1 (PME): in orde\n")), qPrintable(run.out));
        QVERIFY(run.out.contains(QStringLiteral("  Partner Bram de Partner, regeling 1 (PME): in orde\n")));
        QVERIFY(run.out.contains(QStringLiteral(
            "  Partner Bram de Partner, regeling 2 (Tweede Fonds): FOUT [Invoer verplicht] "
            "Bedrag ouderdomspensioen niet ingevuld.\n")));
        QVERIFY(run.out.contains(QStringLiteral("Resultaat: 3 regelingen gecontroleerd, 2 in orde, 1 met een fout.\n")));
    }

    // A doubtful value the user may accept is asked as Yes/No; the check answers Yes and says so.
    void questionCountsAsAnsweredYes()
    {
        QJsonObject document = readJson(example(QStringLiteral("single.json")));
        QJsonArray aanvragers = document.value(QStringLiteral("Aanvragers")).toArray();
        QJsonObject applicant = aanvragers.at(0).toObject();
        QJsonArray employments = applicant.value(QStringLiteral("Dienstverbanden")).toArray();
        QJsonObject employment = employments.at(0).toObject();
        employment.insert(QStringLiteral("Dt_InkomenMeetellenTot"), QStringLiteral("2049-01-01"));
        employments.replace(0, employment);
        applicant.insert(QStringLiteral("Dienstverbanden"), employments);
        QJsonArray schemes = applicant.value(QStringLiteral("Pensioenen")).toArray();
        QJsonObject scheme = schemes.at(0).toObject();
        QJsonArray rows = scheme.value(QStringLiteral("OuderdomRegels")).toArray();
        QJsonObject row = rows.at(0).toObject();
        row.insert(QStringLiteral("PreP"), true);
        row.insert(QStringLiteral("BedragPreP"), 4000);
        row.insert(QStringLiteral("Dt_IngangPreP"), QStringLiteral("2050-07-01"));
        row.insert(QStringLiteral("LeeftijdPreP"), 780);
        rows.replace(0, row);
        scheme.insert(QStringLiteral("OuderdomRegels"), rows);
        schemes.replace(0, scheme);
        applicant.insert(QStringLiteral("Pensioenen"), schemes);
        aanvragers.replace(0, applicant);
        document.insert(QStringLiteral("Aanvragers"), aanvragers);
        const QString path = m_dir.filePath(QStringLiteral("vraag.json"));
        QVERIFY(writeJson(path, document));

        const Run run = zarnoveld({QStringLiteral("check"), path});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.out.contains(QStringLiteral(
                     "  Aanvrager Fatima el Amrani, regeling 1 (PME): in orde (1 vraag met Ja beantwoord)\n")),
                 qPrintable(run.out));

        const Run json = zarnoveld({QStringLiteral("check"), QStringLiteral("--json"), path});
        QCOMPARE(json.exitCode, 0);
        const QJsonArray messages = QJsonDocument::fromJson(json.out.toUtf8()).object()
                                        .value(QStringLiteral("dossiers")).toArray().at(0).toObject()
                                        .value(QStringLiteral("regelingen")).toArray().at(0).toObject()
                                        .value(QStringLiteral("meldingen")).toArray();
        QCOMPARE(messages.size(), 1);
        QCOMPARE(messages.at(0).toObject().value(QStringLiteral("titel")).toString(), QStringLiteral("Ongelijke data"));
        QCOMPARE(messages.at(0).toObject().value(QStringLiteral("soort")).toString(), QStringLiteral("vraag"));
        QCOMPARE(messages.at(0).toObject().value(QStringLiteral("antwoord")).toString(), QStringLiteral("Ja"));
    }

    // Every scheme is checked on its own values, whatever the scheme before it did: here a sound
    // scheme (with a question answered Yes), then one whose factor A is over the limit, then a
    // sound defined-contribution scheme, repeated, and a partner whose last scheme fails.
    void everySchemeIsCheckedOnItsOwnValues()
    {
        QJsonObject document = readJson(example(QStringLiteral("sample-couple.json")));
        QJsonArray aanvragers = document.value(QStringLiteral("Aanvragers")).toArray();
        QJsonObject applicant = aanvragers.at(0).toObject();
        // The sample itself asks nothing; here its first employment's income counts on past the
        // early retirement, so the ABP scheme asks its question each time it is checked.
        const auto incomeUntil = [](QJsonObject participant, const QString &date) {
            QJsonArray employments = participant.value(QStringLiteral("Dienstverbanden")).toArray();
            QJsonObject first = employments.at(0).toObject();
            first.insert(QStringLiteral("Dt_InkomenMeetellenTot"), date);
            employments.replace(0, first);
            participant.insert(QStringLiteral("Dienstverbanden"), employments);
            return participant;
        };
        applicant = incomeUntil(applicant, QStringLiteral("2038-03-14"));
        const QJsonArray three = applicant.value(QStringLiteral("Pensioenen")).toArray();
        QCOMPARE(three.size(), 3);
        QJsonArray schemes;
        for (int i = 0; i < 7; ++i) {
            QJsonObject scheme = three.at(i % 3).toObject();
            if (i % 3 == 1)
                scheme.insert(QStringLiteral("Aangroei"), 181.2);   // limit: 1,657% of 10.895 = 180,53, shown as 180
            schemes.append(scheme);
        }
        applicant.insert(QStringLiteral("Pensioenen"), schemes);
        aanvragers.replace(0, applicant);
        QJsonObject partner = incomeUntil(aanvragers.at(1).toObject(), QStringLiteral("2040-11-02"));
        QJsonArray partnerSchemes = partner.value(QStringLiteral("Pensioenen")).toArray();
        QJsonObject last = partnerSchemes.last().toObject();
        last.insert(QStringLiteral("Uitvoerder"), QStringLiteral("Laatste Fonds"));
        last.insert(QStringLiteral("SoortRegeling"), 3);
        last.insert(QStringLiteral("Doelvermogen"), 0);
        partnerSchemes.replace(partnerSchemes.size() - 1, last);
        partner.insert(QStringLiteral("Pensioenen"), partnerSchemes);
        aanvragers.replace(1, partner);
        document.insert(QStringLiteral("Aanvragers"), aanvragers);
        const QString path = m_dir.filePath(QStringLiteral("afwisselend.json"));
        QVERIFY(writeJson(path, document));

        // Checked twice in one run, with a sound case after it: nothing of one case or one
        // scheme may carry over into the next.
        const Run run = zarnoveld({QStringLiteral("check"), path, path, example(QStringLiteral("single.json"))});
        QCOMPARE(run.exitCode, 1);
        const QString factorA = QStringLiteral(
            "FOUT [Ongeldige invoer] Pensioenaangroei (factor A) mag maximaal het opbouwpercentage (1,657%) "
            "vermenigvuldigd met de Pensioengrondslag (€ 10.895) zijn (€ 180).");
        const QString expected = QStringLiteral(
            "  Aanvrager Jan van den Berg, regeling 1 (ABP): in orde (1 vraag met Ja beantwoord)\n"
            "  Aanvrager Jan van den Berg, regeling 2 (Pensioenfonds Rabobank): %1\n"
            "  Aanvrager Jan van den Berg, regeling 3 (Brand New Day): in orde\n"
            "  Aanvrager Jan van den Berg, regeling 4 (ABP): in orde (1 vraag met Ja beantwoord)\n"
            "  Aanvrager Jan van den Berg, regeling 5 (Pensioenfonds Rabobank): %1\n"
            "  Aanvrager Jan van den Berg, regeling 6 (Brand New Day): in orde\n"
            "  Aanvrager Jan van den Berg, regeling 7 (ABP): in orde (1 vraag met Ja beantwoord)\n"
            "  Partner Ria van den Berg-Smit, regeling 1 (PFZW): in orde (1 vraag met Ja beantwoord)\n"
            "  Partner Ria van den Berg-Smit, regeling 2 (Bpf Levensmiddelen): in orde\n"
            "  Partner Ria van den Berg-Smit, regeling 3 (Laatste Fonds): FOUT [Invoer verplicht] Doelvermogen niet ingevuld.\n")
                                     .arg(factorA);
        QVERIFY2(run.out.count(expected) == 2, qPrintable(run.out));
        QVERIFY2(run.out.contains(QStringLiteral("  Aanvrager Fatima el Amrani, regeling 1 (PME): in orde\n")),
                 qPrintable(run.out));
        QVERIFY(run.out.contains(QStringLiteral("Resultaat: 21 regelingen gecontroleerd, 15 in orde, 6 met een fout.\n")));
    }

    // The examples are what the program ships with: the sample couple passes as it stands.
    void sampleCouplePasses()
    {
        const Run run = zarnoveld({QStringLiteral("check"), example(QStringLiteral("sample-couple.json")),
                                   example(QStringLiteral("stress-99-in-orde.json"))});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.out.contains(QStringLiteral("Resultaat: 204 regelingen gecontroleerd, 204 in orde, 0 met een fout.\n")),
                 qPrintable(run.out));
        // The sample on its own asks nothing either: one that asks "Ongelijke data" on every click
        // teaches the adviser to click Yes without reading.
        const Run sample = zarnoveld({QStringLiteral("check"), example(QStringLiteral("sample-couple.json"))});
        QCOMPARE(sample.exitCode, 0);
        QVERIFY2(sample.out.contains(QStringLiteral("Resultaat: 6 regelingen gecontroleerd, 6 in orde, 0 met een fout.\n")),
                 qPrintable(sample.out));
        QVERIFY2(!sample.out.contains(QStringLiteral("vraag")), qPrintable(sample.out));
    }

    // A case file is checked on a copy held in memory: the file itself is not written.
    void caseFileIsNeverWritten()
    {
        const QString casePath = m_dir.filePath(QStringLiteral("fouten.zdossier"));
        const Run import = zarnoveld({QStringLiteral("import"), example(QStringLiteral("check-errors.json")), casePath});
        QCOMPARE(import.exitCode, 0);
        const QByteArray before = hashOf(casePath);
        QVERIFY(!before.isEmpty());
        const bool walBefore = QFile::exists(casePath + QStringLiteral("-wal"));
        const QByteArray walHashBefore = hashOf(casePath + QStringLiteral("-wal"));

        const Run run = zarnoveld({QStringLiteral("check"), casePath});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.out.contains(QStringLiteral(
                     "  Aanvrager Controle Geval, regeling 2 (geen uitvoerder): FOUT [Ongeldige invoer] "
                     "Pensioengrondslag kan niet groter dan pensioengevend salaris zijn.\n")),
                 qPrintable(run.out));
        QCOMPARE(hashOf(casePath), before);
        QCOMPARE(QFile::exists(casePath + QStringLiteral("-wal")), walBefore);
        QCOMPARE(hashOf(casePath + QStringLiteral("-wal")), walHashBefore);
    }

    void unreadableFileExitsTwo()
    {
        const QString missing = m_dir.filePath(QStringLiteral("bestaat-niet.json"));
        const Run run = zarnoveld({QStringLiteral("check"), missing});
        QCOMPARE(run.exitCode, 2);
        QVERIFY(run.out.contains(QStringLiteral("  NIET GELEZEN: Het bestand %1 bestaat niet.\n").arg(missing)));

        const QString broken = m_dir.filePath(QStringLiteral("kapot.json"));
        {
            QFile file(broken);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("{ \"Aanvragers\": [ ");
        }
        const Run json = zarnoveld({QStringLiteral("check"), QStringLiteral("--json"), broken});
        QCOMPARE(json.exitCode, 2);
        const QJsonObject dossier = QJsonDocument::fromJson(json.out.toUtf8()).object()
                                        .value(QStringLiteral("dossiers")).toArray().at(0).toObject();
        QVERIFY(dossier.value(QStringLiteral("fout")).toString().startsWith(
            QStringLiteral("%1 is geen geldig JSON-dossier: ").arg(broken)));

        const QString notACase = m_dir.filePath(QStringLiteral("geen-dossier.zdossier"));
        {
            QFile file(notACase);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("dit is geen dossier");
        }
        QCOMPARE(zarnoveld({QStringLiteral("check"), notACase}).exitCode, 2);
    }

    // One unreadable case among good ones: the others are still checked and reported.
    void unreadableWinsOverFailures()
    {
        const Run run = zarnoveld({QStringLiteral("check"), example(QStringLiteral("check-errors.json")),
                                   m_dir.filePath(QStringLiteral("weg.json")), example(QStringLiteral("single.json"))});
        QCOMPARE(run.exitCode, 2);
        QVERIFY(run.out.contains(QStringLiteral("  Aanvrager Fatima el Amrani, regeling 1 (PME): in orde\n")));
        QVERIFY(run.out.contains(QStringLiteral(
            "Resultaat: 4 regelingen gecontroleerd, 2 in orde, 2 met een fout, 1 dossier niet gelezen.\n")));
    }

    void noCaseIsAUsageError()
    {
        const Run run = zarnoveld({QStringLiteral("check")});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.err, QStringLiteral("zarnoveld: gebruik: zarnoveld check DOSSIER... | --alle [--json]\n"));
        QCOMPARE(run.out, QString());
    }
};

QTEST_GUILESS_MAIN(TestCheck)
#include "tst_check.moc"
