// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "penstoez.h"

#include "accessiblenames.h"
#include "commitmentrules.h"
#include "errortrap.h"
#include "frmaouitkering.h"
#include "frmpensioenspec.h"
#include "frmspecificatiescenario.h"
#include "formats.h"
#include "messagebox.h"
#include "platformroutines.h"
#include "textbox.h"
#include "ui_penstoez.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>

namespace VandrelPensioen {

using namespace VandrelApplication;
using VandrelControl::FieldKind;
using VandrelControl::MessageBox;
using VandrelControl::TextBox;
namespace Rules = CommitmentRules;

namespace {

const QString kTitleToezeggingen = QStringLiteral("Pensioentoezeggingen");
const QString kTitleOngeldig = QStringLiteral("Ongeldige invoer");
const QString kTitleVerplicht = QStringLiteral("Invoer verplicht");

// A commitment that is held as an amount plus a percentage of the OP.
struct PcCommitment
{
    bool (Pensioen::*flag)() const;
    void (Pensioen::*setFlag)(bool);
    double (Pensioen::*amount)() const;
    void (Pensioen::*setAmount)(double);
    float (Pensioen::*pc)() const;
    void (Pensioen::*setPc)(float);
    qint32 amountCode;
    qint32 pcCode;
    const char *clickProc;
    const char *amountProc;
    const char *pcProc;
};

const PcCommitment kPP{&Pensioen::PP, &Pensioen::setPP, &Pensioen::BedragPP, &Pensioen::setBedragPP,
                       &Pensioen::Pc_PP, &Pensioen::setPc_PP, 9, 15,
                       "ChkPP_Click", "TxtPP_Validation", "TxtPcPp_Validation"};
const PcCommitment kPPNaAow{&Pensioen::PPNaAow, &Pensioen::setPPNaAow, &Pensioen::BedragPPNaAow,
                            &Pensioen::setBedragPPNaAow, &Pensioen::Pc_PPNaAow,
                            &Pensioen::setPc_PPNaAow, 20, 21, "ChkPPNaAow_Click",
                            "TxtPPNaAow_Validation", "TxtPcPpNaAow_Validation"};
const PcCommitment kPPna65{&Pensioen::PPna65, &Pensioen::setPPna65, &Pensioen::BedragPPna65,
                           &Pensioen::setBedragPPna65, &Pensioen::Pc_PPna65, &Pensioen::setPc_PPna65,
                           10, 17, "ChkPPna65_Click", "TxtPPna65_Validation",
                           "TxtPcPPna65_Validation"};
const PcCommitment kPpNa65TotAow{&Pensioen::PpNa65TotAow, &Pensioen::setPpNa65TotAow,
                                 &Pensioen::BedragPpNa65TotAow, &Pensioen::setBedragPpNa65TotAow,
                                 &Pensioen::Pc_PpNa65TotAow, &Pensioen::setPc_PpNa65TotAow, 22, 23,
                                 "ChkPpNa65TotAow_Click", "TxtPPna65TotAow_Validation",
                                 "TxtPcPPna65TotAow_Validation"};
const PcCommitment kWzP{&Pensioen::WzP, &Pensioen::setWzP, &Pensioen::BedragWzP,
                        &Pensioen::setBedragWzP, &Pensioen::Pc_WzP, &Pensioen::setPc_WzP, 13, 16,
                        "ChkWzP_Click", "TxtWzP_Validation", "TxtPcWzp_Validation"};
const PcCommitment kIP{&Pensioen::IP, &Pensioen::setIP, &Pensioen::BedragIP, &Pensioen::setBedragIP,
                       &Pensioen::Pc_IP, &Pensioen::setPc_IP, 6, 18,
                       "ChkIP_Click", "TxtIP_Validation", "txtPcIP_Validation"};

// The amounts that follow the OP amount, in the order they are recomputed. The disability pension
// is not among them: it follows the OP only when it is ticked or its percentage is entered.
const PcCommitment *const kFollowOP[] = {&kPP, &kPPNaAow, &kPpNa65TotAow, &kPPna65, &kWzP};

// Whether the control itself enables the widget (the panel may be disabled as a whole).
bool enabledOwn(const QWidget *widget, const QWidget *panel)
{
    return widget->isEnabledTo(panel);
}

} // namespace

class PensToez::Private
{
public:
    explicit Private(PensToez *q)
        : q(q)
        , ui(std::make_unique<Ui::PensToez>())
        // The subject is the panel's own caption, the name the user knows it by.
        , trap(QStringLiteral("PensToez"), kTitleToezeggingen)
    {
    }

    PensToez *q;
    std::unique_ptr<Ui::PensToez> ui;
    ErrorTrap trap;

    ApplicationPtr application;
    AanvragerPtr aanvrager;
    PensioenPtr pensioen;
    OuderdomRegelPtr regel;   // old-age row 1: the OP and PreP this panel edits
    qint16 anvId = 0;
    qint16 penId = 0;
    QDate aowDate;
    // Set until the first binding with valid identifiers, so that an unbound panel is inert.
    bool loading = true;

    bool bound() const { return aanvrager && pensioen && regel; }

    struct Widgets
    {
        QCheckBox *chk;
        TextBox *amount;
        TextBox *pc;
        QList<QWidget *> companions;   // labels and further fields enabled with the box
    };
    Widgets widgetsOf(const PcCommitment &c) const
    {
        if (&c == &kPP)
            return {ui->chkPP, ui->txtPP, ui->txtPcPp, {ui->lblPcPp}};
        if (&c == &kPPNaAow)
            return {ui->chkPPNaAow, ui->txtPPNaAow, ui->txtPcPPNaAow, {ui->lblPcPpNaAow}};
        if (&c == &kPPna65)
            return {ui->chkPPna65, ui->txtPPna65, ui->txtPcPPna65, {ui->lblPcPPna65}};
        if (&c == &kPpNa65TotAow)
            return {ui->chkPpNa65TotAow, ui->txtPpNa65TotAow, ui->txtPcPpNa65TotAow,
                    {ui->lblPcPpNa65TotAow}};
        if (&c == &kWzP)
            return {ui->chkWzP, ui->txtWzP, ui->txtPcWzp,
                    {ui->txtEindWzp, ui->lblPcWzp, ui->lblEindLftWzP, ui->lblJaar}};
        return {ui->chkIP, ui->txtIP, ui->txtPcIP,
                {ui->cboUitkeringSoort, ui->cmdUitkeringSoort, ui->lblPcIP, ui->lblUitkeringSoort}};
    }

    void setup();
    void connectHandlers();

    void setApplication(const ApplicationPtr &app, qint16 Anv_Id, qint16 Pen_Id);
    bool fillControls();   // false when it ended in an error (already reported)
    void showAge(const QDate &date, TextBox *years, TextBox *months);
    void enableRow(const PcCommitment &c, bool on);
    void colourUitkeringSoort();
    void showWarnings();
    DienstverbandPtr dienstverband();

    void validation(bool &Cancel, qint32 code);
    void validationChecks(bool &Cancel, qint32 code);

    // Check box handlers.
    void chkOPClick();
    void chkPrePClick();
    void chkTOPClick(bool raiseInfoChanged);
    void chkPcClick(const PcCommitment &c);
    void chkAnwClick();
    void cboUitkeringSoortClick(int index);
    void warningClicked(int index);
    void cmdPensioenSpecificatieClick();
    void cmdScenarioOudersomspensioenClick();
    void cmdUitkeringSoortClick();

    // Field handlers.
    void amountValidation(const PcCommitment &c, bool &Cancel);
    void pcValidation(const PcCommitment &c, bool &Cancel);
    void txtOPValidation(bool &Cancel);
    void simpleValidation(const char *proc, qint32 code, bool &Cancel,
                          const std::function<void()> &store);
    void setDtOP();
    void setDtPreP();
    void emptyScenarioOP();
    void recomputeFollowers();

    void infoChanged() { Q_EMIT q->InfoChanged(); }
    void nameFields();
};

void PensToez::Private::setup()
{
    ui->setupUi(q);

    const QList<TextBox *> amounts{ui->txtOP, ui->txtPreP, ui->txtTOP, ui->txtPP, ui->txtPPNaAow,
                                   ui->txtPPna65, ui->txtPpNa65TotAow, ui->txtWzP, ui->txtIP,
                                   ui->txtAnwCompensatie};
    for (TextBox *box : amounts)
        box->setKind(FieldKind::Amount);
    // Two decimals: enough to see a percentage derived from an amount (40,50 %) without the
    // field pretending to a precision the single-precision value does not have.
    const QList<TextBox *> percentages{ui->txtPcPp, ui->txtPcPPNaAow, ui->txtPcPPna65,
                                       ui->txtPcPpNa65TotAow, ui->txtPcWzp, ui->txtPcIP};
    for (TextBox *box : percentages) {
        box->setKind(FieldKind::Percentage);
        box->setDecimals(2);
    }
    for (TextBox *box : {ui->txtIngangOP, ui->txtIngangPreP})
        box->setKind(FieldKind::Date);
    for (TextBox *box : {ui->txtLeeftijdOPJr, ui->txtLeeftijdOPMnd, ui->txtLeeftijdPrePJr,
                         ui->txtLeeftijdPrePMnd, ui->txtEindWzp})
        box->setKind(FieldKind::WholeNumber);

    ui->cmdWarningDubbelTellen_0->setVisible(false);
    ui->cmdWarningDubbelTellen_1->setVisible(false);
    ui->hntHdn->setHintText(QStringLiteral(
        "De percentages van nabestaanden-, wezen- en invaliditeitspensioen zijn percentages van "
        "het ouderdomspensioen (t.o.v. OP)."));
    // The specificatie button and its frame only appear for a scheme that has a specificatie.
    ui->cmdPensioenSpecificatie->setVisible(false);
    ui->fraPensioenSpecificatie->setVisible(false);

    // These captions break over two lines to keep the form narrow. Their width and so their
    // height are fixed, so the form need not be measured again for every width a container
    // tries (which made a scrolling container ask for the preferred height of everything).
    for (QLabel *caption : {ui->lblIngang_0, ui->lblIngang_1, ui->lblPensioenSpecificatie}) {
        QSizePolicy policy = caption->sizePolicy();
        policy.setHeightForWidth(false);
        caption->setSizePolicy(policy);
        const int width = caption->maximumWidth();
        caption->setFixedWidth(width);
        caption->setMinimumHeight(caption->heightForWidth(width));
    }
    nameFields();
    connectHandlers();
    ScaleToScreen(q);
}

// A screen reader says the caption of the row before each field, and which of the row's fields
// it is; the captions are the check boxes and labels the user reads on the same row.
void PensToez::Private::nameFields()
{
    const QString pc = QStringLiteral("% t.o.v. OP");
    NameAfterCaption(ui->txtOP, ui->chkOP, QStringLiteral("bedrag"));
    NameAfterCaption(ui->txtIngangOP, ui->chkOP, QStringLiteral("ingangsdatum"));
    NameAfterCaption(ui->txtLeeftijdOPJr, ui->chkOP, QStringLiteral("ingangsleeftijd jaren"));
    NameAfterCaption(ui->txtLeeftijdOPMnd, ui->chkOP, QStringLiteral("ingangsleeftijd maanden"));
    NameAfterCaption(ui->txtPreP, ui->chkPreP, QStringLiteral("bedrag"));
    NameAfterCaption(ui->txtIngangPreP, ui->chkPreP, QStringLiteral("ingangsdatum"));
    NameAfterCaption(ui->txtLeeftijdPrePJr, ui->chkPreP, QStringLiteral("ingangsleeftijd jaren"));
    NameAfterCaption(ui->txtLeeftijdPrePMnd, ui->chkPreP, QStringLiteral("ingangsleeftijd maanden"));
    NameAfterCaption(ui->txtTOP, ui->chkTOP, QStringLiteral("bedrag"));
    for (const PcCommitment *c : {&kPP, &kPPNaAow, &kPPna65, &kPpNa65TotAow, &kWzP, &kIP}) {
        const Widgets w = widgetsOf(*c);
        NameAfterCaption(w.amount, w.chk, QStringLiteral("bedrag"));
        NameAfterCaption(w.pc, w.chk, pc);
    }
    NameAfterCaption(ui->txtAnwCompensatie, ui->chkAnwCompensatie, QStringLiteral("bedrag"));
}

void PensToez::Private::connectHandlers()
{
    // clicked, not toggled: only the user's click acts; Fill_Controls setting a box does not.
    QObject::connect(ui->chkOP, &QCheckBox::clicked, q, [this] { chkOPClick(); });
    QObject::connect(ui->chkPreP, &QCheckBox::clicked, q, [this] { chkPrePClick(); });
    QObject::connect(ui->chkTOP, &QCheckBox::clicked, q, [this] { chkTOPClick(true); });
    for (const PcCommitment *c : {&kPP, &kPPNaAow, &kPPna65, &kPpNa65TotAow, &kWzP, &kIP}) {
        const Widgets w = widgetsOf(*c);
        QObject::connect(w.chk, &QCheckBox::clicked, q, [this, c] { chkPcClick(*c); });
        QObject::connect(w.amount, &TextBox::Validate, q,
                         [this, c](bool &Cancel) { amountValidation(*c, Cancel); });
        QObject::connect(w.pc, &TextBox::Validate, q,
                         [this, c](bool &Cancel) { pcValidation(*c, Cancel); });
    }
    QObject::connect(ui->chkAnwCompensatie, &QCheckBox::clicked, q, [this] { chkAnwClick(); });
    QObject::connect(ui->cboUitkeringSoort, &QComboBox::activated, q,
                     [this](int index) { cboUitkeringSoortClick(index); });
    QObject::connect(ui->cmdWarningDubbelTellen_0, &QAbstractButton::clicked, q,
                     [this] { warningClicked(0); });
    QObject::connect(ui->cmdWarningDubbelTellen_1, &QAbstractButton::clicked, q,
                     [this] { warningClicked(1); });

    QObject::connect(ui->cmdPensioenSpecificatie, &QAbstractButton::clicked, q,
                     [this] { cmdPensioenSpecificatieClick(); });
    QObject::connect(ui->cmdScenarioOudersomspensioen, &QAbstractButton::clicked, q,
                     [this] { cmdScenarioOudersomspensioenClick(); });
    QObject::connect(ui->cmdUitkeringSoort, &QAbstractButton::clicked, q,
                     [this] { cmdUitkeringSoortClick(); });

    QObject::connect(ui->txtOP, &TextBox::Validate, q, [this](bool &Cancel) { txtOPValidation(Cancel); });
    QObject::connect(ui->txtPreP, &TextBox::Validate, q, [this](bool &Cancel) {
        simpleValidation("TxtPreP_Validation", 11, Cancel, [this] {
            regel->setBedragPreP(ui->txtPreP->value());
            infoChanged();
        });
    });
    QObject::connect(ui->txtTOP, &TextBox::Validate, q, [this](bool &Cancel) {
        simpleValidation("TxtTOP_Validation", 12, Cancel, [this] {
            pensioen->setBedragTOP(ui->txtTOP->value());
            infoChanged();
        });
    });
    QObject::connect(ui->txtEindWzp, &TextBox::Validate, q, [this](bool &Cancel) {
        simpleValidation("TxtEindWzp_Validation", 2, Cancel, [this] {
            pensioen->setEindLeeftijdWzP(qint16(ui->txtEindWzp->value()));
            infoChanged();
        });
    });
    QObject::connect(ui->txtAnwCompensatie, &TextBox::Validate, q, [this](bool &Cancel) {
        simpleValidation("txtAnwCompensatie_Validation", 19, Cancel, [this] {
            pensioen->setBedragAnwCompensatie(ui->txtAnwCompensatie->value());
            infoChanged();
        });
    });
    QObject::connect(ui->txtIngangOP, &TextBox::Validate, q, [this](bool &Cancel) {
        simpleValidation("txtIngangOP_Validation", 3, Cancel, [this] {
            regel->setDt_IngangOP(ui->txtIngangOP->date());
            fillControls();
            chkTOPClick(false);
            infoChanged();
        });
    });
    QObject::connect(ui->txtIngangPreP, &TextBox::Validate, q, [this](bool &Cancel) {
        simpleValidation("TxtIngangPreP_Validation", 4, Cancel, [this] {
            regel->setDt_IngangPreP(ui->txtIngangPreP->date());
            fillControls();
            infoChanged();
        });
    });
    QObject::connect(ui->txtLeeftijdOPJr, &TextBox::Validate, q, [this](bool &Cancel) {
        simpleValidation("TxtLeeftijdOPJr_Validation", 1, Cancel, [this] { setDtOP(); });
    });
    QObject::connect(ui->txtLeeftijdOPMnd, &TextBox::Validate, q, [this](bool &Cancel) {
        simpleValidation("TxtLeeftijdOPMnd_Validation", 1, Cancel, [this] { setDtOP(); });
    });
    QObject::connect(ui->txtLeeftijdPrePJr, &TextBox::Validate, q, [this](bool &Cancel) {
        simpleValidation("TxtLeeftijdPrePJr_Validation", 5, Cancel, [this] { setDtPreP(); });
    });
    QObject::connect(ui->txtLeeftijdPrePMnd, &TextBox::Validate, q, [this](bool &Cancel) {
        simpleValidation("TxtLeeftijdPrePMnd_Validation", 5, Cancel, [this] { setDtPreP(); });
    });
}

// --- binding and filling -------------------------------------------------------------------

void PensToez::Private::setApplication(const ApplicationPtr &app, qint16 Anv_Id, qint16 Pen_Id)
{
    loading = true;
    application = app;
    trap.setApplication(app);
    if (Anv_Id < 1 || Pen_Id < 1) {
        aanvrager.reset();
        pensioen.reset();
        regel.reset();
        return;
    }
    aanvrager.reset();
    pensioen.reset();
    regel.reset();
    const DossierPtr dossier = app ? app->Get_Dossier() : nullptr;
    AanvragerPtr anv = dossier ? dossier->Get_Aanvrager(Anv_Id) : nullptr;
    PensioenPtr pen = anv ? anv->Get_Pensioen(Pen_Id) : nullptr;
    anvId = Anv_Id;
    penId = Pen_Id;

    if (anv) {
        const QDate birth = anv->GeboorteDatum();
        if (pen)
            pen->setDt_65(isFilled(birth) ? Rules::dateOf65(birth) : QDate());
        aowDate = isFilled(birth) ? Rules::aowDate(birth, anv->AowLeeftijd()) : QDate();
    }
    // Identifiers past the end of the host's lists bind nothing: the panel stays as inert as with 0.
    if (!anv || !pen)
        return;
    if (pen->UitgesteldSchrijven())
        pen->setUitgesteldSchrijven(false);
    // The panel edits old-age row 1; a record that never had one (a new scheme) gets it here, so
    // that every later handler can rely on it.
    if (pen->OuderdomRegelCount() < 1)
        pen->AddOuderdomRegel();
    OuderdomRegelPtr row = pen->Get_OuderdomRegel(1);
    if (!row)
        throw HostError(HostErrorCode::NotFound, QStringLiteral("Ouderdomsregel 1 ontbreekt."));
    aanvrager = anv;
    pensioen = pen;
    regel = row;

    // The partner pensions' percentages and amounts go through the record once, so that what the
    // panel shows and derives from is exactly what the record holds (single precision included).
    for (const PcCommitment *c : {&kPP, &kPPNaAow, &kPPna65, &kPpNa65TotAow}) {
        ((*pensioen).*(c->setPc))(((*pensioen).*(c->pc))());
        ((*pensioen).*(c->setAmount))(((*pensioen).*(c->amount))());
    }
    infoChanged();

    // Fields still showing the previous scheme must not be checked or stored against this one.
    if (!fillControls()) {
        aanvrager.reset();
        pensioen.reset();
        regel.reset();
        return;
    }
    loading = false;
}

void PensToez::Private::showAge(const QDate &date, TextBox *years, TextBox *months)
{
    if (!isFilled(date)) {
        years->setText(QString());
        months->setText(QString());
        return;
    }
    const auto age = Rules::splitMonths(aanvrager->AgeOnDate(date));
    years->setValue(age.years);
    months->setValue(age.months);
}

void PensToez::Private::enableRow(const PcCommitment &c, bool on)
{
    const Widgets w = widgetsOf(c);
    w.amount->setEnabled(on);
    w.pc->setEnabled(on);
    for (QWidget *companion : w.companions)
        companion->setEnabled(on);
    if (&c == &kIP)
        colourUitkeringSoort();
}

void PensToez::Private::colourUitkeringSoort()
{
    QComboBox *combo = ui->cboUitkeringSoort;
    const QColor colour = enabledOwn(combo, q) ? QApplication::palette().color(QPalette::Base)
                                                : ButtonFaceColor();
    QPalette palette = combo->palette();
    palette.setColor(QPalette::Base, colour);
    palette.setColor(QPalette::Button, colour);
    combo->setPalette(palette);
}

bool PensToez::Private::fillControls()
{
    return trap.run("Fill_Controls", [&] {
        const LayoutPause pause({q, ui->fraToezeggingen});
        if (!bound())
            return;
        // PreP
        const bool prep = regel->PreP();
        ui->chkPreP->setChecked(prep);
        ui->txtPreP->setValue(regel->BedragPreP());
        ui->txtIngangPreP->setDate(regel->Dt_IngangPreP());
        showAge(ui->txtIngangPreP->date(), ui->txtLeeftijdPrePJr, ui->txtLeeftijdPrePMnd);
        ui->chkPreP->setEnabled(regel->OP());
        for (QWidget *w : {static_cast<QWidget *>(ui->txtPreP), static_cast<QWidget *>(ui->txtIngangPreP),
                           static_cast<QWidget *>(ui->txtLeeftijdPrePJr),
                           static_cast<QWidget *>(ui->txtLeeftijdPrePMnd),
                           static_cast<QWidget *>(ui->lblIngang_1), static_cast<QWidget *>(ui->lblSlash_1),
                           static_cast<QWidget *>(ui->lblJaren_1), static_cast<QWidget *>(ui->lblMaanden_1)})
            w->setEnabled(prep);

        // OP
        const bool op = regel->OP();
        ui->chkOP->setChecked(op);
        ui->txtOP->setValue(regel->BedragOP());
        ui->txtIngangOP->setDate(regel->Dt_IngangOP());
        showAge(ui->txtIngangOP->date(), ui->txtLeeftijdOPJr, ui->txtLeeftijdOPMnd);
        for (QWidget *w : {static_cast<QWidget *>(ui->txtOP), static_cast<QWidget *>(ui->txtIngangOP),
                           static_cast<QWidget *>(ui->txtLeeftijdOPJr),
                           static_cast<QWidget *>(ui->txtLeeftijdOPMnd),
                           static_cast<QWidget *>(ui->lblIngang_0), static_cast<QWidget *>(ui->lblSlash_0),
                           static_cast<QWidget *>(ui->lblJaren_0), static_cast<QWidget *>(ui->lblMaanden_0)})
            w->setEnabled(op);

        // The companion of the specificatie button is the frame it sits in; both follow the rule.
        const bool specificatie = pensioen->HeeftSpecificatie();
        ui->fraPensioenSpecificatie->setVisible(specificatie);
        ui->cmdPensioenSpecificatie->setVisible(specificatie);
        ui->cmdScenarioOudersomspensioen->setEnabled(op);

        // TOP
        ui->chkTOP->setEnabled(enabledOwn(ui->txtIngangOP, q));
        ui->chkTOP->setChecked(pensioen->TOP());
        ui->txtTOP->setEnabled(ui->chkTOP->isChecked());
        ui->txtTOP->setValue(pensioen->BedragTOP());

        // Partner pensions
        for (const PcCommitment *c : {&kPP, &kPPNaAow, &kPpNa65TotAow, &kPPna65}) {
            const Widgets w = widgetsOf(*c);
            w.chk->setChecked(((*pensioen).*(c->flag))());
            w.amount->setValue(((*pensioen).*(c->amount))());
            w.pc->setValue(((*pensioen).*(c->pc))());
            enableRow(*c, w.chk->isChecked());
        }

        // ANW
        ui->chkAnwCompensatie->setChecked(pensioen->AnwCompensatie());
        ui->txtAnwCompensatie->setEnabled(ui->chkAnwCompensatie->isChecked());
        ui->txtAnwCompensatie->setValue(pensioen->BedragAnwCompensatie());

        // WzP
        ui->chkWzP->setChecked(pensioen->WzP());
        ui->txtWzP->setValue(pensioen->BedragWzP());
        ui->txtEindWzp->setValue(pensioen->EindLeeftijdWzP());
        ui->txtPcWzp->setValue(pensioen->Pc_WzP());
        enableRow(kWzP, ui->chkWzP->isChecked());

        // IP
        ui->hntInvaliditeitsPensioen->setHintText(QStringLiteral(
            "Vul hier het te ontvangen Invaliditeitspensioen in zonder eventuele IVA-uitkering."));
        ui->chkIP->setChecked(pensioen->IP());
        ui->txtIP->setValue(pensioen->BedragIP());
        ui->txtPcIP->setValue(pensioen->Pc_IP());
        const qint16 soort = pensioen->Cd_UitkeringSoort();
        ui->cboUitkeringSoort->setCurrentIndex(
            soort >= 1 && soort <= ui->cboUitkeringSoort->count() ? soort - 1 : -1);
        enableRow(kIP, ui->chkIP->isChecked());

        showWarnings();
    });
}

DienstverbandPtr PensToez::Private::dienstverband()
{
    const QString key = pensioen->DienstverbandKey();
    if (key.isEmpty())
        return nullptr;
    for (qint16 i = 1;; ++i) {
        DienstverbandPtr dv = aanvrager->Get_Dienstverband(i);
        if (!dv)
            return nullptr;
        if (dv->Key() == key)
            return dv;
    }
}

void PensToez::Private::showWarnings()
{
    trap.run("Show_Warnings", [&] {
        const LayoutPause pause({q, ui->fraToezeggingen});
        bool pensioenOverlap = false;
        bool prepOverlap = false;
        if (bound()) {
            if (const DienstverbandPtr dv = dienstverband()) {
                const QDate meetellenTot = dv->Dt_InkomenMeetellenTot();
                const QDate eindeInkomen =
                    isFilled(meetellenTot) ? meetellenTot : aanvrager->Dt_EindeInkomen();
                if (isFilled(eindeInkomen)) {
                    const QDate ingangOP = regel->Dt_IngangOP();
                    const QDate ingangPreP = regel->Dt_IngangPreP();
                    pensioenOverlap = regel->OP() && isFilled(ingangOP) && eindeInkomen > ingangOP;
                    prepOverlap = regel->PreP() && isFilled(ingangPreP) && eindeInkomen > ingangPreP;
                }
            }
        }
        ui->cmdWarningDubbelTellen_0->setVisible(pensioenOverlap);
        ui->cmdWarningDubbelTellen_1->setVisible(prepOverlap);
    });
}

void PensToez::Private::warningClicked(int index)
{
    trap.run("cmdWarningDubbelTellen_Clicked", [&] {
        const QAbstractButton *button =
            index == 0 ? static_cast<QAbstractButton *>(ui->cmdWarningDubbelTellen_0)
                       : static_cast<QAbstractButton *>(ui->cmdWarningDubbelTellen_1);
        // The message is the caption as the user reads it, without the mnemonic mark.
        MessageBox::ok(q, CaptionText(button->text()), QStringLiteral("Overlapping inkomsten"));
    });
}

// --- check box handlers --------------------------------------------------------------------

void PensToez::Private::emptyScenarioOP()
{
    const ScenarioPtr scenario = regel->ScenarioOP();
    // Always the first item until none is left; bounded so that a host refusing to remove an item
    // cannot hang the screen.
    for (qint32 guard = scenario->RegelCount(); guard > 0 && scenario->RegelCount() > 0; --guard)
        scenario->RemoveRegel(1);
}

void PensToez::Private::recomputeFollowers()
{
    const double op = regel->BedragOP();
    for (const PcCommitment *c : kFollowOP)
        ((*pensioen).*(c->setAmount))(Rules::amountFromPercentage(((*pensioen).*(c->pc))(), op));
}

void PensToez::Private::chkOPClick()
{
    if (loading || !bound())
        return;
    trap.run("ChkOP_Click", [&] {
        const bool on = ui->chkOP->isChecked();
        regel->setOP(on);
        if (!on) {
            regel->setBedragOP(0);
            emptyScenarioOP();
            regel->setLeeftijdOP(0);
            regel->setDt_IngangOP(QDate());
            for (const PcCommitment *c : {&kPP, &kPPNaAow, &kPpNa65TotAow, &kPPna65}) {
                ((*pensioen).*(c->setFlag))(false);
                ((*pensioen).*(c->setAmount))(0);
                ((*pensioen).*(c->setPc))(0.0f);
            }
            pensioen->setBedragWzP(0);
        }
        fillControls();
        chkTOPClick(false);
        infoChanged();
    });
}

void PensToez::Private::chkPrePClick()
{
    if (loading || !bound())
        return;
    trap.run("ChkPreP_Click", [&] {
        regel->setPreP(ui->chkPreP->isChecked());
        fillControls();
        infoChanged();
    });
}

void PensToez::Private::chkTOPClick(bool raiseInfoChanged)
{
    if (loading || !bound())
        return;
    trap.run("ChkTOP_Click", [&] {
        // The TOP bridges to the OP: without an OP it cannot be ticked.
        ui->chkTOP->setEnabled(ui->chkOP->isChecked());
        if (!enabledOwn(ui->chkTOP, q))
            ui->chkTOP->setChecked(false);
        const bool on = ui->chkTOP->isChecked();
        pensioen->setTOP(on);
        ui->txtTOP->setEnabled(on);
        ui->txtTOP->setValue(on ? pensioen->BedragTOP() : 0.0);
        if (raiseInfoChanged)
            infoChanged();
    });
}

void PensToez::Private::chkPcClick(const PcCommitment &c)
{
    if (loading || !bound())
        return;
    trap.run(c.clickProc, [&] {
        const Widgets w = widgetsOf(c);
        const bool on = w.chk->isChecked();
        ((*pensioen).*(c.setFlag))(on);
        float pc = 0.0f;
        if (on) {
            if (&c == &kWzP)
                pc = Rules::DefaultPcWezenPensioen;
            else if (&c == &kIP)
                pc = pensioen->Pc_IP();
            else
                pc = Rules::DefaultPcPartnerPensioen;
        }
        ((*pensioen).*(c.setPc))(pc);
        const double amount = on ? Rules::amountFromPercentage(pc, regel->BedragOP()) : 0.0;
        ((*pensioen).*(c.setAmount))(amount);
        w.pc->setValue(pc);
        w.amount->setValue(amount);
        enableRow(c, on);
        infoChanged();
    });
}

void PensToez::Private::chkAnwClick()
{
    if (loading || !bound())
        return;
    trap.run("ChkAnwCompensatie_Click", [&] {
        const bool on = ui->chkAnwCompensatie->isChecked();
        pensioen->setAnwCompensatie(on);
        ui->txtAnwCompensatie->setEnabled(on);
        if (!on)
            ui->txtAnwCompensatie->setValue(0);
        pensioen->setBedragAnwCompensatie(ui->txtAnwCompensatie->value());
        infoChanged();
    });
}

void PensToez::Private::cboUitkeringSoortClick(int index)
{
    if (loading || !bound() || index < 0)
        return;
    trap.run("cboUitkeringSoort_Click", [&] {
        const qint16 soort = qint16(index + 1);
        pensioen->setCd_UitkeringSoort(soort);
        // The kind becomes the schedule the disability dialog understands: a band (0, 0: 0) for
        // "below the minimum" and one band from 0 to 100 % that pays 100 % ("Volledig") or the
        // actual AO% ("Pro-rata"). The 100s go into that band's AO% tot and, for "Volledig", its
        // benefit; the minimum and full-benefit thresholds both read 0 in the dialog.
        while (pensioen->AoUitkeringItem(1))
            pensioen->AoUitkeringDelete(1);
        const AoUitkeringPtr geen = pensioen->AoUitkeringItem(pensioen->AoUitkeringAdd());
        geen->setPc_AoVanaf(0.0f);
        geen->setPc_AoTot(0.0f);
        geen->setPc_Uitkering(0.0f);
        const AoUitkeringPtr band = pensioen->AoUitkeringItem(pensioen->AoUitkeringAdd());
        band->setPc_AoVanaf(0.0f);
        band->setPc_AoTot(100.0f);
        band->setPc_Uitkering(soort == UitkeringSoort::Volledig ? 100.0f : -1.0f);
        infoChanged();
    });
}

// --- dialogs -------------------------------------------------------------------------------

void PensToez::Private::cmdPensioenSpecificatieClick()
{
    if (!bound())
        return;
    trap.run("cmdPensioenSpecificatie_Click", [&] {
        frmPensioenSpec dialog(q);
        dialog.SetApplication(application, anvId, penId);
        dialog.exec();
        if (!dialog.In_Changed())
            return;
        // The dialog may have removed and re-added rows: pick up whatever is row 1 now.
        if (pensioen->OuderdomRegelCount() < 1)
            pensioen->AddOuderdomRegel();
        regel = pensioen->Get_OuderdomRegel(1);
        recomputeFollowers();
        fillControls();
        chkTOPClick(false);
        infoChanged();
    });
}

void PensToez::Private::cmdScenarioOudersomspensioenClick()
{
    if (!bound())
        return;
    trap.run("cmdScenarioOudersomspensioen_Click", [&] {
        const QDate birth = aanvrager->GeboorteDatum();
        frmSpecificatieScenario dialog(q);
        dialog.Set_Application(application, regel->ScenarioOP(), regel->Dt_IngangOP(),
                               isFilled(birth) ? birth.addYears(100) : QDate());
        dialog.exec();
    });
}

void PensToez::Private::cmdUitkeringSoortClick()
{
    if (!bound())
        return;
    trap.run("cmdUitkeringSoort_Click", [&] {
        frmAoUitkering dialog(q);
        dialog.setApplication(application);
        dialog.setPensioen(pensioen);
        dialog.Fill_Form();
        dialog.exec();
    });
}

// --- field handlers ------------------------------------------------------------------------

void PensToez::Private::simpleValidation(const char *proc, qint32 code, bool &Cancel,
                                         const std::function<void()> &store)
{
    if (!bound())
        return;
    trap.run(proc, [&] {
        validation(Cancel, code);
        if (Cancel)
            return;
        store();
    });
}

void PensToez::Private::txtOPValidation(bool &Cancel)
{
    simpleValidation("TxtOP_Validation", 7, Cancel, [this] {
        regel->setBedragOP(ui->txtOP->value());
        recomputeFollowers();
        fillControls();
        infoChanged();
    });
}

void PensToez::Private::amountValidation(const PcCommitment &c, bool &Cancel)
{
    simpleValidation(c.amountProc, c.amountCode, Cancel, [this, &c] {
        const Widgets w = widgetsOf(c);
        const double amount = w.amount->value();
        ((*pensioen).*(c.setAmount))(amount);
        const float pc = Rules::percentageFromAmount(amount, regel->BedragOP());
        ((*pensioen).*(c.setPc))(pc);
        w.pc->setValue(pc);
        infoChanged();
    });
}

void PensToez::Private::pcValidation(const PcCommitment &c, bool &Cancel)
{
    simpleValidation(c.pcProc, c.pcCode, Cancel, [this, &c] {
        const Widgets w = widgetsOf(c);
        const float pc = float(w.pc->value());
        ((*pensioen).*(c.setPc))(pc);
        const double amount = Rules::amountFromPercentage(pc, regel->BedragOP());
        ((*pensioen).*(c.setAmount))(amount);
        w.amount->setValue(amount);
        infoChanged();
    });
}

void PensToez::Private::setDtOP()
{
    trap.run("Set_Dt_OP", [&] {
        regel->setLeeftijdOP(Rules::joinMonths(qint32(ui->txtLeeftijdOPJr->value()),
                                               qint32(ui->txtLeeftijdOPMnd->value())));
        emptyScenarioOP();
        fillControls();
        infoChanged();
    });
}

void PensToez::Private::setDtPreP()
{
    trap.run("Set_Dt_PreP", [&] {
        regel->setLeeftijdPreP(Rules::joinMonths(qint32(ui->txtLeeftijdPrePJr->value()),
                                                 qint32(ui->txtLeeftijdPrePMnd->value())));
        fillControls();
        infoChanged();
    });
}

// --- validation ----------------------------------------------------------------------------

void PensToez::Private::validation(bool &Cancel, qint32 code)
{
    if (!bound() || Cancel)
        return;
    if (code == 0)
        QCoreApplication::processEvents();
    trap.run("Validation", [&] { validationChecks(Cancel, code); });
}

void PensToez::Private::validationChecks(bool &Cancel, qint32 code)
{
    const auto runs = [&](qint32 own, QWidget *field) {
        return !Cancel && (code == own || code == 0) && enabledOwn(field, q);
    };
    const auto fail = [&](QWidget *field, const QString &text, const QString &title) {
        MessageBox::ok(q, text, title);
        Cancel = true;
        // A field's own check keeps the focus through its text box; the full check moves it.
        if (code == 0 && field)
            field->setFocus(Qt::OtherFocusReason);
    };
    const auto whole = [](const TextBox *box) { return qint32(box->value()); };
    const QDate birth = aanvrager->GeboorteDatum();

    // 1. OP starting age
    if (runs(1, ui->txtLeeftijdOPJr)) {
        const qint32 years = whole(ui->txtLeeftijdOPJr);
        if (years < Rules::MinOpYears || years > Rules::MaxOpYears)
            fail(ui->txtLeeftijdOPJr,
                 QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet tussen 50 en 99 jaar liggen."),
                 kTitleToezeggingen);
        // Compared with the PreP age as shown, also when the PreP is switched off: the adviser
        // still sees that age, and a later tick of the PreP must not find an OP starting earlier.
        else if (Rules::joinMonths(years, whole(ui->txtLeeftijdOPMnd))
                        < Rules::joinMonths(whole(ui->txtLeeftijdPrePJr), whole(ui->txtLeeftijdPrePMnd)))
            fail(ui->txtLeeftijdOPJr,
                 QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet hoger dan de "
                                "ingangsleeftijd van het prepensioen zijn."),
                 kTitleToezeggingen);
    }

    // 2. orphans' end age
    if (runs(2, ui->txtEindWzp)) {
        const qint32 eind = whole(ui->txtEindWzp);
        if (eind < Rules::MinEindWzp || eind > Rules::MaxEindWzp)
            fail(ui->txtEindWzp, QStringLiteral("Eindleeftijd wezenpensioen van 10 t/m 30 jaar invullen."),
                 kTitleOngeldig);
    }

    // 3. OP starting date
    if (runs(3, ui->txtIngangOP)) {
        const QDate op = ui->txtIngangOP->date();
        const QDate prep = ui->txtIngangPreP->date();
        if (!isFilled(op))
            fail(ui->txtIngangOP, QStringLiteral("Ingangsdatum ouderdomspensioen niet ingevuld."),
                 kTitleVerplicht);
        else if (enabledOwn(ui->txtIngangPreP, q) && isFilled(prep) && prep >= op)
            fail(ui->txtIngangOP,
                 QStringLiteral("Ingangsdatum ouderdomspensioen moet na de ingangsdatum pré-pensioen liggen."),
                 kTitleOngeldig);
        else if (isFilled(birth) && op < birth.addYears(50))
            fail(ui->txtIngangOP,
                 QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet tussen 50 en 99 jaar liggen."),
                 kTitleToezeggingen);
    }

    // 4. PreP starting date
    if (runs(4, ui->txtIngangPreP)) {
        const QDate prep = ui->txtIngangPreP->date();
        const QDate op = ui->txtIngangOP->date();
        if (!isFilled(prep)) {
            fail(ui->txtIngangPreP, QStringLiteral("Ingangsdatum pré-pensioen niet ingevuld."),
                 kTitleVerplicht);
        } else if (isFilled(birth) && prep < birth) {
            fail(ui->txtIngangPreP,
                 QStringLiteral("De ingangsdatum van het prepensioen moet na de geboortedatum van de aanvrager liggen."),
                 kTitleOngeldig);
        } else if (enabledOwn(ui->txtIngangOP, q) && isFilled(op) && op <= prep) {
            fail(ui->txtIngangPreP,
                 QStringLiteral("Ingangsdatum pré-pensioen moet voor de ingangsdatum ouderdomspensioen liggen."),
                 kTitleOngeldig);
        } else {
            const qint32 years = Rules::splitMonths(aanvrager->AgeOnDate(prep)).years;
            if (years < Rules::MinPrePYearsOnDate || years > Rules::MaxPrePYearsOnDate) {
                fail(ui->txtIngangPreP,
                     QStringLiteral("De ingangsleeftijd van het prepensioen moet tussen 40 en 80 jaar liggen."),
                     kTitleToezeggingen);
            } else if (const DienstverbandPtr dv = dienstverband()) {
                const QDate meetellenTot = dv->Dt_InkomenMeetellenTot();
                if (isFilled(meetellenTot) && meetellenTot != prep
                    && !MessageBox::yesNo(
                        q,
                        QStringLiteral("Ingangsdatum pré-pensioen stemt niet overeen met de datum "
                                       "inkomen meetellen tot van het dienstverband.\n"
                                       "Weet u zeker dat u dit wenst?"),
                        QStringLiteral("Ongelijke data"), MessageBox::Icon::None)) {
                    Cancel = true;
                    if (code == 0)
                        ui->txtIngangPreP->setFocus(Qt::OtherFocusReason);
                }
            }
        }
    }

    // 5. PreP starting age: its own field only; the full check sees it through the date (4).
    if (!Cancel && code == 5 && enabledOwn(ui->txtLeeftijdPrePJr, q)) {
        const qint32 months = Rules::joinMonths(whole(ui->txtLeeftijdPrePJr), whole(ui->txtLeeftijdPrePMnd));
        if (months < Rules::MinPrePMonths || months > Rules::MaxPrePMonths)
            fail(ui->txtLeeftijdPrePJr,
                 QStringLiteral("De ingangsleeftijd van het prepensioen moet tussen 40 en 99 jaar liggen."),
                 kTitleToezeggingen);
        else if (months > Rules::joinMonths(whole(ui->txtLeeftijdOPJr), whole(ui->txtLeeftijdOPMnd)))
            fail(ui->txtLeeftijdPrePJr,
                 QStringLiteral("De ingangsleeftijd van het prepensioen moet lager dan de "
                                "ingangsleeftijd van het ouderdomspensioen zijn."),
                 kTitleToezeggingen);
    }

    // 6. required amounts
    const struct
    {
        qint32 code;
        TextBox *field;
        const char *text;
    } required[] = {
        {6, ui->txtIP, "Bedrag invaliditeitspensioen niet ingevuld."},
        {7, ui->txtOP, "Bedrag ouderdomspensioen niet ingevuld."},
        {9, ui->txtPP, "Bedrag nabestaandenpensioen tot AOW bij overlijden voor AOW niet ingevuld."},
        {20, ui->txtPPNaAow, "Bedrag nabestaandenpensioen na AOW bij overlijden voor AOW niet ingevuld."},
        {22, ui->txtPpNa65TotAow, "Bedrag nabestaandenpensioen tot AOW bij overlijden na AOW niet ingevuld."},
        {10, ui->txtPPna65, "Bedrag nabestaandenpensioen na AOW bij overlijden na AOW niet ingevuld."},
    };
    for (const auto &r : required) {
        if (runs(r.code, r.field) && r.field->value() == 0.0)
            fail(r.field, QString::fromUtf8(r.text), kTitleVerplicht);
    }

    // 7. PreP amount, and the 85 % rule when the user leaves the field itself
    if (runs(11, ui->txtPreP)) {
        const double prep = ui->txtPreP->value();
        if (prep == 0.0) {
            fail(ui->txtPreP, QStringLiteral("Bedrag pré-pensioen niet ingevuld."), kTitleVerplicht);
        } else if (code == 11 && pensioen->Regel85Procent()) {
            const double inkomen = pensioen->PensioengevendInkomen();
            const double limit = Rules::Regel85Factor * inkomen;
            if (inkomen == 0.0) {
                fail(ui->txtPreP, QStringLiteral("Pensioengevend inkomen niet ingevuld."),
                     QStringLiteral("Ontbrekende invoer"));
            } else if (prep > limit
                       && !MessageBox::yesNo(
                           q,
                           QStringLiteral("Opgegeven pré-pensioen is meer dan 85% (")
                               + VandrelControl::Format::amount(limit)
                               + QStringLiteral(") van het pensioengevend inkomen.\nWeet u dit zeker?"),
                           QStringLiteral("LET OP!"), MessageBox::Icon::Exclamation)) {
                Cancel = true;
            }
        }
    }

    // 8. required amounts, continued
    if (runs(12, ui->txtTOP) && ui->txtTOP->value() == 0.0)
        fail(ui->txtTOP, QStringLiteral("Bedrag overbruggingspensioen niet ingevuld."), kTitleVerplicht);
    if (runs(13, ui->txtWzP) && ui->txtWzP->value() == 0.0)
        fail(ui->txtWzP, QStringLiteral("Bedrag wezenpensioen niet ingevuld."), kTitleVerplicht);

    // 9. percentages, whether or not their field is enabled
    const struct
    {
        qint32 code;
        TextBox *field;
        double limit;
        const char *text;
    } percentages[] = {
        {15, ui->txtPcPp, Rules::MaxPcPartnerPensioen,
         "Percentage partnerpensioen voor AOW bij overlijden voor AOW (t.o.v. OP) van 0% t/m 1000% invullen."},
        {21, ui->txtPcPPNaAow, Rules::MaxPcPartnerPensioen,
         "Percentage partnerpensioen na AOW bijoverlijden voor AOW (t.o.v. OP) van 0% t/m 1000% invullen."},
        {16, ui->txtPcWzp, Rules::MaxPcWezenPensioen,
         "Percentage wezenpensioen (t.o.v. OP) van 0% t/m 100% invullen."},
        {17, ui->txtPcPPna65, Rules::MaxPcPartnerPensioen,
         "Percentage partnerpensioen na AOW bij overlijden na AOW (t.o.v. OP) van 0% t/m 1000% invullen."},
        {23, ui->txtPcPpNa65TotAow, Rules::MaxPcPartnerPensioen,
         "Percentage partnerpensioen voor AOW bij overlijden na AOW (t.o.v. OP) van 0% t/m 1000% invullen."},
    };
    for (const auto &p : percentages) {
        if (!Cancel && (code == p.code || code == 0) && p.field->value() > p.limit)
            fail(p.field, QString::fromUtf8(p.text), kTitleOngeldig);
    }

    // 10. ANW compensation; the host's maximum is already 75 % of the maximum ANW benefit
    if (!Cancel && (code == 19 || code == 0)) {
        const ParametersPtr parameters = application ? application->Get_Parameters() : nullptr;
        const double max = parameters ? parameters->MaxAnwCompensation() : 0.0;
        if (parameters && ui->txtAnwCompensatie->value() > max)
            fail(ui->txtAnwCompensatie,
                 QStringLiteral("Maximale ANW-compensatie is ") + VandrelControl::Format::whole(max)
                     + QStringLiteral(" (=75% maximale ANW)."),
                 kTitleOngeldig);
    }

    // 11. The scheme's own start date follows the OP start of row 1, which is what the user edits
    // here; an OP without a date leaves the scheme's date alone rather than wiping it.
    if (!Cancel && code == 0) {
        const QDate ingangOP = regel->Dt_IngangOP();
        if (isFilled(ingangOP) && pensioen->Dt_PensioenIngang() != ingangOP)
            pensioen->setDt_PensioenIngang(ingangOP);
    }
}

// --- public members ------------------------------------------------------------------------

PensToez::PensToez(QWidget *parent)
    : SchemePanel(parent)
    , d(std::make_unique<Private>(this))
{
    d->setup();
}

PensToez::~PensToez() = default;

void PensToez::SetApplication(const ApplicationPtr &Application, qint16 Anv_Id, qint16 Pen_Id)
{
    if (!d->trap.run("SetApplication", [&] { d->setApplication(Application, Anv_Id, Pen_Id); })) {
        // Half-bound after a failure: as inert as with identifiers 0, so no field edits or checks
        // a scheme the panel never finished showing.
        d->aanvrager.reset();
        d->pensioen.reset();
        d->regel.reset();
    }
}

void PensToez::Validation(bool &Cancel, qint32 ControleNr)
{
    d->validation(Cancel, ControleNr);
}

} // namespace VandrelPensioen
