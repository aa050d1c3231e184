// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "mainwindow.h"

#include "caseaddress.h"

#include "bindialog.h"
#include "commands.h"
#include "errorlog.h"
#include "fiscalfigures.h"
#include "listviewroutines.h"
#include "messagebox.h"
#include "participantsscreen.h"
#include "pensionscreen.h"
#include "previewdialog.h"
#include "usersettings.h"

#include "rapport.h"
#include "safefile.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDate>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeySequence>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMenuBar>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>
#include <QScopeGuard>
#include <QScreen>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <QTreeWidget>

using VandrelControl::MessageBox;

namespace Zarnoveld {

namespace {

const QString kGeometry = QStringLiteral("venster/geometrie");
const QString kTitleSuffix = QStringLiteral(" \u2014 Zarnoveld");
constexpr int AnvRole = Qt::UserRole + 1;
constexpr int PenRole = Qt::UserRole + 2;
// The check of the whole case runs once the adviser pauses: leaving a field only starts this
// timer, so typing through a scheme never waits for it.
constexpr int CheckPauseMs = 1500;

QString dossierFolder()
{
    return Commands::caseFolder();
}

// The case file's path can be long: it takes the room the status bar has left and is shortened in
// the middle, never widening the window. The whole path is its tool tip.
class ElidedLabel : public QLabel
{
public:
    explicit ElidedLabel(QWidget *parent)
        : QLabel(parent)
    {
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }
    void setFullText(const QString &text)
    {
        m_full = text;
        elide();
    }
    QString fullText() const { return m_full; }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QLabel::resizeEvent(event);
        elide();
    }

private:
    void elide()
    {
        const int room = contentsRect().width();
        setText(room > 0 ? fontMetrics().elidedText(m_full, Qt::ElideMiddle, room) : m_full);
    }
    QString m_full;
};

QString nameOf(const VandrelApplication::AanvragerPtr &participant)
{
    return participant ? participant->Naam().simplified() : QString();
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("zarnoveldMain"));
    auto *central = new QWidget(this);
    auto *layout = new QHBoxLayout(central);
    // Narrow margins: on a laptop every pixel of width goes to the pension screen.
    layout->setContentsMargins(4, 4, 4, 0);
    layout->setSpacing(4);
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
        if (row < 0 || row == m_stack->currentIndex() || showScreen(Screen(row)))
            return;
        syncNavigation();
        // A mouse press makes the row current first and selects it after this signal: the
        // refused row would stay highlighted unless it is put back once the press is done.
        QTimer::singleShot(0, this, &MainWindow::syncNavigation);
    });
    syncNavigation();

    // Bestand. Every entry is added through `action`, so an entry is one line.
    auto *file = menuBar()->addMenu(QStringLiteral("&Bestand"));
    file->setObjectName(QStringLiteral("mnuBestand"));
    const auto action = [this, file](const char *name, const QString &text, auto slot, QKeySequence keys = {}) {
        QAction *act = file->addAction(text, this, slot);
        act->setObjectName(QLatin1String(name));
        act->setShortcut(keys);
        return act;
    };
    action("actNieuw", QStringLiteral("&Nieuw dossier..."), &MainWindow::newCase, QKeySequence(Qt::CTRL | Qt::Key_N));
    action("actOpenen", QStringLiteral("&Openen..."), &MainWindow::openFile, QKeySequence(Qt::CTRL | Qt::Key_O));
    // With an office database the cases are picked from its list, with who has each one open.
    if (!Commands::database().isEmpty())
        action("actOpenenDatabase", QStringLiteral("Openen &uit database..."), &MainWindow::openFromDatabase,
               QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O));
    m_recent = file->addMenu(QStringLiteral("&Recente dossiers"));
    m_recent->setObjectName(QStringLiteral("mnuRecent"));
    connect(m_recent, &QMenu::aboutToShow, this, &MainWindow::fillRecentMenu);
    file->addSeparator();
    action("actImporteren", QStringLiteral("&Importeren (JSON)..."), &MainWindow::importJson);
    action("actExporteren", QStringLiteral("&Exporteren (JSON)..."), &MainWindow::exportJson);
    action("actPensioenoverzicht", QStringLiteral("&Pensioenoverzicht inlezen..."), &MainWindow::importOverview);
    action("actRekenjaar", QStringLiteral("&Fiscale cijfers bijwerken naar %1...").arg(FiscalFigures::yearFor(QDate::currentDate())),
           &MainWindow::moveToCurrentFigureYear);
    m_figureYear = file->findChild<QAction *>(QStringLiteral("actRekenjaar"));
    action("actExporterenPdf", QStringLiteral("E&xporteren als PDF..."), &MainWindow::exportPdf);
    action("actAfdrukken", QStringLiteral("Af&drukken..."), &MainWindow::printCase, QKeySequence(Qt::CTRL | Qt::Key_P));
    file->addSeparator();
    action("actAfsluiten", QStringLiteral("&Afsluiten"), &QWidget::close, QKeySequence(Qt::CTRL | Qt::Key_Q));
    fillRecentMenu();

    auto *edit = menuBar()->addMenu(QStringLiteral("Be&werken"));
    edit->setObjectName(QStringLiteral("mnuBewerken"));
    edit->addAction(QStringLiteral("Verwijderde regeling &terugzetten..."), this, &MainWindow::showBin)
        ->setObjectName(QStringLiteral("actTerugzetten"));
    edit->addAction(QStringLiteral("Prullenbak &legen..."), this, &MainWindow::emptyBin)
        ->setObjectName(QStringLiteral("actPrullenbakLegen"));

    m_findingsDock = new QDockWidget(QStringLiteral("Controle"), this);
    m_findingsDock->setObjectName(QStringLiteral("dockControle"));
    m_findings = new QListWidget(m_findingsDock);
    m_findings->setObjectName(QStringLiteral("lstBevindingen"));
    m_findings->setWordWrap(true);
    m_findings->setTextElideMode(Qt::ElideNone);
    m_findings->setToolTip(QStringLiteral("Dubbelklik op een bevinding om de regeling te tonen."));
    m_findingsDock->setWidget(m_findings);
    addDockWidget(Qt::BottomDockWidgetArea, m_findingsDock);
    m_findingsDock->hide();
    // A double click, or Enter on the keyboard; selecting the scheme shown already changes nothing.
    connect(m_findings, &QListWidget::itemDoubleClicked, this, &MainWindow::findingActivated);
    connect(m_findings, &QListWidget::itemActivated, this, &MainWindow::findingActivated);
    connect(m_findingsDock, &QDockWidget::visibilityChanged, this, [this](bool visible) {
        if (!visible)
            return;
        // Opened the first time: a few lines high, so the pension screen keeps its room.
        if (!m_findingsDock->property("zarnoveldSized").toBool()) {
            m_findingsDock->setProperty("zarnoveldSized", true);
            resizeDocks({m_findingsDock}, {7 * fontMetrics().lineSpacing()}, Qt::Vertical);
        }
        if (m_checkTimer->isActive())
            refreshFindings();
    });

    auto *view = menuBar()->addMenu(QStringLiteral("Beel&d"));
    view->setObjectName(QStringLiteral("mnuBeeld"));
    QAction *findingsAction = m_findingsDock->toggleViewAction();
    findingsAction->setObjectName(QStringLiteral("actControle"));
    findingsAction->setText(QStringLiteral("&Controle"));
    findingsAction->setShortcut(QKeySequence(Qt::Key_F8));
    view->addAction(findingsAction);

    auto *help = menuBar()->addMenu(QStringLiteral("&Help"));
    help->setObjectName(QStringLiteral("mnuHelp"));
    QAction *guide = help->addAction(QStringLiteral("&Handleiding"), this, &MainWindow::showGuide);
    guide->setObjectName(QStringLiteral("actHandleiding"));
    guide->setShortcut(QKeySequence(Qt::Key_F1));
    help->addAction(QStringLiteral("&Over Zarnoveld"), this, &MainWindow::showAbout)->setObjectName(QStringLiteral("actOver"));

    m_fileLabel = new ElidedLabel(this);
    m_fileLabel->setObjectName(QStringLiteral("lblDossierbestand"));
    m_savedLabel = new QLabel(this);
    m_savedLabel->setObjectName(QStringLiteral("lblOpgeslagen"));
    m_checkLabel = new QLabel(this);
    m_checkLabel->setObjectName(QStringLiteral("lblControle"));
    statusBar()->addWidget(m_fileLabel, 1);
    statusBar()->addPermanentWidget(m_savedLabel);
    statusBar()->addPermanentWidget(m_checkLabel);

    m_checkTimer = new QTimer(this);
    m_checkTimer->setSingleShot(true);
    m_checkTimer->setInterval(CheckPauseMs);
    connect(m_checkTimer, &QTimer::timeout, this, &MainWindow::refreshFindings);
    // The change handler runs inside the change (before the model holds the new value): the
    // title and status follow once it is done.
    m_changeTimer = new QTimer(this);
    m_changeTimer->setSingleShot(true);
    m_changeTimer->setInterval(0);
    connect(m_changeTimer, &QTimer::timeout, this, [this] {
        updateTitle();
        updateStatus();
    });

    if (!restoreGeometry(UserSettings::value(kGeometry).toByteArray())) {
        QSize wanted(1280, 860);
        if (QScreen *s = screen()) {
            wanted = wanted.boundedTo(s->availableGeometry().size());
            resize(wanted);
            move(s->availableGeometry().center() - rect().center());
        } else {
            resize(wanted);
        }
    }
    fitToScreen();
    updateTitle();
    updateFigureYearAction();
    updateStatus();
}

MainWindow::~MainWindow()
{
    if (m_case)
        m_case->setChangeHandler({});
}

void MainWindow::setFileChooser(FileChooser chooser)
{
    m_chooser = std::move(chooser);
}

// What the adviser gave as a new case's place, as its name in the database: a path from the file
// question loses its folder and the case suffix; a typed name stays as it is.
static QString caseNameFrom(const QString &given)
{
    if (!given.startsWith(QLatin1Char('/')))
        return given;
    const QString file = QFileInfo(given).fileName();
    return file.endsWith(Commands::caseSuffix()) ? file.left(file.size() - Commands::caseSuffix().size()) : file;
}

QString MainWindow::chooseFile(FileQuestion question, const QString &title, const QString &proposal, const QString &filter)
{
    if (m_chooser)
        return m_chooser(question, title, proposal, filter);
    // In the office database a case is picked from its list, and a new one given a name, not a
    // place on this PC's disk.
    if (question == FileQuestion::OpenCase && !Commands::database().isEmpty())
        return pickFromDatabase();
    if (question == FileQuestion::NewCase && !Commands::database().isEmpty()) {
        QInputDialog dialog(this);
        dialog.setObjectName(QStringLiteral("dlgDossiernaam"));
        dialog.setWindowTitle(title);
        dialog.setLabelText(QStringLiteral("Naam van het dossier in %1:").arg(CaseAddress::parse(Commands::database()).display()));
        dialog.setTextValue(caseNameFrom(proposal));
        return dialog.exec() == QDialog::Accepted ? dialog.textValue().trimmed() : QString();
    }
    // Qt's own dialog, not the desktop's: it speaks Dutch with the catalogue the program loads.
    const auto options = QFileDialog::DontUseNativeDialog;
    // An existing export is replaced only after the program's own question (exportTo), which a
    // headless run or a test answers too; the dialog must not ask it a second time.
    if (question == FileQuestion::ExportJson)
        return QFileDialog::getSaveFileName(this, title, proposal, filter, nullptr, options | QFileDialog::DontConfirmOverwrite);
    if (question == FileQuestion::NewCase)
        return QFileDialog::getSaveFileName(this, title, proposal, filter, nullptr, options);
    return QFileDialog::getOpenFileName(this, title, proposal, filter, nullptr, options);
}

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
        // A colleague has the case open: the adviser may still read it. Headless, the question
        // is answered "no" and the refusal is what is reported.
        const QString address = Commands::caseAddress(path);
        const QString holder = CaseAddress::isServer(address) ? HostApplication::holderOf(address) : QString();
        if (!holder.isEmpty()
            && MessageBox::yesNo(this, holder + QStringLiteral("\n\nWilt u het dossier alleen-lezen openen?"),
                                 QStringLiteral("Dossier in gebruik"))) {
            try {
                setCase(HostApplication::openForReading(address), true);
                return true;
            } catch (const VandrelApplication::HostError &again) {
                if (error)
                    *error = again.description();
                return false;
            }
        }
        if (error)
            *error = e.description();
        return false;
    }
}

void MainWindow::openFromDatabase()
{
    if (!leavePensionScreen())
        return;
    const QString name = pickFromDatabase();
    if (!name.isEmpty())
        openRecent(name);
}

QString MainWindow::pickFromDatabase()
{
    QStringList lines;
    try {
        lines = Commands::caseListing();
    } catch (const VandrelApplication::HostError &e) {
        MessageBox::ok(this, e.description(), QStringLiteral("Dossiers niet opgehaald"));
        return QString();
    }
    if (lines.isEmpty()) {
        MessageBox::ok(this, QStringLiteral("De database bevat nog geen dossiers."), QStringLiteral("Openen uit database"),
                       MessageBox::Icon::Information);
        return QString();
    }
    QStringList shown;
    for (const QString &line : lines)
        shown << QString(line).replace(QLatin1Char('\t'), QStringLiteral("  -  "));
    QInputDialog dialog(this);
    dialog.setObjectName(QStringLiteral("dlgOpenenDatabase"));
    dialog.setWindowTitle(QStringLiteral("Openen uit database"));
    dialog.setLabelText(QStringLiteral("Dossiers in %1:").arg(CaseAddress::parse(Commands::database()).display()));
    dialog.setComboBoxItems(shown);
    dialog.setComboBoxEditable(false);
    if (dialog.exec() != QDialog::Accepted)
        return QString();
    return lines.at(shown.indexOf(dialog.textValue())).section(QLatin1Char('\t'), 0, 0);
}

void MainWindow::setCase(const std::shared_ptr<HostApplication> &application, bool chosenReadOnly)
{
    // The old case's control ends first, so that it removes the schemes it marked for removal.
    m_pensions->release();
    if (m_case)
        m_case->setChangeHandler({});
    m_case = application;
    m_lastStored = QDateTime();
    if (m_case) {
        m_case->setTitle(QStringLiteral("Zarnoveld"));
        m_case->setErrorHandler([this](const VandrelApplication::ErrorRecord &record) {
            ErrorLog::append(record);
            ErrorLog::show(this, record);
            // A refusal may have made the case read-only (a colleague took it during an outage):
            // the title and the status bar say so at once.
            updateTitle();
            updateStatus();
        });
        if (!m_case->isReadOnly()) {
            try {
                m_case->emptyBin(QDateTime::currentDateTimeUtc().addDays(-BinDialog::KeepDays));
            } catch (const VandrelApplication::HostError &e) {
                ErrorLog::append(ErrorLog::recordFor(e, QStringLiteral("emptyBin"), QStringLiteral("Zarnoveld")));
            }
        }
        m_case->setChangeHandler([this] {
            m_lastStored = QDateTime::currentDateTime();
            m_changeTimer->start();
            m_checkTimer->start(CheckPauseMs);
        });
        if (!m_case->filePath().isEmpty() && !UserSettings::addRecentCase(m_case->filePath()))
            statusBar()->showMessage(QStringLiteral("De lijst met recente dossiers kon niet worden bewaard."), 5000);
    }
    updateFigureYearAction();
    // A case shown read-only cannot take a scheme back from the bin or lose it.
    for (const char *name : {"actTerugzetten", "actPrullenbakLegen"})
        if (auto *act = findChild<QAction *>(QLatin1String(name)))
            act->setEnabled(m_case && !m_case->isReadOnly());
    m_participants->setApplication(m_case);
    if (currentScreen() == Pensioenen && m_case) {
        QString reason;
        if (m_pensions->ensureControl(&reason))
            m_pensions->setApplication(m_case);
    }
    m_findings->clear();
    m_checkState.clear();
    updateTitle();
    if (m_case && m_case->readOnly() && !chosenReadOnly)
        MessageBox::ok(this, QStringLiteral("U mag het dossier %1 niet wijzigen: het is alleen-lezen geopend. U kunt het bekijken "
                                            "en exporteren; een wijziging wordt geweigerd en niet opgeslagen.")
                                 .arg(m_case->caseName()),
                       QStringLiteral("Dossier alleen-lezen"), MessageBox::Icon::Information);
    updateStatus();
    // The first check once the window has painted the case.
    if (m_case)
        m_checkTimer->start(300);
    else
        m_checkTimer->stop();
}

MainWindow::Screen MainWindow::currentScreen() const
{
    return Screen(m_stack->currentIndex());
}

bool MainWindow::leavePensionScreen()
{
    return currentScreen() != Pensioenen || m_pensions->canLeave();
}

void MainWindow::syncNavigation()
{
    const QSignalBlocker block(m_navigation);
    m_navigation->setCurrentRow(m_stack->currentIndex(), QItemSelectionModel::ClearAndSelect);
}

bool MainWindow::showScreen(Screen screen)
{
    if (screen == currentScreen()) {
        syncNavigation();
        return true;
    }
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
    syncNavigation();
    return true;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!leavePensionScreen()) {
        event->ignore();
        return;
    }
    saveGeometrySetting();
    m_pensions->release();
    event->accept();
}

void MainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    fitToScreen();
}

// Never larger than the screen's free area, and never partly off it: a size remembered on a
// large monitor would otherwise hide the window's edges on the laptop screen.
void MainWindow::fitToScreen()
{
    QScreen *s = screen();
    if (!s)
        return;
    const QRect available = s->availableGeometry();
    const QRect frame = frameGeometry();
    const QSize decoration = frame.size() - size();
    const QSize most = available.size() - decoration;
    if (width() > most.width() || height() > most.height())
        resize(size().boundedTo(most));
    const QRect now = frameGeometry();
    const int x = qBound(available.left(), now.left(), qMax(available.left(), available.right() + 1 - now.width()));
    const int y = qBound(available.top(), now.top(), qMax(available.top(), available.bottom() + 1 - now.height()));
    if (x != now.left() || y != now.top())
        move(x, y);
}

void MainWindow::saveGeometrySetting()
{
    if (!UserSettings::setValue(kGeometry, saveGeometry()))
        ErrorLog::append(ErrorLog::recordFor(
            VandrelApplication::HostError(VandrelApplication::HostErrorCode::StoreFailed,
                                          QStringLiteral("De instellingen %1 konden niet worden geschreven.").arg(UserSettings::fileName()),
                                          QStringLiteral("Zarnoveld")),
            QStringLiteral("saveGeometry"), QStringLiteral("Zarnoveld")));
}

void MainWindow::newCase()
{
    if (!leavePensionScreen())
        return;
    // The adviser's case folder holds personal data: the owner's alone.
    SafeFile::makePrivateDir(dossierFolder());
    const QString target = chooseFile(FileQuestion::NewCase, QStringLiteral("Nieuw dossier opslaan als"),
                                      dossierFolder() + QStringLiteral("/nieuw-dossier") + Commands::caseSuffix(),
                                      QStringLiteral("Dossiers (*%1)").arg(Commands::caseSuffix()));
    if (target.isEmpty())
        return;
    const QString path = !Commands::database().isEmpty() ? Commands::caseAddress(caseNameFrom(target))
                         : target.endsWith(Commands::caseSuffix()) ? target : target + Commands::caseSuffix();
    try {
        auto application = HostApplication::createFile(path);
        // A new case starts with the people: the pension screen needs their birth dates.
        if (currentScreen() == Pensioenen) {
            m_pensions->release();
            m_stack->setCurrentIndex(Deelnemers);
            syncNavigation();
        }
        setCase(application);
    } catch (const VandrelApplication::HostError &e) {
        MessageBox::ok(this, e.description(), QStringLiteral("Dossier niet gemaakt"));
    }
}

void MainWindow::openFile()
{
    if (!leavePensionScreen())
        return;
    const QString path = chooseFile(FileQuestion::OpenCase, QStringLiteral("Dossier openen"), dossierFolder(),
                                    QStringLiteral("Dossiers (*%1)").arg(Commands::caseSuffix()));
    if (path.isEmpty())
        return;
    openRecent(path);
}

void MainWindow::openRecent(const QString &path)
{
    QString error;
    if (!openCase(path, &error))
        MessageBox::ok(this, error, QStringLiteral("Dossier niet geopend"));
}

void MainWindow::fillRecentMenu()
{
    m_recent->clear();
    const QStringList recent = UserSettings::recentCases();
    for (int i = 0; i < recent.size(); ++i) {
        const QString label = CaseAddress::isServer(recent[i]) ? CaseAddress::parse(recent[i]).caseName
                                                                : QFileInfo(recent[i]).fileName();
        QAction *act = m_recent->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(label));
        act->setObjectName(QStringLiteral("actRecent%1").arg(i + 1));
        act->setToolTip(recent[i]);
        act->setStatusTip(recent[i]);
        const QString path = recent[i];
        connect(act, &QAction::triggered, this, [this, path] {
            if (leavePensionScreen())
                openRecent(path);
        });
    }
    if (recent.isEmpty())
        m_recent->addAction(QStringLiteral("&Geen recente dossiers"))->setEnabled(false);
}

void MainWindow::importJson()
{
    if (!leavePensionScreen())
        return;
    const QString json = chooseFile(FileQuestion::ImportJson, QStringLiteral("JSON-dossier importeren"), QString(),
                                    QStringLiteral("JSON-dossiers (*.json)"));
    if (json.isEmpty())
        return;
    // The adviser's case folder holds personal data: the owner's alone.
    SafeFile::makePrivateDir(dossierFolder());
    const QString target = chooseFile(FileQuestion::NewCase, QStringLiteral("Nieuw dossier opslaan als"),
                                      dossierFolder() + QLatin1Char('/') + QFileInfo(json).completeBaseName()
                                          + Commands::caseSuffix(),
                                      QStringLiteral("Dossiers (*%1)").arg(Commands::caseSuffix()));
    if (target.isEmpty())
        return;
    try {
        setCase(Commands::importCase(json, Commands::database().isEmpty() ? target : caseNameFrom(target)));
    } catch (const VandrelApplication::HostError &e) {
        MessageBox::ok(this, e.description(), QStringLiteral("Dossier niet gemaakt"));
    }
}

void MainWindow::exportJson()
{
    if (!m_case || !leavePensionScreen())
        return;
    const QString path = chooseFile(FileQuestion::ExportJson, QStringLiteral("Dossier exporteren"), QString(),
                                    QStringLiteral("JSON-dossiers (*.json)"));
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
        statusBar()->showMessage(QStringLiteral("Geexporteerd naar %1").arg(path), 5000);
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

void MainWindow::showBin()
{
    if (!m_case)
        return;
    auto *dialog = findChild<BinDialog *>();
    if (!dialog) {
        dialog = new BinDialog(this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &BinDialog::restoreRequested, this, &MainWindow::restoreFromBin);
        connect(dialog, &BinDialog::emptyRequested, this, &MainWindow::emptyBin);
    }
    dialog->setEntries(m_case->binEntries());
    // Window-modal but not blocking: the program (and a test) carries on while it is open.
    dialog->open();
}

void MainWindow::restoreFromBin(qint64 id)
{
    if (!m_case || m_case->isReadOnly())
        return;
    // The scheme shown must pass its check first, as for any other switch of scheme.
    if (!leavePensionScreen())
        return;
    try {
        qint16 anvId = 0;
        for (const BinEntry &entry : m_case->binEntries())
            if (entry.id == id)
                anvId = entry.anvId;
        const qint16 penId = m_case->restoreFromBin(id);
        if (currentScreen() == Pensioenen) {
            m_pensions->setApplication(m_case);
            selectScheme(anvId, penId);
        }
        statusBar()->showMessage(QStringLiteral("Regeling %1 is teruggezet.").arg(penId), 5000);
    } catch (const VandrelApplication::HostError &e) {
        MessageBox::ok(this, e.description(), QStringLiteral("Regeling niet teruggezet"));
    }
    if (auto *dialog = findChild<BinDialog *>())
        dialog->setEntries(m_case->binEntries());
}

void MainWindow::emptyBin()
{
    if (!m_case || m_case->isReadOnly())
        return;
    const qsizetype count = m_case->binEntries().size();
    if (count == 0) {
        MessageBox::ok(this, QStringLiteral("De prullenbak van dit dossier is leeg."), QStringLiteral("Prullenbak legen"),
                       MessageBox::Icon::Information);
        return;
    }
    const QString text = count == 1 ? QStringLiteral("De regeling in de prullenbak wordt definitief verwijderd. Doorgaan?")
                                    : QStringLiteral("De %1 regelingen in de prullenbak worden definitief verwijderd. Doorgaan?").arg(count);
    if (!MessageBox::yesNo(this, text, QStringLiteral("Prullenbak legen")))
        return;
    try {
        m_case->emptyBin();
    } catch (const VandrelApplication::HostError &e) {
        MessageBox::ok(this, e.description(), QStringLiteral("Prullenbak niet geleegd"));
    }
    if (auto *dialog = findChild<BinDialog *>())
        dialog->setEntries(m_case->binEntries());
}

void MainWindow::showGuide()
{
    MessageBox::ok(this,
                   QStringLiteral(
                       "Zarnoveld in het kort\n\n"
                       "1. Deelnemers: vul de naam, geboortedatum en categorie van de aanvrager in, en van de "
                       "partner als die er is. Leg de dienstverbanden vast.\n"
                       "2. Pensioenen: kies links een regeling in de lijst of maak er een met Nieuw. Vul de "
                       "regeling en de toezeggingen in. Een veld wordt opgeslagen zodra u het verlaat en het "
                       "klopt; klopt het niet, dan zegt een melding wat er verwacht wordt.\n"
                       "3. Controle (F8) toont alle bevindingen van het hele dossier. Dubbelklik op een "
                       "bevinding om naar die regeling te gaan.\n"
                       "4. Een verwijderde regeling staat %1 dagen in de prullenbak: Bewerken > Verwijderde "
                       "regeling terugzetten.\n\n"
                       "Sneltoetsen: Ctrl+N nieuw dossier, Ctrl+O openen, F8 controle, Ctrl+Q afsluiten.")
                       .arg(BinDialog::KeepDays),
                   QStringLiteral("Handleiding"), MessageBox::Icon::Information);
}

void MainWindow::showAbout()
{
    MessageBox::ok(this,
                   QStringLiteral("Zarnoveld %1\n\nAdviesdossiers met het pensioenscherm van VandrelPensioen.\n"
                                  "Rekenjaar van de fiscale bedragen: %2.\n"
                                  "Licentie: Apache-2.0, zie LICENSES bij het programma.")
                       .arg(QStringLiteral(ZARNOVELD_VERSION))
                       .arg(HostApplication::figuresYear()),
                   QStringLiteral("Over Zarnoveld"), MessageBox::Icon::Information);
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
                                                      : QFileInfo(m_case->caseName()).completeBaseName();
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
                                  : CaseAddress::isServer(m_case->filePath())
                                  ? QDir(dossierFolder()).filePath(m_case->caseName() + QStringLiteral(".pdf"))
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
    if (!m_case) {
        setWindowTitle(QStringLiteral("Zarnoveld"));
        return;
    }
    QString names;
    try {
        const auto dossier = m_case->Get_Dossier();
        names = nameOf(dossier->Get_Aanvrager(1));
        if (names.isEmpty())
            names = QStringLiteral("Nieuwe klant");
        if (const auto partner = dossier->Get_Aanvrager(2)) {
            const QString partnerName = nameOf(partner);
            names += QStringLiteral(" en ") + (partnerName.isEmpty() ? QStringLiteral("partner") : partnerName);
        }
    } catch (const VandrelApplication::HostError &) {
        names = QStringLiteral("Dossier");
    }
    if (m_case->isReadOnly())
        names += QStringLiteral(" [alleen-lezen]");
    setWindowTitle(names + kTitleSuffix);
}

void MainWindow::updateStatus()
{
    auto *fileLabel = static_cast<ElidedLabel *>(m_fileLabel);
    if (!m_case) {
        fileLabel->setFullText(QStringLiteral("Geen dossier geopend"));
        fileLabel->setToolTip(QString());
        m_savedLabel->clear();
        m_checkLabel->clear();
        return;
    }
    const QString file = m_case->filePath();
    // A case on the server is named as advisers know it, with the database it lives in.
    const QString where = CaseAddress::isServer(file)
                              ? QStringLiteral("%1 (%2)").arg(m_case->caseName(), CaseAddress::parse(file).display())
                              : file;
    fileLabel->setFullText(file.isEmpty() ? QStringLiteral("Dossier alleen in het geheugen") : QStringLiteral("Dossier: %1").arg(where));
    // The tooltip keeps the exact address (never a password: an address cannot hold one).
    fileLabel->setToolTip(file);
    if (m_case->isReadOnly())
        m_savedLabel->setText(QStringLiteral("Alleen lezen: wijzigingen worden niet opgeslagen"));
    else if (file.isEmpty())
        m_savedLabel->setText(QStringLiteral("Wijzigingen worden niet bewaard"));
    else if (m_lastStored.isValid())
        m_savedLabel->setText(QStringLiteral("Alle wijzigingen opgeslagen (laatste om %1)")
                                  .arg(m_lastStored.toString(QStringLiteral("HH:mm:ss"))));
    else
        m_savedLabel->setText(QStringLiteral("Alle wijzigingen opgeslagen"));
    m_checkLabel->setText(m_checkState.isEmpty() ? QStringLiteral("Controle: nog niet uitgevoerd") : m_checkState);
}

void MainWindow::refreshFindings()
{
    m_checkTimer->stop();
    if (!m_case)
        return;
    if (!m_checker) {
        m_checker = std::make_unique<Check::Checker>();
        QString error;
        if (!m_checker->prepare(&error)) {
            m_checker.reset();
            m_checkState = QStringLiteral("Controle: niet beschikbaar");
            m_findings->clear();
            m_findings->addItem(QStringLiteral("De controle kan niet worden uitgevoerd: %1").arg(error));
            updateStatus();
            return;
        }
    }
    // A case of 2 x 99 schemes takes a noticeable moment: the adviser sees that it is busy.
    m_checkLabel->setText(QStringLiteral("Controle: bezig..."));
    m_checkLabel->repaint();
    QApplication::setOverrideCursor(Qt::BusyCursor);
    const auto restoreCursor = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
    Check::CaseResult result;
    const QString source = m_case->filePath().isEmpty() ? QStringLiteral("dossier") : m_case->filePath();
    try {
        // The check changes the case it checks (loading a scheme may fill derived values): it gets
        // a copy that lives in memory only.
        result = m_checker->checkCase(HostApplication::importJson(m_case->exportJson()), source);
    } catch (const VandrelApplication::HostError &e) {
        result.source = source;
        result.unreadable = e.description();
    }
    showFindings(result);
}

void MainWindow::showFindings(const Check::CaseResult &result)
{
    m_findings->clear();
    const QList<Check::Finding> list = Check::findings(result);
    int failing = 0;
    for (const Check::Finding &finding : list) {
        auto *item = new QListWidgetItem(finding.text, m_findings);
        item->setData(AnvRole, finding.anvId);
        item->setData(PenRole, finding.penId);
        if (finding.penId > 0)
            ++failing;
        else
            item->setForeground(palette().color(QPalette::PlaceholderText));
    }
    if (list.isEmpty())
        m_findings->addItem(QStringLiteral("Geen bevindingen: alle regelingen zijn in orde."));
    if (!result.unreadable.isEmpty())
        m_checkState = QStringLiteral("Controle: dossier niet te lezen");
    else if (failing == 0)
        m_checkState = QStringLiteral("Controle: in orde");
    else
        m_checkState = failing == 1 ? QStringLiteral("Controle: 1 regeling met een fout")
                                    : QStringLiteral("Controle: %1 regelingen met een fout").arg(failing);
    updateStatus();
}

void MainWindow::findingActivated(QListWidgetItem *item)
{
    if (!item)
        return;
    const auto anvId = static_cast<qint16>(item->data(AnvRole).toInt());
    const auto penId = static_cast<qint16>(item->data(PenRole).toInt());
    if (penId > 0)
        selectScheme(anvId, penId);
}

bool MainWindow::selectScheme(qint16 anvId, qint16 penId)
{
    if (!showScreen(Pensioenen))
        return false;
    QWidget *control = m_pensions->control();
    auto *list = control ? control->findChild<QTreeWidget *>(QStringLiteral("LstPensioenen")) : nullptr;
    if (!list)
        return false;
    // The list keys each row "@" followed by Anv_Id * 100 + Pen_Id.
    const QString key = QLatin1Char('@') + QString::number(anvId * 100 + penId);
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        QTreeWidgetItem *row = list->topLevelItem(i);
        if (row->data(0, VandrelPensioen::KeyRole).toString() != key)
            continue;
        // As a click: the screen checks the scheme it shows and may refuse to leave it.
        list->setCurrentItem(row);
        list->scrollToItem(row);
        list->setFocus(Qt::OtherFocusReason);
        return list->currentItem() == row;
    }
    return false;
}

} // namespace Zarnoveld
