#include "repaintpacer.h"

#include <QTimerEvent>

#include <algorithm>

RepaintPacer::RepaintPacer(int beatMs)
    : m_iBeatMs(beatMs)
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
    if (isQuiet()) {
        widget->update();
        m_beat.start(m_iBeatMs, Qt::PreciseTimer, this);
    } else if (std::find(m_vecDirty.begin(), m_vecDirty.end(), widget) == m_vecDirty.end()) {
        m_vecDirty.emplace_back(widget);
    }
}

void RepaintPacer::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_beat.timerId())
        return;
    if (m_vecDirty.empty()) {
        m_beat.stop();
        return;
    }
    for (const QPointer<QWidget>& widget : m_vecDirty) {
        if (widget && widget->isVisible())
            widget->update();
    }
    m_vecDirty.clear();
}
