// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Qt>
#include <QString>

class QTreeWidget;
class QTreeWidgetItem;

namespace VandrelPensioen {

// A report-style list view is a QTreeWidget without root decoration. A row's key, a cell's key and
// a cell's tag live in these item data roles of the cell's column.
inline constexpr int KeyRole = Qt::UserRole + 1;
inline constexpr int TagRole = Qt::UserRole + 2;

namespace ListView {

enum DataType : qint16 { Number = 1, Date = 2, Text = 3 };
enum ValueSource : qint16 { FromText = 1, FromKey = 2, FromTag = 3 };
inline constexpr qint16 Ascending = 0;
inline constexpr qint16 Descending = 1;
inline constexpr qint16 Reverse = -1;

// Row helpers shared by every list of the library.
QTreeWidget *prepareReportView(QTreeWidget *list);   // no root decoration, whole-row selection
QString key(const QTreeWidgetItem *item);
void setKey(QTreeWidgetItem *item, const QString &key);
QTreeWidgetItem *findByKey(QTreeWidget *list, const QString &key);

qint16 lastSortedColumn();
qint16 lastSortOrder();
// The list's own sort order (Ascending or Descending), kept with the list; a new list is ascending.
qint16 sortOrder(const QTreeWidget *list);
void setSortOrder(QTreeWidget *list, qint16 order);

void SortListView(QTreeWidget *list, qint16 column, qint16 dataType, qint16 valueSource, bool bold,
                  qint16 order);
void SortListViewColumn(QTreeWidget *list, qint16 column, qint16 dataType, qint16 order,
                        qint16 valueSource, bool bold);
void BoldSortColumn(QTreeWidget *list, qint16 column);
void ShowSortArrows(QTreeWidget *list);
void SetHeaderSortImage(qint16 columnNumber, qint16 image, bool show, QTreeWidget *list,
                        int alignmentFormat);
int HeaderAlignmentFormat(QTreeWidget *list, int column);   // left 0, right 1, centre 2

} // namespace ListView
} // namespace VandrelPensioen
