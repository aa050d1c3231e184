// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// zarnoveld as an adviser works in it all day, on a 1280x720 laptop and a 1920x1080 monitor side
// by side (a virtual offscreen desktop of two screens): the window fits, scroll bars only scroll,
// Qt's own texts are Dutch, the title and status bar say where the adviser is, every menu entry
// has its key, and the findings pane says what `zarnoveld check` says.

#include "caseaddress.h"
#include "commands.h"
#include "e2esupport.h"
#include "listviewroutines.h"
#include "mainwindow.h"
#include "pensionscreen.h"
#include "textbox.h"
#include "translations.h"
#include "usersettings.h"
#include "usersim.h"

#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

using namespace E2e;
using namespace TestSupport;
using Zarnoveld::MainWindow;

namespace {

QScreen *laptop()
{
    return QGuiApplication::screens().value(0);
}

QScreen *monitor()
{
    return QGuiApplication::screens().value(1);
}

// A case of its own made from a bundled example: tests that put a scheme right do not change the
// case another test opens.
QString freshCopy(const Sandbox &sandbox, const QString &example, const QString &name)
{
    const QString copy = sandbox.path(name + QStringLiteral(".json"));
    QFile::remove(copy);
    QFile::copy(E2e::example(example), copy);
    return copy;
}

QScrollArea *scrollArea(MainWindow &window)
{
    return window.pensionScreen()->findChild<QScrollArea *>(QStringLiteral("scrPensioenen"));
}

// Rows of the scheme list a user sees without scrolling the list itself.
int visibleRows(QTreeWidget *list)
{
    if (list->topLevelItemCount() == 0)
        return 0;
    const int rowHeight = list->visualItemRect(list->topLevelItem(0)).height();
    return rowHeight > 0 ? list->viewport()->height() / rowHeight : 0;
}

// The lines `zarnoveld check` prints as findings: failing schemes and the check service's remarks.
QStringList checkFindings(const QString &casePath, int *exitCode)
{
    QProcess process;
    process.start(QStringLiteral(ZARNOVELD_EXECUTABLE), {QStringLiteral("check"), casePath});
    if (!process.waitForFinished(90000)) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    *exitCode = process.exitCode();
    QStringList lines;
    for (const QString &line : QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'))) {
        if (line.startsWith(QStringLiteral("  ")) && line.contains(QStringLiteral(": FOUT")))
            lines << line.trimmed();
        else if (line.startsWith(QStringLiteral("    - ")))
            lines << line.mid(6);
    }
    return lines;
}

// Whether this run keeps its cases in the office database (see E2e::Sandbox).
bool onDatabase()
{
    return !Zarnoveld::Commands::database().isEmpty();
}

// Where a case the adviser placed at path (a file question's answer) lives: that file, or in the
// database the case of its name.
QString caseAt(const QString &path)
{
    if (!onDatabase())
        return path;
    const QString file = QFileInfo(path).fileName();
    return Zarnoveld::CaseAddress::ofCase(Zarnoveld::Commands::database(), file.left(file.size() - int(strlen(".zdossier"))));
}

} // namespace

class TestE2eDesktop : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Sandbox> m_sandbox;

private Q_SLOTS:
    void initTestCase()
    {
        m_sandbox = std::make_unique<Sandbox>();
        QVERIFY(m_sandbox->isValid());
        QVERIFY(laptop() && monitor());
        QCOMPARE(laptop()->geometry().size(), QSize(1280, 720));
        QCOMPARE(monitor()->geometry().size(), QSize(1920, 1080));
    }

    void init()
    {
        QSettings().clear();
        QSettings().sync();
    }

    void firstStartOnALaptopFitsTheScreen()
    {
        MainWindow window;
        QVERIFY(showActive(&window));
        const QRect available = window.screen()->availableGeometry();
        QVERIFY2(available.contains(window.frameGeometry()),
                 qPrintable(QStringLiteral("%1x%2 at %3,%4").arg(window.width()).arg(window.height()).arg(window.x()).arg(window.y())));
        QVERIFY(window.close());
    }

    void sizeFromTheMonitorIsCutToTheLaptop()
    {
        // Worked on the large monitor at nearly its full size, then saved as if on the laptop.
        {
            MainWindow window;
            QVERIFY(showActive(&window));
            window.resize(1850, 1000);
            QVERIFY(window.close());
        }
        MainWindow again;
        QVERIFY(showActive(&again));
        QVERIFY(again.screen()->availableGeometry().contains(again.frameGeometry()));
        QVERIFY(again.close());
    }

    void settingsArePrivate()
    {
        MainWindow window;
        QVERIFY(showActive(&window));
        QVERIFY(window.close());
        const QString file = Zarnoveld::UserSettings::fileName();
        QVERIFY(QFile::exists(file));
        const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ExeGroup
            | QFileDevice::ReadOther | QFileDevice::WriteOther | QFileDevice::ExeOther;
        QCOMPARE(QFile::permissions(file) & others, QFileDevice::Permissions());
        QVERIFY(QFile::permissions(file) & QFileDevice::ReadOwner);
        QCOMPARE(QFile::permissions(QFileInfo(file).absolutePath()) & others, QFileDevice::Permissions());
        // Written again (QSettings replaces the file): still private.
        {
            MainWindow again;
            QVERIFY(showActive(&again));
            again.resize(900, 600);
            QVERIFY(again.close());
        }
        QCOMPARE(QFile::permissions(file) & others, QFileDevice::Permissions());
    }

    void pensionScreenNeedsNoSidewaysScrollingOnTheLaptop()
    {
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(openShown(window, example(QStringLiteral("sample-couple.json"))));
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        QCOMPARE(window.currentScreen(), MainWindow::Pensioenen);
        QApplication::processEvents();
        QScrollArea *scroll = scrollArea(window);
        QVERIFY(scroll);
        // The window leaves the pension screen all but the navigation's width.
        QVERIFY(scroll->viewport()->width() >= 1280 - find<QListWidget>(&window, QStringLiteral("lstSchermen"))->width()
                                                    - scroll->verticalScrollBar()->width() - 16);
        QVERIFY2(!scroll->horizontalScrollBar()->isVisible(),
                 qPrintable(QStringLiteral("control %1 wide, room %2").arg(window.pensionScreen()->control()->width())
                                .arg(scroll->viewport()->width())));
        saveScreenshot(&window, QStringLiteral("desktop-1280x720.png"));
        QVERIFY(window.close());
    }

    void longListShowsAsManyRowsAsFit()
    {
        MessageRecorder messages;
        int rows[2] = {0, 0};
        int index = 0;
        for (QScreen *screen : {laptop(), monitor()}) {
            MainWindow window;
            QString error;
            QVERIFY2(window.openCase(example(QStringLiteral("stress-99.json")), &error), qPrintable(error));
            window.setScreen(screen);
            window.setGeometry(screen->availableGeometry());
            QVERIFY(showActive(&window));
            window.showScreen(MainWindow::Pensioenen);
            QApplication::processEvents();
            QWidget *control = window.pensionScreen()->control();
            QScrollArea *scroll = scrollArea(window);
            // The control is given all the room the window has.
            QVERIFY(control->width() >= scroll->viewport()->width());
            QVERIFY(control->height() >= scroll->viewport()->height());
            auto *list = find<QTreeWidget>(control, QStringLiteral("LstPensioenen"));
            rows[index++] = visibleRows(list);
            qInfo("%dx%d: %d rows of the list visible", screen->size().width(), screen->size().height(), visibleRows(list));
            // What the adviser waits after a pause in editing, on the largest example (reported only).
            QElapsedTimer timer;
            timer.start();
            window.refreshFindings();
            qInfo("whole-case check of 2 x 99 schemes for the Controle pane: %lld ms", timer.elapsed());
            QVERIFY(find<QLabel>(&window, QStringLiteral("lblControle"))->text().contains(QStringLiteral("met een fout")));
            window.currentCase()->setChangeHandler({});
            window.close();
        }
        QVERIFY(rows[0] >= 5);
        QVERIFY2(rows[1] > rows[0], qPrintable(QStringLiteral("%1 rows at 1280x720, %2 at 1920x1080").arg(rows[0]).arg(rows[1])));
    }

    void clickOnScrollBarWithAFailingFieldOnlyScrolls()
    {
        MessageRecorder messages;
        MainWindow window;
        QString error;
        QVERIFY2(window.openCase(freshCopy(*m_sandbox, QStringLiteral("check-errors.json"), QStringLiteral("scroll")), &error),
                 qPrintable(error));
        QVERIFY(showActive(&window));
        window.resize(760, 520);
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        QCOMPARE(window.currentScreen(), MainWindow::Pensioenen);
        // The refused switch takes the adviser to the failing field.
        clickNavigation(&window, QStringLiteral("Deelnemers"));
        QCOMPARE(messages.count(), 1);
        QTRY_COMPARE(QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString(),
                     QStringLiteral("txtLeeftijdOPJr"));
        QWidget *field = QApplication::focusWidget();

        QScrollBar *bar = scrollArea(window)->horizontalScrollBar();
        QVERIFY(bar->isVisible());
        const int before = bar->value();
        QVERIFY(before < bar->maximum());
        // The arrow at the right end.
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, QPoint(bar->width() - 4, bar->height() / 2));
        QApplication::processEvents();
        QCOMPARE(messages.count(), 1);
        QVERIFY2(bar->value() > before, qPrintable(QStringLiteral("%1 -> %2").arg(before).arg(bar->value())));
        QCOMPARE(QApplication::focusWidget(), field);

        // Dragging the thumb too.
        QScrollBar *vertical = scrollArea(window)->verticalScrollBar();
        if (vertical->isVisible()) {
            const int start = vertical->value();
            QTest::mouseClick(vertical, Qt::LeftButton, Qt::NoModifier, QPoint(vertical->width() / 2, vertical->height() - 4));
            QApplication::processEvents();
            QCOMPARE(messages.count(), 1);
            QVERIFY(vertical->value() > start);
        }
        QCOMPARE(QApplication::focusWidget(), field);
        window.currentCase()->setChangeHandler({});
        enter(find<VandrelControl::TextBox>(window.pensionScreen()->control(), QStringLiteral("txtLeeftijdOPJr")), QStringLiteral("70"));
        QVERIFY(window.close());
    }

    void navigationShowsTheScreenThatIsShownAfterARefusal()
    {
        MessageRecorder messages;
        MainWindow window;
        QString error;
        QVERIFY2(window.openCase(freshCopy(*m_sandbox, QStringLiteral("check-errors.json"), QStringLiteral("navigatie")), &error),
                 qPrintable(error));
        QVERIFY(showActive(&window));
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        clickNavigation(&window, QStringLiteral("Deelnemers"));
        QCOMPARE(messages.count(), 1);
        QApplication::processEvents();
        auto *navigation = find<QListWidget>(&window, QStringLiteral("lstSchermen"));
        QCOMPARE(window.currentScreen(), MainWindow::Pensioenen);
        QCOMPARE(navigation->currentRow(), int(MainWindow::Pensioenen));
        const auto selected = navigation->selectedItems();
        QCOMPARE(selected.size(), 1);
        QCOMPARE(selected.first()->text(), QStringLiteral("Pensioenen"));
        enter(find<VandrelControl::TextBox>(window.pensionScreen()->control(), QStringLiteral("txtLeeftijdOPJr")), QStringLiteral("70"));
        QVERIFY(window.close());
    }

    void titleAndStatusSayWhereTheAdviserIs()
    {
        MessageRecorder messages;
        MainWindow window;
        QCOMPARE(window.windowTitle(), QStringLiteral("Zarnoveld"));
        QString error;
        QVERIFY2(window.openCase(example(QStringLiteral("sample-couple.json")), &error), qPrintable(error));
        QVERIFY(showActive(&window));
        const auto app = window.currentCase();
        const QString applicant = app->Get_Dossier()->Get_Aanvrager(1)->Naam();
        const QString partner = app->Get_Dossier()->Get_Aanvrager(2)->Naam();
        QVERIFY(!applicant.isEmpty() && !partner.isEmpty());
        QCOMPARE(window.windowTitle(), QStringLiteral("%1 en %2 \u2014 Zarnoveld").arg(applicant, partner));
        auto *fileLabel = find<QLabel>(&window, QStringLiteral("lblDossierbestand"));
        QCOMPARE(fileLabel->toolTip(), app->filePath());
        // The whole path where there is room for it, else shortened in the middle; a case in the
        // office database by its name and the database, never by its raw address.
        if (Zarnoveld::CaseAddress::isServer(app->filePath()))
            QCOMPARE(fileLabel->text(), QStringLiteral("Dossier: %1 (%2)")
                                            .arg(app->caseName(), Zarnoveld::CaseAddress::parse(app->filePath()).display()));
        else
            QVERIFY2(fileLabel->text() == QStringLiteral("Dossier: ") + app->filePath()
                         || (fileLabel->text().startsWith(QStringLiteral("Dossier: ")) && fileLabel->text().contains(QChar(0x2026))
                             && fileLabel->text().endsWith(QStringLiteral(".zdossier"))),
                     qPrintable(fileLabel->text()));
        auto *saved = find<QLabel>(&window, QStringLiteral("lblOpgeslagen"));
        QCOMPARE(saved->text(), QStringLiteral("Alle wijzigingen opgeslagen"));

        // The applicant's name changed on the participants screen: stored, and the title follows.
        window.showScreen(MainWindow::Deelnemers);
        auto *naam = find<VandrelControl::TextBox>(&window, QStringLiteral("txtNaam_1"));
        QVERIFY(naam);
        const QTime before = QTime::currentTime().addSecs(-1);
        enter(naam, QStringLiteral("Anna de Wit"));
        QTRY_COMPARE(window.windowTitle(), QStringLiteral("Anna de Wit en %1 \u2014 Zarnoveld").arg(partner));
        const QRegularExpression stamp(QStringLiteral("^Alle wijzigingen opgeslagen \\(laatste om (\\d\\d:\\d\\d:\\d\\d)\\)$"));
        const auto match = stamp.match(saved->text());
        QVERIFY2(match.hasMatch(), qPrintable(saved->text()));
        QVERIFY(QTime::fromString(match.captured(1), QStringLiteral("HH:mm:ss")) >= before);

        // The check state follows once the adviser pauses.
        QTRY_VERIFY_WITH_TIMEOUT(find<QLabel>(&window, QStringLiteral("lblControle"))->text().startsWith(QStringLiteral("Controle: ")) &&
                                     !find<QLabel>(&window, QStringLiteral("lblControle"))->text().contains(QStringLiteral("nog niet")),
                                 10000);

        // A case shown read-only says so in the title and the status bar.
        app->setReadOnly(true);
        window.setCase(app);
        QCOMPARE(window.windowTitle(), QStringLiteral("Anna de Wit en %1 [alleen-lezen] \u2014 Zarnoveld").arg(partner));
        QVERIFY(saved->text().startsWith(QStringLiteral("Alleen lezen")));
        QVERIFY(!find<QAction>(&window, QStringLiteral("actTerugzetten"))->isEnabled());
        QVERIFY(!find<QAction>(&window, QStringLiteral("actPrullenbakLegen"))->isEnabled());
        app->setReadOnly(false);
        window.setCase(app);
        QVERIFY(find<QAction>(&window, QStringLiteral("actTerugzetten"))->isEnabled());
        QVERIFY(window.close());
    }

    void everyMenuEntryHasItsKey()
    {
        MainWindow window;
        QVERIFY(showActive(&window));
        QSet<QChar> barKeys;
        const auto mnemonic = [](const QString &text) {
            const qsizetype at = text.indexOf(QLatin1Char('&'));
            return at >= 0 && at + 1 < text.size() ? text.at(at + 1).toLower() : QChar();
        };
        const std::function<void(QMenu *)> checkMenu = [&](QMenu *menu) {
            QSet<QChar> keys;
            for (QAction *action : menu->actions()) {
                if (action->isSeparator())
                    continue;
                const QChar key = mnemonic(action->text());
                QVERIFY2(!key.isNull(), qPrintable(action->text()));
                QVERIFY2(!keys.contains(key), qPrintable(QStringLiteral("%1 in %2").arg(action->text(), menu->title())));
                keys.insert(key);
                if (action->menu())
                    checkMenu(action->menu());
            }
        };
        for (QAction *top : window.menuBar()->actions()) {
            const QChar key = mnemonic(top->text());
            QVERIFY2(!key.isNull() && !barKeys.contains(key), qPrintable(top->text()));
            barKeys.insert(key);
            checkMenu(top->menu());
        }
        QVERIFY(window.menuBar()->findChild<QMenu *>(QStringLiteral("mnuBestand")));
        const QList<std::pair<const char *, QKeySequence>> shortcuts{
            {"actNieuw", QKeySequence(Qt::CTRL | Qt::Key_N)}, {"actOpenen", QKeySequence(Qt::CTRL | Qt::Key_O)},
            {"actAfsluiten", QKeySequence(Qt::CTRL | Qt::Key_Q)}, {"actControle", QKeySequence(Qt::Key_F8)},
            {"actHandleiding", QKeySequence(Qt::Key_F1)}};
        for (const auto &[name, keys] : shortcuts)
            QCOMPARE(find<QAction>(&window, QLatin1String(name))->shortcut(), keys);
        for (const char *name : {"actImporteren", "actExporteren", "actTerugzetten", "actPrullenbakLegen", "actOver"})
            QVERIFY(find<QAction>(&window, QLatin1String(name)));

        // F8 opens the findings pane, hidden at first.
        auto *dock = find<QDockWidget>(&window, QStringLiteral("dockControle"));
        QVERIFY(!dock->isVisible());
        QTest::keyClick(&window, Qt::Key_F8);
        QTRY_VERIFY(dock->isVisible());
        QVERIFY(window.close());
    }

    void newCaseStartsEmptyOnTheParticipantsScreen()
    {
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(openShown(window, example(QStringLiteral("sample-couple.json"))));
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        const QString target = m_sandbox->path(QStringLiteral("nieuw-desktop"));
        window.setFileChooser([&](MainWindow::FileQuestion question, const QString &, const QString &proposal, const QString &) {
            return question == MainWindow::FileQuestion::NewCase && proposal.endsWith(QStringLiteral(".zdossier")) ? target : QString();
        });
        QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(window.currentCase()->filePath(), caseAt(target + QStringLiteral(".zdossier")));
        QCOMPARE(window.currentScreen(), MainWindow::Deelnemers);
        QCOMPARE(find<QListWidget>(&window, QStringLiteral("lstSchermen"))->currentItem()->text(), QStringLiteral("Deelnemers"));
        QCOMPARE(schemeCount(window.currentCase(), 1), 0);
        QVERIFY(!window.currentCase()->Get_Dossier()->Get_Aanvrager(2));
        QCOMPARE(window.windowTitle(), QStringLiteral("Nieuwe klant \u2014 Zarnoveld"));

        // Both cases are in the recent list, newest first.
        auto *recent = find<QMenu>(&window, QStringLiteral("mnuRecent"));
        Q_EMIT recent->aboutToShow();
        const QString suffix = onDatabase() ? QString() : QStringLiteral(".zdossier");
        QCOMPARE(recent->actions().value(0)->text(), QStringLiteral("&1 nieuw-desktop") + suffix);
        // A JSON opened directly became a case named after the file, its place and its content.
        const QString second = recent->actions().value(1)->text();
        QVERIFY2(second.startsWith(QStringLiteral("&2 sample-couple-")) && second.endsWith(suffix), qPrintable(second));
        QVERIFY(window.close());
    }

    void importAndExportThroughTheMenu()
    {
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(showActive(&window));
        const QString target = m_sandbox->path(QStringLiteral("geimporteerd.zdossier"));
        const QString exportPath = m_sandbox->path(QStringLiteral("uitvoer.json"));
        QList<MainWindow::FileQuestion> asked;
        window.setFileChooser([&](MainWindow::FileQuestion question, const QString &, const QString &, const QString &filter) {
            asked << question;
            switch (question) {
            case MainWindow::FileQuestion::ImportJson:
                return filter.contains(QStringLiteral("*.json")) ? example(QStringLiteral("single.json")) : QString();
            case MainWindow::FileQuestion::NewCase:
                return target;
            case MainWindow::FileQuestion::ExportJson:
                return exportPath;
            default:
                return QString();
            }
        });
        find<QAction>(&window, QStringLiteral("actImporteren"))->trigger();
        QCOMPARE(asked, (QList<MainWindow::FileQuestion>{MainWindow::FileQuestion::ImportJson, MainWindow::FileQuestion::NewCase}));
        QVERIFY(window.currentCase());
        QCOMPARE(window.currentCase()->filePath(), caseAt(target));
        find<QAction>(&window, QStringLiteral("actExporteren"))->trigger();
        QFile file(exportPath);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QJsonDocument::fromJson(file.readAll()).object(), window.currentCase()->exportJson());
        // Cancelled: nothing changes.
        const auto before = window.currentCase();
        window.setFileChooser([](MainWindow::FileQuestion, const QString &, const QString &, const QString &) { return QString(); });
        find<QAction>(&window, QStringLiteral("actOpenen"))->trigger();
        find<QAction>(&window, QStringLiteral("actNieuw"))->trigger();
        QCOMPARE(window.currentCase(), before);
        QCOMPARE(messages.count(), 0);
        QVERIFY(window.close());
    }

    void helpAndAboutAreDutch()
    {
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(showActive(&window));
        find<QAction>(&window, QStringLiteral("actOver"))->trigger();
        QCOMPARE(messages.lastTitle(), QStringLiteral("Over Zarnoveld"));
        QVERIFY(messages.lastText().contains(QStringLiteral("Licentie")));
        QVERIFY(messages.lastText().contains(QRegularExpression(QStringLiteral("Rekenjaar van de fiscale bedragen: 20\\d\\d"))));
        QVERIFY(messages.lastText().contains(QRegularExpression(QStringLiteral("^Zarnoveld \\d+\\.\\d+"))));
        find<QAction>(&window, QStringLiteral("actHandleiding"))->trigger();
        QCOMPARE(messages.lastTitle(), QStringLiteral("Handleiding"));
        QVERIFY(messages.lastText().contains(QStringLiteral("prullenbak")));
        QVERIFY(window.close());
    }

    void findingsPaneSaysWhatTheCheckSays()
    {
        MessageRecorder messages;
        int exitCode = -1;
        const QStringList expected = checkFindings(example(QStringLiteral("check-errors.json")), &exitCode);
        QCOMPARE(exitCode, 1);
        QVERIFY(!expected.isEmpty());

        MainWindow window;
        QString error;
        QVERIFY2(window.openCase(freshCopy(*m_sandbox, QStringLiteral("check-errors.json"), QStringLiteral("controle")), &error),
                 qPrintable(error));
        QVERIFY(showActive(&window));
        find<QAction>(&window, QStringLiteral("actControle"))->trigger();
        auto *dock = find<QDockWidget>(&window, QStringLiteral("dockControle"));
        QVERIFY(dock->isVisible());
        window.refreshFindings();
        auto *pane = find<QListWidget>(dock, QStringLiteral("lstBevindingen"));
        QStringList shown;
        for (int i = 0; i < pane->count(); ++i)
            shown << pane->item(i)->text();
        // The window checks the case by its file name; the command was given the JSON example.
        for (QString &line : shown)
            line.replace(window.currentCase()->filePath(), example(QStringLiteral("check-errors.json")));
        QCOMPARE(shown, expected);
        QCOMPARE(messages.count(), 0);
        QVERIFY(find<QLabel>(&window, QStringLiteral("lblControle"))->text().contains(QStringLiteral("met een fout")));
        saveScreenshot(&window, QStringLiteral("findings-pane.png"));

        // A double click on a failing scheme's line shows that scheme. Both schemes of this case
        // fail; the first must be put right before the screen lets the adviser go to the second.
        const auto doubleClick = [&](int penId) {
            for (int i = 0; i < pane->count(); ++i) {
                QListWidgetItem *item = pane->item(i);
                if (item->data(Qt::UserRole + 1).toInt() != 1 || item->data(Qt::UserRole + 2).toInt() != penId)
                    continue;
                pane->scrollToItem(item);
                // A real double click: press and release, then a second press that is a double click.
                QTest::mouseClick(pane->viewport(), Qt::LeftButton, Qt::NoModifier, pane->visualItemRect(item).center());
                QTest::mouseDClick(pane->viewport(), Qt::LeftButton, Qt::NoModifier, pane->visualItemRect(item).center());
                return true;
            }
            return false;
        };
        const auto shownKey = [&] {
            auto *schemes = find<QTreeWidget>(window.pensionScreen()->control(), QStringLiteral("LstPensioenen"));
            return schemes && schemes->currentItem() && schemes->selectedItems().value(0) == schemes->currentItem()
                ? schemes->currentItem()->data(0, VandrelPensioen::KeyRole).toString()
                : QString();
        };
        QVERIFY(doubleClick(1));
        QCOMPARE(window.currentScreen(), MainWindow::Pensioenen);
        QCOMPARE(shownKey(), QStringLiteral("@101"));
        enter(find<VandrelControl::TextBox>(window.pensionScreen()->control(), QStringLiteral("txtLeeftijdOPJr")), QStringLiteral("70"));
        window.refreshFindings();
        QVERIFY(!doubleClick(1));
        QVERIFY(doubleClick(2));
        QCOMPARE(shownKey(), QStringLiteral("@102"));
        QCOMPARE(messages.count(), 0);
        window.currentCase()->setChangeHandler({});
        messages.setDefaultQuestionAnswer(MessageBox::Answer::Yes);
        window.pensionScreen()->release();
        window.close();
    }

    void helpIsDutchWhateverTheLocale()
    {
        for (const char *locale : {"C", "en_US.UTF-8", "nl_NL.UTF-8"}) {
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            env.insert(QStringLiteral("LANG"), QLatin1String(locale));
            env.insert(QStringLiteral("LC_ALL"), QLatin1String(locale));
            QProcess process;
            process.setProcessEnvironment(env);
            process.start(QStringLiteral(ZARNOVELD_EXECUTABLE), {QStringLiteral("--help")});
            QVERIFY(process.waitForFinished(60000));
            QCOMPARE(process.exitCode(), 0);
            const QString help = QString::fromUtf8(process.readAllStandardOutput());
            QVERIFY2(help.startsWith(QStringLiteral("Zarnoveld: ")), qPrintable(help));
            QVERIFY(help.contains(QStringLiteral("\nOpdrachten:\n")));
            QVERIFY(help.contains(QStringLiteral("zarnoveld --help")));
            QVERIFY(help.contains(QStringLiteral("toon deze hulp")));
            for (const char *english : {"Usage", "Options", "Arguments", "Displays", "help on"})
                QVERIFY2(!help.contains(QLatin1String(english)), english);
        }
    }

    // Last: it loads Qt's Dutch catalogue into this test program.
    void qtOwnDialogsAndMenusAreDutch()
    {
        QVERIFY2(Zarnoveld::installDutchTranslations(qApp), "qt6-translations-l10n is not installed");
        QFileDialog dialog(nullptr, QStringLiteral("Dossier openen"));
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        dialog.setAcceptMode(QFileDialog::AcceptOpen);
        QStringList texts;
        for (QDialogButtonBox *box : dialog.findChildren<QDialogButtonBox *>())
            for (QAbstractButton *button : box->buttons())
                texts << button->text().remove(QLatin1Char('&'));
        QVERIFY2(texts.contains(QStringLiteral("Annuleren")), qPrintable(texts.join(QLatin1Char('|'))));
        QVERIFY2(texts.contains(QStringLiteral("Openen")), qPrintable(texts.join(QLatin1Char('|'))));
        bool lookIn = false;
        for (QLabel *label : dialog.findChildren<QLabel *>())
            lookIn = lookIn || label->text().remove(QLatin1Char('&')) == QStringLiteral("Zoeken in:");
        QVERIFY(lookIn);

        QLineEdit field;
        std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
        QStringList entries;
        for (QAction *action : menu->actions())
            entries << action->text().remove(QLatin1Char('&')).section(QLatin1Char('\t'), 0, 0);
        QVERIFY2(entries.contains(QStringLiteral("Ongedaan maken")), qPrintable(entries.join(QLatin1Char('|'))));
        QVERIFY(entries.contains(QStringLiteral("Plakken")));
    }
};

// Two screens side by side, as the offscreen platform reads them from a configuration file; it
// must be in place before the application object is made.
int main(int argc, char **argv)
{
    QTemporaryDir config;
    const QString file = config.filePath(QStringLiteral("schermen.json"));
    {
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly))
            return 3;
        out.write(R"({"screens": [
            {"name": "laptop", "x": 0, "y": 0, "width": 1280, "height": 720, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
            {"name": "monitor", "x": 1280, "y": 0, "width": 1920, "height": 1080, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}
        ]})");
    }
    qputenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + file).toLocal8Bit());
    QApplication app(argc, argv);
    TestE2eDesktop test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_e2e_desktop.moc"
