// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// A scheme deleted on the pension screen (which asks nothing) can be put back from Bewerken: at
// its old place with every value, across a restart, until the adviser empties the bin or it has
// been there longer than the bin keeps things.

#include "bindialog.h"
#include "casebackend.h"
#include "e2esupport.h"
#include "mainwindow.h"
#include "pensionscreen.h"
#include "usersim.h"

#include <QAction>
#include <QFile>
#include <QJsonDocument>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>
#include <QTreeWidget>
#include <QUuid>

using namespace E2e;
using namespace TestSupport;
using Zarnoveld::BinDialog;
using Zarnoveld::MainWindow;

namespace {

QByteArray exported(const std::shared_ptr<Zarnoveld::HostApplication> &app)
{
    return QJsonDocument(app->exportJson()).toJson(QJsonDocument::Indented);
}

// Deletes the participant's scheme from the list as the user does: select the row, click
// Verwijderen. beforeDelete, when given, gets the case as it is just before the click (selecting
// a scheme may fill values the screen derives).
void deleteScheme(MainWindow &window, const QString &uitvoerder, const QString &deelnemer, QByteArray *beforeDelete = nullptr)
{
    QWidget *control = window.pensionScreen()->control();
    auto *list = find<QTreeWidget>(control, QStringLiteral("LstPensioenen"));
    QTreeWidgetItem *row = rowOf(list, uitvoerder, deelnemer);
    QVERIFY(row);
    clickRow(list, row);
    QCOMPARE(selectedProvider(list), uitvoerder);
    if (beforeDelete)
        *beforeDelete = exported(window.currentCase());
    click(find<QPushButton>(control, QStringLiteral("cmdVerwijder")));
}

BinDialog *openBin(MainWindow &window)
{
    find<QAction>(&window, QStringLiteral("actTerugzetten"))->trigger();
    auto *dialog = window.findChild<BinDialog *>(QStringLiteral("dlgPrullenbak"));
    return dialog && dialog->isVisible() ? dialog : nullptr;
}

} // namespace

class TestE2eBin : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Sandbox> m_sandbox;
    QString m_casePath;

private Q_SLOTS:
    void initTestCase()
    {
        m_sandbox = std::make_unique<Sandbox>();
        QVERIFY(m_sandbox->isValid());
    }

    void deletedSchemeComesBackWholeAtItsPlace()
    {
        MessageRecorder messages;
        messages.setDefaultQuestionAnswer(MessageBox::Answer::Yes);
        MainWindow window;
        QString error;
        QVERIFY2(window.openCase(example(QStringLiteral("sample-couple.json")), &error), qPrintable(error));
        m_casePath = window.currentCase()->filePath();
        QVERIFY(showActive(&window));
        QVERIFY(window.showScreen(MainWindow::Pensioenen));
        const auto app = window.currentCase();
        const QStringList before = providers(app, 1);
        QVERIFY(before.size() >= 2);
        QByteArray original;
        const QString second = before.at(1);
        deleteScheme(window, second, QStringLiteral("Aanvrager"), &original);
        QCOMPARE(providers(app, 1).size(), before.size() - 1);
        QVERIFY(!providers(app, 1).contains(second));
        QCOMPARE(app->binEntries().size(), 1);
        QCOMPARE(app->binEntries().first().uitvoerder, second);
        QCOMPARE(app->binEntries().first().position, 2);

        BinDialog *dialog = openBin(window);
        QVERIFY(dialog);
        auto *list = find<QTreeWidget>(dialog, QStringLiteral("lstPrullenbak"));
        QCOMPARE(list->topLevelItemCount(), 1);
        QCOMPARE(list->topLevelItem(0)->text(2), second);
        QCOMPARE(list->topLevelItem(0)->text(0), QStringLiteral("%1 (aanvrager)").arg(app->Get_Dossier()->Get_Aanvrager(1)->Naam()));
        QCOMPARE(list->topLevelItem(0)->text(1), QStringLiteral("2"));
        QVERIFY2(clippedCaptions(dialog).isEmpty(), qPrintable(clippedCaptions(dialog).join(QLatin1Char(' '))));
        saveScreenshot(dialog, QStringLiteral("bin-dialog.png"));
        click(find<QPushButton>(dialog, QStringLiteral("cmdTerugzetten")));

        QCOMPARE(providers(app, 1), before);
        QVERIFY(app->binEntries().isEmpty());
        QCOMPARE(list->topLevelItemCount(), 0);
        QCOMPARE(exported(app), original);
        // The list on the pension screen shows it again, selected.
        auto *schemes = find<QTreeWidget>(window.pensionScreen()->control(), QStringLiteral("LstPensioenen"));
        QVERIFY(rowOf(schemes, second, QStringLiteral("Aanvrager")));
        QCOMPARE(selectedProvider(schemes), second);
        dialog->close();

        // Deleted once more, for the next test: the bin outlives the program.
        deleteScheme(window, second, QStringLiteral("Aanvrager"));
        QCOMPARE(app->binEntries().size(), 1);
        window.showScreen(MainWindow::Deelnemers);
        QVERIFY(window.close());
    }

    void binSurvivesARestart()
    {
        MessageRecorder messages;
        messages.setDefaultQuestionAnswer(MessageBox::Answer::Yes);
        QString error;
        qsizetype without = 0;
        {
            MainWindow window;
            QVERIFY2(window.openCase(m_casePath, &error), qPrintable(error));
            const auto app = window.currentCase();
            QCOMPARE(app->binEntries().size(), 1);
            without = providers(app, 1).size();
            QVERIFY(showActive(&window));
            const qint16 back = app->restoreFromBin(app->binEntries().first().id);
            QCOMPARE(back, qint16(2));
            QCOMPARE(providers(app, 1).size(), without + 1);
            QVERIFY(window.close());
        }

        // The restore was stored too.
        MainWindow again;
        QVERIFY2(again.openCase(m_casePath, &error), qPrintable(error));
        QCOMPARE(providers(again.currentCase(), 1).size(), without + 1);
        QVERIFY(again.currentCase()->binEntries().isEmpty());
        QVERIFY(again.close());
    }

    void emptyingTheBinAsksAndIsForGood()
    {
        MessageRecorder messages;
        messages.setDefaultQuestionAnswer(MessageBox::Answer::Yes);
        QString error;
        {
            MainWindow window;
            QVERIFY2(window.openCase(m_casePath, &error), qPrintable(error));
            QVERIFY(showActive(&window));
            QVERIFY(window.showScreen(MainWindow::Pensioenen));
            const auto app = window.currentCase();
            deleteScheme(window, providers(app, 1).last(), QStringLiteral("Aanvrager"));
            QCOMPARE(app->binEntries().size(), 1);

            BinDialog *dialog = openBin(window);
            QVERIFY(dialog);
            // Said No: nothing goes.
            messages.clear();
            messages.answerNext(MessageBox::Answer::No);
            click(find<QPushButton>(dialog, QStringLiteral("cmdLegen")));
            QCOMPARE(messages.count(), 1);
            QCOMPARE(messages.lastTitle(), QStringLiteral("Prullenbak legen"));
            QCOMPARE(messages.lastText(), QStringLiteral("De regeling in de prullenbak wordt definitief verwijderd. Doorgaan?"));
            QCOMPARE(app->binEntries().size(), 1);
            // Said Yes.
            messages.answerNext(MessageBox::Answer::Yes);
            click(find<QPushButton>(dialog, QStringLiteral("cmdLegen")));
            QVERIFY(app->binEntries().isEmpty());
            QVERIFY(!find<QPushButton>(dialog, QStringLiteral("cmdTerugzetten"))->isEnabled());
            dialog->close();
            window.showScreen(MainWindow::Deelnemers);
            QVERIFY(window.close());
        }

        MainWindow again;
        QVERIFY2(again.openCase(m_casePath, &error), qPrintable(error));
        QVERIFY(again.currentCase()->binEntries().isEmpty());
        QVERIFY(again.close());
    }

    void binForgetsWhatIsOlderThanAMonth()
    {
        MessageRecorder messages;
        messages.setDefaultQuestionAnswer(MessageBox::Answer::Yes);
        {
            MainWindow window;
            QString error;
            QVERIFY2(window.openCase(m_casePath, &error), qPrintable(error));
            QVERIFY(showActive(&window));
            QVERIFY(window.showScreen(MainWindow::Pensioenen));
            const auto app = window.currentCase();
            deleteScheme(window, providers(app, 1).last(), QStringLiteral("Aanvrager"));
            deleteScheme(window, providers(app, 1).last(), QStringLiteral("Aanvrager"));
            QCOMPARE(app->binEntries().size(), 2);
            window.showScreen(MainWindow::Deelnemers);
            QVERIFY(window.close());
        }
        // One of them removed 31 days ago, one 29 days ago.
        {
            const QString connection = QUuid::createUuid().toString();
            {
                QSqlDatabase db = TestSupport::openRaw(m_casePath, connection);
                QVERIFY(db.isOpen());
                QSqlQuery q(db);
                QVERIFY(q.exec(QStringLiteral("SELECT id FROM prullenbak ORDER BY id")));
                QList<qint64> ids;
                while (q.next())
                    ids << q.value(0).toLongLong();
                QCOMPARE(ids.size(), 2);
                const auto age = [&](qint64 id, int days) {
                    QSqlQuery u(db);
                    u.prepare(QStringLiteral("UPDATE prullenbak SET verwijderd = ? WHERE id = ?"));
                    u.addBindValue(QDateTime::currentDateTimeUtc().addDays(-days).toString(Qt::ISODate));
                    u.addBindValue(id);
                    return u.exec();
                };
                QVERIFY(age(ids[0], 31));
                QVERIFY(age(ids[1], BinDialog::KeepDays - 1));
                db.close();
            }
            QSqlDatabase::removeDatabase(connection);
        }
        MainWindow window;
        QString error;
        QVERIFY2(window.openCase(m_casePath, &error), qPrintable(error));
        QCOMPARE(window.currentCase()->binEntries().size(), 1);
        QVERIFY(window.close());
    }

    void restoreWaitsForTheShownSchemeToBeRight()
    {
        MessageRecorder messages;
        MainWindow window;
        QString error;
        QFile::copy(example(QStringLiteral("check-errors.json")), m_sandbox->path(QStringLiteral("bin-errors.json")));
        QVERIFY2(window.openCase(m_sandbox->path(QStringLiteral("bin-errors.json")), &error), qPrintable(error));
        const auto app = window.currentCase();
        QVERIFY(showActive(&window));
        // The second scheme goes to the bin straight through the host, then the screen shows the
        // first, which has an error.
        app->Get_Dossier()->Get_Aanvrager(1)->RemovePension(2);
        const int left = schemeCount(app, 1);
        QVERIFY(window.showScreen(MainWindow::Pensioenen));
        BinDialog *dialog = openBin(window);
        QVERIFY(dialog);
        click(find<QPushButton>(dialog, QStringLiteral("cmdTerugzetten")));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Pensioentoezeggingen"));
        QCOMPARE(app->binEntries().size(), 1);
        QCOMPARE(schemeCount(app, 1), left);
        dialog->close();
        window.currentCase()->setChangeHandler({});
        window.pensionScreen()->release();
    }
};

QTEST_MAIN(TestE2eBin)
#include "tst_e2e_bin.moc"
