// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "casereport.h"
#include "check.h"
#include "hostapplication.h"

#include <QDateTime>
#include <QMainWindow>

#include <functional>
#include <memory>

class QAction;
class QDockWidget;
class QLabel;
class QListWidget;
class QMenu;
class QPrinter;
class QStackedWidget;
class QTimer;
class QListWidgetItem;

namespace Zarnoveld {

class ParticipantsScreen;
class PensionScreen;

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    enum Screen { Deelnemers = 0, Pensioenen = 1 };

    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    // Opens a case (a case file, or a JSON example which becomes a new case file beside it).
    bool openCase(const QString &path, QString *error);
    // Shows a case. A case that turns out read-only is announced, unless the adviser just chose to
    // read it (chosenReadOnly).
    void setCase(const std::shared_ptr<HostApplication> &application, bool chosenReadOnly = false);
    std::shared_ptr<HostApplication> currentCase() const { return m_case; }
    // Exports the open case to path; an existing file is replaced only after the user said Yes.
    // Returns true when the file was written.
    bool exportTo(const QString &path);

    // Switches screens the way the user does; false when the pension screen refused to be left.
    bool showScreen(Screen screen);
    Screen currentScreen() const;
    PensionScreen *pensionScreen() const { return m_pensions; }

    // "Exporteren als PDF..." without its file dialog: asks before replacing an existing file and
    // tells the user what went wrong; true when the file was written.
    bool exportPdfTo(const QString &path);
    ParticipantsScreen *participantsScreen() const { return m_participants; }

    // Asks the user for a file; the default shows Qt's own (Dutch) file dialog. Tests and
    // scripted runs answer instead. An empty answer means the user cancelled.
    enum class FileQuestion { OpenCase, NewCase, ImportJson, ExportJson };
    using FileChooser = std::function<QString(FileQuestion question, const QString &title, const QString &proposal,
                                              const QString &filter)>;
    void setFileChooser(FileChooser chooser);

    // Runs the whole-case check now instead of after the pause that follows an edit.
    void refreshFindings();
    // Shows that participant's scheme on the pension screen, as a click in its list would.
    bool selectScheme(qint16 anvId, qint16 penId);

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    bool leavePensionScreen();
    void newCase();
    void openFile();
    void openFromDatabase();
    // The database's cases with who has each one open; the name picked, or empty.
    QString pickFromDatabase();
    void importJson();
    void exportJson();
    void importOverview();
    void updateTitle();
    // Moves the open case to this year's fiscal figures, after the adviser confirms.
    void moveToCurrentFigureYear();
    void updateFigureYearAction();
    void openRecent(const QString &path);
    void fillRecentMenu();
    void showBin();
    void restoreFromBin(qint64 id);
    void emptyBin();
    void showGuide();
    void showAbout();
    void caseChanged();
    void updateStatus();
    void showFindings(const Check::CaseResult &result);
    void findingActivated(QListWidgetItem *item);
    void syncNavigation();
    void fitToScreen();
    void saveGeometrySetting();
    QString chooseFile(FileQuestion question, const QString &title, const QString &proposal, const QString &filter);
    void exportPdf();
    void printCase();
    bool finishTyping();
    // The report of the open case, checked on a copy; nullptr (the user told why) when it fails.
    std::unique_ptr<VandrelReport::CaseReport> buildReport();

    std::shared_ptr<HostApplication> m_case;
    QListWidget *m_navigation = nullptr;
    QStackedWidget *m_stack = nullptr;
    ParticipantsScreen *m_participants = nullptr;
    PensionScreen *m_pensions = nullptr;
    QAction *m_figureYear = nullptr;
    QMenu *m_recent = nullptr;
    QDockWidget *m_findingsDock = nullptr;
    QListWidget *m_findings = nullptr;
    QLabel *m_fileLabel = nullptr;
    QLabel *m_savedLabel = nullptr;
    QLabel *m_checkLabel = nullptr;
    QTimer *m_checkTimer = nullptr;
    QTimer *m_changeTimer = nullptr;
    QDateTime m_lastStored;
    QString m_checkState;
    std::unique_ptr<Check::Checker> m_checker;
    FileChooser m_chooser;
};

} // namespace Zarnoveld
