// A window of the module's on its way into one of the host's.
#pragma once

#include "platform.h"

#include <QBasicTimer>
#include <QObject>

#include <functional>
#include <utility>

class QWidget;

/// Keeps a window hidden until it is inside the host's, which the window system may not know yet:
/// on X11 the request that makes it may still lie in the host's own connection. A window that is
/// shown before would stand on the desktop, bare; so would one whose parent is gone. GUI thread.
class Embedding : public QObject
{
public:
    /// @param shownLate called when the window has been shown though it had to wait; last of all
    explicit Embedding(QWidget& window, std::function<void()> shownLate = {})
        : m_window(window)
        , m_shownLate(std::move(shownLate))
    {
    }

    /// Puts the window into `parent`; 0 leaves it at the top level. When the system refuses, it is
    /// at the top level, hidden, and tried again with `place` and for some seconds.
    /// @return whether it is where it belongs
    bool into(platform::NativeWindow parent);
    /// Places the window in its parent's pixels.
    void place(const QRect& rect);
    /// Shows the window, once it is where it belongs.
    void show();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    bool tryAgain();
    /// Whether the parent has gone meanwhile.
    [[nodiscard]] bool isLost() const;

    QWidget& m_window;
    std::function<void()> m_shownLate;
    platform::NativeWindow m_parent = 0;
    QPoint m_at;             ///< in the parent
    bool m_bWaiting = false; ///< for the parent
    bool m_bShowDue = false;
    int m_iWaitMs = 0;
    QBasicTimer m_timer; ///< runs while another attempt is due
};
