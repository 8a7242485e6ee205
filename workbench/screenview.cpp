#include "screenview.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPalette>
#include <QScreen>
#include <QScrollArea>

namespace zrworkbench {

ScreenView::ScreenView(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_DontCreateNativeAncestors);
    setAttribute(Qt::WA_NativeWindow);
    freeSize();
    setAutoFillBackground(true);
    setPalette(QPalette(Qt::black));
}

WId ScreenView::nativeWindow()
{
    window()->show();
    const WId id = winId();
    QGuiApplication::sync(); // the module looks for it on a connection of its own
    return id;
}

QSize ScreenView::pixelSize() const
{
    return {qRound(width() * devicePixelRatioF()), qRound(height() * devicePixelRatioF())};
}

QPoint ScreenView::onScreen(QPoint pixel) const
{
    const QPointF corner = mapToGlobal(QPoint(0, 0));
    return (corner * devicePixelRatioF()).toPoint() + pixel;
}

bool ScreenView::reveal(QPoint pixel)
{
    const QPoint at = (QPointF(pixel) / devicePixelRatioF()).toPoint();
    // The viewport is between both.
    auto* const area =
        isWindow() ? nullptr : qobject_cast<QScrollArea*>(parentWidget()->parentWidget());
    if (area)
        area->ensureVisible(at.x(), at.y());
    (void)QCursor::pos(); // asks the window system: the mouse is moved on another connection
    return visibleRegion().contains(at) && screen()->virtualGeometry().contains(mapToGlobal(at));
}

void ScreenView::resizePicture(QSize pixels)
{
    const QSize wanted = pixels / devicePixelRatioF();
    const QSize around = window()->size() - (isWindow() ? size() : parentWidget()->size());
    window()->resize((wanted + around).boundedTo(screen()->availableSize()));
    setMinimumSize(wanted);
}

void ScreenView::freeSize()
{
    setMinimumSize(320, 180);
}

void ScreenView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    emit resized();
}

} // namespace zrworkbench
