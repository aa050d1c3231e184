#include "mainwindow.h"

#include "commands.h"
#include "errorlog.h"
#include "fiscalfigures.h"
#include "messagebox.h"
#include "participantsscreen.h"
#include "pensionscreen.h"

#include <QCloseEvent>
#include <QDate>
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
    action("actRekenjaar", QStringLiteral("&Fiscale cijfers bijwerken naar %1...").arg(FiscalFigures::yearFor(QDate::currentDate())),
           &MainWindow::moveToCurrentFigureYear);
    m_figureYear = file->findChild<QAction *>(QStringLiteral("actRekenjaar"));
    file->addSeparator();
    action("actAfsluiten", QStringLiteral("&Afsluiten"), &QWidget::close, QKeySequence(Qt::CTRL | Qt::Key_Q));

    QSettings settings;
    if (!restoreGeometry(settings.value(QStringLiteral("venster/geometrie")).toByteArray()))
        resize(1280, 860);
    updateTitle();
    updateFigureYearAction();
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
    updateFigureYearAction();
    m_participants->setApplication(m_case);
    if (currentScreen() == Pensioenen && m_case) {
        QString reason;
        if (m_pensions->ensureControl(&reason))
            m_pensions->setApplication(m_case);
    }
    updateTitle();
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
                                                      QStringLiteral("JSON (*.json)"));
    if (path.isEmpty())
        return;
    try {
        Commands::exportCase(*m_case, path);
    } catch (const VandrelApplication::HostError &e) {
        MessageBox::ok(this, e.description(), QStringLiteral("Exporteren mislukt"));
    }
}

void MainWindow::updateFigureYearAction()
{
    if (!m_figureYear)
        return;
    const int current = FiscalFigures::yearFor(QDate::currentDate());
    m_figureYear->setEnabled(m_case && m_case->figureYear() != current);
    m_figureYear->setToolTip(m_case ? QStringLiteral("Dit dossier rekent met de fiscale cijfers van %1.").arg(m_case->figureYear())
                                    : QString());
}

void MainWindow::moveToCurrentFigureYear()
{
    const int current = FiscalFigures::yearFor(QDate::currentDate());
    if (!m_case || m_case->figureYear() == current || !leavePensionScreen())
        return;
    const QString question =
        QStringLiteral("Dit dossier rekent met de fiscale cijfers van %1. Wilt u het bijwerken naar de cijfers van %2?\n\n"
                       "De franchise van elke regeling waarvan de franchise wordt berekend, verandert mee; "
                       "een zelf ingevulde franchise blijft staan.")
            .arg(m_case->figureYear())
            .arg(current);
    if (!MessageBox::yesNo(this, question, QStringLiteral("Fiscale cijfers bijwerken")))
        return;
    try {
        const HostApplication::FigureYearMove move = m_case->moveToFigureYear(current);
        // The pension screen reloads what the case holds now. Not setCase(): ending the control
        // would also remove the schemes it marked for removal on close.
        updateFigureYearAction();
        if (currentScreen() == Pensioenen)
            m_pensions->setApplication(m_case);
        QString report = QStringLiteral("Het dossier rekent nu met de fiscale cijfers van %1.").arg(current);
        if (!move.schemes.isEmpty())
            report += QStringLiteral("\n\nGewijzigde regelingen:\n") + move.schemes.join(QLatin1Char('\n'));
        MessageBox::ok(this, report, QStringLiteral("Fiscale cijfers bijgewerkt"), MessageBox::Icon::Information);
    } catch (const VandrelApplication::HostError &e) {
        MessageBox::ok(this, e.description(), QStringLiteral("Fiscale cijfers niet bijgewerkt"));
    }
}

void MainWindow::updateTitle()
{
    const QString file = m_case && !m_case->filePath().isEmpty() ? QFileInfo(m_case->filePath()).fileName()
                                                                 : QStringLiteral("geen dossier");
    setWindowTitle(QStringLiteral("Zarnoveld - %1").arg(file));
}

} // namespace Zarnoveld
