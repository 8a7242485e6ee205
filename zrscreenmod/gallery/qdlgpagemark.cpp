#include "qdlgpagemark.h"

#include "qzrscreenconfig.h"

#include <QPainter>

namespace {

constexpr QSize kSize(32, 350); // pixels, also on a high-resolution screen
constexpr int kGap = 5;         // pixels between two dots
constexpr double kOpacity = 0.5;

} // namespace

QDlgPageMark::QDlgPageMark(QWidget* parent)
    : QDialog(parent)
{
    // Without Qt::Dialog, which would make a window of it.
    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    // Dialogs that were not moved centre themselves when they are shown, children as well.
    setAttribute(Qt::WA_Moved);
    setFixedSize(kSize);
    hide();
    connect(QZRScreenConfig::getInstance(), &QZRScreenConfig::screenScaleChanged, this,
            &QDlgPageMark::loadImages);
    loadImages();
}

void QDlgPageMark::loadImages()
{
    const QString prefix = QZRScreenConfig::getInstance()->imgPrefix();
    m_imgWhite.load(prefix + QStringLiteral("circleWhite.png"));
    m_imgBlue.load(prefix + QStringLiteral("circleBlue.png"));
    update();
}

void QDlgPageMark::setPages(int current, int count)
{
    if (m_iCurrent == current && m_iCount == count)
        return;
    m_iCurrent = current;
    m_iCount = count;
    update();
}

int QDlgPageMark::capacity() const
{
    return (height() + kGap) / (m_imgBlue.height() + kGap);
}

void QDlgPageMark::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // The opacity of a window has no effect on a child.
    painter.setOpacity(kOpacity);
    // The blue dot alone makes the distances.
    const int step = m_imgBlue.height() + kGap;
    int y = (height() - (m_iCount * step - kGap)) / 2;
    for (int page = 0; page < m_iCount; ++page) {
        painter.drawImage(0, y, page == m_iCurrent ? m_imgBlue : m_imgWhite);
        y += step;
    }
}
