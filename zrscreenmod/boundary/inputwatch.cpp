#include "inputwatch.h"

#include "qtparent.h"

#include <QCoreApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>

#include <optional>
#include <utility>

namespace {

/// A step of a mouse wheel in the unit of QWheelEvent, eighths of a degree.
constexpr int kWheelStep = 120;

/// Where in a host's window a point of one of ours is; nothing for other windows.
std::optional<InputWatch::Place> placeIn(const QWindow& window, const QPoint& at)
{
    const QWindow* const parent = window.parent();
    const QWidget* const widget = QWidget::find(window.winId());
    if (!parent || parent->type() != Qt::ForeignWindow || !widget)
        return std::nullopt;
    const QPoint origin = platform::rectInParent(*widget).topLeft();
    return InputWatch::Place{reinterpret_cast<const void*>(parent->winId()),
                             origin + at * window.devicePixelRatio()};
}

} // namespace

InputWatch::InputWatch(Listener listener)
    : m_listener(std::move(listener))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool InputWatch::eventFilter(QObject* watched, QEvent* event)
{
    // Windows hear each event once, unlike the widgets in them.
    const bool isClick = event->type() == QEvent::MouseButtonPress;
    if (!watched->isWindowType() || !(isClick || event->type() == QEvent::Wheel))
        return false;
    const auto& window = *static_cast<const QWindow*>(watched);
    if (isClick) {
        const auto& press = *static_cast<const QMouseEvent*>(event);
        const auto place = placeIn(window, press.pos());
        if (place && press.button() == Qt::LeftButton)
            m_listener.clicked(*place);
        return false;
    }
    m_iWheelRest += static_cast<const QWheelEvent*>(event)->angleDelta().y();
    const int steps = m_iWheelRest / kWheelStep;
    m_iWheelRest %= kWheelStep;
    const auto place = placeIn(window, window.mapFromGlobal(QCursor::pos()));
    if (place && steps != 0)
        m_listener.turned(*place, steps);
    return false;
}
