#include "mainwindow.h"

#include "commands.h"
#include "errorlog.h"
#include "messagebox.h"
#include "participantsscreen.h"
#include "pensionscreen.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QListWidget>
#include <QMenuBar>
#include <QSettings>
#include <QStackedWidget>

using VandrelControl::MessageBox;

namespace Zarnoveld {

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("zarnoveldMain"));
    auto *central = new QWidget(this);
    auto *layout = new QHBoxLayout(central);
    m_navigation = new QListWidget(central);
    m_navigation->setObjectName(QStringLiteral("lstSchermen"));
    m_navigation->addItems({QStringLiteral("Deelnemers"), QStringLiteral("Pensioenen")});
    m_navigation->setFixedWidth(m_navigation->sizeHintForColumn(0) + 24);
    m_stack = new QStackedWidget(central);
    m_participants = new ParticipantsScreen(m_stack);
    m_pensions = new PensionScreen(m_stack);
    m_stack->addWidget(m_participants);
    m_stack->addWidget(m_pensions);
    layout->addWidget(m_navigation);
    layout->addWidget(m_stack, 1);
    setCentralWidget(central);

    connect(m_navigation, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row != m_stack->currentIndex() && !showScreen(Screen(row))) {
            const QSignalBlocker block(m_navigation);
            m_navigation->setCurrentRow(m_stack->currentIndex());
        }
    });
    {
        const QSignalBlocker block(m_navigation);
        m_navigation->setCurrentRow(Deelnemers);
    }

    auto *file = menuBar()->addMenu(QStringLiteral("&Bestand"));
    file->setObjectName(QStringLiteral("mnuBestand"));
    const auto action = [this, file](const char *name, const QString &text, auto slot, QKeySequence keys = {}) {
        QAction *act = file->addAction(text, this, slot);
        act->setObjectName(QLatin1String(name));
        act->setShortcut(keys);
    };
    action("actNieuwUitVoorbeeld", QStringLiteral("Nieuw dossier uit voorbeeld..."), &MainWindow::newFromExample);
    action("actOpenen", QStringLiteral("&Openen..."), &MainWindow::openFile, QKeySequence::Open);
    action("actImporteren", QStringLiteral("&Importeren..."), &MainWindow::importJson);
    action("actExporteren", QStringLiteral("&Exporteren..."), &MainWindow::exportJson);
    file->addSeparator();
    action("actAfsluiten", QStringLiteral("&Afsluiten"), &QWidget::close, QKeySequence(Qt::CTRL | Qt::Key_Q));

    QSettings settings;
    if (!restoreGeometry(settings.value(QStringLiteral("venster/geometrie")).toByteArray()))
        resize(1280, 860);
    updateTitle();
}

MainWindow::~MainWindow() = default;

bool MainWindow::openCase(const QString &path, QString *error)
{
    // The pension screen has already told the user what is wrong; the old case stays open.
    if (!leavePensionScreen()) {
        if (error)
            *error = QStringLiteral("Het dossier is niet gewisseld: herstel eerst de fout op het pensioenscherm.");
        return false;
    }
    try {
        setCase(Commands::openOrImport(path));
        return true;
    } catch (const VandrelApplication::HostError &e) {
        if (error)
            *error = e.description();
        return false;
    }
}

void MainWindow::setCase(const std::shared_ptr<HostApplication> &application)
{
    // The old case's control ends first, so that it removes the schemes it marked for removal.
    m_pensions->release();
    m_case = application;
    if (m_case) {
        m_case->setTitle(QStringLiteral("Zarnoveld"));
        m_case->setErrorHandler([this](const VandrelApplication::ErrorRecord &record) {
            ErrorLog::append(record);
            ErrorLog::show(this, record);
        });
    }
    m_participants->setApplication(m_case);
    if (currentScreen() == Pensioenen && m_case) {
        QString reason;
        if (m_pensions->ensureControl(&reason))
            m_pensions->setApplication(m_case);
    }
    updateTitle();
    if (m_case && m_case->readOnly())
        MessageBox::ok(this, QStringLiteral("U mag het dossier %1 niet wijzigen: het is alleen-lezen geopend. U kunt het bekijken "
                                            "en exporteren; een wijziging wordt geweigerd en niet opgeslagen.")
                                 .arg(QFileInfo(m_case->filePath()).fileName()),
                       QStringLiteral("Dossier alleen-lezen"), MessageBox::Icon::Information);
}

MainWindow::Screen MainWindow::currentScreen() const
{
    return Screen(m_stack->currentIndex());
}

bool MainWindow::leavePensionScreen()
{
    return currentScreen() != Pensioenen || m_pensions->canLeave();
}

bool MainWindow::showScreen(Screen screen)
{
    if (screen == currentScreen())
        return true;
    if (!leavePensionScreen())
        return false;
    if (screen == Pensioenen) {
        QString reason;
        if (m_pensions->ensureControl(&reason) && m_case)
            m_pensions->setApplication(m_case);
    } else {
        m_participants->reload();
    }
    m_stack->setCurrentIndex(screen);
    const QSignalBlocker block(m_navigation);
    m_navigation->setCurrentRow(screen);
    return true;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!leavePensionScreen()) {
        event->ignore();
        return;
    }
    QSettings().setValue(QStringLiteral("venster/geometrie"), saveGeometry());
    m_pensions->release();
    event->accept();
}

void MainWindow::newFromExample()
{
    if (!leavePensionScreen())
        return;
    const QString json = QFileDialog::getOpenFileName(this, QStringLiteral("Voorbeeld kiezen"), QString(),
                                                      QStringLiteral("Voorbeelden (*.json)"));
    if (json.isEmpty())
        return;
    const QString target = QFileDialog::getSaveFileName(this, QStringLiteral("Nieuw dossier opslaan als"),
                                                        QFileInfo(json).completeBaseName() + Commands::caseSuffix(),
                                                        QStringLiteral("Dossiers (*%1)").arg(Commands::caseSuffix()));
    if (target.isEmpty())
        return;
    try {
        setCase(Commands::importCase(json, target));
    } catch (const VandrelApplication::HostError &e) {
        MessageBox::ok(this, e.description(), QStringLiteral("Dossier niet gemaakt"));
    }
}

void MainWindow::openFile()
{
    if (!leavePensionScreen())
        return;
    const QString path = QFileDialog::getOpenFileName(this, QStringLiteral("Dossier openen"), QString(),
                                                      QStringLiteral("Dossiers (*%1)").arg(Commands::caseSuffix()));
    if (path.isEmpty())
        return;
    QString error;
    if (!openCase(path, &error))
        MessageBox::ok(this, error, QStringLiteral("Dossier niet geopend"));
}

void MainWindow::importJson()
{
    newFromExample();
}

void MainWindow::exportJson()
{
    if (!m_case || !leavePensionScreen())
        return;
    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Dossier exporteren"), QString(),
                                                      QStringLiteral("JSON (*.json)"), nullptr,
                                                      QFileDialog::DontConfirmOverwrite);
    if (!path.isEmpty())
        exportTo(path);
}

bool MainWindow::exportTo(const QString &path)
{
    if (!m_case)
        return false;
    // Asked here rather than by the file dialog, so that the question goes where every other
    // question of the program goes (and a headless run or a test answers it).
    const QFileInfo target(path);
    const bool replace = target.exists() && !target.isSymLink() && target.isFile();
    if (replace && !MessageBox::yesNo(this, QStringLiteral("%1 bestaat al. Wilt u het vervangen door dit dossier?").arg(path),
                                      QStringLiteral("Dossier exporteren")))
        return false;
    try {
        Commands::exportCase(*m_case, path, replace);
        return true;
    } catch (const VandrelApplication::HostError &e) {
        MessageBox::ok(this, e.description(), QStringLiteral("Exporteren mislukt"));
        return false;
    }
}

void MainWindow::updateTitle()
{
    const QString file = m_case && !m_case->filePath().isEmpty() ? QFileInfo(m_case->filePath()).fileName()
                                                                 : QStringLiteral("geen dossier");
    setWindowTitle(QStringLiteral("Zarnoveld - %1%2").arg(file, m_case && m_case->readOnly() ? QStringLiteral(" (alleen-lezen)") : QString()));
}

} // namespace Zarnoveld
