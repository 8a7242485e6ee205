// The numbered messages as a host gets them, and what it may do from inside one.
#include "check.h"
#include "meeting.h"

/// The host deletes from inside the message who is being added, and adds somebody else.
ZR_CASE(messages, whoIsDeletedWhileAddedHasNoHandle)
{
    Meeting meeting(nullptr);
    const auto add = [&](const char* id) {
        return meeting.zr.AddPerson(meeting.screen, text(id), text("P"), 1, 0, nullptr);
    };
    void* other = nullptr;
    meeting.inbox.onMessage = [&](const Message& m) {
        meeting.inbox.onMessage = nullptr;
        CHECK_EQUAL(m.id, static_cast<unsigned long>(ZRMSG_PERSON_INFO_UPDATED));
        void* const play = reinterpret_cast<void*>(static_cast<uintptr_t>(m.wParam));
        CHECK_EQUAL(meeting.zr.DelPerson(meeting.screen, play, false), 1);
        other = add("u2"); // at the same address, most likely
    };
    CHECK(add("u1") == nullptr);
    CHECK_EQUAL(meeting.zr.DelPerson(meeting.screen, other, false), 1);
    // The same id again: another handle to the same participant, reported again.
    meeting.inbox.clear();
    CHECK(add("u3") != add("u3"));
    CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_PERSON_INFO_UPDATED) == 2; }));
}

/// Releases the screen from inside the first message with this id, and runs an event loop there.
/// @param otherThread the message comes of calls that another thread makes
static void releaseFromWithin(const HostWindow& window, unsigned long id, bool otherThread)
{
    const std::string row = std::to_string(id) + (otherThread ? ", other thread" : "");
    Meeting meeting(&window);
    bool released = false;
    meeting.inbox.onMessage = [&](const Message& m) {
        if (m.id != id || released)
            return;
        released = true;
        meeting.zr.Release(meeting.screen);
        pump(30); // as a menu does
    };
    const auto join = [&] {
        meeting.zr.AddPerson(meeting.screen, text("u1"), text("P"), 1, 0, hostValue(1));
        meeting.zr.ChangeLayout(meeting.screen, eLayoutGrid4, {});
        meeting.zr.IsPersonVisible(meeting.screen, text("u1"));
    };
    if (otherThread)
        runElsewhere(join);
    else
        join();
    CHECK_ROW(pumpUntil([&] { return released; }), row);
    const int count = meeting.inbox.count();
    pump(100);
    CHECK_ROW(meeting.inbox.count() == count, row);
    CHECK_ROW(meeting.zr.GetCurMode(meeting.screen) == 0, row);
    CHECK_ROW(pumpUntil([&] { return window.childCount() == 0; }), row);
    // The process goes on with a new screen.
    meeting.inbox.reset();
    meeting.screen = meeting.zr.Init(window.hwnd(), meeting.inbox.notify());
    REQUIRE(meeting.screen != nullptr);
    CHECK_ROW(meeting.zr.GetCurMode(meeting.screen) == eLayoutEqualCut, row);
}

ZR_CASE(messages, hostMayReleaseFromWithin)
{
    const HostWindow window(1280, 720);
    for (const unsigned long id :
         {ZRMSG_VIDEO_SHOWN, ZRMSG_SCREEN_MODE, ZRMSG_PERSON_INFO_UPDATED}) {
        releaseFromWithin(window, id, false);
        releaseFromWithin(window, id, true);
    }
}
