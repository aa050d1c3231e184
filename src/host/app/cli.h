// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The parts of the command line that need no window: the help, the version, and the figure-year
// command.

#include <QString>

namespace Zarnoveld::Cli {

// "zarnoveld <version>", the project's version.
QString versionText();
// Every command with one line each, in Dutch.
QString helpText();
// True when argv asks for the help or the version; the text is printed and *exitCode set.
bool handleHelpOrVersion(int argc, char **argv, int *exitCode);

// zarnoveld parameters CASE [--jaar JAAR]: shows the case's figure year and figures, or moves the
// case to the figures of JAAR and prints what changed. Exit 0 when done, 2 on any failure.
int parametersMain(int argc, char **argv);

} // namespace Zarnoveld::Cli
