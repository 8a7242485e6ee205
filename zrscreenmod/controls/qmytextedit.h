// Text that is read, scrolled by dragging it or its bar.
#pragma once

#include <QElapsedTimer>
#include <QTextEdit>

/// Only the vertical scroll bar is ever shown. GUI thread.
class QMyTextEdit : public QTextEdit
{
    Q_OBJECT

public:
    explicit QMyTextEdit(QWidget* parent = nullptr);

    /// Shows a text from its top, also while the one before is being scrolled. One with an endless
    /// word (zr::hasEndlessWord) is broken anywhere: Qt's time for it grows with its square.
    void setText(const QString& text);

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void stopScroller();
    void dropSelection();

    QElapsedTimer m_clock;      ///< times the scroller's input
    bool m_bDragScrolls = true; ///< not while the mouse is at the bar, which a drag is for then
    bool m_bPressed = false;    ///< a drag is under way
};
