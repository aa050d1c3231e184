// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The case on paper: zarnoveld rapport CASE FILE.pdf, and the window's "Afdrukken..." and
// "Exporteren als PDF..." share what is here. The findings come from the program's own check
// (check.h), run on a copy so that the case printed is the case as stored.

#include "casereport.h"
#include "check.h"
#include "hostapplication.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace Zarnoveld::Rapport {

// What the pension screen would refuse or ask per scheme, then the check service's remarks.
QList<VandrelReport::Finding> findings(const Check::CaseResult &result);

// Called with (done, total, unit) while the check and the pages are under way.
using Progress = std::function<void(int done, int total, const QString &unit)>;

// Checks a copy of the case with checker and lays the report out. Throws HostError (Dutch) when
// the host cannot be read.
std::unique_ptr<VandrelReport::CaseReport> build(HostApplication &application, const QString &caseName,
                                                 Check::Checker &checker, const Progress &progress = {});

// Why the report may not be written to path, or empty: a symbolic link, a folder, a folder that
// does not exist, the case being reported (source), or (unless overwrite) an existing file.
QString refusal(const QString &path, bool overwrite, const QString &source = QString());
// True when path is an existing file that writing would replace.
bool wouldReplace(const QString &path);

// Writes the PDF safely: a temporary file beside the target, readable by the user only (0600),
// renamed over the target only when it is complete. False with a Dutch reason; then nothing at
// path has changed.
bool writePdf(const VandrelReport::CaseReport &report, const QString &path, bool overwrite, QString *error,
              const Progress &progress = {}, const QString &source = QString());

// The whole command: zarnoveld rapport CASE FILE.pdf [--overschrijven]; exit 0 written, 2 not.
int main(int argc, char **argv);

} // namespace Zarnoveld::Rapport
