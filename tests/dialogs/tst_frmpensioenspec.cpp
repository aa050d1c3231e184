// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// "Specificatie pensioen" driven as a user against the reference host: type, Tab, tick, click
// rows and buttons, answer the questions, then read the pension record back.

#include "frmpensioenspec.h"
#include "frmspecificatiescenario.h"

#include "hostapplication.h"
#include "listviewroutines.h"
#include "textbox.h"
#include "usersim.h"

#include <QApplication>
#include <QCheckBox>
#include <QJsonDocument>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <functional>

using namespace TestSupport;
using VandrelApplication::OuderdomRegelPtr;
using VandrelApplication::PensioenPtr;
using VandrelControl::TextBox;
using VandrelPensioen::frmPensioenSpec;
using VandrelPensioen::frmSpecificatieScenario;

namespace {

const QString kTitle = QStringLiteral("Specificatie pensioen");
const QDate kBirth(1970, 3, 15);


QByteArray exported(const Zarnoveld::HostApplication &app)
{
    return QJsonDocument(app.exportJson()).toJson(QJsonDocument::Indented);
}

} // namespace

class TstFrmPensioenSpec : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<Zarnoveld::HostApplication> m_app;
    VandrelApplication::AanvragerPtr m_anv;
    PensioenPtr m_pensioen;
    qint16 m_penId = 0;
    std::unique_ptr<frmPensioenSpec> m_dialog;

    template <typename T>
    T *w(const char *name) { return find<T>(m_dialog.get(), QLatin1String(name)); }
    TextBox *txt(const char *name) { return w<TextBox>(name); }
    QTreeWidget *list() { return w<QTreeWidget>("lvwPensioen"); }
    OuderdomRegelPtr row(qint16 index) { return m_pensioen->Get_OuderdomRegel(index); }

    void clickRow(int index)
    {
        QTreeWidgetItem *item = list()->topLevelItem(index);
        QVERIFY(item);
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          list()->visualItemRect(item).center());
    }
    // A click on the check box itself, not in the empty part of a wide row.
    void tick(const char *name)
    {
        auto *box = w<QCheckBox>(name);
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
    }
    void openScenario()
    {
        click(w<QPushButton>("cmdScenarioOudersomspensioen"));
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    }
    void open()
    {
        m_dialog = std::make_unique<frmPensioenSpec>();
        m_dialog->SetApplication(m_app, 1, m_penId);
        QVERIFY(showActive(m_dialog.get()));
    }
    // Acts on the modal dialog that the next click opens, then makes sure it is gone.
    void onModal(std::function<void(QWidget *)> action)
    {
        auto *timer = new QTimer(this);
        timer->setInterval(10);
        connect(timer, &QTimer::timeout, this, [timer, action] {
            QWidget *modal = QApplication::activeModalWidget();
            if (!modal || !modal->isVisible())
                return;
            timer->stop();
            timer->deleteLater();
            QApplication::setActiveWindow(modal);
            action(modal);
            if (modal->isVisible())
                modal->close();
        });
        timer->start();
    }

private Q_SLOTS:
    void init()
    {
        m_app = Zarnoveld::HostApplication::createInMemory();
        m_anv = m_app->Get_Dossier()->Get_Aanvrager(1);
        m_anv->setGeboorteDatum(kBirth);
        m_penId = m_anv->AddPension();
        m_pensioen = m_anv->Get_Pensioen(m_penId);
        auto r = row(1);
        r->setLeeftijd(65 * 12);
        r->setOP(true);
        r->setBedragOP(20000);
        r->setLeeftijdOP(67 * 12);       // 01-04-2037
        r->setPreP(true);
        r->setBedragPreP(5000);
        r->setLeeftijdPreP(60 * 12);     // 01-04-2030
    }

    void cleanup()
    {
        m_dialog.reset();
        m_pensioen.reset();
        m_anv.reset();
        m_app.reset();
    }

    void showsTheRowsAndTheSelectedRowsFields()
    {
        MessageRecorder messages;
        const qint16 second = m_pensioen->AddOuderdomRegel();
        row(second)->setLeeftijd(62 * 12 + 6);
        row(second)->setOP(true);
        row(second)->setBedragOP(1234567);
        open();
        QCOMPARE(m_dialog->windowTitle(), kTitle);
        QCOMPARE(list()->headerItem()->text(0), QStringLiteral("Vanaf leeftijd"));
        QCOMPARE(list()->headerItem()->text(1), QStringLiteral("Ouderdomspensioen"));
        QCOMPARE(list()->headerItem()->text(2), QStringLiteral("Prepensioen"));
        QCOMPARE(list()->topLevelItemCount(), 2);
        QCOMPARE(list()->topLevelItem(0)->text(0), QStringLiteral("65 jaar"));
        QCOMPARE(list()->topLevelItem(0)->text(1), QStringLiteral("20.000"));
        QCOMPARE(list()->topLevelItem(0)->text(2), QStringLiteral("5.000"));
        QCOMPARE(list()->topLevelItem(1)->text(0), QStringLiteral("62 jaar en 6 maanden"));
        QCOMPARE(list()->topLevelItem(1)->text(1), QStringLiteral("1.234.567"));
        QCOMPARE(VandrelPensioen::ListView::key(list()->topLevelItem(0)), row(1)->Key());
        QVERIFY(w<QPushButton>("cmdDelete")->isEnabled());

        QCOMPARE(txt("txtLeeftijdJr")->text(), QStringLiteral("65"));
        QCOMPARE(txt("txtLeeftijdMnd")->text(), QStringLiteral("0"));
        QVERIFY(w<QCheckBox>("chkOP")->isChecked());
        QCOMPARE(w<QCheckBox>("chkOP")->text(), QStringLiteral("Ouderdomspensioen (OP) (excl. AOW)"));
        QCOMPARE(txt("txtOP")->text(), QStringLiteral("20.000"));
        QCOMPARE(txt("txtIngangOP")->text(), QStringLiteral("01-04-2037"));
        QCOMPARE(txt("txtLeeftijdOPJr")->text(), QStringLiteral("67"));
        QCOMPARE(txt("txtIngangPreP")->text(), QStringLiteral("01-04-2030"));
        QCOMPARE(txt("txtLeeftijdPrePJr")->text(), QStringLiteral("60"));

        clickRow(1);
        QCOMPARE(txt("txtLeeftijdJr")->text(), QStringLiteral("62"));
        QCOMPARE(txt("txtLeeftijdMnd")->text(), QStringLiteral("6"));
        QVERIFY(!w<QCheckBox>("chkPreP")->isChecked());
        QVERIFY(txt("txtOP")->isEnabled());
        QVERIFY(!txt("txtPreP")->isEnabled());
        QVERIFY(!txt("txtIngangPreP")->isEnabled());
        QVERIFY(!txt("txtLeeftijdPrePJr")->isEnabled());
        QCOMPARE(messages.count(), 0);
        QVERIFY(!m_dialog->In_Changed());
    }

    void targetAgeFrom40To99Years()
    {
        MessageRecorder messages;
        open();
        for (const char *refused : {"39", "100"}) {
            enter(txt("txtLeeftijdJr"), QLatin1String(refused));
            QCOMPARE(messages.lastTitle(), kTitle);
            QCOMPARE(messages.lastText(), QStringLiteral("De pensioenleeftijd moet tussen 40 en 99 jaar liggen."));
            QCOMPARE(messages.last().icon, MessageBox::Icon::Exclamation);
            QCOMPARE(QApplication::focusWidget(), txt("txtLeeftijdJr"));
            QCOMPARE(row(1)->Leeftijd(), 65 * 12);
        }
        QCOMPARE(messages.count(), 2);
        QVERIFY(!m_dialog->In_Changed());

        enter(txt("txtLeeftijdJr"), QStringLiteral("40"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(row(1)->Leeftijd(), 40 * 12);
        QCOMPARE(list()->topLevelItem(0)->text(0), QStringLiteral("40 jaar"));
        QVERIFY(m_dialog->In_Changed());
        enter(txt("txtLeeftijdJr"), QStringLiteral("99"));
        enter(txt("txtLeeftijdMnd"), QStringLiteral("3"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(row(1)->Leeftijd(), 99 * 12 + 3);
        QCOMPARE(list()->topLevelItem(0)->text(0), QStringLiteral("99 jaar en 3 maanden"));
    }

    void opStartingAgeFrom60To99Years()
    {
        MessageRecorder messages;
        open();
        enter(txt("txtLeeftijdOPJr"), QStringLiteral("60"));
        QCOMPARE(messages.count(), 0);   // equal to the PreP age: passes
        QCOMPARE(row(1)->LeeftijdOP(), 720);
        QCOMPARE(txt("txtIngangOP")->text(), QStringLiteral("01-04-2030"));
        enter(txt("txtLeeftijdOPJr"), QStringLiteral("99"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(row(1)->LeeftijdOP(), 1188);

        enter(txt("txtLeeftijdOPJr"), QStringLiteral("60"));
        enter(txt("txtLeeftijdOPMnd"), QStringLiteral("11"));
        QCOMPARE(row(1)->LeeftijdOP(), 731);
        QCOMPARE(messages.count(), 0);
        enter(txt("txtLeeftijdOPJr"), QStringLiteral("59"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), kTitle);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet tussen 60 en 99 jaar liggen."));
        QCOMPARE(QApplication::focusWidget(), txt("txtLeeftijdOPJr"));
        QCOMPARE(row(1)->LeeftijdOP(), 731);

        // Below the PreP age.
        enter(txt("txtLeeftijdOPJr"), QStringLiteral("70"));
        enter(txt("txtLeeftijdPrePJr"), QStringLiteral("65"));
        QCOMPARE(messages.count(), 1);
        enter(txt("txtLeeftijdOPJr"), QStringLiteral("64"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.lastText(), QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet hoger dan "
                                                     "de ingangsleeftijd van het prepensioen zijn."));
    }

    void prepStartingAgeChecks()
    {
        MessageRecorder messages;
        open();
        enter(txt("txtLeeftijdPrePJr"), QStringLiteral("67"));   // equal to the OP age: passes
        QCOMPARE(messages.count(), 0);
        QCOMPARE(row(1)->LeeftijdPreP(), 67 * 12);
        enter(txt("txtLeeftijdPrePJr"), QStringLiteral("39"));
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het prepensioen moet tussen 40 en 99 jaar liggen."));
        QCOMPARE(messages.lastTitle(), kTitle);
        enter(txt("txtLeeftijdPrePJr"), QStringLiteral("68"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.lastText(), QStringLiteral("De ingangsleeftijd van het prepensioen moet lager dan de "
                                                     "ingangsleeftijd van het ouderdomspensioen zijn."));
        QCOMPARE(row(1)->LeeftijdPreP(), 67 * 12);
    }

    void equalStartingDatesAreRefused()
    {
        MessageRecorder messages;
        open();
        enter(txt("txtIngangOP"), QStringLiteral("01-04-2030"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), kTitle);
        QCOMPARE(messages.lastText(), QStringLiteral("De ingangsdatum van het ouderdomspensioen moet na de "
                                                     "ingangsdatum prepensioen liggen."));
        QCOMPARE(QApplication::focusWidget(), txt("txtIngangOP"));
        QCOMPARE(row(1)->Dt_IngangOP(), QDate(2037, 4, 1));
        enter(txt("txtIngangOP"), QStringLiteral("01-05-2037"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(row(1)->Dt_IngangOP(), QDate(2037, 5, 1));

        // The PreP date on the OP date is refused as well.
        enter(txt("txtIngangPreP"), QStringLiteral("01-05-2037"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.lastText(), QStringLiteral("De ingangsdatum van het prepensioen moet voor de "
                                                     "ingangsdatum van het ouderdomspensioen liggen."));
        QCOMPARE(row(1)->Dt_IngangPreP(), QDate(2030, 4, 1));
        enter(txt("txtIngangPreP"), QStringLiteral("01-04-2037"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(row(1)->Dt_IngangPreP(), QDate(2037, 4, 1));
    }

    void aDateIn1900IsNotFilledIn()
    {
        MessageRecorder messages;
        open();
        enter(txt("txtIngangOP"), QStringLiteral("31-12-1900"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), kTitle);
        QCOMPARE(messages.lastText(), QStringLiteral("Voer a.u.b. een ingangsdatum ouderdomspensioen in."));
        enter(txt("txtIngangOP"), QString());
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.lastText(), QStringLiteral("Voer a.u.b. een ingangsdatum ouderdomspensioen in."));
        enter(txt("txtIngangOP"), QStringLiteral("01-04-2037"));
        enter(txt("txtIngangPreP"), QStringLiteral("01-01-1900"));
        QCOMPARE(messages.count(), 3);
        QCOMPARE(messages.lastText(), QStringLiteral("Voer a.u.b. een ingangsdatum prepensioen in."));
        QCOMPARE(row(1)->Dt_IngangPreP(), QDate(2030, 4, 1));
        enter(txt("txtIngangPreP"), QStringLiteral("15-03-1970"));
        QCOMPARE(messages.count(), 4);
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsdatum van het prepensioen moet na de geboortedatum van de aanvrager liggen."));
    }

    void unequalEmploymentDateAsks()
    {
        MessageRecorder messages;
        auto dv = m_anv->Get_Dienstverband(m_anv->AddDienstverband());
        dv->setDt_InkomenMeetellenTot(QDate(2031, 1, 1));
        m_pensioen->setDienstverbandKey(dv->Key());
        open();
        messages.answerNext(MessageBox::Answer::No);
        enter(txt("txtIngangPreP"), QStringLiteral("01-05-2030"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Ongelijke data"));
        QCOMPARE(messages.lastText(), QStringLiteral("Ingangsdatum pré-pensioen stemt niet overeen met de datum "
                                                     "inkomen meetellen tot van het dienstverband.\n"
                                                     "Weet u zeker dat u dit wenst?"));
        QCOMPARE(messages.last().buttons, MessageBox::Buttons::YesNo);
        QCOMPARE(messages.last().icon, MessageBox::Icon::None);
        QCOMPARE(QApplication::focusWidget(), txt("txtIngangPreP"));
        QCOMPARE(row(1)->Dt_IngangPreP(), QDate(2030, 4, 1));

        messages.answerNext(MessageBox::Answer::Yes);
        pressTab(txt("txtIngangPreP"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(row(1)->Dt_IngangPreP(), QDate(2030, 5, 1));
        // The employment's own date asks nothing.
        enter(txt("txtIngangPreP"), QStringLiteral("01-01-2031"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(row(1)->Dt_IngangPreP(), QDate(2031, 1, 1));
    }

    void requiredAmounts()
    {
        MessageRecorder messages;
        open();
        enter(txt("txtOP"), QStringLiteral("0"));
        QCOMPARE(messages.lastTitle(), kTitle);
        QCOMPARE(messages.lastText(), QStringLiteral("Voer a.u.b. een bedrag bij ouderdomspensioen in."));
        QCOMPARE(row(1)->BedragOP(), 20000.0);
        enter(txt("txtOP"), QStringLiteral("21.000"));
        QCOMPARE(row(1)->BedragOP(), 21000.0);
        QCOMPARE(list()->topLevelItem(0)->text(1), QStringLiteral("21.000"));
        enter(txt("txtPreP"), QString());
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.lastText(), QStringLiteral("Voer a.u.b. een bedrag bij prepensioen in."));
        QCOMPARE(row(1)->BedragPreP(), 5000.0);
    }

    void prepAbove85PercentAsksOnlyWhenLeavingTheAmount()
    {
        MessageRecorder messages;
        m_pensioen->setHuidigeWerkgever(true);
        m_pensioen->setSalaris(40000);
        QVERIFY(m_pensioen->Regel85Procent());
        open();
        enter(txt("txtPreP"), QStringLiteral("34000"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(row(1)->BedragPreP(), 34000.0);

        messages.answerNext(MessageBox::Answer::No);
        enter(txt("txtPreP"), QStringLiteral("34001"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("LET OP!"));
        QCOMPARE(messages.lastText(), QStringLiteral("Opgegeven prepensioen bedraagt meer dan 85% (34.000) van het "
                                                     "pensioengevend inkomen.\nWeet u dit zeker?"));
        QCOMPARE(messages.last().buttons, MessageBox::Buttons::YesNo);
        QCOMPARE(messages.last().icon, MessageBox::Icon::Exclamation);
        QCOMPARE(QApplication::focusWidget(), txt("txtPreP"));
        QCOMPARE(row(1)->BedragPreP(), 34000.0);

        messages.answerNext(MessageBox::Answer::Yes);
        pressTab(txt("txtPreP"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(row(1)->BedragPreP(), 34001.0);

        // Adding a row and OK ask nothing.
        click(w<QPushButton>("cmdAdd"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(m_pensioen->OuderdomRegelCount(), 2);
        clickRow(0);
        click(w<QPushButton>("cmdOk"));
        QCOMPARE(messages.count(), 2);
        QVERIFY(!m_dialog->isVisible());
    }

    void aNewRowShowsNietIngevuld()
    {
        MessageRecorder messages;
        open();
        click(w<QPushButton>("cmdAdd"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(list()->topLevelItemCount(), 2);
        QCOMPARE(list()->currentItem(), list()->topLevelItem(1));
        QCOMPARE(list()->topLevelItem(1)->text(0), QStringLiteral("<niet ingevuld>"));
        QCOMPARE(list()->topLevelItem(1)->text(1), QStringLiteral("0"));
        QCOMPARE(list()->topLevelItem(1)->text(2), QStringLiteral("0"));
        QCOMPARE(txt("txtLeeftijdJr")->text(), QString());
        QVERIFY(!txt("txtOP")->isEnabled());
        QVERIFY(m_dialog->In_Changed());

        // The new row must be complete before another one or OK.
        click(w<QPushButton>("cmdAdd"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(), QStringLiteral("De pensioenleeftijd moet tussen 40 en 99 jaar liggen."));
        QCOMPARE(QApplication::focusWidget(), txt("txtLeeftijdJr"));
        QCOMPARE(m_pensioen->OuderdomRegelCount(), 2);
        enter(txt("txtLeeftijdJr"), QStringLiteral("63"));
        click(w<QPushButton>("cmdOk"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.lastText(), QStringLiteral("Voer a.u.b. een (pre)pensioen in."));
        QVERIFY(m_dialog->isVisible());
        tick("chkOP");
        QVERIFY(row(2)->OP());
        QVERIFY(txt("txtOP")->isEnabled());
        enter(txt("txtOP"), QStringLiteral("12000"));
        // Leaving the empty starting date for OK is refused by the date's own check.
        click(w<QPushButton>("cmdOk"));
        QCOMPARE(messages.count(), 3);
        QCOMPARE(messages.lastText(), QStringLiteral("Voer a.u.b. een ingangsdatum ouderdomspensioen in."));
        QCOMPARE(QApplication::focusWidget(), txt("txtIngangOP"));
        QVERIFY(m_dialog->isVisible());
        enter(txt("txtIngangOP"), QStringLiteral("01-04-2033"));
        QCOMPARE(txt("txtLeeftijdOPJr")->text(), QStringLiteral("63"));
        click(w<QPushButton>("cmdOk"));
        QCOMPARE(messages.count(), 3);
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(row(2)->Leeftijd(), 63 * 12);
        QCOMPARE(row(2)->BedragOP(), 12000.0);
        QCOMPARE(row(2)->Dt_IngangOP(), QDate(2033, 4, 1));
        QCOMPARE(row(2)->LeeftijdOP(), 63 * 12);
    }

    void deleteRemovesTheSelectedRow()
    {
        MessageRecorder messages;
        const qint16 second = m_pensioen->AddOuderdomRegel();
        row(second)->setLeeftijd(62 * 12);
        const QString firstKey = row(1)->Key();
        open();
        clickRow(1);
        click(w<QPushButton>("cmdDelete"));
        QCOMPARE(m_pensioen->OuderdomRegelCount(), 1);
        QCOMPARE(row(1)->Key(), firstKey);
        QCOMPARE(list()->topLevelItemCount(), 1);
        QVERIFY(m_dialog->In_Changed());
        // The host keeps row 1; its refusal reaches the host's error report under the handler's name.
        click(w<QPushButton>("cmdDelete"));
        QCOMPARE(m_pensioen->OuderdomRegelCount(), 1);
        QCOMPARE(m_app->reportedErrors().size(), 1);
        QCOMPARE(m_app->reportedErrors().first().Procedure, QStringLiteral("cmdDelete_Click"));
        QCOMPARE(m_app->reportedErrors().first().Component, QStringLiteral("frmPensioenSpec"));
        QCOMPARE(m_app->reportedErrors().first().Message, QStringLiteral("Er is een fout opgetreden."));
        QCOMPARE(m_app->reportedErrors().first().Product, QStringLiteral("Zarnoveld"));
        QVERIFY(m_dialog->isVisible());
    }

    void scenarioButtonOpensTheScenarioOfTheSelectedRow()
    {
        MessageRecorder messages;
        open();
        bool seen = false;
        onModal([&](QWidget *modal) {
            auto *scenario = qobject_cast<frmSpecificatieScenario *>(modal);
            QVERIFY(scenario);
            seen = true;
            auto *lvw = find<QTreeWidget>(scenario, QStringLiteral("lvwScenario"));
            QCOMPARE(lvw->topLevelItem(0)->text(0), QStringLiteral("01-04-2037"));
            click(find<QPushButton>(scenario, QStringLiteral("cmdToevoegen")));
            auto *datum = find<TextBox>(scenario, QStringLiteral("txtDatum"));
            // The latest date is the birth date plus 100 years.
            enter(datum, QStringLiteral("15-03-2070"));
            QCOMPARE(messages.lastText(),
                     QStringLiteral("Datum moet voor de einddatum van het scenario (15-03-2070) liggen."));
            enter(datum, QStringLiteral("14-03-2070"));
            enter(find<TextBox>(scenario, QStringLiteral("txtBedrag")), QStringLiteral("25000"));
            click(find<QPushButton>(scenario, QStringLiteral("cmdOK")));
        });
        openScenario();
        QVERIFY(seen);
        QCOMPARE(messages.count(), 1);
        QVERIFY(m_dialog->In_Changed());
        const auto scenario = row(1)->ScenarioOP();
        QCOMPARE(scenario->RegelCount(), qint16(1));
        QCOMPARE(scenario->Regel(1)->Maand(), qint16(396));
        QCOMPARE(scenario->Regel(1)->Bedrag(), 25000.0);
    }

    void cancelTakesBackEveryEdit_data()
    {
        QTest::addColumn<bool>("closeBox");
        QTest::newRow("Annuleren") << false;
        QTest::newRow("close box") << true;
    }

    void cancelTakesBackEveryEdit()
    {
        QFETCH(bool, closeBox);
        MessageRecorder messages;
        const qint16 second = m_pensioen->AddOuderdomRegel();
        row(second)->setLeeftijd(62 * 12);
        row(second)->setPreP(true);
        row(second)->setBedragPreP(3000);
        row(second)->setLeeftijdPreP(62 * 12);
        auto regel = row(1)->ScenarioOP()->Add_Regel();
        regel->setMaand(13);
        regel->setBedrag(21000);
        const QByteArray before = exported(*m_app);
        open();

        enter(txt("txtLeeftijdJr"), QStringLiteral("66"));
        enter(txt("txtOP"), QStringLiteral("22000"));
        enter(txt("txtIngangPreP"), QStringLiteral("01-06-2031"));
        enter(txt("txtPreP"), QStringLiteral("6000"));
        onModal([&](QWidget *modal) {
            click(find<QPushButton>(modal, QStringLiteral("cmdToevoegen")));
            enter(find<TextBox>(modal, QStringLiteral("txtDatum")), QStringLiteral("01-04-2040"));
            enter(find<TextBox>(modal, QStringLiteral("txtBedrag")), QStringLiteral("30000"));
            click(find<QPushButton>(modal, QStringLiteral("cmdOK")));
        });
        openScenario();
        QCOMPARE(row(1)->ScenarioOP()->RegelCount(), qint16(2));
        enter(txt("txtLeeftijdOPJr"), QStringLiteral("68"));   // also empties the scenario
        QCOMPARE(row(1)->ScenarioOP()->RegelCount(), qint16(0));
        tick("chkPreP");
        QVERIFY(!row(1)->PreP());
        clickRow(1);
        click(w<QPushButton>("cmdDelete"));
        click(w<QPushButton>("cmdAdd"));
        enter(txt("txtLeeftijdJr"), QStringLiteral("64"));
        tick("chkOP");
        enter(txt("txtOP"), QStringLiteral("9000"));
        QCOMPARE(messages.count(), 0);
        QVERIFY(m_dialog->In_Changed());
        QVERIFY(exported(*m_app) != before);

        if (closeBox)
            m_dialog->close();
        else
            click(w<QPushButton>("cmdCancel"));
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(exported(*m_app), before);
        // Nothing is left changed for the caller to act on.
        QVERIFY(!m_dialog->In_Changed());
        QCOMPARE(messages.count(), 0);
    }

    void cancelWhileAFieldIsRefusedStillTakesEverythingBack()
    {
        MessageRecorder messages;
        const QByteArray before = exported(*m_app);
        open();
        enter(txt("txtOP"), QStringLiteral("25000"));
        enter(txt("txtLeeftijdJr"), QStringLiteral("30"));
        QCOMPARE(messages.count(), 1);
        click(w<QPushButton>("cmdCancel"));
        QCOMPARE(messages.count(), 1);
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(exported(*m_app), before);
    }

    void okKeepsTheEdits()
    {
        MessageRecorder messages;
        open();
        enter(txt("txtOP"), QStringLiteral("25000"));
        click(w<QPushButton>("cmdOk"));
        QVERIFY(!m_dialog->isVisible());
        QVERIFY(m_dialog->In_Changed());
        QCOMPARE(row(1)->BedragOP(), 25000.0);
    }

    void walkingThroughTheFieldsChangesNothing()
    {
        MessageRecorder messages;
        const QByteArray before = exported(*m_app);
        open();
        txt("txtLeeftijdJr")->setFocus(Qt::MouseFocusReason);
        for (const char *name : {"txtLeeftijdJr", "txtLeeftijdMnd"})
            pressTab(txt(name));
        txt("txtOP")->setFocus(Qt::MouseFocusReason);
        for (const char *name : {"txtOP", "txtIngangOP", "txtLeeftijdOPJr", "txtLeeftijdOPMnd"})
            pressTab(txt(name));
        click(w<QPushButton>("cmdOk"));
        QCOMPARE(messages.count(), 0);
        QVERIFY(!m_dialog->isVisible());
        QVERIFY(!m_dialog->In_Changed());
        QCOMPARE(exported(*m_app), before);
    }

    void validationKeepsACancelAlreadySet()
    {
        MessageRecorder messages;
        open();
        bool Cancel = true;
        m_dialog->Validation(Cancel, 0);
        QVERIFY(Cancel);
        QCOMPARE(messages.count(), 0);
        Cancel = false;
        m_dialog->Validation(Cancel, 0);
        QVERIFY(!Cancel);
    }

    void nothingClippedOrOverlapping()
    {
        MessageRecorder messages;
        m_pensioen->AddOuderdomRegel();
        open();
        checkLayoutAndGrab(m_dialog.get(), QStringLiteral(VANDREL_BINARY_DIR "/frmpensioenspec.png"));
    }
};

QTEST_MAIN(TstFrmPensioenSpec)
#include "tst_frmpensioenspec.moc"
