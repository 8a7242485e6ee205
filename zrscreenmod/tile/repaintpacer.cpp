#include "repaintpacer.h"

#include <QTimerEvent>

#include <algorithm>

namespace {

bool contains(const std::vector<QPointer<QWidget>>& widgets, const QWidget* widget)
{
    return std::find(widgets.begin(), widgets.end(), widget) != widgets.end();
}

} // namespace

RepaintPacer::RepaintPacer(int maxWaitMs)
    : m_iMaxWaitMs(maxWaitMs)
{
}

std::shared_ptr<RepaintPacer> RepaintPacer::shared()
{
    static std::weak_ptr<RepaintPacer> s_pacer;
    std::shared_ptr<RepaintPacer> pacer = s_pacer.lock();
    if (!pacer) {
        pacer = std::make_shared<RepaintPacer>();
        s_pacer = pacer;
    }
    return pacer;
}

void RepaintPacer::requestUpdate(QWidget* widget)
{
    if (!widget->isVisible())
        return;
    if (isIdle() && (!m_lastRound.isValid() || m_lastRound.hasExpired(kQuietMs)))
        m_vecExpected.clear();
    const bool again = contains(m_vecDirty, widget);
    if (!again)
        m_vecDirty.emplace_back(widget);
    if (again || isComplete())
        finishRound();
    else if (!m_deadline.isActive())
        m_deadline.start(m_iMaxWaitMs, Qt::PreciseTimer, this);
}

bool RepaintPacer::isComplete() const
{
    return std::all_of(m_vecExpected.begin(), m_vecExpected.end(), [this](const auto& widget) {
        return !widget || !widget->isVisible() || contains(m_vecDirty, widget);
    });
}

void RepaintPacer::finishRound()
{
    m_deadline.stop();
    for (const QPointer<QWidget>& widget : m_vecDirty) {
        if (widget && widget->isVisible())
            widget->update();
    }
    std::swap(m_vecExpected, m_vecDirty);
    m_vecDirty.clear();
    m_lastRound.start();
}

void RepaintPacer::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_deadline.timerId())
        finishRound();
}
