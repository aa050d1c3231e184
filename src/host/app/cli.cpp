// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "cli.h"

#include "commands.h"
#include "errorlog.h"
#include "hostapplication.h"
#include "fiscalfigures.h"

#include <QCoreApplication>
#include <QDate>
#include <QFileInfo>
#include <QLocale>
#include <QStringList>
#include <QTextStream>

namespace Zarnoveld::Cli {

QString versionText()
{
    return QStringLiteral("zarnoveld %1").arg(QStringLiteral(ZARNOVELD_VERSION));
}

QString helpText()
{
    // One line per command; the usage column is wide enough for the longest usage.
    const QList<QPair<QString, QString>> commands = {
        {QStringLiteral("zarnoveld [DOSSIER | JSON]"), QStringLiteral("open een dossier in het venster")},
        {QStringLiteral("zarnoveld import JSON DOSSIER"), QStringLiteral("maak van een JSON-dossier een nieuw dossier")},
        {QStringLiteral("zarnoveld export DOSSIER JSON [--overschrijven]"), QStringLiteral("schrijf een dossier als JSON-bestand")},
        {QStringLiteral("zarnoveld register"), QStringLiteral("registreer het pensioenscherm")},
        {QStringLiteral("zarnoveld unregister"), QStringLiteral("haal die registratie weer weg")},
        {QStringLiteral("zarnoveld check DOSSIER... | --alle [--json]"), QStringLiteral("controleer elke regeling (0, 1 of 2)")},
        {QStringLiteral("zarnoveld dossiers"), QStringLiteral("toon de dossiers en wie ze open heeft")},
        {QStringLiteral("zarnoveld overzetten DOSSIERBESTAND..."), QStringLiteral("zet dossierbestanden in de database")},
        {QStringLiteral("zarnoveld pensioenoverzicht DOSSIER BESTAND [--proef]"),
         QStringLiteral("pensioenoverzicht inlezen (--deelnemer WIE)")},
        {QStringLiteral("zarnoveld rapport DOSSIER PDF [--overschrijven]"), QStringLiteral("het dossier op papier, als PDF")},
        {QStringLiteral("zarnoveld parameters DOSSIER [--jaar JAAR]"),
         QStringLiteral("toon of wijzig het fiscale jaar")},
        {QStringLiteral("zarnoveld --version"), QStringLiteral("toon de versie")},
        {QStringLiteral("zarnoveld --help"), QStringLiteral("toon deze hulp")},
    };
    const QList<QPair<QString, QString>> options = {
        {QStringLiteral("--scherm SCHERM"), QStringLiteral("begin op deelnemers of pensioenen")},
        {QStringLiteral("--screenshot BESTAND"), QStringLiteral("schermafdruk naar BESTAND, dan stoppen")},
        {QStringLiteral("--controle, --menu MENU"), QStringLiteral("bij --screenshot: paneel of menu open")},
    };
    const QList<QPair<QString, QString>> everywhere = {
        {QStringLiteral("--database URL"), QStringLiteral("dossiers in een PostgreSQL-database")},
    };
    qsizetype width = 0;
    for (const auto &[usage, what] : commands)
        width = std::max(width, usage.size());
    QString text;
    QTextStream out(&text);
    out << "Zarnoveld: adviesdossiers met het pensioenscherm.\n\nOpdrachten:\n";
    for (const auto &[usage, what] : commands)
        out << "  " << usage.leftJustified(width + 2) << what << '\n';
    out << "\nOpties bij het openen van een dossier:\n";
    for (const auto &[usage, what] : options)
        out << "  " << usage.leftJustified(width + 2) << what << '\n';
    out << "\nBij elke opdracht (of ZARNOVELD_DATABASE; wachtwoord via PGPASSWORD of ~/.pgpass):\n";
    for (const auto &[usage, what] : everywhere)
        out << "  " << usage.leftJustified(width + 2) << what << '\n';
    out << "\nUitkomst (afsluitcode): 0 gelukt of in orde, 1 fouten gevonden, 2 niet uitgevoerd.\n";
    return text;
}

bool handleHelpOrVersion(int argc, char **argv, int *exitCode)
{
    for (int i = 1; i < argc; ++i) {
        const QByteArray arg(argv[i]);
        if (arg == "--help" || arg == "-h" || arg == "-?" || arg == "--version" || arg == "-v") {
            QTextStream(stdout) << ((arg == "--version" || arg == "-v") ? versionText() + QLatin1Char('\n') : helpText());
            *exitCode = 0;
            return true;
        }
    }
    return false;
}

namespace {

int fail(const QString &message)
{
    QTextStream(stderr) << "zarnoveld: " << message << Qt::endl;
    return 2;
}

QString knownYears()
{
    QStringList known;
    for (int y : FiscalFigures::years())
        known << QString::number(y);
    return known.join(QStringLiteral(", "));
}

} // namespace

int parametersMain(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    nameApplication();
    const QString usage = QStringLiteral("gebruik: zarnoveld parameters DOSSIER [--jaar JAAR]");

    QStringList args = QCoreApplication::arguments().mid(2);
    QString path;
    QString yearText;
    bool yearGiven = false;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString &a = args.at(i);
        if (a == QStringLiteral("--jaar")) {
            if (i + 1 >= args.size())
                return fail(QStringLiteral("--jaar verwacht een jaartal, bijvoorbeeld %1.").arg(knownYears().right(4)));
            yearGiven = true;
            yearText = args.at(++i);
        } else if (a.startsWith(QStringLiteral("--jaar="))) {
            yearGiven = true;
            yearText = a.mid(7);
        } else if (a.startsWith(QLatin1Char('-'))) {
            return fail(QStringLiteral("onbekende optie %1; %2").arg(a, usage));
        } else if (path.isEmpty()) {
            path = a;
        } else {
            return fail(usage);
        }
    }
    if (path.isEmpty())
        return fail(usage);
    bool ok = false;
    const int year = yearText.toInt(&ok);
    if (yearGiven && !ok)
        return fail(QStringLiteral("\"%1\" is geen jaartal; bekende jaren: %2.").arg(yearText, knownYears()));
    // A JSON document is an exchange file, not a case: changing the case file made from it behind
    // the adviser's back would surprise, so the command asks for the case file itself.
    if (Commands::database().isEmpty() && path.endsWith(QStringLiteral(".json"), Qt::CaseInsensitive))
        return fail(QStringLiteral("%1 is een JSON-bestand; geef een dossierbestand (*%2), bijvoorbeeld gemaakt met "
                                   "zarnoveld import.")
                        .arg(path, Commands::caseSuffix()));

    QTextStream out(stdout);
    try {
        auto application = HostApplication::openFile(Commands::caseAddress(path));
        const QString name = application->caseName();
        if (!yearGiven) {
            const int current = application->figureYear();
            out << QStringLiteral("Dossier %1 rekent met de fiscale cijfers van %2.").arg(name).arg(current) << '\n';
            const auto params = application->Get_Parameters();
            const QLocale dutch(QLocale::Dutch, QLocale::Netherlands);
            const QList<QPair<QString, double>> rows = {
                {QStringLiteral("DefaultOpbouwEindloon"), params->DefaultOpbouwEindloon()},
                {QStringLiteral("DefaultOpbouwMiddelloon"), params->DefaultOpbouwMiddelloon()},
                {QStringLiteral("FranchiseEindloonA"), params->FranchiseEindloonA()},
                {QStringLiteral("FranchiseEindloonB"), params->FranchiseEindloonB()},
                {QStringLiteral("FranchiseA"), params->FranchiseA()},
                {QStringLiteral("FranchiseB"), params->FranchiseB()},
                {QStringLiteral("MaxAnwCompensation"), params->MaxAnwCompensation()},
            };
            for (const auto &[label, value] : rows)
                out << "  " << label.leftJustified(24) << dutch.toString(value, 'f', label.startsWith(QLatin1String("Default")) ? 3 : 2)
                    << '\n';
            out << QStringLiteral("Bekende jaren: %1; een nieuw dossier krijgt nu %2.")
                       .arg(knownYears())
                       .arg(FiscalFigures::yearFor(QDate::currentDate()))
                << '\n';
            return 0;
        }
        const HostApplication::FigureYearMove move = application->moveToFigureYear(year);
        if (!move.changed()) {
            out << QStringLiteral("Dossier %1 rekent al met de fiscale cijfers van %2; er is niets gewijzigd.").arg(name).arg(year)
                << '\n';
            return 0;
        }
        if (move.from == move.to)
            out << QStringLiteral("Dossier %1: de fiscale cijfers van %2 zijn opnieuw gezet zoals dit programma ze kent.")
                       .arg(name)
                       .arg(move.to)
                << '\n';
        else
            out << QStringLiteral("Dossier %1: fiscale cijfers van %2 naar %3.").arg(name).arg(move.from).arg(move.to) << '\n';
        if (!move.figures.isEmpty()) {
            out << "Gewijzigde cijfers:\n";
            for (const QString &line : move.figures)
                out << "  " << line << '\n';
        }
        if (move.schemes.isEmpty()) {
            out << "Geen regeling met een berekende franchise is gewijzigd.\n";
        } else {
            out << "Regelingen met een berekende franchise:\n";
            for (const QString &line : move.schemes)
                out << "  " << line << '\n';
        }
        return 0;
    } catch (const VandrelApplication::HostError &e) {
        return fail(e.description());
    }
}

} // namespace Zarnoveld::Cli
