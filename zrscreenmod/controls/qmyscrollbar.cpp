#include "qmyscrollbar.h"

#include "qzrscreenconfig.h"

namespace {

// Base sizes in pixels, scaled on a high-resolution screen.
constexpr int kBarWidth = 8;
constexpr int kLeastHandleHeight = 50;

} // namespace

QMyScrollbar::QMyScrollbar(QWidget* parent)
    : QScrollBar(Qt::Vertical, parent)
{
    const QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    setStyleSheet(QStringLiteral("QScrollBar{background:rgb(32, 36, 44);}"
                                 "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical "
                                 "{background: rgb(32,36,44);}"
                                 "QScrollBar:vertical{width:%1px;margin:0px,0px,0px,0px;"
                                 "padding-top:0px;padding-bottom:0px;}"
                                 "QScrollBar::handle:vertical{width:8px;"
                                 "background:rgb(86,94,108);border-radius:4px;"
                                 "min-height:%2px;}")
                      .arg(hub->scaled(kBarWidth))
                      .arg(hub->scaled(kLeastHandleHeight)));
}

void QMyScrollbar::mousePressEvent(QMouseEvent* event)
{
    QScrollBar::mousePressEvent(event);
}
