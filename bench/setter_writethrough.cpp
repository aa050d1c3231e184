// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Leaving a field ends in one host setter that writes through to the case file. This compares its
// median latency with the floor: a bare SQLite UPDATE of one row in its own transaction, on a file
// with the same journal settings.

#include "hostapplication.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

QTemporaryDir *g_dir = nullptr;

struct SetterCase
{
    SetterCase()
    {
        static int n = 0;
        app = Zarnoveld::HostApplication::createFile(g_dir->filePath(QStringLiteral("setter%1").arg(++n)));
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        anv->AddPension();
        pen = anv->Get_Pensioen(1);
    }
    std::shared_ptr<Zarnoveld::HostApplication> app;
    VandrelApplication::PensioenPtr pen;
};

struct BareCase
{
    BareCase()
    {
        static int n = 0;
        db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bare%1").arg(++n));
        db.setDatabaseName(g_dir->filePath(QStringLiteral("bare%1").arg(n)));
        db.open();
        QSqlQuery(db).exec(QStringLiteral("PRAGMA journal_mode=WAL"));
        // The case file's own setting: every commit flushed to disk before it returns.
        QSqlQuery(db).exec(QStringLiteral("PRAGMA synchronous=FULL"));
        QSqlQuery(db).exec(QStringLiteral("CREATE TABLE t (id INTEGER PRIMARY KEY, v REAL)"));
        QSqlQuery(db).exec(QStringLiteral("INSERT INTO t VALUES (1, 0)"));
        begin = QSqlQuery(db);
        begin.prepare(QStringLiteral("BEGIN IMMEDIATE"));
        update = QSqlQuery(db);
        update.prepare(QStringLiteral("UPDATE t SET v = ? WHERE id = 1"));
        commit = QSqlQuery(db);
        commit.prepare(QStringLiteral("COMMIT"));
    }
    void set(double value)
    {
        begin.exec();
        update.bindValue(0, value);
        update.exec();
        commit.exec();
    }
    QSqlDatabase db;
    QSqlQuery begin, update, commit;
};

void BM_HostSetter(benchmark::State &state)
{
    SetterCase c;
    double v = 0;
    for (auto _ : state)
        c.pen->setSalaris(++v);
}
BENCHMARK(BM_HostSetter);

void BM_BareSqliteUpdate(benchmark::State &state)
{
    BareCase c;
    double v = 0;
    for (auto _ : state)
        c.set(++v);
}
BENCHMARK(BM_BareSqliteUpdate);

template <typename F>
double medianMicros(F &&f, int runs)
{
    std::vector<qint64> ns;
    ns.reserve(static_cast<size_t>(runs));
    QElapsedTimer timer;
    for (int i = 0; i < runs; ++i) {
        timer.start();
        f(i);
        ns.push_back(timer.nsecsElapsed());
    }
    std::nth_element(ns.begin(), ns.begin() + runs / 2, ns.end());
    return static_cast<double>(ns[static_cast<size_t>(runs / 2)]) / 1000.0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    g_dir = &dir;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();

    SetterCase setter;
    BareCase bare;
    const int runs = 3000;
    const double host = medianMicros([&](int i) { setter.pen->setSalaris(i); }, runs);
    const double floor = medianMicros([&](int i) { bare.set(i); }, runs);
    std::printf("median setter write-through: %.1f us (target <= 1000 us)\n", host);
    std::printf("median bare SQLite update+commit: %.1f us\n", floor);
    std::printf("ratio setter / bare: %.2f\n", host / floor);
    benchmark::Shutdown();
    return 0;
}
