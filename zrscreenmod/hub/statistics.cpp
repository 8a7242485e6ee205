#include "statistics.h"

#include "qzrscreenconfig.h"

#include <QDebug>
#include <QTimerEvent>

#include <algorithm>
#include <utility>

namespace {

constexpr int kSampleMs = 1000;
constexpr int kPulseMs = 50;

} // namespace

Statistics* Statistics::makeIfAsked(QObject* parent)
{
    const int periodS = qEnvironmentVariableIntValue("ZRSCREEN_STATS");
    const bool overlay = qEnvironmentVariableIntValue("ZRSCREEN_DEBUG_OVERLAY") == 1;
    return periodS > 0 || overlay ? new Statistics(parent, std::max(periodS, 0), overlay) : nullptr;
}

Statistics::Statistics(QObject* parent, int periodS, bool bOverlay)
    : QObject(parent)
    , m_iPeriodS(periodS)
    , m_bOverlay(bOverlay)
{
    s_active = this;
    m_second.start(kSampleMs, this);
    if (periodS > 0)
        m_pulse.start(kPulseMs, Qt::PreciseTimer, this);
    m_sincePulse.start();
}

Statistics::~Statistics()
{
    s_active = nullptr;
}

void Statistics::notePaint(qint64 durationNs)
{
    m_longestPaintNs = std::max(m_longestPaintNs, durationNs);
}

void Statistics::noteSwap()
{
    // The tiles of a window follow each other without a turn of the event loop in between.
    if (std::exchange(m_bSwapNoted, true))
        return;
    ++m_iSwaps;
    QMetaObject::invokeMethod(
        this, [this] { m_bSwapNoted = false; }, Qt::QueuedConnection);
}

void Statistics::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_pulse.timerId()) {
        m_longestStallMs = std::max(m_longestStallMs, m_sincePulse.restart() - kPulseMs);
    } else if (event->timerId() == m_second.timerId()) {
        sample();
        if (m_iPeriodS > 0 && ++m_iSeconds >= m_iPeriodS)
            log();
    }
}

Statistics::Rates Statistics::countsOf(const tagPersonInfo& person)
{
    return {person.frames.taken(), person.frames.refused(), person.frames.painted()};
}

void Statistics::sample()
{
    const auto* hub = static_cast<QZRScreenConfig*>(parent());
    hub->livePersons.forEach([](tagPersonInfo& person) {
        const quint64 taken = person.frames.taken();
        person.iFramesPerS = static_cast<int>(taken - std::exchange(person.framesSampled, taken));
    });
    emit sampled();
}

void Statistics::log()
{
    const auto* hub = static_cast<QZRScreenConfig*>(parent());
    QHash<quint64, Rates> counts;
    QStringList lines; // nothing is logged under the table's lock
    hub->livePersons.forEach([&](const tagPersonInfo& person) {
        const Rates now = countsOf(person);
        const Rates before = m_logged.value(person.serial);
        const auto perS = [this](quint64 a, quint64 b) {
            return QString::number(static_cast<double>(a - b) / m_iSeconds, 'f', 1);
        };
        lines.append(QStringLiteral("stats %1: in %2/s, refused %3, painted %4/s, %5x%6, grade %7, "
                                    "stream %8, %9")
                         .arg(person.userID, perS(now.taken, before.taken))
                         .arg(now.refused - before.refused)
                         .arg(perS(now.painted, before.painted))
                         .arg(person.iVideoWidth)
                         .arg(person.iVideoHeight)
                         .arg(person.iStreamType)
                         .arg(person.bPreview ? "open" : "closed")
                         .arg(QStringLiteral("opened %1 times, told shown %2, hidden %3 times")
                                  .arg(person.iTimesOpened)
                                  .arg(person.iTimesShown)
                                  .arg(person.iTimesHidden)));
        counts.insert(person.serial, now);
    });
    qDebug().noquote() << QStringLiteral("stats: %1 participants, %2 compositions/s, longest paint "
                                         "%3 ms, longest stall %4 ms")
                              .arg(lines.size())
                              .arg(static_cast<double>(m_iSwaps) / m_iSeconds, 0, 'f', 1)
                              .arg(static_cast<double>(m_longestPaintNs) / 1e6, 0, 'f', 1)
                              .arg(m_longestStallMs);
    for (const QString& line : lines)
        qDebug().noquote() << line;
    m_logged = counts;
    m_iSeconds = m_iSwaps = 0;
    m_longestPaintNs = m_longestStallMs = 0;
}
