// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "rapport.h"

#include "errorlog.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

#include <sys/stat.h>

using VandrelApplication::HostError;
using VandrelReport::Finding;

namespace Zarnoveld::Rapport {

QList<Finding> findings(const Check::CaseResult &result)
{
    QList<Finding> list;
    if (!result.unreadable.isEmpty())
        list.append({Finding::Kind::Refusal, QString(), result.unreadable});
    for (const Check::SchemeResult &scheme : result.schemes) {
        const QString subject = Check::schemeLabel(scheme);
        if (!scheme.passed) {
            const QString text = scheme.stop.title.isEmpty() || scheme.stop.errorReport
                                     ? scheme.stop.text
                                     : QStringLiteral("%1: %2").arg(scheme.stop.title, scheme.stop.text);
            list.append({Finding::Kind::Refusal, subject, text});
        }
        for (const Check::Message &m : scheme.messages)
            if (m.question)
                list.append({Finding::Kind::Question, subject, m.text});
    }
    for (const QString &remark : result.hostFindings)
        list.append({Finding::Kind::Remark, QStringLiteral("Controledienst"), remark});
    return list;
}

std::unique_ptr<VandrelReport::CaseReport> build(HostApplication &application, const QString &caseName,
                                                 Check::Checker &checker, const Progress &progress)
{
    // The check may fill derived values and answers every question with Yes: it gets a copy, and
    // the report shows the case as the user left it.
    const std::shared_ptr<HostApplication> copy = HostApplication::importJson(application.exportJson());
    const Check::CaseResult result = checker.checkCase(copy, caseName, [&](int done, int total) {
        if (progress)
            progress(done, total, QStringLiteral("regelingen"));
    });
    VandrelReport::Options options;
    options.caseName = caseName;
    options.findings = Rapport::findings(result);
    // The report reads the case through its interfaces only; hand it a pointer that does not own it.
    const VandrelApplication::ApplicationPtr view(&application, [](VandrelApplication::Application *) {});
    return std::make_unique<VandrelReport::CaseReport>(view, options);
}

bool wouldReplace(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isSymLink() && info.isFile();
}

QString refusal(const QString &path, bool overwrite, const QString &source)
{
    const QFileInfo info(path);
    // "--overschrijven" or a hasty Ja must not turn the case itself into its own report.
    if (!source.isEmpty() && info.exists() && info.canonicalFilePath() == QFileInfo(source).canonicalFilePath())
        return QStringLiteral("%1 is het dossier zelf; kies een ander bestand voor het rapport.").arg(path);
    // A link could point anywhere, a file of someone else's included: never written through.
    if (info.isSymLink())
        return QStringLiteral("%1 is een symbolische koppeling; het rapport wordt daar niet geschreven.").arg(path);
    if (info.exists() && !info.isFile())
        return QStringLiteral("%1 is geen gewoon bestand; het rapport wordt daar niet geschreven.").arg(path);
    if (!info.absoluteDir().exists())
        return QStringLiteral("De map %1 bestaat niet.").arg(info.absolutePath());
    if (info.exists() && !overwrite)
        return QStringLiteral("Het bestand %1 bestaat al.").arg(path);
    return QString();
}

bool writePdf(const VandrelReport::CaseReport &report, const QString &path, bool overwrite, QString *error,
              const Progress &progress, const QString &source)
{
    const auto fail = [error](const QString &reason) {
        if (error)
            *error = reason;
        return false;
    };
    if (const QString reason = refusal(path, overwrite, source); !reason.isEmpty())
        return fail(reason);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(QStringLiteral("%1 kan niet worden geschreven: %2").arg(path, file.errorString()));
    // The temporary file is private before the first byte lands in it; the rename keeps that.
    if (::fchmod(file.handle(), S_IRUSR | S_IWUSR) != 0) {
        file.cancelWriting();
        return fail(QStringLiteral("%1 kan niet alleen voor u leesbaar worden gemaakt.").arg(path));
    }
    QString reason;
    const bool drawn = report.writePdf(&file, &reason, [&](int done, int total) {
        if (progress)
            progress(done, total, QStringLiteral("pagina's"));
    });
    if (!drawn || file.error() != QFileDevice::NoError) {
        file.cancelWriting();
        return fail(QStringLiteral("%1 kan niet worden geschreven: %2")
                        .arg(path, drawn ? file.errorString() : reason));
    }
    if (!file.commit())
        return fail(QStringLiteral("%1 kan niet worden geschreven: %2").arg(path, file.errorString()));
    return true;
}

int main(int argc, char **argv)
{
    HeadlessApplication app(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Schrijft het pensioenoverzicht van een dossier als PDF, met de bevindingen van de controle."));
    parser.addHelpOption();
    QCommandLineOption overwrite(QStringLiteral("overschrijven"), QStringLiteral("Vervang een bestaand PDF-bestand."));
    parser.addOption(overwrite);
    parser.addPositionalArgument(QStringLiteral("rapport"), QStringLiteral("De opdracht."));
    parser.addPositionalArgument(QStringLiteral("DOSSIER"), QStringLiteral("Een dossierbestand of JSON-dossier."));
    parser.addPositionalArgument(QStringLiteral("BESTAND.pdf"), QStringLiteral("Het PDF-bestand dat wordt geschreven."));
    parser.process(app);
    const QStringList args = parser.positionalArguments();
    QTextStream err(stderr);
    const auto fail = [&err](const QString &message) {
        err << "zarnoveld: " << message << Qt::endl;
        return 2;
    };
    if (args.size() != 3)
        return fail(QStringLiteral("gebruik: zarnoveld rapport DOSSIER BESTAND.pdf [--overschrijven]"));
    const QString source = args[1];
    const QString target = args[2];

    // Before any work: a target that will be refused is refused at once.
    if (QString reason = refusal(target, parser.isSet(overwrite), source); !reason.isEmpty()) {
        if (wouldReplace(target) && !parser.isSet(overwrite) && reason.endsWith(QStringLiteral("bestaat al.")))
            reason += QStringLiteral(" Gebruik --overschrijven om het te vervangen.");
        return fail(reason);
    }

    Check::Checker checker;
    QString error;
    if (!checker.prepare(&error))
        return fail(error);

    Check::ProgressBar bar;
    const Progress progress = [&](int done, int total, const QString &unit) { bar.update(source, done, total, unit); };
    std::unique_ptr<VandrelReport::CaseReport> report;
    try {
        const std::shared_ptr<HostApplication> application = Check::loadInMemory(source);
        report = build(*application, QFileInfo(source).completeBaseName(), checker, progress);
    } catch (const HostError &e) {
        return fail(e.description());
    }
    const bool written = writePdf(*report, target, parser.isSet(overwrite), &error, progress, source);
    bar.finish();
    if (!written)
        return fail(error);
    QTextStream(stdout) << "Rapport geschreven: " << QFileInfo(target).absoluteFilePath() << " ("
                        << report->pageCount() << (report->pageCount() == 1 ? " pagina" : " pagina's") << ")"
                        << Qt::endl;
    return 0;
}

} // namespace Zarnoveld::Rapport
