// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Bestand > Pensioenoverzicht inlezen... in the zarnoveld window, every dialog answered as a user
// answers it: the file, the participant, the preview; then the pension screen shows the result.

#include "e2esupport.h"
#include "mainwindow.h"
#include "pensionscreen.h"
#include "previewdialog.h"
#include "usersim.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QJsonDocument>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <deque>
#include <functional>

using namespace E2e;
using namespace TestSupport;
using Zarnoveld::MainWindow;

namespace {

// Answers the modal dialogs that come up, in order: each step gets the dialog when one with its
// object name is the active modal widget.
class DialogAnswers
{
public:
    using Step = std::pair<QString, std::function<void(QDialog *)>>;

    explicit DialogAnswers(std::deque<Step> steps) : m_steps(std::move(steps))
    {
        m_timer.setInterval(20);
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isVisible() || m_steps.empty() || dialog->objectName() != m_steps.front().first)
                return;
            auto step = m_steps.front();
            m_steps.pop_front();
            m_seen << step.first;
            step.second(dialog);
        });
        m_timer.start();
    }
    QStringList seen() const { return m_seen; }
    bool done() const { return m_steps.empty(); }

private:
    QTimer m_timer;
    std::deque<Step> m_steps;
    QStringList m_seen;
};

DialogAnswers::Step chooseFile(const QString &path)
{
    return {QStringLiteral("dlgPensioenoverzicht"), [path](QDialog *d) {
                // The whole path typed into the file name field and confirmed, as the user does.
                auto *name = d->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
                QVERIFY(name);
                name->setText(path);
                d->accept();
            }};
}

DialogAnswers::Step chooseParticipant(const QString &startsWith)
{
    return {QStringLiteral("dlgDeelnemer"), [startsWith](QDialog *d) {
                auto *ask = qobject_cast<QInputDialog *>(d);
                for (const QString &item : ask->comboBoxItems())
                    if (item.startsWith(startsWith))
                        ask->setTextValue(item);
                ask->accept();
            }};
}

DialogAnswers::Step pressInPreview(const QString &button)
{
    return {QStringLiteral("frmPensioenoverzicht"), [button](QDialog *d) {
                QPushButton *b = d->findChild<QPushButton *>(button);
                QVERIFY(b && b->isEnabled());
                b->click();
            }};
}

QString overview(const QString &name)
{
    return example(QStringLiteral("pensioenoverzicht/") + name);
}

QStringList listProviders(MainWindow &window)
{
    auto *list = find<QTreeWidget>(window.pensionScreen()->control(), QStringLiteral("LstPensioenen"));
    QStringList out;
    for (int i = 0; list && i < list->topLevelItemCount(); ++i)
        for (int c = 0; c < list->columnCount(); ++c)
            out << list->topLevelItem(i)->text(c);
    return out;
}

int listRows(MainWindow &window)
{
    auto *list = find<QTreeWidget>(window.pensionScreen()->control(), QStringLiteral("LstPensioenen"));
    return list ? list->topLevelItemCount() : -1;
}

} // namespace

class TestE2eOverzicht : public QObject
{
    Q_OBJECT

    std::unique_ptr<Sandbox> m_sandbox;

    QAction *menuAction(MainWindow &window)
    {
        return window.findChild<QAction *>(QStringLiteral("actPensioenoverzicht"));
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_sandbox = std::make_unique<Sandbox>();
        QVERIFY(m_sandbox->isValid());
    }

    void partnerOverviewThroughTheMenuShowsUpOnThePensionScreen()
    {
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(openShown(window, example(QStringLiteral("sample-couple.json"))));
        clickNavigation(&window, QStringLiteral("Pensioenen"));
        const int before = listRows(window);
        QCOMPARE(before, 6);
        QVERIFY(!listProviders(window).contains(QStringLiteral("Pensioenfonds Zorgkring")));
        const int partnerBefore = schemeCount(window.currentCase(), 2);

        DialogAnswers answers({chooseFile(overview(QStringLiteral("overzicht-partner-een-regeling.xml"))),
                               chooseParticipant(QStringLiteral("Partner")), pressInPreview(QStringLiteral("cmdInlezen"))});
        QAction *act = menuAction(window);
        QVERIFY(act);
        QCOMPARE(act->text(), QStringLiteral("&Pensioenoverzicht inlezen..."));
        act->trigger();
        QVERIFY2(answers.done(), qPrintable(answers.seen().join(QLatin1Char(','))));

        QCOMPARE(window.currentScreen(), MainWindow::Pensioenen);
        QCOMPARE(schemeCount(window.currentCase(), 2), partnerBefore + 1);
        QCOMPARE(providers(window.currentCase(), 2).last(), QStringLiteral("Pensioenfonds Zorgkring"));
        QTRY_COMPARE(listRows(window), before + 1);
        QVERIFY(listProviders(window).contains(QStringLiteral("Pensioenfonds Zorgkring")));
        // Leaving the scheme on screen asks the screen's own questions; the import adds none.
        for (const auto &request : messages.requests())
            QVERIFY2(!request.title.contains(QStringLiteral("Pensioenoverzicht")), qPrintable(request.text));
    }

    void cancelInThePreviewLeavesTheCaseAsItWas()
    {
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(openShown(window, example(QStringLiteral("single.json"))));
        const QByteArray before = QJsonDocument(window.currentCase()->exportJson()).toJson();
        // A case without partner asks no participant.
        DialogAnswers answers({chooseFile(overview(QStringLiteral("overzicht-aanvrager.xml"))),
                               pressInPreview(QStringLiteral("cmdAnnuleren"))});
        menuAction(window)->trigger();
        QVERIFY2(answers.done(), qPrintable(answers.seen().join(QLatin1Char(','))));
        QCOMPARE(QJsonDocument(window.currentCase()->exportJson()).toJson(), before);
        QCOMPARE(window.currentScreen(), MainWindow::Deelnemers);
        QCOMPARE(messages.count(), 0);
    }

    void refusedFileIsExplainedAndNothingChanges()
    {
        MessageRecorder messages;
        MainWindow window;
        QVERIFY(openShown(window, example(QStringLiteral("single.json"))));
        const QByteArray before = QJsonDocument(window.currentCase()->exportJson()).toJson();
        DialogAnswers answers({chooseFile(overview(QStringLiteral("overzicht-fout.json")))});
        menuAction(window)->trigger();
        QVERIFY(answers.done());
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Pensioenoverzicht niet ingelezen"));
        QVERIFY2(messages.lastText().contains(QStringLiteral("overzicht-fout.json")) && messages.lastText().contains(QStringLiteral("\"003\"")),
                 qPrintable(messages.lastText()));
        QCOMPARE(QJsonDocument(window.currentCase()->exportJson()).toJson(), before);
    }
};

QTEST_MAIN(TestE2eOverzicht)
#include "tst_e2e_overzicht.moc"
