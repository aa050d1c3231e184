// zarnoveld check throughput: schemes validated per second on the 99 + 99 stress case, each one
// loaded into the pension screen and given its full check, exactly as the command does it. The
// stress case's schemes all fail (the costly way through the screen: every one is refused and
// then deleted from the check's view); beside it the same size with every scheme in order (the
// sample couple's schemes repeated), and the sample couple itself.

#include "check.h"
#include "commands.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

QString example(const char *name)
{
    return QStringLiteral(VANDREL_SOURCE_DIR "/examples/") + QLatin1String(name);
}

Zarnoveld::Check::Checker *g_checker = nullptr;

void checkFile(benchmark::State &state, const char *name)
{
    const QString path = example(name);
    int schemes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto application = Zarnoveld::Check::loadInMemory(path);
        state.ResumeTiming();
        const auto result = g_checker->checkCase(application, path);
        schemes += int(result.schemes.size());
    }
    state.counters["schemes/s"] = benchmark::Counter(schemes, benchmark::Counter::kIsRate);
}

void BM_CheckStress99(benchmark::State &state) { checkFile(state, "stress-99.json"); }
BENCHMARK(BM_CheckStress99)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_CheckStress99Passing(benchmark::State &state) { checkFile(state, "stress-99-in-orde.json"); }
BENCHMARK(BM_CheckStress99Passing)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_CheckSampleCouple(benchmark::State &state) { checkFile(state, "sample-couple.json"); }
BENCHMARK(BM_CheckSampleCouple)->Unit(benchmark::kMillisecond)->Iterations(20);

// Best of a few whole runs, the way a user meets it; the figure scripts/bench reports.
double schemesPerSecond(const char *name, int runs)
{
    const QString path = example(name);
    double best = 0;
    for (int i = 0; i < runs; ++i) {
        auto application = Zarnoveld::Check::loadInMemory(path);
        QElapsedTimer timer;
        timer.start();
        const auto result = g_checker->checkCase(application, path);
        const double seconds = double(timer.nsecsElapsed()) / 1e9;
        best = std::max(best, double(result.schemes.size()) / seconds);
    }
    return best;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir registry;
    if (qEnvironmentVariableIsEmpty("VANDREL_COMPONENT_REGISTRY"))
        qputenv("VANDREL_COMPONENT_REGISTRY", registry.path().toLocal8Bit());
    QApplication app(argc, argv);
    Zarnoveld::Check::Checker checker;
    QString error;
    if (!checker.prepare(&error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 2;
    }
    g_checker = &checker;

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();

    std::printf("check throughput, stress-99.json: %.0f schemes/s (target >= 5000)\n",
                schemesPerSecond("stress-99.json", 3));
    std::printf("check throughput, sample-couple.json: %.0f schemes/s\n",
                schemesPerSecond("sample-couple.json", 20));
    std::printf("check throughput, stress-99-in-orde.json: %.0f schemes/s\n",
                schemesPerSecond("stress-99-in-orde.json", 3));
    benchmark::Shutdown();
    return 0;
}
