// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// A sandbox for driving the zarnoveld program's own window: every folder the program touches
// (cases, component registry, settings, error log) lives in one temporary directory, and the
// pension screen is registered from the library this build made.

#include "hostapplication.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

class QListWidget;
class QTreeWidget;
class QTreeWidgetItem;
class QWidget;

namespace Zarnoveld {
class MainWindow;
}

namespace E2e {

class Sandbox
{
public:
    Sandbox();
    bool isValid() const { return m_dir.isValid() && m_registered; }
    QString path(const QString &relative) const { return m_dir.filePath(relative); }
    QString logFile() const { return path(QStringLiteral("state/fouten.log")); }

private:
    QTemporaryDir m_dir;
    bool m_registered = false;
};

// Opens a case in the window and shows the window active, as the program does at its start;
// false, with the reason printed, when either fails.
bool openShown(Zarnoveld::MainWindow &window, const QString &caseFile);
// openShown, then the pension screen by its navigation entry: the screen's control, or nullptr.
QWidget *openOnPensions(Zarnoveld::MainWindow &window, const QString &caseFile);

// A bundled example case by file name (examples/NAME).
QString example(const QString &name);

// Clicks the entry of the navigation list ("Deelnemers" or "Pensioenen") as a user does.
void clickNavigation(Zarnoveld::MainWindow *window, const QString &caption);

// The list row whose provider and participant columns read these texts; nullptr when none.
QTreeWidgetItem *rowOf(QTreeWidget *list, const QString &uitvoerder, const QString &deelnemer);
void clickRow(QTreeWidget *list, QTreeWidgetItem *item);
QString selectedProvider(QTreeWidget *list);

// Scheme count of a participant, read straight from the case.
int schemeCount(const VandrelApplication::ApplicationPtr &app, qint16 anvId);
// The provider names of a participant's schemes in their order.
QStringList providers(const VandrelApplication::ApplicationPtr &app, qint16 anvId);

// Visible captions (labels, tick boxes, option and push buttons) narrower than their text needs.
QStringList clippedCaptions(QWidget *root);
// Saves a picture of the window when VANDREL_SCREENSHOT_DIR names a folder (docs are made so).
void saveScreenshot(QWidget *window, const QString &fileName);

} // namespace E2e
