// The meeting that the workbench shows: the module, its host, and the scenario of what is done.
#pragma once

#include "module_library.h"
#include "scenario_player.h"
#include "session.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

namespace zrworkbench {

class ScreenView;

/// Something that happened in the meeting.
struct Event
{
    enum class Kind
    {
        Command, ///< what was done
        Message, ///< from the module
        Answer,  ///< what a command prints
        Failure
    };
    Kind kind = Kind::Answer;
    qint64 timeMs = 0; ///< since the meeting began
    QString name;
    QString text;
};

/// GUI thread. All but the user's own mouse in the picture goes through the commands of scenarios;
/// functions that fail say so with an event. Make one at most.
class Meeting : public QObject, private zrhost::Stage
{
    Q_OBJECT

public:
    using Speed = zrhost::ScenarioPlayer::Speed;

    /// Loads the module. Both views must outlive the meeting.
    /// @param library empty for the one beside the program, or where it is installed
    /// @throws zrhost::HostError
    Meeting(ScreenView& main, ScreenView& second, const QString& library);
    /// Ends the meeting and unloads the module.
    ~Meeting() override;

    /// An empty meeting, and an empty scenario. @throws zrhost::HostError where the module makes
    /// none
    void begin();
    /// Does what the words of a command say, and adds it to the scenario. @return success
    bool perform(const QStringList& words);
    /// The same with a line, as in scenarios.
    bool performLine(const QString& line);

    /// Begins anew with the scenario or trace of a file. @throws zrhost::HostError
    void open(const QString& file);
    /// Writes the scenario. @throws zrhost::HostError
    void save(const QString& file) const;
    /// Begins anew, with the scenario's first step as the next one. @throws zrhost::HostError
    void rewind();
    void play(Speed speed);
    void pause();
    void step();
    void stepToChange();

    [[nodiscard]] const zrhost::ScenarioPlayer& scenario() const { return m_player; }
    [[nodiscard]] const zrhost::Session& session() const { return *m_session; }

signals:
    /// There is a new, empty meeting; nothing of the one before it is set in the module.
    void begun();
    void happened(const zrworkbench::Event& event);
    /// A command was carried out, by hand or as a step.
    void performed(const QStringList& words);
    /// Participants, messages or the scenario have changed; some time after the first change.
    void changed();

private:
    HWND nativeWindow(zrhost::WindowId id) override;
    zrhost::Size windowSize(zrhost::WindowId id) override;
    void resizeWindow(zrhost::WindowId id, zrhost::Size size) override;
    void saveWindow(zrhost::WindowId id, const std::string& file) override;
    void click(zrhost::WindowId id, zrhost::Point at, int times) override;
    void turnWheel(zrhost::WindowId id, zrhost::Point at, int steps) override;
    void typeText(const std::string& utf8) override;
    void pressKey(zrhost::Key key) override;
    void print(const std::string& line) override;
    void hear(const zrhost::MessageWords& message) override;
    void fail(const std::string& line) override;
    void quit() override;
    void post(std::function<void()> task) override;
    void holdCommands(int ms) override;

    [[nodiscard]] ScreenView& view(zrhost::WindowId id);
    [[nodiscard]] zrhost::Point reveal(zrhost::WindowId id, zrhost::Point at);
    void openSession();
    bool run(const std::string& command);
    void tellCommand(const std::string& command);
    void tell(Event::Kind kind, const QString& name, const QString& text);
    void finish();
    void checkMessages();
    void showSoon();

    ScreenView& m_main;
    ScreenView& m_second;
    QElapsedTimer m_sinceBegin;
    QTimer m_changed;
    QTimer m_linger; ///< behind the end of a trace
    QString m_file;  ///< of the scenario
    zrhost::ScenarioPlayer m_player;
    zrhost::ModuleLibrary m_module;
    std::unique_ptr<zrhost::Session> m_session; ///< goes before the module
};

} // namespace zrworkbench
