// A gallery in a meeting, with a host and a speaker tool: the stage for the tests of the gallery.
#pragma once

#include "testsupport.h"

#include "cplaywidget.h"
#include "qdlgscreen.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QAbstractEventDispatcher>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <vector>

/// A test of stories (Meeting::tell): a row for each of `table`.
#define ZR_STORIES(table)                                                                          \
    void stories_data()                                                                            \
    {                                                                                              \
        QTest::addColumn<QString>("story");                                                        \
        for (const auto& [name, story] : (table))                                                  \
            QTest::newRow(name) << QString(story);                                                 \
    }                                                                                              \
    void stories()                                                                                 \
    {                                                                                              \
        QFETCH(QString, story);                                                                    \
        QCOMPARE(zrtest::Meeting().tell(story), QString());                                        \
    }

namespace zrtest {

/// Keeps the lines that are logged while it lives. One at a time; GUI thread.
class LogLines
{
public:
    LogLines()
    {
        s_lines.clear();
        m_before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& line) { s_lines += line; });
    }
    ~LogLines() { qInstallMessageHandler(m_before); }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;
    int count(const char* text) const { return s_lines.filter(QLatin1String(text)).size(); }

private:
    static inline QStringList s_lines;
    QtMessageHandler m_before;
};

/// Records what a host is told, and lets a test act like a host from inside a message.
class HostDouble : public CAbsUIMsgCallback
{
public:
    struct Message
    {
        unsigned long id;
        unsigned long long wParam;
        long long lParam;
        tagPersonInfo* person() const { return reinterpret_cast<tagPersonInfo*>(wParam); }
    };

    bool UIMsgNotify(unsigned long id, unsigned long long wParam, long long lParam) override
    {
        messages.push_back({id, wParam, lParam});
        if (onMessage)
            onMessage(Message(messages.back()));
        return true;
    }
    int count(unsigned long id, const tagPersonInfo* person = nullptr) const
    {
        return static_cast<int>(
            std::count_if(messages.begin(), messages.end(), [&](const Message& m) {
                return m.id == id && (!person || m.person() == person);
            }));
    }
    /// The ids since the last call; without the messages that say who is visible.
    QList<int> news()
    {
        QList<int> ids;
        for (const Message& message : messages) {
            if (message.id < ZRMSG_PERSON_REMOVED || message.id == ZRMSG_MORE_MENU_CLOSED
                || message.id == ZRMSG_GALLERY_CLICK)
                ids.append(static_cast<int>(message.id));
        }
        messages.clear();
        return ids;
    }

    std::vector<Message> messages;
    std::function<void(const Message&)> onMessage;
};

/// A tool that only remembers what the gallery did with it.
class ToolDouble : public SpeakTool
{
public:
    void bindPerson(tagPersonInfo* person) override { bound = person; }
    tagPersonInfo* boundPerson() const override { return bound; }
    void showTool() override { visible = true; }
    void hideTool() override { visible = false; }
    bool isToolVisible() const override { return visible; }
    bool showsPicture() const override { return visible; }
    void setSpeaking(const QString& names) override { speaking = names; }
    int toolId() const override { return 1; }
    void moveTool(QPoint topLeft) override
    {
        position = topLeft;
        ++moves;
    }
    QSize toolSize() const override { return {272, 225}; }
    void playFrame(const void* person, const VantrelRTCVideoFrameQT&) override
    {
        frames += person == bound;
    }

    tagPersonInfo* bound = nullptr;
    bool visible = false;
    QPoint position;
    QString speaking;
    int moves = 0;
    int frames = 0;
};

/// A gallery of 1280 x 720 that has joined. Whatever changes it also runs what is scheduled.
class Meeting
{
public:
    /// @param onScreen really painted; for most tests that would only take time
    explicit Meeting(bool onScreen = false)
    {
        hub().registerUICallback(&host);
        hub().setClock([this] { return nowMs; });
        gallery = std::make_unique<QDlgScreen>(nullptr);
        auto ownedTool = std::make_unique<ToolDouble>();
        tool = ownedTool.get();
        gallery->setSpeakTool(std::move(ownedTool));
        gallery->setPageClock([this] { return nowMs += stepMs; });
        QObject::connect(&hub(), &QZRScreenConfig::notifyDisplayOrder, gallery.get(),
                         [this] { ++orders; });
        gallery->resize(1280, 720);
        gallery->setAttribute(Qt::WA_DontShowOnScreen, !onScreen);
        gallery->setUpdatesEnabled(onScreen);
        gallery->show();
        QVERIFY(!onScreen || QTest::qWaitForWindowExposed(gallery.get()));
        gallery->setJoinMeetingFinish(true);
    }
    ~Meeting()
    {
        gallery.reset();
        hub().unregisterUICallback(&host);
        QZRScreenConfig::destroyInstance();
    }
    Meeting(const Meeting&) = delete;
    Meeting& operator=(const Meeting&) = delete;

    QZRScreenConfig& hub() const { return *QZRScreenConfig::getInstance(); }
    ScreenSettings& settings() const { return hub().settings; }
    QDlgScreen* operator->() const { return gallery.get(); }
    tagPersonInfo* operator[](const QString& id) const { return gallery->findPerson(id); }
    void settle() const { QCoreApplication::sendPostedEvents(); }

    // --- What happens ---
    tagPersonInfo* add(const QString& id, qint64 joinTime = 0, const QString& name = {})
    {
        tagPersonInfo* person =
            gallery->AddPerson(id, name.isEmpty() ? id : name, joinTime, 0, nullptr);
        settle();
        return person;
    }
    /// Adds those that are missing of u0, u1 and so on, in join order.
    std::vector<tagPersonInfo*> addMany(int count)
    {
        std::vector<tagPersonInfo*> persons;
        for (int i = 0; i < count; ++i) {
            const QString id = QStringLiteral("u%1").arg(i);
            persons.push_back(gallery->AddPerson(id, id, 100 + i, 0, nullptr));
        }
        settle();
        return persons;
    }
    void setMode(int mode) { act(&QDlgScreen::onMeetingMode, mode); }
    void click(const QString& id) { act(&QDlgScreen::onPlayWidgetLBtnClick, tile(id)); }
    void remove(const QString& id) { act(&QDlgScreen::DelPerson, (*this)[id]); }
    void reLayout() { act(&QDlgScreen::reLayout); }
    bool play(tagPersonInfo* person, quint32 width = 64, quint32 height = 36)
    {
        VantrelRTCVideoFrameQT frame{};
        frame.pData = picture.data();
        frame.width = width;
        frame.height = height;
        const bool taken = gallery->playFrame(person, &frame);
        settle();
        return taken;
    }
    QList<int> timers() const
    {
        QList<int> intervals;
        for (const auto& timer : running())
            intervals.append(timer.interval);
        return intervals;
    }
    /// The gallery's timers of this interval fire; nobody waits for them.
    void elapse(int intervalMs)
    {
        nowMs += intervalMs;
        for (const auto& timer : running()) {
            if (timer.interval == intervalMs)
                fire(timer.timerId);
        }
    }
    /// Has the test do something when so much time has passed.
    void later(qint64 delayMs, std::function<void()> deed)
    {
        m_agenda.emplace(nowMs + delayMs, std::move(deed));
    }
    /// Time passes, in which the gallery's timers fire and what is to be done later is done, each
    /// when it is due. Nobody waits for it.
    void pass(qint64 timeMs)
    {
        const qint64 endMs = nowMs + timeMs;
        for (;;) {
            const auto timer = nextTimer();
            const bool deedFirst =
                !m_agenda.empty() && (timer.second == 0 || m_agenda.begin()->first <= timer.first);
            const qint64 dueMs = deedFirst ? m_agenda.begin()->first : timer.first;
            if ((!deedFirst && timer.second == 0) || dueMs > endMs)
                break;
            nowMs = std::max(nowMs, dueMs);
            if (deedFirst) {
                m_agenda.extract(m_agenda.begin()).mapped()();
                settle();
            } else {
                m_mapTimerDue.erase(timer.second);
                fire(timer.second);
            }
        }
        nowMs = endMs;
    }

    /// Plays a story of steps with ';' between them. A step is a deed, "click u1", or a question
    /// and its answer, "speaker: u1".
    /// @return what went wrong first; empty when nothing did
    QString tell(const QString& story)
    {
        for (const QString& step : story.split(';')) {
            const QStringList words = step.section(':', 0, 0).simplified().split(' ');
            if (step.contains(':')) {
                const QString expected = step.section(':', 1).simplified();
                const QString answer = ask(words[0], words.value(1)).simplified();
                if (answer != expected)
                    return step.simplified() + ", but it is: " + answer;
            } else if (!perform(words[0], words.mid(1))) {
                return "no such deed: " + step;
            }
        }
        return {};
    }

    // --- What is to be seen ---
    int mode() const { return hub().curScreenMode(); }
    bool sees(const QString& id) const { return gallery->isPersonVisible(id); }
    CPlayWidget* tile(const QString& id) const
    {
        const tagPersonInfo* person = (*this)[id];
        return person ? person->pWidget : nullptr;
    }
    std::vector<CPlayWidget*> tiles() const
    {
        const auto all = gallery->findChildren<CPlayWidget*>();
        return {all.begin(), all.end()};
    }
    /// Where the tiles are that are shown.
    QMap<QString, QRect> places() const
    {
        QMap<QString, QRect> rects;
        for (const CPlayWidget* tile : tiles()) {
            if (tile->isShowing() && tile->isVisible())
                rects[tile->GetPersonInfo()->userID] = tile->geometry();
        }
        return rects;
    }
    /// The ids whose tiles are shown, row by row.
    QString shown() const
    {
        std::map<std::pair<int, int>, QString> byPlace;
        const auto rects = places();
        for (auto it = rects.begin(); it != rects.end(); ++it)
            byPlace[{it->y(), it->x()}] = it.key();
        QStringList ids;
        for (const auto& [place, id] : byPlace)
            ids.append(id);
        return ids.join(' ');
    }
    /// The participant with the largest tile, of two the one on the left.
    QString speaker() const
    {
        QString largest;
        const auto rects = places();
        for (auto it = rects.begin(); it != rects.end(); ++it) {
            const QRect best = rects.value(largest);
            if (it->width() > best.width() || (it->width() == best.width() && it->x() < best.x()))
                largest = it.key();
        }
        return largest;
    }

    HostDouble host;
    std::unique_ptr<QDlgScreen> gallery;
    ToolDouble* tool = nullptr; ///< the gallery's
    qint64 nowMs = 0;           ///< each page turn comes stepMs later
    qint64 stepMs = 1000;
    int orders = 0; ///< asked for since the last question
    std::vector<uchar> picture = std::vector<uchar>(std::size_t(1280) * 720 * 2, 90);

private:
    void fire(int timerId)
    {
        QTimerEvent event(timerId);
        QCoreApplication::sendEvent(gallery.get(), &event);
        settle();
    }
    /// When a timer fires next, and which; 0 without one.
    std::pair<qint64, int> nextTimer()
    {
        std::map<int, qint64> due;
        std::pair<qint64, int> next{0, 0};
        for (const auto& timer : running()) {
            const auto known = m_mapTimerDue.find(timer.timerId);
            const qint64 dueMs =
                known == m_mapTimerDue.end() ? nowMs + timer.interval : known->second;
            due.emplace(timer.timerId, dueMs);
            if (next.second == 0 || dueMs < next.first)
                next = {dueMs, timer.timerId};
        }
        m_mapTimerDue = std::move(due);
        return next;
    }

    std::map<int, qint64> m_mapTimerDue;
    std::multimap<qint64, std::function<void()>> m_agenda;

    bool perform(const QString& deed, const QStringList& words)
    {
        using G = QDlgScreen;
        const QString first = words.value(0);
        const bool on = words.value(words.size() - 1) != "off";
        const int number = first.toInt();
        tagPersonInfo* person = (*this)[first];
        bool known = false;
        const auto set = [&](const char* name, auto& setting, int value) {
            if (first == name)
                setting = value;
            known = known || first == name;
        };
        const std::map<QString, std::function<void()>> deeds{
            {"people", [&] { addMany(number); }},
            {"add", [&] { add(first, words.value(1).toInt(), words.value(2)); }},
            {"remove",
             [&] { std::for_each(words.begin(), words.end(), [&](auto& id) { remove(id); }); }},
            {"remove-first",
             [&] {
                 for (int i = 0; i < number; ++i)
                     gallery->DelPerson((*this)[QStringLiteral("u%1").arg(i)]);
                 settle();
             }},
            {"width",
             [&] {
                 gallery->setMinimumSize(1, 1);
                 gallery->resize(number, 400);
             }},
            {"mode", [&] { setMode(number); }},
            {"click", [&] { click(first); }},
            {"double", [&] { act(&G::onLeftBtnDBClick, tile(first)); }},
            {"focus", [&] { act(&G::onModFocusByUserID, first, false); }},
            {"suggest", [&] { act(&G::onModFocusByUserID, first, true); }},
            {"voice", [&] { act(&G::OnSetVoiceActivateUser, first); }},
            {"speaking", [&] { act(&G::setCurrentSpeakingPerson, first); }},
            {"self", [&] { act(&G::updatePersonInfo, person, on, 0, QString(), 0); }},
            {"host", [&] { act(&G::updatePersonInfo, person, false, 1, QString(), 0); }},
            {"rename", [&] { act(&G::updatePersonInfo, person, false, 0, words.value(1), 0); }},
            {"stream", [&] { act(&G::setPreview, person, on); }},
            {"mute", [&] { act(&G::setMute, person, on); }},
            {"pin", [&] { act(&G::setLockLookPerson, person, on); }},
            {"pin-for-all", [&] { act(&G::setAllLook, person, on); }},
            {"menu", [&] { act(&G::onClickMore, person, 0); }},
            {"sponsor", [&] { hub().setShareSponsor(first); }},
            {"next", [&] { act(&G::pageNext, first == "wrap"); }},
            {"back", [&] { act(&G::pagePre); }},
            {"after", [&] { stepMs = number; }}, // of the page turns that follow
            {"places",
             [&] {
                 std::map<int, std::string> sorting;
                 for (const QString& id : words)
                     sorting.emplace(int(sorting.size()), id.toStdString());
                 act(&G::SetCustomizeSorting, sorting);
             }},
            {"pause", [&] { settings().pauseShare = on; }},
            {"exit", [&] { act(&G::ProcessExitMeeting); }},
            {"order", [&] { act(&G::onDisplayOrder, first == "keep"); }},
            {"layout", [&] { reLayout(); }},
            {"hide", [&] { act(&G::onSetHideSmallWnd, on); }},
            {"minimise", [&] { act(&G::showSmallWndWhenRestore, !on); }},
            {"float", [&] { act(&G::OnPopSelfShareWnd, on, on); }},
            {"elapse", [&] { elapse(number); }},
            {"poll",
             [&] {
                 settings().pollingOpen = on;
                 settings().pollingPeriodS = number;
                 act(&G::onOpenLayoutPoll);
             }},
            {"set",
             [&] {
                 const int value = words.value(1).toInt();
                 set("follow", settings().layoutFollow, value);
                 set("nine", settings().support9EqualCut, value);
                 set("control", settings().openLayoutCtrl, value);
                 set("share-seat", settings().shareIdx, value);
                 set("speaker-seat", settings().speakerIdx, value);
                 set("activation", settings().voiceActivation, value);
                 set("polling", settings().pollingOpen, value);
                 set("filter", settings().noVideoFilter, value);
                 QVERIFY2(known, qPrintable("no such setting: " + first));
             }},
        };
        const auto found = deeds.find(deed);
        if (found != deeds.end())
            found->second();
        return found != deeds.end();
    }
    QString ask(const QString& question, const QString& about)
    {
        const tagPersonInfo* person = (*this)[about];
        const tagPersonInfo* focus = gallery->chosenFocus();
        const auto idsOf = [this](auto predicate) {
            QStringList ids;
            for (const CPlayWidget* tile : tiles()) {
                if (predicate(tile->GetPersonInfo()))
                    ids.append(tile->GetPersonInfo()->userID);
            }
            return ids.join(' ');
        };
        const std::map<QString, std::function<QString()>> answers{
            {"mode", [&] { return QString::number(mode()); }},
            {"speaker", [&] { return speaker(); }},
            {"shown", [&] { return shown(); }},
            {"seen", [&] { return places().keys().join(' '); }},
            {"focus", [&] { return focus ? focus->userID : QString(); }},
            {"tool", [&] { return tool->visible ? tool->bound->userID : QString(); }},
            {"small",
             [&] {
                 return idsOf(
                     [&](auto* p) { return gallery->isPersonVisibleInSmallWnd(p->userID); });
             }},
            {"speaking", [&] { return idsOf([](auto* p) { return p->bSpeaking; }); }},
            {"pinned", [&] { return idsOf([](auto* p) { return p->bAllLook || p->bLockLook; }); }},
            {"page", [&] { return QString::number(gallery->page()); }},
            {"pages", [&] { return QString::number(gallery->pageCount()); }},
            {"paused", [&] { return settings().pauseShare ? "yes" : "no"; }},
            {"grade", [&] { return QString::number(person->iStreamType); }},
            {"name", [&] { return person->userName; }},
            {"whole", [&] { return places()[about] == gallery->rect() ? "yes" : "no"; }},
            {"timers", [&] { return QString::number(timers().count(about.toInt())); }},
            {"orders", [&] { return QString::number(std::exchange(orders, 0)); }},
            {"hidden", [&] { return QString::number(host.count(ZRMSG_VIDEO_HIDDEN)); }},
            {"news",
             [&] {
                 QStringList ids;
                 for (const int id : host.news())
                     ids.append(QString::number(id));
                 return ids.join(' ');
             }},
        };
        const auto found = answers.find(question);
        return found == answers.end() ? "no such question" : found->second();
    }
    template<typename... Parameters, typename Result, typename... Arguments>
    void act(Result (QDlgScreen::*slot)(Parameters...), Arguments... arguments)
    {
        (gallery.get()->*slot)(arguments...);
        settle();
    }
    QList<QAbstractEventDispatcher::TimerInfo> running() const
    {
        return QAbstractEventDispatcher::instance()->registeredTimers(gallery.get());
    }
};

} // namespace zrtest
