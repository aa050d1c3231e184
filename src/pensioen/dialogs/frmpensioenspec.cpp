// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "frmpensioenspec.h"

#include "ui_frmpensioenspec.h"

#include "errortrap.h"
#include "formats.h"
#include "frmspecificatiescenario.h"
#include "listviewroutines.h"
#include "messagebox.h"
#include "platformroutines.h"
#include "textbox.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHeaderView>
#include <QTreeWidget>

namespace VandrelPensioen {

using VandrelApplication::HostError;
using VandrelApplication::isFilled;
using VandrelApplication::OuderdomRegelPtr;
using VandrelControl::FieldKind;
using VandrelControl::MessageBox;
using VandrelControl::TextBox;
namespace Format = VandrelControl::Format;

namespace {

// Field codes the handlers pass to Validation.
namespace Code {
inline constexpr qint16 Alles = 0;
inline constexpr qint16 LeeftijdOP = 1;
inline constexpr qint16 IngangOP = 3;
inline constexpr qint16 IngangPreP = 4;
inline constexpr qint16 LeeftijdPreP = 5;
inline constexpr qint16 BedragOP = 7;
inline constexpr qint16 BedragPreP = 11;
inline constexpr qint16 Leeftijd = 12;
}

// Starting ages are whole months; the dialog accepts them from 60 (OP) or 40 (PreP) to 99 years.
inline constexpr qint32 MinLeeftijdOP = 720;
inline constexpr qint32 MinLeeftijdPreP = 480;
inline constexpr qint32 MaxIngangsleeftijd = 1188;

qint32 wholeValue(const TextBox *field)
{
    return qint32(Format::roundHalfEven(field->value()));
}

// An age in months as two fields; a row without that age shows both empty.
void showAge(TextBox *years, TextBox *months, qint32 value)
{
    years->setValue(value / 12);
    months->setValue(value % 12);
    if (value == 0) {
        years->clear();
        months->clear();
    }
}

void showDate(TextBox *field, const QDate &date)
{
    field->setDate(isFilled(date) ? date : QDate());
}

QString leeftijdText(qint32 months)
{
    if (months <= 0)
        return QStringLiteral("<niet ingevuld>");
    QString text = QString::number(months / 12) + QStringLiteral(" jaar");
    if (months % 12 != 0)
        text += QStringLiteral(" en ") + QString::number(months % 12) + QStringLiteral(" maanden");
    return text;
}

} // namespace

class frmPensioenSpec::Private : public QObject
{
public:
    explicit Private(frmPensioenSpec *q)
        : q(q)
        , trap(QStringLiteral("frmPensioenSpec"), QStringLiteral("Specificatie pensioen"))
    {
    }

    OuderdomRegelPtr currentRow() const;
    void selectRow(QTreeWidgetItem *item);
    void fail(bool &Cancel, qint16 code, const QString &text, QWidget *field);

    void Undo_Changes();
    void Fill_Controls();
    void Fill_lvwPensioen(const QString &selectKey);
    void Fill_ListviewItem(QTreeWidgetItem *item);
    bool Set_Dt_Pensioen(const OuderdomRegelPtr &row);
    bool Set_Dt_OP(const OuderdomRegelPtr &row);
    bool Set_Dt_PreP(const OuderdomRegelPtr &row);

    void chkOP_Click();
    void ChkPreP_Click();
    void cmdAdd_Click();
    void cmdDelete_Click();
    void cmdOk_Click();
    void cmdScenarioOudersomspensioen_Click();
    void lvwPensioen_ItemClick();

    // Every field handler: check the field, store it when it passes and differs from the record,
    // then show the row again.
    template <typename Store>
    void fieldHandler(const char *procedure, qint16 code, bool &Cancel, Store store);

    frmPensioenSpec *q;
    Ui::frmPensioenSpec ui;
    ErrorTrap trap;
    VandrelApplication::ApplicationPtr application;
    VandrelApplication::AanvragerPtr aanvrager;
    VandrelApplication::PensioenPtr pensioen;
    // The undo store: a detached copy of the whole record (rows and their scenarios included) as
    // it was when SetApplication ran. Restoring it with CopyFrom takes back every kind of edit
    // the dialog can make, including rows added or deleted, in one host operation.
    VandrelApplication::PensioenPtr undoStore;
    bool loading = false;
    bool changed = false;
    bool selecting = false;
};

frmPensioenSpec::frmPensioenSpec(QWidget *parent)
    : QDialog(parent)
    , d(std::make_unique<Private>(this))
{
    d->ui.setupUi(this);
    ScaleToScreen(this);

    for (TextBox *field : {d->ui.txtLeeftijdJr, d->ui.txtLeeftijdMnd, d->ui.txtLeeftijdOPJr,
                           d->ui.txtLeeftijdOPMnd, d->ui.txtLeeftijdPrePJr, d->ui.txtLeeftijdPrePMnd})
        field->setKind(FieldKind::WholeNumber);
    d->ui.txtOP->setKind(FieldKind::Amount);
    d->ui.txtPreP->setKind(FieldKind::Amount);
    d->ui.txtIngangOP->setKind(FieldKind::Date);
    d->ui.txtIngangPreP->setKind(FieldKind::Date);
    // Cancel takes everything back anyway, so going to it must not first check the field left.
    d->ui.cmdCancel->setCausesValidation(false);

    QTreeWidget *list = ListView::prepareReportView(d->ui.lvwPensioen);

    auto onValidate = [this](TextBox *field, auto handler) {
        connect(field, &TextBox::Validate, this, handler, Qt::DirectConnection);
    };
    // Target age (code 12), stored through Set_Dt_Pensioen.
    for (TextBox *field : {d->ui.txtLeeftijdJr, d->ui.txtLeeftijdMnd}) {
        const QByteArray name = field->objectName().toLatin1() + "_Validation";
        onValidate(field, [this, name](bool &Cancel) {
            d->fieldHandler(name.constData(), Code::Leeftijd, Cancel,
                            [this](const OuderdomRegelPtr &row) { return d->Set_Dt_Pensioen(row); });
        });
    }
    for (TextBox *field : {d->ui.txtLeeftijdOPJr, d->ui.txtLeeftijdOPMnd}) {
        const QByteArray name = field->objectName().toLatin1() + "_Validation";
        onValidate(field, [this, name](bool &Cancel) {
            d->fieldHandler(name.constData(), Code::LeeftijdOP, Cancel,
                            [this](const OuderdomRegelPtr &row) { return d->Set_Dt_OP(row); });
        });
    }
    for (TextBox *field : {d->ui.txtLeeftijdPrePJr, d->ui.txtLeeftijdPrePMnd}) {
        const QByteArray name = field->objectName().toLatin1() + "_Validation";
        onValidate(field, [this, name](bool &Cancel) {
            d->fieldHandler(name.constData(), Code::LeeftijdPreP, Cancel,
                            [this](const OuderdomRegelPtr &row) { return d->Set_Dt_PreP(row); });
        });
    }
    onValidate(d->ui.txtIngangOP, [this](bool &Cancel) {
        d->fieldHandler("txtIngangOP_Validation", Code::IngangOP, Cancel, [this](const OuderdomRegelPtr &row) {
            const QDate date = d->ui.txtIngangOP->date();
            if (date == row->Dt_IngangOP())
                return false;
            row->setDt_IngangOP(date);
            return true;
        });
    });
    onValidate(d->ui.txtIngangPreP, [this](bool &Cancel) {
        d->fieldHandler("TxtIngangPreP_Validation", Code::IngangPreP, Cancel, [this](const OuderdomRegelPtr &row) {
            const QDate date = d->ui.txtIngangPreP->date();
            if (date == row->Dt_IngangPreP())
                return false;
            row->setDt_IngangPreP(date);
            return true;
        });
    });
    onValidate(d->ui.txtOP, [this](bool &Cancel) {
        d->fieldHandler("TxtOP_Validation", Code::BedragOP, Cancel, [this](const OuderdomRegelPtr &row) {
            // Amounts are whole currency units a year.
            const double bedrag = Format::roundHalfEven(d->ui.txtOP->value());
            if (bedrag == row->BedragOP())
                return false;
            row->setBedragOP(bedrag);
            return true;
        });
    });
    onValidate(d->ui.txtPreP, [this](bool &Cancel) {
        d->fieldHandler("TxtPreP_Validation", Code::BedragPreP, Cancel, [this](const OuderdomRegelPtr &row) {
            const double bedrag = Format::roundHalfEven(d->ui.txtPreP->value());
            if (bedrag == row->BedragPreP())
                return false;
            row->setBedragPreP(bedrag);
            return true;
        });
    });

    connect(d->ui.chkOP, &QCheckBox::clicked, this, [this] { d->chkOP_Click(); });
    connect(d->ui.chkPreP, &QCheckBox::clicked, this, [this] { d->ChkPreP_Click(); });
    connect(d->ui.cmdAdd, &QPushButton::clicked, this, [this] { d->cmdAdd_Click(); });
    connect(d->ui.cmdDelete, &QPushButton::clicked, this, [this] { d->cmdDelete_Click(); });
    connect(d->ui.cmdOk, &QPushButton::clicked, this, [this] { d->cmdOk_Click(); });
    connect(d->ui.cmdCancel, &QPushButton::clicked, this, [this] {
        d->trap.run("cmdCancel_Click", [this] { reject(); });
    });
    connect(d->ui.cmdScenarioOudersomspensioen, &QPushButton::clicked, this,
            [this] { d->cmdScenarioOudersomspensioen_Click(); });
    connect(list, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *current) {
        if (!d->selecting && !d->loading && current)
            d->lvwPensioen_ItemClick();
    });

    d->Fill_Controls();
}

frmPensioenSpec::~frmPensioenSpec() = default;

void frmPensioenSpec::SetApplication(const VandrelApplication::ApplicationPtr &Application,
                                     qint16 Anv_Id, qint16 Pen_Id)
{
    d->trap.run("SetApplication", [&] {
        d->loading = true;
        d->application = Application;
        d->trap.setApplication(Application);
        d->aanvrager.reset();
        d->pensioen.reset();
        d->undoStore.reset();
        d->changed = false;
        const auto dossier = Application ? Application->Get_Dossier() : nullptr;
        d->aanvrager = dossier ? dossier->Get_Aanvrager(Anv_Id) : nullptr;
        d->pensioen = d->aanvrager ? d->aanvrager->Get_Pensioen(Pen_Id) : nullptr;
        if (!d->pensioen) {
            d->loading = false;
            throw HostError(VandrelApplication::HostErrorCode::NotFound,
                            QStringLiteral("Het pensioen %1 van aanvrager %2 bestaat niet.")
                                .arg(Pen_Id)
                                .arg(Anv_Id));
        }
        setWindowIcon(Application->Icon());
        // Each accepted edit must be durable at once, as on every other screen.
        if (d->pensioen->UitgesteldSchrijven())
            d->pensioen->setUitgesteldSchrijven(false);
        d->undoStore = d->pensioen->Snapshot();
        d->Fill_lvwPensioen(QString());
        d->loading = false;
    });
    d->loading = false;
}

bool frmPensioenSpec::In_Changed() const
{
    return d->changed;
}

void frmPensioenSpec::Private::fail(bool &Cancel, qint16 code, const QString &text, QWidget *field)
{
    MessageBox::ok(q, text, q->windowTitle());
    Cancel = true;
    // A field's own check keeps the focus by Cancel; the full check puts it on the field.
    if (code == Code::Alles && field)
        field->setFocus();
}

void frmPensioenSpec::Validation(bool &Cancel, qint16 code)
{
    d->trap.run("Validation", [&] {
        if (!d->pensioen || !d->currentRow())
            return;
        if (code == Code::Alles)
            QCoreApplication::processEvents();
        const auto &ui = d->ui;
        auto is = [code](qint16 own) { return code == Code::Alles || code == own; };

        const qint32 leeftijdOP = wholeValue(ui.txtLeeftijdOPJr) * 12 + wholeValue(ui.txtLeeftijdOPMnd);
        const qint32 leeftijdPreP = wholeValue(ui.txtLeeftijdPrePJr) * 12 + wholeValue(ui.txtLeeftijdPrePMnd);
        const QDate ingangOP = ui.txtIngangOP->date();
        const QDate ingangPreP = ui.txtIngangPreP->date();

        // 1. Target age.
        if (!Cancel && is(Code::Leeftijd)) {
            const qint32 jaren = wholeValue(ui.txtLeeftijdJr);
            if (jaren < 40 || jaren > 99)
                d->fail(Cancel, code, QStringLiteral("De pensioenleeftijd moet tussen 40 en 99 jaar liggen."),
                        ui.txtLeeftijdJr);
        }
        // 2. Something to specify at all.
        if (!Cancel && code == Code::Alles && ui.txtOP->value() == 0 && ui.txtPreP->value() == 0)
            d->fail(Cancel, code, QStringLiteral("Voer a.u.b. een (pre)pensioen in."), ui.txtOP);
        // 3. OP starting age; a PreP that is switched off has no age to compare with.
        if (!Cancel && is(Code::LeeftijdOP) && ui.txtLeeftijdOPJr->isEnabled()) {
            if (leeftijdOP < MinLeeftijdOP || leeftijdOP > MaxIngangsleeftijd)
                d->fail(Cancel, code,
                        QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet tussen 60 en 99 jaar liggen."),
                        ui.txtLeeftijdOPJr);
            else if (ui.txtLeeftijdPrePJr->isEnabled() && leeftijdOP < leeftijdPreP)
                d->fail(Cancel, code,
                        QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet hoger dan de "
                                       "ingangsleeftijd van het prepensioen zijn."),
                        ui.txtLeeftijdOPJr);
        }
        // 4. OP starting date.
        if (!Cancel && is(Code::IngangOP) && ui.txtIngangOP->isEnabled()) {
            if (!isFilled(ingangOP))
                d->fail(Cancel, code, QStringLiteral("Voer a.u.b. een ingangsdatum ouderdomspensioen in."),
                        ui.txtIngangOP);
            else if (ui.txtIngangPreP->isEnabled() && isFilled(ingangPreP) && ingangPreP >= ingangOP)
                d->fail(Cancel, code,
                        QStringLiteral("De ingangsdatum van het ouderdomspensioen moet na de ingangsdatum "
                                       "prepensioen liggen."),
                        ui.txtIngangOP);
        }
        // 5. PreP starting date.
        if (!Cancel && is(Code::IngangPreP) && ui.txtIngangPreP->isEnabled()) {
            if (!isFilled(ingangPreP)) {
                d->fail(Cancel, code, QStringLiteral("Voer a.u.b. een ingangsdatum prepensioen in."),
                        ui.txtIngangPreP);
            } else if (ingangPreP <= d->aanvrager->GeboorteDatum()) {
                d->fail(Cancel, code,
                        QStringLiteral("De ingangsdatum van het prepensioen moet na de geboortedatum van de "
                                       "aanvrager liggen."),
                        ui.txtIngangPreP);
            } else {
                const QString dienstverbandKey = d->pensioen->DienstverbandKey();
                if (!dienstverbandKey.isEmpty()) {
                    for (qint16 i = 1;; ++i) {
                        const auto dienstverband = d->aanvrager->Get_Dienstverband(i);
                        if (!dienstverband)
                            break;
                        if (dienstverband->Key() != dienstverbandKey)
                            continue;
                        const QDate tot = dienstverband->Dt_InkomenMeetellenTot();
                        if (isFilled(tot) && tot != ingangPreP
                            && !MessageBox::yesNo(
                                this,
                                QStringLiteral("Ingangsdatum pré-pensioen stemt niet overeen met de datum "
                                               "inkomen meetellen tot van het dienstverband.")
                                    + QLatin1Char('\n') + QStringLiteral("Weet u zeker dat u dit wenst?"),
                                QStringLiteral("Ongelijke data"), MessageBox::Icon::None)) {
                            Cancel = true;
                            if (code == Code::Alles)
                                ui.txtIngangPreP->setFocus();
                        }
                        break;
                    }
                }
                // Equal PreP and OP dates are refused here as in step 4: the PreP must start
                // before the OP, as the message says. An OP that is switched off has no date.
                if (!Cancel && ui.txtIngangOP->isEnabled() && isFilled(ingangOP) && ingangPreP >= ingangOP)
                    d->fail(Cancel, code,
                            QStringLiteral("De ingangsdatum van het prepensioen moet voor de ingangsdatum "
                                           "van het ouderdomspensioen liggen."),
                            ui.txtIngangPreP);
            }
        }
        // 6. PreP starting age: only when the user leaves that field.
        if (!Cancel && code == Code::LeeftijdPreP && ui.txtLeeftijdPrePJr->isEnabled()) {
            if (leeftijdPreP < MinLeeftijdPreP || leeftijdPreP > MaxIngangsleeftijd)
                d->fail(Cancel, code,
                        QStringLiteral("De ingangsleeftijd van het prepensioen moet tussen 40 en 99 jaar liggen."),
                        ui.txtLeeftijdPrePJr);
            else if (ui.txtLeeftijdOPJr->isEnabled() && leeftijdPreP > leeftijdOP)
                d->fail(Cancel, code,
                        QStringLiteral("De ingangsleeftijd van het prepensioen moet lager dan de "
                                       "ingangsleeftijd van het ouderdomspensioen zijn."),
                        ui.txtLeeftijdPrePJr);
        }
        // 7. OP amount.
        if (!Cancel && is(Code::BedragOP) && ui.txtOP->isEnabled() && ui.txtOP->value() == 0)
            d->fail(Cancel, code, QStringLiteral("Voer a.u.b. een bedrag bij ouderdomspensioen in."), ui.txtOP);
        // 8. PreP amount, and the 85 % question only when the user leaves the amount itself.
        if (!Cancel && is(Code::BedragPreP) && ui.txtPreP->isEnabled()) {
            if (ui.txtPreP->value() == 0) {
                d->fail(Cancel, code, QStringLiteral("Voer a.u.b. een bedrag bij prepensioen in."), ui.txtPreP);
            } else if (code == Code::BedragPreP && d->pensioen->Regel85Procent()) {
                const double grens = d->pensioen->PensioengevendInkomen() * 0.85;
                // The question's title is the one every doubtful-value question of the suite uses.
                if (ui.txtPreP->value() > grens
                    && !MessageBox::yesNo(this,
                                          QStringLiteral("Opgegeven prepensioen bedraagt meer dan 85% (")
                                              + Format::amount(grens)
                                              + QStringLiteral(") van het pensioengevend inkomen.")
                                              + QLatin1Char('\n') + QStringLiteral("Weet u dit zeker?"),
                                          QStringLiteral("LET OP!"), MessageBox::Icon::Exclamation))
                    Cancel = true;
            }
        }
    });
}

void frmPensioenSpec::closeEvent(QCloseEvent *event)
{
    // Form_QueryUnload: the close box is Cancel; QDialog turns it into reject(), which undoes.
    d->trap.run("Form_QueryUnload", [] {});
    QDialog::closeEvent(event);
}

void frmPensioenSpec::reject()
{
    d->Undo_Changes();
    QDialog::reject();
}

OuderdomRegelPtr frmPensioenSpec::Private::currentRow() const
{
    QTreeWidgetItem *item = ui.lvwPensioen->currentItem();
    if (!item || !pensioen)
        return nullptr;
    return pensioen->Get_OuderdomRegelByKey(ListView::key(item));
}

void frmPensioenSpec::Private::selectRow(QTreeWidgetItem *item)
{
    const bool was = selecting;
    selecting = true;
    ui.lvwPensioen->setCurrentItem(item);
    if (item)
        ui.lvwPensioen->scrollToItem(item);
    selecting = was;
}

void frmPensioenSpec::Private::Undo_Changes()
{
    trap.run("Undo_Changes", [&] {
        if (pensioen && undoStore)
            pensioen->CopyFrom(*undoStore);
        // Everything is as it was, so the caller must not act on edits that no longer exist.
        changed = false;
    });
}

void frmPensioenSpec::Private::Fill_lvwPensioen(const QString &selectKey)
{
    trap.run("Fill_lvwPensioen", [&] {
        const bool wasLoading = loading;
        loading = true;
        QTreeWidget *list = ui.lvwPensioen;
        selecting = true;
        list->clear();
        selecting = false;
        list->setColumnCount(3);
        QTreeWidgetItem *header = list->headerItem();
        header->setText(0, QStringLiteral("Vanaf leeftijd"));
        header->setText(1, QStringLiteral("Ouderdomspensioen"));
        header->setText(2, QStringLiteral("Prepensioen"));
        header->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        header->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
        list->header()->setStretchLastSection(false);
        list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
        list->header()->setSectionResizeMode(1, QHeaderView::Fixed);
        list->header()->setSectionResizeMode(2, QHeaderView::Fixed);
        list->setColumnWidth(1, twips(2000));
        list->setColumnWidth(2, twips(2000));

        const qint16 count = pensioen ? pensioen->OuderdomRegelCount() : 0;
        for (qint16 i = 1; i <= count; ++i) {
            const auto row = pensioen->Get_OuderdomRegel(i);
            if (!row)
                continue;
            auto *item = new QTreeWidgetItem(list);
            // The host's own row key is the item key as it stands: the record owns the rows'
            // identity, and nothing is ever read back out of the key text.
            ListView::setKey(item, row->Key());
            item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
            item->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
            Fill_ListviewItem(item);
        }
        QTreeWidgetItem *selected = selectKey.isEmpty() ? nullptr : ListView::findByKey(list, selectKey);
        if (!selected)
            selected = list->topLevelItem(0);
        selectRow(selected);
        ui.cmdDelete->setEnabled(list->topLevelItemCount() > 0);
        loading = wasLoading;
        lvwPensioen_ItemClick();
    });
}

void frmPensioenSpec::Private::Fill_ListviewItem(QTreeWidgetItem *item)
{
    trap.run("Fill_ListviewItem", [&] {
        if (!item)
            return;
        const auto row = pensioen->Get_OuderdomRegelByKey(ListView::key(item));
        if (!row)
            return;
        item->setText(0, leeftijdText(row->Leeftijd()));
        item->setText(1, Format::amount(row->BedragOP()));
        item->setText(2, Format::amount(row->BedragPreP()));
    });
}

void frmPensioenSpec::Private::Fill_Controls()
{
    trap.run("Fill_Controls", [&] {
        const bool wasLoading = loading;
        loading = true;
        const auto row = currentRow();
        if (row) {
            showAge(ui.txtLeeftijdJr, ui.txtLeeftijdMnd, row->Leeftijd());
            ui.chkOP->setChecked(row->OP());
            ui.txtOP->setValue(row->BedragOP());
            showDate(ui.txtIngangOP, row->Dt_IngangOP());
            showAge(ui.txtLeeftijdOPJr, ui.txtLeeftijdOPMnd, row->LeeftijdOP());
            ui.chkPreP->setChecked(row->PreP());
            ui.txtPreP->setValue(row->BedragPreP());
            showDate(ui.txtIngangPreP, row->Dt_IngangPreP());
            showAge(ui.txtLeeftijdPrePJr, ui.txtLeeftijdPrePMnd, row->LeeftijdPreP());
        } else {
            // No row to show: nothing can be edited until one is added.
            ui.chkOP->setChecked(false);
            ui.chkPreP->setChecked(false);
            for (TextBox *field : {ui.txtLeeftijdJr, ui.txtLeeftijdMnd, ui.txtOP, ui.txtIngangOP,
                                   ui.txtLeeftijdOPJr, ui.txtLeeftijdOPMnd, ui.txtPreP, ui.txtIngangPreP,
                                   ui.txtLeeftijdPrePJr, ui.txtLeeftijdPrePMnd}) {
                field->setValue(0);
                field->clear();
            }
        }
        for (QWidget *w : {static_cast<QWidget *>(ui.lblLeeftijd), static_cast<QWidget *>(ui.txtLeeftijdJr),
                           static_cast<QWidget *>(ui.lblLeeftijdJr), static_cast<QWidget *>(ui.txtLeeftijdMnd),
                           static_cast<QWidget *>(ui.lblLeeftijdMnd), static_cast<QWidget *>(ui.chkOP),
                           static_cast<QWidget *>(ui.chkPreP)})
            w->setEnabled(row != nullptr);
        const bool op = row && ui.chkOP->isChecked();
        for (QWidget *w : {static_cast<QWidget *>(ui.lblOP), static_cast<QWidget *>(ui.txtOP),
                           static_cast<QWidget *>(ui.lblIngangOP), static_cast<QWidget *>(ui.txtIngangOP),
                           static_cast<QWidget *>(ui.lblLeeftijdOP), static_cast<QWidget *>(ui.txtLeeftijdOPJr),
                           static_cast<QWidget *>(ui.lblLeeftijdOPJr), static_cast<QWidget *>(ui.txtLeeftijdOPMnd),
                           static_cast<QWidget *>(ui.lblLeeftijdOPMnd),
                           static_cast<QWidget *>(ui.cmdScenarioOudersomspensioen)})
            w->setEnabled(op);
        const bool prep = row && ui.chkPreP->isChecked();
        for (QWidget *w : {static_cast<QWidget *>(ui.lblPreP), static_cast<QWidget *>(ui.txtPreP),
                           static_cast<QWidget *>(ui.lblIngangPreP), static_cast<QWidget *>(ui.txtIngangPreP),
                           static_cast<QWidget *>(ui.lblLeeftijdPreP), static_cast<QWidget *>(ui.txtLeeftijdPrePJr),
                           static_cast<QWidget *>(ui.lblLeeftijdPrePJr), static_cast<QWidget *>(ui.txtLeeftijdPrePMnd),
                           static_cast<QWidget *>(ui.lblLeeftijdPrePMnd)})
            w->setEnabled(prep);
        loading = wasLoading;
    });
}

bool frmPensioenSpec::Private::Set_Dt_Pensioen(const OuderdomRegelPtr &row)
{
    bool stored = false;
    trap.run("Set_Dt_Pensioen", [&] {
        const qint32 leeftijd = wholeValue(ui.txtLeeftijdJr) * 12 + wholeValue(ui.txtLeeftijdMnd);
        if (leeftijd == row->Leeftijd())
            return;
        row->setLeeftijd(leeftijd);
        stored = true;
    });
    return stored;
}

bool frmPensioenSpec::Private::Set_Dt_OP(const OuderdomRegelPtr &row)
{
    bool stored = false;
    trap.run("Set_Dt_OP", [&] {
        const qint32 leeftijd = wholeValue(ui.txtLeeftijdOPJr) * 12 + wholeValue(ui.txtLeeftijdOPMnd);
        if (leeftijd == row->LeeftijdOP())
            return;
        row->setLeeftijdOP(leeftijd);
        stored = true;
        // The scenario's months count from the OP start, which has just moved.
        const auto scenario = row->ScenarioOP();
        while (scenario->RegelCount() > 0)
            scenario->RemoveRegel(1);
        Fill_Controls();
    });
    return stored;
}

bool frmPensioenSpec::Private::Set_Dt_PreP(const OuderdomRegelPtr &row)
{
    bool stored = false;
    trap.run("Set_Dt_PreP", [&] {
        const qint32 leeftijd = wholeValue(ui.txtLeeftijdPrePJr) * 12 + wholeValue(ui.txtLeeftijdPrePMnd);
        if (leeftijd == row->LeeftijdPreP())
            return;
        row->setLeeftijdPreP(leeftijd);
        stored = true;
        Fill_Controls();
    });
    return stored;
}

template <typename Store>
void frmPensioenSpec::Private::fieldHandler(const char *procedure, qint16 code, bool &Cancel, Store store)
{
    trap.run(procedure, [&] {
        if (loading)
            return;
        const auto row = currentRow();
        if (!row)
            return;
        q->Validation(Cancel, code);
        if (Cancel)
            return;
        // Leaving a field without a new value is no edit: nothing is stored or flagged.
        if (!store(row))
            return;
        Fill_ListviewItem(ui.lvwPensioen->currentItem());
        Fill_Controls();
        changed = true;
    });
}

void frmPensioenSpec::Private::chkOP_Click()
{
    if (loading)
        return;
    trap.run("chkOP_Click", [&] {
        const auto row = currentRow();
        if (!row)
            return;
        row->setOP(ui.chkOP->isChecked());
        Fill_Controls();
        changed = true;
    });
}

void frmPensioenSpec::Private::ChkPreP_Click()
{
    if (loading)
        return;
    trap.run("ChkPreP_Click", [&] {
        const auto row = currentRow();
        if (!row)
            return;
        row->setPreP(ui.chkPreP->isChecked());
        Fill_Controls();
        changed = true;
    });
}

void frmPensioenSpec::Private::cmdAdd_Click()
{
    trap.run("cmdAdd_Click", [&] {
        if (!pensioen)
            return;
        // The row shown must be complete before another is started; with no row at all there is
        // nothing to check and the first one can always be added.
        if (currentRow()) {
            bool Cancel = false;
            q->Validation(Cancel, Code::Alles);
            if (Cancel)
                return;
        }
        const qint16 index = pensioen->AddOuderdomRegel();
        const auto row = pensioen->Get_OuderdomRegel(index);
        changed = true;
        Fill_lvwPensioen(row ? row->Key() : QString());
    });
}

void frmPensioenSpec::Private::cmdDelete_Click()
{
    trap.run("cmdDelete_Click", [&] {
        QTreeWidgetItem *item = ui.lvwPensioen->currentItem();
        if (!item || !pensioen)
            return;
        const QString key = ListView::key(item);
        const qint16 count = pensioen->OuderdomRegelCount();
        for (qint16 i = 1; i <= count; ++i) {
            const auto row = pensioen->Get_OuderdomRegel(i);
            if (row && row->Key() == key) {
                pensioen->RemoveOuderdomRegel(i);
                changed = true;
                break;
            }
        }
        Fill_lvwPensioen(QString());
    });
}

void frmPensioenSpec::Private::cmdOk_Click()
{
    trap.run("cmdOk_Click", [&] {
        bool Cancel = false;
        q->Validation(Cancel, Code::Alles);
        if (!Cancel)
            q->accept();
    });
}

void frmPensioenSpec::Private::cmdScenarioOudersomspensioen_Click()
{
    trap.run("cmdScenarioOudersomspensioen_Click", [&] {
        const auto row = currentRow();
        if (!row)
            return;
        // The scenario's months count from the OP start: without it there is nothing to place.
        const QDate ingang = row->Dt_IngangOP();
        if (!isFilled(ingang)) {
            MessageBox::ok(q, QStringLiteral("Voer a.u.b. een ingangsdatum ouderdomspensioen in."),
                           q->windowTitle());
            ui.txtIngangOP->setFocus();
            return;
        }
        frmSpecificatieScenario dialog(q);
        dialog.Set_Application(application, row->ScenarioOP(), ingang,
                               aanvrager->GeboorteDatum().addYears(100));
        dialog.exec();
        // Not every platform gives the focus back to the owner when a modal child closes.
        q->activateWindow();
        Fill_ListviewItem(ui.lvwPensioen->currentItem());
        Fill_Controls();
        changed = true;
    });
}

void frmPensioenSpec::Private::lvwPensioen_ItemClick()
{
    trap.run("lvwPensioen_ItemClick", [&] { Fill_Controls(); });
}

} // namespace VandrelPensioen
