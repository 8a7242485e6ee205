// The workbench's window: the picture in the middle, everything else in docks around it.
#pragma once

#include "meeting.h"

#include <QMainWindow>

namespace zrworkbench {

class LogTap;
class ParticipantPanel;
class ScreenView;

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Loads the module. @param library empty for the one beside the program, or where it is
    /// installed @throws zrhost::HostError
    MainWindow(LogTap& log, const QString& library);
    /// Unloads the module.
    ~MainWindow() override;

    [[nodiscard]] Meeting& meeting() { return *m_meeting; }
    /// Begins a meeting of drawn pictures. @throws zrhost::HostError
    void beginMeeting(int participants);
    /// Opens a scenario or a trace. @throws zrhost::HostError
    void openFile(const QString& file);
    /// The same; the user is told of a failure, and waited for.
    void tryFile(const QString& file);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void makeActions();
    void makeMenus();
    void makeDocks(LogTap& log);
    QAction* makeAction(const QString& text, const QString& toolTip, const QKeySequence& keys,
                        std::function<void()> run);
    class QDockWidget* addPanel(Qt::DockWidgetArea area, const QString& title, QWidget* panel);
    void askForMeeting();
    void askForFile();
    void askWhereToSave();
    void askWhereToPhotograph();
    void togglePlaying(Meeting::Speed speed);
    void showPlaying();
    void showFailure(const Event& event);
    void showAbout();
    /// Runs what may fail, and shows why it did.
    void attempt(const std::function<void()>& action);

    std::unique_ptr<ScreenView> m_second;
    ScreenView* m_main;
    std::unique_ptr<Meeting> m_meeting;
    QWidget* m_switches = nullptr; ///< of the meeting as a whole
    class QDockWidget* m_scenarioDock = nullptr;
    QAction* m_new = nullptr;
    QAction* m_open = nullptr;
    QAction* m_save = nullptr;
    QAction* m_photograph = nullptr;
    QAction* m_rewind = nullptr;
    QAction* m_step = nullptr;
    QAction* m_stepToChange = nullptr;
    QAction* m_play = nullptr;
    QAction* m_playFast = nullptr;
};

} // namespace zrworkbench
