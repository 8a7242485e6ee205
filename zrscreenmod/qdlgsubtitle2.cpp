#include "qdlgsubtitle2.h"

#include "qzrscreenconfig.h"

#include <QLabel>
#include <QPainter>

namespace {

constexpr QColor kPanelColor(58, 62, 70);
// Base sizes in pixels, scaled on a high-resolution screen.
constexpr int kTitleTop = 48;
constexpr int kTitleHeight = 64;
constexpr int kTitleLeft = 10;
constexpr int kTitleFont = 22;

} // namespace

QDlgSubtitle2::QDlgSubtitle2(QWidget* parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
    setGeometry(-10, -10, 9, 9);
    m_pTitle = new QLabel(QStringLiteral("字幕"), this);
    m_pTitle->setStyleSheet(QStringLiteral("QLabel{background-color:rgb(58,62,70);"
                                           "font-family:Microsoft Yahei;font-size:%1px;"
                                           "color:rgb(205,205,205);}")
                                .arg(QZRScreenConfig::getInstance()->scaled(kTitleFont)));
}

void QDlgSubtitle2::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    const QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    const int left = hub->scaled(kTitleLeft);
    m_pTitle->setGeometry(left, hub->scaled(kTitleTop), qMax(0, width() - left),
                          hub->scaled(kTitleHeight));
}

void QDlgSubtitle2::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), kPanelColor);
}
