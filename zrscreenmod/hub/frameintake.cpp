#include "frameintake.h"

#include "i420frame.h"
#include "packedsize.h"
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
    const QSize size(static_cast<int>(frame.width), static_cast<int>(frame.height));
    return m_pendingSize.exchange(zr::packSize(size)) == 0;
}

QSize FrameIntake::noticed()
{
    return zr::unpackSize(m_pendingSize.exchange(0));
}
