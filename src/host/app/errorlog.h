#pragma once

#include "errorrecord.h"

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
};

} // namespace Zarnoveld
