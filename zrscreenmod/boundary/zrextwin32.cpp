// The exports of the extended screen. Each checks and converts its arguments, logs, and delegates.
#include "boundary.h"
#include "dlgextscreen.h"
#include "exthandle.h"

#include <utility>

using boundary::guarded;
using boundary::readLocal8Bit;
using boundary::readRect;
using boundary::readUtf8;
using boundary::with;

namespace {

/// Posts `body(dialog)` for an extended screen.
template<typename Body>
void postToExt(const void* h, Body body)
{
    boundary::post(g_extScreens, h, [body](const ST_ZRExtHdl& ext) { body(*ext.m_pDlg); });
}

/// postToExt for a valid handle whose dialog `accepts` the call, on any thread; only then the call
/// is logged. @return 1, or 0
template<typename Accepts, typename Body>
int onExt(const void* h, const boundary::CallSite& here, Accepts&& accepts, Body body) noexcept
{
    return with(g_extScreens, h, 0, [&](const ExtRef& ext) {
        if (!accepts(*ext->m_pDlg))
            return 0;
        here.log("thread:");
        postToExt(h, std::move(body));
        return 1;
    });
}

/// Asks `body(dialog)` of an extended screen.
template<typename Result, typename Body>
Result askExt(const void* h, Result failure, Body&& body) noexcept
{
    return boundary::ask(g_extScreens, h, failure,
                         [&body](const ST_ZRExtHdl& ext) { return body(*ext.m_pDlg); });
}

bool hasPerson(const QDlgExtScreen& dialog)
{
    return dialog.hasPerson();
}

} // namespace

void* ZR_CALL ZRScreenExt_Init(HWND parent, ZRNotify notify)
{
    ZR_ENTER(ZRScreenExt_Init, (parent, notify));
    ZR_LOG_THREAD("thread:");
    return guarded<void*>(nullptr, [&]() -> void* {
        if (!boundary::isCallable(notify))
            return nullptr;
        return boundary::buildHandle([&] { return createExtScreen(parent, notify); });
    });
}

void ZR_CALL ZRScreenExt_Release(void* h)
{
    ZR_ENTER(ZRScreenExt_Release, (h));
    ZR_LOG_THREAD("thread:");
    boundary::releaseHandle(g_extScreens, h);
}

int ZR_CALL ZRScreenExt_Move(void* h, tagRECT* rc, int unused)
{
    ZR_ENTER(ZRScreenExt_Move, (h, rc, unused));
    if (!h)
        return 0;
    ZR_LOG_THREAD("thread:");
    const auto rect = readRect(rc);
    if (!rect)
        return 0;
    qDebug() << "rcScreen:" << *rect;
    return askExt(h, 0, [&rect](QDlgExtScreen& dialog) {
        dialog.place(*rect);
        return 1;
    });
}

int ZR_CALL ZRScreenExt_SetPersonInfo(void* h, void* pUserData, const char* userId, bool bSelf,
                                      int iRole, const char* name, int iColor)
{
    ZR_ENTER(ZRScreenExt_SetPersonInfo, (h, pUserData, userId, bSelf, iRole, name, iColor));
    if (!h)
        return 0;
    ZR_LOG_THREAD("thread:");
    const auto id = readLocal8Bit(userId);
    const auto givenName = readUtf8(name);
    if (!id || !givenName)
        return 0;
    if (pUserData && id->isEmpty()) {
        qDebug() << "userId == nullptr failed";
        return 0;
    }
    return askExt(h, 0, [&](QDlgExtScreen& dialog) {
        dialog.updatePersonInfo(pUserData, *id, bSelf, iRole, *givenName, iColor);
        return 1;
    });
}

int ZR_CALL ZRScreenExt_PlayFrame(void* h, void* pFrame)
{
    ZR_ENTER(ZRScreenExt_PlayFrame, (h, pFrame));
    return with(g_extScreens, h, 0, [&](const ExtRef& ext) {
        if (!pFrame) {
            qDebug() << "pWin32Frame == nullptr";
            return 0;
        }
        const auto frame = boundary::readFrame(pFrame);
        return frame && ext->m_pDlg->playFrame(*frame) ? 1 : 0;
    });
}

int ZR_CALL ZRScreenExt_SetAllLook(void* h, bool bAllLook)
{
    ZR_ENTER(ZRScreenExt_SetAllLook, (h, bAllLook));
    return onExt(h, ZR_CALL_SITE, hasPerson,
                 [bAllLook](QDlgExtScreen& dialog) { dialog.setAllLook(bAllLook); });
}

int ZR_CALL ZRScreenExt_SetLockLook(void* h, bool bLockLook)
{
    ZR_ENTER(ZRScreenExt_SetLockLook, (h, bLockLook));
    return onExt(h, ZR_CALL_SITE, hasPerson,
                 [bLockLook](QDlgExtScreen& dialog) { dialog.setLockLook(bLockLook); });
}

int ZR_CALL ZRScreenExt_SetMute(void* h, int bMute)
{
    ZR_ENTER(ZRScreenExt_SetMute, (h, bMute));
    return onExt(h, ZR_CALL_SITE, hasPerson,
                 [bMute](QDlgExtScreen& dialog) { dialog.setMute(bMute != 0); });
}

int ZR_CALL ZRScreenExt_SetVolume(void* h, const char* userId, int iVolume)
{
    ZR_ENTER(ZRScreenExt_SetVolume, (h, userId, iVolume));
    if (!h)
        return 0;
    const boundary::CallSite here = ZR_CALL_SITE;
    return with(g_extScreens, h, 0, [&](const ExtRef& ext) {
        const auto id = readLocal8Bit(userId);
        if (!id || !ext->m_pDlg->isPerson(*id))
            return 0;
        // Many reports change no microphone; only the others are logged.
        postToExt(h, [here, id = *id, iVolume](QDlgExtScreen& dialog) {
            if (dialog.setVolume(id, iVolume))
                here.log("thread:");
        });
        return 1;
    });
}

int ZR_CALL ZRScreenExt_Preview(void* h, bool bPreview)
{
    ZR_ENTER(ZRScreenExt_Preview, (h, bPreview));
    return onExt(h, ZR_CALL_SITE, hasPerson,
                 [bPreview](QDlgExtScreen& dialog) { dialog.setPreview(bPreview); });
}

int ZR_CALL ZRScreenExt_UpdateUserNetStatus(void* h, const char* userId, int iType, bool bBad,
                                            int iLevel)
{
    ZR_ENTER(ZRScreenExt_UpdateUserNetStatus, (h, userId, iType, bBad, iLevel));
    if (!h)
        return 0;
    const auto id = readLocal8Bit(userId);
    if (!id)
        return 0;
    return onExt(
        h, ZR_CALL_SITE, [](const QDlgExtScreen&) { return true; },
        [id = *id, iType, bBad, iLevel](QDlgExtScreen& dialog) {
            dialog.UpdateUserNetStatus(id, iType, bBad, iLevel);
        });
}

ZRRect ZR_CALL ZRScreenExt_GetShareWgtPos(void* h)
{
    const ZRRect none{0, 0, 0, 0};
    ZR_ENTER(ZRScreenExt_GetShareWgtPos, (h));
    if (!h)
        return none;
    ZR_LOG_THREAD("thread:");
    return askExt(h, none, [](const QDlgExtScreen& dialog) {
        const QRect rect = dialog.pictureRect();
        return ZRRect{rect.left(), rect.top(), rect.right(), rect.bottom()};
    });
}
