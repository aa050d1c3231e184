// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// PensMain::SetApplication on a case with 99 + 99 schemes, against the toolkit's floor: filling a
// bare QTreeWidget with the same 198 x 10 texts. Also the median time to select another scheme
// (validation of the shown one plus loading both data panels), and apart from it the median time
// the event loop then takes to paint the newly shown scheme.

#include "hostapplication.h"
#include "messagebox.h"
#include "pensmain.h"
#include "penslist.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTreeWidget>

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

namespace {

constexpr int SchemesPerParticipant = 99;

std::shared_ptr<Zarnoveld::HostApplication> stressCase()
{
    static std::shared_ptr<Zarnoveld::HostApplication> app;
    if (app)
        return app;
    app = Zarnoveld::HostApplication::createInMemory();
    auto dossier = app->Get_Dossier();
    dossier->Get_Aanvrager(1)->setGeboorteDatum(QDate(1968, 5, 4));
    const qint16 partner = dossier->AddAanvrager();
    dossier->Get_Aanvrager(partner)->setGeboorteDatum(QDate(1971, 9, 12));
    for (qint16 anv = 1; anv <= partner; ++anv) {
        auto aanvrager = dossier->Get_Aanvrager(anv);
        for (int i = 0; i < SchemesPerParticipant; ++i) {
            auto pensioen = aanvrager->Get_Pensioen(aanvrager->AddPension());
            pensioen->setHuidigeWerkgever(i == 0);
            pensioen->setUitvoerder(QStringLiteral("Uitvoerder %1").arg(i + 1));
            pensioen->setSoortRegeling(qint16(1 + i % 3));
            pensioen->setBedragTOP(1000 + i);
            pensioen->setBedragPP(2000 + i);
            pensioen->setBedragIP(3000 + i);
            // Complete enough to pass every check: selecting must load, never refuse.
            pensioen->setSalaris(50000);
            pensioen->setGrondslag(30000);
            pensioen->setOpbouwPercentage(1.75f);
            pensioen->setDoelvermogen(250000);
            pensioen->setRekenrenteOpbouw(4);
            pensioen->setRekenrenteUitkering(3);
        }
    }
    return app;
}

void BM_BareTreeFill(benchmark::State &state)
{
    // The same texts the list shows, prepared once: the floor is the toolkit's own work.
    std::vector<QStringList> rows;
    for (int r = 0; r < 2 * SchemesPerParticipant; ++r) {
        QStringList texts;
        for (int c = 0; c < 10; ++c)
            texts << QStringLiteral("%1.%2").arg(r).arg(c);
        rows.push_back(texts);
    }
    QTreeWidget tree;
    // The control lays its text out unshaped; the floor does the same, so that the ratio
    // measures the control's own work and not a font setting.
    QFont plain;
    plain.setStyleStrategy(QFont::PreferNoShaping);
    tree.setFont(plain);
    tree.setColumnCount(10);
    tree.resize(660, 150);
    tree.show();
    for (auto _ : state) {
        tree.clear();
        for (const QStringList &texts : rows)
            new QTreeWidgetItem(&tree, texts);
        tree.setCurrentItem(tree.topLevelItem(0));
        QCoreApplication::processEvents();
    }
}
BENCHMARK(BM_BareTreeFill)->Unit(benchmark::kMicrosecond);

void BM_SetApplication(benchmark::State &state)
{
    auto app = stressCase();
    VandrelPensioen::PensMain main;
    main.show();
    for (auto _ : state) {
        main.SetApplication(app);
        QCoreApplication::processEvents();
    }
}
BENCHMARK(BM_SetApplication)->Unit(benchmark::kMicrosecond);

void BM_SelectScheme(benchmark::State &state)
{
    auto app = stressCase();
    VandrelPensioen::PensMain main;
    main.show();
    main.SetApplication(app);
    auto *list = main.findChild<QTreeWidget *>(QStringLiteral("LstPensioenen"));
    // A refused selection would measure the wrong thing; any message is counted and shown.
    int messages = 0;
    VandrelControl::MessageBox::ScopedResponder responder(
        [&](const VandrelControl::MessageBox::Request &request) {
            if (messages++ == 0)
                std::fprintf(stderr, "message: %s\n", qPrintable(request.text));
            return request.buttons == VandrelControl::MessageBox::Buttons::YesNo
                ? VandrelControl::MessageBox::Answer::Yes
                : VandrelControl::MessageBox::Answer::Ok;
        });
    std::vector<double> times;
    std::vector<double> paints;
    int row = 0;
    for (auto _ : state) {
        row = (row + 37) % list->topLevelItemCount();
        QElapsedTimer timer;
        timer.start();
        list->setCurrentItem(list->topLevelItem(row));   // what a click or an arrow key does
        times.push_back(timer.nsecsElapsed() / 1e6);
        // Between two clicks the event loop runs and paints what the selection changed; timed
        // apart, so that a selection is not charged with painting the one before it.
        timer.start();
        QCoreApplication::processEvents();
        paints.push_back(timer.nsecsElapsed() / 1e6);
    }
    const auto median = [](std::vector<double> &values) {
        std::sort(values.begin(), values.end());
        return values.empty() ? 0.0 : values[values.size() / 2];
    };
    state.counters["median_ms"] = median(times);
    state.counters["paint_median_ms"] = median(paints);
    state.counters["messages"] = messages;
}
BENCHMARK(BM_SelectScheme)->Unit(benchmark::kMicrosecond);

// Prints the ratio of SetApplication to the bare fill after the normal report.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs)
            if (run.run_type == Run::RT_Iteration)
                m_times[run.benchmark_name()] = run.GetAdjustedRealTime();
        ConsoleReporter::ReportRuns(runs);
    }
    void Finalize() override
    {
        ConsoleReporter::Finalize();
        const auto bare = m_times.find("BM_BareTreeFill");
        const auto pens = m_times.find("BM_SetApplication");
        if (bare != m_times.end() && pens != m_times.end() && bare->second > 0)
            std::printf("SetApplication / bare QTreeWidget fill: %.2f (target <= 2)\n",
                        pens->second / bare->second);
    }

private:
    std::map<std::string, double> m_times;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
