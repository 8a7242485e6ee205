// The exports of the watermark. They need no screen and act on all of them.
#include "boundary.h"

#include <utility>

using boundary::guarded;

void ZR_CALL ZRScreenWtmark_SetInfo(const __WTMark_Info& info)
{
    ZR_ENTER(ZRScreenWtmark_SetInfo, (&info));
    ZR_LOG_THREAD("thread:");
    // From C, or through a cast, anything can arrive as a reference: it is one after the check
    // only.
    const __WTMark_Info* const record = &info;
    guarded(false, [record] {
        if (!boundary::isReadableInfo(record)) {
            qDebug() << "unreadable watermark record refused:" << static_cast<const void*>(record);
            return false;
        }
        zr::WatermarkInfo copy;
        copy.enabled = record->bEnabled;
        copy.kind = record->cloundType;
        copy.name = QString::fromLocal8Bit(record->name.c_str());
        copy.phone = QString::fromUtf8(record->phone.c_str());
        copy.email = QString::fromUtf8(record->email.c_str());
        qDebug() << "ZRScreenWtmark_SetInfo: cloundType=" << copy.kind << ", name=" << copy.name
                 << ", phone=" << copy.phone << ", email" << copy.email;
        QZRScreenConfig::setWatermarkInfo(std::move(copy));
        boundary::refreshAllTiles();
        return true;
    });
}

void ZR_CALL ZRScreenWtmark_SetEnabled(bool bEnabled)
{
    ZR_ENTER(ZRScreenWtmark_SetEnabled, (bEnabled));
    ZR_LOG_THREAD("thread:");
    guarded(false, [bEnabled] {
        qDebug() << "ZRScreenWtmark_SetEnabled: bEnabled=" << bEnabled;
        QZRScreenConfig::setWatermarkEnabled(bEnabled);
        boundary::refreshAllTiles();
        return true;
    });
}
