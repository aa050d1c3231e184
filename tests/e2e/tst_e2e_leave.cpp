// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The pension screen cannot be left while the shown scheme has an error: not by the navigation,
// not by opening another case, not by closing the window. Once the error is put right it can.

#include "e2esupport.h"
#include "mainwindow.h"
#include "pensionscreen.h"
#include "textbox.h"
#include "usersim.h"

#include <QAction>
#include <QApplication>
#include <QListWidget>
#include <QTest>
#include <QTreeWidget>

using namespace E2e;
using namespace TestSupport;
using Zarnoveld::MainWindow;

class TestE2eLeave : public QObject
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

    void refusedWhileSchemeHasError()
    {
        MessageRecorder messages;
        MainWindow window;
        QString error;
        QVERIFY2(window.openCase(example(QStringLiteral("check-errors.json")), &error), qPrintable(error));
        const auto errorCase = window.currentCase();
        QVERIFY(showActive(&window));
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        QCOMPARE(window.currentScreen(), MainWindow::Pensioenen);
        QCOMPARE(messages.count(), 0);

        clickNavigation(&window, QStringLiteral("Deelnemers"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Pensioentoezeggingen"));
        QCOMPARE(messages.lastText(),
                 QStringLiteral("De ingangsleeftijd van het ouderdomspensioen moet tussen 50 en 99 jaar liggen."));
        // The user is taken to the field that is wrong.
        QTRY_COMPARE(QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString(),
                     QStringLiteral("txtLeeftijdOPJr"));
        QCOMPARE(window.currentScreen(), MainWindow::Pensioenen);
        QCOMPARE(find<QListWidget>(&window, QStringLiteral("lstSchermen"))->currentItem()->text(),
                 QStringLiteral("Pensioenen"));
        const auto refusal = messages.last();
        QCOMPARE(refusal.buttons, MessageBox::Buttons::Ok);

        // Another case from the menu: refused before any file dialog opens.
        find<QAction>(&window, QStringLiteral("actOpenen"))->trigger();
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.last().text, refusal.text);
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!window.openCase(example(QStringLiteral("single.json")), &error));
        QCOMPARE(error, QStringLiteral("Het dossier is niet gewisseld: herstel eerst de fout op het pensioenscherm."));
        QCOMPARE(window.currentCase(), errorCase);
        QCOMPARE(window.currentScreen(), MainWindow::Pensioenen);

        // Closing the window.
        QVERIFY(!window.close());
        QVERIFY(window.isVisible());
        QCOMPARE(messages.last().text, refusal.text);
        QCOMPARE(window.currentCase(), errorCase);

        // Put right (a starting age after the early retirement at 69): the screen can be left.
        QWidget *control = window.pensionScreen()->control();
        messages.clear();
        enter(find<VandrelControl::TextBox>(control, QStringLiteral("txtLeeftijdOPJr")), QStringLiteral("70"));
        QCOMPARE(messages.count(), 0);
        clickNavigation(&window, QStringLiteral("Deelnemers"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(window.currentScreen(), MainWindow::Deelnemers);
        QVERIFY(window.close());
        QVERIFY(!window.isVisible());
    }
};

QTEST_MAIN(TestE2eLeave)
#include "tst_e2e_leave.moc"
