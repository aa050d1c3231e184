// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// zarnoveld: the reference host of the pension screen.
//
//   zarnoveld [CASE] [--scherm deelnemers|pensioenen] [--screenshot FILE]
//   zarnoveld import JSON CASE        a JSON case becomes a new case file
//   zarnoveld export CASE JSON [--overschrijven]
//   zarnoveld register | unregister   the pension screen in the per-user component registry
//   zarnoveld check CASE... [--json]  checks every scheme as the pension screen would, headless
//   zarnoveld pensioenoverzicht CASE FILE --deelnemer aanvrager|partner [--proef]
//   zarnoveld parameters CASE [--jaar JAAR]   shows the case's figure year, or moves it to JAAR
//   zarnoveld --version | --help
//   zarnoveld rapport CASE FILE.pdf [--overschrijven]  the case on paper, with the check's findings
//   zarnoveld dossiers                the cases, with who has each one open
//   zarnoveld overzetten CASE_FILE... case files into the office's database, all or nothing each
//   --database URL (any command)      cases in a PostgreSQL database, addressed by name

#include "check.h"
#include "cli.h"
#include "commands.h"
#include "errorlog.h"
#include "mainwindow.h"
#include "overviewcommand.h"
#include "pensionscreen.h"
#include "safefile.h"
#include "terminal.h"
#include "translations.h"
#include "rapport.h"

#include <QApplication>
#include <QBuffer>
#include <QCommandLineParser>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QPixmap>
#include <QScrollArea>
#include <QScreen>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <csignal>
#include <sys/stat.h>

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream &err()
{
    static QTextStream stream(stderr);
    return stream;
}

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

int fail(const QString &message)
{
    err() << "zarnoveld: " << Zarnoveld::Terminal::escaped(message) << Qt::endl;
    return 2;
}


// A picture shows the whole pension screen: the window grows, within the screen, by what its
// scroll area would otherwise hide. A window the user sized stays as it is.
void fitPensionScreen(Zarnoveld::MainWindow &window)
{
    auto *scroll = window.pensionScreen()->findChild<QScrollArea *>(QStringLiteral("scrPensioenen"));
    QWidget *control = window.pensionScreen()->control();
    if (!scroll || !control)
        return;
    QApplication::processEvents();
    const QSize hidden = (control->size() - scroll->viewport()->size()).expandedTo(QSize(0, 0));
    QSize wanted = window.size() + hidden;
    if (QScreen *screen = window.screen())
        wanted = wanted.boundedTo(screen->availableGeometry().size() - (window.frameGeometry().size() - window.size()));
    window.resize(wanted.expandedTo(window.size()));
}

bool writeScreenshot(QWidget *window, const QString &path)
{
    // Give the window manager a moment to map and paint the window before it is captured.
    QElapsedTimer settle;
    settle.start();
    while (settle.elapsed() < 300)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    QPixmap picture;
    // Under a real X server the screen holds what the user sees; offscreen only the widget can paint.
    if (QGuiApplication::platformName() != QStringLiteral("offscreen") && window->screen())
        picture = window->screen()->grabWindow(0, window->x(), window->y(), window->frameGeometry().width(),
                                               window->frameGeometry().height());
    if (picture.isNull())
        picture = window->grab();
    // A picture of a case is personal data too: written whole, owner only, never through a link.
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!picture.save(&buffer, "PNG"))
        return false;
    try {
        Zarnoveld::SafeFile::write(path, png, Zarnoveld::SafeFile::Existing::Replace);
    } catch (const VandrelApplication::HostError &e) {
        err() << "zarnoveld: " << Zarnoveld::Terminal::escaped(e.description()) << Qt::endl;
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    // Everything this program makes holds personal data or lies next to it: owner only.
    ::umask(077);
    // A file-size limit must make a write fail (and the program say so), not end the program
    // with the old file's replacement half written.
    std::signal(SIGXFSZ, SIG_IGN);
    // Every command works on the chosen store: the option is read (and taken out) first.
    if (QString error; !Zarnoveld::Commands::chooseDatabase(argc, argv, &error)) {
        err() << "zarnoveld: " << Zarnoveld::Terminal::escaped(error) << Qt::endl;
        return 2;
    }
    // The help and the version need no application object and no display.
    if (int exitCode = 0; Zarnoveld::Cli::handleHelpOrVersion(argc, argv, &exitCode))
        return exitCode;
    // Always headless, with its own application object: decided before one is made here.
    if (argc > 1 && qstrcmp(argv[1], "check") == 0)
        return Zarnoveld::Check::main(argc, argv);
    if (argc > 1 && qstrcmp(argv[1], "pensioenoverzicht") == 0)
        return Zarnoveld::OverviewCommand::main(argc, argv);
    if (argc > 1 && qstrcmp(argv[1], "parameters") == 0)
        return Zarnoveld::Cli::parametersMain(argc, argv);
    if (argc > 1 && qstrcmp(argv[1], "rapport") == 0)
        return Zarnoveld::Rapport::main(argc, argv);
    const bool display = hasDisplay();
    // Without a display the picture is drawn as on a 1920x1080 monitor: the window keeps within
    // its screen, and the offscreen platform's own screen is only 800x600.
    QTemporaryDir screenConfig;
    if (!display) {
        QFile config(screenConfig.filePath(QStringLiteral("scherm.json")));
        if (screenConfig.isValid() && config.open(QIODevice::WriteOnly)) {
            config.write(R"({"screens": [{"name": "scherm", "x": 0, "y": 0, "width": 1920, "height": 1080,
                                          "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
            config.close();
            qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + config.fileName().toLocal8Bit());
        } else {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
    }

    Zarnoveld::GuardedApplication app(argc, argv);
    Zarnoveld::nameApplication();

    // Dutch whatever the user's locale: Qt's own texts (file dialogs, context menus, the help's
    // headings) come from its Dutch catalogue, numbers and dates from the Dutch locale.
    Zarnoveld::installDutchTranslations(&app);
    QLocale::setDefault(QLocale(QLocale::Dutch, QLocale::Netherlands));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Zarnoveld: adviesdossiers met het pensioenscherm."));
    // Qt's own help option describes itself in English; this one says the same in Dutch.
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Toon deze hulp en stop."));
    parser.addOption(help);
    QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                  QStringLiteral("Schrijf een schermafdruk naar BESTAND en stop."),
                                  QStringLiteral("BESTAND"));
    QCommandLineOption screen(QStringLiteral("scherm"), QStringLiteral("Begin op dit scherm: deelnemers of pensioenen."),
                              QStringLiteral("SCHERM"), QStringLiteral("pensioenen"));
    QCommandLineOption overwrite(QStringLiteral("overschrijven"),
                                 QStringLiteral("Bij export: vervang een bestaand JSON-bestand."));
    parser.addOption(screenshot);
    parser.addOption(screen);
    parser.addOption(overwrite);
    QCommandLineOption findingsPane(QStringLiteral("controle"), QStringLiteral("Toon het paneel Controle (bij --screenshot)."));
    QCommandLineOption openMenu(QStringLiteral("menu"), QStringLiteral("Open dit menu, bijvoorbeeld Bestand (bij --screenshot)."),
                                QStringLiteral("MENU"));
    parser.addOption(findingsPane);
    parser.addOption(openMenu);
    parser.addPositionalArgument(QStringLiteral("opdracht"), QStringLiteral("Een dossier, of import/export/register/unregister."));
    parser.process(app);
    if (parser.isSet(help)) {
        out() << parser.helpText();
        out().flush();
        return 0;
    }
    const QStringList args = parser.positionalArguments();
    const QString command = args.value(0);

    const bool commandLine = command == QStringLiteral("register") || command == QStringLiteral("unregister")
        || command == QStringLiteral("import") || command == QStringLiteral("export")
        || command == QStringLiteral("dossiers") || command == QStringLiteral("overzetten");
    if (commandLine || !display || parser.isSet(screenshot))
        Zarnoveld::ErrorLog::answerHeadless();

    try {
        if (command == QStringLiteral("register") || command == QStringLiteral("unregister")) {
            QString error;
            const bool ok = command == QStringLiteral("register") ? Zarnoveld::Commands::registerComponent(&error)
                                                                  : Zarnoveld::Commands::unregisterComponent(&error);
            if (!ok)
                return fail(error);
            out() << (command == QStringLiteral("register") ? "Pensioenscherm geregistreerd: "
                                                            : "Registratie verwijderd: ")
                  << Zarnoveld::Commands::bundledLibrary() << Qt::endl;
            return 0;
        }
        if (command == QStringLiteral("import")) {
            if (args.size() != 3)
                return fail(QStringLiteral("gebruik: zarnoveld import JSON DOSSIER"));
            auto application = Zarnoveld::Commands::importCase(args[1], args[2]);
            out() << "Dossier gemaakt: " << Zarnoveld::Terminal::escaped(args[2]) << Qt::endl;
            for (const QString &warning : Zarnoveld::Commands::caseWarnings(*application))
                err() << "zarnoveld: let op: " << Zarnoveld::Terminal::escaped(warning) << Qt::endl;
            return 0;
        }
        if (command == QStringLiteral("export")) {
            if (args.size() != 3)
                return fail(QStringLiteral("gebruik: zarnoveld export DOSSIER JSON"));
            const QFileInfo target(args[2]);
            if (target.exists() && target.isFile() && !target.isSymLink() && !parser.isSet(overwrite))
                return fail(QStringLiteral("%1 bestaat al; gebruik --overschrijven om het te vervangen.").arg(args[2]));
            // From a database the case is read beside whoever works in it; a case file is opened.
            const QString address = Zarnoveld::Commands::caseAddress(args[1]);
            auto application = Zarnoveld::Commands::database().isEmpty() ? Zarnoveld::HostApplication::openFile(address)
                                                                         : Zarnoveld::HostApplication::openForReading(address);
            Zarnoveld::Commands::exportCase(*application, args[2], parser.isSet(overwrite));
            out() << "Dossier geexporteerd naar " << Zarnoveld::Terminal::escaped(args[2]) << Qt::endl;
            return 0;
        }
        if (command == QStringLiteral("dossiers")) {
            if (args.size() != 1)
                return fail(QStringLiteral("gebruik: zarnoveld [--database URL] dossiers"));
            const QStringList lines = Zarnoveld::Commands::caseListing();
            for (const QString &line : lines) {
                QStringList fields = line.split(QLatin1Char('\t'));
                for (QString &field : fields)
                    field = Zarnoveld::Terminal::escaped(field);
                out() << fields.join(QLatin1Char('\t')) << Qt::endl;
            }
            if (lines.isEmpty())
                out() << "Geen dossiers." << Qt::endl;
            return 0;
        }
        if (command == QStringLiteral("overzetten")) {
            if (args.size() < 2 || Zarnoveld::Commands::database().isEmpty())
                return fail(QStringLiteral("gebruik: zarnoveld --database URL overzetten DOSSIERBESTAND..."));
            // Each case file becomes the case of its own name in the database, whole or not at
            // all; one that fails is named and the others still go.
            int failed = 0;
            for (const QString &file : args.mid(1)) {
                const QString name = QFileInfo(file).completeBaseName();
                try {
                    Zarnoveld::HostApplication::copyCase(file, Zarnoveld::Commands::caseAddress(name));
                    out() << "Overgezet: " << Zarnoveld::Terminal::escaped(file) << " -> "
                          << Zarnoveld::Terminal::escaped(name) << Qt::endl;
                } catch (const VandrelApplication::HostError &e) {
                    ++failed;
                    err() << "zarnoveld: " << Zarnoveld::Terminal::escaped(file) << ": "
                          << Zarnoveld::Terminal::escaped(e.description()) << Qt::endl;
                }
            }
            return failed ? 2 : 0;
        }
    } catch (const VandrelApplication::HostError &e) {
        return fail(e.description());
    }

    if (!display)
        out() << "Geen beeldscherm gevonden: zarnoveld maakt een schermafdruk van het pensioenscherm in plaats van een venster te openen."
              << Qt::endl;

    QString error;
    if (!Zarnoveld::Commands::ensureRegistered(&error))
        return fail(error);

    Zarnoveld::MainWindow window;
    if (!command.isEmpty() && !window.openCase(command, &error))
        return fail(error);
    window.show();
    window.showScreen(parser.value(screen) == QStringLiteral("deelnemers") ? Zarnoveld::MainWindow::Deelnemers
                                                                            : Zarnoveld::MainWindow::Pensioenen);

    if (parser.isSet(screenshot) || !display) {
        fitPensionScreen(window);
        if (parser.isSet(findingsPane)) {
            if (auto *dock = window.findChild<QDockWidget *>(QStringLiteral("dockControle")))
                dock->show();
            window.refreshFindings();
        }
        if (parser.isSet(openMenu)) {
            auto *menu = window.menuBar()->findChild<QMenu *>(QStringLiteral("mnu") + parser.value(openMenu));
            if (!menu)
                return fail(QStringLiteral("er is geen menu %1").arg(parser.value(openMenu)));
            const QRect place = window.menuBar()->actionGeometry(menu->menuAction());
            menu->popup(window.menuBar()->mapToGlobal(place.bottomLeft()));
        }
        const QString path = parser.isSet(screenshot) ? parser.value(screenshot)
                                                      : QStringLiteral("zarnoveld-pensioenscherm.png");
        if (!writeScreenshot(&window, path))
            return fail(QStringLiteral("de schermafdruk %1 kan niet worden geschreven").arg(path));
        out() << "Schermafdruk geschreven: " << Zarnoveld::Terminal::escaped(QFileInfo(path).absoluteFilePath()) << Qt::endl;
        window.pensionScreen()->release();
        return 0;
    }
    return app.exec();
}
