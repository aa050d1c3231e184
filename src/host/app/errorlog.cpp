// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "errorlog.h"

#include "messagebox.h"
#include "safefile.h"
#include "terminal.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>

namespace Zarnoveld {

namespace {

void quietHandler(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        QTextStream(stderr) << message << Qt::endl;
}

} // namespace

void nameApplication()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Vandrel"));
    QCoreApplication::setApplicationName(QStringLiteral("zarnoveld"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Zarnoveld"));
}

int &HeadlessApplication::prepare(int &argc)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quietHandler);
    return argc;
}

HeadlessApplication::HeadlessApplication(int &argc, char **argv)
    : QApplication(prepare(argc), argv)
{
    nameApplication();
}

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

namespace {

// The log is read by support, who need to know what went wrong and where, never whose case it
// was: quoted text (names, providers as the user typed them), dates and amounts are left out.
QString withoutPersonalData(QString text)
{
    static const QRegularExpression quoted(QStringLiteral("\"[^\"]*\"|'[^']*'|\u201C[^\u201D]*\u201D"));
    static const QRegularExpression date(QStringLiteral("\\b\\d{1,4}[-/.]\\d{1,2}[-/.]\\d{1,4}\\b"));
    static const QRegularExpression amount(QStringLiteral("\\b\\d[\\d.,]{3,}\\b"));
    text.replace(quoted, QStringLiteral("\"...\""));
    text.replace(date, QStringLiteral("[datum]"));
    text.replace(amount, QStringLiteral("[getal]"));
    return text;
}

// The log keeps its last lines only: it must never fill a disk, however long a program runs.
constexpr qint64 kLogLimit = 256 * 1024;

} // namespace

void ErrorLog::append(const VandrelApplication::ErrorRecord &record)
{
    VandrelApplication::ErrorRecord kept = record;
    kept.Subject = withoutPersonalData(kept.Subject);
    kept.Message = withoutPersonalData(kept.Message);
    kept.Description = withoutPersonalData(kept.Description);
    appendLine(kept.toText());
}

void ErrorLog::note(const QString &title, const QString &text)
{
    appendLine(withoutPersonalData(title) + QStringLiteral(": ") + withoutPersonalData(text));
}

void ErrorLog::answerHeadless()
{
    VandrelControl::MessageBox::setResponder([](const VandrelControl::MessageBox::Request &request) {
        QTextStream err(stderr);
        err << "zarnoveld: " << Terminal::escaped(request.title) << ": " << Terminal::escaped(request.text) << Qt::endl;
        note(request.title, request.text);
        return request.buttons == VandrelControl::MessageBox::Buttons::YesNo ? VandrelControl::MessageBox::Answer::No
                                                                            : VandrelControl::MessageBox::Answer::Ok;
    });
}

void ErrorLog::appendLine(const QString &text)
{
    const QString file = path();
    if (!SafeFile::makePrivateDir(QFileInfo(file).absolutePath()))
        return;
    QByteArray content;
    {
        QFile old(file);
        if (!QFileInfo(file).isSymLink() && old.open(QIODevice::ReadOnly))
            content = old.readAll();
    }
    content += (QDateTime::currentDateTime().toString(Qt::ISODate) + QLatin1Char(' ')
                + QString(text).replace(QLatin1Char('\n'), QStringLiteral(" | ")) + QLatin1Char('\n'))
                   .toUtf8();
    if (content.size() > kLogLimit) {
        const qsizetype cut = content.indexOf('\n', content.size() - kLogLimit);
        content = content.mid(cut < 0 ? content.size() - kLogLimit : cut + 1);
    }
    try {
        // Written whole and renamed, owner only: a full disk leaves the old log, never half a line.
        SafeFile::write(file, content, SafeFile::Existing::Replace, 0600);
    } catch (const VandrelApplication::HostError &) {
        // The log is where failures go; a log that cannot be written has nowhere to report to.
    }
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
