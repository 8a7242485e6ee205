#include "qtparent.h"

#include <QGuiApplication>
#include <QPointer>
#include <QVariant>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace platform {

namespace {

constexpr char kContainerProperty[] = "zrNativeContainer";

bool isContainer(const QWindow* window)
{
    return window && window->property(kContainerProperty).toBool();
}

} // namespace

QWindow* findQtWindow(NativeWindow id)
{
    const QWindowList windows = QGuiApplication::allWindows();
    const auto found = std::find_if(windows.cbegin(), windows.cend(), [id](const QWindow* w) {
        // Only a window that has been created is asked for its id: winId() would create it.
        return w->handle() && w->type() != Qt::ForeignWindow && w->winId() == id;
    });
    return found == windows.cend() ? nullptr : *found;
}

void setQtParent(QWindow* child, NativeWindow parent)
{
    QWindow* const before = child->parent();
    QWindow* after = nullptr;
    if (parent != 0) {
        // A container even for a window of this process: what is a child of a QWindow of the host's
        // is deleted with it.
        after = QWindow::fromWinId(parent);
        after->setProperty(kContainerProperty, true);
        // The container goes with its child. It must not be the other way round, and a deferred
        // deletion would never come: the host's loop is not a loop of Qt.
        QObject::connect(child, &QObject::destroyed, after, [after](QObject* dying) {
            dying->setParent(nullptr);
            delete after;
        });
    }
    child->setParent(after);
    if (isContainer(before))
        delete before;
}

QRect rectOnScreen(const QWidget& widget)
{
    const QWidget* const top = widget.window();
    const QWindow* const window = top->windowHandle();
    const QPoint place = widget.mapTo(top, QPoint());
    // The system knows where a window of the host's is; where Qt's own one goes, Qt may know first.
    const bool systemKnows = window && window->handle() && (window->parent() || placesAtOnce());
    return {systemKnows ? window->mapToGlobal(place) : top->geometry().topLeft() + place,
            widget.size()};
}

QRect placeable(const QRect& rect)
{
    constexpr int kFarthest = 32767;    // the protocol of X11 has 16 bits
    constexpr int kLongestSide = 16384; // the software renderer crashes on a longer one
    return {qBound(-kFarthest, rect.x(), kFarthest), qBound(-kFarthest, rect.y(), kFarthest),
            qBound(1, rect.width(), kLongestSide), qBound(1, rect.height(), kLongestSide)};
}

void setQtGeometry(NativeWindow id, const QRect& rect)
{
    QRect known = rect;
    if (const QPointer<QWidget> widget = QWidget::find(id)) {
        widget->setGeometry(rect);
        if (!widget)
            return;
        known = widget->geometry(); // it may have a least size
    }
    // The widget tells its window only while it is shown, and only what is new to the widget.
    QWindow* const window = findQtWindow(id);
    if (window && window->geometry() != known)
        window->setGeometry(known);
}

} // namespace platform
