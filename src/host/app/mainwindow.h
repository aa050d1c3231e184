#pragma once

#include "casereport.h"
#include "check.h"
#include "hostapplication.h"

#include <QMainWindow>

class QListWidget;
class QPrinter;
class QStackedWidget;

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
    void setCase(const std::shared_ptr<HostApplication> &application);
    std::shared_ptr<HostApplication> currentCase() const { return m_case; }

    // Switches screens the way the user does; false when the pension screen refused to be left.
    bool showScreen(Screen screen);
    Screen currentScreen() const;
    PensionScreen *pensionScreen() const { return m_pensions; }

    // "Exporteren als PDF..." without its file dialog: asks before replacing an existing file and
    // tells the user what went wrong; true when the file was written.
    bool exportPdfTo(const QString &path);
    ParticipantsScreen *participantsScreen() const { return m_participants; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    bool leavePensionScreen();
    void newFromExample();
    void openFile();
    void importJson();
    void exportJson();
    void updateTitle();
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
    std::unique_ptr<Check::Checker> m_checker;   // made on the first report
};

} // namespace Zarnoveld
