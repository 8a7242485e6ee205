#include "frameintake.h"

#include "i420frame.h"
#include "platform.h"

#include <QDebug>

bool FrameIntake::accept(const VantrelRTCVideoFrameQT& frame, const QString& userId)
{
    const auto isPlayable = [&frame] {
        return zr::isFrameSizeValid(frame.width, frame.height)
               && platform::isReadable(frame.pData,
                                       zr::sourceLayout(frame.width, frame.height).totalBytes());
    };
    if (isPlayable()) {
        m_badLogged.store(false, std::memory_order_relaxed);
        return true;
    }
    m_refused.fetch_add(1);
    if (!m_badLogged.exchange(true))
        qDebug() << "playFrame refused, userID:" << userId
                 << ",pData:" << static_cast<const void*>(frame.pData) << ",width:" << frame.width
                 << ",height:" << frame.height;
    return false;
}

bool FrameIntake::isNoticeDue(const VantrelRTCVideoFrameQT& frame)
{
    const quint64 size = quint64(frame.width) << 32 | frame.height; // of a valid frame never 0
    return m_pendingSize.exchange(size) == 0;
}

QSize FrameIntake::noticed()
{
    const quint64 size = m_pendingSize.exchange(0);
    return {static_cast<int>(size >> 32), static_cast<int>(size & 0xFFFFFFFFU)};
}
