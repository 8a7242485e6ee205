// Windows of a native host: a stranger to the module and to Qt.
#pragma once

#include "native_rect.h"
#include "pictures.h"

/// What the user sees and does.
namespace desktop = zrhost::desktop;

/// An X11 window id, or the value of a HWND; 0 is none.
using WindowId = unsigned long long;

struct Box
{
    int x;
    int y;
    int w;
    int h;
};

/// As hosts say it.
inline tagRECT rectOf(const Box& box)
{
    return {box.x, box.y, box.x + box.w, box.y + box.h};
}

namespace nativehost {

/// @return a visible window without a frame; at the top level without a parent
WindowId makeWindow(const Box& box, WindowId parent = 0);
void moveWindow(WindowId window, int x, int y);
void destroyWindow(WindowId window);
/// The desktop() of one at the top level.
WindowId parentOf(WindowId window);
/// Windows directly inside this one.
int childCountOf(WindowId window);
WindowId topChildOf(WindowId window);
/// In the parent.
Box geometryOf(WindowId window);
bool isViewable(WindowId window);
WindowId desktop();

} // namespace nativehost

/// A plain window of the host.
class HostWindow
{
public:
    explicit HostWindow(int widthPx = 640, int heightPx = 480, int x = 0, int y = 0)
        : m_id(nativehost::makeWindow({x, y, widthPx, heightPx}))
    {
    }
    ~HostWindow() { nativehost::destroyWindow(m_id); }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    operator WindowId() const { return m_id; }
    [[nodiscard]] HWND hwnd() const { return reinterpret_cast<HWND>(m_id); }
    /// What is seen in its place.
    [[nodiscard]] Screenshot grab() const
    {
        const Box box = nativehost::geometryOf(m_id);
        return {desktop::grab({box.x, box.y}, {box.w, box.h})};
    }
    [[nodiscard]] int childCount() const { return nativehost::childCountOf(m_id); }

private:
    WindowId m_id;
};
