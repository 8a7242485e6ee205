#include "mediaengine.h"

#include "check.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

using namespace std::chrono_literals;

constexpr auto kFramePeriod = 70ms;
constexpr auto kAnswerDelay = 50ms;
/// Time for the frames that carry the last requests.
constexpr auto kMoment = 350ms;
/// The order is looked at every second, and streams are closed a second after an arrangement.
constexpr auto kRest = 3000ms;
constexpr int kRestTimeoutMs = 20000;
constexpr int kSettleTimeoutMs = 6000;
constexpr auto kLookPeriod = 60ms;
constexpr int kLookStepPx = 4;
/// Fewer points are no tile, but a colour that shines through a bar of the overlay.
constexpr int kMinPoints = 600;
constexpr int kColourTolerance = 8;

/// Colours that are far from each other, and from the grey of everything else.
Yuv colourOf(int number)
{
    constexpr uint8_t kLuma[] = {80, 110, 140, 170};
    constexpr uint8_t kChroma[] = {96, 112, 144, 160};
    const int index = number % MediaEngine::kColours;
    return {kLuma[index / 16], kChroma[index / 4 % 4], kChroma[index % 4]};
}

bool isGrade(unsigned long id)
{
    return id >= 2 && id <= 4;
}

/// Messages whose lParam is a host value.
bool namesSomebody(unsigned long id)
{
    switch (id) {
    case ZRMSG_CLICK_MORE:
    case ZRMSG_CLICK_HANDUP:
    case ZRMSG_FOCUS_PERSON:
    case ZRMSG_PERSON_REMOVED:
    case ZRMSG_VIDEO_HIDDEN:
    case ZRMSG_VIDEO_SHOWN:
    case ZRMSG_PERSON_INFO_UPDATED:
        return true;
    default:
        return isGrade(id);
    }
}

} // namespace

MediaEngine::MediaEngine(Meeting& meeting)
    : m_meeting(meeting)
{
    for (int number = 0; number < kColours; ++number)
        m_pictures.try_emplace(number, 64U, 36U, colourOf(number));
    meeting.inbox.onMessage = [this](const Message& message) { receive(message); };
}

MediaEngine::~MediaEngine()
{
    m_meeting.inbox.onMessage = nullptr;
}

void MediaEngine::fail(const std::string& what) const
{
    check::fail(__FILE__, __LINE__, "[" + step + "] " + what);
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
    apply(number);
    return stream;
}

void MediaEngine::leave(int number)
{
    void* const play = std::exchange(m_streams.at(number).play, nullptr);
    CHECK_EQUAL(m_meeting.zr.DelPerson(m_meeting.screen, play, false), 1);
    const Stream& stream = m_streams.at(number);
    if (stream.open && stream.kind != Kind::Self && !stream.removed)
        fail("removed without a message: " + stream.id);
    m_streams.erase(number);
    m_changed = Clock::now();
}

Stream* MediaEngine::addressee(const Message& message)
{
    const auto found = m_streams.find(static_cast<int>(message.lParam));
    if (found == m_streams.end()) {
        fail("message " + std::to_string(message.id) + " for " + std::to_string(message.lParam)
             + ", who is not there");
        return nullptr;
    }
    Stream& stream = found->second;
    if (message.id == ZRMSG_CLICK_MORE || message.id == ZRMSG_PERSON_INFO_UPDATED)
        return &stream; // they carry something else
    if (stream.person == 0)
        stream.person = message.wParam;
    if (message.wParam == 0 || stream.person != message.wParam)
        fail("message " + std::to_string(message.id) + " names another record for " + stream.id);
    return &stream;
}

void MediaEngine::judge(const Message& message, Stream& stream)
{
    const bool shown = message.id == ZRMSG_VIDEO_SHOWN;
    if (shown || message.id == ZRMSG_VIDEO_HIDDEN) {
        if (!shown && stream.told && !stream.wanted)
            fail("hidden again: " + stream.id);
        stream.told = true;
        stream.wanted = shown;
        const auto delay = delayMs ? std::chrono::milliseconds(delayMs(stream.number, shown))
                                   : std::chrono::milliseconds(kAnswerDelay);
        stream.answerAt = std::max(stream.answerAt, m_changed + delay);
    } else if (isGrade(message.id)) {
        if (stream.kind != Kind::Person)
            fail("a grade is asked of " + stream.id);
        if (!stream.open)
            fail("a grade is asked of a closed stream: " + stream.id);
        stream.grade = static_cast<int>(message.id);
    } else if (message.id == ZRMSG_PERSON_REMOVED) {
        if (!stream.open)
            fail("removed without a stream: " + stream.id);
        stream.removed = true;
    }
}

void MediaEngine::receive(const Message& message)
{
    m_changed = Clock::now();
    if (namesSomebody(message.id)) {
        if (Stream* const stream = addressee(message)) {
            judge(message, *stream);
            if (!delayMs && stream->number % 2 == 0)
                apply(stream->number);
        }
    }
    if (onMessage) {
        const auto handler = onMessage; // the handler may replace itself
        handler(message);
    }
}

void MediaEngine::apply(int number)
{
    const auto found = m_streams.find(number);
    if (found == m_streams.end() || !found->second.play
        || found->second.open == found->second.wanted)
        return;
    Stream& stream = found->second;
    stream.open = stream.wanted;
    if (!stream.open)
        stream.grade = 0; // a stream that is opened again begins anew
    m_changed = Clock::now();
    CHECK_EQUAL(m_meeting.zr.Preview(m_meeting.screen, stream.play, stream.open), 1);
}

void MediaEngine::forEach(void (MediaEngine::*action)(Stream&))
{
    // What is done for one may send messages, which may change everything.
    std::vector<int> numbers;
    for (const auto& [number, stream] : m_streams)
        numbers.push_back(number);
    for (const int number : numbers) {
        const auto found = m_streams.find(number);
        if (found != m_streams.end() && found->second.play)
            (this->*action)(found->second);
    }
}

void MediaEngine::answer(Stream& stream)
{
    if (stream.answerAt <= Clock::now())
        apply(stream.number);
}

void MediaEngine::playFrame(Stream& stream)
{
    Picture& picture = m_pictures.at(stream.number % kColours);
    if (stream.open && m_meeting.zr.PlayFrame(m_meeting.screen, stream.play, &picture.frame) != 1)
        fail("a frame is refused: " + stream.id);
}

void MediaEngine::work()
{
    forEach(&MediaEngine::answer);
    if (Clock::now() < m_nextFrame)
        return;
    m_nextFrame = Clock::now() + kFramePeriod;
    forEach(&MediaEngine::playFrame);
}

bool MediaEngine::runUntil(const std::function<bool()>& done, int timeoutMs)
{
    return pumpUntil(
        [&] {
            work();
            return done();
        },
        timeoutMs);
}

void MediaEngine::run(int timeMs)
{
    (void)runUntil([] { return false; }, timeMs);
}

bool MediaEngine::settle(const std::string& where)
{
    step = where;
    m_changed = Clock::now();
    auto nextLook = m_changed;
    return runUntil(
        [&] {
            if (Clock::now() < nextLook || Clock::now() - m_changed < kMoment)
                return false;
            nextLook = Clock::now() + kLookPeriod;
            return visible() == open();
        },
        kSettleTimeoutMs);
}

void MediaEngine::rest(const std::string& where)
{
    step = where;
    m_changed = Clock::now();
    const auto rests = [&] {
        return Clock::now() - m_changed > kRest
               && std::none_of(m_streams.begin(), m_streams.end(), [](const auto& entry) {
                      return entry.second.open != entry.second.wanted;
                  });
    };
    if (!runUntil(rests, kRestTimeoutMs)) {
        std::map<unsigned long, int> late;
        for (const Message& message : m_meeting.inbox.all())
            late[message.id] += Clock::now() - message.at < 3s ? 1 : 0;
        std::string what = "does not come to rest; messages of the last three seconds:";
        for (const auto& [id, count] : late)
            what += " " + std::to_string(id) + " x" + std::to_string(count);
        fail(what);
    }
    checkOpen(where);
}

std::set<int> MediaEngine::open() const
{
    std::set<int> numbers;
    for (const auto& [number, stream] : m_streams) {
        if (stream.open)
            numbers.insert(number);
    }
    return numbers;
}

std::set<int> MediaEngine::visible() const
{
    std::set<int> numbers;
    for (const auto& [number, stream] : m_streams) {
        if (m_meeting.zr.IsPersonVisible(m_meeting.screen, text(stream.id)) == 1
            || m_meeting.zr.IsPersonVisibleInSmallWnd(m_meeting.screen, text(stream.id)) == 1)
            numbers.insert(number);
    }
    return numbers;
}

std::map<int, Seen> MediaEngine::look(const Screenshot& shot, const std::set<int>& numbers)
{
    std::map<int, Seen> points; // sums for now
    for (int y = 0; y < shot.heightPx; y += kLookStepPx) {
        for (int x = 0; x < shot.widthPx; x += kLookStepPx) {
            const Rgb pixel = shot.at(x, y);
            const auto found = std::find_if(numbers.begin(), numbers.end(), [&](int number) {
                return isNear(pixel, colourOf(number).rgb(), kColourTolerance);
            });
            if (found == numbers.end())
                continue;
            Seen& seen = points[*found];
            ++seen.areaPx;
            seen.x += x;
            seen.y += y;
        }
    }
    std::map<int, Seen> result;
    for (const auto& [number, sum] : points) {
        if (sum.areaPx >= kMinPoints)
            result[number] = {sum.areaPx * kLookStepPx * kLookStepPx, sum.x / sum.areaPx,
                              sum.y / sum.areaPx};
    }
    return result;
}

void MediaEngine::checkOpen(const std::string& where) const
{
    const std::set<int> shown = visible();
    for (const auto& [number, stream] : m_streams) {
        const bool isVisible = shown.count(number) > 0;
        CHECK_ROW(stream.open == isVisible,
                  where + ": " + stream.id + (isVisible ? " is visible" : " is hidden"));
    }
}
