#include "qmypagectrl.h"

#include "qzrscreenconfig.h"

#include <QMouseEvent>
#include <QPainter>

QMyPageCtrl::QMyPageCtrl(QWidget* parent)
    : QMyWidget(parent)
{
}

void QMyPageCtrl::setImage(const QImage& image)
{
    m_image = image;
    updateGeometry();
    update();
}

void QMyPageCtrl::paintEvent(QPaintEvent*)
{
    QPainter(this).drawImage(0, 0, m_image);
}

void QMyPageCtrl::mousePressEvent(QMouseEvent* event)
{
    // The other buttons end here too: what lies below would take them for a press on a tile.
    if (event->button() == Qt::LeftButton)
        emit QZRScreenConfig::getInstance()->clickPageCtl(this);
}
