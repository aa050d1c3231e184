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
    static void append(const VandrelApplication::ErrorRecord &record);
    static void show(QWidget *parent, const VandrelApplication::ErrorRecord &record);
    // The record for a host error that reached the program itself, from where it happened.
    static VandrelApplication::ErrorRecord recordFor(const VandrelApplication::HostError &error,
                                                     const QString &procedure, const QString &subject);
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
