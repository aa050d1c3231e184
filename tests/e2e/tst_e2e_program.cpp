// The zarnoveld program started where there is no display: it says so, writes a picture of the
// pension screen and ends well instead of failing to open a window.

#include "e2esupport.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
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
};

QTEST_MAIN(TestE2eProgram)
#include "tst_e2e_program.moc"
