// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "penslist.h"

#include "errortrap.h"
#include "listviewroutines.h"
#include "messagebox.h"
#include "platformroutines.h"
#include "formats.h"
#include "ui_penslist.h"

#include <QAction>
#include <QCoreApplication>
#include <QHeaderView>
#include <QMenu>
#include <QScopeGuard>
#include <QHash>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QTreeWidget>

#include <bit>
#include <memory>

namespace VandrelPensioen {

using namespace VandrelApplication;

namespace {

constexpr int ColumnCount = 10;
// Rows the list shows without a vertical scroll bar; the next one narrows three columns.
constexpr int RowsWithoutScrollBar = 4;

const QString kQuestionTitle = QStringLiteral("Huidige werkgever");
const QString kQuestionText = QStringLiteral(
    "U heeft al een huidige werkgever geselecteerd.\n"
    "Wilt u toch een extra huidige werkgever toevoegen?");

int pixels(double twipsValue)
{
    return twips(qRound(twipsValue));
}

QString schemeType(qint16 type)
{
    switch (type) {
    case SoortRegeling::Eindloon:
        return QStringLiteral("Eindloon");
    case SoortRegeling::Middelloon:
        return QStringLiteral("Middelloon");
    case SoortRegeling::BeschikbarePremie:
        return QStringLiteral("Beschikbare premie");
    default:
        return QString();
    }
}

} // namespace

class PensList::Private
{
public:
    explicit Private(PensList *q) : q(q), trap(QStringLiteral("PensList"), QStringLiteral("Pensioenen")) {}

    void Fill_List(qint16 Anv_Id, qint16 Pen_Id);
    QStringList rowTexts(VandrelApplication::Pensioen &pensioen, qint16 Anv_Id) const;
    const QString &amountText(double value) const;
    void Fill_Row(QTreeWidgetItem *item, VandrelApplication::Pensioen &pensioen, qint16 Anv_Id) const;
    void setColumnWidths(bool narrow);
    void Selection_Changed();
    void Huidige_Werkgever();
    void Vorige_Werkgever();
    void cmdNieuw_Click();
    void cmdVerwijder_Click();
    QTreeWidgetItem *selectedRow() const;

    PensList *q;
    Ui::PensList ui;
    QMenu *Popup_Oud_Huidig = nullptr;
    // A host refusal (its 99-scheme limit, a failed store) cannot travel up through the event
    // loop to the container as it would elsewhere, so the user's add and delete hand it to the
    // host's error report here.
    ErrorTrap trap;
    ApplicationPtr Application;
    DossierPtr Dossier;
    PensioenPtr SelectedPensioen;   // the selected row's scheme record, or none
    // Set while the list itself changes rows, so that only the final selection is reported.
    bool filling = false;
    // Amounts as the list shows them, by the exact value: a list filled again formats the same
    // few amounts over and over, which was the larger part of reading a row. Only the
    // formatting is kept; every value is read from the host each time.
    mutable QHash<quint64, QString> amountTexts;
};

QTreeWidgetItem *PensList::Private::selectedRow() const
{
    const auto rows = ui.LstPensioenen->selectedItems();
    return rows.isEmpty() ? nullptr : rows.first();
}

void PensList::Private::setColumnWidths(bool narrow)
{
    const double W = ui.LstPensioenen->width() * TwipsPerPixelAt96Dpi;
    QTreeWidget *list = ui.LstPensioenen;
    list->setColumnWidth(0, pixels(narrow ? W * 0.1 - 100 : W * 0.1));
    list->setColumnWidth(1, pixels(narrow ? W * 0.2 - 75 : W * 0.2));
    list->setColumnWidth(2, pixels(W * 0.15 - 15));
    list->setColumnWidth(3, pixels(narrow ? W * 0.1 - 75 : W * 0.1));
    for (int column = 4; column < ColumnCount; ++column)
        list->setColumnWidth(column, pixels(W * 0.075 - 15));
}

const QString &PensList::Private::amountText(double value) const
{
    const auto bits = std::bit_cast<quint64>(value);
    if (const auto found = amountTexts.constFind(bits); found != amountTexts.cend())
        return *found;
    // Bounded: a case has at most a few hundred different amounts in its lists.
    if (amountTexts.size() >= 4096)
        amountTexts.clear();
    return *amountTexts.insert(bits, VandrelControl::Format::amount(value));
}

QStringList PensList::Private::rowTexts(VandrelApplication::Pensioen &pensioen, qint16 Anv_Id) const
{
    const auto amount = [this](double value) { return amountText(value); };
    const OuderdomRegelPtr ouderdom =
        pensioen.OuderdomRegelCount() >= 1 ? pensioen.Get_OuderdomRegel(1) : nullptr;
    const QString blank = QStringLiteral(" ");
    return {pensioen.HuidigeWerkgever() ? QStringLiteral("Huidige") : QStringLiteral("Vorige"),
            pensioen.Uitvoerder(),
            schemeType(pensioen.SoortRegeling()),
            Anv_Id == 0 ? QString() : Anv_Id == 1 ? QStringLiteral("Aanvrager") : QStringLiteral("Partner"),
            ouderdom ? amount(ouderdom->BedragPreP()) : blank,
            ouderdom ? amount(ouderdom->BedragOP()) : blank,
            amount(pensioen.BedragTOP()),
            amount(pensioen.BedragPP()),
            blank,
            amount(pensioen.BedragIP())};
}

void PensList::Private::Fill_Row(QTreeWidgetItem *item, VandrelApplication::Pensioen &pensioen,
                                 qint16 Anv_Id) const
{
    const QStringList texts = rowTexts(pensioen, Anv_Id);
    for (int column = 0; column < ColumnCount; ++column) {
        // Without a participant number the cell keeps what it had.
        if (column == 3 && Anv_Id == 0)
            continue;
        if (item->text(column) != texts.at(column))
            item->setText(column, texts.at(column));
    }
}

void PensList::Private::Fill_List(qint16 Anv_Id, qint16 Pen_Id)
{
    QTreeWidget *list = ui.LstPensioenen;
    filling = true;
    static const QStringList headers{QStringLiteral("Werkgever"), QStringLiteral("Pensioenuitvoerder"),
                                     QStringLiteral("Pensioenregeling"), QStringLiteral("Deelnemer"),
                                     QStringLiteral("PP"), QStringLiteral("OP"), QStringLiteral("TOP"),
                                     QStringLiteral("NP"), QStringLiteral("NOP"), QStringLiteral("IP")};
    // Captions set again make the header measure all of them again; they never change.
    QTreeWidgetItem *header = list->headerItem();
    bool headersShown = header->columnCount() == ColumnCount;
    for (int column = 0; headersShown && column < ColumnCount; ++column)
        headersShown = header->text(column) == headers.at(column);
    if (!headersShown)
        list->setHeaderLabels(headers);

    QTreeWidgetItem *wanted = nullptr;
    const int wantedKey = Anv_Id * 100 + Pen_Id;
    // The rows already in the list are reused: a row is given only the texts and key that differ
    // from what it shows, so a list refilled after a refused click or a delete costs reading the
    // schemes, not rebuilding every row and the view's layout of them. New rows are filled before
    // they join the list and join it in one go (a row inside the list announces every cell it
    // gets); rows the host no longer has are taken out. The widths are set once for the final row
    // count. A host that fails half-way leaves the rows read so far shown, as it always has.
    {
        const int existing = list->topLevelItemCount();
        int filled = 0;
        int firstChanged = existing;
        int lastChanged = -1;
        QList<QTreeWidgetItem *> added;
        // Each changed cell would have the view find the cell's place on its own, which costs a
        // walk over all rows; the view hears of the changed rows once, below.
        auto quiet = std::make_unique<QSignalBlocker>(list->model());
        const auto join = qScopeGuard([&] {
            quiet.reset();
            if (lastChanged >= firstChanged)
                Q_EMIT list->model()->dataChanged(list->model()->index(firstChanged, 0),
                                                  list->model()->index(lastChanged, ColumnCount - 1));
            for (int row = list->topLevelItemCount() - 1; row >= filled; --row)
                delete list->takeTopLevelItem(row);
            list->addTopLevelItems(added);
            setColumnWidths(list->topLevelItemCount() > RowsWithoutScrollBar);
        });
        for (qint16 n = 1; Dossier; ++n) {
            const AanvragerPtr aanvrager = Dossier->Get_Aanvrager(n);
            if (!aanvrager)
                break;
            for (qint16 k = 1; PensioenPtr pensioen = aanvrager->Get_Pensioen(k); ++k) {
                const QStringList texts = rowTexts(*pensioen, n);
                const QString key = PensList::rowKey(n, k);
                QTreeWidgetItem *item = nullptr;
                if (filled < existing) {
                    item = list->topLevelItem(filled);
                    bool changed = false;
                    for (int column = 0; column < ColumnCount; ++column) {
                        if (item->text(column) != texts.at(column)) {
                            item->setText(column, texts.at(column));
                            changed = true;
                        }
                    }
                    if (ListView::key(item) != key) {
                        ListView::setKey(item, key);
                        changed = true;
                    }
                    if (changed) {
                        firstChanged = qMin(firstChanged, filled);
                        lastChanged = qMax(lastChanged, filled);
                    }
                } else {
                    // Built with all its texts at once: a cell set one by one announces itself.
                    item = new QTreeWidgetItem(texts);
                    ListView::setKey(item, key);
                    added.append(item);
                }
                ++filled;
                if (n * 100 + k == wantedKey)
                    wanted = item;
            }
        }
    }

    list->clearSelection();
    if (!wanted && list->topLevelItemCount() > 0)
        wanted = list->topLevelItem(0);
    if (wanted) {
        // A row that stays current keeps its place: moving the current row makes the view
        // lay out and scroll again.
        if (list->currentItem() != wanted)
            list->setCurrentItem(wanted);
        wanted->setSelected(true);
        list->scrollToItem(wanted);
    } else {
        list->setCurrentItem(nullptr);
    }
    filling = false;
    Selection_Changed();
}

void PensList::Private::Selection_Changed()
{
    SelectedPensioen.reset();
    qint16 Anv_Id = 0;
    qint16 Pen_Id = 0;
    QTreeWidgetItem *row = selectedRow();
    if (row && PensList::decodeKey(ListView::key(row), Anv_Id, Pen_Id) && Dossier) {
        if (AanvragerPtr aanvrager = Dossier->Get_Aanvrager(Anv_Id))
            SelectedPensioen = aanvrager->Get_Pensioen(Pen_Id);
    }
    ui.cmdVerwijder->setEnabled(row != nullptr);
    Q_EMIT q->PensioenChanged(Anv_Id, Pen_Id);
}

void PensList::Private::cmdNieuw_Click()
{
    // popup(), not exec(): the menu must not hold the caller (or a test) in a nested loop.
    Popup_Oud_Huidig->popup(ui.cmdNieuw->mapToGlobal(QPoint(0, ui.cmdNieuw->height())));
}

void PensList::Private::Huidige_Werkgever()
{
    Popup_Oud_Huidig->hide();
    if (!Dossier)
        return;
    bool hasCurrent = false;
    for (qint16 n = 1; AanvragerPtr aanvrager = Dossier->Get_Aanvrager(n); ++n) {
        for (qint16 k = 1; PensioenPtr pensioen = aanvrager->Get_Pensioen(k); ++k) {
            if (pensioen->HuidigeWerkgever()) {
                hasCurrent = true;
                break;
            }
        }
        if (hasCurrent)
            break;
    }
    // The question's title names what is being added, as the menu entry the user chose does.
    if (hasCurrent && !VandrelControl::MessageBox::yesNo(q, kQuestionText, kQuestionTitle))
        return;

    AanvragerPtr aanvrager = Dossier->Get_Aanvrager(1);
    if (!aanvrager)
        return;
    const qint16 newPen = aanvrager->AddPension();
    if (PensioenPtr pensioen = aanvrager->Get_Pensioen(newPen))
        pensioen->setHuidigeWerkgever(true);
    Fill_List(1, newPen);
}

void PensList::Private::Vorige_Werkgever()
{
    Popup_Oud_Huidig->hide();
    if (!Dossier)
        return;
    AanvragerPtr aanvrager = Dossier->Get_Aanvrager(1);
    if (!aanvrager)
        return;
    const qint16 newPen = aanvrager->AddPension();
    if (PensioenPtr pensioen = aanvrager->Get_Pensioen(newPen)) {
        pensioen->setHuidigeWerkgever(false);
        // A previous employer is no current employment: the scheme starts linked to none, so
        // the provider control offers the choice instead of a host default.
        pensioen->setDienstverbandKey(QString());
    }
    Fill_List(1, newPen);
}

void PensList::Private::cmdVerwijder_Click()
{
    QTreeWidgetItem *row = selectedRow();
    if (!row || !Dossier)
        return;
    qint16 Anv_Id = 0;
    qint16 Pen_Id = 0;
    if (!PensList::decodeKey(ListView::key(row), Anv_Id, Pen_Id))
        return;
    if (AanvragerPtr aanvrager = Dossier->Get_Aanvrager(Anv_Id))
        aanvrager->RemovePension(Pen_Id);
    Q_EMIT q->PensioenDeleted();
    Fill_List(0, 0);
}

PensList::PensList(QWidget *parent)
    : SchemePanel(parent)
    , d(std::make_unique<Private>(this))
{
    d->ui.setupUi(this);
    ListView::prepareReportView(d->ui.LstPensioenen);
    d->ui.LstPensioenen->setSelectionMode(QAbstractItemView::SingleSelection);
    // The widths are the list's own rule; a stretched last column would break it.
    d->ui.LstPensioenen->header()->setStretchLastSection(false);
    d->ui.cmdVerwijder->setEnabled(false);

    d->Popup_Oud_Huidig = new QMenu(this);
    d->Popup_Oud_Huidig->setObjectName(QStringLiteral("Popup_Oud_Huidig"));
    QAction *huidige = d->Popup_Oud_Huidig->addAction(QStringLiteral("Huidige werkgever"));
    huidige->setObjectName(QStringLiteral("Huidige_Werkgever"));
    QAction *vorige = d->Popup_Oud_Huidig->addAction(QStringLiteral("Vorige werkgever"));
    vorige->setObjectName(QStringLiteral("Vorige_Werkgever"));

    connect(huidige, &QAction::triggered, this, [this] { d->trap.run("Huidige_Werkgever", [this] { d->Huidige_Werkgever(); }); });
    connect(vorige, &QAction::triggered, this, [this] { d->trap.run("Vorige_Werkgever", [this] { d->Vorige_Werkgever(); }); });
    connect(d->ui.cmdNieuw, &QPushButton::clicked, this, [this] { d->cmdNieuw_Click(); });
    connect(d->ui.cmdVerwijder, &QPushButton::clicked, this, [this] { d->trap.run("cmdVerwijder_Click", [this] { d->cmdVerwijder_Click(); }); });
    // Mouse and keyboard both move the selection; the container hears each change once.
    connect(d->ui.LstPensioenen, &QTreeWidget::itemSelectionChanged, this, [this] {
        if (!d->filling)
            d->Selection_Changed();
    });

    ScaleToScreen(this);

    // However little height a container leaves, the list keeps its header and room for the rows
    // it shows without a scroll bar: the columns are only narrowed for the scroll bar from the
    // row after those.
    {
        QTreeWidget *list = d->ui.LstPensioenen;
        const QScopedValueRollback<bool> quiet(d->filling, true);
        auto *probe = new QTreeWidgetItem(list, QStringList(QStringLiteral("Huidige")));
        const int rowHeight = list->sizeHintForRow(0);
        delete probe;
        list->setMinimumHeight(list->header()->sizeHint().height()
                               + RowsWithoutScrollBar * rowHeight + 2 * list->frameWidth());
    }
}

PensList::~PensList() = default;

QSize PensList::sizeHint() const
{
    return {QWidget::sizeHint().width(), minimumSizeHint().height()};
}

void PensList::resizeEvent(QResizeEvent *event)
{
    // The layout has already given the list the width beside the buttons; the columns are
    // fractions of that width, so a container that widens the control widens every column.
    QWidget::resizeEvent(event);
    d->setColumnWidths(d->ui.LstPensioenen->topLevelItemCount() > RowsWithoutScrollBar);
}

void PensList::SetApplication(const ApplicationPtr &Application, qint16 Anv_Id, qint16 Pen_Id)
{
    d->Application = Application;
    d->trap.setApplication(Application);
    d->Dossier = Application ? Application->Get_Dossier() : nullptr;
    d->Fill_List(Anv_Id, Pen_Id);
}

void PensList::Validation(bool &Cancel, qint32 ControleNr)
{
    // Nothing to check here; the list only lets a field that is being left commit its value.
    Q_UNUSED(Cancel);
    if (ControleNr == 0)
        QCoreApplication::processEvents();
}

void PensList::InfoChanged()
{
    QTreeWidgetItem *row = d->selectedRow();
    if (!row || !d->SelectedPensioen || !d->Dossier)
        return;
    qint16 Anv_Id = 0;
    qint16 Pen_Id = 0;
    PensList::decodeKey(ListView::key(row), Anv_Id, Pen_Id);
    // Read by the row's numbers again: a scheme moved to the other participant is gone from
    // under the list while the panels reload (and report changes) before the list is rebuilt.
    AanvragerPtr aanvrager = d->Dossier->Get_Aanvrager(Anv_Id);
    PensioenPtr pensioen = aanvrager ? aanvrager->Get_Pensioen(Pen_Id) : nullptr;
    if (pensioen)
        d->Fill_Row(row, *pensioen, Anv_Id);
}

QString PensList::rowKey(qint16 Anv_Id, qint16 Pen_Id)
{
    return QLatin1Char('@') + QString::number(Anv_Id * 100 + Pen_Id);
}

bool PensList::decodeKey(const QString &key, qint16 &Anv_Id, qint16 &Pen_Id)
{
    Anv_Id = 0;
    Pen_Id = 0;
    if (!key.startsWith(QLatin1Char('@')))
        return false;
    bool ok = false;
    const int number = key.mid(1).toInt(&ok);
    if (!ok)
        return false;
    Anv_Id = static_cast<qint16>(number / 100);
    Pen_Id = static_cast<qint16>(number % 100);
    return true;
}

} // namespace VandrelPensioen
