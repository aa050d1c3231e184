#include "errorlog.h"

#include "messagebox.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace Zarnoveld {

QString ErrorLog::path()
{
    const QString overridden = qEnvironmentVariable("ZARNOVELD_LOG");
    if (!overridden.isEmpty())
        return overridden;
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (state.isEmpty())
        state = QDir::homePath() + QStringLiteral("/.local/state");
    return state + QStringLiteral("/zarnoveld/fouten.log");
}

void ErrorLog::append(const VandrelApplication::ErrorRecord &record)
{
    QFile file(path());
    QDir().mkpath(QFileInfo(file).absolutePath());
    if (!file.open(QIODevice::Append | QIODevice::Text))
        return;
    QTextStream out(&file);
    out << QDateTime::currentDateTime().toString(Qt::ISODate) << ' '
        << record.toText().replace(QLatin1Char('\n'), QStringLiteral(" | ")) << '\n';
}

void ErrorLog::show(QWidget *parent, const VandrelApplication::ErrorRecord &record)
{
    VandrelControl::MessageBox::ok(parent, record.toText(), QStringLiteral("Zarnoveld - foutmelding"),
                                   VandrelControl::MessageBox::Icon::Critical);
}

} // namespace Zarnoveld
