// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "pensmain.h"

#include "errortrap.h"
#include "hostcheck.h"
#include "livecount.h"
#include "pensgeg.h"
#include "penslist.h"
#include "penstoez.h"
#include "platformroutines.h"
#include "ui_pensmain.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

#include <atomic>

namespace VandrelPensioen {

using namespace VandrelApplication;

namespace {
std::atomic<int> s_liveObjects{0};
}

int LiveCount::pensMainObjects()
{
    return s_liveObjects.load();
}

class PensMain::Private
{
public:
    explicit Private(PensMain *q) : q(q) {}

    void Select_Pensioen(qint16 newAnv, qint16 newPen);
    void Load_Pensioen(qint16 newAnv, qint16 newPen);
    void ChangeAanvrager(bool &Cancel);
    void Arrange();
    void Terminate();

    PensMain *q;
    Ui::PensMain ui;
    ApplicationPtr Application;
    qint16 Anv_Id = 0;
    qint16 Pen_Id = 0;
    bool Suppress_Events = false;
    bool terminated = false;
};

void PensMain::Private::Select_Pensioen(qint16 newAnv, qint16 newPen)
{
    bool Cancel = false;
    q->Validation(Cancel, 0);
    if (Cancel) {
        // The list must show the scheme that stays; its own PensioenChanged is not a new choice.
        Suppress_Events = true;
        ui.PensioenList->SetApplication(Application, Anv_Id, Pen_Id);
        Suppress_Events = false;
        return;
    }
    Load_Pensioen(newAnv, newPen);
}

void PensMain::Private::Load_Pensioen(qint16 newAnv, qint16 newPen)
{
    const bool shown = newAnv >= 1 && newPen >= 1;
    ui.PensioenGegevens->setVisible(shown);
    ui.PensioenToezegging->setVisible(shown);
    ui.PensioenGegevens->SetApplication(Application, newAnv, newPen);
    ui.PensioenToezegging->SetApplication(Application, newAnv, newPen);
    Anv_Id = newAnv;
    Pen_Id = newPen;
}

void PensMain::Private::ChangeAanvrager(bool &Cancel)
{
    Q_UNUSED(Cancel);
    if (!Application)
        return;
    DossierPtr dossier = Application->Get_Dossier();
    if (!dossier)
        return;
    const qint16 target = Anv_Id == 1 ? 2 : 1;
    AanvragerPtr from = dossier->Get_Aanvrager(Anv_Id);
    AanvragerPtr to = dossier->Get_Aanvrager(target);
    PensioenPtr old = from ? from->Get_Pensioen(Pen_Id) : nullptr;
    if (!to || !old)
        return;

    const qint16 newPen = to->AddPension();
    PensioenPtr moved = to->Get_Pensioen(newPen);
    moved->CopyFrom(*old);
    // What the copy took over from the old participant and cannot hold for the new one: years
    // of service and salary of the old employment, the dates derived from the old birth date,
    // and the link to the old participant's employment.
    moved->setDienstjaren(0);
    moved->setSalaris(0);
    moved->setDt_65(QDate());
    moved->setDienstverbandKey(QString());
    moved->setDt_PensioenIngang(QDate());
    from->RemovePension(Pen_Id);

    Anv_Id = target;
    Pen_Id = newPen;
    Load_Pensioen(Anv_Id, Pen_Id);
    ui.PensioenList->SetApplication(Application, Anv_Id, Pen_Id);
}

// The list on top takes the full width and every pixel of height the panels below leave over, so
// a long list shows as many rows as fit; the scheme panel and the commitments panel stand side
// by side at the height their visible rows need, the commitments panel taking the width left.
// Qt layouts rather than fixed positions: the screen reflows to the room a host gives it.
void PensMain::Private::Arrange()
{
    auto *panels = new QHBoxLayout;
    panels->setContentsMargins(0, 0, 0, 0);
    panels->setSpacing(twips(120));
    panels->addWidget(ui.PensioenGegevens, 0, Qt::AlignTop);
    panels->addWidget(ui.PensioenToezegging, 1, Qt::AlignTop);
    auto *screen = new QVBoxLayout(q);
    screen->setContentsMargins(twips(60), twips(60), twips(60), twips(60));
    screen->setSpacing(twips(60));
    screen->addWidget(ui.PensioenList, 1);
    screen->addLayout(panels, 0);
    // The panels never give up height to the list: a row cut off there could not be reached.
    for (QWidget *panel : {static_cast<QWidget *>(ui.PensioenGegevens),
                           static_cast<QWidget *>(ui.PensioenToezegging)}) {
        QSizePolicy policy = panel->sizePolicy();
        policy.setVerticalPolicy(QSizePolicy::Fixed);
        panel->setSizePolicy(policy);
    }
    QSizePolicy listPolicy = ui.PensioenList->sizePolicy();
    listPolicy.setVerticalPolicy(QSizePolicy::Expanding);
    listPolicy.setHorizontalPolicy(QSizePolicy::Expanding);
    ui.PensioenList->setSizePolicy(listPolicy);
}

void PensMain::Private::Terminate()
{
    if (terminated)
        return;
    terminated = true;
    if (!Application)
        return;
    DossierPtr dossier = Application->Get_Dossier();
    if (!dossier)
        return;
    // Removing a scheme moves the later ones up, so the same number is looked at again.
    for (Anv_Id = 1; AanvragerPtr aanvrager = dossier->Get_Aanvrager(Anv_Id); ++Anv_Id) {
        Pen_Id = 1;
        while (PensioenPtr pensioen = aanvrager->Get_Pensioen(Pen_Id)) {
            if (pensioen->RemoveOnClose())
                aanvrager->RemovePension(Pen_Id);
            else
                ++Pen_Id;
        }
    }
}

PensMain::PensMain(QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(this))
{
    ++s_liveObjects;
    // Names, amounts and dates are plain Latin text: shaping it (kerning, ligatures) is only
    // cosmetic there, yet was the largest single cost of loading, checking and painting a scheme.
    // Only the strategy is set, so the host's family and size still come through.
    {
        QFont plain;
        plain.setStyleStrategy(QFont::PreferNoShaping);
        setFont(plain);
    }
    d->ui.setupUi(this);

    PensList *list = d->ui.PensioenList;
    PensGeg *gegevens = d->ui.PensioenGegevens;
    PensToez *toezegging = d->ui.PensioenToezegging;

    connect(list, &PensList::PensioenChanged, this,
            [this](qint16 &Anv_Id, qint16 &Pen_Id) {
                if (!d->Suppress_Events)
                    d->Select_Pensioen(Anv_Id, Pen_Id);
            },
            Qt::DirectConnection);
    connect(list, &PensList::PensioenDeleted, this,
            [this] {
                if (d->Suppress_Events)
                    return;
                d->Anv_Id = 0;
                d->Pen_Id = 0;
                d->Select_Pensioen(0, 0);
            },
            Qt::DirectConnection);
    auto infoChanged = [this] {
        if (!d->Suppress_Events)
            d->ui.PensioenList->InfoChanged();
    };
    connect(gegevens, &PensGeg::InfoChanged, this, infoChanged, Qt::DirectConnection);
    connect(toezegging, &PensToez::InfoChanged, this, infoChanged, Qt::DirectConnection);
    connect(gegevens, &PensGeg::AanvragerChanged, this,
            [this](qint16 &Anv_Id, qint16 &Pen_Id) {
                d->ui.PensioenList->SetApplication(d->Application, Anv_Id, Pen_Id);
            },
            Qt::DirectConnection);
    connect(gegevens, &PensGeg::DienstverbandChanged, this,
            [this] { d->ui.PensioenGegevens->SetApplication(d->Application, d->Anv_Id, d->Pen_Id); },
            Qt::DirectConnection);
    connect(gegevens, &PensGeg::ChangeAanvrager, this,
            [this](bool &Cancel) { d->ChangeAanvrager(Cancel); }, Qt::DirectConnection);

    // A host that never deletes its controls still gets the marked schemes removed.
    if (QCoreApplication *app = QCoreApplication::instance()) {
        connect(app, &QCoreApplication::aboutToQuit, this, [this] { terminateNow(); },
                Qt::DirectConnection);
    }

    ScaleToScreen(this);
    d->Arrange();
    resize(sizeHint());
}

PensMain::~PensMain()
{
    terminateNow();
    --s_liveObjects;
}

void PensMain::terminateNow()
{
    // A destructor cannot hand an error on; the host hears of it through its error report.
    ErrorTrap trap(QStringLiteral("PensMain"), QStringLiteral("Pensioen"));
    trap.setApplication(d->Application);
    trap.run("UserControl_Terminate", [this] { d->Terminate(); });
}

void PensMain::SetApplication(const ApplicationPtr &Application)
{
    d->Application = Application;
    d->Suppress_Events = false;
    d->ui.PensioenList->SetApplication(Application);
}

void PensMain::Validation(bool &Cancel, qint32 ControleNr)
{
    QCoreApplication::processEvents();
    if (d->Anv_Id == 0 || d->Pen_Id == 0)
        return;
    if (!Cancel)
        d->ui.PensioenList->Validation(Cancel, ControleNr);
    if (!Cancel)
        d->ui.PensioenGegevens->Validation(Cancel, ControleNr);
    if (!Cancel)
        d->ui.PensioenToezegging->Validation(Cancel, ControleNr);
    // The suite's own check of the pension data (kind 1), over the whole period (two empty
    // dates), errors only (level 1).
    if (!Cancel && ControleNr == 0)
        HostCheck::instance().RunHostCheck(d->Application, 1, QDate(), 1, QDate());
}

QColor PensMain::BackColor() const
{
    return BackColorOf(this);
}

void PensMain::setBackColor(const QColor &colour)
{
    ApplyBackColor(this, colour);
}

qint16 PensMain::shownAanvrager() const
{
    return d->Anv_Id;
}

qint16 PensMain::shownPensioen() const
{
    return d->Pen_Id;
}

bool PensMain::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    // A panel asks for more room when loading a scheme shows longer captions or more rows. A
    // host that placed the control by hand (no layout to ask) gets a control that grows by
    // itself rather than cuts them off; a layout or a window manager sizes it otherwise.
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Show) {
        if (parentWidget() && !isWindow() && !parentWidget()->layout())
            resize(size().expandedTo(sizeHint()));
    }
    return handled;
}

} // namespace VandrelPensioen
