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

VandrelApplication::ErrorRecord ErrorLog::recordFor(const VandrelApplication::HostError &error,
                                                   const QString &procedure, const QString &subject)
{
    VandrelApplication::ErrorRecord record;
    record.Procedure = procedure;
    record.Title = QStringLiteral("Zarnoveld");
    record.Component = QStringLiteral("zarnoveld");
    record.Product = QStringLiteral("Zarnoveld");
    record.Subject = subject;
    record.Message = QStringLiteral("Er is een fout opgetreden.");
    record.Number = QString::number(error.number());
    record.Description = error.description();
    record.Source = error.source();
    return record;
}

bool GuardedApplication::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const VandrelApplication::HostError &error) {
        const VandrelApplication::ErrorRecord record =
            ErrorLog::recordFor(error, receiver ? receiver->objectName() : QString(), QStringLiteral("Pensioenscherm"));
        ErrorLog::append(record);
        ErrorLog::show(activeWindow(), record);
        return false;
    }
}

} // namespace Zarnoveld
