// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Running a program as a user runs it from a terminal: what it printed and how it ended.

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace TestSupport {

struct ProgramRun
{
    int exitCode = -1;   // -1: it crashed, or did not end within two minutes and was killed
    QString out;
    QString err;
};

// Waits for a started process.
ProgramRun finishProgram(QProcess &process);
// Starts program with arguments (in env) and waits for it.
ProgramRun runProgram(const QString &program, const QStringList &arguments,
                      const QProcessEnvironment &env = QProcessEnvironment::systemEnvironment());

} // namespace TestSupport
