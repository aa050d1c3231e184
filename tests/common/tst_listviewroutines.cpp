// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "listviewroutines.h"

#include <QHeaderView>
#include <QTest>
#include <QTreeWidget>

using namespace VandrelPensioen;
using namespace VandrelPensioen::ListView;

namespace {

struct Row
{
    QString name;
    QString date;
    QString amount;
};

// A report view as the dialogs fill it: name, date (day first), amount ("#,##0").
void fill(QTreeWidget &list, const QList<Row> &rows)
{
    list.clear();
    list.setColumnCount(3);
    list.setHeaderLabels({QStringLiteral("Naam"), QStringLiteral("Datum"), QStringLiteral("Bedrag")});
    prepareReportView(&list);
    for (const Row &row : rows) {
        auto *item = new QTreeWidgetItem(&list, QStringList{row.name, row.date, row.amount});
        setKey(item, QLatin1Char('k') + row.name);
    }
}

QStringList column(const QTreeWidget &list, int c)
{
    QStringList texts;
    for (int i = 0; i < list.topLevelItemCount(); ++i)
        texts.append(list.topLevelItem(i)->text(c));
    return texts;
}

const QList<Row> sample = {
    {QStringLiteral("b"), QStringLiteral("31-01-2020"), QStringLiteral("1.000")},
    {QStringLiteral("a"), QStringLiteral("01-06-2021"), QStringLiteral("250")},
    {QStringLiteral("c"), QStringLiteral("15-03-2019"), QStringLiteral("12.500")},
};

} // namespace

class TestListViewRoutines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void keysFindRows();
    void sameColumnWithReverseFlipsEachTime();
    void sameColumnWithExplicitOrder();
    void differentColumnStartsAscending();
    void datesSortByCalendar();
    void datesAndMomentsSortByCalendarAndClock();
    void numbersSortByValueNegativesKeepQuirk();
    void keyAndTagSources();
    void equalKeysKeepTheirOrder();
    void columnCountUnchanged();
    void emptyListHasNoSelection();
    void firstRowSelectedAfterSort();
    void multiSelectListLeftWithoutSelection();
    void boldMarksOnlyTheSortedColumn();
    void sortArrowOnSortedColumnOnly();
    void headerAlignmentFormat();
    void headerClickSameOrderOnFirstTextColumnDoesNotSort();
    void headerClickSorts();
};

void TestListViewRoutines::init()
{
    // Module state is shared by every list: start each test from a column none of them uses.
    QTreeWidget scratch;
    scratch.setColumnCount(1);
    SortListView(&scratch, 9, Text, FromText, false, Ascending);
    QCOMPARE(lastSortedColumn(), qint16(9));
}

void TestListViewRoutines::keysFindRows()
{
    QTreeWidget list;
    fill(list, sample);
    QCOMPARE(key(list.topLevelItem(1)), QStringLiteral("ka"));
    QCOMPARE(findByKey(&list, QStringLiteral("kc")), list.topLevelItem(2));
    QCOMPARE(findByKey(&list, QStringLiteral("kx")), nullptr);
    QVERIFY(!list.rootIsDecorated());
    QCOMPARE(list.selectionBehavior(), QAbstractItemView::SelectRows);
}

void TestListViewRoutines::sameColumnWithReverseFlipsEachTime()
{
    QTreeWidget list;
    fill(list, sample);
    SortListView(&list, 0, Text, FromText, false, Reverse);   // a new column: ascending
    QCOMPARE(column(list, 0), (QStringList{"a", "b", "c"}));
    QCOMPARE(lastSortOrder(), Ascending);
    SortListView(&list, 0, Text, FromText, false, Reverse);
    QCOMPARE(column(list, 0), (QStringList{"c", "b", "a"}));
    QCOMPARE(lastSortOrder(), Descending);
    QCOMPARE(sortOrder(&list), Descending);
    SortListView(&list, 0, Text, FromText, false, Reverse);
    QCOMPARE(column(list, 0), (QStringList{"a", "b", "c"}));
    QCOMPARE(lastSortOrder(), Ascending);
    QCOMPARE(lastSortedColumn(), qint16(0));
}

void TestListViewRoutines::sameColumnWithExplicitOrder()
{
    QTreeWidget list;
    fill(list, sample);
    SortListView(&list, 0, Text, FromText, false, Ascending);
    SortListView(&list, 0, Text, FromText, false, Descending);
    QCOMPARE(column(list, 0), (QStringList{"c", "b", "a"}));
    SortListView(&list, 0, Text, FromText, false, Descending);
    QCOMPARE(column(list, 0), (QStringList{"c", "b", "a"}));
}

void TestListViewRoutines::differentColumnStartsAscending()
{
    QTreeWidget list;
    fill(list, sample);
    SortListView(&list, 0, Text, FromText, false, Ascending);
    SortListView(&list, 0, Text, FromText, false, Reverse);
    QCOMPARE(sortOrder(&list), Descending);

    SortListView(&list, 2, Number, FromText, false, Descending);
    QCOMPARE(column(list, 2), (QStringList{"250", "1.000", "12.500"}));
    QCOMPARE(lastSortedColumn(), qint16(2));
    QCOMPARE(lastSortOrder(), Ascending);

    SortListView(&list, 1, Date, FromText, false, Reverse);
    QCOMPARE(column(list, 1), (QStringList{"15-03-2019", "31-01-2020", "01-06-2021"}));
    QCOMPARE(lastSortOrder(), Ascending);
}

void TestListViewRoutines::datesSortByCalendar()
{
    QTreeWidget list;
    fill(list, sample);
    // Text order would be 01-06-2021, 15-03-2019, 31-01-2020.
    SortListView(&list, 1, Date, FromText, false, Ascending);
    QCOMPARE(column(list, 1), (QStringList{"15-03-2019", "31-01-2020", "01-06-2021"}));
    SortListView(&list, 1, Date, FromText, false, Reverse);
    QCOMPARE(column(list, 1), (QStringList{"01-06-2021", "31-01-2020", "15-03-2019"}));

    // An empty date sorts first, as its key is empty.
    fill(list, {{"x", "02-02-2002", "1"}, {"y", "", "2"}, {"z", "1-1-2001", "3"}});
    SortListView(&list, 1, Date, FromText, false, Ascending);
    QCOMPARE(column(list, 0), (QStringList{"y", "z", "x"}));
}

// Keys of dates and of moments in one column, typed and held: a date counts as the start of its
// day, the clock decides within a day, and a year before 1000 or in four digits sorts by value.
void TestListViewRoutines::datesAndMomentsSortByCalendarAndClock()
{
    QTreeWidget list;
    fill(list, {{"a", "", ""}, {"b", "", ""}, {"c", "", ""}, {"d", "", ""}, {"e", "", ""},
                {"f", "", ""}, {"g", "", ""}, {"h", "", ""}});
    const auto hold = [&](int row, const QVariant &value) { list.topLevelItem(row)->setData(1, KeyRole, value); };
    hold(0, QDateTime(QDate(2020, 3, 1), QTime(0, 0, 1)));
    hold(1, QDate(2020, 3, 1));
    hold(2, QStringLiteral("09-12-0999"));
    hold(3, QDateTime(QDate(2020, 2, 29), QTime(23, 59, 59)));
    hold(4, QStringLiteral("01-03-2020 10:00:00"));
    hold(5, QDate(9999, 12, 31));
    hold(6, QStringLiteral(" 1-3-2020 "));
    hold(7, QDateTime(QDate(2020, 3, 1), QTime(9, 59, 59, 999)));
    SortListView(&list, 1, Date, FromKey, false, Ascending);
    QCOMPARE(column(list, 0), (QStringList{"c", "d", "b", "g", "a", "h", "e", "f"}));
    SortListView(&list, 1, Date, FromKey, false, Reverse);
    QCOMPARE(column(list, 0), (QStringList{"f", "e", "h", "a", "b", "g", "d", "c"}));
}

void TestListViewRoutines::numbersSortByValueNegativesKeepQuirk()
{
    QTreeWidget list;
    fill(list, {{"a", "", "1.000"}, {"b", "", "-5"}, {"c", "", "250"}, {"d", "", "-3"},
                {"e", "", "2,5"}});
    SortListView(&list, 2, Number, FromText, false, Ascending);
    // The zero-filled key puts negatives first but in the wrong order among themselves.
    QCOMPARE(column(list, 2), (QStringList{"-3", "-5", "2,5", "250", "1.000"}));
}

void TestListViewRoutines::keyAndTagSources()
{
    QTreeWidget list;
    fill(list, sample);
    list.topLevelItem(0)->setData(2, TagRole, 30);
    list.topLevelItem(1)->setData(2, TagRole, 4);
    list.topLevelItem(2)->setData(2, TagRole, 200);
    SortListView(&list, 2, Number, FromTag, false, Ascending);
    QCOMPARE(column(list, 0), (QStringList{"a", "b", "c"}));

    list.topLevelItem(0)->setData(1, KeyRole, QDate(2030, 1, 1));
    list.topLevelItem(1)->setData(1, KeyRole, QDate(2001, 5, 1));
    list.topLevelItem(2)->setData(1, KeyRole, QDate(2010, 7, 9));
    SortListView(&list, 1, Date, FromKey, false, Ascending);
    QCOMPARE(column(list, 0), (QStringList{"b", "c", "a"}));

    // Column 0 with the key source: the row's own key.
    setKey(list.topLevelItem(0), QStringLiteral("3"));
    setKey(list.topLevelItem(1), QStringLiteral("1"));
    setKey(list.topLevelItem(2), QStringLiteral("2"));
    SortListView(&list, 0, Text, FromKey, false, Ascending);
    QCOMPARE(column(list, 0), (QStringList{"c", "a", "b"}));
}

void TestListViewRoutines::equalKeysKeepTheirOrder()
{
    QTreeWidget list;
    fill(list, {{"p", "01-01-2020", "1"}, {"q", "01-01-2020", "1"}, {"r", "01-01-2019", "1"},
                {"s", "01-01-2020", "1"}});
    SortListView(&list, 1, Date, FromText, false, Ascending);
    QCOMPARE(column(list, 0), (QStringList{"r", "p", "q", "s"}));
    SortListView(&list, 1, Date, FromText, false, Reverse);
    QCOMPARE(column(list, 0), (QStringList{"p", "q", "s", "r"}));
}

void TestListViewRoutines::columnCountUnchanged()
{
    QTreeWidget list;
    fill(list, sample);
    const int itemColumns = list.topLevelItem(0)->columnCount();
    SortListView(&list, 1, Date, FromText, true, Ascending);
    SortListView(&list, 2, Number, FromText, false, Ascending);
    QCOMPARE(list.columnCount(), 3);
    QCOMPARE(list.headerItem()->columnCount(), 3);
    QCOMPARE(list.headerItem()->text(2), QStringLiteral("Bedrag"));
    for (int i = 0; i < list.topLevelItemCount(); ++i)
        QCOMPARE(list.topLevelItem(i)->columnCount(), itemColumns);
    QCOMPARE(list.topLevelItemCount(), 3);
}

void TestListViewRoutines::emptyListHasNoSelection()
{
    QTreeWidget list;
    fill(list, {});
    SortListView(&list, 1, Date, FromText, false, Ascending);
    QVERIFY(list.selectedItems().isEmpty());
    QCOMPARE(list.currentItem(), nullptr);
    QCOMPARE(list.columnCount(), 3);
    QCOMPARE(lastSortedColumn(), qint16(1));
}

void TestListViewRoutines::firstRowSelectedAfterSort()
{
    QTreeWidget list;
    fill(list, sample);
    list.setCurrentItem(list.topLevelItem(2));
    SortListView(&list, 1, Date, FromText, false, Ascending);
    QCOMPARE(list.selectedItems().size(), 1);
    QCOMPARE(list.selectedItems().first()->text(0), QStringLiteral("c"));
    QCOMPARE(list.currentItem(), list.topLevelItem(0));
}

void TestListViewRoutines::multiSelectListLeftWithoutSelection()
{
    QTreeWidget list;
    fill(list, sample);
    list.setSelectionMode(QAbstractItemView::ExtendedSelection);
    list.topLevelItem(0)->setSelected(true);
    list.topLevelItem(2)->setSelected(true);
    SortListView(&list, 0, Text, FromText, false, Ascending);
    QVERIFY(list.selectedItems().isEmpty());
    QCOMPARE(column(list, 0), (QStringList{"a", "b", "c"}));
}

void TestListViewRoutines::boldMarksOnlyTheSortedColumn()
{
    QTreeWidget list;
    fill(list, sample);
    SortListView(&list, 1, Date, FromText, true, Ascending);
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = list.topLevelItem(i);
        QVERIFY(!item->font(0).bold());
        QVERIFY(item->font(1).bold());
        QVERIFY(!item->font(2).bold());
    }
    BoldSortColumn(&list, 0);
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = list.topLevelItem(i);
        QVERIFY(item->font(0).bold());
        QVERIFY(!item->font(1).bold());
    }
    // Without bold the marking stays as it was.
    SortListView(&list, 2, Number, FromText, false, Ascending);
    QVERIFY(list.topLevelItem(0)->font(0).bold());
}

void TestListViewRoutines::sortArrowOnSortedColumnOnly()
{
    QTreeWidget list;
    fill(list, sample);
    SortListView(&list, 2, Number, FromText, false, Ascending);
    QVERIFY(list.header()->isSortIndicatorShown());
    QCOMPARE(list.header()->sortIndicatorSection(), 2);
    QCOMPARE(list.header()->sortIndicatorOrder(), Qt::AscendingOrder);
    SortListView(&list, 2, Number, FromText, false, Reverse);
    QCOMPARE(list.header()->sortIndicatorSection(), 2);
    QCOMPARE(list.header()->sortIndicatorOrder(), Qt::DescendingOrder);

    SetHeaderSortImage(3, Descending, false, &list, 1);
    QCOMPARE(list.header()->sortIndicatorSection(), -1);
    QCOMPARE(HeaderAlignmentFormat(&list, 2), 1);
    SetHeaderSortImage(1, Ascending, true, &list, 2);
    QCOMPARE(list.header()->sortIndicatorSection(), 0);
    QCOMPARE(HeaderAlignmentFormat(&list, 0), 2);
}

void TestListViewRoutines::headerAlignmentFormat()
{
    QTreeWidget list;
    fill(list, sample);
    QCOMPARE(HeaderAlignmentFormat(&list, 0), 0);
    list.headerItem()->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    list.headerItem()->setTextAlignment(2, Qt::AlignHCenter);
    QCOMPARE(HeaderAlignmentFormat(&list, 1), 1);
    QCOMPARE(HeaderAlignmentFormat(&list, 2), 2);
    // Refreshing the arrows keeps each column's alignment.
    SortListView(&list, 0, Text, FromText, false, Ascending);
    QCOMPARE(HeaderAlignmentFormat(&list, 1), 1);
    QCOMPARE(HeaderAlignmentFormat(&list, 2), 2);
}

void TestListViewRoutines::headerClickSameOrderOnFirstTextColumnDoesNotSort()
{
    QTreeWidget list;
    fill(list, sample);
    SortListView(&list, 2, Number, FromText, false, Ascending);   // 250, 1.000, 12.500
    QCOMPARE(column(list, 0), (QStringList{"a", "b", "c"}));
    list.topLevelItem(0)->setText(0, QStringLiteral("z"));          // out of order on purpose
    QCOMPARE(sortOrder(&list), Ascending);
    SortListViewColumn(&list, 0, Text, Ascending, FromText, true);
    QCOMPARE(column(list, 0), (QStringList{"z", "b", "c"}));        // nothing sorted
    QCOMPARE(lastSortedColumn(), qint16(0));
    QVERIFY(list.topLevelItem(1)->font(0).bold());
    QCOMPARE(list.header()->sortIndicatorSection(), 0);
}

void TestListViewRoutines::headerClickSorts()
{
    QTreeWidget list;
    fill(list, sample);
    SortListViewColumn(&list, 1, Date, Ascending, FromText, false);
    QCOMPARE(column(list, 1), (QStringList{"15-03-2019", "31-01-2020", "01-06-2021"}));
    SortListViewColumn(&list, 1, Date, Descending, FromText, false);
    QCOMPARE(column(list, 1), (QStringList{"01-06-2021", "31-01-2020", "15-03-2019"}));
    // Column 0 as text in the other order than the list has: sorted.
    fill(list, {{"a", "01-01-2020", "1"}, {"b", "01-01-2019", "1"}, {"c", "01-01-2021", "1"}});
    SortListViewColumn(&list, 1, Date, Ascending, FromText, false);
    QCOMPARE(column(list, 0), (QStringList{"b", "a", "c"}));
    SortListViewColumn(&list, 0, Text, Descending, FromText, false);
    QCOMPARE(column(list, 0), (QStringList{"c", "b", "a"}));
    QCOMPARE(sortOrder(&list), Descending);
    QCOMPARE(lastSortedColumn(), qint16(0));
}

QTEST_MAIN(TestListViewRoutines)
#include "tst_listviewroutines.moc"
