#include "qmytextedit.h"

#include "controlstay.h"
#include "platform.h"
#include "qmyscrollbar.h"

#include <QDebug>
#include <QEvent>
#include <QScrollBar>
#include <QScroller>

QMyTextEdit::QMyTextEdit(QWidget* parent)
    : QTextEdit(parent)
{
    setReadOnly(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new QMyScrollbar(this));
    verticalScrollBar()->installEventFilter(this);
    QScroller::grabGesture(viewport(), QScroller::LeftMouseButtonGesture);
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
    QTextEdit::setText(text);
    verticalScrollBar()->setValue(0);
}

bool QMyTextEdit::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == verticalScrollBar()) {
        // The gesture would take the drag away from the bar.
        if (event->type() == QEvent::Enter) {
            stopScroller();
            QScroller::ungrabGesture(viewport());
        } else if (event->type() == QEvent::Leave) {
            QScroller::grabGesture(viewport(), QScroller::LeftMouseButtonGesture);
        }
    }
    return QTextEdit::eventFilter(watched, event);
}

void QMyTextEdit::mousePressEvent(QMouseEvent* event)
{
    const ControlStay stay;
    platform::takeKeyboardFocus(window()->winId()); // for copying, and for scrolling by keys
    QTextEdit::mousePressEvent(event);
}
