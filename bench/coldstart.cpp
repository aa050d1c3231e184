// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Cold start: a new process that opens a case file and shows the pension screen, measured until
// the screen has painted. The bench starts itself as that process (--child), so each run pays for
// everything a user's start pays for: loading Qt and the component library through the registry,
// opening the SQLite case, filling the list and both panels, the first paint. Median of N runs.

#include "commands.h"
#include "hostapplication.h"
#include "mainwindow.h"
#include "pensionscreen.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

// Signals the first paint of the pension control.
class PaintWatch : public QObject
{
public:
    bool painted = false;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            painted = true;
        return QObject::eventFilter(watched, event);
    }
};

int child(int argc, char **argv, const char *casePath)
{
    QApplication app(argc, argv);
    QString error;
    if (!Zarnoveld::Commands::ensureRegistered(&error))
        return 2;
    Zarnoveld::MainWindow window;
    if (!window.openCase(QString::fromLocal8Bit(casePath), &error))
        return 2;
    window.show();
    window.showScreen(Zarnoveld::MainWindow::Pensioenen);
    QWidget *control = window.pensionScreen()->control();
    if (!control)
        return 2;
    PaintWatch watch;
    control->installEventFilter(&watch);
    QElapsedTimer guard;
    guard.start();
    while (!watch.painted && guard.elapsed() < 10000)
        QApplication::processEvents(QEventLoop::AllEvents, 5);
    window.pensionScreen()->release();
    return watch.painted ? 0 : 3;
}

QString g_self;
QString g_case;

qint64 oneStart()
{
    QProcess process;
    QElapsedTimer timer;
    timer.start();
    process.start(g_self, {QStringLiteral("--child"), g_case});
    process.waitForFinished(30000);
    const qint64 ns = timer.nsecsElapsed();
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0 ? ns : -1;
}

void BM_ColdStart(benchmark::State &state)
{
    for (auto _ : state) {
        if (oneStart() < 0)
            state.SkipWithError("the child did not paint the pension screen");
    }
}
BENCHMARK(BM_ColdStart)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir dir;
    if (qEnvironmentVariableIsEmpty("VANDREL_COMPONENT_REGISTRY"))
        qputenv("VANDREL_COMPONENT_REGISTRY", dir.filePath(QStringLiteral("registry")).toLocal8Bit());
    if (qEnvironmentVariableIsEmpty("XDG_DATA_HOME"))
        qputenv("XDG_DATA_HOME", dir.filePath(QStringLiteral("data")).toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", dir.filePath(QStringLiteral("config")).toLocal8Bit());
    if (argc == 3 && std::strcmp(argv[1], "--child") == 0)
        return child(argc, argv, argv[2]);

    QCoreApplication app(argc, argv);
    g_self = QCoreApplication::applicationFilePath();
    g_case = dir.filePath(QStringLiteral("sample-couple") + Zarnoveld::Commands::caseSuffix());
    Zarnoveld::Commands::importCase(QStringLiteral(VANDREL_SOURCE_DIR "/examples/sample-couple.json"), g_case);
    QString error;
    if (!Zarnoveld::Commands::ensureRegistered(&error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 2;
    }

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();

    const int runs = 15;
    std::vector<qint64> ns;
    for (int i = 0; i < runs; ++i)
        ns.push_back(oneStart());
    if (std::count(ns.begin(), ns.end(), -1) > 0) {
        std::fprintf(stderr, "a start did not paint the pension screen\n");
        return 3;
    }
    std::nth_element(ns.begin(), ns.begin() + runs / 2, ns.end());
    std::printf("median cold start to pension screen painted: %.0f ms (target <= 300 ms)\n",
                double(ns[size_t(runs / 2)]) / 1e6);
    benchmark::Shutdown();
    return 0;
}
