// SortListView on 10 000 rows against the toolkit's floor: QTreeWidget::sortItems on a column
// that already holds sortable keys. Both start from the same shuffled rows every iteration.

#include "listviewroutines.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDate>
#include <QTreeWidget>

#include <algorithm>
#include <chrono>
#include <random>
#include <vector>

namespace {

using namespace VandrelPensioen;
constexpr int Rows = 10000;

struct Row
{
    QString date;   // as shown, dd-MM-yyyy
    QString key;    // yyyyMMdd, what sortItems gets ready-made
    QString amount; // as shown, #,##0
};

std::vector<Row> makeRows()
{
    std::mt19937 random(20240501);
    std::uniform_int_distribution<int> days(0, 60 * 365);
    std::uniform_int_distribution<int> amounts(0, 2000000);
    std::vector<Row> rows;
    rows.reserve(Rows);
    const QDate base(1970, 1, 1);
    for (int i = 0; i < Rows; ++i) {
        const QDate date = base.addDays(days(random));
        rows.push_back({date.toString(QStringLiteral("dd-MM-yyyy")),
                        date.toString(QStringLiteral("yyyyMMdd")),
                        QLocale(QLocale::Dutch).toString(amounts(random))});
    }
    return rows;
}

const std::vector<Row> &rows()
{
    static const std::vector<Row> all = makeRows();
    return all;
}

// Three columns as the lists show them, plus the prepared key column for the floor.
void fill(QTreeWidget &list)
{
    list.clear();
    list.setColumnCount(3);
    ListView::prepareReportView(&list);
    QList<QTreeWidgetItem *> items;
    items.reserve(Rows);
    for (const Row &row : rows())
        items.append(new QTreeWidgetItem(QStringList{row.date, row.amount, row.key}));
    list.addTopLevelItems(items);
}

// Puts the same texts back in a fresh shuffled order without timing it.
void shuffle(QTreeWidget &list, std::mt19937 &random)
{
    std::vector<int> order(Rows);
    for (int i = 0; i < Rows; ++i)
        order[size_t(i)] = i;
    std::shuffle(order.begin(), order.end(), random);
    for (int i = 0; i < Rows; ++i) {
        const Row &row = rows()[size_t(order[size_t(i)])];
        QTreeWidgetItem *item = list.topLevelItem(i);
        item->setText(0, row.date);
        item->setText(1, row.amount);
        item->setText(2, row.key);
    }
}

using Clock = std::chrono::steady_clock;

double seconds(Clock::time_point from)
{
    return std::chrono::duration<double>(Clock::now() - from).count();
}

// Times one sort per iteration on a freshly shuffled list of the same rows.
template <typename Sort>
void timeSort(benchmark::State &state, Sort sort)
{
    QTreeWidget list;
    fill(list);
    std::mt19937 random(7);
    for (auto _ : state) {
        shuffle(list, random);
        const auto start = Clock::now();
        sort(list);
        state.SetIterationTime(seconds(start));
    }
}

void BM_SortItemsOnPreparedKeys(benchmark::State &state)
{
    timeSort(state, [](QTreeWidget &list) { list.sortItems(2, Qt::AscendingOrder); });
}

void BM_SortListViewDates(benchmark::State &state)
{
    // The header-click entry asked for ascending: it sorts ascending every time.
    timeSort(state, [](QTreeWidget &list) {
        ListView::SortListViewColumn(&list, 0, ListView::Date, ListView::Ascending, ListView::FromText, false);
    });
}

void BM_SortListViewNumbers(benchmark::State &state)
{
    timeSort(state, [](QTreeWidget &list) {
        ListView::SortListView(&list, 1, ListView::Number, ListView::FromText, false, ListView::Ascending);
    });
}

// Both sorts on identical inputs in the same iteration; the ratio is the figure to watch.
void BM_SortListViewRatio(benchmark::State &state)
{
    QTreeWidget ours;
    QTreeWidget floor;
    fill(ours);
    fill(floor);
    std::mt19937 randomOurs(11);
    std::mt19937 randomFloor(11);
    double oursTotal = 0;
    double floorTotal = 0;
    for (auto _ : state) {
        shuffle(ours, randomOurs);
        shuffle(floor, randomFloor);
        auto start = Clock::now();
        ListView::SortListViewColumn(&ours, 0, ListView::Date, ListView::Ascending,
                                     ListView::FromText, false);
        const double oursTime = seconds(start);
        start = Clock::now();
        floor.sortItems(2, Qt::AscendingOrder);
        const double floorTime = seconds(start);
        oursTotal += oursTime;
        floorTotal += floorTime;
        state.SetIterationTime(oursTime);
    }
    const double ratio = floorTotal > 0 ? oursTotal / floorTotal : 0;
    state.counters["ratio"] = ratio;
    state.SetLabel(QStringLiteral("ratio %1 to sortItems (target <= 1.5)")
                       .arg(ratio, 0, 'f', 2)
                       .toStdString());
}

} // namespace

BENCHMARK(BM_SortItemsOnPreparedKeys)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SortListViewDates)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SortListViewNumbers)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SortListViewRatio)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
