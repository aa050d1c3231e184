// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "errorrecord.h"
#include "hosterror.h"

#include <QApplication>
#include <QString>

class QWidget;

namespace Zarnoveld {

// Where the host's error reports go: a Dutch dialog for the user and a line in the log file, so
// that support can still read what happened after the dialog was closed.
class ErrorLog
{
public:
    // $XDG_STATE_HOME/zarnoveld/fouten.log (or ~/.local/state/...), overridable by ZARNOVELD_LOG.
    static QString path();
    // Appends the record without personal data (quoted names, dates and amounts are left out); the
    // file is kept owner-only (0600) in an owner-only folder and is written whole, never half.
    static void append(const VandrelApplication::ErrorRecord &record);
    // A message a headless run printed instead of showing it, logged in the same way.
    static void note(const QString &title, const QString &text);
    // For a run nobody watches (no display, a screenshot, a command-line command): from now on
    // every message box is printed on stderr (escaped) and logged instead of shown, and a
    // question gets the answer that changes nothing (No). Nothing ever waits for a click.
    static void answerHeadless();
    static void show(QWidget *parent, const VandrelApplication::ErrorRecord &record);
    // The record for a host error that reached the program itself, from where it happened.
    static VandrelApplication::ErrorRecord recordFor(const VandrelApplication::HostError &error,
                                                     const QString &procedure, const QString &subject);

private:
    static void appendLine(const QString &text);
};

// Gives the running application the program's names: settings and the log find their folders
// by them, and dialogs carry "Zarnoveld" in their title.
void nameApplication();

// The application object of a command that never shows a window (check, rapport): drawn
// offscreen, with the offscreen platform's chatter kept off the report (only critical messages
// reach stderr), named as the program.
class HeadlessApplication : public QApplication
{
public:
    HeadlessApplication(int &argc, char **argv);

private:
    static int &prepare(int &argc);
};

// The program's application object. The pension screen and its list have no error trap of their
// own, so a host error in them comes out of whatever event set them off; here it is logged and
// shown like every other error report, instead of ending the program with the user's work open.
class GuardedApplication : public QApplication
{
public:
    using QApplication::QApplication;
    bool notify(QObject *receiver, QEvent *event) override;
};

} // namespace Zarnoveld
