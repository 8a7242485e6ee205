#include "meeting.h"

#include "command_table.h"
#include "desktop.h"
#include "host_error.h"
#include "host_keyboard.h"
#include "screencapture.h"
#include "screenview.h"

#include <QCursor>
#include <QSaveFile>

namespace zrworkbench {

using zrhost::HostError;
using zrhost::WindowId;

namespace {

/// What changes is shown so long after its first change, with all that follows meanwhile.
constexpr int kShowChangesMs = 50;
/// Messages may come so long after the last step of a trace.
constexpr int kLingerMs = 2000;

} // namespace

Meeting::Meeting(ScreenView& main, ScreenView& second, const QString& library)
    : m_main(main)
    , m_second(second)
    , m_player({[this](const zrhost::ScenarioStep& step) {
                    if (!zrhost::isFrequent(step))
                        tellCommand(step.command);
                    if (!run(step.command))
                        m_player.pause();
                },
                [this](int ms, std::function<void()> task) { QTimer::singleShot(ms, this, task); },
                [this] { finish(); }})
    , m_module(library.toStdString())
{
    m_changed.setSingleShot(true);
    m_changed.setInterval(kShowChangesMs);
    connect(&m_changed, &QTimer::timeout, this, &Meeting::changed);
    m_linger.setSingleShot(true);
    m_linger.setInterval(kLingerMs);
    connect(&m_linger, &QTimer::timeout, this, &Meeting::checkMessages);
    const auto fill = [this](WindowId id) {
        if (m_session)
            m_session->onWindowResized(id, windowSize(id));
    };
    connect(&m_main, &ScreenView::resized, this, [fill] { fill(WindowId::Main); });
    connect(&m_second, &ScreenView::resized, this, [fill] { fill(WindowId::Second); });
}

Meeting::~Meeting()
{
    m_player.pause();
    m_session.reset();
}

void Meeting::begin()
{
    m_file.clear();
    m_player.load({});
    openSession();
}

void Meeting::openSession()
{
    m_linger.stop();
    m_session.reset();
    m_second.hide();
    m_main.freeSize();
    zrhost::Session::Settings settings;
    settings.frames = m_file.toStdString() + ".frames";
    zrhost::Stage& stage = *this;
    m_session = std::make_unique<zrhost::Session>(m_module.exports(), stage, settings);
    m_module.exports().ZRScreenWtmark.SetInfo({}); // no screen takes the last one along
    m_sinceBegin.start();
    emit begun();
    showSoon();
    if (!m_player.isReplay()) {
        m_session->openScreen();
        m_session->api().JoinMeetingFinish(m_session->screen(), true);
    }
}

bool Meeting::performLine(const QString& line)
{
    try {
        const std::vector<std::string> words = zrhost::splitWords(line.toStdString());
        if (words.empty())
            return true;
        const std::string command = zrhost::joinWords(words);
        tellCommand(command);
        if (!run(command))
            return false;
        m_player.record(command);
        return true;
    } catch (const HostError& error) {
        fail(error.what());
        return false;
    }
}

bool Meeting::perform(const QStringList& words)
{
    std::vector<std::string> bytes;
    for (const QString& word : words)
        bytes.push_back(word.toStdString());
    return performLine(QString::fromStdString(zrhost::joinWords(bytes)));
}

void Meeting::tellCommand(const std::string& command)
{
    const QString text = QString::fromStdString(command);
    const int blank = text.indexOf(QLatin1Char(' '));
    tell(Event::Kind::Command, text.left(blank), blank < 0 ? QString() : text.mid(blank + 1));
}

/// @return false when it failed
bool Meeting::run(const std::string& command)
{
    const std::vector<std::string> words = zrhost::splitWords(command);
    showSoon();
    try {
        zrhost::bindCommand(words).run(*m_session);
    } catch (const HostError& error) {
        fail(error.what());
        return false;
    }
    QStringList texts;
    for (const std::string& word : words)
        texts << QString::fromStdString(word);
    emit performed(texts);
    return true;
}

void Meeting::open(const QString& file)
{
    std::vector<zrhost::ScenarioStep> steps = zrhost::readScenario(file.toStdString());
    m_file = file;
    m_player.load(std::move(steps));
    openSession();
}

void Meeting::save(const QString& file) const
{
    const std::string text = zrhost::scenarioText(m_player.steps());
    QSaveFile to(file);
    if (!to.open(QIODevice::WriteOnly)
        || to.write(text.data(), static_cast<qint64>(text.size())) < 0 || !to.commit())
        throw HostError("cannot write '" + file.toStdString()
                        + "': " + to.errorString().toStdString());
}

void Meeting::rewind()
{
    m_player.rewind();
    openSession();
}

void Meeting::play(Speed speed)
{
    m_player.play(speed);
    showSoon();
}

void Meeting::pause()
{
    m_player.pause();
    showSoon();
}

void Meeting::step()
{
    m_player.step();
    showSoon();
}

void Meeting::stepToChange()
{
    m_player.stepToChange();
    showSoon();
}

/// The end of a scenario: a trace also says which messages came when it was recorded.
void Meeting::finish()
{
    showSoon();
    if (m_player.isReplay())
        m_linger.start();
}

void Meeting::checkMessages()
{
    const std::vector<std::string> differences = m_session->messages().differences();
    for (const std::string& difference : differences)
        print(difference);
    print(differences.empty() ? "The messages are those of the trace."
                              : std::to_string(differences.size()) + " messages differ.");
}

void Meeting::showSoon()
{
    if (!m_changed.isActive())
        m_changed.start();
}

void Meeting::tell(Event::Kind kind, const QString& name, const QString& text)
{
    emit happened({kind, m_sinceBegin.isValid() ? m_sinceBegin.elapsed() : 0, name, text});
}

ScreenView& Meeting::view(WindowId id)
{
    return id == WindowId::Second ? m_second : m_main;
}

HWND Meeting::nativeWindow(WindowId id)
{
    if (id == WindowId::Second && !m_second.isVisible()) // in the corner of the picture
        m_second.move(m_main.mapToGlobal(m_main.rect().bottomRight())
                      - m_second.rect().bottomRight());
    return reinterpret_cast<HWND>(view(id).nativeWindow());
}

zrhost::Size Meeting::windowSize(WindowId id)
{
    const QSize size = view(id).pixelSize();
    return {size.width(), size.height()};
}

void Meeting::resizeWindow(WindowId id, zrhost::Size size)
{
    view(id).resizePicture({size.width, size.height});
}

void Meeting::saveWindow(WindowId id, const std::string& file)
{
    saveScreen(view(id), QString::fromStdString(file));
}

/// Where the mouse has to go; elsewhere it would reach the workbench, or another program.
/// @throws HostError for a point that nobody sees
zrhost::Point Meeting::reveal(WindowId id, zrhost::Point at)
{
    if (!view(id).reveal({at.x, at.y}))
        throw HostError("the point " + std::to_string(at.x) + ',' + std::to_string(at.y)
                        + " of the picture is not seen");
    const QPoint point = view(id).onScreen({at.x, at.y});
    return {point.x(), point.y()};
}

void Meeting::click(WindowId id, zrhost::Point at, int times)
{
    zrhost::desktop::click(reveal(id, at), times);
}

/// The user's mouse goes back to where it was: a button may have asked for this.
void Meeting::turnWheel(WindowId id, zrhost::Point at, int steps)
{
    const zrhost::Point point = reveal(id, at);
    const QPoint before = QCursor::pos();
    zrhost::desktop::turnWheel(point, steps);
    QCursor::setPos(before);
}

void Meeting::typeText(const std::string& utf8)
{
    zrhost::typeText(utf8);
}

void Meeting::pressKey(zrhost::Key key)
{
    zrhost::pressKey(key);
}

void Meeting::print(const std::string& line)
{
    for (const QString& text : QString::fromStdString(line).split(QLatin1Char('\n')))
        tell(Event::Kind::Answer, {}, text);
}

void Meeting::hear(const zrhost::MessageWords& message)
{
    tell(Event::Kind::Message, QString::fromStdString(message.name),
         QString::fromStdString(message.values));
    showSoon();
}

void Meeting::fail(const std::string& line)
{
    tell(Event::Kind::Failure, tr("failed"), QString::fromStdString(line));
}

/// Ends the scenario; the program is the user's to end.
void Meeting::quit()
{
    m_player.pause();
}

void Meeting::post(std::function<void()> task)
{
    QMetaObject::invokeMethod(this, std::move(task), Qt::QueuedConnection);
}

void Meeting::holdCommands(int)
{
    // By hand the next command waits for the user anyway.
}

} // namespace zrworkbench
