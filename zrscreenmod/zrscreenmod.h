/// ZRScreenMod: the video screen of a meeting client, as a library with a flat C interface.
///
/// This header, with `zrcontrols.h` and `zrextscreen.h` that it includes, is the whole contract
/// between the library and the program that loads it (the host). It needs a C++17 or a C11 compiler
/// and no Qt.
///
/// ## Compatibility
/// - Versions are semantic; `ZRSCREENMOD_VERSION` tells which one this header belongs to. Below 1.0
///   a minor version may change the interface: functions, records, numbers, and what a call does.
///   A patch changes none of that. `CHANGELOG.md` names what a host can notice.
/// - The interface is 64-bit, with C names and the system's one calling convention. Any compiler
///   may load most of it by name. C++ are four functions only: `ZRScreen_ChangeLayout` takes a
///   `std::map`, `ZRScreen_SetCurrentSpeakingPerson` and `ZRScreen_SetShareSponsor` take a
///   `std::string`, and the record of `ZRScreenWtmark_SetInfo` holds three. They need the module's
///   compiler family and standard library, and the same build settings (debug or release). A `bool`
///   is one byte, and a reference (`ZRCtrl_QLineEdit_GetText`) is a pointer that is not null.
/// - Released builds are made with GCC: for Linux with libstdc++, for Windows with MinGW-w64 and
///   POSIX threads. The header also compiles with Clang, as C++17, C++20 and C11.
/// - As C11 the header leaves the four functions out. The library ZRScreenModC (`zrscreenmod_c.h`)
///   has plain ones in their place, for C, for other languages and for other C++ compilers.
/// - A message of a number that a host does not know is to be ignored: new ones may come.
///
/// ## What loading the library changes in the process
/// - On attach the library creates one `QApplication` on the loading thread, unless the process
///   already has one. That thread is the **GUI thread**. The library runs no event loop of its
///   own: the host's loop on that thread drives it (the message loop on Windows, the default GLib
///   main context on Linux). Where Qt's platform plug-in is missing it creates none, and calls are
///   refused, with a line on stderr.
/// - In a program that uses Qt's widgets itself the library creates none: it attaches with the
///   first call after the program's `QApplication` has been made, on the same thread, and detaches
///   with its end. Before and after, calls are refused, with a line on stderr.
/// - High-DPI scaling of Qt is switched off, and Qt's message pattern is set. Variables of the
///   environment that scale Qt programs, choose Wayland or switch GLib off do not reach this
///   `QApplication`. On Windows the process becomes aware of the resolution, where its manifest
///   says nothing of it.
/// - On Linux the character set of the C locale (`LC_CTYPE`) becomes that of the environment; the
///   other categories stay as they are.
/// - Qt's message handler is the library's until it is unloaded: all messages of Qt in the process
///   go to the files `log/zrscreenLog<date>.txt`, written by a thread of the library. They lie in
///   the folder of the program, or in the user's where that cannot be written or is the system's.
///   With the environment variable `ZRSCREEN_LOG_STDERR` set to 1 they go to the message handler
///   that was there before as well. Log files older than three days are deleted.
/// - On X11 Qt installs an Xlib error handler, so that an error of one window does not end the
///   process. Without a display the library embeds nothing and shows nothing.
/// - `ZRScreen_Init` raises the priority of the GUI thread for good, as far as the system lets it.
///   On Linux threads and processes that are begun on that thread afterwards inherit it
///   (`setpriority` in them puts it back).
/// - The Qt libraries stay in memory after the library has been unloaded: Qt cannot be unloaded
///   safely. The module itself is.
/// - Unload the library on the thread that loaded it.
///
/// ## Threads
/// Every export may be called from any thread. The tag `@thread` of each says what that means:
/// - `any`: the call does its work on the calling thread and returns; what it means for the
///   interface follows on the GUI thread.
/// - `posted`: called from another thread, the call is checked and queued to the GUI thread in
///   order and returns at once. Called on the GUI thread, it is carried out at once.
/// - `gui`: called from another thread, the call runs on the GUI thread and the caller waits for
///   its result. A GUI thread that does not come back to its loop within 10 seconds makes the call
///   fail; the refused call then has no effect. Hold no lock meanwhile that the function for
///   messages takes.
///
/// ## Messages from inside a call
/// All messages are sent on the GUI thread, most of them from its loop. Where a call on that
/// thread, or one that waits for it, may send some before it returns, the tag `@sends` names them;
/// a function without the tag sends none from inside. Numbers are those of `eZRMsg`, and
/// - `arrangement` stands for what placing the tiles may send: `ZRMSG_VIDEO_SHOWN`,
///   `ZRMSG_MORE_MENU_CLOSED` and `ZRMSG_SHARE_RECT_CHANGED`;
/// - `mode` for `ZRMSG_SCREEN_MODE`, and, while subtitles are open, for what an arrangement sends:
///   the panel comes and goes with the mode.
///
/// ## Pointers and numbers
/// - The handles are opaque. A handle that is null, already released, or was never issued is
///   refused, logged, and changes nothing.
/// - A pointer argument is only read during the call. The library keeps copies. Memory that cannot
///   be read is refused where the system can tell.
/// - Strings are zero-terminated and at most 1 MiB long; longer ones are refused, since stray
///   pointers look like them. User ids and names of `ZRScreen_AddPerson` and the name of
///   `ZRScreen_SetPersonInfo` are UTF-8; other `char*` are in the local 8-bit encoding, and a
///   `std::string` or the ids of a map are UTF-8. A null string is an empty one, unless the export
///   says otherwise.
/// - Lengths are in physical pixels, also in a program that Qt scales; times in the unit that the
///   name ends with.
/// - Unless an export says otherwise, it returns 1 when it was carried out or queued and 0 when
///   the screen handle or an argument was refused.
///
/// ## When something fails
/// - Without an OpenGL context the windows stay black; calls and messages go on. The log says why.
/// - A context that the driver takes away in mid-meeting (a reset, an adapter that goes) is made
///   anew, and with it the native window that is painted in it, in its place: tried at once, and
///   again less and less often. The last pictures are there again without new frames. The log says
///   so. In a program of Qt's that shares all of its contexts (`Qt::AA_ShareOpenGLContexts`) the
///   windows stay as they are.
/// - A participant for whose picture there is no memory is black, and each frame tries again. The
///   log tells it once.
/// - A C++ exception that leaves the host's function ends there and is logged; the call or event
///   that sent the message goes on.
/// - A parent window that goes first takes the embedded windows along. Their handles stay valid
///   and go on taking calls and frames, hidden; what is put into another parent is shown there.
///   They must still be released.
/// - The log that cannot be written, say on a full disk, is told of once on stderr. Its lines are
///   lost and counted in the first line that can be written again.
/// - Where the GUI thread stands still, each participant keeps the last picture and its size,
///   however many frames come. `posted` calls wait in order, without a limit, and `gui` calls of
///   other threads are refused after 10 seconds.
/// - A wall clock that jumps changes the dates in the log and what the date picker offers, nothing
///   else.
/// - When the X server goes away Qt ends the process with `exit(1)`, as Xlib does. What was logged
///   before is in the log.
#ifndef ZRSCREENMOD_H
#define ZRSCREENMOD_H

/// The version of this header. It is stated here alone: the build reads it.
#define ZRSCREENMOD_VERSION_MAJOR 0
#define ZRSCREENMOD_VERSION_MINOR 1 ///< as before
#define ZRSCREENMOD_VERSION_PATCH 0 ///< as before
/// The same in one number, to be compared: 10203 is 1.2.3.
#define ZRSCREENMOD_VERSION                                                                        \
    (ZRSCREENMOD_VERSION_MAJOR * 10000 + ZRSCREENMOD_VERSION_MINOR * 100                           \
     + ZRSCREENMOD_VERSION_PATCH)

#include "zrtypes.h"

#ifdef __cplusplus
#    include <map>
#    include <string>
#endif

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
///
/// 5, 6, 7, 17 and 18 are not used and will not be; 27 is `ZRMSG_EXT_CLICK` of the extended screen.
enum eZRMsg ZR_OF_ULONG
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
    ZRMSG_EDIT_LBUTTON_DOWN = 24,   ///< left button pressed on an embedded line edit, also for
                                    ///< the second time of a double click; wParam = its handle,
                                    ///< lParam = 0
    ZRMSG_EDIT_LBUTTON_UP = 25,     ///< left button released there; as before
    ZRMSG_EDIT_KEY = 26,            ///< Tab pressed in an embedded line edit; as before
    ZRMSG_SCREEN_MODE = 28,         ///< the meeting mode has changed; wParam = mode, lParam = 0
    ZRMSG_GALLERY_CLICK = 29,       ///< click anywhere in the gallery; 0, 0
    ZRMSG_SHARE_RECT_CHANGED = 30   ///< the shared content has another rectangle; lParam = 0,
                                    ///< wParam = 1 when a shared screen is shown, else 0
};

/// The host's notification function. Its result is ignored. `dwMsg` is 32 bits wide on Windows. An
/// exception that leaves it is logged and goes no further, where the C++ runtime is the library's;
/// another runtime's ends the process.
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
    uint32_t width;     ///< pixels, 1 to ZR_MAX_FRAME_SIDE_PX
    uint32_t height;    ///< pixels, 1 to ZR_MAX_FRAME_SIDE_PX
};
typedef struct VantrelRTCVideoFrameQT VantrelRTCVideoFrameQT;

static_assert(sizeof(void*) == 8, "ZRScreenMod is a 64-bit interface");
static_assert(offsetof(VantrelRTCVideoFrameQT, pData) == 8, "frame record layout");
static_assert(offsetof(VantrelRTCVideoFrameQT, reserved1) == 16, "frame record layout");
static_assert(offsetof(VantrelRTCVideoFrameQT, width) == 20, "frame record layout");
static_assert(offsetof(VantrelRTCVideoFrameQT, height) == 24, "frame record layout");
static_assert(sizeof(ZRRect) == 16, "rectangles travel as 16 bytes");
#if defined(_WIN32)
static_assert(sizeof(unsigned long) == 4, "message ids are 32 bits wide on Windows");
#endif

#ifdef __cplusplus
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
#endif

ZR_BEGIN_C

// --- Life of a screen ---------------------------------------------------------------------

/// Creates a screen, puts it into the native window `hParent` and shows it. The window system must
/// know that window: on X11, call `XSync` on the connection that has made it first. As long as it
/// does not, the screen is hidden, and embedded shortly after or with the next
/// `ZRScreen_MoveWindow`. `hParent` may be null: the screen is then a window of its own. `notify`
/// may be null: the screen then sends no messages. It must stay callable until `ZRScreen_Release`
/// returns.
/// @return the screen handle, owned by the library until `ZRScreen_Release`; null on failure.
/// @thread gui
ZR_API void* ZR_CALL ZRScreen_Init(HWND hParent, ZRNotify notify);

/// Moves the screen into another native window.
/// @return 0 for an invalid handle, else 1, also when the system refused the new parent. The
/// screen then has no parent and is hidden until the system takes it, as with `ZRScreen_Init`.
/// @thread gui
/// @sends arrangement
ZR_API int ZR_CALL ZRScreen_SetParent(void* hScreen, HWND hParent);

/// Places the screen in its parent, in the parent's pixels, on top of its siblings, and shows it. A
/// side longer than 16384 is cut, one below 1 is 1. What is asked for when this has returned is the
/// new arrangement's. `unused` is ignored. @return 0 for an invalid handle or a null `pRect`.
/// @thread gui
/// @sends arrangement
ZR_API int ZR_CALL ZRScreen_MoveWindow(void* hScreen, tagRECT* pRect, int unused);

/// Destroys the screen with its participants. The handle and all play handles of the screen are
/// invalid afterwards; no message is sent any more. With the last screen all settings return to
/// their defaults, but for a screen that is made from inside the message that released it.
/// Waits for calls that other threads have under way, and works for those that wait for the GUI
/// thread; what these send goes to the other screens.
/// @thread gui
ZR_API void ZR_CALL ZRScreen_Release(void* hScreen);

/// Ends the screen's meeting: stops its timers, empties the gallery and forgets what was done in
/// it, from the mode to the share's sponsor. What the host has set for the client stays, and so
/// does that joining is complete. Sends ZRMSG_SCREEN_MODE and ZRMSG_SHARE_RECT_CHANGED where they
/// change. The play handles stand for nobody any more, but remain until `ZRScreen_DelPerson` takes
/// each of them back, or the screen is released: until then no other participant gets their
/// addresses.
/// @return 0 for an invalid handle, else 1.
/// @thread gui
/// @sends mode, 30
ZR_API int ZR_CALL ZRScreen_ExitMeeting(void* hScreen);

// --- Participants -------------------------------------------------------------------------

/// Adds a participant and its tile: when the call returns, the tile exists.
/// @param userId    UTF-8, must not be null. An id that contains "sharescreen_" is a shared
///                  screen; its name is empty, and its caption names who shares it. An id that
///                  is present already gives a new handle to the same participant.
/// @param userName  UTF-8
/// @param joinTime  orders the participants; made unique by adding 1 where it is taken
/// @param hostInt   kept with the participant
/// @param hostValue handed back in messages, never read
/// @return the play handle, owned by the library, valid until `ZRScreen_DelPerson` or
/// `ZRScreen_Release`; null on failure, and when the host has deleted the participant, or released
/// the screen, from inside the message about it.
/// @thread gui
/// @sends 22, 23; for a shared screen also mode
ZR_API void* ZR_CALL ZRScreen_AddPerson(void* hScreen, char* userId, char* userName,
                                        long long joinTime, int hostInt, void* hostValue);

/// Tells the screen that joining is complete: nothing is arranged before.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_JoinMeetingFinish(void* hScreen, bool bFinish);

/// Removes a participant; the play handle is invalid at once, also for calls from inside the
/// messages that follow, and the tile goes on the GUI thread. Stop delivering the participant's
/// frames first. `unused` is ignored.
/// @thread posted
/// @sends 19, 22, mode
ZR_API int ZR_CALL ZRScreen_DelPerson(void* hScreen, void* pPlay, bool unused);

/// Delivers one picture (a `VantrelRTCVideoFrameQT`). Calls for different participants run in
/// parallel. The picture is copied before the call returns. A participant whose tile is hidden
/// takes the frame without copying it. The first and the last byte of the picture are probed:
/// probing every page would cost more than the copy. Refused pictures are logged once, until a good
/// one comes. For a GUI thread that stands still the latest picture of each participant is kept,
/// and no other. Without memory for a picture the tile is black, and each frame tries again.
/// @return 1 when the screen took the frame, 0 when it was refused.
/// @thread any
/// @sends 2, 3, 4
ZR_API int ZR_CALL ZRScreen_PlayFrame(void* hScreen, void* pPlay, void* pWin32Frame);

/// Sets role and name. `name` is UTF-8; an empty one leaves the name as it is. A shared screen that
/// is given a name keeps it, in the place of who shares it.
/// @param iRoleType 1 host, 2 administrator, other values none
/// @param iIdentity index of the avatar's colour, 0 to 3; beyond, the four colours repeat
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetPersonInfo(void* hScreen, void* pPlay, bool bSelf, int iRoleType,
                                          char* name, int iIdentity);

/// Reports whether the participant's microphone is muted (bMute != 0).
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetMute(void* hScreen, void* pPlay, int bMute);

/// Reports the participant's volume, 0 to 100; other values are clamped.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetVolume(void* hScreen, void* pPlay, int iVolume);

/// Reports whether the participant's video stream is open.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_Preview(void* hScreen, void* pPlay, bool bPreview);

/// Reports whether the participant has raised a hand.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetPersonHandUp(void* hScreen, void* pPlay, bool bHandUp);

/// Reports a participant's network state. @param dir 1 sending, 2 receiving
/// @param nNetStatus level 0 (none) to 5 (best)
/// @thread posted
ZR_API int ZR_CALL ZRScreen_UpdateUserNetStatus(void* hScreen, const char* userId, int dir,
                                                bool bIsWeak, int nNetStatus);

// --- Arrangement --------------------------------------------------------------------------

#ifdef __cplusplus
/// Changes the meeting mode. `sorting` maps a position to a user id and replaces the customised
/// order; an empty map removes it. Positions only rank: they may be negative and have gaps. Ids
/// that nobody has do no harm, and of two positions for one id the lower counts. A number that is
/// no mode becomes the mode and shows nothing.
/// @thread posted
/// @sends mode
ZR_API int ZR_CALL ZRScreen_ChangeLayout(void* hScreen, eLayoutType eType,
                                         const std::map<int, std::string>& sorting);
#endif

/// @return the current meeting mode, 0 for an invalid handle.
/// @thread any
ZR_API int ZR_CALL ZRScreen_GetCurMode(void* hScreen);

/// Orders and arranges the participants anew.
/// @param bKeepFocusPerson a shared screen neither becomes the focus person nor ends the focus
/// @thread posted
ZR_API int ZR_CALL ZRScreen_ReOrder(void* hScreen, bool bKeepFocusPerson);

/// Makes a participant the focus person, the speaker of the modes that have one. An empty id ends
/// the choice, an unknown one changes nothing.
/// @param bVolActive suggested by voice activation: does not take the place of a chosen one
/// @thread posted
ZR_API int ZR_CALL ZRScreen_FocusByUserID(void* hScreen, char* userId, bool bVolActive);

/// Pins a participant for the local user (bLock != 0) or releases it.
/// @thread posted
/// @sends mode
ZR_API int ZR_CALL ZRScreen_LockLook(void* hScreen, void* pPlay, int bLock);

/// Pins a participant for everybody (bAll != 0) or releases it.
/// @thread posted
/// @sends mode
ZR_API int ZR_CALL ZRScreen_AllLook(void* hScreen, void* pPlay, int bAll);

/// Names the participant who is speaking; an unknown id means nobody.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetActivateUser(void* hScreen, char* userId);

#ifdef __cplusplus
/// Names the participant whose speech is shown at present.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetCurrentSpeakingPerson(void* hScreen, std::string userId);
#endif

/// Switches voice activation: the speaker follows the voices, but for the local user's, unless
/// somebody was chosen. It holds for all screens. @return always 1, also for an invalid handle.
/// @thread any
ZR_API int ZR_CALL ZRScreen_SetVoiceActivate(void* hScreen, bool bOpen);

/// Supports the 9-tile gallery: mode 1 then shows 9 tiles a page, from the next arrangement on.
/// @thread any
ZR_API int ZR_CALL ZRScreen_SetSupport9EqualCut(void* hScreen, bool bSupport);

/// Taken and kept, without an effect: no mode has sixteen tiles because of it.
/// @thread any
ZR_API int ZR_CALL ZRScreen_SetSupport16EqualCut(void* hScreen, bool bSupport);

/// Rotates the pages every `iTickSec` seconds, at least 1, from the first one on, in modes that
/// have pages; another mode begins anew. Speakers stay while their strip turns. Meanwhile no page
/// can be turned by hand and no tile maximised.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetOpenPollingPage(void* hScreen, bool bOpen, int iTickSec);

/// Sets who dictates the arrangement and switches the no-video filter.
/// @param bLayoutFollow the host dictates the layout: clicks change nothing
/// @param iShareIdx, iSpeakerIdx places in the display order that a share and who speaks take
/// while bOpenLayoutCtrl is set; below 0 for none. Where both are the same, the share comes first.
/// Who is first in the order is then the speaker, unless one was chosen.
/// @param bNoVideoFilter hides participants whose camera is off, as far as is known, but never the
/// local user, a shared screen or a chosen speaker
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetLayoutCtrl(void* hScreen, bool bOpenLayoutCtrl, bool bLayoutFollow,
                                          int iShareIdx, int iSpeakerIdx, bool bNoVideoFilter);

/// Switches the no-video filter off, whatever the argument says.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetHideNoCameraWnd(void* hScreen, bool unused);

/// @return 1 when the participant's tile is visible in the gallery, or their picture in the speaker
/// tool, else 0
/// @thread gui
/// @sends arrangement
ZR_API int ZR_CALL ZRScreen_IsPersonVisible(void* hScreen, char* userId);

// --- Small window, sharing, extended screen -----------------------------------------------

/// Hides or shows the small window: the speaker tool where it is in use, else the strip beside the
/// speakers, whose room the speaker then takes.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetHideSmallWidget(void* hScreen, bool bHide);

/// Shows the small window again after the client was restored (bShow), and closes the streams of
/// participants who are not visible (bMute). @return 1 when done
/// @thread gui
/// @sends 20, arrangement
ZR_API int ZR_CALL ZRScreen_ShowSmallWnd(void* hScreen, bool bShow, bool bMute);

/// @return the native id of the speaker tool's window, 0 while it is not shown.
/// @thread gui
ZR_API int ZR_CALL ZRScreen_GetSmallWndID(void* hScreen);

/// @return 1 when the participant is visible in the small window, else 0.
/// @thread gui
/// @sends arrangement
ZR_API int ZR_CALL ZRScreen_IsPersonVisibleInSmallWnd(void* hScreen, char* userId);

#ifdef __cplusplus
/// Names the user who shares a screen: the share has the id "sharescreen_" and theirs.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetShareSponsor(void* hScreen, std::string userId);
#endif

/// Floats the speaker tool over what the local user shares (bFloat), in every mode, and closes the
/// streams of participants who are not visible (bMuteVideo) at once. @return 1 when done
/// @thread gui
/// @sends 20, arrangement
ZR_API int ZR_CALL ZRScreen_PopSelfShareWnd(void* hScreen, bool bFloat, bool bMuteVideo);

/// Records in the log that the whiteboard was closed; nothing that is shown depends on it.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetIsCloseWhiteBoard(void* hScreen);

/// @return the rectangle of the shared picture in screen pixels, unset while there is none; right
/// and bottom are one past the last pixel here.
/// @thread gui
/// @sends arrangement
ZR_API ZRRect ZR_CALL ZRScreen_GetShareWgtPos(void* hScreen);

/// Pauses the shared picture or resumes it. @return always 1, also for an invalid handle.
/// @thread any
ZR_API int ZR_CALL ZRScreen_SetPauseShareWindow(void* hScreen, bool bPause);

/// Tells whether there is an extended screen.
/// @param bDeviceChange a monitor was added or removed: sizes of images are chosen anew, and the
///                      speaker tool goes back to its corner
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetExtendScreen(void* hScreen, bool bExtendScreen, bool bDeviceChange);

/// @return 1 while the extended screen is on, else 0.
/// @thread any
ZR_API int ZR_CALL ZRScreen_IsExtendScreen(void);

// --- Menus and toolbar --------------------------------------------------------------------

/// Reports the rectangle of the client's toolbar over the video, and whether it shows. It covers
/// tiles and changes nothing in them. `pRect` must not be null.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_SetVideoToolbarStatus(void* hScreen, tagRECT* pRect, bool bShow);

/// Tests whether the mouse is on a "more" button. @return 1 for a valid handle, by design, whatever
/// was found; that the mouse has left the tile, ZRMSG_MORE_MENU_CLOSED tells.
/// @thread gui
ZR_API int ZR_CALL ZRScreen_IsMouseOnBtnMore(void* hScreen);

/// Forgets the participant whose "more" menu is open.
/// @return always 1, also for an invalid handle.
/// @thread posted
ZR_API int ZR_CALL ZRScreen_ClearMoreMenuPtr(void* hScreen);

// --- Subtitles ----------------------------------------------------------------------------

/// Opens or closes the subtitle panel and clears the subtitles.
/// @thread gui
/// @sends arrangement
ZR_API int ZR_CALL ZRScreen_OpenSubtitle(void* hScreen, bool bOpen);

/// Clears the subtitles.
/// @thread any
ZR_API int ZR_CALL ZRScreen_ClearSubtitles(void* hScreen);

/// Adds a sentence or replaces the one with the same id. The 64 sentences with the highest ids are
/// kept. @param iColorType index of the speaker's colour, 0 to 3
/// @thread any
ZR_API int ZR_CALL ZRScreen_AddSentence(void* hScreen, int iIDSentence, int iColorType,
                                        char* userName, char* transStr);

// --- Watermark over shared screens --------------------------------------------------------

#ifdef __cplusplus
/// Tells what the watermark says, and whether there is one; also before the first screen. The
/// record is copied and kept until the library is unloaded, over the ends of screens; tiles of
/// shared screens show it with their next repaint, which follows at once. The text is the name,
/// or the name, a hyphen and the phone number or the address. A record or text that cannot be read
/// is refused and logged.
/// @thread any
ZR_API void ZR_CALL ZRScreenWtmark_SetInfo(const __WTMark_Info& info);
#endif

/// Switches the watermark on or off and leaves the rest of the record as it is; also before the
/// first screen. The next `ZRScreenWtmark_SetInfo` decides anew.
/// @thread any
ZR_API void ZR_CALL ZRScreenWtmark_SetEnabled(bool bEnabled);

ZR_END_C

#include "zrcontrols.h"
#include "zrextscreen.h"

#endif // ZRSCREENMOD_H
