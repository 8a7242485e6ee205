// The exports of the date and time picker. Each checks and converts its arguments, logs, and
// delegates to the GUI thread.
#include "boundary.h"
#include "datehandle.h"
#include "platform.h"
#include "selectdatetimewidget.h"

#include <cstring>

using boundary::guarded;

void* ZR_CALL ZRScreenDate_Init(HWND parent, ZRNotify notify)
{
    ZR_ENTER(ZRScreenDate_Init, (parent, notify));
    ZR_LOG_THREAD("current thread:");
    return guarded<void*>(nullptr, [&]() -> void* {
        if (!boundary::isCallable(notify))
            return nullptr;
        return boundary::buildHandle([&] { return createDatePicker(parent, notify); });
    });
}

void ZR_CALL ZRScreenDate_Release(void* h)
{
    ZR_ENTER(ZRScreenDate_Release, (h));
    ZR_LOG_THREAD("current thread:");
    boundary::releaseHandle(g_datePickers, h);
}

void ZR_CALL ZRScreenDate_Move(void* h, tagPOINT* pt, int year, int month, int day, int hour,
                               int minute, int second)
{
    ZR_ENTER(ZRScreenDate_Move, (h, pt, year, month, day, hour, minute, second));
    ZR_LOG_THREAD("current thread:");
    int32_t place[2]; // x, y on every system
    if (!platform::isReadable(pt, sizeof place)) {
        qDebug() << "unreadable point refused:" << static_cast<const void*>(pt);
        return;
    }
    std::memcpy(place, pt, sizeof place);
    constexpr int kFarthestPx = 1 << 20; // beyond every screen, and safe to calculate with
    const QPoint at(qBound(-kFarthestPx, place[0], kFarthestPx),
                    qBound(-kFarthestPx, place[1], kFarthestPx));
    const zr::DateChoice moment{year, month, day, hour, minute, second};
    boundary::onControl(g_datePickers, h, [at, moment](ST_ZRDateHdl& picker) {
        picker.m_pWidget->setSelection(moment);
        openDatePicker(picker, at);
    });
}

void ZR_CALL ZRScreenDate_Hide(void* h)
{
    ZR_ENTER(ZRScreenDate_Hide, (h));
    ZR_LOG_THREAD("current thread:");
    boundary::onControl(g_datePickers, h,
                        [](const ST_ZRDateHdl& picker) { picker.m_pWidget->hide(); });
}
