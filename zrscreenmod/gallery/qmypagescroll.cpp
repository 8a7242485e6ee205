#include "qmypagescroll.h"

#include "qzrscreenconfig.h"

#include <QPainter>

namespace {

constexpr QColor kBarColor(0xBD, 0xC2, 0xCB);
constexpr int kInitialHeight = 500;
// Base sizes in pixels, scaled on a high-resolution screen.
constexpr int kWidth = 6;
constexpr int kRadius = 3;

} // namespace

QMyPageScroll::QMyPageScroll(QWidget* parent)
    : QMyWidget(parent)
{
    hide();
    const QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    const auto scale = [this, hub] { setFixedWidth(hub->scaled(kWidth)); };
    connect(hub, &QZRScreenConfig::screenScaleChanged, this, scale);
    scale();
    setFixedHeight(kInitialHeight);
}

void QMyPageScroll::setBarHeight(int heightPx)
{
    setFixedHeight(heightPx);
}

void QMyPageScroll::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(kBarColor);
    const int radius = QZRScreenConfig::getInstance()->scaled(kRadius);
    painter.drawRoundedRect(rect(), radius, radius);
}
