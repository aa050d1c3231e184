// zarnoveld: the reference host of the pension screen.
//
//   zarnoveld [CASE] [--scherm deelnemers|pensioenen] [--screenshot FILE]
//   zarnoveld import JSON CASE        a JSON case becomes a new case file
//   zarnoveld export CASE JSON
//   zarnoveld register | unregister   the pension screen in the per-user component registry
//   zarnoveld check CASE... [--json]  checks every scheme as the pension screen would, headless
//   zarnoveld rapport CASE FILE.pdf [--overschrijven]  the case on paper, with the check's findings

#include "check.h"
#include "commands.h"
#include "errorlog.h"
#include "mainwindow.h"
#include "pensionscreen.h"
#include "rapport.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPixmap>
#include <QScrollArea>
#include <QScreen>
#include <QTextStream>
#include <QTimer>

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
    err() << "zarnoveld: " << message << Qt::endl;
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
    return picture.save(path);
}

} // namespace

int main(int argc, char **argv)
{
    // Always headless, with its own application object: decided before one is made here.
    if (argc > 1 && qstrcmp(argv[1], "check") == 0)
        return Zarnoveld::Check::main(argc, argv);
    if (argc > 1 && qstrcmp(argv[1], "rapport") == 0)
        return Zarnoveld::Rapport::main(argc, argv);
    const bool display = hasDisplay();
    if (!display)
        qputenv("QT_QPA_PLATFORM", "offscreen");

    Zarnoveld::GuardedApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Vandrel"));
    QApplication::setApplicationName(QStringLiteral("zarnoveld"));
    QApplication::setApplicationDisplayName(QStringLiteral("Zarnoveld"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Zarnoveld: adviesdossiers met het pensioenscherm."));
    parser.addHelpOption();
    QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                  QStringLiteral("Schrijf een schermafdruk naar BESTAND en stop."),
                                  QStringLiteral("BESTAND"));
    QCommandLineOption screen(QStringLiteral("scherm"), QStringLiteral("Begin op dit scherm: deelnemers of pensioenen."),
                              QStringLiteral("SCHERM"), QStringLiteral("pensioenen"));
    parser.addOption(screenshot);
    parser.addOption(screen);
    parser.addPositionalArgument(QStringLiteral("opdracht"), QStringLiteral("Een dossier, of import/export/register/unregister."));
    parser.process(app);
    const QStringList args = parser.positionalArguments();
    const QString command = args.value(0);

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
            Zarnoveld::Commands::importCase(args[1], args[2]);
            out() << "Dossier gemaakt: " << args[2] << Qt::endl;
            return 0;
        }
        if (command == QStringLiteral("export")) {
            if (args.size() != 3)
                return fail(QStringLiteral("gebruik: zarnoveld export DOSSIER JSON"));
            auto application = Zarnoveld::HostApplication::openFile(args[1]);
            Zarnoveld::Commands::exportCase(*application, args[2]);
            out() << "Dossier geexporteerd naar " << args[2] << Qt::endl;
            return 0;
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
        const QString path = parser.isSet(screenshot) ? parser.value(screenshot)
                                                      : QStringLiteral("zarnoveld-pensioenscherm.png");
        if (!writeScreenshot(&window, path))
            return fail(QStringLiteral("de schermafdruk %1 kan niet worden geschreven").arg(path));
        out() << "Schermafdruk geschreven: " << QFileInfo(path).absoluteFilePath() << Qt::endl;
        window.pensionScreen()->release();
        return 0;
    }
    return app.exec();
}
