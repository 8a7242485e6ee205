/// Plain types of the interface of ZRScreenMod: windows, rectangles, meeting modes. Included by
/// `zrscreenmod.h`.
#ifndef ZRTYPES_H
#define ZRTYPES_H

#ifdef __cplusplus
#    include <cstddef>
#    include <cstdint>
/// What C++ says and C11 has no words for: the type behind an enumeration, a reference.
#    define ZR_OF_INT : int
#    define ZR_OF_ULONG : unsigned long
#    define ZR_REF(type) type&
#    define ZR_BEGIN_C extern "C" {
#    define ZR_END_C }
#else
#    include <assert.h>
#    include <stdbool.h>
#    include <stddef.h>
#    include <stdint.h>
#    define ZR_OF_INT
#    define ZR_OF_ULONG
#    define ZR_REF(type) type*
#    define ZR_BEGIN_C
#    define ZR_END_C
#endif

#if defined(_WIN32)
struct tagRECT;
/// Native window: the type of the Windows headers.
#    if defined(NO_STRICT)
typedef void* HWND;
#    else
struct HWND__;
typedef struct HWND__* HWND;
#    endif
#else
/// Native window: an X11 window id, converted with `reinterpret_cast` from `uintptr_t`.
typedef void* HWND;
/// Rectangle of the Windows interface: `right` and `bottom` are one past the last pixel.
struct tagRECT
{
    int32_t left;   ///< pixels, as all of them
    int32_t top;    ///< of the first row
    int32_t right;  ///< one past the last column
    int32_t bottom; ///< one past the last row
};
#endif
typedef struct tagRECT tagRECT; // as C wants it

/// A rectangle as the library returns it: all four edges are inclusive, so the width is
/// right - left + 1. The unset rectangle is (0, 0, -1, -1). Binary compatible with `QRect`.
struct ZRRect
{
    int32_t left;   ///< pixels, as all of them
    int32_t top;    ///< of the first row
    int32_t right;  ///< of the last column
    int32_t bottom; ///< of the last row
};
typedef struct ZRRect ZRRect;

/// Longest side of a picture that is accepted, in pixels.
#define ZR_MAX_FRAME_SIDE_PX 16384

/// Meeting mode: how the participants are arranged. Other numbers are no modes, and show nobody.
enum eLayoutType ZR_OF_INT
{
    eLayoutEqualCut = 1,      ///< adaptive gallery, 6 tiles a page (9 with 9-cut support)
    eLayout6Cut = 2,          ///< one large tile and five small ones
    eLayout8Cut = 3,          ///< one large tile and seven small ones
    eLayoutSpeakerTool = 4,   ///< the focus person fills the screen, the next speaker floats
    eLayoutSpeakerTool2 = 5,  ///< as eLayoutSpeakerTool
    eLayoutSpeakerRight = 6,  ///< speaker with a strip on the right
    eLayoutSpeakerBottom = 7, ///< speaker with a strip below
    eLayoutSpeakerTop = 8,    ///< speaker with a strip on top
    eLayoutSpeaker4 = 9,      ///< two large tiles with a strip below
    eLayoutShare = 10,  ///< the shared screen fills the dialog; without one as eLayoutEqualCut
    eLayoutGrid4 = 11,  ///< fixed 2 x 2 grid
    eLayoutGrid9 = 12,  ///< fixed 3 x 3 grid
    eLayoutGrid16 = 13, ///< fixed 4 x 4 grid
    eLayoutSingle = 14  ///< the first person fills the dialog
};
typedef enum eLayoutType eLayoutType;

#endif // ZRTYPES_H
