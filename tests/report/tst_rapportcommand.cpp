// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// zarnoveld rapport, run as a user runs it: the built program, its exit code, the file it leaves
// behind and what that file says when read back with pdftotext.

#include "pdftext.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include "programrun.h"
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

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

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &data)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

mode_t modeOf(const QString &path)
{
    struct stat st {};
    return ::stat(QFile::encodeName(path).constData(), &st) == 0 ? (st.st_mode & 07777) : mode_t(-1);
}

// Only the files a user would see: no temporary leftovers beside the target.
QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

} // namespace

class TestRapportCommand : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void theSampleCaseBecomesAPrivatePdf();
    void everyFindingOfTheCheckIsOnPaper();
    void anExistingFileIsOnlyReplacedWhenAskedTo();
    void aSymlinkTargetIsRefusedAndItsTargetUntouched();
    void aMissingFolderOrAFolderAsTargetIsRefused();
    void anUnreadableCaseWritesNothing();
    void wrongUsageSaysHowAndWritesNothing();
    void aCaseFileIsReportedAndStaysAsItWas();
    void aPipeGetsNoProgressButATerminalDoes();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestRapportCommand::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void TestRapportCommand::theSampleCaseBecomesAPrivatePdf()
{
    const QString pdf = m_dir->filePath(QStringLiteral("overzicht.pdf"));
    const Run run = zarnoveld({QStringLiteral("rapport"), example(QStringLiteral("sample-couple.json")), pdf});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains(QStringLiteral("Rapport geschreven")), qPrintable(run.out + run.err));
    QCOMPARE(modeOf(pdf), mode_t(0600));
    QCOMPARE(filesIn(m_dir->path()), QStringList{QStringLiteral("overzicht.pdf")});
    const int pages = PdfText::pageCount(pdf);
    QVERIFY(pages >= 2);
    QVERIFY(run.out.contains(QStringLiteral("(%1 pagina's)").arg(pages)));
    const QString text = PdfText::squeezed(PdfText::text(pdf));
    for (const char *expected : {"Jan van den Berg", "Ria van den Berg-Smit", "ABP", "PFZW", "Brand New Day",
                                 "58.200", "sample-couple", "Bevindingen van de controle"})
        QVERIFY2(text.contains(QLatin1String(expected)), expected);
    QVERIFY(text.contains(QStringLiteral("pagina %1 van %1").arg(pages)));
    // The date of printing, in the title and on every page.
    QVERIFY(text.contains(QDate::currentDate().toString(QStringLiteral("dd-MM-yyyy"))));
}

void TestRapportCommand::everyFindingOfTheCheckIsOnPaper()
{
    const QString source = example(QStringLiteral("check-errors.json"));
    const Run check = zarnoveld({QStringLiteral("check"), source, QStringLiteral("--json")});
    QCOMPARE(check.exitCode, 1);
    const QJsonObject report = QJsonDocument::fromJson(check.out.toUtf8()).object();
    const QJsonObject dossier = report.value(QStringLiteral("dossiers")).toArray().first().toObject();

    const QString pdf = m_dir->filePath(QStringLiteral("fouten.pdf"));
    // Findings are the content of the report, not a failure of the command.
    QCOMPARE(zarnoveld({QStringLiteral("rapport"), source, pdf}).exitCode, 0);
    const QString text = PdfText::squeezed(PdfText::text(pdf)).simplified();
    int failing = 0;
    for (const QJsonValue &v : dossier.value(QStringLiteral("regelingen")).toArray()) {
        const QJsonObject scheme = v.toObject();
        if (scheme.value(QStringLiteral("geslaagd")).toBool())
            continue;
        ++failing;
        const QString stop = scheme.value(QStringLiteral("melding")).toObject().value(QStringLiteral("tekst")).toString();
        QVERIFY2(text.contains(stop.simplified()), qPrintable(stop));
        QVERIFY(text.contains(QStringLiteral("regeling %1").arg(scheme.value(QStringLiteral("Pen_Id")).toInt())));
    }
    QVERIFY(failing > 0);
    for (const QJsonValue &v : dossier.value(QStringLiteral("opmerkingen")).toArray())
        QVERIFY2(text.contains(v.toString().simplified()), qPrintable(v.toString()));
}

void TestRapportCommand::anExistingFileIsOnlyReplacedWhenAskedTo()
{
    const QString pdf = m_dir->filePath(QStringLiteral("bestaand.pdf"));
    QVERIFY(writeFile(pdf, "het vorige rapport"));
    QVERIFY(QFile::setPermissions(pdf, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther));

    const Run refused = zarnoveld({QStringLiteral("rapport"), example(QStringLiteral("single.json")), pdf});
    QCOMPARE(refused.exitCode, 2);
    QVERIFY2(refused.err.contains(QStringLiteral("bestaat al")) && refused.err.contains(QStringLiteral("--overschrijven")),
             qPrintable(refused.err));
    QCOMPARE(contentOf(pdf), QByteArray("het vorige rapport"));

    const Run replaced = zarnoveld({QStringLiteral("rapport"), example(QStringLiteral("single.json")), pdf,
                                    QStringLiteral("--overschrijven")});
    QCOMPARE(replaced.exitCode, 0);
    QVERIFY(contentOf(pdf).startsWith("%PDF"));
    // The old file was readable by everyone; its replacement is not.
    QCOMPARE(modeOf(pdf), mode_t(0600));
    QCOMPARE(filesIn(m_dir->path()), QStringList{QStringLiteral("bestaand.pdf")});
}

void TestRapportCommand::aSymlinkTargetIsRefusedAndItsTargetUntouched()
{
    const QString victim = m_dir->filePath(QStringLiteral("ander-bestand"));
    QVERIFY(writeFile(victim, "niet van het rapport"));
    const QString link = m_dir->filePath(QStringLiteral("rapport.pdf"));
    QVERIFY(QFile::link(victim, link));
    for (const bool overwrite : {false, true}) {
        QStringList arguments{QStringLiteral("rapport"), example(QStringLiteral("single.json")), link};
        if (overwrite)
            arguments << QStringLiteral("--overschrijven");
        const Run run = zarnoveld(arguments);
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.err.contains(QStringLiteral("symbolische koppeling")), qPrintable(run.err));
        QCOMPARE(contentOf(victim), QByteArray("niet van het rapport"));
        QVERIFY(QFileInfo(link).isSymLink());
    }
    // A link to nowhere would create the file it points at: refused as well.
    const QString dangling = m_dir->filePath(QStringLiteral("los.pdf"));
    QVERIFY(QFile::link(m_dir->filePath(QStringLiteral("bestaat-niet.pdf")), dangling));
    QCOMPARE(zarnoveld({QStringLiteral("rapport"), example(QStringLiteral("single.json")), dangling}).exitCode, 2);
    QVERIFY(!QFileInfo::exists(m_dir->filePath(QStringLiteral("bestaat-niet.pdf"))));
}

void TestRapportCommand::aMissingFolderOrAFolderAsTargetIsRefused()
{
    const Run missing = zarnoveld({QStringLiteral("rapport"), example(QStringLiteral("single.json")),
                                   m_dir->filePath(QStringLiteral("geen-map/rapport.pdf"))});
    QCOMPARE(missing.exitCode, 2);
    QVERIFY2(missing.err.contains(QStringLiteral("bestaat niet")), qPrintable(missing.err));
    QVERIFY(!QFileInfo::exists(m_dir->filePath(QStringLiteral("geen-map"))));

    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("map.pdf")));
    const Run folder = zarnoveld({QStringLiteral("rapport"), example(QStringLiteral("single.json")),
                                  m_dir->filePath(QStringLiteral("map.pdf")), QStringLiteral("--overschrijven")});
    QCOMPARE(folder.exitCode, 2);
    QVERIFY2(folder.err.contains(QStringLiteral("geen gewoon bestand")), qPrintable(folder.err));
    QVERIFY(QFileInfo(m_dir->filePath(QStringLiteral("map.pdf"))).isDir());
}

void TestRapportCommand::anUnreadableCaseWritesNothing()
{
    const QString broken = m_dir->filePath(QStringLiteral("kapot.json"));
    QVERIFY(writeFile(broken, "{ \"Aanvragers\": [ "));
    const QString pdf = m_dir->filePath(QStringLiteral("kapot.pdf"));
    const Run run = zarnoveld({QStringLiteral("rapport"), broken, pdf});
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.err.contains(QStringLiteral("geen geldig JSON-dossier")), qPrintable(run.err));
    QVERIFY(!QFileInfo::exists(pdf));

    const Run absent = zarnoveld({QStringLiteral("rapport"), m_dir->filePath(QStringLiteral("weg.zdossier")), pdf});
    QCOMPARE(absent.exitCode, 2);
    QVERIFY(absent.err.contains(QStringLiteral("bestaat niet")));
    QCOMPARE(filesIn(m_dir->path()), QStringList{QStringLiteral("kapot.json")});
}

void TestRapportCommand::wrongUsageSaysHowAndWritesNothing()
{
    const Run run = zarnoveld({QStringLiteral("rapport"), example(QStringLiteral("single.json"))});
    QCOMPARE(run.exitCode, 2);
    QVERIFY(run.err.contains(QStringLiteral("gebruik: zarnoveld rapport DOSSIER BESTAND.pdf")));
}

void TestRapportCommand::aCaseFileIsReportedAndStaysAsItWas()
{
    const QString caseFile = m_dir->filePath(QStringLiteral("echt.zdossier"));
    QCOMPARE(zarnoveld({QStringLiteral("import"), example(QStringLiteral("sample-couple.json")), caseFile}).exitCode, 0);
    const QByteArray before = QCryptographicHash::hash(contentOf(caseFile), QCryptographicHash::Sha256);
    const QString pdf = m_dir->filePath(QStringLiteral("echt.pdf"));
    const Run run = zarnoveld({QStringLiteral("rapport"), caseFile, pdf});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(PdfText::text(pdf).contains(QStringLiteral("Ria van den Berg-Smit")));
    // Neither the check nor the report writes to the case they read.
    QCOMPARE(QCryptographicHash::hash(contentOf(caseFile), QCryptographicHash::Sha256), before);

    // Not even when it is named as the target, replacing allowed.
    const Run self = zarnoveld({QStringLiteral("rapport"), caseFile, caseFile, QStringLiteral("--overschrijven")});
    QCOMPARE(self.exitCode, 2);
    QVERIFY2(self.err.contains(QStringLiteral("het dossier zelf")), qPrintable(self.err));
    QCOMPARE(QCryptographicHash::hash(contentOf(caseFile), QCryptographicHash::Sha256), before);
}

void TestRapportCommand::aPipeGetsNoProgressButATerminalDoes()
{
    // Through pipes (a script, a log) only the result line: no bar to garble the log.
    const QString piped = m_dir->filePath(QStringLiteral("pijp.pdf"));
    const Run run = zarnoveld({QStringLiteral("rapport"), example(QStringLiteral("stress-99.json")), piped});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.err, QString());

    // On a terminal the long run shows how far it is. util-linux's script gives the program one.
    const QString script = QStandardPaths::findExecutable(QStringLiteral("script"));
    if (script.isEmpty())
        QSKIP("script (util-linux) is not installed");
    const QString pdf = m_dir->filePath(QStringLiteral("terminal.pdf"));
    // The bar waits half a second before it shows; checking and laying out the 99 + 99 case takes
    // longer than that in the builds the suite runs (Debug, sanitizers).
    const QString command = QStringLiteral("'%1' rapport '%2' '%3'")
                                .arg(QStringLiteral(ZARNOVELD_EXECUTABLE), example(QStringLiteral("stress-99-in-orde.json")), pdf);
    QProcess process;
    process.start(script, {QStringLiteral("-qec"), command, QStringLiteral("/dev/null")});
    QVERIFY(process.waitForFinished(120000));
    QCOMPARE(process.exitCode(), 0);
    const QString shown = QString::fromUtf8(process.readAllStandardOutput());
    QVERIFY2(shown.contains(QStringLiteral("/198 regelingen")) || shown.contains(QStringLiteral(" pagina's\x1b[K")),
             qPrintable(shown.left(300)));
    QVERIFY(shown.contains(QStringLiteral("Rapport geschreven")));
}

QTEST_GUILESS_MAIN(TestRapportCommand)
#include "tst_rapportcommand.moc"
