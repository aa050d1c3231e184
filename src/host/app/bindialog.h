// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostapplication.h"

#include <QDialog>

class QPushButton;
class QTreeWidget;

namespace Zarnoveld {

// The case's bin: the schemes the program removed, newest first; the adviser picks one to put
// back, or empties the bin. The window does the work (it must first be allowed to leave the
// shown scheme); the dialog only says what was asked.
class BinDialog : public QDialog
{
    Q_OBJECT

public:
    // A removed scheme stays this long: a month covers a case that waits for the client's
    // papers, yet a bin that is never emptied by hand does not keep old data for ever.
    static constexpr int KeepDays = 30;

    explicit BinDialog(QWidget *parent = nullptr);
    void setEntries(const QList<BinEntry> &entries);

Q_SIGNALS:
    void restoreRequested(qint64 id);
    void emptyRequested();

private:
    void updateButtons();

    QTreeWidget *m_list = nullptr;
    QPushButton *m_restore = nullptr;
    QPushButton *m_empty = nullptr;
};

} // namespace Zarnoveld
