#include "fakescreen.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <utility>

namespace {

/// What a play handle points to.
struct FakePerson
{
    std::string id;
};

std::mutex g_mutex;
std::vector<std::string> g_calls;
std::vector<std::string> g_frames;
std::set<void*> g_people;
ZRNotify g_notify = nullptr;
int g_screen = 0; // its address is the screen's handle

template<typename... Args>
int record(const char* name, const void* screen, const Args&... args)
{
    return recordFake(name, screen, &g_screen, args...);
}

/// The id of a participant who is there.
std::string person(void* play)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    return g_people.count(play) != 0 ? static_cast<FakePerson*>(play)->id : "no person";
}

} // namespace

void recordFakeCall(const std::string& call)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_calls.push_back(call);
    if (std::getenv("FAKESCREEN_PRINT")) {
        std::printf("call %s\n", call.c_str());
        std::fflush(stdout);
    }
}

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
            {"ZRScreenWtmark_SetInfo", reinterpret_cast<void*>(&ZRScreenWtmark_SetInfo)},
        {"ZRScreenWtmark_SetEnabled", reinterpret_cast<void*>(&ZRScreenWtmark_SetEnabled)},
#define FAKE_ENTRY(name) {"ZRScreenExt_" #name, reinterpret_cast<void*>(&ZRScreenExt_##name)},
        ZRHOST_EXT_EXPORTS(FAKE_ENTRY)
#undef FAKE_ENTRY
    };
    const auto found = exports.find(name);
    return found == exports.end() ? fakeControlExport(name) : found->second;
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

void ZRScreen_Release(void* s)
{
    record("Release", s, static_cast<int>(g_people.size()));
}

void* ZRScreen_AddPerson(void* s, char* id, char* name, long long time, int, void* hostValue)
{
    record("AddPerson", s, id, name, static_cast<int>(time));
    FakePerson* const person = std::make_unique<FakePerson>(FakePerson{id}).release();
    {
        const std::lock_guard<std::mutex> lock(g_mutex);
        g_people.insert(person); // DelPerson frees it
    }
    if (g_notify)
        g_notify(ZRMSG_VIDEO_SHOWN, 0x10,
                 static_cast<long long>(reinterpret_cast<intptr_t>(hostValue)));
    return person;
}

int ZRScreen_DelPerson(void* s, void* play, bool)
{
    record("DelPerson", s, person(play));
    const std::lock_guard<std::mutex> lock(g_mutex);
    if (g_people.erase(play) == 0)
        return 0;
    delete static_cast<FakePerson*>(play);
    return 1;
}

int ZRScreen_PlayFrame(void*, void* play, void* data)
{
    const auto& frame = *static_cast<VantrelRTCVideoFrameQT*>(data);
    const std::string text = person(play) + " " + std::to_string(frame.width) + "x"
                             + std::to_string(frame.height) + " "
                             + std::to_string(int(frame.pData[0]));
    const std::lock_guard<std::mutex> lock(g_mutex);
    constexpr std::size_t kMaxFrames = 1000;
    if (g_frames.size() < kMaxFrames)
        g_frames.push_back(text);
    return 1;
}

int ZRScreen_ChangeLayout(void* s, eLayoutType type, const std::map<int, std::string>& sorting)
{
    std::string order;
    for (const auto& [position, id] : sorting)
        order += std::to_string(position) + "=" + id + ";";
    return record("ChangeLayout", s, static_cast<int>(type), order);
}

void ZRScreenWtmark_SetInfo(const __WTMark_Info& info)
{
    record("Wtmark.SetInfo", &g_screen, info.bEnabled, info.cloundType, info.name, info.phone,
           info.email);
}

void ZRScreenWtmark_SetEnabled(bool bEnabled)
{
    record("Wtmark.SetEnabled", &g_screen, bEnabled);
}

void* ZRScreenExt_Init(HWND, ZRNotify)
{
    record("Ext.Init", &g_screen);
    return &g_screen;
}

void ZRScreenExt_Release(void* s)
{
    record("Ext.Release", s);
}

int ZRScreenExt_PlayFrame(void*, void*)
{
    return 1;
}

ZRRect ZRScreenExt_GetShareWgtPos(void* s)
{
    record("Ext.GetShareWgtPos", s);
    return {5, 6, 70, 80};
}

int ZRScreen_IsExtendScreen(void)
{
    return record("IsExtendScreen", &g_screen);
}

ZRRect ZRScreen_GetShareWgtPos(void* s)
{
    record("GetShareWgtPos", s);
    return {1, 2, 30, 40};
}

// The rest is only recorded. FAKE(name, parameters behind the handle, what is recorded of them)
#define FAKE_RECORDED(family, prefix, name, parameters, ...)                                       \
    int family##name(void* s, FAKE_LIST parameters)                                                \
    {                                                                                              \
        return record(prefix #name, s, __VA_ARGS__);                                               \
    }
#define FAKE(name, parameters, ...) FAKE_RECORDED(ZRScreen_, "", name, parameters, __VA_ARGS__)
#define FAKE_EXT(name, parameters, ...)                                                            \
    FAKE_RECORDED(ZRScreenExt_, "Ext.", name, parameters, __VA_ARGS__)
#define FAKE_FLAG(name) FAKE(name, (bool flag), flag)
#define FAKE_TEXT(name, type) FAKE(name, (type text), text)
#define FAKE_PLAIN(name)                                                                           \
    int ZRScreen_##name(void* s)                                                                   \
    {                                                                                              \
        return record(#name, s);                                                                   \
    }

// clang-format off
FAKE(SetParent, (HWND), "")
FAKE(MoveWindow, (tagRECT* rect, int), rect)
FAKE(SetPersonInfo, (void* play, bool self, int role, char* name, int identity),
     person(play), self, role, name, identity)
FAKE(SetMute, (void* play, int mute), person(play), mute)
FAKE(SetVolume, (void* play, int volume), person(play), volume)
FAKE(Preview, (void* play, bool preview), person(play), preview)
FAKE(SetPersonHandUp, (void* play, bool up), person(play), up)
FAKE(UpdateUserNetStatus, (const char* id, int dir, bool weak, int level), id, dir, weak, level)
FAKE(FocusByUserID, (char* id, bool voice), id, voice)
FAKE(LockLook, (void* play, int lock), person(play), lock)
FAKE(AllLook, (void* play, int all), person(play), all)
FAKE(SetOpenPollingPage, (bool open, int seconds), open, seconds)
FAKE(SetLayoutCtrl, (bool open, bool follow, int share, int speaker, bool filter),
     open, follow, share, speaker, filter)
FAKE(ShowSmallWnd, (bool show, bool mute), show, mute)
FAKE(PopSelfShareWnd, (bool floating, bool mute), floating, mute)
FAKE(SetExtendScreen, (bool extend, bool change), extend, change)
FAKE(SetVideoToolbarStatus, (tagRECT* rect, bool show), rect, show)
FAKE(AddSentence, (int id, int colour, char* name, char* text), id, colour, name, text)
FAKE_TEXT(SetActivateUser, char*)
FAKE_TEXT(SetCurrentSpeakingPerson, std::string)
FAKE_TEXT(SetShareSponsor, std::string)
FAKE_TEXT(IsPersonVisible, char*)
FAKE_TEXT(IsPersonVisibleInSmallWnd, char*)
FAKE_FLAG(JoinMeetingFinish) FAKE_FLAG(ReOrder) FAKE_FLAG(SetVoiceActivate)
FAKE_FLAG(SetSupport9EqualCut) FAKE_FLAG(SetSupport16EqualCut) FAKE_FLAG(SetHideNoCameraWnd)
FAKE_FLAG(SetHideSmallWidget) FAKE_FLAG(SetPauseShareWindow) FAKE_FLAG(OpenSubtitle)
FAKE_PLAIN(ExitMeeting) FAKE_PLAIN(GetCurMode) FAKE_PLAIN(GetSmallWndID)
FAKE_PLAIN(SetIsCloseWhiteBoard) FAKE_PLAIN(IsMouseOnBtnMore) FAKE_PLAIN(ClearMoreMenuPtr)
FAKE_PLAIN(ClearSubtitles)
FAKE_EXT(Move, (tagRECT* rect, int), rect)
FAKE_EXT(SetAllLook, (bool on), on)
FAKE_EXT(SetLockLook, (bool on), on)
FAKE_EXT(SetMute, (int mute), mute)
FAKE_EXT(SetVolume, (const char* id, int volume), id, volume)
FAKE_EXT(Preview, (bool preview), preview)
FAKE_EXT(UpdateUserNetStatus, (const char* id, int type, bool bad, int level), id, type, bad, level)
FAKE_EXT(SetPersonInfo, (void* user, const char* id, bool self, int role, const char* name, int colour),
         user ? "somebody" : "nobody", id, self, role, name, colour)
// clang-format on

} // extern "C"
