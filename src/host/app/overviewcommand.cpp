// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "overviewcommand.h"

#include "commands.h"
#include "errorlog.h"
#include "importplan.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

namespace Zarnoveld::OverviewCommand {

namespace Overzicht = VandrelPensioen::Overzicht;

int main(int argc, char **argv)
{
    // Nothing here shows a window or waits for an answer: a core application is enough.
    QCoreApplication app(argc, argv);
    nameApplication();
    QTextStream out(stdout);
    QTextStream err(stderr);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Leest het pensioenoverzicht van het pensioenregister in een dossier in."));
    parser.addHelpOption();
    QCommandLineOption deelnemer(QStringLiteral("deelnemer"), QStringLiteral("Van wie het overzicht is: aanvrager of partner."),
                                 QStringLiteral("DEELNEMER"));
    QCommandLineOption proef(QStringLiteral("proef"), QStringLiteral("Toon alleen wat er zou veranderen; schrijf niets."));
    parser.addOption(deelnemer);
    parser.addOption(proef);
    parser.addPositionalArgument(QStringLiteral("pensioenoverzicht"), QStringLiteral("De opdracht."));
    parser.addPositionalArgument(QStringLiteral("DOSSIER"), QStringLiteral("Het dossierbestand (of een JSON-dossier)."));
    parser.addPositionalArgument(QStringLiteral("BESTAND"), QStringLiteral("Het pensioenoverzicht (.json of .xml)."));
    if (!parser.parse(QCoreApplication::arguments())) {
        err << "zarnoveld: " << parser.errorText() << Qt::endl;
        return 2;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        out << parser.helpText();
        return 0;
    }
    const QStringList args = parser.positionalArguments();
    const QString wie = parser.value(deelnemer).toLower();
    if (args.size() != 3 || (wie != QLatin1String("aanvrager") && wie != QLatin1String("partner"))) {
        err << "zarnoveld: gebruik: zarnoveld pensioenoverzicht DOSSIER BESTAND --deelnemer aanvrager|partner [--proef]"
            << Qt::endl;
        return 2;
    }

    const Overzicht::ReadResult read = Overzicht::readOverviewFile(args[2]);
    if (!read.ok()) {
        err << "zarnoveld: " << read.error << Qt::endl;
        return 2;
    }
    std::shared_ptr<HostApplication> application;
    try {
        application = Commands::openOrImport(args[1]);
    } catch (const VandrelApplication::HostError &e) {
        err << "zarnoveld: " << e.description() << Qt::endl;
        return 2;
    }

    try {
        const Overzicht::ImportPlan plan = Overzicht::planImport(*read.overview, *application,
                                                                 wie == QLatin1String("partner") ? 2 : 1,
                                                                 QDate::currentDate());
        out << Overzicht::previewText(plan);
        if (!plan.refusal.isEmpty())
            return 1;
        if (parser.isSet(proef)) {
            out << "\nProef: er is niets gewijzigd." << Qt::endl;
            return 0;
        }
        Overzicht::applyPlan(plan, *application);
        out << QStringLiteral("\nIngelezen: %1 nieuw, %2 bijgewerkt, %3 ongewijzigd.")
                   .arg(plan.count(Overzicht::PlanStatus::New))
                   .arg(plan.count(Overzicht::PlanStatus::Updated))
                   .arg(plan.count(Overzicht::PlanStatus::Unchanged))
            << Qt::endl;
        return 0;
    } catch (const VandrelApplication::HostError &e) {
        err << "zarnoveld: het overzicht is niet ingelezen; het dossier is niet gewijzigd. " << e.description() << Qt::endl;
        return 1;
    }
}

} // namespace Zarnoveld::OverviewCommand
