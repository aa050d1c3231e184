// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// SortListView on 10 000 rows against the toolkit's floor: QTreeWidget::sortItems on a column
// that already holds sortable keys, for each kind of column (dates, numbers, text). Both start
// from the same shuffled rows every iteration.

#include "listviewroutines.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDate>
#include <QTreeWidget>

#include <algorithm>
#include <random>
#include <vector>

#include <time.h>

namespace {

using namespace VandrelPensioen;
constexpr int Rows = 10000;

struct Row
{
    QString date;        // as shown, dd-MM-yyyy
    QString amount;      // as shown, #,##0
    QString name;        // plain text
    QString dateKey;     // yyyyMMdd, what sortItems gets ready-made
    QString amountKey;   // zero-filled to one width, what sortItems gets ready-made
};

// The columns of the list: three as the lists show them, two with the floor's prepared keys.
enum Column { DateColumn, AmountColumn, NameColumn, DateKeyColumn, AmountKeyColumn, Columns };

std::vector<Row> makeRows()
{
    std::mt19937 random(20240501);
    std::uniform_int_distribution<int> days(0, 60 * 365);
    std::uniform_int_distribution<int> amounts(0, 2000000);
    std::uniform_int_distribution<int> letters(0, 25);
    std::vector<Row> rows;
    rows.reserve(Rows);
    const QDate base(1970, 1, 1);
    for (int i = 0; i < Rows; ++i) {
        const QDate date = base.addDays(days(random));
        const int amount = amounts(random);
        QString name;
        for (int c = 0; c < 12; ++c)
            name.append(QChar(u'a' + letters(random)));
        rows.push_back({date.toString(QStringLiteral("dd-MM-yyyy")),
                        QLocale(QLocale::Dutch).toString(amount), name,
                        date.toString(QStringLiteral("yyyyMMdd")),
                        QStringLiteral("%1").arg(amount, 10, 10, QLatin1Char('0'))});
    }
    return rows;
}

const std::vector<Row> &rows()
{
    static const std::vector<Row> all = makeRows();
    return all;
}

QStringList texts(const Row &row)
{
    return {row.date, row.amount, row.name, row.dateKey, row.amountKey};
}

void fill(QTreeWidget &list)
{
    list.clear();
    list.setColumnCount(Columns);
    ListView::prepareReportView(&list);
    QList<QTreeWidgetItem *> items;
    items.reserve(Rows);
    for (const Row &row : rows())
        items.append(new QTreeWidgetItem(texts(row)));
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
        const QStringList cells = texts(rows()[size_t(order[size_t(i)])]);
        QTreeWidgetItem *item = list.topLevelItem(i);
        for (int c = 0; c < Columns; ++c)
            item->setText(c, cells.at(c));
    }
}

// The thread's own processor time, not the wall clock: the build machine shares its two cores,
// and a sort that loses its core half-way would be charged with another program's work. Neither
// sort waits for anything, so for them the two clocks differ only by that noise.
struct Clock
{
    using time_point = double;
    static double now()
    {
        timespec t{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
        return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
    }
};

double seconds(double from)
{
    return Clock::now() - from;
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
    timeSort(state, [](QTreeWidget &list) { list.sortItems(DateKeyColumn, Qt::AscendingOrder); });
}

void BM_SortListViewDates(benchmark::State &state)
{
    // The header-click entry asked for ascending: it sorts ascending every time.
    timeSort(state, [](QTreeWidget &list) {
        ListView::SortListViewColumn(&list, DateColumn, ListView::Date, ListView::Ascending,
                                     ListView::FromText, false);
    });
}

void BM_SortListViewNumbers(benchmark::State &state)
{
    timeSort(state, [](QTreeWidget &list) {
        ListView::SortListView(&list, AmountColumn, ListView::Number, ListView::FromText, false,
                               ListView::Ascending);
    });
}

// SortListView on one column kind and sortItems on the column of keys made ready for it, on
// identical inputs in the same iteration; the ratio is the figure to watch.
void BM_SortListViewRatio(benchmark::State &state, ListView::DataType kind)
{
    const int column = kind == ListView::Date ? DateColumn : kind == ListView::Number ? AmountColumn : NameColumn;
    const int floorColumn = kind == ListView::Date ? DateKeyColumn
                            : kind == ListView::Number ? AmountKeyColumn
                                                       : NameColumn;
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
        ListView::SortListViewColumn(&ours, qint16(column), kind, ListView::Ascending,
                                     ListView::FromText, false);
        const double oursTime = seconds(start);
        start = Clock::now();
        floor.sortItems(floorColumn, Qt::AscendingOrder);
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
BENCHMARK_CAPTURE(BM_SortListViewRatio, dates, ListView::Date)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SortListViewRatio, numbers, ListView::Number)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SortListViewRatio, texts, ListView::Text)->UseManualTime()->Unit(benchmark::kMillisecond);

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
