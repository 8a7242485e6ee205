// The exports of the watermark. They need no screen and act on all of them.
#include "boundary.h"
#include "platform.h"

#include <utility>

using boundary::guarded;

namespace {

/// Whether the record and its texts can be read: the host may have been built with another
/// standard library.
bool isReadableInfo(const __WTMark_Info* info)
{
    if (!platform::isReadable(info, sizeof *info))
        return false;
    for (const std::string* text : {&info->name, &info->phone, &info->email}) {
        if (text->size() > platform::kMaxTextBytes
            || !platform::isReadable(text->data(), text->size() + 1))
            return false;
    }
    return true;
}

} // namespace

void ZR_CALL ZRScreenWtmark_SetInfo(const __WTMark_Info& info)
{
    ZR_ENTER_OR_RETURN();
    ZR_LOG_THREAD("thread:");
    // From C, or through a cast, anything can arrive as a reference: it is one after the check
    // only.
    const __WTMark_Info* const record = &info;
    guarded(false, [record] {
        if (!isReadableInfo(record)) {
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
    ZR_ENTER_OR_RETURN();
    ZR_LOG_THREAD("thread:");
    guarded(false, [bEnabled] {
        qDebug() << "ZRScreenWtmark_SetEnabled: bEnabled=" << bEnabled;
        QZRScreenConfig::setWatermarkEnabled(bEnabled);
        boundary::refreshAllTiles();
        return true;
    });
}
