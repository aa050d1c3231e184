// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostapplication.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace Zarnoveld::Commands {

// The extension of a case file.
QString caseSuffix();

// The folder that holds the case files of JSON documents opened directly.
QString caseFolder();

// Where a JSON document becomes a case file the first time it is opened: its base name, then a
// hash of its full canonical path and a hash of its content. Another file of the same name, or
// the same file with other content, never reaches the case of the first. Throws HostError when
// the file cannot be read.
QString caseFileFor(const QString &jsonPath);

// The case a JSON document opened directly becomes: caseFileFor(), or with a database the case
// of that file's base name there.
QString caseFor(const QString &jsonPath);

// Reads a JSON case document; a file that cannot be read, is no JSON or is no object throws
// HostError naming path and the problem (position of a syntax error).
QJsonObject readJsonCase(const QString &path);

// A case file is opened; a JSON document is imported into caseFileFor() the first time and that
// case file is opened afterwards, so edits made in it are kept (with a database: into the case of
// that file's base name there). Throws HostError (Dutch).
std::shared_ptr<HostApplication> openOrImport(const QString &path);
std::shared_ptr<HostApplication> importCase(const QString &jsonPath, const QString &casePath);
// Writes the case as JSON through SafeFile; an existing target is replaced only when overwrite.
void exportCase(HostApplication &application, const QString &jsonPath, bool overwrite = false);

// What a user should know about a case that can be stored but not be worked out: a participant
// without a name or a birth date. Empty when there is nothing to say.
QStringList caseWarnings(HostApplication &application);

// The office's database, when one is chosen: `--database URL` (taken out of argv here, on every
// command), else ZARNOVELD_DATABASE, else the setting "database"; empty means case files on this
// PC. Returns false with a Dutch reason for an address that cannot be used (a password in it).
bool chooseDatabase(int &argc, char **argv, QString *error);
QString database();
// What the adviser typed as a case, as the address the model opens: with a database, the name of
// a case in it; without, the path itself. An address that already names a server case stays.
QString caseAddress(const QString &typed);
// Every case, one line each with who has it open: the database's catalogue, or the case files
// in caseFolder(). Throws HostError (Dutch) when the server cannot be reached.
QStringList caseListing();
// The names (database) or paths (files) of every case, for `check --alle`.
QStringList allCases();

// The library the program ships with, and its registration; Dutch reason in error on failure.
QString bundledLibrary();
bool registerComponent(QString *error);
bool unregisterComponent(QString *error);
// Registers the bundled library when the pension screen is not registered yet.
bool ensureRegistered(QString *error);

} // namespace Zarnoveld::Commands
