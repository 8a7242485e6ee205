#include "meeting.h"

#include "check.h"

#include <algorithm>

int Inbox::receive(unsigned long id, unsigned long long wParam, long long lParam)
{
    const Message message{id, wParam, lParam, std::this_thread::get_id()};
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_messages.push_back(message);
    }
    if (onMessage) {
        const auto handler = onMessage; // the handler may replace itself
        handler(message);
    }
    return 0;
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

Meeting::Meeting(const HostWindow* parent, int widthPx, int heightPx)
    : m_parent(parent ? parent->hwnd() : nullptr)
    , m_widthPx(widthPx)
    , m_heightPx(heightPx)
{
    openScreen();
}

void Meeting::openScreen()
{
    inbox.reset();
    screen = zr.Init(m_parent, inbox.notify());
    REQUIRE(screen != nullptr);
    moveTo(m_widthPx, m_heightPx);
    CHECK_EQUAL(zr.JoinMeetingFinish(screen, true), 1);
}

void Meeting::renewScreen()
{
    zr.Release(screen);
    openScreen();
}

Meeting::~Meeting()
{
    inbox.reset();
    if (screen)
        zr.Release(screen);
}

void* Meeting::join(int number)
{
    void* const play = zr.AddPerson(screen, text("u" + std::to_string(number)), text("P"), number,
                                    0, hostValue(number));
    REQUIRE(play != nullptr);
    CHECK_EQUAL(zr.Preview(screen, play, true), 1);
    return play;
}

void Meeting::moveTo(int widthPx, int heightPx)
{
    tagRECT area = rectOf({0, 0, widthPx, heightPx});
    CHECK_EQUAL(zr.MoveWindow(screen, &area, 0), 1);
}

bool Meeting::shows(void* play, const Rgb& colour, const HostWindow& window, zrhost::Point at,
                    bool seen)
{
    Picture picture(640, 360, colour);
    return pumpUntil([&] {
        (void)zr.PlayFrame(screen, play, &picture.frame);
        pump(20);
        return isNear(window.grab().at(at.x, at.y), colour, 8) == seen;
    });
}

bool Meeting::changeMode(int mode)
{
    CHECK_EQUAL(zr.ChangeLayout(screen, static_cast<eLayoutType>(mode), {}), 1);
    return pumpUntil([&] { return zr.GetCurMode(screen) == mode; });
}
