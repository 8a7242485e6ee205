#include "qdlgnovideo.h"

#include "qzrscreenconfig.h"

#include <QPainter>

QDlgNoVideo::QDlgNoVideo(QWidget* parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::CustomizeWindowHint | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_TransparentForMouseEvents); // the clicks are the gallery's
    // Dialogs that were not moved centre themselves when they are shown, children as well.
    setAttribute(Qt::WA_Moved);
    connect(QZRScreenConfig::getInstance(), &QZRScreenConfig::screenScaleChanged, this,
            &QDlgNoVideo::loadImage);
    loadImage();
    show();
}

void QDlgNoVideo::loadImage()
{
    m_image.load(QZRScreenConfig::getInstance()->imgPrefix() + QStringLiteral("nocamera.png"));
    update();
}

void QDlgNoVideo::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    // Where it does not fit it is cut, not shrunk.
    painter.drawImage((width() - m_image.width()) / 2, (height() - m_image.height()) / 2, m_image);
}
