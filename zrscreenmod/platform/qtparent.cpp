#include "qtparent.h"

#include "hostcall.h"

#include <QDebug>
#include <QGuiApplication>
#include <QOpenGLWidget>
#include <QPlatformSurfaceEvent>
#include <QPointer>
#include <QScreen>
#include <QVariant>
#include <QWidget>
#include <QWindow>
#include <QtMath>

#include <algorithm>

namespace platform {

namespace {

constexpr char kContainerProperty[] = "zrNativeContainer";
constexpr char kOrphanProperty[] = "zrOrphan";

bool isContainer(const QWindow* window)
{
    return window && window->property(kContainerProperty).toBool();
}

/// Takes a window of the module's out of one of the host's Qt before that is destroyed: the system
/// would destroy both.
class ParentWatch : public QObject
{
public:
    static void follow(QWindow& child, QWindow* parent)
    {
        ParentWatch* watch = nullptr;
        for (QObject* const part : child.children())
            watch = watch ? watch : dynamic_cast<ParentWatch*>(part);
        if (!watch && parent)
            watch = new ParentWatch(child);
        if (!watch)
            return;
        if (watch->m_parent)
            watch->m_parent->removeEventFilter(watch);
        watch->m_parent = parent;
        if (parent)
            parent->installEventFilter(watch);
    }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (m_child.handle() && event->type() == QEvent::PlatformSurface
            && static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType()
                   == QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
            leaveParent(m_child);
        return false;
    }

private:
    explicit ParentWatch(QWindow& child)
        : QObject(&child)
        , m_child(child)
    {
    }

    QWindow& m_child;
    QPointer<QWindow> m_parent;
};

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

void leaveParent(QWindow& child)
{
    const NativeWindow id = child.winId();
    qDebug() << "parent window goes first, child:" << reinterpret_cast<const void*>(id);
    const HostCall inside; // on Windows both call the host
    const QPointer<QWindow> alive = &child;
    if (QWidget* const widget = QWidget::find(id))
        widget->hide(); // which runs what the host has to hear of it
    // The system may have destroyed the child as well. Qt has to know in any case.
    if (alive && !setParentWindow(id, 0))
        setQtParent(alive, 0);
    if (alive)
        alive->setProperty(kOrphanProperty, true);
}

bool isOrphaned(NativeWindow id)
{
    const QWindow* const window = findQtWindow(id);
    return window && window->property(kOrphanProperty).toBool();
}

namespace {

/// Gives up a widget's window and what is bound to it: the backing store and the GL contexts.
void dropWindow(QWidget& widget)
{
    struct Opened : QWidget
    {
        using QWidget::destroy;
    };
    (widget.*(&Opened::destroy))(true, true);
    for (QOpenGLWidget* const tile : widget.findChildren<QOpenGLWidget*>()) {
        QEvent another(QEvent::WindowChangeInternal); // they would keep contexts of the former one
        QCoreApplication::sendEvent(tile, &another);
    }
}

} // namespace

NativeWindow livingWindow(QWidget& widget)
{
    // The report that the system has destroyed it may still be under way.
    if (isInParent(widget.winId()) && !windowExists(widget.winId()))
        leaveParent(*widget.windowHandle());
    if (isOrphaned(widget.winId()))
        dropWindow(widget);
    return widget.winId();
}

void renewWindow(QWidget& widget)
{
    const HostCall inside;
    const QPointer<QWidget> alive = &widget;
    const bool wasVisible = widget.isVisible();
    const QRect place = rectInParent(widget);
    const QWindow* const outer = widget.windowHandle() ? widget.windowHandle()->parent() : nullptr;
    const NativeWindow parent = outer ? outer->winId() : 0;
    widget.hide();
    if (!alive)
        return;
    dropWindow(widget);
    if (parent != 0) {
        if (!setParentWindow(widget.winId(), parent, place.topLeft()))
            return; // which is gone
        setChildStyle(widget.winId());
        placeWindow(widget.winId(), place);
    }
    if (wasVisible && alive)
        widget.show();
    if (wasVisible && alive && parent != 0)
        showOnTop(widget.winId());
}

bool isInParent(NativeWindow id)
{
    const QWindow* const window = findQtWindow(id);
    return window && window->parent();
}

void setQtParent(QWindow* child, NativeWindow parent)
{
    ParentWatch::follow(*child, parent == 0 ? nullptr : findQtWindow(parent));
    QWindow* const before = child->parent();
    QWindow* after = nullptr;
    child->setProperty(kOrphanProperty, false);
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

namespace {

struct Span
{
    int from;
    int length;
};

/// Qt rounds a half upward, so the first pixel of a unit may be half a pixel further than it says.
Span toUnits(const Span& pixels, qreal ratio)
{
    const int from = qCeil((pixels.from + 0.5) / ratio) - 1;
    const int before = pixels.from - qRound(from * ratio);
    return {from, qCeil((before + pixels.length - 0.5) / ratio)};
}

/// Qt leaves the corner of each screen where it is.
QRect toScreenPixels(const QRect& global, const QScreen* screen)
{
    if (!screen)
        return global;
    const QPoint corner = screen->geometry().topLeft();
    return toPixels(global.translated(-corner), screen->devicePixelRatio()).translated(corner);
}

} // namespace

QRect toPixels(const QRect& units, qreal ratio)
{
    return {units.topLeft() * ratio, units.size() * ratio};
}

QRect toUnits(const QRect& pixels, qreal ratio)
{
    const Span across = toUnits({pixels.x(), pixels.width()}, ratio);
    const Span down = toUnits({pixels.y(), pixels.height()}, ratio);
    return {across.from, down.from, across.length, down.length};
}

QRect rectOnScreen(const QWidget& widget)
{
    const QWindow* const window = widget.window()->windowHandle();
    return toScreenPixels(globalRect(widget),
                          window ? window->screen() : QGuiApplication::primaryScreen());
}

QRect rectInParent(const QWidget& window)
{
    return toPixels(window.geometry(), window.devicePixelRatioF());
}

std::vector<QRect> availableScreens()
{
    std::vector<QRect> areas;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens)
        areas.push_back(toScreenPixels(screen->availableGeometry(), screen));
    return areas;
}

QRect globalRect(const QWidget& widget)
{
    const QWidget* const top = widget.window();
    const QWindow* const window = top->windowHandle();
    const QPoint place = widget.mapTo(top, QPoint());
    // The system knows where a window of the host's is; where Qt's own one goes, Qt may know first.
    const bool systemKnows = window && window->handle() && (window->parent() || placesAtOnce());
    return {systemKnows ? window->mapToGlobal(place) : top->geometry().topLeft() + place,
            widget.size()};
}

QRect placeable(NativeWindow id, const QRect& rect)
{
    constexpr int kFarthest = 32767;    // the protocol of X11 has 16 bits
    constexpr int kLongestSide = 16384; // the software renderer crashes on a longer one
    const QRect place(
        qBound(-kFarthest, rect.x(), kFarthest), qBound(-kFarthest, rect.y(), kFarthest),
        qBound(1, rect.width(), kLongestSide), qBound(1, rect.height(), kLongestSide));
    const QWindow* const window = findQtWindow(id);
    const qreal ratio = window ? window->devicePixelRatio() : 1;
    return toPixels(toUnits(place, ratio), ratio);
}

void setQtGeometry(NativeWindow id, const QRect& rect)
{
    QWindow* const window = findQtWindow(id);
    QRect known = window ? toUnits(rect, window->devicePixelRatio()) : rect;
    if (const QPointer<QWidget> widget = QWidget::find(id)) {
        widget->setGeometry(known);
        if (!widget)
            return;
        known = widget->geometry(); // it may have a least size
    }
    // The widget tells its window only while it is shown, and only what is new to the widget.
    if (window && window->geometry() != known)
        window->setGeometry(known);
}

} // namespace platform
