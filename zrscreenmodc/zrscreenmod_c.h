/// ZRScreenModC: plain C functions in the place of those of ZRScreenMod that need C++, and frames
/// as decoders deliver them. For C, for other languages and for other C++ compilers than the
/// module's; it is a library of its own beside ZRScreenMod, which it loads with itself.
///
/// The rules of `zrscreenmod.h` on handles, pointers, threads and results hold here too. Load it in
/// place of ZRScreenMod, or with it, on the thread that becomes the GUI thread. All texts are UTF-8
/// unless a function says otherwise; null is an empty text.
#ifndef ZRSCREENMOD_C_H
#define ZRSCREENMOD_C_H

#include "zrscreenmod.h"

#if defined(_WIN32)
#    if defined(ZRSCREENMODC_BUILD)
#        define ZRC_API __declspec(dllexport)
#    else
#        define ZRC_API __declspec(dllimport)
#    endif
#else
#    define ZRC_API __attribute__((visibility("default")))
#endif

/// A picture whose planes lie anywhere, with bytes between their rows. The strides are in bytes and
/// not less than a row; they may be negative, as in a picture that is stored upside down: the
/// address is then that of the first row all the same. Planar 4:2:0, BT.709, limited range.
struct ZRPlanes
{
    const uint8_t* y;  ///< the plane of brightness
    const uint8_t* u;  ///< of NV12 the plane in which U and V alternate
    const uint8_t* v;  ///< null for NV12
    ptrdiff_t yStride; ///< from one row to the next
    ptrdiff_t uStride; ///< as before
    ptrdiff_t vStride; ///< not read for NV12
    uint32_t width;    ///< pixels, 1 to ZR_MAX_FRAME_SIDE_PX
    uint32_t height;   ///< pixels, 1 to ZR_MAX_FRAME_SIDE_PX
};
typedef struct ZRPlanes ZRPlanes;

ZR_BEGIN_C

/// @return the version of the loaded ZRScreenModC, which is that of its ZRScreenMod, in the form of
/// `ZRSCREENMOD_VERSION`.
/// @thread any
ZRC_API int ZR_CALL ZRScreenC_GetVersion(void);

/// Changes the meeting mode, as `ZRScreen_ChangeLayout`. The customised order has `count` entries:
/// the user id `userIds[i]` stands at `positions[i]`. Both arrays may be null when `count` is 0.
/// @return 0 also for arrays or ids that cannot be read; nothing is changed then.
/// @thread posted
/// @sends mode
ZRC_API int ZR_CALL ZRScreenC_ChangeLayout(void* hScreen, enum eLayoutType eType,
                                           const int* positions, const char* const* userIds,
                                           size_t count);

/// As `ZRScreen_SetCurrentSpeakingPerson`. @return 0 also for a text that cannot be read.
/// @thread posted
ZRC_API int ZR_CALL ZRScreenC_SetCurrentSpeakingPerson(void* hScreen, const char* userId);

/// As `ZRScreen_SetShareSponsor`. @return 0 also for a text that cannot be read.
/// @thread posted
ZRC_API int ZR_CALL ZRScreenC_SetShareSponsor(void* hScreen, const char* userId);

/// As `ZRScreenWtmark_SetInfo`.
/// @param cloundType what follows the name: 1 the phone number, 2 the address, else nothing
/// @param name       local 8-bit
/// @return 1, or 0 for a text that cannot be read.
/// @thread any
ZRC_API int ZR_CALL ZRScreenC_SetWatermark(bool bEnabled, int cloundType, const char* name,
                                           const char* phone, const char* email);

/// Delivers one picture of a participant, as `ZRScreen_PlayFrame`: I420 with three planes, or NV12
/// when `v` is null. A picture in one block without padding is passed on as it is; another one is
/// packed first, which costs one copy of it. Calls for different participants run in parallel.
/// @return 0 also for a size, a stride or a plane that cannot be.
/// @thread any
/// @sends 2, 3, 4
ZRC_API int ZR_CALL ZRScreenC_PlayPlanes(void* hScreen, void* pPlay, const ZRPlanes* picture);

/// The same for an extended screen, as `ZRScreenExt_PlayFrame`.
/// @thread any
ZRC_API int ZR_CALL ZRScreenC_PlayExtPlanes(void* hExt, const ZRPlanes* picture);

ZR_END_C

#endif // ZRSCREENMOD_C_H
