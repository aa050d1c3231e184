// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "pensgeg.h"

#include "accessiblenames.h"
#include "errortrap.h"
#include "franchise.h"
#include "messagebox.h"
#include "platformroutines.h"
#include "schemevalidation.h"
#include "textbox.h"
#include "ui_pensgeg.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QRadioButton>
#include <QScopeGuard>
#include <QSignalBlocker>

#include <array>
#include <functional>
#include <optional>

namespace VandrelPensioen {

using namespace VandrelApplication;
using VandrelControl::FieldKind;
using VandrelControl::TextBox;

namespace {
constexpr std::array<qint32, 4> kSyncBits{SyncVlag::Salaris, SyncVlag::Franchise,
                                          SyncVlag::Grondslag, SyncVlag::Aangroei};
// Frames stand below each other across the panel's full width, 60 twips apart, each as high as
// its visible rows need; a hidden frame takes no room.
constexpr int kFrameAfstand = 60;
}

class PensGeg::Private : public QObject
{
public:
    explicit Private(PensGeg *control)
        : q(control)
        , ui(std::make_unique<Ui::PensGeg>())
        , trap(QStringLiteral("PensGeg"), QStringLiteral("Pensioen"))
    {
    }

    QCheckBox *chkSynced(int index) const
    {
        const std::array<QCheckBox *, 4> boxes{ui->chkSynced_0, ui->chkSynced_1, ui->chkSynced_2,
                                               ui->chkSynced_3};
        return boxes[size_t(index)];
    }

    // Each returns false when it ended in an error (already reported).
    bool Fill_FraRegeling();
    bool Fill_FraGrondslag();
    bool Fill_FraBijdrage();
    bool Sync_Velden();
    std::optional<double> Calc_Franchise();
    void chkSynced_Click(int index);
    void optRegeling_Click(const char *procedure, qint16 soort);
    void txtDefault_GotFocus(Qt::FocusReason reason);
    void Resize();
    // The width and height the stacked frames need: at their least or at their preferred width.
    QSize stackSize(bool least) const;
    QSize gemeldeRuimte;   // the preferred size last reported to the container
    SchemeFields shownFields() const;

    // A field whose value goes to the host when the user leaves it: first its own check (0 for
    // none), then store.
    void onLeave(TextBox *field, const char *procedure, qint16 controleNr,
                 std::function<void()> store);

    bool eventFilter(QObject *watched, QEvent *event) override;

    PensGeg *q;
    std::unique_ptr<Ui::PensGeg> ui;
    ErrorTrap trap;
    ApplicationPtr application;
    DossierPtr dossier;
    PensioenPtr pensioen;
    qint16 anvId = 0;
    qint16 penId = 0;
    bool loading = false;
    bool settingApplication = false;
};

namespace {

// Option buttons set by code: all three may be off, and no click may follow.
void setOption(QRadioButton *option, bool on)
{
    const QSignalBlocker block(option);
    option->setAutoExclusive(false);
    option->setChecked(on);
    option->setAutoExclusive(true);
}

void showDate(TextBox *field, const QDate &value)
{
    field->setDate(isFilled(value) ? value : QDate());
}

} // namespace

PensGeg::PensGeg(QWidget *parent)
    : SchemePanel(parent)
    , d(std::make_unique<Private>(this))
{
    auto *ui = d->ui.get();
    ui->setupUi(this);

    // The percentage and premium fields stand after their option button, and the boxes that keep
    // a value up to date before the value's label: a screen reader says that caption.
    NameAfterCaption(ui->txtEindloon, ui->optEindloon, QStringLiteral("opbouw %"));
    NameAfterCaption(ui->txtMiddelloon, ui->optMiddelloon, QStringLiteral("opbouw %"));
    NameAfterCaption(ui->TxtBeschikbarePremie, ui->optBeschikbarePremie, QStringLiteral("premie"));
    NameAfterCaption(ui->chkSynced_0, ui->LblSalaris, QStringLiteral("automatisch bijhouden"));
    NameAfterCaption(ui->chkSynced_1, ui->LblFranchise, QStringLiteral("automatisch bijhouden"));
    NameAfterCaption(ui->chkSynced_2, ui->LblGrondslag, QStringLiteral("automatisch bijhouden"));
    NameAfterCaption(ui->chkSynced_3, ui->LblAangroei, QStringLiteral("automatisch bijhouden"));

    for (TextBox *amount : {ui->TxtBeschikbarePremie, ui->txtSalaris, ui->txtFranchise,
                            ui->TxtGrondslag, ui->txtAangroei, ui->txtOpgebouwd,
                            ui->TxtDoelvermogen, ui->TxtBijdrageOP, ui->TxtBijdragePreP,
                            ui->TxtBijdrageVrijwillig})
        amount->setKind(FieldKind::Amount);
    for (TextBox *percentage : {ui->txtEindloon, ui->txtMiddelloon, ui->TxtPcOpbouw,
                                ui->TxtPcUitkering}) {
        percentage->setKind(FieldKind::Percentage);
        percentage->setDecimals(3);
    }
    ui->TxtOverzicht->setKind(FieldKind::Date);
    ui->txtDefault->setKind(FieldKind::Text);
    ui->txtDefault->setCausesValidation(false);
    ui->txtDefault->installEventFilter(d.get());
    ScaleToScreen(this);

    connect(ui->Uitvoerder, &PensUitv::InfoChanged, this, &PensGeg::InfoChanged,
            Qt::DirectConnection);
    connect(ui->Uitvoerder, &PensUitv::AanvragerChanged, this,
            [this](qint16 &Anv_Id, qint16 &Pen_Id) { Q_EMIT AanvragerChanged(Anv_Id, Pen_Id); },
            Qt::DirectConnection);
    connect(ui->Uitvoerder, &PensUitv::ChangeAanvrager, this,
            [this](bool &Cancel) { Q_EMIT ChangeAanvrager(Cancel); }, Qt::DirectConnection);
    connect(ui->Uitvoerder, &PensUitv::DienstverbandChanged, this,
            &PensGeg::DienstverbandChanged, Qt::DirectConnection);

    const auto option = [this](QRadioButton *button, const char *procedure, qint16 soort) {
        connect(button, &QRadioButton::toggled, this, [this, procedure, soort](bool on) {
            // Only the option that comes on is a click; the one going off follows it.
            if (on)
                d->optRegeling_Click(procedure, soort);
        });
    };
    option(ui->optEindloon, "optEindloon_Click", SoortRegeling::Eindloon);
    option(ui->optMiddelloon, "optMiddelloon_Click", SoortRegeling::Middelloon);
    option(ui->optBeschikbarePremie, "optBeschikbarePremie_Click",
           SoortRegeling::BeschikbarePremie);

    for (int i = 0; i < 4; ++i)
        connect(d->chkSynced(i), &QCheckBox::toggled, this, [this, i] { d->chkSynced_Click(i); });

    auto *p = d.get();
    const auto percentageStore = [p](TextBox *field) {
        return [p, field] {
            p->pensioen->setOpbouwPercentage(float(field->value()));
            // Whatever the synchronisation bits say, a typed percentage recomputes factor A, cut
            // off to whole euros (bit 64 would keep the cents).
            const double aangroei = berekenAangroeiAfgekapt(p->pensioen->OpbouwPercentage(),
                                                            p->pensioen->Grondslag());
            p->pensioen->setAangroei(aangroei);
            p->ui->txtAangroei->setValue(p->pensioen->Aangroei());
        };
    };
    d->onLeave(ui->txtEindloon, "txtEindloon_Validate", SchemeCheck::Eindloon,
               percentageStore(ui->txtEindloon));
    d->onLeave(ui->txtMiddelloon, "txtMiddelloon_Validate", SchemeCheck::Middelloon,
               percentageStore(ui->txtMiddelloon));
    d->onLeave(ui->TxtGrondslag, "TxtGrondslag_Validate", SchemeCheck::Grondslag, [p] {
        p->pensioen->setGrondslag(p->ui->TxtGrondslag->value());
        p->Sync_Velden();
    });
    d->onLeave(ui->TxtOverzicht, "TxtOverzicht_Validate", SchemeCheck::Overzicht,
               [p] { p->pensioen->setDt_Overzicht(p->ui->TxtOverzicht->date()); });
    d->onLeave(ui->txtAangroei, "txtAangroei_Validate", SchemeCheck::Aangroei,
               [p] { p->pensioen->setAangroei(p->ui->txtAangroei->value()); });
    d->onLeave(ui->TxtDoelvermogen, "TxtDoelvermogen_Validate", SchemeCheck::Doelvermogen,
               [p] { p->pensioen->setDoelvermogen(p->ui->TxtDoelvermogen->value()); });
    d->onLeave(ui->TxtPcOpbouw, "TxtPcOpbouw_Validate", SchemeCheck::PcOpbouw,
               [p] { p->pensioen->setRekenrenteOpbouw(float(p->ui->TxtPcOpbouw->value())); });
    d->onLeave(ui->TxtPcUitkering, "TxtPcUitkering_Validate", SchemeCheck::PcUitkering,
               [p] { p->pensioen->setRekenrenteUitkering(float(p->ui->TxtPcUitkering->value())); });
    d->onLeave(ui->txtSalaris, "txtSalaris_Validate", 0, [p] {
        p->pensioen->setSalaris(p->ui->txtSalaris->value());
        p->Sync_Velden();
    });
    d->onLeave(ui->txtFranchise, "txtFranchise_Validate", 0, [p] {
        p->pensioen->setFranchise(p->ui->txtFranchise->value());
        p->Sync_Velden();
    });
    d->onLeave(ui->TxtBeschikbarePremie, "TxtBeschikbarePremie_Validate", 0,
               [p] { p->pensioen->setPremie(p->ui->TxtBeschikbarePremie->value()); });
    d->onLeave(ui->txtOpgebouwd, "txtOpgebouwd_Validate", 0,
               [p] { p->pensioen->setOpgebouwd(p->ui->txtOpgebouwd->value()); });
    d->onLeave(ui->TxtBijdrageOP, "TxtBijdrageOP_Validate", 0,
               [p] { p->pensioen->setBijdrageOP(p->ui->TxtBijdrageOP->value()); });
    d->onLeave(ui->TxtBijdragePreP, "TxtBijdragePreP_Validate", 0,
               [p] { p->pensioen->setBijdragePreP(p->ui->TxtBijdragePreP->value()); });
    d->onLeave(ui->TxtBijdrageVrijwillig, "TxtBijdrageVrijwillig_Validate", 0, [p] {
        p->pensioen->setBijdrageVrijwillig(p->ui->TxtBijdrageVrijwillig->value());
    });

    d->Resize();
}

PensGeg::~PensGeg() = default;

void PensGeg::SetApplication(const ApplicationPtr &Application, qint16 Anv_Id, qint16 Pen_Id)
{
    // The provider control announces the employment it selects while this panel loads; the
    // container answers with a reload of the scheme it showed until then, which must not cut the
    // load in progress short (that load reads the newest data anyway).
    if (d->settingApplication)
        return;
    d->settingApplication = true;
    const auto settled = qScopeGuard([this] { d->settingApplication = false; });
    d->loading = true;
    bool gevuld = false;
    d->trap.run("SetApplication", [&] {
        d->application = Application;
        d->trap.setApplication(Application);
        d->dossier = Application ? Application->Get_Dossier() : nullptr;
        d->anvId = Anv_Id;
        d->penId = Pen_Id;
        d->pensioen.reset();
        // Without a scheme the loading flag stays set, so no handler can write anywhere. One
        // identifier 0 names no scheme either.
        if (Anv_Id <= 0 || Pen_Id <= 0)
            return;

        const AanvragerPtr aanvrager = d->dossier ? d->dossier->Get_Aanvrager(Anv_Id) : nullptr;
        const PensioenPtr pensioen = aanvrager ? aanvrager->Get_Pensioen(Pen_Id) : nullptr;
        if (!pensioen)
            throw HostError(HostErrorCode::NotFound,
                            QStringLiteral("De pensioenregeling %1 van deelnemer %2 bestaat niet.")
                                .arg(Pen_Id).arg(Anv_Id),
                            QStringLiteral("PensGeg"));
        d->pensioen = pensioen;
        // The record's deferred-write mode would hold accepted edits back until it is switched
        // off; this panel promises that every accepted field is stored when the user leaves it.
        d->pensioen->setUitgesteldSchrijven(false);

        d->ui->Uitvoerder->SetApplication(Application, Anv_Id, Pen_Id);

        // Every part must have been shown: a check on fields still showing another scheme would
        // hold the user for values that are not this scheme's.
        const bool regeling = d->Fill_FraRegeling();
        const bool grondslag = d->Fill_FraGrondslag();
        const bool sync = d->Sync_Velden();
        const bool bijdrage = d->Fill_FraBijdrage();
        gevuld = regeling && grondslag && sync && bijdrage;
    });
    // A load that failed half-way keeps the panel inert rather than editing a half-shown scheme.
    if (gevuld) {
        d->loading = false;
        d->Resize();
    } else if (Anv_Id > 0 && Pen_Id > 0) {
        // Nor may it check one, and the provider part must let go of the scheme shown before.
        d->pensioen.reset();
        d->ui->Uitvoerder->SetApplication(nullptr, 0, 0);
    }
}

void PensGeg::Validation(bool &Cancel, qint32 ControleNr)
{
    d->trap.run("Validation", [&] {
        // A field that is still being left commits its value first.
        if (ControleNr == 0)
            QCoreApplication::processEvents();
        if (Cancel || !d->pensioen)
            return;
        const auto failure = checkSchemeFields(d->shownFields(), ControleNr,
                                               QDateTime::currentDateTime());
        if (!failure)
            return;
        VandrelControl::MessageBox::ok(this, failure->message, failure->title);
        Cancel = true;
    });
}

void PensGeg::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    d->Resize();
}

void PensGeg::Private::onLeave(TextBox *field, const char *procedure, qint16 controleNr,
                               std::function<void()> store)
{
    connect(field, &TextBox::Validate, this,
            [this, procedure, controleNr, store = std::move(store)](bool &Cancel) {
                if (loading || !pensioen)
                    return;
                trap.run(procedure, [&] {
                    if (controleNr != 0) {
                        q->Validation(Cancel, controleNr);
                        if (Cancel)
                            return;
                    }
                    store();
                });
            },
            Qt::DirectConnection);
}

bool PensGeg::Private::Fill_FraRegeling()
{
    return trap.run("Fill_FraRegeling", [&] {
        const qint16 soort = pensioen->SoortRegeling();
        setOption(ui->optEindloon, soort == SoortRegeling::Eindloon);
        setOption(ui->optMiddelloon, soort == SoortRegeling::Middelloon);
        setOption(ui->optBeschikbarePremie, soort == SoortRegeling::BeschikbarePremie);

        const bool bekend = pensioen->RegelingBekend();
        const ParametersPtr parameters = application->Get_Parameters();

        // One percentage serves both pay types; the field of the type not chosen shows 0 so
        // that the two fields add up to the scheme's percentage.
        const auto opbouw = [&](QRadioButton *option, TextBox *field, float standaard) {
            if (bekend && option->isChecked() && pensioen->OpbouwPercentage() == 0.0f)
                pensioen->setOpbouwPercentage(standaard);
            // Only an actual change is written: loading a scheme should not rewrite the case.
            if (!bekend && pensioen->OpbouwPercentage() != 0.0f)
                pensioen->setOpbouwPercentage(0.0f);
            const bool aan = option->isChecked() && bekend;
            field->setEnabled(aan);
            field->setValue(aan ? double(pensioen->OpbouwPercentage()) : 0.0);
        };
        opbouw(ui->optEindloon, ui->txtEindloon,
               parameters ? parameters->DefaultOpbouwEindloon() : 0.0f);
        opbouw(ui->optMiddelloon, ui->txtMiddelloon,
               parameters ? parameters->DefaultOpbouwMiddelloon() : 0.0f);

        ui->TxtBeschikbarePremie->setEnabled(ui->optBeschikbarePremie->isChecked());
        ui->TxtBeschikbarePremie->setValue(pensioen->Premie());
        ui->TxtPcUitkering->setValue(double(pensioen->RekenrenteUitkering()));
        ui->TxtDoelvermogen->setValue(pensioen->Doelvermogen());
    });
}

bool PensGeg::Private::Fill_FraGrondslag()
{
    return trap.run("Fill_FraGrondslag", [&] {
        const LayoutPause pause({ui->fraGrondslag});
        ui->fraGrondslag->setVisible(pensioen->RegelingBekend());

        {
            // Restores what it found rather than clearing: SetApplication keeps its own flag.
            const bool was = loading;
            loading = true;
            const auto herstel = qScopeGuard([&] { loading = was; });
            const qint32 vlaggen = dossier->SyncVlaggen();
            for (int i = 0; i < 4; ++i)
                chkSynced(i)->setChecked((vlaggen & kSyncBits[size_t(i)]) != 0);
            if (vlaggen & SyncVlag::Franchise) {
                if (const auto franchise = Calc_Franchise())
                    pensioen->setFranchise(*franchise);
            }
        }

        ui->txtSalaris->setValue(pensioen->Salaris());

        const bool premie = pensioen->SoortRegeling() == SoortRegeling::BeschikbarePremie;
        for (QWidget *w : std::initializer_list<QWidget *>{
                 ui->LblFranchise, ui->txtFranchise, ui->hntFranchise, ui->LblGrondslag,
                 ui->TxtGrondslag})
            w->setVisible(!premie);
        ui->txtFranchise->setValue(pensioen->Franchise());
        ui->TxtGrondslag->setValue(pensioen->Grondslag());

        for (QWidget *w : std::initializer_list<QWidget *>{
                 ui->LblPcOpbouw, ui->TxtPcOpbouw, ui->LblPcUitkering, ui->TxtPcUitkering,
                 ui->lblDoelvermogen, ui->TxtDoelvermogen})
            w->setVisible(premie);
        ui->TxtPcOpbouw->setValue(double(pensioen->RekenrenteOpbouw()));
        ui->TxtPcUitkering->setValue(double(pensioen->RekenrenteUitkering()));
        ui->TxtDoelvermogen->setValue(pensioen->Doelvermogen());
        ui->txtAangroei->setValue(pensioen->Aangroei());
        ui->txtOpgebouwd->setValue(pensioen->Opgebouwd());
        showDate(ui->TxtOverzicht, pensioen->Dt_Overzicht());

        for (int i = 1; i < 4; ++i)
            chkSynced(i)->setVisible(!premie);
    });
}

bool PensGeg::Private::Fill_FraBijdrage()
{
    return trap.run("Fill_FraBijdrage", [&] {
        ui->fraBijdrage->setVisible(pensioen->RegelingBekend());
        ui->TxtBijdragePreP->setValue(pensioen->BijdragePreP());
        ui->TxtBijdrageOP->setValue(pensioen->BijdrageOP());
        ui->TxtBijdrageVrijwillig->setValue(pensioen->BijdrageVrijwillig());
    });
}

std::optional<double> PensGeg::Private::Calc_Franchise()
{
    std::optional<double> franchise;
    // On an error there is no franchise at all, so the caller writes nothing instead of 0.
    trap.run("Calc_Franchise", [&] {
        const qint16 soort = pensioen->SoortRegeling();
        const AanvragerPtr aanvrager = dossier->Get_Aanvrager(anvId);
        const ParametersPtr parameters = application->Get_Parameters();
        if (!aanvrager || !parameters)
            throw HostError(HostErrorCode::NotFound,
                            QStringLiteral("Deelnemer of parameters niet gevonden."),
                            QStringLiteral("PensGeg"));
        franchise = calcFranchise(soort, aanvrager->Categorie(),
                                  FranchiseBedragen::from(*parameters));
    });
    return franchise;
}

bool PensGeg::Private::Sync_Velden()
{
    return trap.run("Sync_Velden", [&] {
        // Each step reads the word afresh and reads its inputs back from the scheme, so a later
        // rule always works on what the earlier ones stored.
        if (dossier->SyncVlaggen() & SyncVlag::Salaris) {
            const AanvragerPtr aanvrager = dossier->Get_Aanvrager(anvId);
            QList<DienstverbandSalaris> dienstverbanden;
            for (qint16 i = 1; aanvrager; ++i) {
                const DienstverbandPtr dv = aanvrager->Get_Dienstverband(i);
                if (!dv)
                    break;
                dienstverbanden.append({dv->Key(), dv->Salaris()});
            }
            if (const auto salaris = salarisVanDienstverband(pensioen->DienstverbandKey(),
                                                             dienstverbanden))
                pensioen->setSalaris(*salaris);
            ui->txtSalaris->setValue(pensioen->Salaris());
            ui->txtSalaris->setEnabled(false);
        } else {
            ui->txtSalaris->setValue(pensioen->Salaris());
            ui->txtSalaris->setEnabled(true);
        }

        if (dossier->SyncVlaggen() & SyncVlag::Franchise) {
            if (const auto franchise = Calc_Franchise())
                pensioen->setFranchise(*franchise);
            ui->txtFranchise->setValue(pensioen->Franchise());
            ui->txtFranchise->setEnabled(false);
        } else {
            ui->txtFranchise->setEnabled(true);
        }

        if (dossier->SyncVlaggen() & SyncVlag::Grondslag) {
            pensioen->setGrondslag(berekenGrondslag(pensioen->Salaris(), pensioen->Franchise()));
            ui->TxtGrondslag->setValue(pensioen->Grondslag());
            ui->TxtGrondslag->setEnabled(false);
        } else {
            ui->TxtGrondslag->setEnabled(true);
        }

        if ((dossier->SyncVlaggen() & SyncVlag::Aangroei)
            && pensioen->SoortRegeling() != SoortRegeling::BeschikbarePremie) {
            pensioen->setAangroei(berekenAangroei(pensioen->OpbouwPercentage(),
                                                  pensioen->Grondslag()));
            ui->txtAangroei->setValue(pensioen->Aangroei());
            ui->txtAangroei->setEnabled(false);
        } else {
            ui->txtAangroei->setEnabled(true);
        }
    });
}

void PensGeg::Private::chkSynced_Click(int index)
{
    // A panel that never got a scheme (its first load failed or never came) has no case to write.
    if (loading || !pensioen || !dossier)
        return;
    trap.run("chkSynced_Click", [&] {
        if (index < 0 || index > 3)
            return;
        const qint32 bit = kSyncBits[size_t(index)];
        qint32 vlaggen = dossier->SyncVlaggen();
        if (chkSynced(index)->isChecked()) {
            if (!(vlaggen & bit))
                vlaggen += bit;
        } else if (vlaggen & bit) {
            vlaggen -= bit;
        }
        dossier->setSyncVlaggen(vlaggen);
        Sync_Velden();
    });
}

void PensGeg::Private::optRegeling_Click(const char *procedure, qint16 soort)
{
    // As above: without a loaded scheme the click only moves the option.
    if (loading || !pensioen)
        return;
    const bool ok = trap.run(procedure, [&] {
        // A new type starts from its own defaults: no percentage, no factor A.
        pensioen->setOpbouwPercentage(0.0f);
        pensioen->setSoortRegeling(soort);
        Fill_FraRegeling();
        pensioen->setAangroei(0);
        Fill_FraGrondslag();
    });
    Resize();
    if (ok)
        Q_EMIT q->InfoChanged();
}

void PensGeg::Private::txtDefault_GotFocus(Qt::FocusReason reason)
{
    trap.run("txtDefault_GotFocus", [&] {
        if (reason == Qt::BacktabFocusReason) {
            // Going backwards the hidden field is passed by, or Shift+Tab could never leave the
            // type options.
            for (QWidget *w = ui->txtDefault->previousInFocusChain(); w && w != ui->txtDefault;
                 w = w->previousInFocusChain()) {
                if ((w->focusPolicy() & Qt::TabFocus) && w->isVisible() && w->isEnabled()
                    && w->window() == q->window()) {
                    w->setFocus(Qt::BacktabFocusReason);
                    return;
                }
            }
            return;
        }
        QRadioButton *target = ui->optEindloon->isChecked()     ? ui->optEindloon
                             : ui->optMiddelloon->isChecked()   ? ui->optMiddelloon
                                                                : ui->optBeschikbarePremie;
        target->setFocus(Qt::TabFocusReason);
    });
}

bool PensGeg::Private::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->txtDefault && event->type() == QEvent::FocusIn)
        txtDefault_GotFocus(static_cast<QFocusEvent *>(event)->reason());
    return QObject::eventFilter(watched, event);
}

SchemeFields PensGeg::Private::shownFields() const
{
    SchemeFields f;
    f.regelingVisible = ui->fraRegeling->isVisibleTo(q);
    f.eindloonEnabled = ui->txtEindloon->isEnabledTo(q);
    f.middelloonEnabled = ui->txtMiddelloon->isEnabledTo(q);
    f.grondslagFrameVisible = ui->fraGrondslag->isVisibleTo(q);
    f.grondslagVisible = ui->TxtGrondslag->isVisibleTo(ui->fraGrondslag);
    f.beschikbarePremie = ui->optBeschikbarePremie->isChecked();
    f.eindloon = ui->txtEindloon->value();
    f.middelloon = ui->txtMiddelloon->value();
    f.salaris = ui->txtSalaris->value();
    f.grondslag = ui->TxtGrondslag->value();
    f.aangroei = ui->txtAangroei->value();
    f.doelvermogen = ui->TxtDoelvermogen->value();
    f.pcOpbouw = ui->TxtPcOpbouw->value();
    f.pcUitkering = ui->TxtPcUitkering->value();
    f.overzicht = ui->TxtOverzicht->date();
    return f;
}

QSize PensGeg::Private::stackSize(bool least) const
{
    int breedte = least ? ui->Uitvoerder->minimumSizeHint().width() : ui->Uitvoerder->sizeHint().width();
    int hoogte = ui->Uitvoerder->height();
    bool eerste = true;
    for (QGroupBox *frame : {ui->fraRegeling, ui->fraGrondslag, ui->fraBijdrage}) {
        if (frame->isHidden())
            continue;
        const QSize nodig = least ? frame->minimumSizeHint() : frame->sizeHint();
        breedte = qMax(breedte, nodig.width());
        hoogte += (eerste ? 0 : twips(kFrameAfstand)) + frame->sizeHint().height();
        eerste = false;
    }
    return {breedte, hoogte};
}

QSize PensGeg::minimumSizeHint() const
{
    return d->stackSize(true);
}

QSize PensGeg::sizeHint() const
{
    return d->stackSize(false);
}

bool PensGeg::event(QEvent *event)
{
    // A frame that shows or hides rows asks its parent for room; the panel has no layout of its
    // own to answer, so it restacks its frames and tells its container what it needs now.
    if (event->type() == QEvent::LayoutRequest)
        d->Resize();
    return SchemePanel::event(event);
}

void PensGeg::Private::Resize()
{
    const int breedte = q->width();
    ui->Uitvoerder->setGeometry(0, 0, breedte, ui->Uitvoerder->height());
    int top = ui->Uitvoerder->height();
    for (QGroupBox *frame : {ui->fraRegeling, ui->fraGrondslag, ui->fraBijdrage}) {
        if (frame->isHidden())
            continue;
        // Showing or hiding a row already told the frame's layout to redo itself; forcing it
        // again on every load would re-measure every caption of the frame for nothing.
        if (frame->layout())
            frame->layout()->activate();
        const int hoogte = frame->sizeHint().height();
        frame->setGeometry(0, top, breedte, hoogte);
        top += hoogte + twips(kFrameAfstand);
    }
    // A load while the panel is hidden posts no layout request to anyone, so the container
    // hears of a changed need here: rows shown or hidden change the height of the stack.
    const QSize nodig = stackSize(false);
    if (nodig != gemeldeRuimte) {
        gemeldeRuimte = nodig;
        q->updateGeometry();
    }
}

} // namespace VandrelPensioen
