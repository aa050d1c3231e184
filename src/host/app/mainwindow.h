#pragma once

#include "hostapplication.h"

#include <QMainWindow>

class QListWidget;
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
    // Exports the open case to path; an existing file is replaced only after the user said Yes.
    // Returns true when the file was written.
    bool exportTo(const QString &path);

    // Switches screens the way the user does; false when the pension screen refused to be left.
    bool showScreen(Screen screen);
    Screen currentScreen() const;
    PensionScreen *pensionScreen() const { return m_pensions; }
    ParticipantsScreen *participantsScreen() const { return m_participants; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    bool leavePensionScreen();
    void newFromExample();
    void openFile();
    void importJson();
    void exportJson();
    void importOverview();
    void updateTitle();
    // Moves the open case to this year's fiscal figures, after the adviser confirms.
    void moveToCurrentFigureYear();
    void updateFigureYearAction();

    std::shared_ptr<HostApplication> m_case;
    QListWidget *m_navigation = nullptr;
    QStackedWidget *m_stack = nullptr;
    ParticipantsScreen *m_participants = nullptr;
    PensionScreen *m_pensions = nullptr;
    QAction *m_figureYear = nullptr;
};

} // namespace Zarnoveld
