#include "reaper.h"

#include "hostcall.h"

#include <QAbstractEventDispatcher>

#include <algorithm>
#include <iterator>
#include <utility>

void Reaper::add(const PinCount& pins, std::function<void()> destroy)
{
    m_retired.push_back({&pins, std::move(destroy)});
}

void Reaper::watch()
{
    constexpr int kRetryMs = 10;
    m_timer.start(kRetryMs, this);
}

void Reaper::collect()
{
    std::vector<Retired> free;
    if (!HostCall::isInside()) {
        // Moved out first: from inside a destructor more may be retired.
        const auto inUse = [](const Retired& retired) { return retired.pins->all.load() > 0; };
        const auto first = std::stable_partition(m_retired.begin(), m_retired.end(), inUse);
        free.assign(std::make_move_iterator(first), std::make_move_iterator(m_retired.end()));
        m_retired.erase(first, m_retired.end());
    }
    for (const Retired& retired : free)
        retired.destroy();
    // What is destroyed in a timer leaves the display with the next event of Qt's.
    if (!free.empty())
        QAbstractEventDispatcher::instance()->wakeUp();
    if (m_retired.empty())
        m_timer.stop();
    else
        watch();
}

void Reaper::destroyAll()
{
    for (const Retired& retired : std::exchange(m_retired, {})) {
        retired.pins->waitForOthers();
        retired.destroy();
    }
    m_timer.stop();
}

void Reaper::timerEvent(QTimerEvent*)
{
    collect();
}
