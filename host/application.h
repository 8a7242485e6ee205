// The program: ties the windows, the event loop and the session together.
#pragma once

#include "event_loop.h"
#include "host_window.h"
#include "module_library.h"
#include "options.h"
#include "scenario_player.h"
#include "session.h"

#include <deque>
#include <memory>

namespace zrhost {

/// One run, from the loaded library to the orderly end. GUI thread, but for post().
class Application : public Stage
{
public:
    Application(Options options, std::vector<ScenarioStep> scenario);
    ~Application() override;

    /// @return the program's exit status @throws HostError
    int run();

    HWND nativeWindow(WindowId id) override;
    Size windowSize(WindowId id) override;
    void resizeWindow(WindowId id, Size size) override;
    void saveWindow(WindowId id, const std::string& file) override;
    void click(WindowId id, Point at, int times) override;
    void turnWheel(WindowId id, Point at, int steps) override;
    void typeText(const std::string& utf8) override;
    void pressKey(Key key) override;
    void print(const std::string& line) override;
    void hear(const MessageWords& message) override;
    void fail(const std::string& line) override;
    void quit() override;
    void post(std::function<void()> task) override;
    void holdCommands(int ms) override;

private:
    void joinMeeting();
    void runStep(const ScenarioStep& step);
    void linger();
    void reportMessages();
    void watchInput();
    void runTypedCommands();
    void runTyped(const std::string& line);
    void saveFinalScreenshot();
    void finish() noexcept;
    [[nodiscard]] HostWindow& window(WindowId id);

    Options m_options;
    ScenarioPlayer m_player;
    int m_status = 0;
    bool m_tolerant = false; ///< a person at the terminal can correct what failed
    bool m_held = false;
    std::deque<std::string> m_typed; ///< lines that have not run yet

    // Destroyed from the last to the first: the session, then the library, then the windows.
    EventLoop m_loop;
    std::unique_ptr<HostDisplay> m_display;
    std::unique_ptr<HostWindow> m_main;
    std::unique_ptr<HostWindow> m_second;
    std::unique_ptr<ModuleLibrary> m_library;
    std::unique_ptr<Session> m_session;
};

} // namespace zrhost
