// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "frmaouitkering.h"
#include "ui_frmaouitkering.h"

#include "errortrap.h"
#include "formats.h"
#include "listviewroutines.h"
#include "messagebox.h"
#include "platformroutines.h"
#include "textbox.h"

#include <QApplication>
#include <QEvent>
#include <QHeaderView>
#include <QTreeWidgetItem>

#include <cmath>

using namespace VandrelApplication;
using VandrelControl::MessageBox;
using VandrelControl::TextBox;

namespace VandrelPensioen {

namespace {

const QString kTitle = QStringLiteral("Specificatie AO uitkering");
const QString kModule = QStringLiteral("frmAoUitkering");
const QString kCategory = QStringLiteral("Onafhankelijk");

const QString kCdRvcAfwijking = QStringLiteral("Cd_RvcAfwijking");
const QString kPcRvcAfwijking = QStringLiteral("Pc_RvcAfwijking");
const QString kPcRvcUitkering = QStringLiteral("Pc_RvcUitkering");

enum Column { ColKey = 0, ColVanaf = 1, ColTot = 2, ColUitkering = 3, ColumnCount = 4 };

// The host keeps these percentages as singles; widening to seven significant digits makes 12.3f
// read back as 12,3 in texts instead of its binary neighbour.
double widen(float value)
{
    const double d = value;
    if (d == 0 || !std::isfinite(d))
        return d;
    const int exponent = int(std::floor(std::log10(std::fabs(d))));
    const double scale = std::pow(10.0, 6 - exponent);
    return std::round(d * scale) / scale;
}

QString zeroFilled(float value)
{
    QString digits = VandrelControl::Format::whole(std::fabs(widen(value)));
    if (digits.size() < 4)
        digits.prepend(QString(4 - digits.size(), QLatin1Char('0')));
    // The sign goes before the zeros, as a "0000" format writes it; that is why a negative
    // from-percentage sorts oddly, and it is kept so.
    const bool negative = value < 0 && digits.count(QLatin1Char('0')) != digits.size();
    return negative ? QLatin1Char('-') + digits : digits;
}

float readPercentage(const TextBox *field)
{
    return float(field->value());
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Pure schedule rules

namespace AoStaffel {

QList<Row> defaultSchedule(int mode, OwnerKind owner, bool benefitEndsAtThreshold, float geen,
                           float volledig)
{
    const float last = benefitEndsAtThreshold ? 0.f : 100.f;
    QList<Row> rows;
    if (mode == ModeWerkelijkAo) {
        rows = {{0, geen, 0}, {geen, volledig, -1}, {volledig, 100, last}};
        return rows;
    }
    if (mode != ModeStaffel)
        return rows;

    struct Band { float lower, upper, benefit; };
    QList<Band> bands;
    if (owner == OwnerKind::Verzekerde)
        bands = {{45, 80, 50}};
    else if (benefitEndsAtThreshold)
        bands = {{35, 80, 70}};
    else
        bands = {{35, 45, 40}, {45, 55, 50}, {55, 65, 60}, {65, 80, 75}};

    rows.append({0, geen, 0});
    // The bands are fixed; thresholds outside them leave a gap on purpose, which the schedule check
    // reports when the user confirms.
    for (const Band &band : bands) {
        if (volledig > band.lower && geen < band.upper)
            rows.append({MaxOf(geen, band.lower), MinOf(volledig, band.upper), band.benefit});
    }
    rows.append({volledig, 100, last});
    return rows;
}

QString scheduleFault(const QList<Row> &rows)
{
    float previousTot = 0;
    for (qsizetype i = 1; i <= rows.size(); ++i) {
        const float vanaf = rows.at(i - 1).vanaf;
        if (vanaf > previousTot) {
            if (i == 1)
                return QStringLiteral("'AO% vanaf' moet 0% zijn in de 1e regel van de staffel.");
            return QStringLiteral("Regel %1 en regel %2 van de staffel sluiten niet op elkaar aan.")
                .arg(i - 1)
                .arg(i);
        }
        // Row numbers are i - 1 and i even for the first row: a negative start reports "regel 0".
        if (vanaf < previousTot)
            return QStringLiteral("Regel %1 en regel %2 van de staffel overlappen elkaar.")
                .arg(i - 1)
                .arg(i);
        previousTot = rows.at(i - 1).tot;
    }
    if (previousTot != 100.f)
        return QStringLiteral("'AO% tot' moet 100% zijn in de laatste regel van de staffel.");
    return QString();
}

QString percentageRangeText(float lowest, float highest)
{
    return QStringLiteral("Percentage van ") + VandrelControl::Format::general(widen(lowest))
        + QStringLiteral("% t/m ") + VandrelControl::Format::general(widen(highest))
        + QStringLiteral("% invullen.");
}

QString rowKey(float vanaf, float tot)
{
    return QLatin1Char('#') + zeroFilled(vanaf) + zeroFilled(tot);
}

QString cellText(float value, bool benefit)
{
    if (benefit && value == -1.f)
        return QStringLiteral("AO%");
    return VandrelControl::Format::general(widen(value)) + QLatin1Char('%');
}

float cellValue(const QString &text)
{
    QString plain = text;
    plain.remove(QLatin1Char('%'));
    plain = plain.trimmed();
    if (plain.startsWith(QLatin1String("AO")))
        return -1.f;
    return float(VandrelControl::Parse::percentage(plain).value_or(0.0));
}

} // namespace AoStaffel

using AoStaffel::OwnerKind;
using AoStaffel::Row;

// ---------------------------------------------------------------------------------------------

class frmAoUitkering::Private
{
public:
    explicit Private(frmAoUitkering *owner)
        : q(owner)
        , trap(kModule, kCategory)
    {
    }

    frmAoUitkering *q;
    std::unique_ptr<Ui::frmAoUitkering> ui = std::make_unique<Ui::frmAoUitkering>();
    ErrorTrap trap;

    ApplicationPtr application;
    KapitaalPtr kapitaal;
    VerzekerdePtr verzekerde;
    PensioenPtr pensioen;
    AoUitkeringPtr current;   // the row Get_AoUitkering gave last

    bool showRvc = false;
    bool staffelAllowed = true;
    bool benefitEndsAtThreshold = false;
    bool loading = false;
    bool selecting = false;   // our own selection changes are not the user's clicks

    AoUitkeringOwner *owner() const
    {
        if (kapitaal)
            return kapitaal.get();
        if (verzekerde)
            return verzekerde.get();
        if (pensioen)
            return pensioen.get();
        throw HostError(HostErrorCode::InvalidState,
                        QStringLiteral("Er is geen record voor de AO-uitkering opgegeven."),
                        kModule);
    }
    // Only capital and pension records carry the residual-earning-capacity deviation.
    AoUitkeringOwner *rvcSource() const
    {
        if (kapitaal)
            return kapitaal.get();
        if (pensioen)
            return pensioen.get();
        return nullptr;
    }
    OwnerKind ownerKind() const
    {
        if (kapitaal)
            return OwnerKind::Kapitaal;
        if (verzekerde)
            return OwnerKind::Verzekerde;
        return OwnerKind::Pensioen;
    }

    bool staffelMode() const { return ui->cboUitkeringObv->currentIndex() == 1 && staffelAllowed; }
    QList<TextBox *> rowFields() const { return {ui->txtPcVanaf, ui->txtPcTot, ui->txtPcUitkering}; }

    // --- host rows
    AoUitkeringPtr Get_AoUitkering(qint16 index)
    {
        AoUitkeringPtr row;
        trap.run("Get_AoUitkering", [&] {
            row = owner()->AoUitkeringItem(index);
            current = row;
        });
        return row;
    }

    AoUitkeringPtr AoUitkering_Add()
    {
        AoUitkeringPtr row;
        trap.run("AoUitkering_Add", [&] {
            AoUitkeringOwner *o = owner();
            row = o->AoUitkeringItem(o->AoUitkeringAdd());
            if (!row)
                throw HostError(HostErrorCode::InvalidState,
                                QStringLiteral("De nieuwe staffelregel is niet gevonden."), kModule);
        });
        return row;
    }

    bool AoUitkering_DeleteAll()
    {
        return trap.run("AoUitkering_DeleteAll", [&] {
            AoUitkeringOwner *o = owner();
            while (o->AoUitkeringItem(1))
                o->AoUitkeringDelete(1);
        });
    }

    // --- the list
    void setupColumns()
    {
        QTreeWidget *list = ui->lvwStaffel;
        ListView::prepareReportView(list);
        list->setColumnCount(ColumnCount);
        list->setHeaderLabels({QString(), QStringLiteral("%AO van"), QStringLiteral("%AO tot"),
                               QStringLiteral("%uitkering")});
        for (int column = ColVanaf; column < ColumnCount; ++column)
            list->headerItem()->setTextAlignment(column, Qt::AlignCenter);
        QHeaderView *header = list->header();
        header->setMinimumSectionSize(0);
        header->setStretchLastSection(false);
        header->setSectionsMovable(false);
        header->setSectionResizeMode(QHeaderView::Fixed);
        header->setSectionsClickable(false);
        list->setSortingEnabled(false);
        Form_Layout();
    }

    void Fill_ListviewItem(QTreeWidgetItem *item, float vanaf, float tot, float uitkering)
    {
        trap.run("Fill_ListviewItem", [&] {
            const QString key = AoStaffel::rowKey(vanaf, tot);
            item->setText(ColKey, key);
            ListView::setKey(item, key);
            item->setText(ColVanaf, AoStaffel::cellText(vanaf, false));
            item->setText(ColTot, AoStaffel::cellText(tot, false));
            item->setText(ColUitkering, AoStaffel::cellText(uitkering, true));
            for (int column = ColVanaf; column < ColumnCount; ++column)
                item->setTextAlignment(column, Qt::AlignCenter);
        });
    }

    QTreeWidgetItem *addListRow(float vanaf, float tot, float uitkering)
    {
        auto *item = new QTreeWidgetItem(ui->lvwStaffel);
        Fill_ListviewItem(item, vanaf, tot, uitkering);
        return item;
    }

    static Row rowOf(const QTreeWidgetItem *item)
    {
        return {AoStaffel::cellValue(item->text(ColVanaf)), AoStaffel::cellValue(item->text(ColTot)),
                AoStaffel::cellValue(item->text(ColUitkering))};
    }

    QList<Row> listRows() const
    {
        QList<Row> rows;
        for (int i = 0; i < ui->lvwStaffel->topLevelItemCount(); ++i)
            rows.append(rowOf(ui->lvwStaffel->topLevelItem(i)));
        return rows;
    }

    // The list view's own sorting stays off (a header click would reorder on a visible column);
    // instead every change re-sorts ascending on the hidden key, so "row 1" and the checks always
    // see the rows ordered by from and then to percentage.
    void sortStaffel() { ui->lvwStaffel->sortItems(ColKey, Qt::AscendingOrder); }

    void selectRow(QTreeWidgetItem *item)
    {
        selecting = true;
        ui->lvwStaffel->setCurrentItem(item);
        if (item) {
            item->setSelected(true);
            ui->lvwStaffel->scrollToItem(item);
        }
        selecting = false;
    }

    void selectFirstRow() { selectRow(ui->lvwStaffel->topLevelItem(0)); }

    // --- form procedures
    void fillForm()
    {
        Ui::frmAoUitkering &f = *ui;

        staffelAllowed = true;
        if (kapitaal)
            staffelAllowed = kapitaal->Cd_UitkeringObv() == 2;
        if (pensioen)
            staffelAllowed = pensioen->Cd_UitkeringObv() == 2;
        benefitEndsAtThreshold = kapitaal && kapitaal->Cd_AoDekking() == 16;

        f.txtPcUitkeringGeen->setEnabled(!benefitEndsAtThreshold);

        f.cboUitkeringObv->setEnabled(false);
        f.cboUitkeringObv->setCurrentIndex(-1);

        QList<Row> rows;
        for (qint16 index = 1;; ++index) {
            const AoUitkeringPtr row = Get_AoUitkering(index);
            if (!row)
                break;
            const Row values{row->Pc_AoVanaf(), row->Pc_AoTot(), row->Pc_Uitkering()};
            rows.append(values);
            if (index == 1)
                f.txtPcUitkeringGeen->setValue(widen(values.tot));
            if (values.uitkering < 0 && staffelAllowed)
                f.cboUitkeringObv->setCurrentIndex(0);
            if (values.uitkering == 100.f || (values.uitkering == 0.f && benefitEndsAtThreshold))
                f.txtPcUitkeringVolledig->setValue(widen(values.vanaf));
        }

        if (f.cboUitkeringObv->currentIndex() < 0 && staffelAllowed)
            f.cboUitkeringObv->setCurrentIndex(1);
        f.cboUitkeringObv->setEnabled(staffelAllowed);

        f.lblPcUitkeringVolledig->setText(
            (benefitEndsAtThreshold ? QStringLiteral("Geen") : QStringLiteral("Volledige"))
            + QStringLiteral(" uitkering vanaf"));
        f.txtPcUitkeringVolledig->setEnabled(staffelAllowed && !benefitEndsAtThreshold);

        setupColumns();
        selecting = true;
        f.lvwStaffel->clear();
        selecting = false;
        for (const Row &row : rows)
            addListRow(row.vanaf, row.tot, row.uitkering);
        sortStaffel();

        if (f.lvwStaffel->topLevelItemCount() > 0)
            selectFirstRow();
        if (showRvc)
            Fill_RvcAfwijking();
        Adjust_Form();
        lvwStaffel_ItemClick();
    }

    void Fill_StaffelItem()
    {
        trap.run("Fill_StaffelItem", [&] {
            QTreeWidgetItem *item = ui->lvwStaffel->currentItem();
            const QList<TextBox *> fields = rowFields();
            // With no row to show (another mode, or the last row deleted) the fields are emptied;
            // their check is switched off meanwhile so that emptying is never taken for an entry.
            if (!staffelMode() || !item) {
                for (TextBox *field : fields)
                    field->setCausesValidation(false);
                for (TextBox *field : fields)
                    field->clear();
                for (TextBox *field : fields)
                    field->setCausesValidation(true);
                return;
            }
            const Row row = rowOf(item);
            ui->txtPcVanaf->setValue(widen(row.vanaf));
            ui->txtPcTot->setValue(widen(row.tot));
            ui->txtPcUitkering->setValue(widen(row.uitkering));
        });
    }

    void Fill_DefaultStaffel()
    {
        trap.run("Fill_DefaultStaffel", [&] {
            QComboBox *combo = ui->cboUitkeringObv;
            if (combo->currentIndex() < 0)
                return;
            const int mode = combo->itemData(combo->currentIndex()).toInt();
            const QList<Row> rows = AoStaffel::defaultSchedule(
                mode, ownerKind(), benefitEndsAtThreshold, readPercentage(ui->txtPcUitkeringGeen),
                readPercentage(ui->txtPcUitkeringVolledig));
            selecting = true;
            ui->lvwStaffel->clear();
            selecting = false;
            for (const Row &row : rows)
                addListRow(row.vanaf, row.tot, row.uitkering);
            sortStaffel();
            // The row fields must never keep showing a row that no longer exists: the new
            // schedule's first row is selected and shown (or the fields emptied in another mode).
            selectFirstRow();
            Adjust_Form();
            Fill_StaffelItem();
        });
    }

    void Fill_RvcAfwijking()
    {
        trap.run("Fill_RvcAfwijking", [&] {
            AoUitkeringOwner *source = rvcSource();
            if (!source)
                return;
            const int code = source->Property(kCdRvcAfwijking).toInt();
            ui->chkRvcAfwijking->setChecked(code != 0);
            if (code == 1)
                checkOption(0);
            else if (code == 2)
                checkOption(1);
            else
                clearOptions();
            const double limit = widen(source->Property(kPcRvcAfwijking).toFloat());
            if (code == 1)
                ui->txtRvcAfwijkend_0->setValue(limit);
            else if (code == 2)
                ui->txtRvcAfwijkend_1->setValue(limit);
            ui->txtRvcUitkering->setValue(widen(source->Property(kPcRvcUitkering).toFloat()));
            ui->fraRvcInhoud->setVisible(code != 0);
        });
    }

    // The geometry decision: the dialog has a fixed size that follows its contents (as the
    // original fixed dialog), so showing or hiding the RVC frame changes its height; the three
    // visible columns share the list's width less 60 + 270 twips of margin and scroll bar.
    void Form_Layout()
    {
        trap.run("Form_Layout", [&] {
            // Nested frames post their size changes; take them in now so the height follows at once.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
            if (q->layout())
                q->layout()->activate();
            QTreeWidget *list = ui->lvwStaffel;
            const int listTwips = list->width() * TwipsPerPixelAt96Dpi;
            const int column = qMax(0, twips((listTwips - 60 - 270) / 3));
            QHeaderView *header = list->header();
            header->resizeSection(ColKey, 0);
            for (int i = ColVanaf; i < ColumnCount; ++i)
                header->resizeSection(i, column);
        });
    }

    void Adjust_Form()
    {
        trap.run("Adjust_Form", [&] {
            const bool staffel = staffelMode();
            const bool hasRows = ui->lvwStaffel->topLevelItemCount() > 0;
            ui->cmdAdd->setEnabled(staffel);
            // Without rows there is nothing the row fields could edit: after the last row is
            // deleted they are empty and disabled together with cmdDelete; cmdAdd starts anew.
            for (TextBox *field : rowFields())
                field->setEnabled(staffel && hasRows);
            ui->cmdDelete->setEnabled(staffel && hasRows);
            ui->fraRvcAfwijking->setVisible(showRvc);
            Form_Layout();
        });
    }

    bool Save_AoUitkering()
    {
        return trap.run("Save_AoUitkering", [&] {
            if (!AoUitkering_DeleteAll())
                throw HostError(HostErrorCode::StoreFailed,
                                QStringLiteral("De oude staffel kon niet worden verwijderd."), kModule);
            for (const Row &values : listRows()) {
                const AoUitkeringPtr row = AoUitkering_Add();
                if (!row)
                    throw HostError(HostErrorCode::StoreFailed,
                                    QStringLiteral("De staffelregel kon niet worden toegevoegd."),
                                    kModule);
                row->setPc_AoVanaf(values.vanaf);
                row->setPc_AoTot(values.tot);
                row->setPc_Uitkering(values.uitkering);
            }
        });
    }

    bool Save_RvcAfwijking()
    {
        return trap.run("Save_RvcAfwijking", [&] {
            AoUitkeringOwner *target = rvcSource();
            if (!target)
                return;
            if (ui->chkRvcAfwijking->isChecked()) {
                const QVariant uitkering = QVariant::fromValue(readPercentage(ui->txtRvcUitkering));
                if (ui->optRvcAfwijkend_0->isChecked()) {
                    target->SetProperty(kCdRvcAfwijking, QVariant::fromValue(qint32(1)));
                    target->SetProperty(kPcRvcAfwijking,
                                        QVariant::fromValue(readPercentage(ui->txtRvcAfwijkend_0)));
                    target->SetProperty(kPcRvcUitkering, uitkering);
                } else if (ui->optRvcAfwijkend_1->isChecked()) {
                    target->SetProperty(kCdRvcAfwijking, QVariant::fromValue(qint32(2)));
                    target->SetProperty(kPcRvcAfwijking,
                                        QVariant::fromValue(readPercentage(ui->txtRvcAfwijkend_1)));
                    target->SetProperty(kPcRvcUitkering, uitkering);
                }
            } else {
                target->SetProperty(kCdRvcAfwijking, QVariant::fromValue(qint32(0)));
                target->SetProperty(kPcRvcAfwijking, QVariant::fromValue(0.f));
                target->SetProperty(kPcRvcUitkering, QVariant::fromValue(0.f));
            }
        });
    }

    // --- checks
    void Validation_Percentage(float value, float lowest, float highest, const QString &title,
                               bool &Cancel)
    {
        trap.run("Validation_Percentage", [&] {
            Cancel = value > highest || value < lowest;
            if (Cancel)
                MessageBox::ok(q, AoStaffel::percentageRangeText(lowest, highest), title);
        });
    }

    void Validation_Listview(bool &Cancel)
    {
        trap.run("Validation_Listview", [&] {
            const QString fault = AoStaffel::scheduleFault(listRows());
            if (fault.isEmpty())
                return;
            MessageBox::ok(q, fault, QStringLiteral("Ongeldige invoer"));
            Cancel = true;
            if (q->isVisible())
                ui->lvwStaffel->setFocus(Qt::OtherFocusReason);
        });
    }

    void focusField(QWidget *field)
    {
        if (q->isVisible() && field->isVisible() && !field->hasFocus())
            field->setFocus(Qt::OtherFocusReason);
    }

    // --- RVC option buttons
    void checkOption(int index)
    {
        QRadioButton *option = index == 0 ? ui->optRvcAfwijkend_0 : ui->optRvcAfwijkend_1;
        if (option->isChecked())
            optRvcAfwijkend_Click(index);
        else
            option->setChecked(true);   // its toggled signal runs the click handler
    }

    void clearOptions()
    {
        // Exclusive option buttons cannot be all off; lift that for the moment of clearing.
        for (QRadioButton *option : {ui->optRvcAfwijkend_0, ui->optRvcAfwijkend_1}) {
            option->setAutoExclusive(false);
            option->setChecked(false);
            option->setAutoExclusive(true);
        }
        applyOptionStates();
    }

    void applyOptionStates()
    {
        const bool first = ui->optRvcAfwijkend_0->isChecked();
        const bool second = ui->optRvcAfwijkend_1->isChecked();
        ui->txtRvcAfwijkend_0->setEnabled(first);
        ui->lblPcRvc_0->setEnabled(first);
        ui->txtRvcAfwijkend_1->setEnabled(second);
        ui->lblPcRvc_1->setEnabled(second);
    }

    void optRvcAfwijkend_Click(int index)
    {
        trap.run("optRvcAfwijkend_Click", [&] {
            applyOptionStates();
            if (loading)
                return;
            TextBox *other = index == 0 ? ui->txtRvcAfwijkend_1 : ui->txtRvcAfwijkend_0;
            other->clear();
        });
    }

    void chkRvcAfwijking_Click(bool ticked)
    {
        if (loading)
            return;
        trap.run("chkRvcAfwijking_Click", [&] {
            if (ticked) {
                checkOption(1);
                ui->txtRvcAfwijkend_1->setValue(50);
            } else {
                clearOptions();
                ui->txtRvcAfwijkend_0->setValue(0);
                ui->txtRvcAfwijkend_1->setValue(0);
            }
            ui->txtRvcUitkering->setValue(0);
            ui->fraRvcInhoud->setVisible(ticked);
            Form_Layout();
        });
    }

    // --- schedule handlers
    void cboUitkeringObv_Click()
    {
        // Loading disables the combo box so that filling it never replaces the owner's schedule.
        if (loading || !ui->cboUitkeringObv->isEnabled())
            return;
        trap.run("cboUitkeringObv_Click", [&] {
            Adjust_Form();
            Fill_DefaultStaffel();
        });
    }

    void lvwStaffel_ItemClick()
    {
        trap.run("lvwStaffel_ItemClick", [&] { Fill_StaffelItem(); });
    }

    void currentRowChanged(QTreeWidgetItem *now, QTreeWidgetItem *before)
    {
        if (loading || selecting || !now)
            return;
        // A row field whose check refused to let go still has the focus: the click that tried
        // to leave it must not load another row over the user's entry.
        const QWidget *focus = QApplication::focusWidget();
        for (TextBox *field : rowFields()) {
            if (focus == field && before) {
                selectRow(before);
                return;
            }
        }
        lvwStaffel_ItemClick();
    }

    void cmdAdd_Click()
    {
        trap.run("cmdAdd_Click", [&] {
            addListRow(0, 0, 0);
            sortStaffel();
            selectFirstRow();
            Adjust_Form();
            lvwStaffel_ItemClick();
        });
    }

    void cmdDelete_Click()
    {
        trap.run("cmdDelete_Click", [&] {
            QTreeWidgetItem *item = ui->lvwStaffel->currentItem();
            if (!item)
                return;
            selecting = true;
            delete item;
            selecting = false;
            selectFirstRow();
            Adjust_Form();
            lvwStaffel_ItemClick();
        });
    }

    void rowField_Validation(const char *procedure, qint16 mode, int column, bool &Cancel)
    {
        trap.run(procedure, [&] {
            q->Validation(Cancel, mode);
            if (Cancel)
                return;
            QTreeWidgetItem *item = ui->lvwStaffel->currentItem();
            if (!item)
                return;
            Row row = rowOf(item);
            if (column == ColVanaf)
                row.vanaf = readPercentage(ui->txtPcVanaf);
            else if (column == ColTot)
                row.tot = readPercentage(ui->txtPcTot);
            else
                row.uitkering = readPercentage(ui->txtPcUitkering);
            Fill_ListviewItem(item, row.vanaf, row.tot, row.uitkering);
            sortStaffel();
            ui->lvwStaffel->scrollToItem(item);
        });
    }

    void txtPcUitkeringGeen_Validation(bool &Cancel)
    {
        trap.run("txtPcUitkeringGeen_Validation", [&] {
            q->Validation(Cancel, 1);
            if (Cancel)
                return;
            const float value = readPercentage(ui->txtPcUitkeringGeen);
            QTreeWidget *list = ui->lvwStaffel;
            const int count = list->topLevelItemCount();
            if (count >= 1) {
                QTreeWidgetItem *first = list->topLevelItem(0);
                const Row row = rowOf(first);
                Fill_ListviewItem(first, row.vanaf, value, row.uitkering);
            }
            if (count >= 2) {
                QTreeWidgetItem *second = list->topLevelItem(1);
                const Row row = rowOf(second);
                Fill_ListviewItem(second, value, row.tot, row.uitkering);
            }
            if (count == 2)
                ui->txtPcUitkeringVolledig->setValue(widen(value));
            sortStaffel();
            Fill_DefaultStaffel();
            Fill_StaffelItem();
        });
    }

    void txtPcUitkeringVolledig_Validation(bool &Cancel)
    {
        trap.run("txtPcUitkeringVolledig_Validation", [&] {
            q->Validation(Cancel, 2);
            if (Cancel)
                return;
            const float value = readPercentage(ui->txtPcUitkeringVolledig);
            QTreeWidget *list = ui->lvwStaffel;
            const int count = list->topLevelItemCount();
            if (count >= 2) {
                QTreeWidgetItem *beforeLast = list->topLevelItem(count - 2);
                const Row row = rowOf(beforeLast);
                Fill_ListviewItem(beforeLast, row.vanaf, value, row.uitkering);
            }
            if (count >= 1) {
                QTreeWidgetItem *last = list->topLevelItem(count - 1);
                const Row row = rowOf(last);
                Fill_ListviewItem(last, value, row.tot, row.uitkering);
            }
            sortStaffel();
            // The selected row may be one of the two just changed; show it as it now is.
            Fill_StaffelItem();
        });
    }

    void cmdOk_Click()
    {
        // A field whose check just refused to let go keeps the focus; its message was shown.
        const QWidget *focus = QApplication::focusWidget();
        if (focus && qobject_cast<const TextBox *>(focus) && focus->window() == q)
            return;
        trap.run("cmdOk_Click", [&] {
            bool Cancel = false;
            q->Validation(Cancel, 0);
            if (Cancel)
                return;
            // A save that failed was reported; the dialog stays open so the user can retry or
            // close it, instead of pretending the schedule was stored.
            if (!Save_AoUitkering())
                return;
            if (showRvc && !Save_RvcAfwijking())
                return;
            q->accept();
        });
    }

    void Form_Activate()
    {
        trap.run("Form_Activate", [&] {
            QList<QWidget *> controls;
            for (QWidget *child : q->findChildren<QWidget *>()) {
                // The list keeps its own colours, its header and viewport included. A text box has the
                // field colour, never button face; only while disabled does its palette show the
                // face colour, and recolouring it then would leave it yellow once enabled again.
                if (child == ui->lvwStaffel || ui->lvwStaffel->isAncestorOf(child)
                    || qobject_cast<TextBox *>(child))
                    continue;
                controls.append(child);
            }
            SetBackColorByColor(controls, BackColorOf(q), {QStringLiteral("lvwStaffel")},
                                ButtonFaceColor());
        });
    }
};

// ---------------------------------------------------------------------------------------------

frmAoUitkering::frmAoUitkering(QWidget *parent)
    : QDialog(parent)
    , d(std::make_unique<Private>(this))
{
    Ui::frmAoUitkering &f = *d->ui;
    f.setupUi(this);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    f.lvwStaffel->setMinimumWidth(300);

    for (TextBox *field : {f.txtPcUitkeringGeen, f.txtPcUitkeringVolledig, f.txtPcVanaf, f.txtPcTot,
                           f.txtPcUitkering, f.txtRvcAfwijkend_0, f.txtRvcAfwijkend_1,
                           f.txtRvcUitkering}) {
        field->setKind(VandrelControl::FieldKind::Percentage);
        field->setDecimals(2);
    }

    f.cboUitkeringObv->addItem(QStringLiteral("Werkelijk AO%"), AoStaffel::ModeWerkelijkAo);
    f.cboUitkeringObv->addItem(QStringLiteral("Staffel"), AoStaffel::ModeStaffel);
    f.cboUitkeringObv->setCurrentIndex(-1);

    f.hntRvcAfwijking->setHintText(QStringLiteral(
        "Heeft de verzekerde nog een restverdiencapaciteit vanaf of tot het opgegeven percentage, "
        "dan geldt in plaats van de staffel het opgegeven uitkeringspercentage van het verzekerde "
        "bedrag."));

    // The error identity of this dialog replaces the application title: the host's report then
    // names the dialog. Without an Application (not yet bound) the dialog shows the report itself.
    d->trap.setReporter([this](ErrorRecord &record) {
        record.Title = kTitle;
        if (d->application) {
            d->application->ReportError(record);
        } else {
            MessageBox::ok(this,
                           record.Message + QStringLiteral("\n\n") + record.Procedure
                               + QStringLiteral(": ") + record.Description,
                           kTitle, MessageBox::Icon::Critical);
        }
    });

    const auto direct = Qt::DirectConnection;
    connect(f.cboUitkeringObv, &QComboBox::currentIndexChanged, this,
            [this] { d->cboUitkeringObv_Click(); }, direct);
    connect(f.lvwStaffel, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem *now, QTreeWidgetItem *before) { d->currentRowChanged(now, before); },
            direct);
    connect(f.cmdAdd, &QAbstractButton::clicked, this, [this] { d->cmdAdd_Click(); }, direct);
    connect(f.cmdDelete, &QAbstractButton::clicked, this, [this] { d->cmdDelete_Click(); }, direct);
    connect(f.cmdOK, &QAbstractButton::clicked, this, [this] { d->cmdOk_Click(); }, direct);
    connect(f.chkRvcAfwijking, &QAbstractButton::toggled, this,
            [this](bool ticked) { d->chkRvcAfwijking_Click(ticked); }, direct);
    connect(f.optRvcAfwijkend_0, &QAbstractButton::toggled, this,
            [this](bool on) { if (on) d->optRvcAfwijkend_Click(0); }, direct);
    connect(f.optRvcAfwijkend_1, &QAbstractButton::toggled, this,
            [this](bool on) { if (on) d->optRvcAfwijkend_Click(1); }, direct);

    connect(f.txtPcUitkeringGeen, &TextBox::Validate, this,
            [this](bool &Cancel) { d->txtPcUitkeringGeen_Validation(Cancel); }, direct);
    connect(f.txtPcUitkeringVolledig, &TextBox::Validate, this,
            [this](bool &Cancel) { d->txtPcUitkeringVolledig_Validation(Cancel); }, direct);
    connect(f.txtPcVanaf, &TextBox::Validate, this,
            [this](bool &Cancel) { d->rowField_Validation("txtPcVanaf_Validation", 3, ColVanaf, Cancel); },
            direct);
    connect(f.txtPcTot, &TextBox::Validate, this,
            [this](bool &Cancel) { d->rowField_Validation("txtPcTot_Validation", 4, ColTot, Cancel); },
            direct);
    connect(f.txtPcUitkering, &TextBox::Validate, this,
            [this](bool &Cancel) {
                d->rowField_Validation("txtPcUitkering_Validation", 5, ColUitkering, Cancel);
            },
            direct);

    d->setupColumns();
    d->applyOptionStates();
    f.fraRvcInhoud->setVisible(false);
    d->Adjust_Form();
    ScaleToScreen(this);
}

frmAoUitkering::~frmAoUitkering() = default;

void frmAoUitkering::setApplication(const ApplicationPtr &Application)
{
    d->trap.run("Application", [&] {
        d->application = Application;
        d->trap.setApplication(Application);
        if (Application)
            setWindowIcon(Application->Icon());
    });
}

void frmAoUitkering::setKapitaal(const KapitaalPtr &AOKapitaal)
{
    d->kapitaal = AOKapitaal;
    d->verzekerde.reset();
    d->pensioen.reset();
    d->showRvc = true;
}

void frmAoUitkering::setVerzekerde(const VerzekerdePtr &PvaVerzekerde)
{
    d->kapitaal.reset();
    d->verzekerde = PvaVerzekerde;
    d->pensioen.reset();
    d->showRvc = false;
}

void frmAoUitkering::setPensioen(const PensioenPtr &IpPensioen)
{
    d->kapitaal.reset();
    d->verzekerde.reset();
    d->pensioen = IpPensioen;
    d->showRvc = true;
}

void frmAoUitkering::Fill_Form()
{
    d->loading = true;
    d->trap.run("Fill_Form", [&] { d->fillForm(); });
    d->loading = false;
}

void frmAoUitkering::Validation(bool &Cancel, qint16 mode)
{
    d->trap.run("Validation", [&] {
        Ui::frmAoUitkering &f = *d->ui;
        const auto value = [](const TextBox *field) { return readPercentage(field); };

        if (!Cancel && (mode == 0 || mode == 1)) {
            const float highest = f.txtPcUitkeringVolledig->isEnabled()
                ? value(f.txtPcUitkeringVolledig)
                : 100.f;
            d->Validation_Percentage(value(f.txtPcUitkeringGeen), 0, highest,
                                     QStringLiteral("Minimaal AO%"), Cancel);
            if (Cancel)
                d->focusField(f.txtPcUitkeringGeen);
        }
        if (!Cancel && (mode == 0 || mode == 2) && f.txtPcUitkeringVolledig->isEnabled()) {
            d->Validation_Percentage(value(f.txtPcUitkeringVolledig), value(f.txtPcUitkeringGeen),
                                     100, QStringLiteral("Volledige uitkering vanaf"), Cancel);
            if (Cancel)
                d->focusField(f.txtPcUitkeringVolledig);
        }
        if (!Cancel && (mode == 0 || mode == 4) && f.txtPcTot->isEnabled()) {
            d->Validation_Percentage(value(f.txtPcTot), value(f.txtPcVanaf), 100,
                                     QStringLiteral("AO% tot"), Cancel);
            if (Cancel)
                d->focusField(f.txtPcTot);
        }
        if (!Cancel && (mode == 0 || mode == 5) && f.txtPcUitkering->isEnabled()) {
            d->Validation_Percentage(value(f.txtPcUitkering), 0, 100, QStringLiteral("Uikering%"),
                                     Cancel);
            if (Cancel)
                d->focusField(f.txtPcUitkering);
        }
        if (!Cancel && mode == 0)
            d->Validation_Listview(Cancel);
    });
}

void frmAoUitkering::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    d->Form_Layout();
    // The focus starts on the schedule: leaving a threshold field runs its check, which rewrites
    // rows, and merely opening the dialog and pressing OK must not do that.
    d->ui->lvwStaffel->setFocus(Qt::OtherFocusReason);
}

void frmAoUitkering::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        d->Form_Activate();
}

void frmAoUitkering::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    d->Form_Layout();
}

} // namespace VandrelPensioen
