#include "mediaengine.h"

#include "check.h"

#include <algorithm>
#include <cstdlib>

namespace {

using namespace std::chrono_literals;

constexpr auto kFramePeriod = 70ms;
constexpr auto kAnswerDelay = 50ms;
/// Time for the frames that carry the last requests.
constexpr auto kMoment = 350ms;
/// The order is looked at every second, and streams are closed a second after an arrangement.
constexpr auto kRest = 2200ms;
constexpr int kRestTimeoutMs = 12000;
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

MediaEngine::MediaEngine(Meeting& meeting, bool threaded)
    : m_meeting(meeting)
{
    for (int number = 0; number < kColours; ++number)
        m_pictures.try_emplace(number, 64U, 36U, colourOf(number));
    meeting.inbox.onMessage = [this](const Message& message) { receive(message); };
    if (!threaded)
        return;
    m_thread = std::thread([this] {
        while (!m_stop) {
            deliverAll();
            std::this_thread::sleep_for(kFramePeriod);
        }
    });
}

MediaEngine::~MediaEngine()
{
    m_stop = true;
    if (m_thread.joinable())
        m_thread.join();
    m_meeting.inbox.onMessage = nullptr;
}

void MediaEngine::fail(const std::string& what) const
{
    check::fail(__FILE__, __LINE__, "[" + step + "] " + what);
}

Stream& MediaEngine::join(int number, Kind kind)
{
    Stream stream;
    stream.number = number;
    stream.id = (kind == Kind::Share ? "sharescreen_" : "u") + std::to_string(number);
    stream.kind = kind;
    {
        // Before the call: messages about him may come from inside it.
        const std::lock_guard<std::mutex> lock(m_lock);
        m_streams[number] = stream;
    }
    const std::string name = kind == Kind::Nameless ? "" : "P" + std::to_string(number);
    void* const play = m_meeting.zr.AddPerson(m_meeting.screen, text(stream.id), text(name), number,
                                              0, hostValue(number));
    REQUIRE(play != nullptr);
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_streams[number].play = play;
    }
    if (kind == Kind::Self)
        m_meeting.zr.SetPersonInfo(m_meeting.screen, play, true, 0, text(name), 0);
    apply(number);
    return m_streams.at(number);
}

void MediaEngine::leave(int number)
{
    void* play = nullptr;
    {
        // No frame of his is under way once the lock has been had.
        const std::lock_guard<std::mutex> lock(m_lock);
        std::swap(play, m_streams.at(number).play);
    }
    CHECK_EQUAL(m_meeting.zr.DelPerson(m_meeting.screen, play, false), 1);
    const std::lock_guard<std::mutex> lock(m_lock);
    const Stream& stream = m_streams.at(number);
    if (stream.open && stream.kind != Kind::Self && !stream.removed)
        fail("removed without a message: " + stream.id);
    m_streams.erase(number);
    m_changed = Clock::now();
}

void MediaEngine::forgetAll()
{
    const std::lock_guard<std::mutex> lock(m_lock);
    m_streams.clear();
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

void MediaEngine::receive(const Message& message)
{
    m_changed = Clock::now();
    int answerNow = -1;
    if (namesSomebody(message.id)) {
        const std::lock_guard<std::mutex> lock(m_lock);
        if (Stream* const stream = addressee(message)) {
            const bool shown = message.id == ZRMSG_VIDEO_SHOWN;
            if (shown || message.id == ZRMSG_VIDEO_HIDDEN) {
                if (!shown && stream->told && !stream->wanted)
                    fail("hidden again: " + stream->id);
                stream->told = true;
                stream->wanted = shown;
                stream->answerAt = m_changed + kAnswerDelay;
                if (stream->number % 2 == 0)
                    answerNow = stream->number;
            } else if (isGrade(message.id)) {
                if (stream->kind != Kind::Person)
                    fail("a grade is asked of " + stream->id);
                if (!stream->open)
                    fail("a grade is asked of a closed stream: " + stream->id);
                stream->grade = static_cast<int>(message.id);
            } else if (message.id == ZRMSG_PERSON_REMOVED) {
                if (!stream->open)
                    fail("removed without a stream: " + stream->id);
                stream->removed = true;
            }
        }
    }
    if (answerNow >= 0)
        apply(answerNow);
    if (onMessage) {
        const auto handler = onMessage; // the handler may replace itself
        handler(message);
    }
}

void MediaEngine::apply(int number)
{
    void* play = nullptr;
    bool open = false;
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        const auto found = m_streams.find(number);
        if (found == m_streams.end() || !found->second.play
            || found->second.open == found->second.wanted)
            return;
        found->second.open = open = found->second.wanted;
        if (!open)
            found->second.grade = 0; // a stream that is opened again begins anew
        play = found->second.play;
        m_changed = Clock::now();
    }
    CHECK_EQUAL(m_meeting.zr.Preview(m_meeting.screen, play, open), 1);
}

void MediaEngine::answer()
{
    std::vector<int> due;
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        for (const auto& [number, stream] : m_streams) {
            if (stream.open != stream.wanted && stream.play && stream.answerAt <= Clock::now())
                due.push_back(number);
        }
    }
    for (const int number : due)
        apply(number);
}

void MediaEngine::playFrame(const Stream& stream)
{
    Picture& picture = m_pictures.at(stream.number % kColours);
    if (m_meeting.zr.PlayFrame(m_meeting.screen, stream.play, &picture.frame) != 1)
        fail("a frame is refused: " + stream.id);
}

void MediaEngine::deliverAll()
{
    const std::lock_guard<std::mutex> lock(m_lock);
    for (const auto& [number, stream] : m_streams) {
        if (stream.open && stream.play)
            playFrame(stream);
    }
}

void MediaEngine::deliver()
{
    // On this thread a frame may send messages, which may change everything.
    std::vector<int> numbers;
    for (const auto& [number, stream] : m_streams)
        numbers.push_back(number);
    for (const int number : numbers) {
        const auto found = m_streams.find(number);
        if (found != m_streams.end() && found->second.open && found->second.play)
            playFrame(found->second);
    }
}

void MediaEngine::run(int timeMs)
{
    (void)pumpUntil(
        [this] {
            answer();
            return false;
        },
        timeMs);
}

void MediaEngine::work()
{
    answer();
    if (!m_thread.joinable() && Clock::now() >= m_nextFrame) {
        m_nextFrame = Clock::now() + kFramePeriod;
        deliver();
    }
}

bool MediaEngine::settle(const std::string& where)
{
    step = where;
    m_changed = Clock::now();
    auto nextLook = m_changed;
    return pumpUntil(
        [&] {
            work();
            if (Clock::now() < nextLook || Clock::now() - m_changed < kMoment)
                return false;
            nextLook = Clock::now() + kLookPeriod;
            return visible() == open();
        },
        kSettleTimeoutMs);
}

bool MediaEngine::rest(const std::string& where)
{
    step = where;
    m_changed = Clock::now();
    const bool quiet = pumpUntil(
        [&] {
            work();
            return Clock::now() - m_changed > kRest;
        },
        kRestTimeoutMs);
    if (quiet)
        return true;
    std::map<unsigned long, int> late;
    for (const Message& message : m_meeting.inbox.all()) {
        if (Clock::now() - message.at < 3s)
            ++late[message.id];
    }
    std::string what = "does not come to rest; messages of the last three seconds:";
    for (const auto& [id, count] : late)
        what += " " + std::to_string(id) + " x" + std::to_string(count);
    fail(what);
    return false;
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
        if (stream.open != isVisible)
            check::fail(__FILE__, __LINE__,
                        "[" + where + "] " + stream.id + (isVisible ? " is visible" : " is hidden")
                            + ", his stream " + (stream.open ? "open" : "closed"));
    }
}
