// Whether a frame of the host's can be played.
#pragma once

#include "i420frame.h"
#include "platform.h"
#include "zrscreenmod.h"

/// True when the picture has a size that the tiles take and memory that can be read. The frame
/// record itself is readable. Any thread.
[[nodiscard]] inline bool isPlayable(const VantrelRTCVideoFrameQT& frame)
{
    return zr::isFrameSizeValid(frame.width, frame.height)
           && platform::isReadable(frame.pData,
                                   zr::sourceLayout(frame.width, frame.height).totalBytes());
}
