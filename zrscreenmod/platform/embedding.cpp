#include "embedding.h"

#include "hostcall.h"
#include "qtparent.h"

#include <QDebug>
#include <QTimerEvent>
#include <QWidget>

#include <utility>

namespace {

// Each wait is twice as long as the one before: two seconds in all.
constexpr int kFirstWaitMs = 15;
constexpr int kLastWaitMs = 1000;

} // namespace

bool Embedding::into(platform::NativeWindow parent)
{
    m_timer.stop();
    m_bWaiting = false;
    m_parent = parent;
    m_at = {};
    // Straight into the new parent: at the top level in between, a window manager could grab it.
    if (platform::setParentWindow(platform::livingWindow(m_window), parent))
        return true;
    qDebug() << "SetParent failed, hParent:" << reinterpret_cast<const void*>(parent);
    if (parent == 0 || !platform::canEmbed())
        return false;
    m_bShowDue = m_window.isVisible();
    m_window.hide();
    if (!platform::setParentWindow(m_window.winId(), 0))
        qDebug() << "SetParent failed, detaching";
    m_bWaiting = true;
    m_iWaitMs = kFirstWaitMs;
    m_timer.start(m_iWaitMs, this);
    return false;
}

void Embedding::place(const QRect& rect)
{
    m_at = rect.topLeft();
    m_bWaiting = m_bWaiting || isLost();
    if (m_bWaiting)
        tryAgain();
    platform::placeWindow(m_window.winId(), rect);
    show();
    if (m_window.isVisible())
        platform::showOnTop(m_window.winId());
}

void Embedding::show()
{
    m_bWaiting = m_bWaiting || isLost();
    m_bShowDue = m_bWaiting;
    if (!m_bWaiting)
        m_window.show();
}

bool Embedding::isLost() const
{
    return m_parent != 0 && platform::canEmbed() && !platform::isInParent(m_window.winId());
}

bool Embedding::tryAgain()
{
    if (!platform::setParentWindow(platform::livingWindow(m_window), m_parent, m_at))
        return false;
    qDebug() << "embedded at last";
    m_bWaiting = false;
    m_timer.stop();
    platform::setChildStyle(m_window.winId());
    if (std::exchange(m_bShowDue, false)) {
        m_window.show();
        platform::showOnTop(m_window.winId());
        if (m_shownLate)
            m_shownLate();
    }
    return true;
}

void Embedding::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_timer.timerId())
        return;
    const HostCall inside; // on Windows what embeds a window calls the host
    m_iWaitMs *= 2;
    if (m_iWaitMs <= kLastWaitMs)
        m_timer.start(m_iWaitMs, this);
    else
        m_timer.stop();
    if (!tryAgain() && !m_timer.isActive())
        qDebug() << "no such parent window, hidden until it is placed:"
                 << reinterpret_cast<const void*>(m_parent);
}
