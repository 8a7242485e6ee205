// The vertical scroll bar of the module's scrolling views.
#pragma once

#include <QScrollBar>

/// A dark, narrow bar with a rounded handle and no arrows. GUI thread.
class QMyScrollbar : public QScrollBar
{
    Q_OBJECT

public:
    explicit QMyScrollbar(QWidget* parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent* event) override;
};
