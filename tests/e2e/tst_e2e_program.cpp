// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The zarnoveld program started where there is no display: it says so, writes a picture of the
// pension screen and ends well instead of failing to open a window.

#include "e2esupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QTest>

using namespace E2e;

namespace {

const QString kNoDisplay = QStringLiteral("Geen beeldscherm gevonden: zarnoveld maakt een schermafdruk van het "
                                          "pensioenscherm in plaats van een venster te openen.");

struct Run
{
    int exitCode = -1;
    QProcess::ExitStatus status = QProcess::CrashExit;
    QString out;
    QString err;
};

Run runHeadless(const QStringList &arguments, const QString &workingDirectory)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        env.remove(QLatin1String(name));
    QProcess process;
    process.setProcessEnvironment(env);
    process.setWorkingDirectory(workingDirectory);
    process.start(QStringLiteral(ZARNOVELD_EXECUTABLE), arguments);
    Run run;
    if (!process.waitForFinished(90000)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitCode = process.exitCode();
    run.status = process.exitStatus();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

// A picture of a real screen has many colours; an unpainted one has one or two.
int colourCount(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += 7)
        for (int x = 0; x < image.width(); x += 7)
            colours.insert(image.pixel(x, y));
    return int(colours.size());
}

QStringList lines(const QString &text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class TestE2eProgram : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Sandbox> m_sandbox;

private Q_SLOTS:
    void initTestCase()
    {
        m_sandbox = std::make_unique<Sandbox>();
        QVERIFY(m_sandbox->isValid());
    }

    void sampleCaseWithoutDisplay()
    {
        const QString shot = m_sandbox->path(QStringLiteral("pensioenscherm.png"));
        const Run run = runHeadless({example(QStringLiteral("sample-couple.json")), QStringLiteral("--screenshot"), shot},
                                    m_sandbox->path(QString()));
        QVERIFY2(run.status == QProcess::NormalExit, qPrintable(run.err));
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        const QStringList lines = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QVERIFY2(lines.contains(kNoDisplay), qPrintable(run.out));
        QVERIFY2(lines.contains(QStringLiteral("Schermafdruk geschreven: ") + QFileInfo(shot).absoluteFilePath()),
                 qPrintable(run.out));
        const QImage image(shot);
        QVERIFY(!image.isNull());
        QVERIFY(image.width() >= 1000);
        QVERIFY(image.height() >= 700);
        QVERIFY(colourCount(image) > 20);
    }

    // Without --screenshot the picture goes to the working directory under a fixed name.
    void noCaseNoOptionWithoutDisplay()
    {
        const QString folder = m_sandbox->path(QStringLiteral("leeg"));
        QVERIFY(QDir().mkpath(folder));
        const Run run = runHeadless({}, folder);
        QVERIFY2(run.status == QProcess::NormalExit, qPrintable(run.err));
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QVERIFY2(run.out.contains(kNoDisplay), qPrintable(run.out));
        const QImage image(folder + QStringLiteral("/zarnoveld-pensioenscherm.png"));
        QVERIFY(!image.isNull());
        QVERIFY(colourCount(image) > 5);
    }

    void versionIsTheProjectVersion()
    {
        for (const QString &option : {QStringLiteral("--version"), QStringLiteral("-v")}) {
            const Run run = runHeadless({option}, m_sandbox->path(QString()));
            QCOMPARE(run.status, QProcess::NormalExit);
            QCOMPARE(run.exitCode, 0);
            QCOMPARE(run.out, QStringLiteral("zarnoveld " VANDREL_PROJECT_VERSION "\n"));
            QCOMPARE(run.err, QString());
        }
    }

    // A user who asks for help gets every command, one line each, in Dutch, and no window.
    void helpListsEveryCommandOnOneLine()
    {
        const Run run = runHeadless({QStringLiteral("--help")}, m_sandbox->path(QString()));
        QCOMPARE(run.exitCode, 0);
        const QStringList all = lines(run.out);
        for (const QString &command : {QStringLiteral("import JSON DOSSIER"), QStringLiteral("export DOSSIER JSON"),
                                       QStringLiteral("register "), QStringLiteral("unregister "),
                                       QStringLiteral("check DOSSIER..."), QStringLiteral("parameters DOSSIER [--jaar JAAR]"),
                                       QStringLiteral("--version "), QStringLiteral("--help "),
                                       QStringLiteral("[DOSSIER | JSON] ")}) {
            const QStringList found = all.filter(QStringLiteral("  zarnoveld ") + command);
            QVERIFY2(found.size() == 1, qPrintable(command + QStringLiteral(" in:\n") + run.out));
            // Usage and what it does on the same line.
            QVERIFY2(found.first().simplified().split(QLatin1Char(' ')).size() > command.simplified().split(QLatin1Char(' ')).size() + 2,
                     qPrintable(found.first()));
        }
        for (const QString &english : {QStringLiteral("Usage"), QStringLiteral("Options:"), QStringLiteral("Arguments"),
                                       QStringLiteral("Displays"), QStringLiteral("help on"), QStringLiteral("version information")})
            QVERIFY2(!run.out.contains(english), qPrintable(run.out));
        for (const QString &line : all)
            QVERIFY2(line.size() <= 100, qPrintable(line));
        QVERIFY(!run.out.contains(kNoDisplay));
        // Help asked after a command is the same help, not the command.
        const Run after = runHeadless({QStringLiteral("check"), QStringLiteral("--help")}, m_sandbox->path(QString()));
        QCOMPARE(after.exitCode, 0);
        QCOMPARE(after.out, run.out);
    }

    // The adviser moves a case to this year's figures from the command line.
    void parametersMovesACaseToAnotherYear()
    {
        const QString casePath = m_sandbox->path(QStringLiteral("paar.zdossier"));
        const QString folder = m_sandbox->path(QString());
        QCOMPARE(runHeadless({QStringLiteral("import"), example(QStringLiteral("sample-couple.json")), casePath}, folder).exitCode, 0);

        const Run shown = runHeadless({QStringLiteral("parameters"), casePath}, folder);
        QCOMPARE(shown.exitCode, 0);
        QVERIFY2(shown.out.startsWith(QStringLiteral("Dossier paar.zdossier rekent met de fiscale cijfers van 2025.\n")),
                 qPrintable(shown.out));
        QVERIFY2(lines(shown.out).contains(QStringLiteral("  FranchiseA              18.475,00")), qPrintable(shown.out));

        const Run moved = runHeadless({QStringLiteral("parameters"), casePath, QStringLiteral("--jaar"), QStringLiteral("2026")}, folder);
        QCOMPARE(moved.exitCode, 0);
        const QStringList movedLines = lines(moved.out);
        QVERIFY2(movedLines.contains(QStringLiteral("Dossier paar.zdossier: fiscale cijfers van 2025 naar 2026.")), qPrintable(moved.out));
        QVERIFY2(movedLines.contains(QStringLiteral("  FranchiseA: 18.475,00 -> 19.172,00")), qPrintable(moved.out));
        QVERIFY2(movedLines.contains(QStringLiteral("  FranchiseEindloonB: 20.905,49 -> 21.693,78")), qPrintable(moved.out));
        QVERIFY2(movedLines.contains(QStringLiteral(
                     "  Jan van den Berg, regeling 1 (ABP): Franchise 18.475,00 -> 19.172,00, Grondslag 39.725,00 -> 39.028,00")),
                 qPrintable(moved.out));

        // The store recorded it: a new process sees the year, and the export carries it.
        const Run again = runHeadless({QStringLiteral("parameters"), casePath, QStringLiteral("--jaar=2026")}, folder);
        QCOMPARE(again.exitCode, 0);
        QCOMPARE(again.out, QStringLiteral("Dossier paar.zdossier rekent al met de fiscale cijfers van 2026; er is niets gewijzigd.\n"));
        const QString json = m_sandbox->path(QStringLiteral("paar.json"));
        QCOMPARE(runHeadless({QStringLiteral("export"), casePath, json}, folder).exitCode, 0);
        QFile exported(json);
        QVERIFY(exported.open(QIODevice::ReadOnly));
        const QJsonObject document = QJsonDocument::fromJson(exported.readAll()).object();
        QCOMPARE(document.value(QStringLiteral("Rekenjaar")).toInt(), 2026);
        QCOMPARE(document.value(QStringLiteral("Parameters")).toObject().value(QStringLiteral("FranchiseA")).toDouble(), 19172.0);
    }

    void parametersRefusesWhatItCannotDo_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        const QString c = QStringLiteral("CASE");
        QTest::newRow("unknown year") << QStringList{c, QStringLiteral("--jaar"), QStringLiteral("1999")}
                                      << QStringLiteral("zarnoveld: Voor 1999 zijn geen fiscale cijfers bekend. Kies een van deze jaren: 2024, 2025, 2026.\n");
        QTest::newRow("not a year") << QStringList{c, QStringLiteral("--jaar"), QStringLiteral("volgend")}
                                    << QStringLiteral("zarnoveld: \"volgend\" is geen jaartal; bekende jaren: 2024, 2025, 2026.\n");
        QTest::newRow("year missing") << QStringList{c, QStringLiteral("--jaar")}
                                      << QStringLiteral("zarnoveld: --jaar verwacht een jaartal, bijvoorbeeld 2026.\n");
        QTest::newRow("no case") << QStringList{}
                                 << QStringLiteral("zarnoveld: gebruik: zarnoveld parameters DOSSIER [--jaar JAAR]\n");
        QTest::newRow("case missing") << QStringList{QStringLiteral("weg.zdossier"), QStringLiteral("--jaar"), QStringLiteral("2026")}
                                      << QStringLiteral("zarnoveld: Het dossier weg.zdossier bestaat niet.\n");
        QTest::newRow("json example") << QStringList{QStringLiteral("JSON"), QStringLiteral("--jaar"), QStringLiteral("2026")}
                                      << QStringLiteral("JSON-bestand");
    }

    void parametersRefusesWhatItCannotDo()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        const QString casePath = m_sandbox->path(QStringLiteral("weigeren.zdossier"));
        if (!QFile::exists(casePath))
            QCOMPARE(runHeadless({QStringLiteral("import"), example(QStringLiteral("single.json")), casePath},
                                 m_sandbox->path(QString())).exitCode, 0);
        const QByteArray before = [&] {
            QFile f(casePath);
            f.open(QIODevice::ReadOnly);
            return f.readAll();
        }();
        arguments.replaceInStrings(QStringLiteral("CASE"), casePath);
        arguments.replaceInStrings(QStringLiteral("JSON"), example(QStringLiteral("single.json")));
        const Run run = runHeadless(QStringList{QStringLiteral("parameters")} + arguments, m_sandbox->path(QString()));
        QCOMPARE(run.status, QProcess::NormalExit);
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.out, QString());
        QVERIFY2(run.err.contains(message), qPrintable(run.err));
        QFile after(casePath);
        QVERIFY(after.open(QIODevice::ReadOnly));
        QCOMPARE(after.readAll(), before);
    }
};

QTEST_MAIN(TestE2eProgram)
#include "tst_e2e_program.moc"
