// A native host, as far as the tests of the platform need one: a stranger to Qt, with windows and
// memory of its own. One implementation per system: nativehost_x11.cpp and nativehost_win32.cpp.
#pragma once

#include "platform.h"

#include <QDialog>
#include <QResizeEvent>
#include <QtTest>

#include <cstddef>

using platform::NativeWindow;

namespace nativehost {

/// @return a visible window; at the top level without a parent
NativeWindow makeWindow(const QRect& rect, NativeWindow parent = 0);
void moveWindow(NativeWindow window, const QPoint& to);
void destroyWindow(NativeWindow window);
/// The desktop() of one at the top level.
NativeWindow parentOf(NativeWindow window);
NativeWindow topChildOf(NativeWindow window);
/// In the parent.
QRect geometryOf(NativeWindow window);
bool isViewable(NativeWindow window);
NativeWindow desktop();
QSize screenSize();
/// So that what Qt has asked of the system until now comes before what others ask.
void waitForQtsRequests();

} // namespace nativehost

/// A window of the host's that goes when the test is done, after what the test has put into it.
class HostWindow
{
public:
    explicit HostWindow(const QRect& rect = {0, 0, 640, 480})
        : m_id(nativehost::makeWindow(rect))
    {
    }
    ~HostWindow()
    {
        nativehost::waitForQtsRequests();
        nativehost::destroyWindow(m_id);
    }
    Q_DISABLE_COPY(HostWindow)
    operator NativeWindow() const { return m_id; }

private:
    NativeWindow m_id;
};

class Dialog : public QDialog
{
public:
    Dialog()
        : QDialog(nullptr, Qt::CustomizeWindowHint | Qt::FramelessWindowHint)
    {
        setGeometry(0, 0, 200, 200);
    }
    [[nodiscard]] NativeWindow id() { return winId(); }
    /// @return false when the window does not become the dialog's parent, or the dialog visible
    [[nodiscard]] bool showIn(NativeWindow window)
    {
        const bool ok = platform::setParentWindow(winId(), window);
        show();
        return ok && QTest::qWaitForWindowExposed(this);
    }
    QVector<QSize> resizes;

protected:
    void resizeEvent(QResizeEvent* event) override { resizes.append(event->size()); }
};

/// Pages of which every second one can be read, the first included.
class PatchyMemory
{
public:
    static constexpr std::size_t kPages = 6;
    PatchyMemory();
    ~PatchyMemory();
    Q_DISABLE_COPY(PatchyMemory)
    /// Lets a page be read and written, or not.
    void open(std::size_t index, bool isOpen = true) const;

    const std::size_t page; ///< bytes
    char* const begin;
};
