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
    setMinimumSize(320, 180);
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
    const QSize wanted = pixels / devicePixelRatioF() + window()->size() - size();
    window()->resize(wanted.boundedTo(screen()->availableSize()));
}

void ScreenView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    emit resized();
}

} // namespace zrworkbench
