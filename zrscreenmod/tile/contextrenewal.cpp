#include "contextrenewal.h"

#include "cplaywidget.h"
#include "qtparent.h"

#include <QCoreApplication>
#include <QDebug>
#include <QOpenGLContext>
#include <QTimerEvent>

#include <algorithm>

namespace {

constexpr int kFirstRenewalMs = 1000;
constexpr int kLastRenewalMs = 60000;

} // namespace

ContextRenewal::ContextRenewal(QWidget& window)
    : QObject(&window)
    , m_window(window)
{
}

ContextRenewal& ContextRenewal::of(QWidget& window)
{
    auto* const found = window.findChild<ContextRenewal*>(QString(), Qt::FindDirectChildrenOnly);
    return found ? *found : *new ContextRenewal(window);
}

void ContextRenewal::request()
{
    if (m_timer.isActive())
        return;
    qDebug() << "the GL context is lost, window:" << &m_window;
    m_timer.start(0, this);
}

bool ContextRenewal::isNeeded() const
{
    const auto tiles = m_window.findChildren<CPlayWidget*>();
    return std::any_of(tiles.begin(), tiles.end(), [](CPlayWidget* tile) {
        return tile->isVisible() && (!tile->context() || tile->isContextLost());
    });
}

void ContextRenewal::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_timer.timerId())
        return;
    m_timer.stop();
    if (!isNeeded()) {
        m_iWaitMs = 0;
        return;
    }
    m_iWaitMs = std::clamp(2 * m_iWaitMs, kFirstRenewalMs, kLastRenewalMs);
    m_timer.start(m_iWaitMs, this);
    // The window is not to come and go in vain; contexts that the program shares Qt keeps.
    QOpenGLContext probe;
    if (!QCoreApplication::testAttribute(Qt::AA_ShareOpenGLContexts) && probe.create())
        platform::renewWindow(m_window); // the host is called, and this may be gone afterwards
}
