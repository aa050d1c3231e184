#include "mainwindow.h"

#include "commands.h"
#include "errorlog.h"
#include "messagebox.h"
#include "participantsscreen.h"
#include "pensionscreen.h"
#include "rapport.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QListWidget>
#include <QMenuBar>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>

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
    action("actExporterenPdf", QStringLiteral("Exporteren als &PDF..."), &MainWindow::exportPdf);
    action("actAfdrukken", QStringLiteral("Af&drukken..."), &MainWindow::printCase, QKeySequence(Qt::CTRL | Qt::Key_P));
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

bool MainWindow::finishTyping()
{
    // A menu or a shortcut does not take the focus, so the field being typed in has not checked
    // and stored its text yet: moving the focus away does what leaving the field does. A field
    // that refuses its text keeps the focus (and has told the user why).
    QWidget *focus = QApplication::focusWidget();
    if (!focus || !m_stack->isAncestorOf(focus))
        return true;
    m_navigation->setFocus(Qt::OtherFocusReason);
    return QApplication::focusWidget() == m_navigation;
}

std::unique_ptr<VandrelReport::CaseReport> MainWindow::buildReport()
{
    // What is being typed is accepted or refused first, so the paper shows what the case holds.
    if (!m_case || !finishTyping() || !leavePensionScreen())
        return nullptr;
    if (!m_checker) {
        auto checker = std::make_unique<Check::Checker>();
        QString error;
        if (!checker->prepare(&error)) {
            MessageBox::ok(this, error, QStringLiteral("Rapport niet gemaakt"));
            return nullptr;
        }
        m_checker = std::move(checker);
    }
    // A case of two times 99 schemes takes a moment: the dialog appears only when it does.
    QProgressDialog progress(QStringLiteral("Het pensioenoverzicht wordt gemaakt..."), QString(), 0, 1, this);
    progress.setWindowTitle(QStringLiteral("Pensioenoverzicht"));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(500);
    const QString name = m_case->filePath().isEmpty() ? QStringLiteral("nieuw dossier")
                                                      : QFileInfo(m_case->filePath()).completeBaseName();
    try {
        return Rapport::build(*m_case, name, *m_checker, [&](int done, int total, const QString &) {
            progress.setMaximum(total);
            progress.setValue(done);
        });
    } catch (const VandrelApplication::HostError &e) {
        MessageBox::ok(this, e.description(), QStringLiteral("Rapport niet gemaakt"));
        return nullptr;
    }
}

void MainWindow::exportPdf()
{
    if (!m_case || !finishTyping() || !leavePensionScreen())
        return;
    const QString suggested = m_case->filePath().isEmpty()
                                  ? QStringLiteral("pensioenoverzicht.pdf")
                                  : QFileInfo(m_case->filePath()).absoluteDir().filePath(
                                        QFileInfo(m_case->filePath()).completeBaseName() + QStringLiteral(".pdf"));
    // The question before replacing a file is ours (and answerable by a responder), not the dialog's.
    QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Exporteren als PDF"), suggested,
                                                QStringLiteral("PDF (*.pdf)"), nullptr, QFileDialog::DontConfirmOverwrite);
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".pdf");
    exportPdfTo(path);
}

bool MainWindow::exportPdfTo(const QString &path)
{
    const QString title = QStringLiteral("Exporteren als PDF");
    if (QString reason = Rapport::refusal(path, true, m_case ? m_case->filePath() : QString()); !reason.isEmpty()) {
        MessageBox::ok(this, reason, title);
        return false;
    }
    if (Rapport::wouldReplace(path)
        && !MessageBox::yesNo(this, QStringLiteral("Het bestand %1 bestaat al. Wilt u het vervangen?").arg(path), title))
        return false;
    const std::unique_ptr<VandrelReport::CaseReport> report = buildReport();
    if (!report)
        return false;
    QString error;
    if (!Rapport::writePdf(*report, path, true, &error, {}, m_case ? m_case->filePath() : QString())) {
        MessageBox::ok(this, error, QStringLiteral("Exporteren mislukt"));
        return false;
    }
    statusBar()->showMessage(QStringLiteral("Rapport geschreven: %1").arg(path), 5000);
    return true;
}

void MainWindow::printCase()
{
    if (!m_case || !finishTyping() || !leavePensionScreen())
        return;
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    dialog.setObjectName(QStringLiteral("dlgAfdrukken"));
    dialog.setWindowTitle(QStringLiteral("Afdrukken"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    const std::unique_ptr<VandrelReport::CaseReport> report = buildReport();
    if (!report)
        return;
    QString error;
    if (!report->print(&printer, &error))
        MessageBox::ok(this, error, QStringLiteral("Afdrukken mislukt"));
}

void MainWindow::updateTitle()
{
    const QString file = m_case && !m_case->filePath().isEmpty() ? QFileInfo(m_case->filePath()).fileName()
                                                                 : QStringLiteral("geen dossier");
    setWindowTitle(QStringLiteral("Zarnoveld - %1").arg(file));
}

} // namespace Zarnoveld
