#include "screenview.h"

#include <QGuiApplication>
#include <QPalette>
#include <QScreen>

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
