// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The scenario dialog driven as a user: click rows, type, Tab, press the buttons, then read the
// scenario back from the reference host.

#include "frmspecificatiescenario.h"

#include "hostapplication.h"
#include "listviewroutines.h"
#include "textbox.h"
#include "usersim.h"

#include <QApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

using namespace TestSupport;
using VandrelApplication::ScenarioPtr;
using VandrelApplication::ScenarioRegelPtr;
using VandrelControl::TextBox;
using VandrelPensioen::frmSpecificatieScenario;

namespace {

const QString kOnjuist = QStringLiteral("Onjuiste invoer");


// Passes everything to the host's scenario and counts what would change it; it can also fail a
// write the way a host does when its file refuses.
class CountingScenario : public VandrelApplication::Scenario
{
public:
    explicit CountingScenario(ScenarioPtr inner)
        : m_inner(std::move(inner))
    {
    }

    double Bedrag() const override { return m_inner->Bedrag(); }
    void setBedrag(double value) override
    {
        ++writes;
        m_inner->setBedrag(value);
    }
    qint16 RegelCount() const override { return m_inner->RegelCount(); }
    ScenarioRegelPtr Regel(qint16 index) override { return m_inner->Regel(index); }
    void RemoveRegel(qint16 index) override
    {
        ++writes;
        m_inner->RemoveRegel(index);
    }
    void Clear_Regels() override
    {
        ++writes;
        if (failClear)
            throw VandrelApplication::HostError(VandrelApplication::HostErrorCode::StoreFailed,
                                                QStringLiteral("Het dossier kon niet worden bijgewerkt."));
        m_inner->Clear_Regels();
    }
    ScenarioRegelPtr Add_Regel() override
    {
        ++writes;
        return m_inner->Add_Regel();
    }

    int writes = 0;
    bool failClear = false;

private:
    ScenarioPtr m_inner;
};

} // namespace

class TstFrmSpecificatieScenario : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<Zarnoveld::HostApplication> m_app;
    ScenarioPtr m_hostScenario;
    std::shared_ptr<CountingScenario> m_scenario;
    std::unique_ptr<frmSpecificatieScenario> m_dialog;

    QTreeWidget *list() { return find<QTreeWidget>(m_dialog.get(), QStringLiteral("lvwScenario")); }
    TextBox *txtDatum() { return find<TextBox>(m_dialog.get(), QStringLiteral("txtDatum")); }
    TextBox *txtBedrag() { return find<TextBox>(m_dialog.get(), QStringLiteral("txtBedrag")); }
    QPushButton *button(const char *name) { return find<QPushButton>(m_dialog.get(), QLatin1String(name)); }

    QStringList rowTexts()
    {
        QStringList rows;
        for (int i = 0; i < list()->topLevelItemCount(); ++i)
            rows << list()->topLevelItem(i)->text(0) + QLatin1Char('|') + list()->topLevelItem(i)->text(1);
        return rows;
    }
    QStringList rowKeys()
    {
        QStringList keys;
        for (int i = 0; i < list()->topLevelItemCount(); ++i)
            keys << VandrelPensioen::ListView::key(list()->topLevelItem(i));
        return keys;
    }
    void clickRow(int index)
    {
        QTreeWidgetItem *item = list()->topLevelItem(index);
        QVERIFY(item);
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          list()->visualItemRect(item).center());
    }
    // The scenario as the host holds it: "base|month:amount|...".
    QString hostScenario()
    {
        QString text = QString::number(m_hostScenario->Bedrag());
        for (qint16 i = 1; i <= m_hostScenario->RegelCount(); ++i)
            text += QStringLiteral("|%1:%2").arg(m_hostScenario->Regel(i)->Maand()).arg(m_hostScenario->Regel(i)->Bedrag());
        return text;
    }
    void open(const QDate &ingang, const QDate &maxEind)
    {
        m_dialog = std::make_unique<frmSpecificatieScenario>();
        m_dialog->Set_Application(m_app, m_scenario, ingang, maxEind);
        QVERIFY(showActive(m_dialog.get()));
    }
    void openStandard() { open(QDate(2035, 7, 1), QDate(2070, 3, 15)); }

private Q_SLOTS:
    void init()
    {
        m_app = Zarnoveld::HostApplication::createInMemory();
        auto anv = m_app->Get_Dossier()->Get_Aanvrager(1);
        anv->setGeboorteDatum(QDate(1970, 3, 15));
        auto pensioen = anv->Get_Pensioen(anv->AddPension());
        m_hostScenario = pensioen->Get_OuderdomRegel(1)->ScenarioOP();
        m_hostScenario->setBedrag(1000);
        auto regel = m_hostScenario->Add_Regel();
        regel->setMaand(13);
        regel->setBedrag(1200);
        regel = m_hostScenario->Add_Regel();
        regel->setMaand(25);
        regel->setBedrag(1500);
        m_scenario = std::make_shared<CountingScenario>(m_hostScenario);
    }

    void cleanup()
    {
        m_dialog.reset();
        m_scenario.reset();
        m_hostScenario.reset();
        m_app.reset();
    }

    void fillsTheTableFromTheScenario()
    {
        MessageRecorder messages;
        openStandard();
        QCOMPARE(list()->headerItem()->text(0), QStringLiteral("Datum"));
        QCOMPARE(list()->headerItem()->text(1), QStringLiteral("Bedrag"));
        QCOMPARE(list()->columnCount(), 2);
        QVERIFY(qAbs(list()->columnWidth(0) - list()->columnWidth(1)) <= 1);
        QVERIFY(list()->columnWidth(0) + list()->columnWidth(1) >= list()->viewport()->width() - 1);
        QCOMPARE(rowTexts(), (QStringList{QStringLiteral("01-07-2035|1.000"), QStringLiteral("01-07-2036|1.200"),
                                          QStringLiteral("01-07-2037|1.500")}));
        QCOMPARE(rowKeys(), (QStringList{QStringLiteral("KEY_0001"), QStringLiteral("KEY_0013"),
                                         QStringLiteral("KEY_0025")}));
        QCOMPARE(list()->currentItem(), list()->topLevelItem(0));
        QVERIFY(!m_dialog->In_Changed());
        QCOMPARE(messages.count(), 0);
    }

    void firstRowOnlyItsAmountChanges()
    {
        MessageRecorder messages;
        openStandard();
        QVERIFY(!button("cmdVerwijderen")->isEnabled());
        QVERIFY(!txtDatum()->isEnabled());
        QCOMPARE(QApplication::focusWidget(), txtBedrag());

        clickRow(1);
        QVERIFY(button("cmdVerwijderen")->isEnabled());
        QVERIFY(txtDatum()->isEnabled());
        QCOMPARE(txtDatum()->text(), QStringLiteral("01-07-2036"));
        QCOMPARE(QApplication::focusWidget(), txtDatum());

        clickRow(0);
        QVERIFY(!button("cmdVerwijderen")->isEnabled());
        QVERIFY(!txtDatum()->isEnabled());
        enter(txtBedrag(), QStringLiteral("1100"));
        QCOMPARE(list()->topLevelItem(0)->text(1), QStringLiteral("1.100"));
        click(button("cmdOK"));
        QVERIFY(!m_dialog->isVisible());
        QVERIFY(m_dialog->In_Changed());
        QCOMPARE(hostScenario(), QStringLiteral("1100|13:1200|25:1500"));
        QCOMPARE(messages.count(), 0);
    }

    void dateOnStartOrMaximumIsRefused()
    {
        MessageRecorder messages;
        openStandard();
        click(button("cmdToevoegen"));
        QCOMPARE(list()->topLevelItemCount(), 4);
        QCOMPARE(VandrelPensioen::ListView::key(list()->currentItem()), QStringLiteral("KEY_0000"));
        QCOMPARE(list()->currentItem()->text(0), QString());
        QCOMPARE(list()->currentItem()->text(1), QStringLiteral("0"));
        QCOMPARE(QApplication::focusWidget(), txtDatum());

        enter(txtDatum(), QStringLiteral("01-07-2035"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), kOnjuist);
        QCOMPARE(messages.lastText(), QStringLiteral("Datum moet na de ingangsdatum van het scenario (01-07-2035) liggen."));
        QCOMPARE(messages.last().icon, MessageBox::Icon::Exclamation);
        QCOMPARE(messages.last().buttons, MessageBox::Buttons::Ok);
        QCOMPARE(QApplication::focusWidget(), txtDatum());
        QCOMPARE(list()->currentItem()->text(0), QString());

        enter(txtDatum(), QStringLiteral("15-03-2070"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.lastTitle(), kOnjuist);
        QCOMPARE(messages.lastText(), QStringLiteral("Datum moet voor de einddatum van het scenario (15-03-2070) liggen."));
        QCOMPARE(QApplication::focusWidget(), txtDatum());

        enter(txtDatum(), QStringLiteral("14-03-2070"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(list()->currentItem()->text(0), QStringLiteral("14-03-2070"));
        QCOMPARE(VandrelPensioen::ListView::key(list()->currentItem()), QStringLiteral("KEY_0417"));
        QVERIFY(m_dialog->In_Changed());
    }

    void emptyDateOfANewRowIsRefused()
    {
        MessageRecorder messages;
        openStandard();
        click(button("cmdToevoegen"));
        pressTab(txtDatum());
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(), QStringLiteral("Datum moet na de ingangsdatum van het scenario (01-07-2035) liggen."));
        QCOMPARE(QApplication::focusWidget(), txtDatum());
        // A refused field also refuses the click that tried to leave it: OK does not save or close.
        click(button("cmdOK"));
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(m_scenario->writes, 0);
    }

    void dateInAMonthAlreadyHeldIsRefused()
    {
        MessageRecorder messages;
        openStandard();
        click(button("cmdToevoegen"));
        enter(txtDatum(), QStringLiteral("20-07-2036"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), kOnjuist);
        QCOMPARE(messages.lastText(), QStringLiteral("Deze datum komt reeds voor in de tabel."));
        QCOMPARE(QApplication::focusWidget(), txtDatum());
        QCOMPARE(list()->currentItem()->text(0), QString());

        // The first row's month counts too, on another day of it.
        enter(txtDatum(), QStringLiteral("31-07-2035"));
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.lastText(), QStringLiteral("Deze datum komt reeds voor in de tabel."));
    }

    void aRowsDateMovesWithinItsOwnMonth()
    {
        MessageRecorder messages;
        openStandard();
        clickRow(1);
        enter(txtDatum(), QStringLiteral("15-07-2036"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(list()->topLevelItem(1)->text(0), QStringLiteral("15-07-2036"));
        QCOMPARE(VandrelPensioen::ListView::key(list()->topLevelItem(1)), QStringLiteral("KEY_0013"));
    }

    void aNewDateIsSortedIntoPlace()
    {
        MessageRecorder messages;
        openStandard();
        click(button("cmdToevoegen"));
        enter(txtDatum(), QStringLiteral("01-01-2036"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(rowTexts(), (QStringList{QStringLiteral("01-07-2035|1.000"), QStringLiteral("01-01-2036|0"),
                                          QStringLiteral("01-07-2036|1.200"), QStringLiteral("01-07-2037|1.500")}));
        // The row being edited stays the selected one, so its amount goes to it.
        QCOMPARE(list()->currentItem(), list()->topLevelItem(1));
        QCOMPARE(QApplication::focusWidget(), txtBedrag());
        enter(txtBedrag(), QStringLiteral("1100"));
        QCOMPARE(list()->topLevelItem(1)->text(1), QStringLiteral("1.100"));
        QCOMPARE(list()->topLevelItem(0)->text(1), QStringLiteral("1.000"));
        click(button("cmdOK"));
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(hostScenario(), QStringLiteral("1000|7:1100|13:1200|25:1500"));
    }

    void aMonthAboveFourDigitsKeepsAllItsDigits()
    {
        MessageRecorder messages;
        open(QDate(2000, 1, 1), QDate(3000, 1, 1));
        click(button("cmdToevoegen"));
        enter(txtDatum(), QStringLiteral("01-05-2833"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(VandrelPensioen::ListView::key(list()->currentItem()), QStringLiteral("KEY_10001"));
        enter(txtBedrag(), QStringLiteral("777"));
        click(button("cmdOK"));
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(hostScenario(), QStringLiteral("1000|13:1200|25:1500|10001:777"));

        // Read back from the host, the long key still gives its month and date.
        m_dialog = std::make_unique<frmSpecificatieScenario>();
        m_dialog->Set_Application(m_app, m_scenario, QDate(2000, 1, 1), QDate(3000, 1, 1));
        QVERIFY(showActive(m_dialog.get()));
        QCOMPARE(list()->topLevelItem(3)->text(0), QStringLiteral("01-05-2833"));
        QCOMPARE(VandrelPensioen::ListView::key(list()->topLevelItem(3)), QStringLiteral("KEY_10001"));
        clickRow(3);
        QVERIFY(button("cmdVerwijderen")->isEnabled());
        QCOMPARE(txtDatum()->text(), QStringLiteral("01-05-2833"));
    }

    void okWithoutAChangeWritesNothing()
    {
        MessageRecorder messages;
        openStandard();
        // Walking through the fields without typing is no change.
        clickRow(1);
        pressTab(txtDatum());
        pressTab(txtBedrag());
        clickRow(0);
        click(button("cmdOK"));
        QVERIFY(!m_dialog->isVisible());
        QVERIFY(!m_dialog->In_Changed());
        QCOMPARE(m_scenario->writes, 0);
        QCOMPARE(messages.count(), 0);
        QCOMPARE(hostScenario(), QStringLiteral("1000|13:1200|25:1500"));
    }

    void amountsAreSavedAsShown()
    {
        MessageRecorder messages;
        openStandard();
        clickRow(2);
        enter(txtBedrag(), QStringLiteral("1234,56"));
        QCOMPARE(list()->topLevelItem(2)->text(1), QStringLiteral("1.235"));
        clickRow(0);
        enter(txtBedrag(), QStringLiteral("999,4"));
        QCOMPARE(list()->topLevelItem(0)->text(1), QStringLiteral("999"));
        click(button("cmdOK"));
        QCOMPARE(hostScenario(), QStringLiteral("999|13:1200|25:1235"));
    }

    void deleteSelectsTheRowThatTookItsPlace()
    {
        MessageRecorder messages;
        openStandard();
        clickRow(1);
        click(button("cmdVerwijderen"));
        QVERIFY(m_dialog->In_Changed());
        QCOMPARE(rowKeys(), (QStringList{QStringLiteral("KEY_0001"), QStringLiteral("KEY_0025")}));
        QCOMPARE(list()->currentItem(), list()->topLevelItem(1));
        QCOMPARE(txtDatum()->text(), QStringLiteral("01-07-2037"));
        // The last row removed: the new last row is selected, here the fixed first row.
        click(button("cmdVerwijderen"));
        QCOMPARE(rowKeys(), (QStringList{QStringLiteral("KEY_0001")}));
        QCOMPARE(list()->currentItem(), list()->topLevelItem(0));
        QVERIFY(!button("cmdVerwijderen")->isEnabled());
        QVERIFY(!txtDatum()->isEnabled());
        click(button("cmdOK"));
        QCOMPARE(hostScenario(), QStringLiteral("1000"));
    }

    void closeBoxSavesNothing()
    {
        MessageRecorder messages;
        openStandard();
        clickRow(2);
        enter(txtBedrag(), QStringLiteral("5000"));
        click(button("cmdToevoegen"));
        enter(txtDatum(), QStringLiteral("01-01-2040"));
        QVERIFY(m_dialog->In_Changed());
        m_dialog->close();
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(m_scenario->writes, 0);
        QCOMPARE(hostScenario(), QStringLiteral("1000|13:1200|25:1500"));
        // The flag still tells that the user edited something.
        QVERIFY(m_dialog->In_Changed());
        QCOMPARE(messages.count(), 0);
    }

    void anErrorShowsTheDialogsOwnBox()
    {
        MessageRecorder messages;
        openStandard();
        m_scenario->failClear = true;
        clickRow(1);
        enter(txtBedrag(), QStringLiteral("1300"));
        click(button("cmdOK"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Zarnoveld"));
        QCOMPARE(messages.lastText(), QStringLiteral("Er is een fout opgetreden.\n\nFoutnummer: 1003\n"
                                                     "Omschrijving: Het dossier kon niet worden bijgewerkt."));
        QCOMPARE(messages.last().icon, MessageBox::Icon::Critical);
        QVERIFY(!QApplication::overrideCursor());
        // The user keeps his table and may try again or close.
        QVERIFY(m_dialog->isVisible());
        QVERIFY(m_app->reportedErrors().isEmpty());
        m_scenario->failClear = false;
        click(button("cmdOK"));
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(hostScenario(), QStringLiteral("1000|13:1300|25:1500"));
    }

    void validationChecksOnlyTheDate()
    {
        MessageRecorder messages;
        openStandard();
        click(button("cmdToevoegen"));
        bool Cancel = false;
        m_dialog->Validation(Cancel, 0);
        QVERIFY(!Cancel);
        m_dialog->Validation(Cancel, 2);
        QVERIFY(!Cancel);
        QCOMPARE(messages.count(), 0);
        m_dialog->Validation(Cancel, 1);
        QVERIFY(Cancel);
        QCOMPARE(messages.count(), 1);
        // A Cancel that is already set checks nothing and stays set.
        m_dialog->Validation(Cancel, 1);
        QVERIFY(Cancel);
        QCOMPARE(messages.count(), 1);
    }

    void nothingClippedOrOverlapping()
    {
        MessageRecorder messages;
        openStandard();
        checkLayoutAndGrab(m_dialog.get(), QStringLiteral(VANDREL_BINARY_DIR "/frmspecificatiescenario.png"));
    }
};

QTEST_MAIN(TstFrmSpecificatieScenario)
#include "tst_frmspecificatiescenario.moc"
