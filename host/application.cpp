#include "application.h"

#include "command_table.h"
#include "host_error.h"
#include "host_keyboard.h"
#include "png_file.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace zrhost {

namespace {

} // namespace

Application::Application(Options options, std::vector<ScenarioStep> scenario)
    : m_options(std::move(options))
    , m_player({[this](const ScenarioStep& step) { runStep(step); },
                [this](int ms, EventLoop::Task task) { m_loop.after(ms, std::move(task)); },
                [this] { linger(); }})
{
    if (m_options.untilMs >= 0) {
        const auto isLate = [](int ms, const ScenarioStep& step) { return ms < step.timeMs; };
        scenario.erase(
            std::upper_bound(scenario.begin(), scenario.end(), m_options.untilMs, isLate),
            scenario.end());
    }
    m_player.load(std::move(scenario));
}

Application::~Application()
{
    finish();
}

int Application::run()
{
    m_loop.watchTermination([this] { quit(); });
    if (!m_options.headless) {
        m_display = openDisplay();
        (void)window(WindowId::Main);
    }
    m_library = std::make_unique<ModuleLibrary>(m_options.library);
    Session::Settings settings;
    settings.seed = m_options.seed;
    settings.pictureSize = m_options.pictureSize;
    settings.fps = m_options.fps;
    settings.followStreams = m_options.followStreams;
    settings.window = m_options.headless ? WindowId::None : WindowId::Main;
    settings.frames = m_options.scenario + ".frames";
    m_session = std::make_unique<Session>(m_library->exports(), *this, settings);
    if (!m_player.isReplay())
        joinMeeting();
    m_player.play(m_options.fast ? ScenarioPlayer::Speed::Fast : ScenarioPlayer::Speed::Real);
    watchInput();
    if (m_options.durationMs > 0)
        m_loop.after(m_options.durationMs, [this] { quit(); });
    m_loop.run();
    saveFinalScreenshot();
    reportMessages();
    finish();
    return m_status;
}

void Application::joinMeeting()
{
    m_session->openScreen();
    const zr::ScreenExports& api = m_session->api();
    api.ChangeLayout(m_session->screen(), static_cast<eLayoutType>(m_options.mode), {});
    for (int number = 1; number <= m_options.participantCount(); ++number)
        m_session->add("user" + std::to_string(number), m_options.nameOf(number),
                       m_options.sourceOf(number), m_session->nextArrivalMs());
    api.JoinMeetingFinish(m_session->screen(), true);
}

void Application::runStep(const ScenarioStep& step)
{
    try {
        bindCommand(splitWords(step.command)).run(*m_session);
    } catch (const HostError& error) {
        fail(m_options.scenario + ":" + std::to_string(step.line) + ": " + error.what());
    }
}

/// The scenario has come to its end.
void Application::linger()
{
    if (m_options.lingerMs >= 0)
        m_loop.after(m_options.lingerMs, [this] { quit(); });
}

void Application::reportMessages()
{
    if (!m_options.checkMessages)
        return;
    const std::vector<std::string> differences = m_session->messages().differences();
    for (const std::string& difference : differences)
        print(difference);
    print(differences.empty() ? "the messages are those of the scenario"
                              : std::to_string(differences.size()) + " messages differ");
    if (!differences.empty())
        m_status = 1;
}

void Application::watchInput()
{
    m_tolerant = inputIsTerminal();
    if (!m_tolerant && !m_options.interactive)
        return;
    m_loop.watchInput(
        [this](const std::string& line) {
            m_typed.push_back(line);
            runTypedCommands();
        },
        [] {}); // the run goes on without its input
}

void Application::runTypedCommands()
{
    while (!m_held && !m_typed.empty()) {
        const std::string line = std::move(m_typed.front());
        m_typed.pop_front();
        runTyped(line);
    }
}

void Application::runTyped(const std::string& line)
{
    try {
        const std::vector<std::string> words = splitWords(line);
        if (!words.empty())
            bindCommand(words).run(*m_session);
    } catch (const HostError& error) {
        fail(error.what());
    }
}

void Application::holdCommands(int ms)
{
    m_held = true;
    m_loop.after(ms, [this] {
        m_held = false;
        runTypedCommands();
    });
}

void Application::saveFinalScreenshot()
{
    if (m_options.screenshot.empty() || !(m_session->hasScreen() || m_player.isReplay()))
        return;
    try {
        saveWindow(m_session->parent(), m_options.screenshot);
        print("saved " + m_options.screenshot);
    } catch (const HostError& error) {
        fail(error.what());
    }
}

void Application::finish() noexcept
{
    if (m_session)
        m_session->printStatistics();
    m_session.reset();
    m_library.reset();
    m_second.reset();
    m_main.reset();
    m_display.reset();
}

HostWindow& Application::window(WindowId id)
{
    if (!m_display)
        throw HostError("there are no windows with --headless");
    std::unique_ptr<HostWindow>& window = id == WindowId::Second ? m_second : m_main;
    if (!window) {
        HostWindow::Events events;
        events.resized = [this, id](Size size) {
            if (m_session)
                m_session->onWindowResized(id, size);
        };
        events.closed = [this] { quit(); };
        window = m_display->makeWindow(id == WindowId::Second ? "ZRScreenMod (second window)"
                                                              : "ZRScreenMod",
                                       m_options.windowSize, std::move(events));
    }
    return *window;
}

HWND Application::nativeWindow(WindowId id)
{
    if (id == WindowId::None)
        return nullptr;
    HostWindow& parent = window(id);
    parent.raise();
    return parent.handle();
}

Size Application::windowSize(WindowId id)
{
    return id == WindowId::None ? m_options.windowSize : window(id).size();
}

void Application::resizeWindow(WindowId id, Size size)
{
    window(id).resize(size);
}

void Application::saveWindow(WindowId id, const std::string& file)
{
    writePng(window(id).grab(), file);
}

void Application::click(WindowId id, Point at, int times)
{
    window(id).click(at, times);
}

void Application::turnWheel(WindowId id, Point at, int steps)
{
    window(id).turnWheel(at, steps);
}

void Application::typeText(const std::string& utf8)
{
    zrhost::typeText(utf8);
}

void Application::pressKey(Key key)
{
    zrhost::pressKey(key);
}

void Application::print(const std::string& line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

void Application::hear(const MessageWords& message)
{
    print(message.line());
}

void Application::fail(const std::string& line)
{
    std::fprintf(stderr, "zrhost: %s\n", line.c_str());
    if (m_tolerant)
        return;
    m_status = 1;
    quit();
}

void Application::quit()
{
    m_player.pause();
    m_loop.quit();
}

void Application::post(std::function<void()> task)
{
    m_loop.post(std::move(task));
}

} // namespace zrhost
