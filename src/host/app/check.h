// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// zarnoveld check: loads every scheme of a case into the pension screen without a window on
// screen, runs the screen's full check on it and reports what would stop the user.

#include "hostapplication.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace Zarnoveld::Check {

// One message the pension screen showed while checking a scheme.
struct Message
{
    QString title;
    QString text;
    bool question = false;   // a Yes/No question; the check answers them all with Yes
    bool errorReport = false;   // the control's error report, not a check message
    QString procedure;          // for an error report: the procedure that failed
};

struct SchemeResult
{
    qint16 anvId = 0;
    QString naam;            // the participant's name
    qint16 penId = 0;        // the scheme's own number within its participant
    QString uitvoerder;      // the provider, may be empty
    bool passed = true;
    Message stop;            // what stops the user; only when !passed
    QList<Message> messages; // everything shown while checking, in order
};

struct CaseResult
{
    QString source;
    QString unreadable;      // Dutch reason when the case could not be read (then no schemes)
    QList<SchemeResult> schemes;
    QStringList hostFindings;   // what the suite's check service finds in the case as stored

    bool passed() const;
};

// Reads a case file or a JSON case into a case held only in memory: the check never writes to
// the file it reads. Throws HostError with a Dutch description.
std::shared_ptr<HostApplication> loadInMemory(const QString &path);

// Holds one pension screen control created through the component registry, as the program does,
// and checks cases with it. Needs a QApplication.
class Checker
{
public:
    Checker();
    ~Checker();
    Checker(const Checker &) = delete;
    Checker &operator=(const Checker &) = delete;

    // Registers the bundled library when needed; false with a Dutch reason.
    bool prepare(QString *error);

    // Called after every scheme with (schemes done, schemes in the case).
    using Progress = std::function<void(int done, int total)>;
    // The case is changed by the check (loading a scheme may fill derived values, a Yes may accept
    // a value): pass a case that is not written anywhere.
    CaseResult checkCase(const VandrelApplication::ApplicationPtr &application, const QString &source,
                         const Progress &progress = {});

private:
    class Private;
    std::unique_ptr<Private> d;
};

// A scheme's line as the report prints it ("... : in orde" or "... : FOUT [title] text").
QString schemeLine(const SchemeResult &scheme);

// What the report lists as a problem: each scheme that stops the user (with its participant and
// number), then the check service's remarks (anvId 0). The window's findings pane shows these.
struct Finding
{
    qint16 anvId = 0;
    qint16 penId = 0;
    QString text;
};
QList<Finding> findings(const CaseResult &result);

QString legend();
// "Aanvrager Jan, regeling 1 (ABP)": how the reports name a scheme.
QString schemeLabel(const SchemeResult &scheme);
QString textReport(const QList<CaseResult> &cases);
QJsonObject jsonReport(const QList<CaseResult> &cases);
// 0 all schemes pass, 1 a scheme fails, 2 a case could not be read.
int exitCode(const QList<CaseResult> &cases);

// A bar on stderr for a person watching a terminal; pipes and logs get only the report.
class ProgressBar
{
public:
    ProgressBar();
    ~ProgressBar();
    ProgressBar(const ProgressBar &) = delete;
    ProgressBar &operator=(const ProgressBar &) = delete;

    void update(const QString &source, int done, int total, const QString &unit = QStringLiteral("regelingen"));
    void finish();

private:
    bool m_enabled;
    bool m_drawn = false;
    QElapsedTimer m_clock;
    QElapsedTimer m_lastDraw;
};

// The whole command: zarnoveld check CASE... [--json]. Creates its own QApplication, always
// offscreen, so it runs the same with or without a display.
int main(int argc, char **argv);

} // namespace Zarnoveld::Check
