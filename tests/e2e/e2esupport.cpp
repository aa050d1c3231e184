// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "e2esupport.h"

#include "casebackend.h"
#include "commands.h"
#include "mainwindow.h"
#include "pensionscreen.h"
#include "usersim.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QTest>
#include <QTreeWidget>

namespace E2e {

Sandbox::Sandbox()
{
    if (!m_dir.isValid())
        return;
    // Set before anything reads them: QSettings and the registry cache their folders.
    qputenv("XDG_DATA_HOME", path(QStringLiteral("data")).toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", path(QStringLiteral("config")).toLocal8Bit());
    qputenv("XDG_STATE_HOME", path(QStringLiteral("state")).toLocal8Bit());
    qputenv("VANDREL_COMPONENT_REGISTRY", path(QStringLiteral("registry")).toLocal8Bit());
    qputenv("ZARNOVELD_LOG", logFile().toLocal8Bit());
    QCoreApplication::setOrganizationName(QStringLiteral("VandrelE2e"));
    QCoreApplication::setApplicationName(QStringLiteral("zarnoveld"));
    QString error;
    // The same tests once more on the office database (ZARNOVELD_TEST_BACKEND=postgresql): every
    // case they open lives in a database of this run's own, as if zarnoveld ran with --database.
    if (TestSupport::onServer()) {
        const QString database = TestSupport::freshDatabase();
        if (database.isEmpty()) {
            qWarning("%s", qPrintable(TestSupport::serverMissing().isEmpty() ? QStringLiteral("no database could be made")
                                                                           : TestSupport::serverMissing()));
            return;
        }
        QByteArray option = "--database=" + database.toUtf8();
        char program[] = "zarnoveld";
        char *argv[] = {program, option.data(), nullptr};
        int argc = 2;
        if (!Zarnoveld::Commands::chooseDatabase(argc, argv, &error)) {
            qWarning("%s", qPrintable(error));
            return;
        }
    }
    m_registered = Zarnoveld::Commands::registerComponent(&error);
    if (!m_registered)
        qWarning("registration failed: %s", qPrintable(error));
}

QString example(const QString &name)
{
    return QStringLiteral(VANDREL_SOURCE_DIR "/examples/") + name;
}

void clickNavigation(Zarnoveld::MainWindow *window, const QString &caption)
{
    auto *navigation = TestSupport::find<QListWidget>(window, QStringLiteral("lstSchermen"));
    if (!navigation)
        return;
    const auto items = navigation->findItems(caption, Qt::MatchExactly);
    if (items.isEmpty()) {
        QTest::qFail(qPrintable(QStringLiteral("no screen called %1").arg(caption)), __FILE__, __LINE__);
        return;
    }
    QTest::mouseClick(navigation->viewport(), Qt::LeftButton, Qt::NoModifier,
                      navigation->visualItemRect(items.first()).center());
}

QTreeWidgetItem *rowOf(QTreeWidget *list, const QString &uitvoerder, const QString &deelnemer)
{
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        QTreeWidgetItem *item = list->topLevelItem(i);
        if (item->text(1) == uitvoerder && item->text(3) == deelnemer)
            return item;
    }
    return nullptr;
}

void clickRow(QTreeWidget *list, QTreeWidgetItem *item)
{
    list->scrollToItem(item);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, list->visualItemRect(item).center());
}

QString selectedProvider(QTreeWidget *list)
{
    const auto rows = list->selectedItems();
    return rows.isEmpty() ? QString() : rows.first()->text(1);
}

int schemeCount(const VandrelApplication::ApplicationPtr &app, qint16 anvId)
{
    auto participant = app->Get_Dossier()->Get_Aanvrager(anvId);
    int n = 0;
    while (participant && participant->Get_Pensioen(qint16(n + 1)))
        ++n;
    return n;
}

QStringList providers(const VandrelApplication::ApplicationPtr &app, qint16 anvId)
{
    QStringList names;
    auto participant = app->Get_Dossier()->Get_Aanvrager(anvId);
    for (qint16 k = 1; participant && participant->Get_Pensioen(k); ++k)
        names << participant->Get_Pensioen(k)->Uitvoerder();
    return names;
}

QStringList clippedCaptions(QWidget *root)
{
    QStringList clipped;
    const auto widgets = root->findChildren<QWidget *>();
    for (QWidget *w : widgets) {
        if (!w->isVisibleTo(root) || (!qobject_cast<QLabel *>(w) && !qobject_cast<QAbstractButton *>(w)))
            continue;
        if (auto *label = qobject_cast<QLabel *>(w); label && (label->wordWrap() || label->text().isEmpty()))
            continue;
        if (w->sizeHint().width() > w->width())
            clipped << QStringLiteral("%1 (%2 < %3)").arg(w->objectName()).arg(w->width()).arg(w->sizeHint().width());
    }
    return clipped;
}

bool openShown(Zarnoveld::MainWindow &window, const QString &caseFile)
{
    QString error;
    if (!window.openCase(caseFile, &error)) {
        qWarning("%s", qPrintable(error));
        return false;
    }
    return TestSupport::showActive(&window);
}

QWidget *openOnPensions(Zarnoveld::MainWindow &window, const QString &caseFile)
{
    if (!openShown(window, caseFile))
        return nullptr;
    clickNavigation(&window, QStringLiteral("Pensioenen"));
    return window.pensionScreen()->control();
}

void saveScreenshot(QWidget *window, const QString &fileName)
{
    const QString folder = qEnvironmentVariable("VANDREL_SCREENSHOT_DIR");
    if (folder.isEmpty())
        return;
    QDir().mkpath(folder);
    window->grab().save(QDir(folder).filePath(fileName));
}

} // namespace E2e
