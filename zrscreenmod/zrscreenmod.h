/// ZRScreenMod: the video screen of a meeting client, as a library with a flat C interface.
///
/// This header, with `zrcontrols.h` and `zrextscreen.h` that it includes, is the whole contract
/// between the library and the program that loads it (the host). It needs a C++17 compiler and the
/// standard library that the module was built with (two arguments are `std::string`, one is a
/// `std::map`, and the watermark's record has three strings). It needs no Qt.
///
/// ## What loading the library changes in the process
/// - On attach the library creates one `QApplication` on the loading thread, unless the process
///   already has one. That thread is the **GUI thread**. The library runs no event loop of its
///   own: the host's loop on that thread drives it (the message loop on Windows, the default GLib
///   main context on Linux).
/// - High-DPI scaling of Qt is switched off, and Qt's message pattern is set.
/// - All messages of Qt in the process go to the files `log/zrscreenLog<date>.txt` in the folder of
///   the program, written by a thread of the library. With the environment variable
///   `ZRSCREEN_LOG_STDERR` set to 1 they go to the message handler that was there before as well.
///   Log files older than three days are deleted.
/// - On X11 Qt installs an Xlib error handler, so that an error of one window does not end the
///   process. Without a display the library embeds nothing and shows nothing.
/// - `ZRScreen_Init` raises the priority of the GUI thread for good, as far as the system lets it.
/// - The Qt libraries stay in memory after the library has been unloaded: Qt cannot be unloaded
///   safely. The module itself is.
/// - Unload the library on the thread that loaded it.
///
/// ## Threads
/// Every export may be called from any thread.
/// - **any**: the call does its work on the calling thread and returns; what it means for the
///   interface follows on the GUI thread.
/// - **posted**: called from another thread, the call is checked and queued to the GUI thread in
///   order and returns at once.
/// - **GUI**: called from another thread, the call runs on the GUI thread and the caller waits for
///   its result. A GUI thread that does not come back to its loop within 10 seconds makes the call
///   fail; the refused call then has no effect.
///
/// ## Pointers and numbers
/// - The handles are opaque. A handle that is null, already released, or was never issued is
///   refused, logged, and changes nothing.
/// - A pointer argument is only read during the call. The library keeps copies. Memory that cannot
///   be read is refused where the system can tell.
/// - Strings are zero-terminated. User ids and names of `ZRScreen_AddPerson` and the name of
///   `ZRScreen_SetPersonInfo` are UTF-8; other `char*` are in the local 8-bit encoding. A null
///   string is an empty one, unless the export says otherwise.
/// - Lengths are in physical pixels, times in the unit that the name ends with.
/// - Unless an export says otherwise, it returns 1 when it was carried out or queued and 0 when
///   the screen handle or an argument was refused.
#ifndef ZRSCREENMOD_H
#define ZRSCREENMOD_H

#include "zrtypes.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#if defined(_WIN32)
#    define ZR_CALL __cdecl
#    if defined(ZRSCREENMOD_BUILD)
#        define ZR_API __declspec(dllexport)
#    else
#        define ZR_API __declspec(dllimport)
#    endif
#else
#    define ZR_CALL
#    define ZR_API __attribute__((visibility("default")))
#endif

/// Number of a message to the host (`dwMsg`).
///
/// Every message is sent on the GUI thread, from inside the library's event handling, and the
/// library waits for the host's function to return. The host may call any export from there,
/// `ZRScreen_Release` included (the screen is then destroyed when the event is done).
///
/// "person" is the opaque participant record; "host value" is the last argument of
/// `ZRScreen_AddPerson`. Unless noted, wParam = person and lParam = host value.
///
/// A stream request has no id of its own: `dwMsg` is the grade that the participant's stream
/// should have, 2 (small), 3 (grid) or 4 (large). No other message has one of these numbers.
enum eZRMsg : unsigned long
{
    ZRMSG_CLICK_AUDIO = 0,     ///< click on a tile's microphone; person may be null
    ZRMSG_CLICK_MORE = 1,      ///< click on "more"; wParam = horizontal position of the menu
    ZRMSG_DBLCLICK_LAYOUT = 8, ///< double click on a tile; wParam = 5, 6 or 7, class of the mode
    ZRMSG_TILE_CLICK = 9,      ///< left click on a tile; 0, 0
    ZRMSG_CLICK_HANDUP = 10,   ///< click on a raised hand
    ZRMSG_FOCUS_PERSON = 11,   ///< the person that is selected now
    ZRMSG_GALLERY_PRESS = 12,  ///< mouse press on the gallery's background; 0, 0
    ZRMSG_LOOK_TOAST_NOT_ALL = 13,  ///< 0, 0; not sent while the extended screen is on
    ZRMSG_FOCUS_STREAM = 14,        ///< wParam = user id (char*, local 8-bit, valid during the
                                    ///< call), lParam = 1 for the new focus, 0 for the old one
    ZRMSG_FOCUS_KEPT = 15,          ///< the focus stayed where it was; 0, 0
    ZRMSG_LOOK_TOAST_ALL = 16,      ///< 0, 0; not sent while the extended screen is on
    ZRMSG_PERSON_REMOVED = 19,      ///< a participant who was on the screen has been removed
    ZRMSG_VIDEO_HIDDEN = 20,        ///< the participant's tile is not visible any more
    ZRMSG_VIDEO_SHOWN = 21,         ///< the participant's tile has become visible
    ZRMSG_MORE_MENU_CLOSED = 22,    ///< 0, 0
    ZRMSG_PERSON_INFO_UPDATED = 23, ///< wParam = play handle
    ZRMSG_EDIT_LBUTTON_DOWN = 24,   ///< left button pressed on an embedded line edit; wParam =
                                    ///< its handle, lParam = 0
    ZRMSG_EDIT_LBUTTON_UP = 25,     ///< left button released there; as before
    ZRMSG_EDIT_KEY = 26,            ///< Tab pressed in an embedded line edit; as before
    ZRMSG_SCREEN_MODE = 28,         ///< the meeting mode has changed; wParam = mode, lParam = 0
    ZRMSG_GALLERY_CLICK = 29,       ///< click anywhere in the gallery; 0, 0
    ZRMSG_SHARE_RECT_CHANGED = 30   ///< the shared content has another rectangle; lParam = 0,
                                    ///< wParam = 1 when a shared screen is shown, else 0
};

/// The host's notification function. Its result is ignored. `dwMsg` is 32 bits wide on Windows.
typedef int (*ZRNotify)(unsigned long dwMsg, unsigned long long wParam, long long lParam);

/// One decoded picture, owned by the caller and only read during the call.
struct VantrelRTCVideoFrameQT
{
    uint8_t reserved0[8]; ///< not read
    /// Planar YUV 4:2:0 (I420) in one block without padding: the Y plane with width x height
    /// bytes, then the U and V planes with ((width + 1) / 2) x ((height + 1) / 2) bytes each.
    /// BT.709, limited range.
    const uint8_t* pData;
    uint32_t reserved1; ///< not read
    uint32_t width;     ///< pixels, 1 to 16384
    uint32_t height;    ///< pixels, 1 to 16384
};

static_assert(sizeof(void*) == 8, "ZRScreenMod is a 64-bit interface");
static_assert(offsetof(VantrelRTCVideoFrameQT, pData) == 8, "frame record layout");
static_assert(offsetof(VantrelRTCVideoFrameQT, reserved1) == 16, "frame record layout");
static_assert(offsetof(VantrelRTCVideoFrameQT, width) == 20, "frame record layout");
static_assert(offsetof(VantrelRTCVideoFrameQT, height) == 24, "frame record layout");
static_assert(sizeof(ZRRect) == 16, "rectangles travel as 16 bytes");
#if defined(_WIN32)
static_assert(sizeof(unsigned long) == 4, "message ids are 32 bits wide on Windows");
#endif

/// What the watermark over shared screens says. It contains the standard library's strings, so the
/// host must be built with the standard library of the module, in the same settings.
struct __WTMark_Info // NOLINT(bugprone-reserved-identifier,cert-dcl*): the host's name for it
{
    bool bEnabled;     ///< whether there is a watermark
    int cloundType;    ///< what follows the name: 1 the phone number, 2 the address, else nothing
    std::string name;  ///< local 8-bit; without a name there is no watermark
    std::string phone; ///< UTF-8; shown with its fourth to seventh character as asterisks
    std::string email; ///< UTF-8
};

// With strings of 32 bytes, which libstdc++ and the release build of Microsoft's library have, the
// texts lie at 8, 40 and 72.
static_assert(offsetof(__WTMark_Info, cloundType) == 4, "watermark record layout");
static_assert(offsetof(__WTMark_Info, name) == 8, "watermark record layout");
static_assert(offsetof(__WTMark_Info, phone) == 8 + sizeof(std::string), "watermark record layout");
static_assert(offsetof(__WTMark_Info, email) == 8 + 2 * sizeof(std::string),
              "watermark record layout");
static_assert(sizeof(__WTMark_Info) == 8 + 3 * sizeof(std::string), "watermark record layout");

extern "C" {

// --- Life of a screen ---------------------------------------------------------------------

/// Creates a screen, puts it into the native window `hParent` and shows it. GUI.
/// `hParent` may be null: the screen is then a window of its own. `notify` may be null: the
/// screen then sends no messages. It must stay callable until `ZRScreen_Release` returns.
/// @return the screen handle, owned by the library until `ZRScreen_Release`; null on failure.
ZR_API void* ZR_CALL ZRScreen_Init(HWND hParent, ZRNotify notify);

/// Moves the screen into another native window. GUI.
/// @return 0 for an invalid handle, else 1, also when the system refused the new parent. The
/// screen then has no parent.
ZR_API int ZR_CALL ZRScreen_SetParent(void* hScreen, HWND hParent);

/// Places the screen in its parent, in the parent's pixels, on top of its siblings, and shows it.
/// A side longer than 16384 is cut. GUI. `unused` is ignored. @return 0 for an invalid handle or a
/// null `pRect`.
ZR_API int ZR_CALL ZRScreen_MoveWindow(void* hScreen, tagRECT* pRect, int unused);

/// Destroys the screen with its participants. GUI. The handle and all play handles of the screen
/// are invalid afterwards; no message is sent any more. With the last screen all settings return
/// to their defaults. Waits for calls that other threads have under way.
ZR_API void ZR_CALL ZRScreen_Release(void* hScreen);

/// Stops the screen's timers and empties the gallery. GUI.
/// @return 0 for an invalid handle, else 1.
ZR_API int ZR_CALL ZRScreen_ExitMeeting(void* hScreen);

// --- Participants -------------------------------------------------------------------------

/// Adds a participant and its tile. GUI: when the call returns, the tile exists.
/// @param userId    UTF-8, must not be null. An id that contains "sharescreen_" is a shared
///                  screen; its name is empty. An id that is present already gives a new handle
///                  to the same participant.
/// @param userName  UTF-8
/// @param joinTime  orders the participants; made unique by adding 1 where it is taken
/// @param hostInt   kept with the participant
/// @param hostValue handed back in messages, never read
/// @return the play handle, owned by the library, valid until `ZRScreen_DelPerson` or
/// `ZRScreen_Release`; null on failure.
ZR_API void* ZR_CALL ZRScreen_AddPerson(void* hScreen, char* userId, char* userName,
                                        long long joinTime, int hostInt, void* hostValue);

/// Tells the screen that joining is complete: nothing is arranged before. posted.
ZR_API int ZR_CALL ZRScreen_JoinMeetingFinish(void* hScreen, bool bFinish);

/// Removes a participant; the play handle is invalid at once, the tile goes on the GUI thread.
/// posted. Stop delivering the participant's frames first. `unused` is ignored.
ZR_API int ZR_CALL ZRScreen_DelPerson(void* hScreen, void* pPlay, bool unused);

/// Delivers one picture (a `VantrelRTCVideoFrameQT`). any; calls for different participants run
/// in parallel. The picture is copied before the call returns. A participant whose tile is hidden
/// takes the frame without copying it. The first and the last byte of the picture are probed.
/// @return 1 when the screen took the frame, 0 when it was refused.
ZR_API int ZR_CALL ZRScreen_PlayFrame(void* hScreen, void* pPlay, void* pWin32Frame);

/// Sets role and name. posted. `name` is UTF-8; an empty one leaves the name as it is.
/// @param iRoleType 1 host, 2 administrator, other values none @param iIdentity kept for the tile
ZR_API int ZR_CALL ZRScreen_SetPersonInfo(void* hScreen, void* pPlay, bool bSelf, int iRoleType,
                                          char* name, int iIdentity);

/// Reports whether the participant's microphone is muted (bMute != 0). posted.
ZR_API int ZR_CALL ZRScreen_SetMute(void* hScreen, void* pPlay, int bMute);

/// Reports the participant's volume, 0 to 100; other values are clamped. posted.
ZR_API int ZR_CALL ZRScreen_SetVolume(void* hScreen, void* pPlay, int iVolume);

/// Reports whether the participant's video stream is open. posted.
ZR_API int ZR_CALL ZRScreen_Preview(void* hScreen, void* pPlay, bool bPreview);

/// Reports whether the participant has raised a hand. posted.
ZR_API int ZR_CALL ZRScreen_SetPersonHandUp(void* hScreen, void* pPlay, bool bHandUp);

/// Reports a participant's network state. posted. @param dir 1 sending, 2 receiving
/// @param nNetStatus level 0 (none) to 5 (best)
ZR_API int ZR_CALL ZRScreen_UpdateUserNetStatus(void* hScreen, const char* userId, int dir,
                                                bool bIsWeak, int nNetStatus);

// --- Arrangement --------------------------------------------------------------------------

/// Changes the meeting mode. posted. `sorting` maps a position to a user id and replaces the
/// customised order; an empty map removes it.
ZR_API int ZR_CALL ZRScreen_ChangeLayout(void* hScreen, eLayoutType eType,
                                         const std::map<int, std::string>& sorting);

/// @return the current meeting mode, 0 for an invalid handle. any
ZR_API int ZR_CALL ZRScreen_GetCurMode(void* hScreen);

/// Orders and arranges the participants anew. posted.
ZR_API int ZR_CALL ZRScreen_ReOrder(void* hScreen, bool bKeepFocusPerson);

/// Makes a participant the focus person, the speaker of the modes that have one. An empty id ends
/// the choice, an unknown one changes nothing. posted.
/// @param bVolActive suggested by voice activation: does not take the place of a chosen one
ZR_API int ZR_CALL ZRScreen_FocusByUserID(void* hScreen, char* userId, bool bVolActive);

/// Pins a participant for the local user (bLock != 0) or releases it. posted.
ZR_API int ZR_CALL ZRScreen_LockLook(void* hScreen, void* pPlay, int bLock);

/// Pins a participant for everybody (bAll != 0) or releases it. posted.
ZR_API int ZR_CALL ZRScreen_AllLook(void* hScreen, void* pPlay, int bAll);

/// Names the participant who is speaking; an unknown id means nobody. posted.
ZR_API int ZR_CALL ZRScreen_SetActivateUser(void* hScreen, char* userId);

/// Names the participant whose speech is shown at present. posted.
ZR_API int ZR_CALL ZRScreen_SetCurrentSpeakingPerson(void* hScreen, std::string userId);

/// Switches voice activation: the speaker follows the voices unless somebody was chosen.
/// any. @return always 1, also for an invalid handle.
ZR_API int ZR_CALL ZRScreen_SetVoiceActivate(void* hScreen, bool bOpen);

/// Supports the 9-tile gallery: mode 1 then shows 9 tiles a page. any; shown with the next
/// arrangement.
ZR_API int ZR_CALL ZRScreen_SetSupport9EqualCut(void* hScreen, bool bSupport);

/// Supports the 16-tile gallery. any; shown with the next arrangement.
ZR_API int ZR_CALL ZRScreen_SetSupport16EqualCut(void* hScreen, bool bSupport);

/// Rotates the pages every `iTickSec` seconds, at least 1. posted.
ZR_API int ZR_CALL ZRScreen_SetOpenPollingPage(void* hScreen, bool bOpen, int iTickSec);

/// Sets who dictates the arrangement and switches the no-video filter. posted.
/// @param bLayoutFollow the host dictates the layout: clicks change nothing
/// @param iShareIdx, iSpeakerIdx places in the display order that a share and who speaks take
/// while bOpenLayoutCtrl is set; below 0 for none
ZR_API int ZR_CALL ZRScreen_SetLayoutCtrl(void* hScreen, bool bOpenLayoutCtrl, bool bLayoutFollow,
                                          int iShareIdx, int iSpeakerIdx, bool bNoVideoFilter);

/// Switches the no-video filter off, whatever the argument says. posted.
ZR_API int ZR_CALL ZRScreen_SetHideNoCameraWnd(void* hScreen, bool unused);

/// @return 1 when the participant's tile is visible in the gallery, else 0. GUI
ZR_API int ZR_CALL ZRScreen_IsPersonVisible(void* hScreen, char* userId);

// --- Small window, sharing, extended screen -----------------------------------------------

/// Hides or shows the small window: the speaker tool, or the strip beside the speakers. posted.
ZR_API int ZR_CALL ZRScreen_SetHideSmallWidget(void* hScreen, bool bHide);

/// Shows the small window again after the client was restored (bShow), and closes the streams of
/// participants who are not visible (bMute). GUI. @return 1 when done
ZR_API int ZR_CALL ZRScreen_ShowSmallWnd(void* hScreen, bool bShow, bool bMute);

/// @return the native id of the speaker tool's window, 0 while it is not shown. GUI
ZR_API int ZR_CALL ZRScreen_GetSmallWndID(void* hScreen);

/// @return 1 when the participant is visible in the small window, else 0. GUI
ZR_API int ZR_CALL ZRScreen_IsPersonVisibleInSmallWnd(void* hScreen, char* userId);

/// Names the user who shares a screen: the share has the id "sharescreen_" and theirs. posted.
ZR_API int ZR_CALL ZRScreen_SetShareSponsor(void* hScreen, std::string userId);

/// Floats the speaker tool over what the local user shares (bFloat), and closes the streams of
/// participants who are not visible (bMuteVideo). GUI. @return 1 when done
ZR_API int ZR_CALL ZRScreen_PopSelfShareWnd(void* hScreen, bool bFloat, bool bMuteVideo);

/// Records that the whiteboard was closed. posted.
ZR_API int ZR_CALL ZRScreen_SetIsCloseWhiteBoard(void* hScreen);

/// @return the rectangle of the shared picture in screen pixels, unset while there is none; right
/// and bottom are one past the last pixel here. GUI
ZR_API ZRRect ZR_CALL ZRScreen_GetShareWgtPos(void* hScreen);

/// Pauses the shared picture or resumes it. any. @return always 1, also for an invalid handle.
ZR_API int ZR_CALL ZRScreen_SetPauseShareWindow(void* hScreen, bool bPause);

/// Switches the extended screen. posted. @param bDeviceChange a monitor was added or removed
ZR_API int ZR_CALL ZRScreen_SetExtendScreen(void* hScreen, bool bExtendScreen, bool bDeviceChange);

/// @return 1 while the extended screen is on, else 0. any
ZR_API int ZR_CALL ZRScreen_IsExtendScreen(void);

// --- Menus and toolbar --------------------------------------------------------------------

/// Reports the rectangle of the client's toolbar over the video, and whether it shows. posted.
/// `pRect` must not be null.
ZR_API int ZR_CALL ZRScreen_SetVideoToolbarStatus(void* hScreen, tagRECT* pRect, bool bShow);

/// Tests whether the mouse is on a "more" button. GUI. @return 1 for a valid handle, by design:
/// the answer is in the message ZRMSG_MORE_MENU_CLOSED.
ZR_API int ZR_CALL ZRScreen_IsMouseOnBtnMore(void* hScreen);

/// Forgets the participant whose "more" menu is open. posted.
/// @return always 1, also for an invalid handle.
ZR_API int ZR_CALL ZRScreen_ClearMoreMenuPtr(void* hScreen);

// --- Subtitles ----------------------------------------------------------------------------

/// Opens or closes the subtitle panel and clears the subtitles. GUI.
ZR_API int ZR_CALL ZRScreen_OpenSubtitle(void* hScreen, bool bOpen);

/// Clears the subtitles. any.
ZR_API int ZR_CALL ZRScreen_ClearSubtitles(void* hScreen);

/// Adds a sentence or replaces the one with the same id. any. The 64 sentences with the highest
/// ids are kept. @param iColorType index of the speaker's colour, 0 to 3
ZR_API int ZR_CALL ZRScreen_AddSentence(void* hScreen, int iIDSentence, int iColorType,
                                        char* userName, char* transStr);

// --- Watermark over shared screens --------------------------------------------------------

/// Tells what the watermark says, and whether there is one. any; also before the first screen. The
/// record is copied and kept until the library is unloaded, over the ends of screens; tiles of
/// shared screens show it with their next repaint, which follows at once. The text is the name,
/// or the name, a hyphen and the phone number or the address. A record or text that cannot be read
/// is refused and logged.
ZR_API void ZR_CALL ZRScreenWtmark_SetInfo(const __WTMark_Info& info);

/// Switches the watermark on or off and leaves the rest of the record as it is. any; also before
/// the first screen. The next `ZRScreenWtmark_SetInfo` decides anew.
ZR_API void ZR_CALL ZRScreenWtmark_SetEnabled(bool bEnabled);

} // extern "C"

#include "zrcontrols.h"
#include "zrextscreen.h"

#endif // ZRSCREENMOD_H
