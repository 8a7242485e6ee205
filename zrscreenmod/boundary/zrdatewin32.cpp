// The exports of the date and time picker. Each checks and converts its arguments, logs, and
// delegates to the GUI thread.
#include "boundary.h"
#include "controlboundary.h"
#include "controlhandle.h"
#include "datehandle.h"
#include "libraryentry.h"
#include "platform.h"
#include "selectdatetimewidget.h"

#include <cstring>

using boundary::guarded;
using boundary::onControl;

void* ZR_CALL ZRScreenDate_Init(HWND parent, ZRNotify notify)
{
    ZR_ENTER_OR_RETURN(nullptr);
    ZR_LOG_THREAD("current thread:");
    return guarded<void*>(nullptr, [&]() -> void* {
        if (notify && !platform::isReadable(reinterpret_cast<const void*>(notify), 1)) {
            qDebug() << "unreadable notification function refused";
            return nullptr;
        }
        void* picker = nullptr;
        const bool done = zr::buildForHost([&] { picker = createDatePicker(parent, notify); });
        return done ? picker : nullptr;
    });
}

void ZR_CALL ZRScreenDate_Release(void* h)
{
    ZR_ENTER_OR_RETURN();
    ZR_LOG_THREAD("current thread:");
    if (h)
        guarded(false, [h] { return GuiThread::run([h] { releaseDatePicker(h); }); });
}

void ZR_CALL ZRScreenDate_Move(void* h, tagPOINT* pt, int year, int month, int day, int hour,
                               int minute, int second)
{
    ZR_ENTER_OR_RETURN();
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
    onControl(h, [h, at, moment] {
        if (ST_ZRDateHdl* const picker = liveDatePicker(h)) {
            picker->m_pWidget->setSelection(moment);
            openDatePicker(*picker, at);
        }
    });
}

void ZR_CALL ZRScreenDate_Hide(void* h)
{
    ZR_ENTER_OR_RETURN();
    ZR_LOG_THREAD("current thread:");
    onControl(h, [h] {
        if (const ST_ZRDateHdl* const picker = liveDatePicker(h))
            picker->m_pWidget->hide();
    });
}
