#include "mediaengine.h"

#include "check.h"

#include <algorithm>
#include <utility>

namespace {

using namespace std::chrono_literals;

constexpr auto kFramePeriod = 70ms;
constexpr int kRestTimeoutMs = 20000;
constexpr auto kRest = 3000ms;

bool isGrade(unsigned long id)
{
    return id >= 2 && id <= 4;
}

/// Messages whose lParam is a host value.
bool namesSomebody(unsigned long id)
{
    constexpr unsigned long kOthers[] = {
        ZRMSG_CLICK_MORE,   ZRMSG_CLICK_HANDUP, ZRMSG_FOCUS_PERSON,       ZRMSG_PERSON_REMOVED,
        ZRMSG_VIDEO_HIDDEN, ZRMSG_VIDEO_SHOWN,  ZRMSG_PERSON_INFO_UPDATED};
    return isGrade(id) || std::count(std::begin(kOthers), std::end(kOthers), id) > 0;
}

/// The numbers of some. A question may send messages, which may change everything.
template<typename Ask>
std::set<int> numbersOf(std::map<int, Stream> streams, const Ask& ask)
{
    std::set<int> numbers;
    for (auto& [number, stream] : streams) {
        if (ask(stream))
            numbers.insert(number);
    }
    return numbers;
}

} // namespace

std::string listOf(const std::set<int>& numbers)
{
    std::string list;
    for (const int number : numbers)
        list += " " + std::to_string(number);
    return list;
}

MediaEngine::MediaEngine(Meeting& meeting)
    : m_meeting(meeting)
{
    meeting.inbox.onMessage = [this](const Message& message) { receive(message); };
}

MediaEngine::~MediaEngine()
{
    m_meeting.inbox.onMessage = nullptr;
}

void MediaEngine::require(bool holds, const std::string& what, const Stream& stream) const
{
    CHECK_ROW(holds, step + ": " + what + " " + stream.id);
}

Stream& MediaEngine::join(int number, Kind kind)
{
    Stream& stream = m_streams[number]; // messages about him may come from inside the call
    stream.number = number;
    stream.id = (kind == Kind::Share ? "sharescreen_" : "u") + std::to_string(number);
    stream.kind = kind;
    const std::string name = kind == Kind::Nameless ? "" : "P" + std::to_string(number);
    stream.play = m_meeting.zr.AddPerson(m_meeting.screen, text(stream.id), text(name), number, 0,
                                         hostValue(number));
    REQUIRE(stream.play != nullptr);
    if (kind == Kind::Self)
        m_meeting.zr.SetPersonInfo(m_meeting.screen, stream.play, true, 0, text(name), 0);
    apply(stream);
    return stream;
}

void MediaEngine::leave(int number)
{
    const Stream& stream = m_streams.at(number);
    void* const play = std::exchange(m_streams.at(number).play, nullptr);
    CHECK_EQUAL(m_meeting.zr.DelPerson(m_meeting.screen, play, false), 1);
    require(!stream.open || stream.kind == Kind::Self || stream.removed,
            "removed without a message:", stream);
    m_left.push_back(m_streams.extract(number));
    m_changed = Clock::now();
}

void MediaEngine::judge(const Message& message, Stream& stream)
{
    const bool shown = message.id == ZRMSG_VIDEO_SHOWN;
    // Two carry something else.
    if (message.id != ZRMSG_CLICK_MORE && message.id != ZRMSG_PERSON_INFO_UPDATED) {
        if (stream.person == 0)
            stream.person = message.wParam;
        require(message.wParam != 0 && stream.person == message.wParam, "another record for",
                stream);
    }
    if (shown || message.id == ZRMSG_VIDEO_HIDDEN) {
        require(shown || stream.wanted || !stream.told, "hidden again:", stream);
        stream.told = true;
        stream.wanted = shown;
        const std::chrono::milliseconds wait(delayMs());
        stream.answerAt = std::max(stream.answerAt, m_changed + wait);
    } else if (isGrade(message.id)) {
        require(stream.kind == Kind::Person, "a grade is asked of", stream);
        require(stream.open, "a grade is asked of the closed stream of", stream);
    } else if (message.id == ZRMSG_PERSON_REMOVED) {
        require(stream.open, "removed without a stream:", stream);
        stream.removed = true;
    }
}

void MediaEngine::receive(const Message& message)
{
    m_changed = Clock::now();
    if (namesSomebody(message.id)) {
        const auto found = m_streams.find(static_cast<int>(message.lParam));
        CHECK_ROW(found != m_streams.end(), step + ": a message for nobody");
        if (found != m_streams.end()) {
            judge(message, found->second);
            if (found->first % 2 == 0)
                apply(found->second);
        }
    }
    if (onMessage) {
        const auto handler = onMessage; // the handler may replace itself
        handler(message);
    }
}

void MediaEngine::apply(Stream& stream)
{
    if (!stream.play || stream.open == stream.wanted)
        return;
    stream.open = stream.wanted;
    m_changed = Clock::now();
    CHECK_EQUAL(m_meeting.zr.Preview(m_meeting.screen, stream.play, stream.open), 1);
}

void MediaEngine::forEach(const std::function<void(Stream&)>& action)
{
    // What is done for one may send messages, which may change everything.
    for (const int number : numbersOf(m_streams, [](const Stream&) { return true; })) {
        const auto found = m_streams.find(number);
        if (found != m_streams.end() && found->second.play)
            action(found->second);
    }
}

void MediaEngine::deliver()
{
    forEach([this](Stream& stream) {
        if (stream.open)
            require(m_meeting.zr.PlayFrame(m_meeting.screen, stream.play, &m_picture.frame) == 1,
                    "a frame is refused:", stream);
    });
}

bool MediaEngine::runUntil(const std::function<bool()>& done, int timeoutMs)
{
    return pumpUntil(
        [&] {
            forEach([this](Stream& stream) {
                if (stream.answerAt <= Clock::now())
                    apply(stream);
            });
            if (delivers && Clock::now() >= m_nextFrame) {
                m_nextFrame = Clock::now() + kFramePeriod;
                deliver();
            }
            return done();
        },
        timeoutMs);
}

void MediaEngine::run(int timeMs)
{
    (void)runUntil([] { return false; }, timeMs);
}

void MediaEngine::rest(const std::string& where)
{
    step = where;
    m_changed = Clock::now();
    const auto isAnswered = [](const auto& entry) {
        return entry.second.open == entry.second.wanted;
    };
    const auto rests = [&] {
        return Clock::now() - m_changed > kRest
               && std::all_of(m_streams.begin(), m_streams.end(), isAnswered)
               && visible() == open();
    };
    const bool rested = runUntil(rests, kRestTimeoutMs);
    CHECK_ROW(rested, where + ": open are" + listOf(open()) + ", visible" + listOf(visible()));
}

std::set<int> MediaEngine::open() const
{
    return numbersOf(m_streams, [](const Stream& stream) { return stream.open; });
}

std::set<int> MediaEngine::visible() const
{
    const auto isVisible = [this](const Stream& stream) {
        return m_meeting.zr.IsPersonVisible(m_meeting.screen, text(stream.id)) == 1
               || m_meeting.zr.IsPersonVisibleInSmallWnd(m_meeting.screen, text(stream.id)) == 1;
    };
    return numbersOf(m_streams, isVisible);
}
