// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "programrun.h"

namespace TestSupport {

ProgramRun finishProgram(QProcess &process)
{
    ProgramRun run;
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        run.err = QStringLiteral("did not end within two minutes");
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

ProgramRun runProgram(const QString &program, const QStringList &arguments, const QProcessEnvironment &env)
{
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(program, arguments);
    return finishProgram(process);
}

} // namespace TestSupport
