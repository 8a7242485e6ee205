// Which reports of a host say that a camera is off, and which only answer what it was told.
#include "camerastate.h"

#include <QtTest>

#include <algorithm>
#include <map>

using zr::CameraState;

namespace {

enum class Kind
{
    InTurn,      ///< answers every message, in their order
    OutOfStep,   ///< answers every message, whichever is done first
    OnlyChanges, ///< does what was said last, and reports what that changes
    NeverHidden, ///< closes without a word
};

/// A host with one participant, and the module that tells it about him.
class Story
{
public:
    Story(Kind kind, bool bReportsFirst)
        : m_kind(kind)
    {
        if (bReportsFirst)
            setOpen(true);
    }
    void tell(bool bShown, qint64 delayMs)
    {
        ++tells;
        m_bShown = bShown;
        m_delayMs = delayMs;
        bShown ? camera.tellShown(m_nowMs) : camera.tellHidden(m_nowMs);
        qint64 dueMs = m_nowMs + delayMs;
        if (m_kind != Kind::OutOfStep && !m_answers.empty())
            dueMs = std::max(dueMs, m_answers.rbegin()->first);
        m_answers.emplace(dueMs, bShown);
    }
    void switchOff()
    {
        m_bCamera = false;
        saysOff = m_bOpen;
        if (m_bOpen)
            setOpen(false);
    }
    void pass(qint64 timeMs)
    {
        const qint64 endMs = m_nowMs + timeMs;
        for (; m_nowMs < endMs; m_nowMs += 100) {
            if (camera.tellAgainMs() >= 0 && camera.tellAgainMs() <= m_nowMs)
                tell(m_bShown, m_delayMs);
            while (!m_answers.empty() && m_answers.begin()->first <= m_nowMs) {
                const bool bShown = m_answers.begin()->second;
                m_answers.erase(m_answers.begin());
                answer(bShown);
            }
            lost = lost || (m_bCamera && m_bReportedOpen && !isOn());
        }
    }
    bool isOn() const { return camera.isOn(m_nowMs); }
    bool isOpen() const { return m_bOpen; }

    CameraState camera;
    int tells = 0;
    bool saysOff = false; ///< there was a stream to close when the camera was switched off
    bool lost = false;    ///< counted as off, at some time, while it was on

private:
    void answer(bool bShown)
    {
        const bool changes = m_kind == Kind::OnlyChanges;
        const bool bOpen = (changes ? m_bShown : bShown) && m_bCamera;
        if (m_kind == Kind::NeverHidden && !bShown)
            m_bOpen = false;
        else if (!changes || bOpen != m_bOpen)
            setOpen(bOpen);
    }
    void setOpen(bool bOpen)
    {
        m_bOpen = bOpen;
        m_bReportedOpen = m_bReportedOpen || bOpen;
        camera.report(bOpen, m_nowMs);
    }

    const Kind m_kind;
    bool m_bCamera = true;
    bool m_bOpen = false;
    bool m_bReportedOpen = false;
    bool m_bShown = false;
    qint64 m_delayMs = 0;
    qint64 m_nowMs = 0;
    std::multimap<qint64, bool> m_answers; ///< by when they are due: the messages
};

} // namespace

class tst_CameraState : public QObject
{
    Q_OBJECT

private slots:
    void singleReports()
    {
        // 's', 'h' and 'g': told shown, hidden and a grade, 'p': presumed on, '+' and '-': reported
        // open and closed, '.': a second. Then whether it is on, and the second since the beginning
        // in which the host is told again.
        const std::tuple<const char*, bool, int> rows[] = {
            {"", false, -1},
            {"+", true, -1},
            {"+h.-.-", false, -1},         // one report more than it was asked for
            {"+h..s.-", true, -1},         // a late answer: the next one will be "open"
            {"+h.s.+..-", true, 4},        // out of step; or switched off
            {"+h.s.-........", false, -1}, // nothing more came: it was no answer
            {"+h.s.-.......h.-", true, -1},
            {"+h.s.-........h.-", false, -1},
            {"+h.s.........-", false, -1}, // too late for an answer
            {"h.+", true, 2},              // switched on, seen by nobody
            {"s.h.+", true, 9},            // a late answer, to be followed by another
            {"s.+g.-.......", true, 6},    // closed for another grade
            {"s.+g.-........", false, 6},
            {"s.+g.-.+.-", false, -1},
            {"h.s.+g.-", true, 7}, // maybe it is opened again unasked
            {"s.+g........-", false, -1},
            {"h.p.-", true, -1}, // nothing is known yet
            {"h.p.-s.......", true, -1},
            {"h.p.-s........", false, -1},
            {"h.p.-s.+........", true, -1},
            {"h.p.-s.-", false, -1},
            {"-p", false, -1},
            {"s.-h.+", true, 3}, // what was told before it was switched off has its answer
            {"s.p", true, -1},   // not known yet
            {"s.p.......", true, -1},
            {"s.p........", false, -1},
            {"s........p", false, -1},
            {"s.h........p", true, -1}, // nor has a host an answer to this any more
            {"s........h.p", false, -1},
            {"s.-h.p", false, -1},
        };
        for (const auto& [events, on, tellAgainS] : rows) {
            CameraState camera;
            qint64 nowMs = 0;
            for (const char event : QByteArray(events)) {
                if (event == '.')
                    nowMs += 1000;
                else if (event == 's')
                    camera.tellShown(nowMs);
                else if (event == 'h')
                    camera.tellHidden(nowMs);
                else if (event == 'p')
                    camera.presumeOn(nowMs);
                else if (event == 'g')
                    camera.tellGrade(nowMs);
                else
                    camera.report(event == '+', nowMs);
            }
            QVERIFY2(camera.isOn(nowMs) == on, events);
            QVERIFY2(camera.tellAgainMs() == (tellAgainS < 0 ? -1 : tellAgainS * 1000), events);
        }
    }

    void everyHost()
    {
        constexpr qint64 kGapsMs[] = {1000, 2500, 9000};
        constexpr qint64 kDelaysMs[] = {0, 1500, 5000};
        constexpr int kTells = 4;
        constexpr int kThreeTo[kTells] = {1, 3, 9, 27};
        constexpr int kCourses = 81; // three gaps or delays at each of four places
        int failures = 0;
        for (const Kind kind :
             {Kind::InTurn, Kind::OutOfStep, Kind::OnlyChanges, Kind::NeverHidden}) {
            for (int course = 0; course < kCourses * kCourses * 2 * (kTells + 1); ++course) {
                const int gaps = course % kCourses;
                const int delays = course / kCourses % kCourses;
                const bool bReportsFirst = course / kCourses / kCourses % 2 != 0;
                const int offAfter = course / kCourses / kCourses / 2;
                Story story(kind, bReportsFirst);
                for (int i = 0; i < kTells; ++i) {
                    const bool bShown = (i + kTells) % 2 != 0; // the last one is "shown"
                    story.tell(bShown, kDelaysMs[delays / kThreeTo[i] % 3]);
                    story.pass(200);
                    if (offAfter == i)
                        story.switchOff();
                    story.pass(kGapsMs[gaps / kThreeTo[i] % 3] - 200);
                }
                story.pass(30000);
                const bool isRegular = kind == Kind::InTurn || kind == Kind::OnlyChanges;
                const bool answersAll = kind == Kind::InTurn || kind == Kind::OutOfStep;
                // At rest the host has done what it was told last, and no answer is open any more.
                bool right = !story.lost && story.isOpen() == (offAfter >= kTells);
                if (offAfter >= kTells) {
                    right = right && story.isOn();
                    right = right && (!isRegular || story.tells == kTells);
                    story.switchOff(); // which nothing but the camera can be the cause of
                    right = right && !story.isOn();
                } else if (answersAll || (story.saysOff && offAfter == kTells - 1)) {
                    right = right && !story.isOn();
                }
                if (!right && ++failures < 10)
                    qWarning() << "host" << int(kind) << "gaps" << gaps << "delays" << delays
                               << bReportsFirst << "off after" << offAfter << "tells" << story.tells
                               << "on" << story.isOn() << "open" << story.isOpen() << story.lost;
            }
        }
        QCOMPARE(failures, 0);
    }
};

QTEST_APPLESS_MAIN(tst_CameraState)
#include "tst_camerastate.moc"
