// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The zarnoveld program tried as an unlucky or hostile user tries it: a full disk, a symlink, a
// file of the same name, a read-only case, a megabyte name, a killed import, names that would
// garble a terminal. Each run is the real program, started as a process without a display.

#include "commands.h"
#include "e2esupport.h"
#include "errorlog.h"
#include "mainwindow.h"
#include "pensionscreen.h"
#include "textbox.h"
#include "usersim.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>
#include <QThread>
#include <QTreeWidget>

#include <pwd.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace E2e;
using namespace TestSupport;
using Zarnoveld::MainWindow;

namespace {

struct Run
{
    int exitCode = -1;
    bool finished = false;
    qint64 elapsedMs = 0;
    QString out;
    QString err;
};

struct Options
{
    QString directory;
    qint64 fileSizeLimit = 0;        // RLIMIT_FSIZE of the child, 0: none
    bool asNobody = false;           // run as the user nobody (root ignores file modes)
    int timeoutMs = 90000;
};

Run zarnoveld(const QStringList &arguments, const Options &options = {})
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        env.remove(QLatin1String(name));
    QProcess process;
    process.setProcessEnvironment(env);
    if (!options.directory.isEmpty())
        process.setWorkingDirectory(options.directory);
    const qint64 limit = options.fileSizeLimit;
    process.setChildProcessModifier([limit] {
        if (limit > 0) {
            const rlimit r{static_cast<rlim_t>(limit), static_cast<rlim_t>(limit)};
            ::setrlimit(RLIMIT_FSIZE, &r);
        }
    });
    QElapsedTimer clock;
    clock.start();
    if (options.asNobody)
        process.start(QStringLiteral("setpriv"), QStringList{QStringLiteral("--reuid=nobody"), QStringLiteral("--regid=nogroup"),
                                                             QStringLiteral("--clear-groups"), QStringLiteral(ZARNOVELD_EXECUTABLE)}
                                                     + arguments);
    else
        process.start(QStringLiteral(ZARNOVELD_EXECUTABLE), arguments);
    Run run;
    run.finished = process.waitForFinished(options.timeoutMs);
    run.elapsedMs = clock.elapsed();
    if (!run.finished) {
        process.kill();
        process.waitForFinished();
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &data)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(data);
}

unsigned modeOf(const QString &path)
{
    struct stat st {};
    if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
        return 0xFFFF;
    return st.st_mode & 07777;
}

QString describe(const Run &run)
{
    return QStringLiteral("exit %1 after %2 ms\nstdout: %3\nstderr: %4")
        .arg(run.exitCode)
        .arg(run.elapsedMs)
        .arg(run.out.left(2000), run.err.left(2000));
}

QByteArray json(const QJsonObject &o)
{
    return QJsonDocument(o).toJson(QJsonDocument::Indented);
}

// A copy of an example with some participant fields replaced.
QJsonObject withParticipant(const char *example, int index, const QJsonObject &fields)
{
    QJsonObject doc = exampleCase(example);
    QJsonArray list = doc.value(QStringLiteral("Aanvragers")).toArray();
    QJsonObject participant = list.at(index).toObject();
    for (auto it = fields.begin(); it != fields.end(); ++it)
        participant.insert(it.key(), it.value());
    list[index] = participant;
    doc.insert(QStringLiteral("Aanvragers"), list);
    return doc;
}

// The example as a case holds it: every field the document left out filled in.
QJsonObject asImported(const char *name)
{
    return Zarnoveld::HostApplication::importJson(exampleCase(name))->exportJson();
}

QStringList bundledExamples()
{
    return QDir(QFileInfo(example(QStringLiteral("single.json"))).absolutePath())
        .entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
}

} // namespace

class TestE2eTrust : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Sandbox> m_sandbox;
    int m_n = 0;

    QString fresh(const QString &name)
    {
        const QString folder = m_sandbox->path(QStringLiteral("t%1").arg(++m_n));
        QDir().mkpath(folder);
        return folder + QLatin1Char('/') + name;
    }

    QString importedCase(const QString &example)
    {
        const QString path = fresh(QStringLiteral("dossier.zdossier"));
        const Run run = zarnoveld({QStringLiteral("import"), example, path});
        if (run.exitCode != 0)
            qWarning("%s", qPrintable(describe(run)));
        return path;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_sandbox = std::make_unique<Sandbox>();
        QVERIFY(m_sandbox->isValid());
    }

    void exportOverAnExistingFileOnlyWhenAsked()
    {
        const QString path = importedCase(example(QStringLiteral("single.json")));
        const QString target = fresh(QStringLiteral("export.json"));
        writeFile(target, "mijn eigen bestand");
        Run run = zarnoveld({QStringLiteral("export"), path, target});
        QVERIFY2(run.exitCode == 2, qPrintable(describe(run)));
        QVERIFY2(run.err.contains(QStringLiteral("bestaat al")), qPrintable(run.err));
        QVERIFY2(run.err.contains(QStringLiteral("--overschrijven")), qPrintable(run.err));
        QCOMPARE(contentOf(target), QByteArray("mijn eigen bestand"));
        run = zarnoveld({QStringLiteral("export"), path, target, QStringLiteral("--overschrijven")});
        QVERIFY2(run.exitCode == 0, qPrintable(describe(run)));
        QCOMPARE(QJsonDocument::fromJson(contentOf(target)).object(), asImported("single.json"));
    }

    // A nearly full disk: the export fails with exit status 2 and the good export is kept whole.
    // On a small tmpfs when this test may mount one; always also under a file-size limit (which
    // any user can set) and with /dev/full as the target.
    void exportOnAFullDiskKeepsTheOldFile()
    {
        const QString path = importedCase(example(QStringLiteral("stress-99.json")));
        const QString good = fresh(QStringLiteral("goed.json"));
        QVERIFY(zarnoveld({QStringLiteral("export"), path, good}).exitCode == 0);
        const QByteArray before = contentOf(good);
        QVERIFY(before.size() > 300 * 1024);

        const QString mountPoint = fresh(QStringLiteral("klein"));
        QVERIFY(QDir().mkpath(mountPoint));
        const QByteArray size = QByteArray::number(before.size() + 128 * 1024);
        if (::geteuid() == 0
            && ::mount("tmpfs", QFile::encodeName(mountPoint).constData(), "tmpfs", 0, ("size=" + size).constData()) == 0) {
            const QString onTmpfs = mountPoint + QStringLiteral("/export.json");
            QVERIFY(QFile::copy(good, onTmpfs));
            const Run run = zarnoveld({QStringLiteral("export"), path, onTmpfs, QStringLiteral("--overschrijven")});
            const QStringList left = QDir(mountPoint).entryList(QDir::Files | QDir::Hidden);
            const QByteArray after = contentOf(onTmpfs);
            ::umount(QFile::encodeName(mountPoint).constData());
            QVERIFY2(run.exitCode == 2, qPrintable(describe(run)));
            QVERIFY2(run.err.contains(QStringLiteral("schijf is vol")), qPrintable(run.err));
            QVERIFY2(!run.out.contains(QStringLiteral("geexporteerd")), qPrintable(run.out));
            QVERIFY(after == before);
            QCOMPARE(left, QStringList{QStringLiteral("export.json")});
        } else {
            qInfo("no tmpfs could be mounted here: the file-size limit and /dev/full below stand in for a full disk");
        }

        Options limited;
        limited.fileSizeLimit = 100 * 1024;
        Run run = zarnoveld({QStringLiteral("export"), path, good, QStringLiteral("--overschrijven")}, limited);
        QVERIFY2(run.exitCode == 2, qPrintable(describe(run)));
        QVERIFY2(!run.out.contains(QStringLiteral("geexporteerd")), qPrintable(run.out));
        QVERIFY(contentOf(good) == before);
        QCOMPARE(QDir(QFileInfo(good).absolutePath()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("goed.json")});

        run = zarnoveld({QStringLiteral("export"), path, QStringLiteral("/dev/full"), QStringLiteral("--overschrijven")});
        QVERIFY2(run.exitCode == 2, qPrintable(describe(run)));
        QVERIFY2(!run.out.contains(QStringLiteral("geexporteerd")), qPrintable(run.out));
    }

    void symlinkTargetsAreLeftAlone()
    {
        const QString path = importedCase(example(QStringLiteral("single.json")));
        const QString victim = fresh(QStringLiteral("andermans.txt"));
        writeFile(victim, "van iemand anders");
        const QString link = QFileInfo(victim).absolutePath() + QStringLiteral("/export.json");
        QVERIFY(QFile::link(victim, link));
        Run run = zarnoveld({QStringLiteral("export"), path, link, QStringLiteral("--overschrijven")});
        QVERIFY2(run.exitCode == 2, qPrintable(describe(run)));
        QVERIFY2(run.err.contains(QStringLiteral("symbolische link")), qPrintable(run.err));
        QCOMPARE(contentOf(victim), QByteArray("van iemand anders"));

        // An import onto a dangling link creates nothing where the link points.
        const QString nowhere = QFileInfo(victim).absolutePath() + QStringLiteral("/elders.zdossier");
        const QString dangling = QFileInfo(victim).absolutePath() + QStringLiteral("/nieuw.zdossier");
        QVERIFY(QFile::link(nowhere, dangling));
        run = zarnoveld({QStringLiteral("import"), example(QStringLiteral("single.json")), dangling});
        QVERIFY2(run.exitCode == 2, qPrintable(describe(run)));
        QVERIFY(!QFileInfo::exists(nowhere));
    }

    void twoFilesCalledKlantJsonAreTwoCases()
    {
        const QString x = fresh(QStringLiteral("klant.json"));
        const QString y = fresh(QStringLiteral("klant.json"));
        writeFile(x, json(exampleCase("single.json")));
        writeFile(y, json(exampleCase("sample-couple.json")));
        MessageRecorder messages;
        MainWindow window;
        QString error;
        QVERIFY2(window.openCase(x, &error), qPrintable(error));
        const QString caseOfX = window.currentCase()->filePath();
        QCOMPARE(window.currentCase()->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("Fatima el Amrani"));
        window.currentCase()->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("Fatima el Amrani-Bakker"));
        QVERIFY2(window.openCase(y, &error), qPrintable(error));
        QVERIFY(window.currentCase()->filePath() != caseOfX);
        QCOMPARE(window.currentCase()->Get_Dossier()->Get_Aanvrager(1)->Naam(),
                 exampleCase("sample-couple.json").value(QStringLiteral("Aanvragers")).toArray().at(0).toObject().value(QStringLiteral("Naam")).toString());
        // The same file again reopens its own case, with the edit made in it.
        QVERIFY2(window.openCase(x, &error), qPrintable(error));
        QCOMPARE(window.currentCase()->filePath(), caseOfX);
        QCOMPARE(window.currentCase()->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("Fatima el Amrani-Bakker"));
        // The same path with other content is another client: a case of its own.
        window.setCase(nullptr);
        writeFile(x, json(withParticipant("single.json", 0, {{QStringLiteral("Naam"), QStringLiteral("Karel Appel")}})));
        QVERIFY2(window.openCase(x, &error), qPrintable(error));
        QVERIFY(window.currentCase()->filePath() != caseOfX);
        QCOMPARE(window.currentCase()->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("Karel Appel"));
        window.setCase(nullptr);
    }

    // Opening a case on the pension screen and clicking through its schemes writes nothing: the
    // export afterwards is byte for byte the export before, and that is the example as imported.
    void importOpenExportGivesTheFileBack()
    {
        const QStringList examples = bundledExamples();
        QVERIFY(examples.size() >= 5);
        for (const QString &name : examples) {
            const QString path = importedCase(example(name));
            const QString before = fresh(QStringLiteral("voor.json"));
            QVERIFY2(zarnoveld({QStringLiteral("export"), path, before}).exitCode == 0, qPrintable(name));
            {
                MessageRecorder messages;
                MainWindow window;
                QVERIFY(openShown(window, path));
                clickNavigation(&window, QStringLiteral("Pensioenen"));
                auto *list = find<QTreeWidget>(window.pensionScreen()->control(), QStringLiteral("LstPensioenen"));
                QVERIFY2(list, "the pension screen's list");
                // Looking at every scheme of a small case; the large ones are opened only.
                for (int i = 0; list->topLevelItemCount() <= 12 && i < list->topLevelItemCount(); ++i)
                    clickRow(list, list->topLevelItem(i));
                clickNavigation(&window, QStringLiteral("Deelnemers"));
                window.close();
                window.pensionScreen()->release();
            }
            const QString after = fresh(QStringLiteral("na.json"));
            const Run run = zarnoveld({QStringLiteral("export"), path, after});
            QVERIFY2(run.exitCode == 0, qPrintable(describe(run)));
            if (contentOf(after) != contentOf(before)) {
                // Names the first line that changed, so a failure says what opening wrote.
                const QList<QByteArray> a = contentOf(before).split('\n');
                const QList<QByteArray> b = contentOf(after).split('\n');
                QStringList changed;
                for (int i = 0; i < std::min(a.size(), b.size()); ++i)
                    if (a[i] != b[i])
                        changed << QStringLiteral("line %1: %2 became %3").arg(i + 1)
                                       .arg(QString::fromUtf8(a[i].trimmed()), QString::fromUtf8(b[i].trimmed()));
                QFAIL(qPrintable(name + QStringLiteral(": opening changed the case: ") + changed.join(QStringLiteral("; "))));
            }
            QVERIFY2(QJsonDocument::fromJson(contentOf(after)).object() == asImported(name.toLatin1().constData()),
                     qPrintable(name + QStringLiteral(": the export differs from the example")));
        }
    }

    // The case file may not be changed by the user who opens it. Root may change any file, so as
    // root the program runs as the user nobody, who owns the case but finds it 0444 in a folder
    // it may not write either.
    void readOnlyCaseOpenedHeadlessEndsWithItsNotice()
    {
        const QString path = importedCase(example(QStringLiteral("sample-couple.json")));
        const QString folder = QFileInfo(path).absolutePath();
        const QString shot = m_sandbox->path(QStringLiteral("alleen-lezen.png"));
        Options options;
        options.timeoutMs = 30000;
        if (::geteuid() == 0) {
            options.asNobody = true;
            const passwd *nobody = ::getpwnam("nobody");
            QVERIFY(nobody);
            // The sandbox must be reachable (and its registry and log writable) for nobody.
            for (QString p = folder; p.startsWith(QDir::tempPath()) && p != QDir::tempPath(); p = QFileInfo(p).path())
                ::chmod(QFile::encodeName(p).constData(), 0755);
            for (const QString &sub : {QStringLiteral("registry"), QStringLiteral("state"), QStringLiteral("config"), QStringLiteral("data")}) {
                ::mkdir(QFile::encodeName(m_sandbox->path(sub)).constData(), 0700);
                QProcess::execute(QStringLiteral("chown"), {QStringLiteral("-R"), QStringLiteral("nobody:nogroup"), m_sandbox->path(sub)});
            }
            QProcess::execute(QStringLiteral("chown"), {QStringLiteral("-R"), QStringLiteral("nobody:nogroup"), folder});
            QProcess::execute(QStringLiteral("chown"), {QStringLiteral("nobody:nogroup"), m_sandbox->path(QString())});
        }
        QVERIFY(::chmod(QFile::encodeName(path).constData(), 0444) == 0);
        QVERIFY(::chmod(QFile::encodeName(folder).constData(), 0555) == 0);
        const QByteArray before = contentOf(path);
        const Run run = zarnoveld({path, QStringLiteral("--screenshot"), shot}, options);
        ::chmod(QFile::encodeName(folder).constData(), 0700);
        QVERIFY2(run.finished, qPrintable(describe(run)));
        QVERIFY2(run.exitCode == 0, qPrintable(describe(run)));
        QVERIFY2(run.err.contains(QStringLiteral("alleen-lezen")), qPrintable(describe(run)));
        QVERIFY2(run.out.contains(QStringLiteral("Schermafdruk geschreven")), qPrintable(describe(run)));
        QVERIFY(contentOf(path) == before);
        QVERIFY(!QFileInfo::exists(path + QStringLiteral("-wal")));
    }

    // In the window: the notice on opening, and a typed change refused with a message while the
    // case file stays as it was. As root the case lies on a tmpfs remounted read-only (root
    // ignores file modes, not a read-only mount); otherwise the file is 0444 in a 0555 folder.
    void readOnlyCaseRefusesATypedChange()
    {
        const QString folder = QFileInfo(fresh(QStringLiteral("x"))).absolutePath() + QStringLiteral("/ro");
        QVERIFY(QDir().mkpath(folder));
        const QByteArray native = QFile::encodeName(folder);
        const bool root = ::geteuid() == 0;
        if (root && ::mount("tmpfs", native.constData(), "tmpfs", 0, "size=4m") != 0)
            QSKIP("running as root without the right to mount: readOnlyCaseOpenedHeadlessEndsWithItsNotice covers it as nobody");
        const QString path = folder + QStringLiteral("/klant.zdossier");
        QVERIFY(zarnoveld({QStringLiteral("import"), example(QStringLiteral("single.json")), path}).exitCode == 0);
        if (root)
            QVERIFY(::mount("tmpfs", native.constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=4m") == 0);
        else
            QVERIFY(::chmod(QFile::encodeName(path).constData(), 0444) == 0 && ::chmod(native.constData(), 0555) == 0);
        const QByteArray before = contentOf(path);
        {
            MessageRecorder messages;
            MainWindow window;
            QString error;
            QVERIFY2(window.openCase(path, &error), qPrintable(error));
            QCOMPARE(messages.lastTitle(), QStringLiteral("Dossier alleen-lezen"));
            QVERIFY(window.windowTitle().contains(QStringLiteral("alleen-lezen")));
            QVERIFY(showActive(&window));
            clickNavigation(&window, QStringLiteral("Deelnemers"));
            messages.clear();
            enter(find<VandrelControl::TextBox>(&window, QStringLiteral("txtNaam_1")), QStringLiteral("Iemand Anders"));
            QVERIFY2(messages.count() >= 1, "the refused change must be said");
            QVERIFY2(messages.lastText().contains(QStringLiteral("alleen-lezen")), qPrintable(messages.lastText()));
            QCOMPARE(window.currentCase()->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("Fatima el Amrani"));
            window.close();
            window.pensionScreen()->release();
        }
        QVERIFY(contentOf(path) == before);
        if (root)
            QVERIFY(::umount(native.constData()) == 0);
        else
            ::chmod(native.constData(), 0700);
    }

    void megabyteNameIsRefusedAtOnce()
    {
        const QString source = fresh(QStringLiteral("lang.json"));
        writeFile(source, json(withParticipant("single.json", 0, {{QStringLiteral("Naam"), QString(1024 * 1024, QLatin1Char('x'))}})));
        const QString path = fresh(QStringLiteral("lang.zdossier"));
        const Run run = zarnoveld({QStringLiteral("import"), source, path}, Options{QString(), 0, false, 30000});
        QVERIFY2(run.finished, qPrintable(describe(run)));
        QVERIFY2(run.exitCode == 2, qPrintable(describe(run)));
        QVERIFY2(run.err.contains(QStringLiteral("$.Aanvragers[0].Naam")), qPrintable(run.err.left(500)));
        QVERIFY2(run.err.size() < 1000, "the message must not repeat the name");
        QVERIFY(!QFileInfo::exists(path));
    }

    // The largest case the screen takes, every text at its longest: check and screen stay quick.
    // The time is reported, not asserted (the machine is shared); a hang fails on the timeout.
    void longestNamesInTheLargestCase()
    {
        QJsonObject doc = exampleCase("stress-99.json");
        QJsonArray list = doc.value(QStringLiteral("Aanvragers")).toArray();
        const int max = Zarnoveld::HostApplication::MaxTextLength;
        for (int a = 0; a < list.size(); ++a) {
            QJsonObject participant = list.at(a).toObject();
            participant.insert(QStringLiteral("Naam"), QString(max, QChar(u'\u00e9')));
            QJsonArray pens = participant.value(QStringLiteral("Pensioenen")).toArray();
            for (int i = 0; i < pens.size(); ++i) {
                QJsonObject pen = pens.at(i).toObject();
                pen.insert(QStringLiteral("Uitvoerder"), QString(max - 3, QLatin1Char('U')) + QString::number(i).rightJustified(3, QLatin1Char('0')));
                pen.insert(QStringLiteral("Branche"), QString(max, QLatin1Char('B')));
                pens[i] = pen;
            }
            participant.insert(QStringLiteral("Pensioenen"), pens);
            list[a] = participant;
        }
        doc.insert(QStringLiteral("Aanvragers"), list);
        const QString source = fresh(QStringLiteral("lang-99.json"));
        writeFile(source, json(doc));
        const QString path = fresh(QStringLiteral("lang-99.zdossier"));
        Run run = zarnoveld({QStringLiteral("import"), source, path});
        QVERIFY2(run.exitCode == 0, qPrintable(describe(run)));
        run = zarnoveld({QStringLiteral("check"), path}, Options{QString(), 0, false, 60000});
        QVERIFY2(run.finished && (run.exitCode == 0 || run.exitCode == 1), qPrintable(describe(run)));
        qInfo("zarnoveld check, 99 + 99 schemes with %d-character names: %lld ms", max, run.elapsedMs);
        run = zarnoveld({path, QStringLiteral("--screenshot"), fresh(QStringLiteral("lang.png"))}, Options{QString(), 0, false, 60000});
        QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
        qInfo("zarnoveld opening it on the pension screen (start to picture): %lld ms", run.elapsedMs);
    }

    // Killed at any moment (20 runs): the case is whole or not there, and a new import succeeds.
    void importKilledAtRandomMoments()
    {
        const QString source = example(QStringLiteral("stress-99.json"));
        const QString folder = QFileInfo(fresh(QStringLiteral("x"))).absolutePath();
        const QString path = folder + QStringLiteral("/onderbroken.zdossier");
        const Run full = zarnoveld({QStringLiteral("import"), source, folder + QStringLiteral("/maat.zdossier")});
        QVERIFY2(full.exitCode == 0, qPrintable(describe(full)));
        const QString reference = folder + QStringLiteral("/maat.json");
        QVERIFY(zarnoveld({QStringLiteral("export"), folder + QStringLiteral("/maat.zdossier"), reference}).exitCode == 0);
        const QByteArray whole = contentOf(reference);
        QRandomGenerator random(20261124);
        int present = 0;
        for (int round = 0; round < 20; ++round) {
            QProcess process;
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            env.remove(QStringLiteral("DISPLAY"));
            env.remove(QStringLiteral("WAYLAND_DISPLAY"));
            process.setProcessEnvironment(env);
            process.start(QStringLiteral(ZARNOVELD_EXECUTABLE), {QStringLiteral("import"), source, path});
            QVERIFY(process.waitForStarted());
            QThread::usleep(random.bounded(static_cast<quint32>(full.elapsedMs * 1000 + 1)));
            process.kill();
            QVERIFY(process.waitForFinished(10000));
            if (QFileInfo::exists(path)) {
                ++present;
                const QString exported = folder + QStringLiteral("/ronde.json");
                QFile::remove(exported);
                const Run run = zarnoveld({QStringLiteral("export"), path, exported});
                QVERIFY2(run.exitCode == 0, qPrintable(QStringLiteral("round %1: %2").arg(round).arg(describe(run))));
                QVERIFY2(contentOf(exported) == whole, qPrintable(QStringLiteral("round %1: the case is not whole").arg(round)));
            } else {
                const Run run = zarnoveld({QStringLiteral("import"), source, path});
                QVERIFY2(run.exitCode == 0, qPrintable(QStringLiteral("round %1: %2").arg(round).arg(describe(run))));
            }
            for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
                QFile::remove(path + suffix);
        }
        qInfo("%d of 20 killed imports had finished", present);
        const QStringList left = QDir(folder).entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral("onderbroken"));
        QVERIFY2(left.filter(QStringLiteral(".import")).isEmpty() || left.size() <= 4, qPrintable(left.join(QLatin1Char(' '))));
    }

    void smallThingsSaidProperly()
    {
        // An empty list is no case.
        const QString list = fresh(QStringLiteral("lijst.json"));
        writeFile(list, "[]");
        Run run = zarnoveld({QStringLiteral("import"), list, fresh(QStringLiteral("l.zdossier"))});
        QVERIFY2(run.exitCode == 2, qPrintable(describe(run)));
        QVERIFY2(run.err.contains(QStringLiteral("geen JSON-dossier")), qPrintable(run.err));
        QVERIFY2(!run.err.contains(QStringLiteral("no error")), qPrintable(run.err));

        // check names the user's file, never the copy it reads.
        const QString broken = fresh(QStringLiteral("mijn-dossier.zdossier"));
        writeFile(broken, QByteArray("SQLite format 3\0", 16) + QByteArray(4096, '\x7f'));
        run = zarnoveld({QStringLiteral("check"), broken});
        QVERIFY2(run.exitCode == 2 || run.exitCode == 1, qPrintable(describe(run)));
        QVERIFY2(run.out.contains(QStringLiteral("mijn-dossier.zdossier")), qPrintable(run.out));
        QVERIFY2(!run.out.contains(QStringLiteral("controle.zdossier")), qPrintable(run.out));

        // A participant without name or birth date is imported with a clear warning.
        const QString nameless = fresh(QStringLiteral("naamloos.json"));
        writeFile(nameless, json(withParticipant("single.json", 0, {{QStringLiteral("Naam"), QString()},
                                                                    {QStringLiteral("GeboorteDatum"), QJsonValue()}})));
        run = zarnoveld({QStringLiteral("import"), nameless, fresh(QStringLiteral("n.zdossier"))});
        QVERIFY2(run.exitCode == 0, qPrintable(describe(run)));
        QVERIFY2(run.err.contains(QStringLiteral("De aanvrager heeft geen naam")), qPrintable(run.err));
        QVERIFY2(run.err.contains(QStringLiteral("De aanvrager heeft geen geboortedatum")), qPrintable(run.err));
    }

    void namesCannotGarbleTheTerminal()
    {
        const QString source = fresh(QStringLiteral("vreemd.json"));
        const QString hostile = QStringLiteral("Jan\u202Edrawkcab\x1b[31mrood\x07") + QChar(0x2066) + QStringLiteral("x");
        writeFile(source, json(withParticipant("single.json", 0, {{QStringLiteral("Naam"), hostile}})));
        const Run run = zarnoveld({QStringLiteral("check"), source});
        QVERIFY2(run.exitCode == 0 || run.exitCode == 1, qPrintable(describe(run)));
        QVERIFY2(run.out.contains(QStringLiteral("Jan\\u{202E}drawkcab\\u{001B}[31mrood\\u{0007}\\u{2066}x")), qPrintable(run.out));
        for (const QChar c : run.out)
            QVERIFY2(c == QLatin1Char('\n') || (c.unicode() >= 0x20 && c.unicode() != 0x7f && c != QChar(0x202E) && c != QChar(0x2066)),
                     qPrintable(QStringLiteral("raw U+%1 in the report").arg(c.unicode(), 4, 16, QLatin1Char('0'))));
    }

    void personalDataIsTheOwnersOnly()
    {
        const QString json = fresh(QStringLiteral("prive.json"));
        writeFile(json, contentOf(example(QStringLiteral("single.json"))));
        const Run run = zarnoveld({json, QStringLiteral("--screenshot"), fresh(QStringLiteral("p.png"))});
        QVERIFY2(run.exitCode == 0, qPrintable(describe(run)));
        const QString folder = Zarnoveld::Commands::caseFolder();
        QCOMPARE(modeOf(folder), 0700u);
        const QString casePath = Zarnoveld::Commands::caseFileFor(json);
        QVERIFY(QFileInfo::exists(casePath));
        QCOMPARE(modeOf(casePath), 0600u);
        for (const QString &file : QDir(folder).entryList(QDir::Files | QDir::Hidden))
            QVERIFY2((modeOf(folder + QLatin1Char('/') + file) & 077) == 0, qPrintable(file));

        // The error log: owner only, and it names no client.
        QFile::remove(m_sandbox->logFile());
        VandrelApplication::ErrorRecord record;
        record.Procedure = QStringLiteral("TxtNaam_Validation");
        record.Subject = QStringLiteral("Deelnemers");
        record.Message = QStringLiteral("Er is een fout opgetreden.");
        record.Number = QStringLiteral("1004");
        record.Description = QStringLiteral("De naam \"Fatima el Amrani\" met geboortedatum 30-06-1985 en salaris 72400 "
                                            "kon niet worden opgeslagen in single.zdossier.");
        Zarnoveld::ErrorLog::append(record);
        const QByteArray log = contentOf(m_sandbox->logFile());
        QVERIFY(log.contains("single.zdossier"));
        QVERIFY(log.contains("TxtNaam_Validation"));
        QVERIFY2(!log.contains("Fatima") && !log.contains("1985") && !log.contains("72400"), log.constData());
        QCOMPARE(modeOf(m_sandbox->logFile()), 0600u);
        QCOMPARE(modeOf(QFileInfo(m_sandbox->logFile()).absolutePath()) & 077, 0u);
    }

    // The window asks before it replaces an export; No keeps the file.
    void windowAsksBeforeReplacingAnExport()
    {
        const QString path = importedCase(example(QStringLiteral("single.json")));
        const QString target = fresh(QStringLiteral("bestaand.json"));
        writeFile(target, "bewaren");
        MessageRecorder messages;
        MainWindow window;
        QString error;
        QVERIFY2(window.openCase(path, &error), qPrintable(error));
        messages.clear();
        messages.answerNext(MessageBox::Answer::No);
        QVERIFY(!window.exportTo(target));
        QCOMPARE(messages.count(), 1);
        QVERIFY(messages.lastText().contains(QStringLiteral("bestaat al")));
        QCOMPARE(contentOf(target), QByteArray("bewaren"));
        messages.answerNext(MessageBox::Answer::Yes);
        QVERIFY(window.exportTo(target));
        QCOMPARE(QJsonDocument::fromJson(contentOf(target)).object(), asImported("single.json"));
        window.pensionScreen()->release();
    }
};

QTEST_MAIN(TestE2eTrust)
#include "tst_e2e_trust.moc"
