/// ZRScreenMod: the extended screen, one participant in a window of the host's, for instance on
/// another monitor. A part of `zrscreenmod.h`, whose rules on threads, pointers and numbers hold
/// here too.
///
/// - An extended screen is a native window. It is created inside the window that the host names,
///   hidden, and stays there until it is released. Release it before that window is destroyed.
/// - It has a participant of its own, whom the host describes with the functions below. It needs no
///   screen and no play handle, and nothing here changes a gallery. What the host reports with
///   `ZRScreen_Preview` for a participant with the same id is taken over.
/// - When a participant comes to be seen here, `ZRMSG_VIDEO_SHOWN` goes to the hosts of all
///   screens, with the user data in place of the host value. While one is on an extended screen, no
///   gallery asks for their stream to be closed (`ZRMSG_VIDEO_HIDDEN`); it does when they have left
///   and are not seen there either. What grade the stream should have the host decides.
/// - Whether there is an extended screen at all, the host tells with `ZRScreen_SetExtendScreen`;
///   creating one does not.
/// - A handle that is null is refused without a log line.
/// - An extended screen may outlive all screens. Their settings then return to their defaults when
///   it is released as well.
#ifndef ZREXTSCREEN_H
#define ZREXTSCREEN_H

#include "zrscreenmod.h"

/// Message of an extended screen, to the function that was given to its `ZRScreenExt_Init` and to
/// no other; the number is none of `eZRMsg`.
enum eZRExtMsg ZR_OF_ULONG
{
    /// A left click on the picture; wParam = the handle of the extended screen, lParam = the user
    /// data of `ZRScreenExt_SetPersonInfo`. A gallery that has a participant with the same id then
    /// reacts as to a click on that tile, with its own messages.
    ZRMSG_EXT_CLICK = 27
};

ZR_BEGIN_C

/// Creates an extended screen inside the native window `parent`, hidden.
/// @param parent may be null: the extended screen is then a window of its own
/// @param notify receives `ZRMSG_EXT_CLICK`, as the function of `ZRScreen_Init` receives its
///               messages; may be null. It must stay callable until `ZRScreenExt_Release` returns.
/// @return the handle, owned by the library until `ZRScreenExt_Release`; null on failure
/// @thread gui
ZR_API void* ZR_CALL ZRScreenExt_Init(HWND parent, ZRNotify notify);

/// Destroys the extended screen; the handle is invalid afterwards. Waits for calls that other
/// threads have under way. From inside a message it is hidden at once, and destroyed when the event
/// is done.
/// @thread gui
ZR_API void ZR_CALL ZRScreenExt_Release(void* h);

/// Places the extended screen in its parent, in the parent's pixels (screen pixels without one), on
/// top of its siblings, and shows it. A side longer than 16384 is cut, one below 1 is 1. `unused`
/// is ignored.
/// @param rc must not be null
/// @thread gui
/// @sends 21
ZR_API int ZR_CALL ZRScreenExt_Move(void* h, tagRECT* rc, int unused);

/// Names the participant: when the call returns, frames are theirs. Another id is another
/// participant, who begins with a black picture, muted, without look marks and with a closed
/// stream.
/// @param pUserData handed back in the messages, never read. Null tells that the participant is not
///                  on the extended screen any more: galleries may close the stream again. What is
///                  shown stays, without taking clicks, unless `userId` is another one: then nobody
///                  is shown. With user data the same participant is there once more.
/// @param userId    local 8-bit. An id that contains "sharescreen_" is a shared screen. With user
///                  data it must not be empty.
/// @param iRole     1 host, 2 administrator, other values none
/// @param name      UTF-8
/// @param iColor    index of the avatar's colour, 0 to 3
/// @return 1, also when nothing has changed; 0 for an invalid handle or a refused text
/// @thread gui
/// @sends 21
ZR_API int ZR_CALL ZRScreenExt_SetPersonInfo(void* h, void* pUserData, const char* userId,
                                             bool bSelf, int iRole, const char* name, int iColor);

/// Delivers one picture (a `VantrelRTCVideoFrameQT`) of the participant. The picture is copied
/// before the call returns; a hidden extended screen takes it without copying.
/// @return 1 when it was taken; 0 when it was refused, and while there is no participant
/// @thread any
ZR_API int ZR_CALL ZRScreenExt_PlayFrame(void* h, void* pFrame);

// The functions below return 0 for an invalid handle, and all but the last two also while there is
// no participant.

/// Marks the participant as pinned for everybody, or not, and takes the mark for the local user
/// away.
/// @thread posted
ZR_API int ZR_CALL ZRScreenExt_SetAllLook(void* h, bool bAllLook);

/// Marks the participant as pinned for the local user, or not. A mark for everybody stays.
/// @thread posted
ZR_API int ZR_CALL ZRScreenExt_SetLockLook(void* h, bool bLockLook);

/// Reports whether the participant's microphone is muted (bMute != 0).
/// @thread posted
ZR_API int ZR_CALL ZRScreenExt_SetMute(void* h, int bMute);

/// Reports the participant's volume, 0 to 100; other values are clamped.
/// @param userId local 8-bit @return 0 also when it is not the participant's
/// @thread posted
ZR_API int ZR_CALL ZRScreenExt_SetVolume(void* h, const char* userId, int iVolume);

/// Reports whether the participant's video stream is open: else the avatar is shown.
/// @thread posted
ZR_API int ZR_CALL ZRScreenExt_Preview(void* h, bool bPreview);

/// Reports the participant's network state; nothing happens for another id.
/// @param userId local 8-bit @param iType 1 sending, 2 receiving @param iLevel 0 (none) to 5 (best)
/// @thread posted
ZR_API int ZR_CALL ZRScreenExt_UpdateUserNetStatus(void* h, const char* userId, int iType,
                                                   bool bBad, int iLevel);

/// @return the rectangle of the picture in screen pixels; right and bottom are one past the last
/// pixel. Without a picture it has no size, and for an invalid handle it is all zero.
/// @thread gui
ZR_API ZRRect ZR_CALL ZRScreenExt_GetShareWgtPos(void* h);

ZR_END_C

#endif // ZREXTSCREEN_H
