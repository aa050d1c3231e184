// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The frame of a benchmark program that needs the check's pension screen: offscreen, a
// component registry of its own unless one is given, the checker prepared, Google Benchmark's
// registered benchmarks run, then the figures the program prints after them.

#include "check.h"

#include <QApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>

namespace Bench {

// Sets *checker for the registered benchmarks, runs them, then `figures`; returns 0, or 2 when
// the pension screen cannot be made.
inline int withChecker(int argc, char **argv, Zarnoveld::Check::Checker **checker, const std::function<void()> &figures)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir registry;
    if (qEnvironmentVariableIsEmpty("VANDREL_COMPONENT_REGISTRY"))
        qputenv("VANDREL_COMPONENT_REGISTRY", registry.path().toLocal8Bit());
    QApplication app(argc, argv);
    Zarnoveld::Check::Checker prepared;
    QString error;
    if (!prepared.prepare(&error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 2;
    }
    *checker = &prepared;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    figures();
    benchmark::Shutdown();
    return 0;
}

} // namespace Bench
