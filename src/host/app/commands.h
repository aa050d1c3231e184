#pragma once

#include "hostapplication.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace Zarnoveld::Commands {

// The extension of a case file.
QString caseSuffix();

// Where a JSON example becomes a case file the first time it is opened.
QString caseFileFor(const QString &jsonPath);

// A case file is opened; a JSON document is imported into caseFileFor() the first time and that
// case file is opened afterwards, so edits made in it are kept. Throws HostError (Dutch).
std::shared_ptr<HostApplication> openOrImport(const QString &path);
std::shared_ptr<HostApplication> importCase(const QString &jsonPath, const QString &casePath);
void exportCase(HostApplication &application, const QString &jsonPath);

// The library the program ships with, and its registration; Dutch reason in error on failure.
QString bundledLibrary();
bool registerComponent(QString *error);
bool unregisterComponent(QString *error);
// Registers the bundled library when the pension screen is not registered yet.
bool ensureRegistered(QString *error);

} // namespace Zarnoveld::Commands
