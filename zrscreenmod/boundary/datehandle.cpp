#include "datehandle.h"

#include "calendarmath.h"
#include "controlhandle.h"
#include "platform.h"
#include "qtparent.h"
#include "qzrscreenconfig.h"
#include "selectdatetimewidget.h"

#include <QDebug>

#include <memory>
#include <utility>
#include <vector>

namespace {

/// Where a picker can be seen on each screen, in the coordinates in which it is placed.
std::vector<QRect> visibleAreas(const ST_ZRDateHdl& picker)
{
    const QRect parent = picker.m_hParent
                             ? platform::clientRectOnScreen(platform::toNative(picker.m_hParent))
                             : QRect();
    const QPoint origin = parent.isNull() ? QPoint() : parent.topLeft();
    std::vector<QRect> areas;
    for (const QRect& onScreen : platform::availableScreens()) {
        const QRect both = parent.isNull() ? onScreen : onScreen.intersected(parent);
        if (!both.isEmpty())
            areas.push_back(both.translated(-origin));
    }
    if (areas.empty()) // the parent may come into view while the picker is open
        areas.push_back(parent.translated(-origin));
    return areas;
}

/// The host gets the keys before the picker goes, and hears of nothing from here on.
void silence(ST_ZRDateHdl& picker)
{
    QZRScreenConfig::getInstance()->unregisterDateCallback(&picker.m_callback);
    platform::returnKeyboardFocus(picker.m_pWidget->winId());
}

} // namespace

HostHandles<ST_ZRDateHdl> g_datePickers({logNoControl, silence,
                                         [](ST_ZRDateHdl& picker) { picker.m_pWidget->hide(); }});

ST_ZRDateHdl::~ST_ZRDateHdl() = default;

ST_ZRDateHdl* createDatePicker(HWND hParent, ZRNotify notify)
{
    const bool b4K = zr::isLargePickerScreen(platform::screenWidthPx(), platform::screenHeightPx());
    auto widget = std::make_unique<SelectDateTimeWidget>(b4K);
    if (hParent) {
        if (!putInto(hParent, *widget))
            return nullptr;
        platform::setChildStyle(widget->winId());
    }
    auto* const picker = new ST_ZRDateHdl;
    picker->m_hostNotify = notify;
    picker->m_hParent = hParent;
    picker->m_pWidget = std::move(widget);
    picker->m_callback.m_pHandle = picker;
    QZRScreenConfig::getInstance()->registerDateCallback(&picker->m_callback);
    g_datePickers.insert(picker);
    return picker;
}

void openDatePicker(ST_ZRDateHdl& picker, const QPoint& at)
{
    SelectDateTimeWidget* const widget = picker.m_pWidget.get();
    if (platform::isOrphaned(widget->winId())) {
        qDebug() << "show refused: the parent window is gone";
        return;
    }
    widget->refreshInterface();
    const qreal ratio = widget->devicePixelRatioF();
    const QSize size = widget->size() * ratio;
    platform::placeWindow(widget->winId(),
                          {zr::pickerTopLeft(at, size, qRound(widget->contentWidthPx() * ratio),
                                             visibleAreas(picker)),
                           size});
    widget->show();
    widget->raise();
    widget->activateWindow();
    widget->setFocus();
    platform::takeKeyboardFocus(widget->winId());
}
