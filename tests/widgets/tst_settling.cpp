// Meetings whose host takes its time: what it is told comes true up to five seconds later. Every
// step comes to rest, with nobody in another place than the step gave them and nobody told the same
// twice.
#include "gallerytest.h"

#include <QRandomGenerator>

#include <deque>
#include <optional>

using zrtest::HostDouble;
using zrtest::Meeting;

namespace {

constexpr qint64 kTickMs = 50;
constexpr qint64 kFramePeriodMs = 500;
constexpr qint64 kRestMs = 3000; ///< without a message, and the order is looked at every second
constexpr qint64 kLimitMs = 30000;

/// What the host answers.
enum class Answers
{
    All,          ///< each message, in turn
    Changes,      ///< what the last message changes
    ClosesAtOnce, ///< the same, and only to open a stream takes its time
};

struct Row
{
    int people;
    int mode, nextMode;
    qint64 leastMs, mostMs; ///< until a message is answered; 0: inside of it
    Answers answers;
    bool bAllCameras = true; ///< are on
};

const Row kRows[] = {
    {6, 1, 12, 0, 0, Answers::Changes},
    {60, 1, 9, 0, 0, Answers::All},
    {18, 2, 11, 300, 300, Answers::All},
    {60, 12, 1, 900, 900, Answers::Changes},
    {18, 1, 11, 1100, 1100, Answers::All, false},
    {18, 1, 12, 1100, 1900, Answers::ClosesAtOnce},
    {60, 13, 2, 1900, 1900, Answers::All},
    {18, 7, 1, 3000, 3000, Answers::Changes},
    {60, 6, 13, 3000, 3000, Answers::ClosesAtOnce, false},
    {6, 9, 11, 5000, 5000, Answers::All},
    {18, 9, 12, 5000, 5000, Answers::Changes},
    {60, 1, 13, 0, 5000, Answers::Changes},
    {18, 8, 2, 0, 5000, Answers::All},
};

/// A meeting with such a host, and the time that passes there; nobody waits for it.
class SlowMeeting
{
public:
    explicit SlowMeeting(const Row& row)
        : m_row(row)
    {
        m.stepMs = 0;
        m.host.onMessage = [this](const HostDouble::Message& message) { receive(message); };
    }
    /// Plays a deed, and lets time pass until all is quiet. @return what is wrong then
    QString step(const QString& deed);
    void pass(qint64 timeMs)
    {
        for (const qint64 endMs = m.nowMs + timeMs; m.nowMs < endMs;)
            tick();
    }
    /// Has the pages turn every second, through all of them. @return who has not been told hidden
    /// meanwhile, though they were away for longer
    QString poll();

    Meeting m;

private:
    struct Stream
    {
        bool bCamera = true;
        bool bOpen = false;
        std::optional<bool> wanted;                  ///< by the last message
        int iMessages = 0;                           ///< in this step
        std::deque<std::pair<qint64, bool>> answers; ///< when they are due, and to what
    };
    void receive(const HostDouble::Message& message);
    void answer(const QString& id, Stream& stream, bool bShown);
    void tick();
    void fireTimers();
    bool isQuiet() const;
    void forgetCounts()
    {
        m_toldMs = m.nowMs;
        for (auto& [id, stream] : m_streams)
            stream.iMessages = 0;
    }

    const Row m_row;
    QRandomGenerator m_random{7};
    std::map<QString, Stream> m_streams;
    std::map<int, qint64> m_timers; ///< when each fires next
    qint64 m_toldMs = 0;            ///< the last message
    QStringList m_faults;
};

void SlowMeeting::receive(const HostDouble::Message& message)
{
    m_toldMs = m.nowMs;
    const bool shown = message.id == ZRMSG_VIDEO_SHOWN;
    if (!shown && message.id != ZRMSG_VIDEO_HIDDEN)
        return;
    const QString id = message.person()->userID;
    Stream& stream = m_streams[id];
    stream.bCamera = m_row.bAllCameras || !id.endsWith('3');
    if (stream.wanted == shown)
        m_faults += id + " is told again";
    stream.wanted = shown;
    ++stream.iMessages;
    const qint64 delayMs = m_row.leastMs + m_random.bounded(int(m_row.mostMs - m_row.leastMs + 1));
    if (m_row.mostMs == 0 || (!shown && m_row.answers == Answers::ClosesAtOnce))
        return answer(id, stream, shown);
    const qint64 lastMs = stream.answers.empty() ? 0 : stream.answers.back().first;
    stream.answers.emplace_back(std::max(lastMs, m.nowMs + delayMs), shown);
}

void SlowMeeting::answer(const QString& id, Stream& stream, bool bShown)
{
    const bool all = m_row.answers == Answers::All;
    const bool open = (all ? bShown : *stream.wanted) && stream.bCamera;
    if (std::exchange(stream.bOpen, open) != open || all)
        m->setPreview(m[id], open);
}

void SlowMeeting::fireTimers()
{
    std::map<int, qint64> running;
    for (const auto& timer : m.running()) {
        const auto known = m_timers.find(timer.timerId);
        qint64& dueMs = running[timer.timerId];
        dueMs = known == m_timers.end() ? m.nowMs + timer.interval : known->second;
        if (dueMs > m.nowMs)
            continue;
        dueMs += timer.interval;
        QTimerEvent event(timer.timerId);
        QCoreApplication::sendEvent(m.gallery.get(), &event);
        m.settle();
    }
    m_timers = running;
}

void SlowMeeting::tick()
{
    m.nowMs += kTickMs;
    for (auto& [id, stream] : m_streams) {
        while (!stream.answers.empty() && stream.answers.front().first <= m.nowMs) {
            const bool shown = stream.answers.front().second;
            stream.answers.pop_front();
            if (m[id])
                answer(id, stream, shown);
        }
        if (stream.bOpen && m[id] && m.nowMs % kFramePeriodMs == 0)
            m.play(m[id]);
    }
    m.settle();
    fireTimers();
}

bool SlowMeeting::isQuiet() const
{
    return m.nowMs - m_toldMs >= kRestMs
           && std::all_of(m_streams.begin(), m_streams.end(),
                          [](const auto& entry) { return entry.second.answers.empty(); });
}

QString SlowMeeting::poll()
{
    const int pages = m->pageCount();
    forgetCounts();
    m.tell("poll 1");
    pass((pages + 3) * 1000);
    QStringList ids;
    for (const auto& [id, stream] : m_streams) {
        if (pages > 2 && stream.iMessages == 1)
            ids += id;
    }
    return ids.join(' ');
}

QString SlowMeeting::step(const QString& deed)
{
    forgetCounts();
    const QString fault = m.tell(deed);
    for (auto it = m_streams.begin(); it != m_streams.end();)
        it = m[it->first] ? std::next(it) : m_streams.erase(it);
    const QStringList after = m.places().keys();
    const qint64 limitMs = m.nowMs + kLimitMs;
    while (!isQuiet() && m.nowMs < limitMs)
        tick();
    if (!fault.isEmpty() || m.nowMs >= limitMs)
        return fault + " does not come to rest";
    if (m_row.bAllCameras && m.places().keys() != after)
        return "other places: " + m.shown();
    for (const auto& [id, stream] : m_streams) {
        const bool visible = m.places().contains(id);
        if (stream.bOpen != (visible && stream.bCamera))
            return id + (stream.bOpen ? " is open" : " is closed");
        if (stream.iMessages > (m_row.bAllCameras ? 1 : 2))
            return id + " is told too often";
    }
    return std::exchange(m_faults, {}).join(", ");
}

} // namespace

class TestSettling : public QObject
{
    Q_OBJECT

private slots:
    void everyStepComesToRest()
    {
        QStringList faults;
        for (const Row& row : kRows)
            faults += faultsOf(row, QString::number(&row - kRows));
        QCOMPARE(faults.join("\n"), QString());
    }

private:
    static QStringList faultsOf(const Row& row, const QString& name)
    {
        SlowMeeting slow(row);
        QStringList faults;
        const auto check = [&](const QString& deed, const QString& fault) {
            if (!fault.isEmpty())
                faults += QString("row %1, %2: %3").arg(name, deed, fault);
        };
        const auto step = [&](const QString& deed) { check(deed, slow.step(deed)); };
        step(QString("mode %1; people %2").arg(row.mode).arg(row.people));
        const QString first = slow.m.shown();
        // A page that is left again before the host has answered.
        const bool turns = slow.m->pageCount() > 1;
        check("turn", slow.m.tell("next"));
        check("turned", (slow.m.shown() != first) == turns ? QString() : first);
        slow.pass(1500);
        step("next");
        step("back");
        step("back");
        check("places", row.bAllCameras && slow.m.shown() != first ? slow.m.shown() : QString());
        step("next");
        step(QString("mode %1").arg(row.nextMode));
        step("remove u1");
        check("poll", slow.poll());
        step("poll 1 off");
        return faults;
    }
};

ZR_WIDGET_TEST_MAIN(TestSettling)
#include "tst_settling.moc"
