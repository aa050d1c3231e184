// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// A complete host: loads a JSON case into the in-memory host model, shows PensMain in a layout,
// validates before closing, prints the suite's findings. Exit 0 closed, 1 kept open, 2 no case.
#include <VandrelPensioen/hostapplication.h>
#include <VandrelPensioen/hostcheck.h>
#include <VandrelPensioen/messagebox.h>
#include <VandrelPensioen/pensmain.h>

#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QJsonDocument>
#include <QScreen>
#include <QScrollArea>
#include <QTextStream>
#include <QTimer>
#include <QVBoxLayout>

using namespace VandrelApplication;
using VandrelControl::MessageBox;

namespace {

// The list and PensMain itself pass a host's HostError on to the caller; a host catches it.
template <typename Call> void guarded(Call call)
{
    try {
        call();
    } catch (const HostError &error) {
        QTextStream(stderr) << "Fout " << error.number() << ": " << error.description() << '\n';
    }
}

class HostWindow : public QWidget
{
public:
    explicit HostWindow(const ApplicationPtr &application)
    {
        setWindowTitle(application->Title());
        guarded([&] { screen->SetApplication(application); });
        screen->resize(screen->sizeHint());   // its designed size; a smaller display scrolls it
        auto *scroll = new QScrollArea;
        scroll->setWidget(screen);
        (new QVBoxLayout(this))->addWidget(scroll);
        resize((screen->sizeHint() + QSize(40, 40)).boundedTo(QGuiApplication::primaryScreen()->availableSize()));
    }

protected:
    void closeEvent(QCloseEvent *event) override
    {
        // The screen checks the shown scheme, then runs the suite's check (HostCheck) over the
        // whole case; Cancel means the user was told what to correct and stays.
        bool cancel = false;
        guarded([&] { screen->Validation(cancel, 0); });
        if (cancel)
            return event->ignore();
        const QStringList findings = HostCheck::instance().Bevindingen();
        QTextStream(stdout) << (findings.isEmpty() ? QStringLiteral("Geen bevindingen.")
                                                   : findings.join(QLatin1Char('\n'))) << '\n';
        event->accept();
    }

private:
    VandrelPensioen::PensMain *screen = new VandrelPensioen::PensMain(this);
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc != 2)
        return QTextStream(stderr) << "Gebruik: minimal-host DOSSIER.json\n", 2;
    QFile file(QString::fromLocal8Bit(argv[1]));
    const auto json = QJsonDocument::fromJson(file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
    std::shared_ptr<Zarnoveld::HostApplication> host;
    try {
        if (!json.isObject())
            throw HostError(HostErrorCode::NotFound, file.fileName() + QStringLiteral(" is geen leesbaar dossier."));
        host = Zarnoveld::HostApplication::importJson(json.object());
    } catch (const HostError &error) {
        QTextStream(stderr) << error.description() << '\n';
        return 2;
    }
    host->setErrorHandler([](const ErrorRecord &record) { QTextStream(stderr) << record.toText() << '\n'; });
    HostWindow window(host);
    window.show();
    // Offscreen nobody answers a message box or closes the window: print, answer No (or OK), close.
    if (QGuiApplication::platformName() == QStringLiteral("offscreen")) {
        MessageBox::setResponder([](const MessageBox::Request &r) {
            QTextStream(stderr) << r.title << ": " << r.text << '\n';
            return r.buttons == MessageBox::Buttons::Ok ? MessageBox::Answer::Ok : MessageBox::Answer::No;
        });
        QTimer::singleShot(0, &window, [&] { if (!window.close()) app.exit(1); });
    }
    return app.exec();
}
