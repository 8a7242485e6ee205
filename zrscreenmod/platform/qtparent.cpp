#include "qtparent.h"

#include <QGuiApplication>
#include <QVariant>
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
        after = findQtWindow(parent);
        if (!after) {
            after = QWindow::fromWinId(parent);
            after->setProperty(kContainerProperty, true);
            // The container goes with its child. It must not be the other way round, and a
            // deferred deletion would never come: the host's loop is not a loop of Qt.
            QObject::connect(child, &QObject::destroyed, after, [after](QObject* dying) {
                dying->setParent(nullptr);
                delete after;
            });
        }
    }
    child->setParent(after);
    if (isContainer(before))
        delete before;
}

} // namespace platform
