// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "frmspecificatiescenario.h"

#include "ui_frmspecificatiescenario.h"

#include "errortrap.h"
#include "formats.h"
#include "listviewroutines.h"
#include "messagebox.h"
#include "platformroutines.h"
#include "textbox.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHeaderView>
#include <QTreeWidget>

#include <limits>

namespace VandrelPensioen {

using VandrelApplication::HostError;
using VandrelControl::FieldKind;
using VandrelControl::MessageBox;
namespace Format = VandrelControl::Format;
namespace Parse = VandrelControl::Parse;

namespace {

const QString kTitleOnjuist = QStringLiteral("Onjuiste invoer");

// Whole calendar months from one date to another; the day of the month does not count.
qint32 monthsBetween(const QDate &from, const QDate &to)
{
    return (to.year() - from.year()) * 12 + (to.month() - from.month());
}

} // namespace

class frmSpecificatieScenario::Private : public QObject
{
public:
    explicit Private(frmSpecificatieScenario *q)
        : q(q)
        , trap(QStringLiteral("frmSpecificatieScenario"), QStringLiteral("Scenario"))
    {
    }

    void Fill_ListView();
    void Fill_ListviewItem(qint32 Maand, double Bedrag, bool Selecteer);
    static QString Make_ItemKey(qint32 Maand);
    static qint16 Get_MndIngang_From_ItemKey(const QString &key);
    bool Save_Scenario();
    void cmdOK_Click();
    void cmdToevoegen_Click();
    void cmdVerwijderen_Click();
    void lvwScenario_ItemClick(QTreeWidgetItem *item);
    void txtBedrag_Validation(bool &Cancel);
    void txtDatum_Validation(bool &Cancel);

    void selectRow(QTreeWidgetItem *item);
    void showError(VandrelApplication::ErrorRecord &record);

    frmSpecificatieScenario *q;
    Ui::frmSpecificatieScenario ui;
    ErrorTrap trap;
    VandrelApplication::ApplicationPtr application;
    VandrelApplication::ScenarioPtr scenario;
    QDate dtIngang;
    QDate dtMaxEind;
    bool changed = false;
    // Set while code moves the selection, so that only the user's own moves count as a row click.
    bool selecting = false;
};

frmSpecificatieScenario::frmSpecificatieScenario(QWidget *parent)
    : QDialog(parent)
    , d(std::make_unique<Private>(this))
{
    d->ui.setupUi(this);
    ScaleToScreen(this);

    d->ui.txtDatum->setKind(FieldKind::Date);
    d->ui.txtBedrag->setKind(FieldKind::Amount);
    ListView::prepareReportView(d->ui.lvwScenario);

    d->trap.setReporter([this](VandrelApplication::ErrorRecord &record) { d->showError(record); });

    connect(d->ui.cmdOK, &QPushButton::clicked, this, [this] { d->cmdOK_Click(); });
    connect(d->ui.cmdToevoegen, &QPushButton::clicked, this, [this] { d->cmdToevoegen_Click(); });
    connect(d->ui.cmdVerwijderen, &QPushButton::clicked, this, [this] { d->cmdVerwijderen_Click(); });
    connect(d->ui.txtDatum, &VandrelControl::TextBox::Validate, this,
            [this](bool &Cancel) { d->txtDatum_Validation(Cancel); }, Qt::DirectConnection);
    connect(d->ui.txtBedrag, &VandrelControl::TextBox::Validate, this,
            [this](bool &Cancel) { d->txtBedrag_Validation(Cancel); }, Qt::DirectConnection);
    connect(d->ui.lvwScenario, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem *current) {
                if (!d->selecting && current)
                    d->lvwScenario_ItemClick(current);
            });
}

frmSpecificatieScenario::~frmSpecificatieScenario() = default;

void frmSpecificatieScenario::Set_Application(const VandrelApplication::ApplicationPtr &Application,
                                              const VandrelApplication::ScenarioPtr &Scenario,
                                              const QDate &Dt_Ingang, const QDate &Dt_MaxEind)
{
    d->trap.run("Set_Application", [&] {
        d->application = Application;
        d->trap.setApplication(Application);
        d->scenario = Scenario;
        d->dtIngang = Dt_Ingang;
        d->dtMaxEind = Dt_MaxEind;
        d->changed = false;
        if (Application)
            setWindowIcon(Application->Icon());
        d->Fill_ListView();
    });
}

bool frmSpecificatieScenario::In_Changed() const
{
    return d->changed;
}

void frmSpecificatieScenario::Validation(bool &Cancel, qint16 ControleNr)
{
    d->trap.run("Validation", [&] {
        // Only the date has a check; rows are checked one field at a time as they are edited.
        if (Cancel || ControleNr != 1)
            return;
        const QDate D = d->ui.txtDatum->date();
        QString message;
        if (!D.isValid() || D <= d->dtIngang) {
            message = QStringLiteral("Datum moet na de ingangsdatum van het scenario (%1) liggen.")
                          .arg(Format::date(d->dtIngang));
        } else if (D >= d->dtMaxEind) {
            message = QStringLiteral("Datum moet voor de einddatum van het scenario (%1) liggen.")
                          .arg(Format::date(d->dtMaxEind));
        } else {
            const QString key = Private::Make_ItemKey(monthsBetween(d->dtIngang, D) + 1);
            QTreeWidget *list = d->ui.lvwScenario;
            QTreeWidgetItem *edited = list->currentItem();
            // The row being edited is skipped: its date may move within its own month, and
            // leaving it unchanged must not count as a clash with itself.
            for (int i = 0; i < list->topLevelItemCount(); ++i) {
                QTreeWidgetItem *row = list->topLevelItem(i);
                if (row != edited && ListView::key(row) == key) {
                    message = QStringLiteral("Deze datum komt reeds voor in de tabel.");
                    break;
                }
            }
        }
        if (!message.isEmpty()) {
            MessageBox::ok(this, message, kTitleOnjuist);
            Cancel = true;
        }
    });
}

void frmSpecificatieScenario::closeEvent(QCloseEvent *event)
{
    // Form_QueryUnload: the close box only lets the window go. It saves nothing, asks nothing and
    // does not check the field that had the focus; the changed flag keeps telling whether the
    // user edited anything, so a caller can still read it.
    d->trap.run("Form_QueryUnload", [] {});
    QDialog::closeEvent(event);
}

void frmSpecificatieScenario::Private::showError(VandrelApplication::ErrorRecord &record)
{
    // The trap has already put the normal mouse pointer back.
    MessageBox::ok(q,
                   QStringLiteral("%1\n\nFoutnummer: %2\nOmschrijving: %3")
                       .arg(record.Message, record.Number, record.Description),
                   record.Product, MessageBox::Icon::Critical);
}

QString frmSpecificatieScenario::Private::Make_ItemKey(qint32 Maand)
{
    // "0000" pads to four digits and never cuts: month 10000 becomes KEY_10000.
    const QString digits = QString::number(qAbs(qint64(Maand))).rightJustified(4, QLatin1Char('0'));
    return QStringLiteral("KEY_") + (Maand < 0 ? QStringLiteral("-") : QString()) + digits;
}

qint16 frmSpecificatieScenario::Private::Get_MndIngang_From_ItemKey(const QString &key)
{
    // The number that starts at the fifth character; reading stops at the first non-digit.
    const QString rest = key.mid(4).trimmed();
    int pos = 0;
    bool negative = false;
    if (pos < rest.size() && (rest.at(pos) == QLatin1Char('-') || rest.at(pos) == QLatin1Char('+'))) {
        negative = rest.at(pos) == QLatin1Char('-');
        ++pos;
    }
    qint64 value = 0;
    while (pos < rest.size() && rest.at(pos).isDigit()) {
        value = value * 10 + rest.at(pos).digitValue();
        if (value > std::numeric_limits<qint16>::max() + 1)
            break;
        ++pos;
    }
    if (negative)
        value = -value;
    if (value > std::numeric_limits<qint16>::max() || value < std::numeric_limits<qint16>::min())
        throw HostError(6, QStringLiteral("Overflow"), QStringLiteral("frmSpecificatieScenario"));
    return qint16(value);
}

void frmSpecificatieScenario::Private::Fill_ListView()
{
    trap.run("Fill_ListView", [&] {
        QTreeWidget *list = ui.lvwScenario;
        list->clear();
        list->setColumnCount(2);
        QTreeWidgetItem *header = list->headerItem();
        header->setText(0, QStringLiteral("Datum"));
        header->setData(0, KeyRole, QStringLiteral("DATUM"));
        header->setText(1, QStringLiteral("Bedrag"));
        header->setData(1, KeyRole, QStringLiteral("BEDRAG"));
        header->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        // Each column keeps half of the list's width, also when the dialog is resized.
        list->header()->setStretchLastSection(false);
        list->header()->setSectionResizeMode(QHeaderView::Stretch);

        if (!scenario)
            return;
        Fill_ListviewItem(1, scenario->Bedrag(), false);
        const qint16 count = scenario->RegelCount();
        for (qint16 i = 1; i <= count; ++i) {
            const auto regel = scenario->Regel(i);
            if (regel)
                Fill_ListviewItem(regel->Maand(), regel->Bedrag(), false);
        }
        selectRow(list->topLevelItem(0));
        if (list->topLevelItem(0))
            lvwScenario_ItemClick(list->topLevelItem(0));
    });
}

void frmSpecificatieScenario::Private::Fill_ListviewItem(qint32 Maand, double Bedrag, bool Selecteer)
{
    trap.run("Fill_ListviewItem", [&] {
        auto *item = new QTreeWidgetItem(ui.lvwScenario);
        ListView::setKey(item, Make_ItemKey(Maand));
        item->setText(0, Maand > 0 ? Format::date(dtIngang.addMonths(Maand - 1)) : QString());
        item->setText(1, Format::amount(Bedrag));
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        if (Selecteer) {
            selectRow(item);
            lvwScenario_ItemClick(item);
        }
    });
}

void frmSpecificatieScenario::Private::selectRow(QTreeWidgetItem *item)
{
    if (!item)
        return;
    const bool wasSelecting = selecting;
    selecting = true;
    ui.lvwScenario->setCurrentItem(item);
    ui.lvwScenario->scrollToItem(item);
    selecting = wasSelecting;
}

void frmSpecificatieScenario::Private::lvwScenario_ItemClick(QTreeWidgetItem *item)
{
    trap.run("lvwScenario_ItemClick", [&] {
        if (!item)
            return;
        const qint16 maand = Get_MndIngang_From_ItemKey(ListView::key(item));
        // The starting month is fixed: it can be neither deleted nor moved, only its amount changes.
        const bool movable = maand != 1;
        ui.cmdVerwijderen->setEnabled(movable);
        ui.txtDatum->setDate(maand == 0 ? QDate() : Parse::date(item->text(0)).value_or(QDate()));
        ui.txtDatum->setEnabled(movable);
        ui.txtBedrag->setValue(Parse::amount(item->text(1)).value_or(0.0));
        if (movable)
            ui.txtDatum->setFocus();
        else
            ui.txtBedrag->setFocus();
    });
}

void frmSpecificatieScenario::Private::cmdToevoegen_Click()
{
    trap.run("cmdToevoegen_Click", [&] { Fill_ListviewItem(0, 0.0, true); });
}

void frmSpecificatieScenario::Private::cmdVerwijderen_Click()
{
    trap.run("cmdVerwijderen_Click", [&] {
        QTreeWidget *list = ui.lvwScenario;
        QTreeWidgetItem *item = list->currentItem();
        if (!item || Get_MndIngang_From_ItemKey(ListView::key(item)) == 1)
            return;
        changed = true;
        const int index = list->indexOfTopLevelItem(item);
        selecting = true;
        delete list->takeTopLevelItem(index);
        selecting = false;
        // The row that moved up into the removed row's place, or the new last row when the last
        // one went: the user stays where he was in the table. The first row never goes, so one is
        // always left.
        QTreeWidgetItem *next = list->topLevelItem(qMin(index, list->topLevelItemCount() - 1));
        selectRow(next);
        lvwScenario_ItemClick(next);
    });
}

void frmSpecificatieScenario::Private::txtDatum_Validation(bool &Cancel)
{
    trap.run("txtDatum_Validation", [&] {
        QTreeWidget *list = ui.lvwScenario;
        QTreeWidgetItem *item = list->currentItem();
        if (!item)
            return;
        q->Validation(Cancel, 1);
        if (Cancel)
            return;
        const QDate date = ui.txtDatum->date();
        const QString text = Format::date(date);
        const QString key = Make_ItemKey(monthsBetween(dtIngang, date) + 1);
        // Leaving the field without a new date is no edit.
        if (text == item->text(0) && key == ListView::key(item))
            return;
        item->setText(0, text);
        ListView::setKey(item, key);
        selecting = true;
        ListView::SortListView(list, 0, ListView::Date, ListView::FromText, false,
                               ListView::Ascending);
        selecting = false;
        // The sort selects the first row; the row being edited stays the one the fields show.
        selectRow(item);
        changed = true;
    });
}

void frmSpecificatieScenario::Private::txtBedrag_Validation(bool &Cancel)
{
    trap.run("txtBedrag_Validation", [&] {
        QTreeWidgetItem *item = ui.lvwScenario->currentItem();
        if (!item)
            return;
        const QString text = Format::amount(ui.txtBedrag->value());
        if (text == item->text(1))
            return;
        item->setText(1, text);
        changed = true;
    });
}

bool frmSpecificatieScenario::Private::Save_Scenario()
{
    return trap.run("Save_Scenario", [&] {
        if (!scenario)
            return;
        scenario->Clear_Regels();
        QTreeWidget *list = ui.lvwScenario;
        for (int i = 0; i < list->topLevelItemCount(); ++i) {
            QTreeWidgetItem *item = list->topLevelItem(i);
            const qint16 maand = Get_MndIngang_From_ItemKey(ListView::key(item));
            // Saved as shown: the "#,##0" text is what the user saw and accepted.
            const double bedrag = Parse::amount(item->text(1)).value_or(0.0);
            if (maand == 1) {
                scenario->setBedrag(bedrag);
            } else if (maand > 1) {
                // A row without a date (month 0) has no place in time and is not saved.
                auto regel = scenario->Add_Regel();
                regel->setMaand(maand);
                regel->setBedrag(bedrag);
            }
        }
    });
}

void frmSpecificatieScenario::Private::cmdOK_Click()
{
    bool saved = true;
    trap.run("cmdOK_Click", [&] {
        if (changed)
            saved = Save_Scenario();
    });
    // After a failed save the dialog stays open: the user has seen the error and keeps the table.
    if (saved)
        q->accept();
}

} // namespace VandrelPensioen
