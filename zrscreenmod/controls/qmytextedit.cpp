#include "qmytextedit.h"

#include "editmenu.h"
#include "hostcall.h"
#include "platform.h"
#include "qmyscrollbar.h"
#include "textlimits.h"

#include <QContextMenuEvent>
#include <QDebug>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QScroller>

QMyTextEdit::QMyTextEdit(QWidget* parent)
    : QTextEdit(parent)
{
    setReadOnly(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new QMyScrollbar(this));
    verticalScrollBar()->installEventFilter(this);
    verticalScrollBar()->setContextMenuPolicy(Qt::NoContextMenu); // who drags has no use for it
    m_clock.start();
}

void QMyTextEdit::stopScroller()
{
    if (!QScroller::hasScroller(viewport()))
        return;
    qDebug() << "pScroller->stop()";
    QScroller::scroller(viewport())->stop();
}

void QMyTextEdit::setText(const QString& text)
{
    stopScroller();
    // At once: an animation would scroll the new text.
    QScroller::scroller(viewport())->scrollTo({0, 0}, 0);
    setWordWrapMode(zr::hasEndlessWord(text) ? QTextOption::WrapAnywhere
                                             : QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextEdit::setText(text);
    verticalScrollBar()->setValue(0);
}

bool QMyTextEdit::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == verticalScrollBar()) {
        // The gesture would take the drag away from the bar.
        if (event->type() == QEvent::Enter) {
            stopScroller();
            m_bDragScrolls = false;
        } else if (event->type() == QEvent::Leave) {
            m_bDragScrolls = true;
        }
    }
    return QTextEdit::eventFilter(watched, event);
}

// The scroller is fed from here, not by QScroller::grabGesture: what recognises the gesture keeps a
// pointer to the application object that it saw first, and each time that it is grabbed some
// memory.
bool QMyTextEdit::viewportEvent(QEvent* event)
{
    const auto feed = [this, event](QScroller::Input input) {
        const QPointF position = static_cast<QMouseEvent*>(event)->localPos();
        QScroller::scroller(viewport())->handleInput(input, position, m_clock.elapsed());
    };
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: // of somebody who drags again and again
        m_bPressed = m_bDragScrolls && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
        if (m_bPressed)
            feed(QScroller::InputPress);
        break;
    case QEvent::MouseMove:
        if (!m_bPressed)
            break;
        feed(QScroller::InputMove);
        dropSelection(); // the word that a second press selects
        return true;     // a drag scrolls and does not select
    case QEvent::MouseButtonRelease:
        if (m_bPressed && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            m_bPressed = false;
            feed(QScroller::InputRelease);
        }
        break;
    default:
        break;
    }
    return QTextEdit::viewportEvent(event);
}

void QMyTextEdit::contextMenuEvent(QContextMenuEvent* event)
{
    if (QMenu* menu = createStandardContextMenu(event->pos()))
        openEditMenu(menu, event->globalPos());
}

void QMyTextEdit::dropSelection()
{
    QTextCursor cursor = textCursor();
    if (!cursor.hasSelection() || QScroller::scroller(viewport())->state() != QScroller::Dragging)
        return;
    cursor.clearSelection();
    setTextCursor(cursor);
}

void QMyTextEdit::mousePressEvent(QMouseEvent* event)
{
    const HostCall call;
    platform::takeKeyboardFocus(window()->winId()); // for copying, and for scrolling by keys
    QTextEdit::mousePressEvent(event);
}
