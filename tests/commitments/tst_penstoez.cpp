// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The commitments panel driven as a user drives it: tick boxes, type into fields and Tab out,
// answer the questions; then read the host's data back.

#include "formats.h"
#include "hostapplication.h"
#include "penstoez.h"
#include "platformroutines.h"
#include "textbox.h"
#include "usersim.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QTimer>
#include <QSignalSpy>
#include <QTest>

#include "hint.h"

using namespace VandrelApplication;
using VandrelControl::TextBox;
using VandrelPensioen::MaxOf;
using VandrelPensioen::PensToez;
using namespace TestSupport;

namespace {

const QDate kBirth(1960, 7, 15);
const QDate kIngangOP(2025, 8, 1);     // 65 years 0 months for kBirth
const QDate kIngangPreP(2022, 8, 1);   // 62 years 0 months

const QString kTitleToez = QStringLiteral("Pensioentoezeggingen");
const QString kTitleOngeldig = QStringLiteral("Ongeldige invoer");
const QString kTitleVerplicht = QStringLiteral("Invoer verplicht");

struct Case
{
    std::shared_ptr<Zarnoveld::HostApplication> app;
    AanvragerPtr anv;
    PensioenPtr pen;
    qint16 penId = 0;

    OuderdomRegelPtr row()
    {
        if (pen->OuderdomRegelCount() < 1)
            pen->AddOuderdomRegel();
        return pen->Get_OuderdomRegel(1);
    }
};

Case newCase()
{
    Case c;
    c.app = Zarnoveld::HostApplication::createInMemory();
    c.anv = c.app->Get_Dossier()->Get_Aanvrager(1);
    c.anv->setGeboorteDatum(kBirth);
    c.penId = c.anv->AddPension();
    c.pen = c.anv->Get_Pensioen(c.penId);
    return c;
}

// A scheme with every commitment ticked and valid.
Case fullCase()
{
    Case c = newCase();
    auto row = c.row();
    row->setOP(true);
    row->setBedragOP(10000);
    row->setDt_IngangOP(kIngangOP);
    row->setPreP(true);
    row->setBedragPreP(2000);
    row->setDt_IngangPreP(kIngangPreP);
    c.pen->setTOP(true);
    c.pen->setBedragTOP(500);
    c.pen->setPP(true);
    c.pen->setPc_PP(70);
    c.pen->setBedragPP(7000);
    c.pen->setPPNaAow(true);
    c.pen->setPc_PPNaAow(70);
    c.pen->setBedragPPNaAow(7000);
    c.pen->setPPna65(true);
    c.pen->setPc_PPna65(70);
    c.pen->setBedragPPna65(7000);
    c.pen->setPpNa65TotAow(true);
    c.pen->setPc_PpNa65TotAow(70);
    c.pen->setBedragPpNa65TotAow(7000);
    c.pen->setWzP(true);
    c.pen->setPc_WzP(14);
    c.pen->setBedragWzP(1400);
    c.pen->setEindLeeftijdWzP(18);
    c.pen->setIP(true);
    c.pen->setPc_IP(10);
    c.pen->setBedragIP(1000);
    c.pen->setAnwCompensatie(true);
    c.pen->setBedragAnwCompensatie(1000);
    return c;
}

// Everything the panel can write, as text, to compare a record before and after.
QStringList fingerprint(Case &c)
{
    auto row = c.row();
    const auto d = [](const QDate &date) { return date.toString(Qt::ISODate); };
    const auto n = [](double v) { return QString::number(v, 'g', 17); };
    QStringList s{
        n(row->OP()), n(row->BedragOP()), d(row->Dt_IngangOP()), n(row->LeeftijdOP()),
        n(row->PreP()), n(row->BedragPreP()), d(row->Dt_IngangPreP()), n(row->LeeftijdPreP()),
        n(row->ScenarioOP()->RegelCount()),
        n(c.pen->TOP()), n(c.pen->BedragTOP()),
        n(c.pen->PP()), n(c.pen->BedragPP()), n(c.pen->Pc_PP()),
        n(c.pen->PPNaAow()), n(c.pen->BedragPPNaAow()), n(c.pen->Pc_PPNaAow()),
        n(c.pen->PPna65()), n(c.pen->BedragPPna65()), n(c.pen->Pc_PPna65()),
        n(c.pen->PpNa65TotAow()), n(c.pen->BedragPpNa65TotAow()), n(c.pen->Pc_PpNa65TotAow()),
        n(c.pen->WzP()), n(c.pen->BedragWzP()), n(c.pen->Pc_WzP()), n(c.pen->EindLeeftijdWzP()),
        n(c.pen->IP()), n(c.pen->BedragIP()), n(c.pen->Pc_IP()), n(c.pen->Cd_UitkeringSoort()),
        n(c.pen->AnwCompensatie()), n(c.pen->BedragAnwCompensatie()),
    };
    return s;
}

void addScenarioRows(Case &c, int count)
{
    auto scenario = c.row()->ScenarioOP();
    for (int i = 0; i < count; ++i) {
        auto regel = scenario->Add_Regel();
        regel->setMaand(qint16(i + 1));
        regel->setBedrag(1000 * (i + 1));
    }
}

// Runs body on the modal dialog as soon as it is up; a dialog that body leaves open is closed
// afterwards so that a failing test cannot hang.
void onModalDialog(std::function<void(QDialog *)> body, QString *className = nullptr)
{
    auto *timer = new QTimer;
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, body, className] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer->stop();
        timer->deleteLater();
        if (className)
            *className = QString::fromLatin1(dialog->metaObject()->className());
        body(dialog);
        if (dialog->isVisible())
            dialog->reject();
    });
    timer->start();
}

} // namespace

class TestPensToez : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<PensToez> panel;
    Case c;

    void bind(Case theCase, qint16 anvId = 1, qint16 penId = -1)
    {
        c = std::move(theCase);
        panel = std::make_unique<PensToez>();
        QVERIFY(showActive(panel.get()));
        panel->SetApplication(c.app, anvId, penId < 0 ? c.penId : penId);
    }
    template <typename T = TextBox>
    T *w(const char *name)
    {
        return find<T>(panel.get(), QString::fromLatin1(name));
    }

private Q_SLOTS:
    void cleanup()
    {
        panel.reset();
        c = Case();
    }

    // --- binding ---------------------------------------------------------------------------

    void unboundPanelIsInert_data()
    {
        QTest::addColumn<int>("anvId");
        QTest::addColumn<int>("penId");
        QTest::newRow("Anv_Id 0") << 0 << 1;
        QTest::newRow("Pen_Id 0") << 1 << 0;
    }
    void unboundPanelIsInert()
    {
        QFETCH(int, anvId);
        QFETCH(int, penId);
        bind(newCase(), qint16(anvId), qint16(penId));
        MessageRecorder messages;
        QSignalSpy info(panel.get(), &PensToez::InfoChanged);

        bool cancel = false;
        panel->Validation(cancel, 0);
        QVERIFY(!cancel);
        QCOMPARE(messages.count(), 0);

        click(w<QCheckBox>("chkOP"));
        click(w<QCheckBox>("chkPP"));
        click(w<QCheckBox>("chkAnwCompensatie"));
        QVERIFY(!c.row()->OP());
        QVERIFY(!c.pen->PP());
        QVERIFY(!c.pen->AnwCompensatie());
        QCOMPARE(info.count(), 0);
    }

    void rebindingWithZeroKeepsFieldsAndStaysInert()
    {
        Case theCase = fullCase();
        bind(theCase);
        QCOMPARE(w("txtOP")->text(), QStringLiteral("10.000"));
        panel->SetApplication(c.app, 1, 0);
        QCOMPARE(w("txtOP")->text(), QStringLiteral("10.000"));
        click(w<QCheckBox>("chkPP"));
        QVERIFY(c.pen->PP());
        QCOMPARE(c.pen->BedragPP(), 7000.0);
        MessageRecorder messages;
        bool cancel = false;
        w("txtOP")->setText(QStringLiteral("0"));
        panel->Validation(cancel, 0);
        QVERIFY(!cancel);
        QCOMPARE(messages.count(), 0);
    }

    void bindingHandsOverThe65DateAndMakesRowOne()
    {
        Case theCase = newCase();
        const qint16 rows = theCase.pen->OuderdomRegelCount();
        QSignalSpy *info = nullptr;
        c = theCase;
        panel = std::make_unique<PensToez>();
        info = new QSignalSpy(panel.get(), &PensToez::InfoChanged);
        panel->SetApplication(c.app, 1, c.penId);
        QCOMPARE(c.pen->Dt_65(), QDate(2025, 7, 1));
        // Row 1 is made only when the record has none; an existing one is never doubled.
        QCOMPARE(c.pen->OuderdomRegelCount(), MaxOf(rows, qint16(1)));
        QCOMPARE(info->count(), 1);
        delete info;
    }

    void fillShowsAgesFromTheDates()
    {
        bind(fullCase());
        QCOMPARE(w("txtIngangOP")->text(), QStringLiteral("01-08-2025"));
        QCOMPARE(w("txtLeeftijdOPJr")->text(), QStringLiteral("65"));
        QCOMPARE(w("txtLeeftijdOPMnd")->text(), QStringLiteral("0"));
        QCOMPARE(w("txtLeeftijdPrePJr")->text(), QStringLiteral("62"));
        QCOMPARE(w("txtLeeftijdPrePMnd")->text(), QStringLiteral("0"));
        QCOMPARE(w<VandrelControl::Hint>("hntInvaliditeitsPensioen")->hintText(),
                 QStringLiteral("Vul hier het te ontvangen Invaliditeitspensioen in zonder eventuele IVA-uitkering."));
        QVERIFY(!w<QAbstractButton>("cmdPensioenSpecificatie")->isVisibleTo(panel.get()));
    }

    void backColorLeavesOwnColoursAlone()
    {
        bind(fullCase());
        auto *chk = w<QCheckBox>("chkOP");
        auto *label = w<QWidget>("lblJaar");
        QPalette own = label->palette();
        own.setColor(label->backgroundRole(), Qt::yellow);
        label->setPalette(own);
        const QColor colour(200, 220, 240);
        panel->setBackColor(colour);
        QCOMPARE(panel->BackColor(), colour);
        QCOMPARE(panel->property("BackColor").value<QColor>(), colour);
        QCOMPARE(chk->palette().color(chk->backgroundRole()), colour);
        QCOMPARE(label->palette().color(label->backgroundRole()), QColor(Qt::yellow));
    }

    // --- check boxes -----------------------------------------------------------------------

    void tickingAPartnerPension_data()
    {
        QTest::addColumn<QString>("chk");
        QTest::addColumn<QString>("amount");
        QTest::addColumn<QString>("pc");
        QTest::newRow("PP") << "chkPP" << "txtPP" << "txtPcPp";
        QTest::newRow("PPNaAow") << "chkPPNaAow" << "txtPPNaAow" << "txtPcPPNaAow";
        QTest::newRow("PPna65") << "chkPPna65" << "txtPPna65" << "txtPcPPna65";
        QTest::newRow("PpNa65TotAow") << "chkPpNa65TotAow" << "txtPpNa65TotAow" << "txtPcPpNa65TotAow";
    }
    void tickingAPartnerPension()
    {
        QFETCH(QString, chk);
        QFETCH(QString, amount);
        QFETCH(QString, pc);
        Case theCase = newCase();
        theCase.row()->setOP(true);
        theCase.row()->setBedragOP(10000);
        bind(theCase);
        QSignalSpy info(panel.get(), &PensToez::InfoChanged);
        QVERIFY(!find<TextBox>(panel.get(), amount)->isEnabled());
        click(find<QCheckBox>(panel.get(), chk));
        QCOMPARE(find<TextBox>(panel.get(), pc)->text(), QStringLiteral("70,00"));
        QCOMPARE(find<TextBox>(panel.get(), amount)->text(), QStringLiteral("7.000"));
        QVERIFY(find<TextBox>(panel.get(), amount)->isEnabled());
        QVERIFY(find<TextBox>(panel.get(), pc)->isEnabled());
        QCOMPARE(info.count(), 1);
        const QStringList values = fingerprint(c);
        QVERIFY(values.count(QStringLiteral("7000")) == 1);
        QVERIFY(values.count(QStringLiteral("70")) == 1);

        click(find<QCheckBox>(panel.get(), chk));
        QCOMPARE(find<TextBox>(panel.get(), amount)->text(), QStringLiteral("0"));
        QVERIFY(!find<TextBox>(panel.get(), amount)->isEnabled());
        QVERIFY(!fingerprint(c).contains(QStringLiteral("7000")));
    }

    void tickingWzP()
    {
        Case theCase = newCase();
        theCase.row()->setOP(true);
        theCase.row()->setBedragOP(10000);
        bind(theCase);
        click(w<QCheckBox>("chkWzP"));
        QCOMPARE(w("txtPcWzp")->text(), QStringLiteral("14,00"));
        QCOMPARE(w("txtWzP")->text(), QStringLiteral("1.400"));
        QVERIFY(c.pen->WzP());
        QCOMPARE(c.pen->Pc_WzP(), 14.0f);
        QCOMPARE(c.pen->BedragWzP(), 1400.0);
        QVERIFY(w("txtEindWzp")->isEnabled());
        click(w<QCheckBox>("chkWzP"));
        QCOMPARE(c.pen->Pc_WzP(), 0.0f);
        QCOMPARE(c.pen->BedragWzP(), 0.0);
        QVERIFY(!w("txtEindWzp")->isEnabled());
    }

    void tickingIPKeepsItsPercentage()
    {
        Case theCase = newCase();
        theCase.row()->setOP(true);
        theCase.row()->setBedragOP(10000);
        theCase.pen->setPc_IP(25);
        bind(theCase);
        QVERIFY(!w<QComboBox>("cboUitkeringSoort")->isEnabled());
        QCOMPARE(w<QComboBox>("cboUitkeringSoort")->palette().color(QPalette::Base),
                 VandrelPensioen::ButtonFaceColor());
        click(w<QCheckBox>("chkIP"));
        QCOMPARE(c.pen->Pc_IP(), 25.0f);
        QCOMPARE(c.pen->BedragIP(), 2500.0);
        QVERIFY(w<QComboBox>("cboUitkeringSoort")->isEnabled());
        QVERIFY(w<QAbstractButton>("cmdUitkeringSoort")->isEnabled());
        QCOMPARE(w<QComboBox>("cboUitkeringSoort")->palette().color(QPalette::Base),
                 QApplication::palette().color(QPalette::Base));
        click(w<QCheckBox>("chkIP"));
        QCOMPARE(c.pen->Pc_IP(), 0.0f);
        QCOMPARE(c.pen->BedragIP(), 0.0);
        QVERIFY(!w<QAbstractButton>("cmdUitkeringSoort")->isEnabled());
    }

    void clearingOPSwitchesOffPartnerPensionsAndEmptiesScenario()
    {
        Case theCase = fullCase();
        addScenarioRows(theCase, 3);
        bind(theCase);
        QSignalSpy info(panel.get(), &PensToez::InfoChanged);
        click(w<QCheckBox>("chkOP"));
        auto row = c.row();
        QVERIFY(!row->OP());
        QCOMPARE(row->BedragOP(), 0.0);
        QCOMPARE(row->ScenarioOP()->RegelCount(), qint16(0));
        QVERIFY(!isFilled(row->Dt_IngangOP()));
        QVERIFY(!c.pen->PP() && !c.pen->PPNaAow() && !c.pen->PPna65() && !c.pen->PpNa65TotAow());
        QCOMPARE(c.pen->BedragPP() + c.pen->BedragPPNaAow() + c.pen->BedragPPna65()
                     + c.pen->BedragPpNa65TotAow(), 0.0);
        QCOMPARE(c.pen->Pc_PP() + c.pen->Pc_PPNaAow() + c.pen->Pc_PPna65() + c.pen->Pc_PpNa65TotAow(),
                 0.0f);
        QCOMPARE(c.pen->BedragWzP(), 0.0);
        // Without the OP the TOP goes off too.
        QVERIFY(!c.pen->TOP());
        QVERIFY(!w<QCheckBox>("chkPP")->isChecked());
        QVERIFY(!w("txtPP")->isEnabled());
        QVERIFY(!w<QCheckBox>("chkTOP")->isEnabled());
        QVERIFY(!w<QCheckBox>("chkPreP")->isEnabled());
        QVERIFY(!w<QAbstractButton>("cmdScenarioOudersomspensioen")->isEnabled());
        QVERIFY(info.count() >= 1);
    }

    void prepAndTopNeedTheOP()
    {
        bind(newCase());
        QVERIFY(!w<QCheckBox>("chkPreP")->isEnabled());
        QVERIFY(!w<QCheckBox>("chkTOP")->isEnabled());
        click(w<QCheckBox>("chkPreP"));
        click(w<QCheckBox>("chkTOP"));
        QVERIFY(!c.row()->PreP());
        QVERIFY(!c.pen->TOP());

        click(w<QCheckBox>("chkOP"));
        QVERIFY(c.row()->OP());
        QVERIFY(w<QCheckBox>("chkPreP")->isEnabled());
        QVERIFY(w<QCheckBox>("chkTOP")->isEnabled());
        click(w<QCheckBox>("chkTOP"));
        QVERIFY(c.pen->TOP());
        QVERIFY(w("txtTOP")->isEnabled());
        click(w<QCheckBox>("chkPreP"));
        QVERIFY(c.row()->PreP());
        QVERIFY(w("txtIngangPreP")->isEnabled());
    }

    void anwCompensatie()
    {
        bind(newCase());
        click(w<QCheckBox>("chkAnwCompensatie"));
        QVERIFY(c.pen->AnwCompensatie());
        enter(w("txtAnwCompensatie"), QStringLiteral("1200"));
        QCOMPARE(c.pen->BedragAnwCompensatie(), 1200.0);
        click(w<QCheckBox>("chkAnwCompensatie"));
        QVERIFY(!c.pen->AnwCompensatie());
        QCOMPARE(c.pen->BedragAnwCompensatie(), 0.0);
        QCOMPARE(w("txtAnwCompensatie")->text(), QStringLiteral("0"));
    }

    // --- entry rules -----------------------------------------------------------------------

    void partnerAmountWithoutOP()
    {
        Case theCase = newCase();
        theCase.row()->setOP(true);
        theCase.pen->setPP(true);
        bind(theCase);
        enter(w("txtPP"), QStringLiteral("5000"));
        QCOMPARE(c.pen->BedragPP(), 5000.0);
        QCOMPARE(c.pen->Pc_PP(), 0.0f);
        QCOMPARE(w("txtPcPp")->text(), QStringLiteral("0,00"));
    }

    void partnerAmountSetsUnroundedPercentage()
    {
        Case theCase = newCase();
        theCase.row()->setOP(true);
        theCase.row()->setBedragOP(12345);
        theCase.pen->setPP(true);
        bind(theCase);
        enter(w("txtPP"), QStringLiteral("5000"));
        QCOMPARE(c.pen->Pc_PP(), float(5000.0 * 100.0 / 12345.0));
        QCOMPARE(w("txtPcPp")->text(), QStringLiteral("40,50"));
    }

    void percentageRoundsHalfToEven()
    {
        Case theCase = newCase();
        theCase.row()->setOP(true);
        theCase.row()->setBedragOP(12345);
        theCase.pen->setPP(true);
        bind(theCase);
        QSignalSpy info(panel.get(), &PensToez::InfoChanged);
        enter(w("txtPcPp"), QStringLiteral("70"));
        QCOMPARE(c.pen->Pc_PP(), 70.0f);
        QCOMPARE(c.pen->BedragPP(), 8642.0);
        QCOMPARE(w("txtPP")->text(), QStringLiteral("8.642"));
        QCOMPARE(info.count(), 1);
    }

    void changingOPFollowsPartnerAndOrphansButNotIP()
    {
        Case theCase = fullCase();
        theCase.pen->setPc_PpNa65TotAow(50);
        theCase.pen->setBedragPpNa65TotAow(5000);
        bind(theCase);
        QSignalSpy info(panel.get(), &PensToez::InfoChanged);
        enter(w("txtOP"), QStringLiteral("20000"));
        QCOMPARE(c.row()->BedragOP(), 20000.0);
        QCOMPARE(c.pen->BedragPP(), 14000.0);
        QCOMPARE(c.pen->BedragPPNaAow(), 14000.0);
        QCOMPARE(c.pen->BedragPPna65(), 14000.0);
        QCOMPARE(c.pen->BedragPpNa65TotAow(), 10000.0);
        QCOMPARE(c.pen->BedragWzP(), 2800.0);
        QCOMPARE(c.pen->BedragIP(), 1000.0);
        QCOMPARE(w("txtPP")->text(), QStringLiteral("14.000"));
        QCOMPARE(w("txtIP")->text(), QStringLiteral("1.000"));
        QCOMPARE(info.count(), 1);
    }

    void opAgeEmptiesScenarioEvenWhenUnchanged()
    {
        Case theCase = fullCase();
        addScenarioRows(theCase, 3);
        bind(theCase);
        MessageRecorder messages;
        QCOMPARE(w("txtLeeftijdOPJr")->text(), QStringLiteral("65"));
        enter(w("txtLeeftijdOPJr"), QStringLiteral("65"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.row()->ScenarioOP()->RegelCount(), qint16(0));
        QCOMPARE(c.row()->LeeftijdOP(), 780);
        QCOMPARE(c.row()->Dt_IngangOP(), kIngangOP);
    }

    void opAgeTypedIsShownAsTheHostDerivesIt()
    {
        bind(fullCase());
        w("txtLeeftijdOPMnd")->setText(QStringLiteral("6"));
        enter(w("txtLeeftijdOPJr"), QStringLiteral("66"));
        QCOMPARE(c.row()->LeeftijdOP(), 66 * 12 + 6);
        QVERIFY(isFilled(c.row()->Dt_IngangOP()));
        QCOMPARE(w("txtIngangOP")->text(), VandrelControl::Format::date(c.row()->Dt_IngangOP()));
        QCOMPARE(w("txtLeeftijdOPJr")->text(), QStringLiteral("66"));
        QCOMPARE(w("txtLeeftijdOPMnd")->text(), QStringLiteral("6"));
    }

    void opDateShowsAgeAndKeepsScenario()
    {
        Case theCase = fullCase();
        addScenarioRows(theCase, 2);
        bind(theCase);
        enter(w("txtIngangOP"), QStringLiteral("01-08-2027"));
        QCOMPARE(c.row()->Dt_IngangOP(), QDate(2027, 8, 1));
        QCOMPARE(w("txtLeeftijdOPJr")->text(), QStringLiteral("67"));
        QCOMPARE(w("txtLeeftijdOPMnd")->text(), QStringLiteral("0"));
        QCOMPARE(c.row()->ScenarioOP()->RegelCount(), qint16(2));
    }

    void uitkeringSoortStoresKindAndSchedule()
    {
        Case theCase = fullCase();
        bind(theCase);
        QComboBox *combo = w<QComboBox>("cboUitkeringSoort");
        QCOMPARE(combo->currentIndex(), -1);
        QSignalSpy info(panel.get(), &PensToez::InfoChanged);
        combo->setFocus(Qt::MouseFocusReason);
        QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(combo->currentText(), QStringLiteral("Volledig"));
        QCOMPARE(c.pen->Cd_UitkeringSoort(), UitkeringSoort::Volledig);
        QVERIFY(c.pen->AoUitkeringItem(2));
        QVERIFY(!c.pen->AoUitkeringItem(3));
        QCOMPARE(c.pen->AoUitkeringItem(2)->Pc_AoTot(), 100.0f);
        QCOMPARE(c.pen->AoUitkeringItem(2)->Pc_Uitkering(), 100.0f);
        QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(combo->currentText(), QStringLiteral("Pro-rata"));
        QCOMPARE(c.pen->Cd_UitkeringSoort(), UitkeringSoort::ProRata);
        QCOMPARE(c.pen->AoUitkeringItem(2)->Pc_AoTot(), 100.0f);
        QCOMPARE(c.pen->AoUitkeringItem(2)->Pc_Uitkering(), -1.0f);
        QVERIFY(!c.pen->AoUitkeringItem(3));
        QCOMPARE(info.count(), 2);

        // Loading shows the stored kind without rewriting the schedule.
        c.pen->AoUitkeringItem(2)->setPc_Uitkering(60);
        panel->SetApplication(c.app, 1, c.penId);
        QCOMPARE(combo->currentIndex(), 1);
        QCOMPARE(c.pen->AoUitkeringItem(2)->Pc_Uitkering(), 60.0f);
    }

    // --- dialogs ---------------------------------------------------------------------------

    void specificatieDialogClosedWithoutChanges()
    {
        Case theCase = fullCase();
        theCase.pen->setHeeftSpecificatie(true);
        bind(theCase);
        auto *button = w<QAbstractButton>("cmdPensioenSpecificatie");
        QVERIFY(button->isVisible());
        const QStringList before = fingerprint(c);
        QSignalSpy info(panel.get(), &PensToez::InfoChanged);
        QString opened;
        QWidget *owner = nullptr;
        onModalDialog([&](QDialog *dialog) { owner = dialog->parentWidget(); dialog->close(); }, &opened);
        click(button);
        QCOMPARE(opened, QStringLiteral("VandrelPensioen::frmPensioenSpec"));
        QCOMPARE(owner, panel.get());
        QCOMPARE(fingerprint(c), before);
        QCOMPARE(info.count(), 0);
    }

    void specificatieDialogChangingTheOPMovesItsFollowers()
    {
        Case theCase = fullCase();
        theCase.pen->setHeeftSpecificatie(true);
        theCase.row()->setLeeftijd(65 * 12);
        bind(theCase);
        MessageRecorder messages;
        QSignalSpy info(panel.get(), &PensToez::InfoChanged);
        onModalDialog([&](QDialog *dialog) {
            enter(find<TextBox>(dialog, QStringLiteral("txtOP")), QStringLiteral("20000"));
            click(find<QAbstractButton>(dialog, QStringLiteral("cmdOk")));
        });
        click(w<QAbstractButton>("cmdPensioenSpecificatie"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.row()->BedragOP(), 20000.0);
        QCOMPARE(c.pen->BedragPP(), 14000.0);
        QCOMPARE(c.pen->BedragPPNaAow(), 14000.0);
        QCOMPARE(c.pen->BedragPPna65(), 14000.0);
        QCOMPARE(c.pen->BedragPpNa65TotAow(), 14000.0);
        QCOMPARE(c.pen->BedragWzP(), 2800.0);
        QCOMPARE(c.pen->BedragIP(), 1000.0);
        QCOMPARE(w("txtOP")->text(), QStringLiteral("20.000"));
        QCOMPARE(w("txtPP")->text(), QStringLiteral("14.000"));
        QVERIFY(c.pen->TOP());
        QCOMPARE(info.count(), 1);
    }

    void scenarioAndScheduleDialogsOpen()
    {
        bind(fullCase());
        QString opened;
        QWidget *owner = nullptr;
        onModalDialog([&](QDialog *dialog) { owner = dialog->parentWidget(); }, &opened);
        click(w<QAbstractButton>("cmdScenarioOudersomspensioen"));
        QCOMPARE(opened, QStringLiteral("VandrelPensioen::frmSpecificatieScenario"));
        QCOMPARE(owner, panel.get());

        opened.clear();
        onModalDialog([&](QDialog *) {}, &opened);
        click(w<QAbstractButton>("cmdUitkeringSoort"));
        QCOMPARE(opened, QStringLiteral("VandrelPensioen::frmAoUitkering"));
        QVERIFY(c.app->reportedErrors().isEmpty());
    }

    // --- checks ----------------------------------------------------------------------------

    void opStartingAgeRange()
    {
        bind(fullCase());
        MessageRecorder messages;
        TextBox *years = w("txtLeeftijdOPJr");
        w("txtLeeftijdOPMnd")->setText(QStringLiteral("11"));
        enter(years, QStringLiteral("49"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet tussen 50 en 99 jaar liggen."));
        QCOMPARE(messages.lastTitle(), kTitleToez);
        QCOMPARE(messages.last().icon, MessageBox::Icon::Exclamation);
        QCOMPARE(QApplication::focusWidget(), years);
        QCOMPARE(c.row()->LeeftijdOP(), 780);

        messages.clear();
        enter(years, QStringLiteral("99"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.row()->LeeftijdOP(), 99 * 12 + 11);
    }

    void opAgeBelowPrepAge()
    {
        bind(fullCase());
        MessageRecorder messages;
        w("txtLeeftijdOPMnd")->setText(QStringLiteral("0"));
        enter(w("txtLeeftijdOPJr"), QStringLiteral("60"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet hoger dan de ingangsleeftijd van het prepensioen zijn."));
        QCOMPARE(messages.lastTitle(), kTitleToez);
        QCOMPARE(c.row()->LeeftijdOP(), 780);
    }

    // The adviser switches the PreP off; its date and age stay on the screen (greyed), and the
    // OP may still not start before that age, whether the field is left or the screen is.
    void opAgeBelowTheAgeOfASwitchedOffPreP()
    {
        bind(fullCase());
        MessageRecorder messages;
        auto *chkPreP = w<QCheckBox>("chkPreP");
        click(chkPreP);
        QVERIFY(!c.row()->PreP());
        QVERIFY(!w("txtLeeftijdPrePJr")->isEnabled());
        QCOMPARE(w("txtLeeftijdPrePJr")->text(), QStringLiteral("62"));
        QCOMPARE(w("txtLeeftijdPrePMnd")->text(), QStringLiteral("0"));

        TextBox *years = w("txtLeeftijdOPJr");
        w("txtLeeftijdOPMnd")->setText(QStringLiteral("11"));
        enter(years, QStringLiteral("61"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet hoger dan de ingangsleeftijd van het prepensioen zijn."));
        QCOMPARE(messages.lastTitle(), kTitleToez);
        QCOMPARE(messages.last().icon, MessageBox::Icon::Exclamation);
        QCOMPARE(QApplication::focusWidget(), years);
        QCOMPARE(c.row()->LeeftijdOP(), 780);

        // The screen's full check sees the same refused age.
        messages.clear();
        bool cancel = false;
        panel->Validation(cancel, 0);
        QVERIFY(cancel);
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet hoger dan de ingangsleeftijd van het prepensioen zijn."));
        QCOMPARE(QApplication::focusWidget(), years);

        // The same age as the shown PreP age is not lower, so it passes.
        messages.clear();
        w("txtLeeftijdOPMnd")->setText(QStringLiteral("0"));
        enter(years, QStringLiteral("62"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.row()->LeeftijdOP(), 62 * 12);
    }

    void prepStartingAgeRange()
    {
        bind(fullCase());
        MessageRecorder messages;
        TextBox *years = w("txtLeeftijdPrePJr");
        w("txtLeeftijdPrePMnd")->setText(QStringLiteral("12"));
        enter(years, QStringLiteral("39"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.row()->LeeftijdPreP(), 480);

        // Typing the months and leaving them for the years field stores them on their own.
        enter(w("txtLeeftijdPrePMnd"), QStringLiteral("1"));
        QCOMPARE(c.row()->LeeftijdPreP(), 481);
        enter(years, QStringLiteral("99"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het prepensioen moet tussen 40 en 99 jaar liggen."));
        QCOMPARE(messages.lastTitle(), kTitleToez);
        QCOMPARE(QApplication::focusWidget(), years);
        QCOMPARE(c.row()->LeeftijdPreP(), 481);

        messages.clear();
        enter(years, QStringLiteral("65"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het prepensioen moet lager dan de ingangsleeftijd van het ouderdomspensioen zijn."));
        QCOMPARE(c.row()->LeeftijdPreP(), 481);
    }

    void fullCheckSeesPrepAgeThroughTheDate()
    {
        Case theCase = fullCase();
        theCase.row()->setDt_IngangPreP(kBirth.addYears(30));
        bind(theCase);
        MessageRecorder messages;
        bool cancel = false;
        panel->Validation(cancel, 0);
        QVERIFY(cancel);
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het prepensioen moet tussen 40 en 80 jaar liggen."));
        QCOMPARE(messages.lastTitle(), kTitleToez);
        QCOMPARE(QApplication::focusWidget(), w("txtIngangPreP"));
    }

    void prepDateAgeLimits()
    {
        bind(fullCase());
        MessageRecorder messages;
        // 80 years and 11 months still counts as 80 whole years; the OP must stay later.
        c.row()->setDt_IngangOP(QDate(2045, 1, 1));
        panel->SetApplication(c.app, 1, c.penId);
        enter(w("txtIngangPreP"), QStringLiteral("01-07-2041"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.row()->Dt_IngangPreP(), QDate(2041, 7, 1));
        enter(w("txtIngangPreP"), QStringLiteral("15-07-2041"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het prepensioen moet tussen 40 en 80 jaar liggen."));
        QCOMPARE(c.row()->Dt_IngangPreP(), QDate(2041, 7, 1));
        messages.clear();
        // Equal to the birth date passes the birth check (and then meets the age check).
        enter(w("txtIngangPreP"), QStringLiteral("15-07-1960"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het prepensioen moet tussen 40 en 80 jaar liggen."));
    }

    void regel85OnlyWhenLeavingThePrepAmount()
    {
        Case theCase = fullCase();
        theCase.pen->setHuidigeWerkgever(true);
        theCase.pen->setSalaris(40000);
        bind(theCase);
        QVERIFY(c.pen->Regel85Procent());
        MessageRecorder messages;
        messages.answerNext(MessageBox::Answer::No);
        TextBox *prep = w("txtPreP");
        enter(prep, QStringLiteral("35000"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("LET OP!"));
        QCOMPARE(messages.lastText(),
                 QStringLiteral("Opgegeven pré-pensioen is meer dan 85% (34.000) van het pensioengevend inkomen.\nWeet u dit zeker?"));
        QCOMPARE(messages.last().icon, MessageBox::Icon::Exclamation);
        QCOMPARE(messages.last().buttons, MessageBox::Buttons::YesNo);
        QCOMPARE(c.row()->BedragPreP(), 2000.0);
        QCOMPARE(QApplication::focusWidget(), prep);

        messages.clear();
        messages.answerNext(MessageBox::Answer::Yes);
        enter(prep, QStringLiteral("35000"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(c.row()->BedragPreP(), 35000.0);

        messages.clear();
        bool cancel = false;
        panel->Validation(cancel, 0);
        QVERIFY(!cancel);
        QCOMPARE(messages.count(), 0);
    }

    void regel85WithoutIncome()
    {
        Case theCase = fullCase();
        theCase.pen->setHuidigeWerkgever(true);
        bind(theCase);
        MessageRecorder messages;
        enter(w("txtPreP"), QStringLiteral("3000"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(), QStringLiteral("Pensioengevend inkomen niet ingevuld."));
        QCOMPARE(messages.lastTitle(), QStringLiteral("Ontbrekende invoer"));
        QCOMPARE(c.row()->BedragPreP(), 2000.0);
    }

    void percentageLimits_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<double>("stored");
        QTest::addColumn<QString>("message");
        const QString pp = QStringLiteral("Percentage partnerpensioen voor AOW bij overlijden voor AOW (t.o.v. OP) van 0% t/m 1000% invullen.");
        const QString ppNaAow = QStringLiteral("Percentage partnerpensioen na AOW bijoverlijden voor AOW (t.o.v. OP) van 0% t/m 1000% invullen.");
        const QString ppna65 = QStringLiteral("Percentage partnerpensioen na AOW bij overlijden na AOW (t.o.v. OP) van 0% t/m 1000% invullen.");
        const QString ppTotAow = QStringLiteral("Percentage partnerpensioen voor AOW bij overlijden na AOW (t.o.v. OP) van 0% t/m 1000% invullen.");
        const QString wzp = QStringLiteral("Percentage wezenpensioen (t.o.v. OP) van 0% t/m 100% invullen.");
        QTest::newRow("PP 1000") << "txtPcPp" << "1000" << 1000.0 << QString();
        QTest::newRow("PP 1000,5") << "txtPcPp" << "1000,5" << 70.0 << pp;
        QTest::newRow("PPNaAow 1000") << "txtPcPPNaAow" << "1000" << 1000.0 << QString();
        QTest::newRow("PPNaAow 1000,5") << "txtPcPPNaAow" << "1000,5" << 70.0 << ppNaAow;
        QTest::newRow("PPna65 1000,5") << "txtPcPPna65" << "1000,5" << 70.0 << ppna65;
        QTest::newRow("PpNa65TotAow 1000,5") << "txtPcPpNa65TotAow" << "1000,5" << 70.0 << ppTotAow;
        QTest::newRow("WzP 100") << "txtPcWzp" << "100" << 100.0 << QString();
        QTest::newRow("WzP 100,5") << "txtPcWzp" << "100,5" << 14.0 << wzp;
    }
    void percentageLimits()
    {
        QFETCH(QString, field);
        QFETCH(QString, typed);
        QFETCH(double, stored);
        QFETCH(QString, message);
        bind(fullCase());
        MessageRecorder messages;
        TextBox *box = find<TextBox>(panel.get(), field);
        enter(box, typed);
        const float pc = field == QLatin1String("txtPcPp") ? c.pen->Pc_PP()
                         : field == QLatin1String("txtPcPPNaAow") ? c.pen->Pc_PPNaAow()
                         : field == QLatin1String("txtPcPPna65") ? c.pen->Pc_PPna65()
                         : field == QLatin1String("txtPcPpNa65TotAow") ? c.pen->Pc_PpNa65TotAow()
                                                                        : c.pen->Pc_WzP();
        QCOMPARE(double(pc), stored);
        if (message.isEmpty()) {
            QCOMPARE(messages.count(), 0);
        } else {
            QCOMPARE(messages.count(), 1);
            QCOMPARE(messages.lastText(), message);
            QCOMPARE(messages.lastTitle(), kTitleOngeldig);
            QCOMPARE(QApplication::focusWidget(), box);
        }
    }

    void prepDateDifferingFromEmploymentAsks()
    {
        Case theCase = fullCase();
        const qint16 index = theCase.anv->AddDienstverband();
        auto dv = theCase.anv->Get_Dienstverband(index);
        dv->setDt_InkomenMeetellenTot(QDate(2022, 1, 1));
        theCase.pen->setDienstverbandKey(dv->Key());
        bind(theCase);
        MessageRecorder messages;
        const QString question = QStringLiteral(
            "Ingangsdatum pré-pensioen stemt niet overeen met de datum inkomen meetellen tot van het dienstverband.\n"
            "Weet u zeker dat u dit wenst?");

        messages.answerNext(MessageBox::Answer::Yes);
        enter(w("txtIngangPreP"), QStringLiteral("01-09-2022"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Ongelijke data"));
        QCOMPARE(messages.lastText(), question);
        QCOMPARE(messages.last().icon, MessageBox::Icon::None);
        QCOMPARE(messages.last().buttons, MessageBox::Buttons::YesNo);
        QCOMPARE(c.row()->Dt_IngangPreP(), QDate(2022, 9, 1));

        messages.clear();
        messages.answerNext(MessageBox::Answer::No);
        TextBox *field = w("txtIngangPreP");
        enter(field, QStringLiteral("01-10-2022"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(c.row()->Dt_IngangPreP(), QDate(2022, 9, 1));
        QCOMPARE(QApplication::focusWidget(), field);

        // The same date as the employment's asks nothing.
        messages.clear();
        enter(field, QStringLiteral("01-01-2022"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.row()->Dt_IngangPreP(), QDate(2022, 1, 1));
    }

    void overlapWarningFallsBackToOwnEndOfIncome()
    {
        Case theCase = fullCase();
        theCase.row()->setPreP(false);
        const qint16 index = theCase.anv->AddDienstverband();
        auto dv = theCase.anv->Get_Dienstverband(index);
        theCase.pen->setDienstverbandKey(dv->Key());
        QVERIFY(!isFilled(dv->Dt_InkomenMeetellenTot()));
        QVERIFY(theCase.anv->Dt_EindeInkomen() > kIngangOP);
        bind(theCase);
        auto *warning0 = w<QAbstractButton>("cmdWarningDubbelTellen_0");
        auto *warning1 = w<QAbstractButton>("cmdWarningDubbelTellen_1");
        QVERIFY(warning0->isVisible());
        QVERIFY(!warning1->isVisible());

        MessageRecorder messages;
        click(warning0);
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Overlapping inkomsten"));
        QCOMPARE(messages.lastText(),
                 QStringLiteral("Let op: er is periode waarin met zowel inkomen uit dienstverband als pensioen gerekend wordt."));
        QCOMPARE(messages.last().icon, MessageBox::Icon::Exclamation);

        // The employment's own date wins when it is filled.
        dv->setDt_InkomenMeetellenTot(QDate(2025, 1, 1));
        panel->SetApplication(c.app, 1, c.penId);
        QVERIFY(!warning0->isVisible());
    }

    void prepOverlapWarning()
    {
        Case theCase = fullCase();
        const qint16 index = theCase.anv->AddDienstverband();
        auto dv = theCase.anv->Get_Dienstverband(index);
        dv->setDt_InkomenMeetellenTot(QDate(2024, 1, 1));
        theCase.pen->setDienstverbandKey(dv->Key());
        bind(theCase);
        QVERIFY(!w<QAbstractButton>("cmdWarningDubbelTellen_0")->isVisible());
        QVERIFY(w<QAbstractButton>("cmdWarningDubbelTellen_1")->isVisible());
        MessageRecorder messages;
        click(w<QAbstractButton>("cmdWarningDubbelTellen_1"));
        QCOMPARE(messages.lastText(),
                 QStringLiteral("Let op: er is periode waarin met zowel inkomen uit dienstverband als Pré-pensioen gerekend wordt."));
        // Without a named employment there is nothing to compare with.
        c.pen->setDienstverbandKey(QString());
        panel->SetApplication(c.app, 1, c.penId);
        QVERIFY(!w<QAbstractButton>("cmdWarningDubbelTellen_1")->isVisible());
    }

    void refusedFieldLeavesRecordAndFocus_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("title");
        QTest::newRow("OP age") << "txtLeeftijdOPJr" << "100"
                                << "De ingangsleeftijd van het ouderdomspensioen moet tussen 50 en 99 jaar liggen." << kTitleToez;
        QTest::newRow("WzP end age") << "txtEindWzp" << "31" << "Eindleeftijd wezenpensioen van 10 t/m 30 jaar invullen." << kTitleOngeldig;
        QTest::newRow("WzP end age low") << "txtEindWzp" << "9" << "Eindleeftijd wezenpensioen van 10 t/m 30 jaar invullen." << kTitleOngeldig;
        QTest::newRow("OP date empty") << "txtIngangOP" << "" << "Ingangsdatum ouderdomspensioen niet ingevuld." << kTitleVerplicht;
        QTest::newRow("OP date before PreP") << "txtIngangOP" << "01-08-2022"
                                             << "Ingangsdatum ouderdomspensioen moet na de ingangsdatum pré-pensioen liggen." << kTitleOngeldig;
        QTest::newRow("PreP date empty") << "txtIngangPreP" << "" << "Ingangsdatum pré-pensioen niet ingevuld." << kTitleVerplicht;
        QTest::newRow("PreP date before birth") << "txtIngangPreP" << "14-07-1960"
                                                << "De ingangsdatum van het prepensioen moet na de geboortedatum van de aanvrager liggen." << kTitleOngeldig;
        QTest::newRow("PreP date after OP") << "txtIngangPreP" << "01-08-2025"
                                            << "Ingangsdatum pré-pensioen moet voor de ingangsdatum ouderdomspensioen liggen." << kTitleOngeldig;
        QTest::newRow("PreP age") << "txtLeeftijdPrePJr" << "30"
                                  << "De ingangsleeftijd van het prepensioen moet tussen 40 en 99 jaar liggen." << kTitleToez;
        QTest::newRow("IP") << "txtIP" << "0" << "Bedrag invaliditeitspensioen niet ingevuld." << kTitleVerplicht;
        QTest::newRow("OP") << "txtOP" << "" << "Bedrag ouderdomspensioen niet ingevuld." << kTitleVerplicht;
        QTest::newRow("PP") << "txtPP" << "0" << "Bedrag nabestaandenpensioen tot AOW bij overlijden voor AOW niet ingevuld." << kTitleVerplicht;
        QTest::newRow("PPNaAow") << "txtPPNaAow" << "0" << "Bedrag nabestaandenpensioen na AOW bij overlijden voor AOW niet ingevuld." << kTitleVerplicht;
        QTest::newRow("PpNa65TotAow") << "txtPpNa65TotAow" << "0" << "Bedrag nabestaandenpensioen tot AOW bij overlijden na AOW niet ingevuld." << kTitleVerplicht;
        QTest::newRow("PPna65") << "txtPPna65" << "0" << "Bedrag nabestaandenpensioen na AOW bij overlijden na AOW niet ingevuld." << kTitleVerplicht;
        QTest::newRow("PreP") << "txtPreP" << "0" << "Bedrag pré-pensioen niet ingevuld." << kTitleVerplicht;
        QTest::newRow("TOP") << "txtTOP" << "0" << "Bedrag overbruggingspensioen niet ingevuld." << kTitleVerplicht;
        QTest::newRow("WzP") << "txtWzP" << "0" << "Bedrag wezenpensioen niet ingevuld." << kTitleVerplicht;
        QTest::newRow("PcPp") << "txtPcPp" << "1001"
                              << "Percentage partnerpensioen voor AOW bij overlijden voor AOW (t.o.v. OP) van 0% t/m 1000% invullen." << kTitleOngeldig;
        QTest::newRow("PcWzp") << "txtPcWzp" << "101" << "Percentage wezenpensioen (t.o.v. OP) van 0% t/m 100% invullen." << kTitleOngeldig;
        QTest::newRow("ANW") << "txtAnwCompensatie" << "ANW" << QString() << kTitleOngeldig;
    }
    void refusedFieldLeavesRecordAndFocus()
    {
        QFETCH(QString, field);
        QFETCH(QString, typed);
        QFETCH(QString, message);
        QFETCH(QString, title);
        bind(fullCase());
        if (typed == QLatin1String("ANW")) {
            const double max = c.app->Get_Parameters()->MaxAnwCompensation();
            typed = VandrelControl::Format::whole(max + 1);
            message = QStringLiteral("Maximale ANW-compensatie is ") + VandrelControl::Format::whole(max)
                      + QStringLiteral(" (=75% maximale ANW).");
        }
        const QStringList before = fingerprint(c);
        QSignalSpy info(panel.get(), &PensToez::InfoChanged);
        MessageRecorder messages;
        TextBox *box = find<TextBox>(panel.get(), field);
        QVERIFY(box->isEnabled());
        enter(box, typed);
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(), message);
        QCOMPARE(messages.lastTitle(), title);
        QCOMPARE(messages.last().icon, MessageBox::Icon::Exclamation);
        QCOMPARE(QApplication::focusWidget(), box);
        QCOMPARE(box->text(), typed);
        QCOMPARE(fingerprint(c), before);
        QCOMPARE(info.count(), 0);
    }

    void opDateBelowFiftyWithoutPreP()
    {
        Case theCase = fullCase();
        theCase.row()->setPreP(false);
        // The switched-off PreP still shows its age (45), which the OP age shown later must not
        // fall below when the Tab passes through the OP age.
        theCase.row()->setDt_IngangPreP(kBirth.addYears(45));
        bind(theCase);
        MessageRecorder messages;
        TextBox *date = w("txtIngangOP");
        enter(date, QStringLiteral("14-07-2010"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet tussen 50 en 99 jaar liggen."));
        QCOMPARE(messages.lastTitle(), kTitleToez);
        QCOMPARE(QApplication::focusWidget(), date);
        QCOMPARE(c.row()->Dt_IngangOP(), kIngangOP);
        // Exactly 50 passes; only the lower bound is tested on the date.
        messages.clear();
        enter(date, QStringLiteral("15-07-2010"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.row()->Dt_IngangOP(), QDate(2010, 7, 15));
        enter(date, QStringLiteral("01-01-2070"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.row()->Dt_IngangOP(), QDate(2070, 1, 1));
    }

    void validationKeepsACancelAlreadySet()
    {
        bind(fullCase());
        MessageRecorder messages;
        bool cancel = false;
        panel->Validation(cancel, 0);
        QVERIFY(!cancel);
        QCOMPARE(messages.count(), 0);
        // A failing field with Cancel already set: nothing shown, Cancel stays.
        w("txtOP")->setText(QString());
        cancel = true;
        panel->Validation(cancel, 0);
        QVERIFY(cancel);
        QCOMPARE(messages.count(), 0);
    }

    void fullCheckStopsAtTheFirstFault()
    {
        bind(fullCase());
        MessageRecorder messages;
        w("txtOP")->setText(QString());
        w("txtWzP")->setText(QString());
        bool cancel = false;
        panel->Validation(cancel, 0);
        QVERIFY(cancel);
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(), QStringLiteral("Bedrag ouderdomspensioen niet ingevuld."));
        QCOMPARE(QApplication::focusWidget(), w("txtOP"));
    }

    void fullCheckReconcilesTheSchemeStartDate()
    {
        Case theCase = fullCase();
        theCase.pen->setDt_PensioenIngang(QDate(2030, 1, 1));
        bind(theCase);
        MessageRecorder messages;
        bool cancel = false;
        panel->Validation(cancel, 7);
        QCOMPARE(c.pen->Dt_PensioenIngang(), QDate(2030, 1, 1));
        panel->Validation(cancel, 0);
        QVERIFY(!cancel);
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.pen->Dt_PensioenIngang(), kIngangOP);
    }

    void errorInFieldCheckGoesToTheHost()
    {
        bind(fullCase());
        MessageRecorder messages;
        c.anv->RemovePension(c.penId);
        TextBox *op = w("txtOP");
        enter(op, QStringLiteral("5000"));
        const auto errors = c.app->reportedErrors();
        QVERIFY(!errors.isEmpty());
        QCOMPARE(errors.last().Procedure, QStringLiteral("TxtOP_Validation"));
        QCOMPARE(errors.last().Component, QStringLiteral("PensToez"));
        QCOMPARE(errors.last().Subject, QStringLiteral("Pensioentoezeggingen"));
        QCOMPARE(errors.last().Message, QStringLiteral("Er is een fout opgetreden."));
        QCOMPARE(messages.count(), 0);
        // Not a failed check: the user may move on.
        QVERIFY(QApplication::focusWidget() != op);
    }
};

QTEST_MAIN(TestPensToez)
#include "tst_penstoez.moc"
