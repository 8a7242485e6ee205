#include "rectpacer.h"

std::shared_ptr<RectPacer> RectPacer::shared()
{
    static std::weak_ptr<RectPacer> s_pacer;
    std::shared_ptr<RectPacer> pacer = s_pacer.lock();
    if (!pacer) {
        pacer = std::make_shared<RectPacer>();
        s_pacer = pacer;
    }
    return pacer;
}

void RectPacer::requestUpdate(QWidget* widget, const QRect& rect)
{
    if (!widget->isVisible())
        return;
    m_vecDirty.emplace_back(widget, rect);
    if (!m_timer.isActive())
        m_timer.start(kWaitMs, Qt::PreciseTimer, this);
}

void RectPacer::timerEvent(QTimerEvent* /*event*/)
{
    m_timer.stop();
    for (const auto& [widget, rect] : m_vecDirty) {
        if (widget)
            widget->update(rect);
    }
    m_vecDirty.clear();
}
