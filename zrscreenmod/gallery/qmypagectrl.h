// The arrows that turn the gallery's pages.
#pragma once

#include "qmywidget.h"

#include <QImage>

/// A picture that can be clicked, and keeps the other buttons from what lies below. The hub
/// announces each click with the left button as `clickPageCtl` and this widget, so whoever holds
/// the controls tells them apart by the pointer. GUI thread.
class QMyPageCtrl : public QMyWidget
{
    Q_OBJECT

public:
    explicit QMyPageCtrl(QWidget* parent);

    /// The picture is painted in its own size at the widget's top left corner; the widget is not
    /// resized. A null image paints nothing.
    void setImage(const QImage& image);
    /// The picture's size.
    QSize sizeHint() const override { return m_image.size(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QImage m_image;
};
