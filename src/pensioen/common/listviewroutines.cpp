// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "listviewroutines.h"

#include "formats.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QHeaderView>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QTreeWidgetItem>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace VandrelPensioen::ListView {

namespace {

// Shared by every list of the library, one copy per user-interface thread.
thread_local qint16 s_lastSortedColumn = 0;
thread_local qint16 s_lastSortOrder = Ascending;

constexpr const char *SortOrderProperty = "vandrelSortOrder";

QVariant sourceValue(const QTreeWidgetItem *item, int column, qint16 valueSource)
{
    switch (valueSource) {
    case FromKey:
        return item->data(column, KeyRole);
    case FromTag:
        return item->data(column, TagRole);
    default:
        return item->text(column);
    }
}

// "000000000000000.0000000000": fifteen integral and ten fractional digits, zero-filled, the sign
// in front. Text order equals numeric order only for values >= 0; negatives stay misordered (-3
// before -5) because every list of the suite has always sorted them this way.
QString numberKey(double value)
{
    QString digits = QString::number(std::abs(value), 'f', 10);
    digits = digits.rightJustified(26, QLatin1Char('0'));
    return value < 0 ? QLatin1Char('-') + digits : digits;
}

// "yyyyMMdd HHmmss". Written digit by digit: QDateTime's own formatter goes through the locale for
// every field, and a date first had to become a QDateTime at the start of its day (a time zone
// look-up); per row those two made a date column sort two to three times slower than the rows
// themselves move. A date sorts as the start of its day, 00:00:00.
QString dateKey(const QDate &date, const QTime &time = QTime(0, 0))
{
    const int year = date.year();
    if (year < 0 || year > 9999)   // beyond four digits: rare enough for the general formatter
        return QDateTime(date, time).toString(QStringLiteral("yyyyMMdd HHmmss"));
    QString key(15, Qt::Uninitialized);
    QChar *out = key.data();
    const auto put = [&out](int value, int digits) {
        for (int i = digits - 1; i >= 0; --i) {
            out[i] = QChar(u'0' + value % 10);
            value /= 10;
        }
        out += digits;
    };
    put(year, 4);
    put(date.month(), 2);
    put(date.day(), 2);
    *out++ = QLatin1Char(' ');
    put(time.hour(), 2);
    put(time.minute(), 2);
    put(time.second(), 2);
    return key;
}

// A value that is no number (or no date) keeps its own text as key, as the formatting function
// of the suite leaves such text unchanged.
QString sortKey(const QVariant &value, qint16 dataType)
{
    if (dataType == Number) {
        switch (value.typeId()) {
        case QMetaType::QString: {
            const QString text = value.toString();
            if (const auto number = VandrelControl::Parse::amount(text); number && !text.isEmpty())
                return numberKey(*number);
            return text;
        }
        default:
            if (!value.isValid())
                return QString();
            bool ok = false;
            const double number = value.toDouble(&ok);
            return ok ? numberKey(number) : value.toString();
        }
    }
    if (dataType == Date) {
        switch (value.typeId()) {
        case QMetaType::QDate:
            return value.toDate().isValid() ? dateKey(value.toDate()) : QString();
        case QMetaType::QDateTime: {
            const QDateTime moment = value.toDateTime();
            return moment.isValid() ? dateKey(moment.date(), moment.time()) : QString();
        }
        default: {
            const QString text = value.toString().trimmed();
            if (text.isEmpty())
                return QString();
            if (const auto date = VandrelControl::Parse::date(text); date && date->isValid())
                return dateKey(*date);
            const QDateTime moment =
                QDateTime::fromString(text, QStringLiteral("dd-MM-yyyy HH:mm:ss"));
            return moment.isValid() ? dateKey(moment.date(), moment.time()) : value.toString();
        }
        }
    }
    return value.toString();
}

Qt::Alignment alignmentFor(int format)
{
    switch (format) {
    case 1:
        return Qt::AlignRight | Qt::AlignVCenter;
    case 2:
        return Qt::AlignHCenter | Qt::AlignVCenter;
    default:
        return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

} // namespace

QTreeWidget *prepareReportView(QTreeWidget *list)
{
    if (!list)
        return list;
    list->setRootIsDecorated(false);
    list->setItemsExpandable(false);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    list->setAllColumnsShowFocus(true);
    list->setUniformRowHeights(true);
    // Sorting is ours (by data type); Qt's header-click sorting would sort by display text.
    list->setSortingEnabled(false);
    return list;
}

QString key(const QTreeWidgetItem *item)
{
    return item ? item->data(0, KeyRole).toString() : QString();
}

void setKey(QTreeWidgetItem *item, const QString &key)
{
    if (item)
        item->setData(0, KeyRole, key);
}

QTreeWidgetItem *findByKey(QTreeWidget *list, const QString &key)
{
    if (!list)
        return nullptr;
    for (int row = 0; row < list->topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = list->topLevelItem(row);
        if (item->data(0, KeyRole).toString() == key)
            return item;
    }
    return nullptr;
}

qint16 lastSortedColumn()
{
    return s_lastSortedColumn;
}

qint16 lastSortOrder()
{
    return s_lastSortOrder;
}

qint16 sortOrder(const QTreeWidget *list)
{
    if (!list)
        return Ascending;
    const QVariant order = list->property(SortOrderProperty);
    return order.isValid() ? qint16(order.toInt()) : Ascending;
}

void setSortOrder(QTreeWidget *list, qint16 order)
{
    if (list)
        list->setProperty(SortOrderProperty, int(order));
}

void SortListView(QTreeWidget *list, qint16 column, qint16 dataType, qint16 valueSource, bool bold,
                  qint16 order)
{
    if (!list)
        return;

    // Qt's own header sorting would put the rows back in display-text order at once.
    if (list->isSortingEnabled())
        list->setSortingEnabled(false);

    qint16 newOrder = Ascending;
    if (column == s_lastSortedColumn) {
        if (order == Reverse)
            newOrder = sortOrder(list) == Ascending ? Descending : Ascending;
        else
            newOrder = order;
    } else {
        s_lastSortedColumn = column;
    }
    setSortOrder(list, newOrder);
    s_lastSortOrder = newOrder;

    // The keys are held beside the rows rather than written into a temporary column: a column
    // written, sorted on and removed again would leave its slot in every row. The ordering is
    // the one QTreeWidget::sortItems applies to a key column - a stable sort on plain string
    // comparison, descending by swapped comparison - so equal keys keep their order both ways.
    const int rows = list->topLevelItemCount();
    std::vector<std::pair<QString, QTreeWidgetItem *>> keyed;
    keyed.reserve(size_t(rows));
    for (int row = 0; row < rows; ++row) {
        QTreeWidgetItem *item = list->topLevelItem(row);
        keyed.emplace_back(sortKey(sourceValue(item, column, valueSource), dataType), item);
    }
    if (newOrder == Ascending)
        std::stable_sort(keyed.begin(), keyed.end(),
                         [](const auto &a, const auto &b) { return a.first < b.first; });
    else
        std::stable_sort(keyed.begin(), keyed.end(),
                         [](const auto &a, const auto &b) { return b.first < a.first; });

    {
        // The rows move as a whole; the selection they lose on the way is set once below.
        const QSignalBlocker blocker(list);
        QList<QTreeWidgetItem *> ordered;
        ordered.reserve(rows);
        for (const auto &entry : keyed)
            ordered.append(entry.second);
        const QList<QTreeWidgetItem *> taken = list->invisibleRootItem()->takeChildren();
        Q_UNUSED(taken);
        list->addTopLevelItems(ordered);
    }

    if (bold)
        BoldSortColumn(list, column);
    ShowSortArrows(list);

    // The further condition: a list in which the user can select several rows gets no
    // selection, since selecting "the first row" would throw away what was selected there.
    const bool multiSelect = list->selectionMode() == QAbstractItemView::MultiSelection
        || list->selectionMode() == QAbstractItemView::ExtendedSelection;
    if (list->topLevelItemCount() == 0 || multiSelect) {
        list->clearSelection();
        list->setCurrentItem(nullptr);
    } else {
        list->setCurrentItem(list->topLevelItem(0), 0, QItemSelectionModel::ClearAndSelect
                                                           | QItemSelectionModel::Rows);
    }
    QCoreApplication::processEvents();
}

void SortListViewColumn(QTreeWidget *list, qint16 column, qint16 dataType, qint16 order,
                        qint16 valueSource, bool bold)
{
    if (!list)
        return;
    if (valueSource == FromText && dataType == Text && column == 0 && sortOrder(list) == order) {
        s_lastSortedColumn = 0;
        if (bold)
            BoldSortColumn(list, column);
        ShowSortArrows(list);
        return;
    }
    s_lastSortedColumn = column;
    setSortOrder(list, order == Ascending ? Descending : Ascending);
    SortListView(list, column, dataType, valueSource, bold, order);
}

void BoldSortColumn(QTreeWidget *list, qint16 column)
{
    if (!list)
        return;
    const int columns = list->columnCount();
    for (int row = 0; row < list->topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = list->topLevelItem(row);
        for (int c = 0; c < columns; ++c) {
            QFont font = item->font(c);
            font.setBold(c == column);
            item->setFont(c, font);
        }
    }
}

void ShowSortArrows(QTreeWidget *list)
{
    if (!list)
        return;
    const qint16 image = sortOrder(list);
    for (int c = 0; c < list->columnCount(); ++c)
        SetHeaderSortImage(qint16(c + 1), image, c == s_lastSortedColumn, list,
                           HeaderAlignmentFormat(list, c));
}

void SetHeaderSortImage(qint16 columnNumber, qint16 image, bool show, QTreeWidget *list,
                        int alignmentFormat)
{
    if (!list || columnNumber < 1 || columnNumber > list->columnCount())
        return;
    const int section = columnNumber - 1;
    if (QTreeWidgetItem *header = list->headerItem())
        header->setTextAlignment(section, alignmentFor(alignmentFormat));

    // The header's sort indicator is the image: drawn at the right of the caption, the up/down
    // arrow chosen by the image number (0 ascending, 1 descending). Only one section can show it,
    // which is all the lists ever ask for. Its change signal is held back so that a list with
    // Qt's own sorting switched on does not re-sort by display text.
    QHeaderView *header = list->header();
    const QSignalBlocker blocker(header);
    if (show) {
        header->setSortIndicatorShown(true);
        header->setSortIndicator(section, image == Ascending ? Qt::AscendingOrder
                                                             : Qt::DescendingOrder);
    } else if (header->sortIndicatorSection() == section) {
        header->setSortIndicator(-1, header->sortIndicatorOrder());
    }
}

int HeaderAlignmentFormat(QTreeWidget *list, int column)
{
    const QTreeWidgetItem *header = list ? list->headerItem() : nullptr;
    if (!header || column < 0 || column >= list->columnCount())
        return 0;
    const auto alignment = Qt::Alignment(header->textAlignment(column)) & Qt::AlignHorizontal_Mask;
    if (alignment & Qt::AlignRight)
        return 1;
    if (alignment & Qt::AlignHCenter)
        return 2;
    return 0;
}

} // namespace VandrelPensioen::ListView
