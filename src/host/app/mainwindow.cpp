#include "mainwindow.h"

#include "commands.h"
#include "errorlog.h"
#include "fiscalfigures.h"
#include "messagebox.h"
#include "participantsscreen.h"
#include "pensionscreen.h"
#include "previewdialog.h"

#include <QCloseEvent>
#include <QDate>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QInputDialog>
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
    action("actPensioenoverzicht", QStringLiteral("Pensioenoverzicht inlezen..."), &MainWindow::importOverview);
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

// File, participant, preview: each a dialog of its own with an object name, so that a test can
// answer it like a user. Nothing is written before OK in the preview.
void MainWindow::importOverview()
{
    namespace Overzicht = VandrelPensioen::Overzicht;
    if (!m_case) {
        MessageBox::ok(this, QStringLiteral("Open eerst een dossier."), QStringLiteral("Pensioenoverzicht inlezen"));
        return;
    }
    if (!leavePensionScreen())
        return;
    QFileDialog files(this, QStringLiteral("Pensioenoverzicht kiezen"));
    files.setObjectName(QStringLiteral("dlgPensioenoverzicht"));
    files.setOption(QFileDialog::DontUseNativeDialog);
    files.setFileMode(QFileDialog::ExistingFile);
    files.setNameFilters({QStringLiteral("Pensioenoverzicht (*.json *.xml)"), QStringLiteral("Alle bestanden (*)")});
    if (files.exec() != QDialog::Accepted || files.selectedFiles().isEmpty())
        return;
    const QString path = files.selectedFiles().constFirst();

    const Overzicht::ReadResult read = Overzicht::readOverviewFile(path);
    if (!read.ok()) {
        MessageBox::ok(this, read.error, QStringLiteral("Pensioenoverzicht niet ingelezen"));
        return;
    }

    qint16 anvId = 1;
    const auto dossier = m_case->Get_Dossier();
    if (dossier && dossier->Get_Aanvrager(2)) {
        const auto label = [&](qint16 id) {
            const QString naam = dossier->Get_Aanvrager(id)->Naam().trimmed();
            const QString rol = id == 1 ? QStringLiteral("Aanvrager") : QStringLiteral("Partner");
            return naam.isEmpty() ? rol : QStringLiteral("%1 (%2)").arg(rol, naam);
        };
        QInputDialog ask(this);
        ask.setObjectName(QStringLiteral("dlgDeelnemer"));
        ask.setWindowTitle(QStringLiteral("Pensioenoverzicht inlezen"));
        ask.setLabelText(QStringLiteral("Van wie is dit pensioenoverzicht?"));
        ask.setComboBoxItems({label(1), label(2)});
        ask.setComboBoxEditable(false);
        ask.setOkButtonText(QStringLiteral("Verder"));
        ask.setCancelButtonText(QStringLiteral("Annuleren"));
        if (ask.exec() != QDialog::Accepted)
            return;
        anvId = ask.textValue() == label(2) ? 2 : 1;
    }

    try {
        Overzicht::PreviewDialog preview(Overzicht::planImport(*read.overview, *m_case, anvId, QDate::currentDate()),
                                         m_case, this);
        if (preview.exec() != QDialog::Accepted || !preview.applied())
            return;
    } catch (const VandrelApplication::HostError &e) {
        MessageBox::ok(this, e.description(), QStringLiteral("Pensioenoverzicht niet ingelezen"));
        return;
    }
    // The pension screen reads the case afresh, so the new schemes are in its list.
    if (currentScreen() == Pensioenen)
        m_pensions->setApplication(m_case);
    else
        showScreen(Pensioenen);
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
    setWindowTitle(QStringLiteral("Zarnoveld - %1%2").arg(file, m_case && m_case->readOnly() ? QStringLiteral(" (alleen-lezen)") : QString()));
}

} // namespace Zarnoveld
