#include "fakescreen.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <sstream>
#include <utility>

namespace {

/// What a play handle points to.
struct FakePerson
{
    std::string id;
    void* hostValue;
};

std::mutex g_mutex;
std::vector<std::string> g_calls;
std::vector<std::string> g_frames;
std::set<void*> g_people;
ZRNotify g_notify = nullptr;
int g_screen = 0; // its address is the screen's handle

std::string show(const char* text)
{
    return text;
}
std::string show(const std::string& text)
{
    return text;
}
std::string show(int number)
{
    return std::to_string(number);
}
std::string show(FakePerson* person)
{
    return g_people.count(person) != 0 ? person->id : "no person";
}
std::string show(const tagRECT* rect)
{
    std::ostringstream text;
    text << rect->left << ' ' << rect->top << ' ' << rect->right << ' ' << rect->bottom;
    return text.str();
}

/// Records one call. @return 1 when the call came with the screen's handle
template<typename... Args>
int record(const char* name, const void* screen, const Args&... args)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    std::string call = std::string(name) + "(";
    [[maybe_unused]] const char* separator = ""; // not used without arguments
    ((call += separator + show(args), separator = ", "), ...);
    call += ")";
    if (screen != &g_screen)
        call += " with a wrong screen";
    g_calls.push_back(call);
    if (std::getenv("FAKESCREEN_PRINT")) {
        std::printf("call %s\n", call.c_str());
        std::fflush(stdout);
    }
    return screen == &g_screen ? 1 : 0;
}

FakePerson* person(void* play)
{
    return static_cast<FakePerson*>(play);
}

} // namespace

std::vector<std::string> takeFakeCalls()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    return std::exchange(g_calls, {});
}

std::vector<std::string> takeFakeFrames()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    return std::exchange(g_frames, {});
}

std::size_t fakeFrameCount()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    return g_frames.size();
}

void* fakeExport(const std::string& name)
{
    static const std::map<std::string, void*> exports{
#define FAKE_ENTRY(name) {"ZRScreen_" #name, reinterpret_cast<void*>(&ZRScreen_##name)},
        ZRHOST_SCREEN_EXPORTS(FAKE_ENTRY)
#undef FAKE_ENTRY
    };
    const auto found = exports.find(name);
    return found == exports.end() ? nullptr : found->second;
}

ZRNotify fakeNotify()
{
    return g_notify;
}

extern "C" {

void* ZRScreen_Init(HWND, ZRNotify notify)
{
    g_notify = notify;
    record("Init", &g_screen);
    return &g_screen;
}

int ZRScreen_SetParent(void* s, HWND)
{
    return record("SetParent", s);
}

int ZRScreen_MoveWindow(void* s, tagRECT* rect, int)
{
    return record("MoveWindow", s, rect);
}

void ZRScreen_Release(void* s)
{
    record("Release", s, static_cast<int>(g_people.size()));
}

int ZRScreen_ExitMeeting(void* s)
{
    return record("ExitMeeting", s);
}

void* ZRScreen_AddPerson(void* s, char* id, char* name, long long time, int, void* hostValue)
{
    record("AddPerson", s, id, name, static_cast<int>(time));
    auto added = std::make_unique<FakePerson>(FakePerson{id, hostValue});
    FakePerson* const person = added.release(); // freed by DelPerson
    {
        const std::lock_guard<std::mutex> lock(g_mutex);
        g_people.insert(person);
    }
    if (g_notify)
        g_notify(ZRMSG_VIDEO_SHOWN, 0x10,
                 static_cast<long long>(reinterpret_cast<intptr_t>(hostValue)));
    return person;
}

int ZRScreen_JoinMeetingFinish(void* s, bool finish)
{
    return record("JoinMeetingFinish", s, finish);
}

int ZRScreen_DelPerson(void* s, void* play, bool)
{
    record("DelPerson", s, person(play));
    const std::lock_guard<std::mutex> lock(g_mutex);
    if (g_people.erase(play) == 0)
        return 0;
    delete person(play);
    return 1;
}

int ZRScreen_PlayFrame(void*, void* play, void* data)
{
    const auto& frame = *static_cast<VantrelRTCVideoFrameQT*>(data);
    const std::lock_guard<std::mutex> lock(g_mutex);
    constexpr std::size_t kMaxFrames = 1000;
    if (g_frames.size() < kMaxFrames)
        g_frames.push_back(show(person(play)) + " " + std::to_string(frame.width) + "x"
                           + std::to_string(frame.height) + " "
                           + std::to_string(int(frame.pData[0])));
    return 1;
}

int ZRScreen_SetPersonInfo(void* s, void* play, bool self, int role, char* name, int identity)
{
    return record("SetPersonInfo", s, person(play), self, role, name, identity);
}

int ZRScreen_SetMute(void* s, void* play, int mute)
{
    return record("SetMute", s, person(play), mute);
}

int ZRScreen_SetVolume(void* s, void* play, int volume)
{
    return record("SetVolume", s, person(play), volume);
}

int ZRScreen_Preview(void* s, void* play, bool preview)
{
    return record("Preview", s, person(play), preview);
}

int ZRScreen_SetPersonHandUp(void* s, void* play, bool up)
{
    return record("SetPersonHandUp", s, person(play), up);
}

int ZRScreen_UpdateUserNetStatus(void* s, const char* id, int dir, bool weak, int level)
{
    return record("UpdateUserNetStatus", s, id, dir, weak, level);
}

int ZRScreen_ChangeLayout(void* s, eLayoutType type, const std::map<int, std::string>& sorting)
{
    std::string order;
    for (const auto& [position, id] : sorting)
        order += std::to_string(position) + "=" + id + ";";
    return record("ChangeLayout", s, static_cast<int>(type), order);
}

int ZRScreen_GetCurMode(void* s)
{
    record("GetCurMode", s);
    return 12;
}

int ZRScreen_FocusByUserID(void* s, char* id, bool voice)
{
    return record("FocusByUserID", s, id, voice);
}

int ZRScreen_LockLook(void* s, void* play, int lock)
{
    return record("LockLook", s, person(play), lock);
}

int ZRScreen_AllLook(void* s, void* play, int all)
{
    return record("AllLook", s, person(play), all);
}

int ZRScreen_SetActivateUser(void* s, char* id)
{
    return record("SetActivateUser", s, id);
}

int ZRScreen_SetCurrentSpeakingPerson(void* s, std::string id)
{
    return record("SetCurrentSpeakingPerson", s, id);
}

int ZRScreen_SetOpenPollingPage(void* s, bool open, int seconds)
{
    return record("SetOpenPollingPage", s, open, seconds);
}

int ZRScreen_SetLayoutCtrl(void* s, bool open, bool follow, int share, int speaker, bool filter)
{
    return record("SetLayoutCtrl", s, open, follow, share, speaker, filter);
}

int ZRScreen_IsPersonVisible(void* s, char* id)
{
    return record("IsPersonVisible", s, id);
}

int ZRScreen_ShowSmallWnd(void* s, bool show, bool mute)
{
    return record("ShowSmallWnd", s, show, mute);
}

int ZRScreen_GetSmallWndID(void* s)
{
    record("GetSmallWndID", s);
    return 34;
}

int ZRScreen_IsPersonVisibleInSmallWnd(void* s, char* id)
{
    record("IsPersonVisibleInSmallWnd", s, id);
    return 0;
}

int ZRScreen_SetShareSponsor(void* s, std::string id)
{
    return record("SetShareSponsor", s, id);
}

int ZRScreen_PopSelfShareWnd(void* s, bool floating, bool mute)
{
    return record("PopSelfShareWnd", s, floating, mute);
}

int ZRScreen_SetIsCloseWhiteBoard(void* s)
{
    return record("SetIsCloseWhiteBoard", s);
}

ZRRect ZRScreen_GetShareWgtPos(void* s)
{
    record("GetShareWgtPos", s);
    return {1, 2, 30, 40};
}

int ZRScreen_SetExtendScreen(void* s, bool extend, bool change)
{
    return record("SetExtendScreen", s, extend, change);
}

int ZRScreen_IsExtendScreen(void)
{
    record("IsExtendScreen", &g_screen);
    return 0;
}

int ZRScreen_SetVideoToolbarStatus(void* s, tagRECT* rect, bool show)
{
    return record("SetVideoToolbarStatus", s, rect, show);
}

int ZRScreen_IsMouseOnBtnMore(void* s)
{
    return record("IsMouseOnBtnMore", s);
}

int ZRScreen_ClearMoreMenuPtr(void* s)
{
    return record("ClearMoreMenuPtr", s);
}

int ZRScreen_ClearSubtitles(void* s)
{
    return record("ClearSubtitles", s);
}

int ZRScreen_AddSentence(void* s, int id, int colour, char* name, char* text)
{
    return record("AddSentence", s, id, colour, name, text);
}

#define FAKE_FLAG_SETTER(name)                                                                     \
    int ZRScreen_##name(void* s, bool flag)                                                        \
    {                                                                                              \
        return record(#name, s, flag);                                                             \
    }
FAKE_FLAG_SETTER(ReOrder)
FAKE_FLAG_SETTER(SetVoiceActivate)
FAKE_FLAG_SETTER(SetSupport9EqualCut)
FAKE_FLAG_SETTER(SetSupport16EqualCut)
FAKE_FLAG_SETTER(SetHideNoCameraWnd)
FAKE_FLAG_SETTER(SetHideSmallWidget)
FAKE_FLAG_SETTER(SetPauseShareWindow)
FAKE_FLAG_SETTER(OpenSubtitle)

} // extern "C"
