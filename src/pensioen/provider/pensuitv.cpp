// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "pensuitv.h"

#include "dienstverbanditem.h"
#include "errortrap.h"
#include "platformroutines.h"
#include "textbox.h"
#include "ui_pensuitv.h"

#include <QComboBox>
#include <QRadioButton>
#include <QScopeGuard>
#include <QSignalBlocker>

namespace VandrelPensioen {

using namespace VandrelApplication;

namespace {
// Option widths in twips: one option across the frame when there is no partner, two side by side
// otherwise. The caption keeps 450 twips free for the round button and its spacing.
constexpr int kOptieBreedAlleen = 5715;
constexpr int kOptieBreedTwee = 2670;
constexpr int kCaptionRuimte = 450;
constexpr int kFrameAfstand = 60;
constexpr int kDeelnemerHoogMet = 1140;
constexpr int kDeelnemerHoogZonder = 720;
// Below fraDeelnemer the control keeps the same 60 twips as between the two frames, so the frame
// that a container places right under it never touches its border.
constexpr int kMargeOnder = 60;
}

class PensUitv::Private
{
public:
    explicit Private(PensUitv *control)
        : q(control)
        , ui(std::make_unique<Ui::PensUitv>())
        , trap(QStringLiteral("PensUitv"), QStringLiteral("Pensioenuitvoerder"))
    {
    }

    QRadioButton *optAanvrager(int index) const
    {
        return index == 1 ? ui->optAanvrager_1 : ui->optAanvrager_2;
    }

    AanvragerPtr aanvrager(qint16 id) const
    {
        const DossierPtr dossier = application ? application->Get_Dossier() : nullptr;
        return dossier ? dossier->Get_Aanvrager(id) : nullptr;
    }

    // Sets both options without raising their click: code may also clear both.
    void setOptions(qint16 checkedIndex)
    {
        for (int i = 1; i <= 2; ++i) {
            QRadioButton *opt = optAanvrager(i);
            const QSignalBlocker block(opt);
            opt->setAutoExclusive(false);
            opt->setChecked(i == checkedIndex);
            opt->setAutoExclusive(true);
        }
    }

    void Fill_DienstverbandCombo();
    bool DienstverbandAlGeselecteerdInAnderPensioen(const QString &identifier);
    void cboDienstverband_Click();
    void optAanvrager_Click(int index);
    void TxtUitvoerder_Validation(bool &Cancel);
    void TxtBranche_Validation(bool &Cancel);
    void Resize();
    QSize gemeldeRuimte;   // the least room last reported to the container

    PensUitv *q;
    std::unique_ptr<Ui::PensUitv> ui;
    ErrorTrap trap;
    ApplicationPtr application;
    qint16 anvId = 0;
    qint16 penId = 0;
    PensioenPtr pensioen;
    bool loading = false;
    bool meldtDienstverband = false;
};

PensUitv::PensUitv(QWidget *parent)
    : SchemePanel(parent)
    , d(std::make_unique<Private>(this))
{
    d->ui->setupUi(this);
    d->ui->txtUitvoerder->setKind(VandrelControl::FieldKind::Text);
    d->ui->txtBranche->setKind(VandrelControl::FieldKind::Text);
    ScaleToScreen(this);

    connect(d->ui->txtUitvoerder, &VandrelControl::TextBox::Validate, this,
            [this](bool &Cancel) { d->TxtUitvoerder_Validation(Cancel); }, Qt::DirectConnection);
    connect(d->ui->txtBranche, &VandrelControl::TextBox::Validate, this,
            [this](bool &Cancel) { d->TxtBranche_Validation(Cancel); }, Qt::DirectConnection);
    // Programmatic selection counts as a click here, as it did for the suite's combo box: that is
    // how Fill_DienstverbandCombo hands the chosen employment on.
    connect(d->ui->cboDienstverband, &QComboBox::currentIndexChanged, this,
            [this] { d->cboDienstverband_Click(); });
    for (int i = 1; i <= 2; ++i) {
        // Only a change to "on" is a click; clicking the option that is already on does nothing.
        connect(d->optAanvrager(i), &QRadioButton::toggled, this, [this, i](bool on) {
            if (on)
                d->optAanvrager_Click(i);
        });
    }

    // Until a scheme is named nothing can be edited.
    d->ui->txtUitvoerder->setEnabled(false);
    d->ui->txtBranche->setEnabled(false);
    d->ui->optAanvrager_1->setEnabled(false);
    d->ui->optAanvrager_2->setEnabled(false);
    d->Resize();
}

PensUitv::~PensUitv() = default;

void PensUitv::SetApplication(const ApplicationPtr &Application, qint16 Anv_Id, qint16 Pen_Id)
{
    d->loading = true;
    // Let go of the previous scheme before the host is asked anything: a load that fails must not
    // leave the fields writing to a scheme that is no longer shown.
    d->pensioen.reset();
    const bool geladen = d->trap.run("SetApplication", [&] {
        d->application = Application;
        d->trap.setApplication(Application);

        const bool heeftPartner = d->aanvrager(2) != nullptr;
        // Widths first, so that each name is shortened to the width its option really gets.
        d->ui->optAanvrager_2->setVisible(heeftPartner);
        d->ui->optAanvrager_1->resize(twips(heeftPartner ? kOptieBreedTwee : kOptieBreedAlleen),
                                      d->ui->optAanvrager_1->height());

        for (qint16 i = 1; i <= 2; ++i) {
            QRadioButton *opt = d->optAanvrager(i);
            const AanvragerPtr deelnemer = d->aanvrager(i);
            const int maxTwips = opt->width() * TwipsPerPixelAt96Dpi - kCaptionRuimte;
            opt->setText(deelnemer ? ShortenToWidth(opt, deelnemer->Naam(), maxTwips, false)
                                   : QString());
        }

        d->anvId = Anv_Id;
        d->penId = Pen_Id;
        d->pensioen.reset();
        if (Anv_Id > 0 && Pen_Id > 0) {
            const AanvragerPtr deelnemer = d->aanvrager(Anv_Id);
            d->pensioen = deelnemer ? deelnemer->Get_Pensioen(Pen_Id) : nullptr;
        }

        if (d->pensioen) {
            d->ui->txtUitvoerder->setText(d->pensioen->Uitvoerder());
            d->ui->txtBranche->setText(d->pensioen->Branche());
            d->setOptions(Anv_Id);
            if (d->pensioen->HuidigeWerkgever()) {
                d->ui->fraDienstverband->setVisible(true);
                d->ui->fraDeelnemer->setTitle(QStringLiteral("Deelnemer / Dienstverband"));
                d->Fill_DienstverbandCombo();
            } else {
                d->ui->fraDienstverband->setVisible(false);
                d->ui->fraDeelnemer->setTitle(QStringLiteral("Deelnemer"));
            }
        } else {
            d->ui->txtUitvoerder->clear();
            d->ui->txtBranche->clear();
            d->setOptions(0);
        }

        const bool bewerkbaar = Anv_Id > 0 && Pen_Id > 0;
        d->ui->optAanvrager_1->setEnabled(bewerkbaar);
        d->ui->optAanvrager_2->setEnabled(bewerkbaar);
        d->ui->txtUitvoerder->setEnabled(bewerkbaar);
        d->ui->txtBranche->setEnabled(bewerkbaar);
    });
    if (!geladen) {
        // Half-loaded: show nothing that could be mistaken for the scheme, take no input.
        d->pensioen.reset();
        d->ui->txtUitvoerder->clear();
        d->ui->txtBranche->clear();
        d->setOptions(0);
        for (QWidget *w : std::initializer_list<QWidget *>{d->ui->optAanvrager_1, d->ui->optAanvrager_2,
                                                           d->ui->txtUitvoerder, d->ui->txtBranche})
            w->setEnabled(false);
    }
    d->loading = false;
    d->Resize();
}

void PensUitv::Validation(bool &Cancel, qint32 ControleNr)
{
    // Provider, sector and employment may be left empty: this control has no check of its own and
    // never touches Cancel.
    d->trap.run("Validation", [] {});
}

void PensUitv::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    d->Resize();
}

void PensUitv::Private::Fill_DienstverbandCombo()
{
    trap.run("Fill_DienstverbandCombo", [&] {
        namespace Item = DienstverbandItem;
        QComboBox *combo = ui->cboDienstverband;
        // Adding the first item would select it; only the explicit selection below may act.
        {
            const QSignalBlocker block(combo);
            combo->clear();
        }

        const AanvragerPtr deelnemer = aanvrager(anvId);
        int aantal = 0;
        for (qint16 i = 1; deelnemer; ++i) {
            const DienstverbandPtr dv = deelnemer->Get_Dienstverband(i);
            if (!dv)
                break;
            ++aantal;
            if (DienstverbandAlGeselecteerdInAnderPensioen(dv->Key()))
                continue;
            const QString beschrijving = Item::description(dv->Werkgever(), dv->Dt_Begin(),
                                                           dv->Dt_Einde(), dv->Salaris(),
                                                           dv->Dt_InkomenMeetellenTot());
            const QSignalBlocker block(combo);
            combo->addItem(beschrijving);
            const int row = combo->count() - 1;
            combo->setItemData(row, Item::paddedText(beschrijving, dv->Key()), Item::TextRole);
            combo->setItemData(row, int(i), Item::PositionRole);
        }

        SetDropDownWidth(combo);

        if (combo->count() == 0) {
            const QSignalBlocker block(combo);
            combo->addItem(aantal == 0
                ? QStringLiteral("Er is geen dienstverband ingevoerd voor de gekozen deelnemer")
                : QStringLiteral("De dienstverbanden die voor deze deelnemer zijn ingevoerd, zijn al bij andere ingevoerde pensioenregelingen gekozen"));
            // Left selected (adding it selects it) so the reason can be read without opening
            // the list; it carries no key, so nothing is stored for it.
            return;
        }

        {
            const QSignalBlocker block(combo);
            combo->setCurrentIndex(-1);
        }
        const QString key = pensioen ? pensioen->DienstverbandKey() : QString();
        for (int row = 0; row < combo->count(); ++row) {
            if (Item::keyOf(combo->itemData(row, Item::TextRole).toString()) == key) {
                combo->setCurrentIndex(row);
                break;
            }
        }
    });
}

bool PensUitv::Private::DienstverbandAlGeselecteerdInAnderPensioen(const QString &identifier)
{
    bool gevonden = false;
    trap.run("DienstverbandAlGeselecteerdInAnderPensioen", [&] {
        const AanvragerPtr deelnemer = aanvrager(anvId);
        for (qint16 i = 1; deelnemer; ++i) {
            const PensioenPtr ander = deelnemer->Get_Pensioen(i);
            if (!ander)
                break;
            if (i != penId && ander->DienstverbandKey() == identifier) {
                gevonden = true;
                break;
            }
        }
    });
    return gevonden;
}

void PensUitv::Private::cboDienstverband_Click()
{
    // The opposite of the options: only the selection made while loading acts, a user's choice
    // afterwards is not stored here.
    if (!loading)
        return;
    trap.run("cboDienstverband_Click", [&] {
        QComboBox *combo = ui->cboDienstverband;
        const int row = combo->currentIndex();
        if (row < 0 || !pensioen)
            return;
        const QVariant text = combo->itemData(row, DienstverbandItem::TextRole);
        if (!text.isValid())
            return;   // the explaining item
        pensioen->setDienstverbandKey(DienstverbandItem::keyOf(text.toString()));
        combo->setToolTip(DienstverbandItem::visiblePart(text.toString()));
        // The container answers by reloading the panel, which reloads this control and selects
        // the same item again; raising the event from inside that reload would never end.
        if (meldtDienstverband)
            return;
        meldtDienstverband = true;
        const auto klaar = qScopeGuard([this] { meldtDienstverband = false; });
        Q_EMIT q->DienstverbandChanged();
    });
}

void PensUitv::Private::optAanvrager_Click(int index)
{
    if (loading)
        return;
    trap.run("optAanvrager_Click", [&] {
        bool Cancel = false;
        Q_EMIT q->ChangeAanvrager(Cancel);
        // A container that refuses the move gets the option of the scheme's own participant back.
        if (Cancel) {
            loading = true;
            setOptions(anvId);
            loading = false;
        }
    });
}

void PensUitv::Private::TxtUitvoerder_Validation(bool &Cancel)
{
    trap.run("TxtUitvoerder_Validation", [&] {
        if (loading || !pensioen)
            return;
        pensioen->setUitvoerder(ui->txtUitvoerder->text());
        Q_EMIT q->InfoChanged();
    });
}

void PensUitv::Private::TxtBranche_Validation(bool &Cancel)
{
    trap.run("TxtBranche_Validation", [&] {
        if (loading || !pensioen)
            return;
        pensioen->setBranche(ui->txtBranche->text());
    });
}

// The fields take whatever width the panel gets; the options keep their fixed widths, so the panel
// is never narrower than the options shown plus the frame's own margin.
QSize PensUitv::minimumSizeHint() const
{
    int breedte = d->ui->txtUitvoerder->x() + twips(1200) + twips(120);
    for (QWidget *optie : {static_cast<QWidget *>(d->ui->optAanvrager_1),
                           static_cast<QWidget *>(d->ui->optAanvrager_2)})
        if (!optie->isHidden())
            breedte = qMax(breedte, optie->geometry().right() + 1 + d->ui->optAanvrager_1->x());
    return {breedte, height()};
}

// Wider fields show nothing more (the names and sectors are short); the room is better left to the
// commitments beside the panel.
QSize PensUitv::sizeHint() const
{
    return minimumSizeHint();
}

void PensUitv::Private::Resize()
{
    const int breedte = q->width();
    const int veldLinks = ui->txtUitvoerder->x();
    const int veldBreedte = qMax(0, breedte - veldLinks - twips(120));

    ui->fraUitvoerder->setGeometry(0, 0, breedte, ui->fraUitvoerder->height());
    ui->txtUitvoerder->resize(veldBreedte, ui->txtUitvoerder->height());
    ui->txtBranche->resize(veldBreedte, ui->txtBranche->height());

    const bool metDienstverband = !ui->fraDienstverband->isHidden();
    const int top = ui->fraUitvoerder->y() + ui->fraUitvoerder->height() + twips(kFrameAfstand);
    const int hoogte = twips(metDienstverband ? kDeelnemerHoogMet : kDeelnemerHoogZonder);
    ui->fraDeelnemer->setGeometry(ui->fraUitvoerder->x(), top, breedte, hoogte);

    const int dvBreedte = qMax(0, breedte - 2 * ui->fraDienstverband->x());
    ui->fraDienstverband->resize(dvBreedte, ui->fraDienstverband->height());
    ui->cboDienstverband->resize(dvBreedte, ui->cboDienstverband->height());

    const int eigenHoogte = top + hoogte + twips(kMargeOnder);
    if (q->minimumHeight() != eigenHoogte || q->maximumHeight() != eigenHoogte)
        q->setFixedHeight(eigenHoogte);
    // Showing or hiding the partner's option or the employment changes the room the panel needs.
    const QSize nodig = q->minimumSizeHint();
    if (nodig != gemeldeRuimte) {
        gemeldeRuimte = nodig;
        q->updateGeometry();
    }
}

} // namespace VandrelPensioen
