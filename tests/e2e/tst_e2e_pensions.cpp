// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The pension screen inside the zarnoveld window: a sample case is opened, schemes are added,
// moved and deleted with the mouse and keyboard, the case is closed and opened again from its file.

#include "commands.h"
#include "casebackend.h"
#include "e2esupport.h"
#include "mainwindow.h"
#include "pensionscreen.h"
#include "textbox.h"
#include "usersim.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTest>
#include <QTreeWidget>

using namespace E2e;
using namespace TestSupport;
using Zarnoveld::MainWindow;

class TestE2ePensions : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Sandbox> m_sandbox;

private Q_SLOTS:
    void initTestCase()
    {
        m_sandbox = std::make_unique<Sandbox>();
        QVERIFY(m_sandbox->isValid());
    }

    void addMoveDeleteAndReopen()
    {
        MessageRecorder messages;
        const QString json = example(QStringLiteral("sample-couple.json"));
        const QString casePath = Zarnoveld::Commands::caseFor(json);
        QVERIFY(!TestSupport::caseExists(casePath));
        {
            MainWindow window;
            QString error;
            QVERIFY2(window.openCase(json, &error), qPrintable(error));
            QCOMPARE(window.currentCase()->filePath(), casePath);
            QVERIFY(showActive(&window));
            clickNavigation(&window, QStringLiteral("Pensioenen"));
            QCOMPARE(window.currentScreen(), MainWindow::Pensioenen);
            QWidget *control = window.pensionScreen()->control();
            QVERIFY(control);
            auto *list = find<QTreeWidget>(control, QStringLiteral("LstPensioenen"));
            QCOMPARE(list->topLevelItemCount(), 6);
            QCOMPARE(selectedProvider(list), QStringLiteral("ABP"));

            // A second current-employer scheme needs the user's consent. Showing it leaves ABP,
            // whose full check passes without a question: the sample's early-retirement date is
            // the end of counted income of its employment.
            click(find<QPushButton>(control, QStringLiteral("cmdNieuw")));
            auto *menu = find<QMenu>(control, QStringLiteral("Popup_Oud_Huidig"));
            QTRY_VERIFY(menu->isVisible());
            messages.answerNext(MessageBox::Answer::Yes);
            // Picked with the mouse, as a user does.
            auto *huidige = find<QAction>(control, QStringLiteral("Huidige_Werkgever"));
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(huidige).center());
            QTRY_VERIFY(!menu->isVisible());
            // The offscreen platform made the menu the active window and does not hand activation
            // back when it closes, as a window system does.
            QVERIFY(showActive(&window));
            QCOMPARE(messages.count(), 1);
            QCOMPARE(messages.requests().at(0).buttons, MessageBox::Buttons::YesNo);
            QCOMPARE(messages.requests().at(0).text, QStringLiteral("U heeft al een huidige werkgever geselecteerd.\n"
                                                                    "Wilt u toch een extra huidige werkgever toevoegen?"));
            auto app = window.currentCase();
            QCOMPARE(schemeCount(app, 1), 4);
            QCOMPARE(list->topLevelItemCount(), 7);
            QCOMPARE(list->selectedItems().value(0)->text(0), QStringLiteral("Huidige"));
            QCOMPARE(list->selectedItems().value(0)->text(3), QStringLiteral("Aanvrager"));

            enter(find<VandrelControl::TextBox>(control, QStringLiteral("txtUitvoerder")), QStringLiteral("Zwitserleven"));
            QCOMPARE(app->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(4)->Uitvoerder(), QStringLiteral("Zwitserleven"));
            QCOMPARE(selectedProvider(list), QStringLiteral("Zwitserleven"));

            // Moving it to the partner appends it there and closes the gap at the applicant.
            click(find<QRadioButton>(control, QStringLiteral("optAanvrager_2")));
            QCOMPARE(providers(app, 1), (QStringList{QStringLiteral("ABP"), QStringLiteral("Pensioenfonds Rabobank"),
                                                     QStringLiteral("Brand New Day")}));
            QCOMPARE(providers(app, 2), (QStringList{QStringLiteral("PFZW"), QStringLiteral("Bpf Levensmiddelen"),
                                                     QStringLiteral("Nationale-Nederlanden"), QStringLiteral("Zwitserleven")}));
            QCOMPARE(selectedProvider(list), QStringLiteral("Zwitserleven"));
            QCOMPARE(list->selectedItems().value(0)->text(3), QStringLiteral("Partner"));
            QVERIFY(find<QRadioButton>(control, QStringLiteral("optAanvrager_2"))->isChecked());
            // The panels reload before the list is rebuilt; nothing may read the moved-away
            // record meanwhile (that once showed the host's error report).
            QCOMPARE(messages.count(), 1);

            // Deleting asks nothing.
            QTreeWidgetItem *brandNewDay = rowOf(list, QStringLiteral("Brand New Day"), QStringLiteral("Aanvrager"));
            QVERIFY(brandNewDay);
            clickRow(list, brandNewDay);
            QCOMPARE(selectedProvider(list), QStringLiteral("Brand New Day"));
            click(find<QPushButton>(control, QStringLiteral("cmdVerwijder")));
            QCOMPARE(providers(app, 1), (QStringList{QStringLiteral("ABP"), QStringLiteral("Pensioenfonds Rabobank")}));
            QCOMPARE(list->topLevelItemCount(), 6);

            clickNavigation(&window, QStringLiteral("Deelnemers"));
            QCOMPARE(window.currentScreen(), MainWindow::Deelnemers);
            QVERIFY(window.close());
            // Deleting showed ABP again without a check; leaving the screen checks it, and it
            // passes without a word.
            QCOMPARE(messages.count(), 1);
        }

        // Opening the example again opens the case file made the first time, with the edits.
        MainWindow window;
        QString error;
        QVERIFY2(window.openCase(json, &error), qPrintable(error));
        QCOMPARE(window.currentCase()->filePath(), casePath);
        auto app = window.currentCase();
        QCOMPARE(providers(app, 1), (QStringList{QStringLiteral("ABP"), QStringLiteral("Pensioenfonds Rabobank")}));
        QCOMPARE(providers(app, 2), (QStringList{QStringLiteral("PFZW"), QStringLiteral("Bpf Levensmiddelen"),
                                                 QStringLiteral("Nationale-Nederlanden"), QStringLiteral("Zwitserleven")}));
        auto moved = app->Get_Dossier()->Get_Aanvrager(2)->Get_Pensioen(4);
        QVERIFY(moved->HuidigeWerkgever());
        QVERIFY(moved->DienstverbandKey().isEmpty());
        QVERIFY(showActive(&window));
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        auto *list = find<QTreeWidget>(window.pensionScreen()->control(), QStringLiteral("LstPensioenen"));
        QVERIFY(rowOf(list, QStringLiteral("Zwitserleven"), QStringLiteral("Partner")));
        QVERIFY(!rowOf(list, QStringLiteral("Brand New Day"), QStringLiteral("Aanvrager")));
        QVERIFY(window.close());
    }

    // Started without a case, the screen still shows the whole control (it was once squeezed to
    // two thirds of the screen because it was sized before it had a parent).
    void withoutCaseNothingIsCutOff()
    {
        MainWindow window;
        window.resize(1600, 1000);
        QVERIFY(showActive(&window));
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        QCOMPARE(window.currentScreen(), MainWindow::Pensioenen);
        QWidget *control = window.pensionScreen()->control();
        QVERIFY(control);
        // Never smaller than it asks for; a larger window gives it the extra room.
        QVERIFY(control->width() >= control->sizeHint().width() && control->height() >= control->sizeHint().height());
        QVERIFY(control->rect().contains(find<QWidget>(control, QStringLiteral("PensioenList"))->geometry()));
        QVERIFY(control->rect().contains(find<QWidget>(control, QStringLiteral("PensioenToezegging"))->geometry()));
        auto *scroll = find<QScrollArea>(window.pensionScreen(), QStringLiteral("scrPensioenen"));
        QVERIFY(scroll->viewport()->width() >= control->width());
        QVERIFY(window.close());
    }

    // A case without schemes shows only the list; the first scheme added brings both data panels,
    // and the screen must make room for them instead of cutting them off.
    void firstSchemeIsNotCutOff()
    {
        MessageRecorder messages;
        MainWindow window;
        window.setCase(Zarnoveld::HostApplication::createInMemory());
        window.resize(1600, 1000);
        QVERIFY(showActive(&window));
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        QWidget *control = window.pensionScreen()->control();
        QVERIFY(control);
        click(find<QPushButton>(control, QStringLiteral("cmdNieuw")));
        find<QAction>(control, QStringLiteral("Vorige_Werkgever"))->trigger();
        QCOMPARE(schemeCount(window.currentCase(), 1), 1);
        QWidget *toezegging = find<QWidget>(control, QStringLiteral("PensioenToezegging"));
        QWidget *gegevens = find<QWidget>(control, QStringLiteral("PensioenGegevens"));
        QVERIFY(toezegging->isVisible());
        // Never smaller than it asks for; a larger window gives it the extra room.
        QVERIFY(control->width() >= control->sizeHint().width() && control->height() >= control->sizeHint().height());
        QVERIFY(control->rect().contains(toezegging->geometry()));
        QVERIFY(control->rect().contains(gegevens->geometry()));
        // Nothing is hidden behind the scroll area's edge when the window is large enough.
        auto *scroll = find<QScrollArea>(window.pensionScreen(), QStringLiteral("scrPensioenen"));
        QVERIFY(scroll->viewport()->width() >= control->width());
        QVERIFY(scroll->viewport()->height() >= control->height());
        QCOMPARE(messages.count(), 0);
        QVERIFY(window.close());
    }

    // The host keeps at most 99 schemes per participant (the list could not tell more apart).
    // Adding one more shows the host's refusal in its error report; the program carries on and
    // the case is as it was.
    void hundredthSchemeIsRefused()
    {
        MessageRecorder messages;
        auto app = Zarnoveld::HostApplication::createInMemory();
        auto applicant = app->Get_Dossier()->Get_Aanvrager(1);
        for (int i = 0; i < 99; ++i)
            applicant->AddPension();
        MainWindow window;
        window.setCase(app);
        window.resize(1600, 1000);
        QVERIFY(showActive(&window));
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        QWidget *control = window.pensionScreen()->control();
        QVERIFY(control);
        auto *list = find<QTreeWidget>(control, QStringLiteral("LstPensioenen"));
        QCOMPARE(list->topLevelItemCount(), 99);
        messages.clear();

        click(find<QPushButton>(control, QStringLiteral("cmdNieuw")));
        auto *menu = find<QMenu>(control, QStringLiteral("Popup_Oud_Huidig"));
        QTRY_VERIFY(menu->isVisible());
        auto *vorige = find<QAction>(control, QStringLiteral("Vorige_Werkgever"));
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(vorige).center());
        QTRY_VERIFY(!menu->isVisible());

        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Zarnoveld - foutmelding"));
        QVERIFY2(messages.lastText().contains(QStringLiteral("Onderdeel: PensList\n")), qPrintable(messages.lastText()));
        QVERIFY2(messages.lastText().contains(QStringLiteral("Procedure: Vorige_Werkgever\n")), qPrintable(messages.lastText()));
        QVERIFY2(messages.lastText().contains(QStringLiteral(
                     "Omschrijving: Er kunnen niet meer dan 99 pensioenregelingen per aanvrager worden vastgelegd.")),
                 qPrintable(messages.lastText()));
        QCOMPARE(schemeCount(app, 1), 99);
        QCOMPARE(list->topLevelItemCount(), 99);
        QVERIFY(window.close());
    }
};

QTEST_MAIN(TestE2ePensions)
#include "tst_e2e_pensions.moc"
