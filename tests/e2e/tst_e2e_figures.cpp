// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The adviser moves an open case to this year's fiscal figures from the Bestand menu: asked
// first, nothing changes on No, and on Yes the figures, the year and every computed franchise
// change, in the file and on the pension screen, which computes exactly what the host stored.

#include "casebackend.h"
#include "e2esupport.h"
#include "fiscalfigures.h"
#include "mainwindow.h"
#include "pensionscreen.h"
#include "textbox.h"
#include "usersim.h"

#include <QAction>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>
#include <QTreeWidget>

using namespace E2e;
using namespace TestSupport;
using Zarnoveld::MainWindow;

namespace {

// Franchise, basis and accrual of every scheme, read straight from the case.
QList<double> schemeAmounts(const VandrelApplication::ApplicationPtr &app)
{
    QList<double> amounts;
    for (qint16 anv : {qint16(1), qint16(2)})
        for (qint16 i = 1; auto pen = app->Get_Dossier()->Get_Aanvrager(anv)->Get_Pensioen(i); ++i)
            amounts << pen->Franchise() << pen->Grondslag() << pen->Aangroei();
    return amounts;
}

} // namespace

class TestE2eFigures : public QObject
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

    void menuMovesTheCaseToThisYear()
    {
        const int current = Zarnoveld::FiscalFigures::yearFor(QDate::currentDate());
        QVERIFY2(current > 2025, "the sample case is on 2025; this test needs a later year to move to");
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(openShown(window, example(QStringLiteral("sample-couple.json"))));
        auto app = window.currentCase();
        QCOMPARE(app->figureYear(), 2025);

        auto *action = find<QAction>(&window, QStringLiteral("actRekenjaar"));
        QVERIFY(find<QMenu>(&window, QStringLiteral("mnuBestand"))->actions().contains(action));
        QCOMPARE(action->text(), QStringLiteral("&Fiscale cijfers bijwerken naar %1...").arg(current));
        QVERIFY(action->isEnabled());
        const QList<double> before = schemeAmounts(app);

        // No: nothing changes.
        messages.answerNext(MessageBox::Answer::No);
        action->trigger();
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.last().buttons, MessageBox::Buttons::YesNo);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Fiscale cijfers bijwerken"));
        QVERIFY2(messages.lastText().startsWith(
                     QStringLiteral("Dit dossier rekent met de fiscale cijfers van 2025. Wilt u het bijwerken naar de cijfers van %1?")
                         .arg(current)),
                 qPrintable(messages.lastText()));
        QCOMPARE(app->figureYear(), 2025);
        QCOMPARE(schemeAmounts(app), before);

        // Yes: the case moves, and says what changed.
        messages.clear();
        action->trigger();
        QCOMPARE(messages.count(), 2);
        QCOMPARE(messages.last().buttons, MessageBox::Buttons::Ok);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Fiscale cijfers bijgewerkt"));
        QVERIFY2(messages.lastText().contains(QStringLiteral("Jan van den Berg, regeling 1 (ABP): Franchise 18.475,00 -> 19.172,00")),
                 qPrintable(messages.lastText()));
        QCOMPARE(app->figureYear(), current);
        QCOMPARE(app->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->Franchise(), 19172.0);
        QVERIFY(!action->isEnabled());
        const QList<double> moved = schemeAmounts(app);
        QVERIFY(moved != before);

        // The pension screen shows the new franchise and, visiting every scheme, computes what the
        // host stored: its rules and the host's agree.
        messages.clear();
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        QWidget *control = window.pensionScreen()->control();
        QVERIFY(control);
        QCOMPARE(find<VandrelControl::TextBox>(control, QStringLiteral("txtFranchise"))->text(), QStringLiteral("19.172"));
        auto *list = find<QTreeWidget>(control, QStringLiteral("LstPensioenen"));
        for (int row = 0; row < list->topLevelItemCount(); ++row)
            clickRow(list, list->topLevelItem(row));
        clickNavigation(&window, QStringLiteral("Deelnemers"));
        QCOMPARE(window.currentScreen(), MainWindow::Deelnemers);
        QCOMPARE(messages.count(), 0);
        QCOMPARE(schemeAmounts(app), moved);

        // It is in the file, as another program reading it sees.
        {
            const QString name = QStringLiteral("e2e-figures-raw");
            {
                QSqlDatabase db = TestSupport::openRaw(app->filePath(), name);
                QVERIFY(db.isOpen());
                QSqlQuery q(db);
                QVERIFY(q.exec(QStringLiteral("SELECT Rekenjaar FROM dossier")) && q.next());
                QCOMPARE(q.value(0).toInt(), current);
                QVERIFY(q.exec(QStringLiteral("SELECT waarde FROM parameters WHERE naam = 'FranchiseA'")) && q.next());
                QCOMPARE(q.value(0).toDouble(), 19172.0);
                QVERIFY(q.exec(QStringLiteral("SELECT Franchise FROM pensioen WHERE Uitvoerder = 'ABP'")) && q.next());
                QCOMPARE(q.value(0).toDouble(), 19172.0);
                db.close();
            }
            QSqlDatabase::removeDatabase(name);
        }
        QVERIFY(window.close());
    }

    // Moved while the pension screen is shown: the screen shows the new franchise at once, and a
    // scheme the adviser had just added is still there (the control is reloaded, not ended).
    void movedWhileThePensionScreenIsShown()
    {
        MessageRecorder messages;
        MainWindow window;
        QString error;
        const QString json = m_sandbox->path(QStringLiteral("getoond.json"));
        QVERIFY(QFile::copy(example(QStringLiteral("sample-couple.json")), json));
        QVERIFY2(window.openCase(json, &error), qPrintable(error));
        QVERIFY(showActive(&window));
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        QWidget *control = window.pensionScreen()->control();
        QVERIFY(control);
        auto *franchise = find<VandrelControl::TextBox>(control, QStringLiteral("txtFranchise"));
        QCOMPARE(franchise->text(), QStringLiteral("18.475"));
        const int schemes = find<QTreeWidget>(control, QStringLiteral("LstPensioenen"))->topLevelItemCount();

        find<QAction>(&window, QStringLiteral("actRekenjaar"))->trigger();
        QCOMPARE(messages.count(), 2);
        QCOMPARE(window.currentScreen(), MainWindow::Pensioenen);
        QCOMPARE(window.pensionScreen()->control(), control);
        QCOMPARE(franchise->text(), QStringLiteral("19.172"));
        QCOMPARE(find<QTreeWidget>(control, QStringLiteral("LstPensioenen"))->topLevelItemCount(), schemes);
        QVERIFY(window.close());
    }
};

QTEST_MAIN(TestE2eFigures)
#include "tst_e2e_figures.moc"
