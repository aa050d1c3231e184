// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "bindialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace Zarnoveld {

namespace {
constexpr int IdRole = Qt::UserRole + 1;
}

BinDialog::BinDialog(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("dlgPrullenbak"));
    setWindowTitle(QStringLiteral("Verwijderde regeling terugzetten"));
    auto *layout = new QVBoxLayout(this);
    auto *intro = new QLabel(this);
    intro->setWordWrap(true);
    intro->setText(QStringLiteral("Verwijderde pensioenregelingen blijven %1 dagen in de prullenbak van het dossier. "
                                  "Een teruggezette regeling krijgt haar oude plaats in de lijst en al haar gegevens terug.")
                       .arg(KeepDays));
    layout->addWidget(intro);
    m_list = new QTreeWidget(this);
    m_list->setObjectName(QStringLiteral("lstPrullenbak"));
    m_list->setRootIsDecorated(false);
    m_list->setHeaderLabels({QStringLiteral("Deelnemer"), QStringLiteral("Nr."), QStringLiteral("Uitvoerder"),
                             QStringLiteral("Verwijderd op")});
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_list->header()->setSectionResizeMode(2, QHeaderView::Stretch);
    layout->addWidget(m_list, 1);

    auto *buttons = new QDialogButtonBox(this);
    m_restore = buttons->addButton(QStringLiteral("&Terugzetten"), QDialogButtonBox::AcceptRole);
    m_restore->setObjectName(QStringLiteral("cmdTerugzetten"));
    m_empty = buttons->addButton(QStringLiteral("Prullenbak &legen..."), QDialogButtonBox::ActionRole);
    m_empty->setObjectName(QStringLiteral("cmdLegen"));
    QPushButton *close = buttons->addButton(QStringLiteral("&Sluiten"), QDialogButtonBox::RejectRole);
    close->setObjectName(QStringLiteral("cmdSluiten"));
    layout->addWidget(buttons);
    // Accepting would close the dialog before the window has put the scheme back.
    disconnect(buttons, &QDialogButtonBox::accepted, this, nullptr);
    connect(m_restore, &QPushButton::clicked, this, [this] {
        if (QTreeWidgetItem *item = m_list->currentItem())
            Q_EMIT restoreRequested(item->data(0, IdRole).toLongLong());
    });
    connect(m_empty, &QPushButton::clicked, this, &BinDialog::emptyRequested);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_list, &QTreeWidget::itemDoubleClicked, m_restore, &QPushButton::click);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &BinDialog::updateButtons);
    resize(640, 320);
}

void BinDialog::setEntries(const QList<BinEntry> &entries)
{
    m_list->clear();
    QList<BinEntry> newestFirst = entries;
    std::stable_sort(newestFirst.begin(), newestFirst.end(),
                     [](const BinEntry &a, const BinEntry &b) { return a.removedAt > b.removedAt; });
    const QLocale dutch(QLocale::Dutch, QLocale::Netherlands);
    for (const BinEntry &e : newestFirst) {
        auto *item = new QTreeWidgetItem(m_list);
        const QString who = e.anvId == 2 ? QStringLiteral("Partner") : QStringLiteral("Aanvrager");
        item->setText(0, e.naam.isEmpty() ? who : QStringLiteral("%1 (%2)").arg(e.naam, who.toLower()));
        item->setText(1, QString::number(e.position));
        item->setText(2, e.uitvoerder.isEmpty() ? QStringLiteral("(geen uitvoerder)") : e.uitvoerder);
        item->setText(3, dutch.toString(e.removedAt.toLocalTime(), QStringLiteral("dd-MM-yyyy HH:mm")));
        item->setData(0, IdRole, e.id);
    }
    if (m_list->topLevelItemCount() > 0)
        m_list->setCurrentItem(m_list->topLevelItem(0));
    updateButtons();
}

void BinDialog::updateButtons()
{
    m_restore->setEnabled(m_list->currentItem() != nullptr);
    m_empty->setEnabled(m_list->topLevelItemCount() > 0);
}

} // namespace Zarnoveld
