#include "qdlgnovideo.h"

#include "qzrscreenconfig.h"

#include <QImage>
#include <QPainter>

namespace {

/// Shared by all; loaded by the first one that finds them missing.
struct Images
{
    QImage large;
    QImage narrow;
};

Images& images()
{
    static Images s_images;
    return s_images;
}

} // namespace

QDlgNoVideo::QDlgNoVideo(QWidget* parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::CustomizeWindowHint | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_TransparentForMouseEvents); // the clicks are the gallery's
    // Dialogs that were not moved centre themselves when they are shown, children as well.
    setAttribute(Qt::WA_Moved);
    // One picture serves both sizes: where it does not fit it is cut, not shrunk.
    for (QImage* image : {&images().large, &images().narrow}) {
        if (image->isNull())
            image->load(QZRScreenConfig::getInstance()->getImgPrefix()
                        + QStringLiteral("nocamera.png"));
    }
    show();
}

void QDlgNoVideo::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    const QSize size = images().large.size();
    m_rcImage = QRect(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size);
}

void QDlgNoVideo::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    painter.drawImage(m_rcImage, width() >= m_rcImage.width() ? images().large : images().narrow);
}
