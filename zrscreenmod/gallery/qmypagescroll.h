// The bar that stands for the position among the gallery's pages.
#pragma once

#include "qmywidget.h"

/// A thin rounded bar, hidden until it is shown. GUI thread.
class QMyPageScroll : public QMyWidget
{
    Q_OBJECT

public:
    explicit QMyPageScroll(QWidget* parent);

    /// 500 pixels at first.
    void setBarHeight(int heightPx);

protected:
    void paintEvent(QPaintEvent* event) override;
};
