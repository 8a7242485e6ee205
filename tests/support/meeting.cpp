#include "meeting.h"

#include "check.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>

bool pumpUntil(const std::function<bool()>& done, int timeoutMs)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    for (;;) {
        // Other threads may keep the loop busy for ever: it is left for a look now and then.
        const auto look = Clock::now() + std::chrono::milliseconds(5);
        while (native::runEventLoopOnce()) {
            if (Clock::now() > look)
                break;
        }
        if (done())
            return true;
        if (Clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void pump(int timeMs)
{
    (void)pumpUntil([] { return false; }, timeMs);
}

void runElsewhere(const std::function<void()>& body)
{
    std::atomic<bool> done{false};
    std::thread worker([&] {
        body();
        done = true;
    });
    CHECK(pumpUntil([&] { return done.load(); }, 60000));
    worker.join();
    pump(50);
}

bool isNear(const Rgb& a, const Rgb& b, int tolerance)
{
    return std::abs(a.r - b.r) <= tolerance && std::abs(a.g - b.g) <= tolerance
           && std::abs(a.b - b.b) <= tolerance;
}

Rgb Yuv::rgb() const
{
    const double luma = 255.0 / 219.0 * (y - 16);
    const double cb = 255.0 / 224.0 * (u - 128);
    const double cr = 255.0 / 224.0 * (v - 128);
    const auto toByte = [](double value) {
        return static_cast<int>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    return {toByte(luma + 1.5748 * cr), toByte(luma - 0.1873 * cb - 0.4681 * cr),
            toByte(luma + 1.8556 * cb)};
}

Picture::Picture(uint32_t widthPx, uint32_t heightPx, const Yuv& colour)
{
    const size_t luma = size_t{widthPx} * heightPx;
    const size_t chroma = size_t{(widthPx + 1) / 2} * ((heightPx + 1) / 2);
    m_bytes.resize(luma, colour.y);
    m_bytes.resize(luma + chroma, colour.u);
    m_bytes.resize(luma + 2 * chroma, colour.v);
    frame.pData = m_bytes.data();
    frame.width = widthPx;
    frame.height = heightPx;
}

Rgb Screenshot::at(int x, int y) const
{
    if (x < 0 || y < 0 || x >= widthPx || y >= heightPx)
        return {-1, -1, -1};
    return pixels[static_cast<size_t>(y) * static_cast<size_t>(widthPx) + static_cast<size_t>(x)];
}

template<int number>
Inbox& Inbox::instance()
{
    static Inbox inbox([](unsigned long id, unsigned long long wParam, long long lParam) {
        instance<number>().receive(id, wParam, lParam);
        return 0;
    });
    return inbox;
}

Inbox& Inbox::first()
{
    return instance<1>();
}

Inbox& Inbox::second()
{
    return instance<2>();
}

void Inbox::receive(unsigned long id, unsigned long long wParam, long long lParam)
{
    const Message message{id, wParam, lParam, std::this_thread::get_id(), Clock::now()};
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_messages.push_back(message);
    }
    if (onMessage) {
        const auto handler = onMessage; // the handler may replace itself
        handler(message);
    }
}

void Inbox::reset()
{
    onMessage = nullptr;
    clear();
}

void Inbox::clear()
{
    const std::lock_guard<std::mutex> lock(m_lock);
    m_messages.clear();
}

std::vector<Message> Inbox::all() const
{
    const std::lock_guard<std::mutex> lock(m_lock);
    return m_messages;
}

int Inbox::count(unsigned long id, std::optional<long long> lParam) const
{
    const std::vector<Message> messages = all();
    return static_cast<int>(std::count_if(messages.begin(), messages.end(), [=](const Message& m) {
        return m.id == id && m.lParam == lParam.value_or(m.lParam);
    }));
}

Meeting::Meeting(const NativeWindow* parent, int widthPx, int heightPx)
{
    inbox.reset();
    screen = zr.Init(parent ? parent->hwnd() : nullptr, inbox.notify());
    REQUIRE(screen != nullptr);
    moveTo(widthPx, heightPx);
    CHECK_EQUAL(zr.JoinMeetingFinish(screen, true), 1);
}

Meeting::~Meeting()
{
    inbox.reset();
    if (screen)
        zr.Release(screen);
}

void* Meeting::join(int number, const std::string& name)
{
    void* const play = zr.AddPerson(screen, text("u" + std::to_string(number)), text(name), number,
                                    0, hostValue(number));
    REQUIRE(play != nullptr);
    CHECK_EQUAL(zr.Preview(screen, play, true), 1);
    return play;
}

void Meeting::moveTo(int widthPx, int heightPx)
{
    tagRECT area{0, 0, widthPx, heightPx};
    CHECK_EQUAL(zr.MoveWindow(screen, &area, 0), 1);
}

bool Meeting::changeMode(int mode)
{
    CHECK_EQUAL(zr.ChangeLayout(screen, static_cast<eLayoutType>(mode), {}), 1);
    return pumpUntil([&] { return zr.GetCurMode(screen) == mode; });
}
