// A gallery in a meeting, with a host and a speaker tool: the stage for the tests of the gallery.
#pragma once

#include "testsupport.h"

#include "cplaywidget.h"
#include "qdlgnovideo.h"
#include "qdlgscreen.h"
#include "qmypagectrl.h"
#include "speaktool.h"

#include <QAbstractEventDispatcher>
#include <QtTest>

#include <functional>
#include <map>
#include <memory>
#include <vector>

/// Plays a story of steps (Meeting::tell) that must hold.
#define ZR_TELL(meeting, story) QCOMPARE((meeting).tell(story), QString())

namespace zrtest {

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
    void moveTool(QPoint) override { ++moves; }
    QSize toolSize() const override { return {272, 225}; }
    void playFrame(const void*, const VantrelRTCVideoFrameQT&) override {}

    tagPersonInfo* bound = nullptr;
    bool visible = false;
    QString speaking;
    int moves = 0;
};

/// Has a gallery of 1280 x 720 join a meeting. @param onScreen really painted; for most tests that
/// would only take time
inline void open(QDlgScreen& gallery, bool onScreen = false)
{
    gallery.setMinimumSize(1, 1);
    gallery.resize(1280, 720);
    gallery.setAttribute(Qt::WA_DontShowOnScreen, !onScreen);
    gallery.setUpdatesEnabled(onScreen);
    gallery.show();
    QVERIFY(!onScreen || QTest::qWaitForWindowExposed(&gallery));
    gallery.setJoinMeetingFinish(true);
}

/// A gallery that has joined. Whatever changes it also runs what is scheduled.
class Meeting
{
public:
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
        open(*gallery, onScreen);
    }
    ~Meeting()
    {
        gallery.reset();
        hub().unregisterUICallback(&host);
        QZRScreenConfig::destroyInstance();
    }
    Meeting(const Meeting&) = delete;
    Meeting& operator=(const Meeting&) = delete;

    static ScreenSettings& settings() { return hub().settings; }
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
    VantrelRTCVideoFrameQT frame(quint32 width = 64, quint32 height = 36) const
    {
        return {{}, picture.data(), 0, width, height};
    }
    bool play(tagPersonInfo* person, quint32 width = 64, quint32 height = 36)
    {
        const VantrelRTCVideoFrameQT delivered = frame(width, height);
        const bool taken = gallery->playFrame(person, &delivered);
        settle();
        return taken;
    }
    /// The gallery's timers.
    QList<QAbstractEventDispatcher::TimerInfo> running() const
    {
        return QAbstractEventDispatcher::instance()->registeredTimers(gallery.get());
    }
    /// Those of this interval fire; nobody waits for them.
    void elapse(int intervalMs)
    {
        nowMs += intervalMs;
        for (const auto& timer : running()) {
            if (timer.interval != intervalMs)
                continue;
            QTimerEvent event(timer.timerId);
            QCoreApplication::sendEvent(gallery.get(), &event);
            settle();
        }
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
    int mode() const { return zrtest::hub().curScreenMode(); }
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
        const auto rects = places();
        QStringList ids = rects.keys();
        std::sort(ids.begin(), ids.end(), [&](const QString& a, const QString& b) {
            return std::pair(rects[a].y(), rects[a].x()) < std::pair(rects[b].y(), rects[b].x());
        });
        return ids.join(' ');
    }
    /// The participant with the largest tile, of two the one on the left.
    QString speaker() const
    {
        const auto rects = places();
        const auto largest =
            std::max_element(rects.begin(), rects.end(), [](const QRect& a, const QRect& b) {
                return std::pair(a.width(), -a.x()) < std::pair(b.width(), -b.x());
            });
        return largest == rects.end() ? QString() : largest.key();
    }

    HostDouble host;
    std::unique_ptr<QDlgScreen> gallery;
    ToolDouble* tool = nullptr; ///< the gallery's
    qint64 nowMs = 0;           ///< each page turn comes stepMs later
    qint64 stepMs = 1000;
    int orders = 0; ///< asked for since the last question
    std::vector<uchar> picture = std::vector<uchar>(std::size_t(1280) * 720 * 2, 90);

private:
    bool perform(const QString& deed, const QStringList& words)
    {
        QDlgScreen& g = *gallery;
        const QString first = words.value(0);
        const bool on = words.value(words.size() - 1) != "off";
        const int number = first.toInt();
        const int value = words.value(1).toInt(); // of a setting, a join time, or a width
        tagPersonInfo* person = g.findPerson(first);
        const auto arrows = g.findChildren<QMyPageCtrl*>();
        const auto tellOf = [&](bool self, int role, const QString& name) {
            g.updatePersonInfo(person, self, role, name, 0);
        };
        const std::map<QString, std::function<void()>> deeds{
            {"people", [&] { addMany(number); }},
            {"add", [&] { add(first, value, words.value(2)); }},
            {"remove",
             [&] {
                 for (const QString& id : words)
                     g.DelPerson(g.findPerson(id));
             }},
            {"width", [&] { g.resize(number, 400); }},
            {"mode", [&] { g.onMeetingMode(number); }},
            {"click", [&] { g.onPlayWidgetLBtnClick(tile(first)); }},
            {"double", [&] { g.onLeftBtnDBClick(tile(first)); }},
            {"focus", [&] { g.onModFocusByUserID(first, false); }},
            {"suggest", [&] { g.onModFocusByUserID(first, true); }},
            {"voice", [&] { g.OnSetVoiceActivateUser(first); }},
            {"speaking", [&] { g.setCurrentSpeakingPerson(first); }},
            {"self", [&] { tellOf(on, 0, {}); }},
            {"host", [&] { tellOf(false, 1, {}); }},
            {"rename", [&] { tellOf(false, 0, words.value(1)); }},
            {"stream", [&] { g.setPreview(person, on); }},
            {"frames",
             [&] {
                 for (const QString& id : words)
                     play((*this)[id]);
             }},
            {"picture", [&] { play(person, quint32(value), words.value(2).toUInt()); }},
            {"mute", [&] { g.setMute(person, on); }},
            {"pin", [&] { g.setLockLookPerson(person, on); }},
            {"pin-for-all", [&] { g.setAllLook(person, on); }},
            {"menu", [&] { g.onClickMore(person, 0); }},
            {"sponsor", [&] { zrtest::hub().setShareSponsor(first); }},
            {"next", [&] { g.pageNext(first == "wrap"); }},
            {"back", [&] { g.pagePre(); }},
            {"wheel", [&] { turnWheel(g, QPoint(5, 5), number); }}, // in eighths of a degree
            {"key", [&] { QTest::keyClick(&g, Qt::Key(QKeySequence(first)[0])); }},
            {"arrow", // of its two buttons the left one alone turns a page
             [&] {
                 const bool swapped = arrows[0]->x() > arrows[1]->x();
                 for (const auto button : {Qt::RightButton, Qt::LeftButton})
                     QTest::mouseClick(arrows[(first == "right") != swapped ? 1 : 0], button);
             }},
            {"after", [&] { stepMs = number; }}, // of the page turns that follow
            {"places",
             [&] {
                 std::map<int, std::string> sorting;
                 for (const QString& id : words)
                     sorting.emplace(int(sorting.size()), id.toStdString());
                 g.SetCustomizeSorting(sorting);
             }},
            {"pause", [&] { settings().pauseShare = on; }},
            {"exit", [&] { g.ProcessExitMeeting(); }},
            {"order", [&] { g.onDisplayOrder(first == "keep"); }},
            {"layout", [&] { g.reLayout(); }},
            {"hide", [&] { g.onSetHideSmallWnd(on); }},
            {"minimise", [&] { g.showSmallWndWhenRestore(!on); }},
            {"float", [&] { g.OnPopSelfShareWnd(on, on); }},
            {"put-away", [&] { emit zrtest::hub().modSignalHideSpeakTool(false); }},
            {"fetch", [&] { emit zrtest::hub().modSignalShowSpeakTool(false); }},
            {"elapse", [&] { elapse(number); }},
            {"poll",
             [&] {
                 settings().pollingOpen = on;
                 settings().pollingPeriodS = number;
                 g.onOpenLayoutPoll();
             }},
            {"set follow", [&] { settings().layoutFollow = value; }},
            {"set nine", [&] { settings().support9EqualCut = value; }},
            {"set control", [&] { settings().openLayoutCtrl = value; }},
            {"set share-seat", [&] { settings().shareIdx = value; }},
            {"set speaker-seat", [&] { settings().speakerIdx = value; }},
            {"set activation", [&] { settings().voiceActivation = value; }},
            {"set polling", [&] { settings().pollingOpen = value; }},
            {"set filter", [&] { settings().noVideoFilter = value; }},
        };
        const auto found = deeds.find(deed == "set" ? "set " + first : deed);
        if (found == deeds.end())
            return false;
        found->second();
        settle();
        return true;
    }
    /// What the host was told since the last question, but for who is visible: the numbers of the
    /// messages, some with who or what they are about.
    QString news()
    {
        QStringList told;
        for (const HostDouble::Message& message : std::exchange(host.messages, {})) {
            if (message.id >= ZRMSG_PERSON_REMOVED && message.id != ZRMSG_MORE_MENU_CLOSED
                && message.id != ZRMSG_GALLERY_CLICK)
                continue;
            told += QString::number(message.id) + message.streamOf;
            if (message.id == ZRMSG_FOCUS_PERSON)
                told.back() += "=" + message.person()->userID;
            if (message.id == ZRMSG_DBLCLICK_LAYOUT)
                told.back() += "=" + QString::number(message.wParam);
        }
        return told.join(' ');
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
            {"placed", [&] { return QString::number(std::exchange(tool->moves, 0)); }},
            {"says", [&] { return tool->speaking; }},
            {"small",
             [&] {
                 return idsOf(
                     [&](auto* p) { return gallery->isPersonVisibleInSmallWnd(p->userID); });
             }},
            {"speaking", [&] { return idsOf([](auto* p) { return p->bSpeaking; }); }},
            {"pinned", [&] { return idsOf([](auto* p) { return p->bAllLook || p->bLockLook; }); }},
            {"controls", // of pages, that are shown
             [&] {
                 const auto children =
                     gallery->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
                 return QString::number(
                     std::count_if(children.begin(), children.end(), [](auto* child) {
                         return child->isVisible() && !qobject_cast<CPlayWidget*>(child);
                     }));
             }},
            {"page", [&] { return QString::number(gallery->page()); }},
            {"pages", [&] { return QString::number(gallery->pageCount()); }},
            {"paused", [&] { return settings().pauseShare ? "yes" : "no"; }},
            {"grade", [&] { return QString::number(person->iStreamType); }},
            {"name", [&] { return person->userName; }},
            {"changed", [&] { return person->bPrePreview ? "yes" : "no"; }},
            {"whole", [&] { return places()[about] == gallery->rect() ? "yes" : "no"; }},
            {"timers",
             [&] {
                 QStringList intervals;
                 for (const auto& timer : running())
                     intervals += QString::number(timer.interval);
                 return QString::number(about.isEmpty() ? intervals.size()
                                                        : intervals.count(about));
             }},
            {"orders", [&] { return QString::number(std::exchange(orders, 0)); }},
            {"hidden", [&] { return QString::number(host.count(ZRMSG_VIDEO_HIDDEN)); }},
            {"share", // whether it was there, each time that its rectangle was told
             [&] {
                 QStringList told;
                 for (const HostDouble::Message& message : host.messages) {
                     if (message.id == ZRMSG_SHARE_RECT_CHANGED)
                         told += message.wParam == 1 ? "yes" : "no";
                 }
                 return told.join(' ');
             }},
            {"placeholder", [&] { return gallery->findChild<QDlgNoVideo*>() ? "yes" : "no"; }},
            {"news", [&] { return news(); }},
        };
        const auto found = answers.find(question);
        return found == answers.end() ? "no such question" : found->second();
    }
};

/// Tells each story in a meeting of its own. @return what went wrong
template<std::size_t count>
QString faultsOf(const std::pair<const char*, const char*> (&stories)[count])
{
    QStringList faults;
    for (const auto& [name, story] : stories) {
        const QString fault = Meeting().tell(story);
        if (!fault.isEmpty())
            faults += name + (": " + fault);
    }
    return faults.join('\n');
}

} // namespace zrtest
