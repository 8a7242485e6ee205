// The screens: who is in the meeting or on the extended screen, and what hosts do to them from
// inside a message.
#include "gallerytest.h"

#include "dlgextscreen.h"
#include "exthandle.h"
#include "qdlgplayinfo.h"

using zrtest::HostDouble;
using zrtest::hub;
using zrtest::Meeting;

namespace {

const std::pair<const char*, const char*> kStories[] = {
    {"everybody joins in their time, behind the host of the meeting",
     "add host 50; host host; add last 60; add first 10; add second 10; add third 10;"
     "shown: host first second third last; add first 77; shown: host first second third last"},
    {"streams close a second later, unless the page is turned back",
     "people 7; next; back; hidden: 0; elapse 1000; hidden: 1"},
    {"a share takes the screen and gives it back",
     "mode 6; people 2; add sharescreen_1; mode: 4; focus: sharescreen_1; remove sharescreen_1;"
     "mode: 6; focus: ; speaker: u0"},
    {"where the host dictates, or pages turn, a share changes nothing",
     "mode 6; people 2; set follow 1; add sharescreen_1; set follow 0; set polling 1;"
     "add sharescreen_2; mode: 6"},
};

} // namespace

class TestScreens : public QObject
{
    Q_OBJECT

private slots:
    void stories() { QCOMPARE(zrtest::faultsOf(kStories), QString()); }

    void hostDeletesFromInsideMessages()
    {
        for (const int id : {1, 2, 3, 4, 8, 9, 11, 13, 14, 15, 20, 21, 22, 29}) {
            for (const int victim : {0, 1, 3, kWhoIsMeant, kEverybody}) {
                deleteFromInside(id, victim);
                if (QTest::currentTestFailed())
                    QFAIL(qPrintable(QString("message %1, victim %2").arg(id).arg(victim)));
            }
        }
    }

    void tellsTheShareRectangleOnce()
    {
        Meeting m;
        m.settings().layoutFollow = true;
        tagPersonInfo* share = m.add("sharescreen_1");
        QVERIFY(!m->shareRect().isValid()); // no picture, no rectangle
        const auto told = [&m] { return m.host.count(ZRMSG_SHARE_RECT_CHANGED); };
        QCOMPARE(told(), 0);
        QVERIFY(m.play(share, 640, 360));
        QTRY_COMPARE(told(), 1);
        QCOMPARE(m.host.messages.back().wParam, 1ULL);
        const QPoint origin = share->pWidget->mapToGlobal(QPoint(0, 0));
        QCOMPARE(m->shareRect(), QRect(origin, origin + QPoint(1280, 720)));
        ZR_TELL(m, "layout");
        QCOMPARE(told(), 1);
        // A picture of another shape lies elsewhere.
        QVERIFY(m.play(share, 360, 640));
        QTRY_COMPARE(told(), 2);
        QVERIFY(m->shareRect().width() < 720);
        m->ProcessExitMeeting(); // at the same place in the next meeting it is told again
        QCOMPARE(told(), 3);
        QCOMPARE(m.host.messages.back().wParam, 0ULL);
    }

    void nextMeetingBeginsAfresh()
    {
        // What a meeting of eight may leave behind, beside its participants.
        for (const QString trace :
             {"layout", "next", "mode 12; focus u3", "mode 10", "double u2", "places u5 u2", "hide",
              "float", "speaking u5; voice u6", "pin u3", "mode 6; click u4; mode 1", "sponsor u2",
              "add sharescreen_1; pause",
              "set follow 1; add sharescreen_1; mode 9; set follow 0"}) {
            Meeting m;
            hub().AddOneSubtitle(1000, 0, "u0", "said");
            emit hub().modSignalHideSpeakTool(true);
            ZR_TELL(m, "people 8; " + trace + "; exit; timers: 0; seen: ");
            QVERIFY(m.tiles().empty() && hub().subtitles().isEmpty() && m.tool->speaking.isEmpty());
            const QString fault =
                m.tell("mode: 1; people 8; shown: u0 u1 u2 u3 u4 u5; page: 0; tool: ; focus: ;"
                       "double u1; double u1; mode: 1; mode 7; speaker: u0;"
                       "small: u1 u2 u3 u4 u5 u6; mode 4; tool: u1; remove u1; mode: 1;"
                       "add sharescreen_7; name sharescreen_7: ; paused: no;"
                       "remove sharescreen_7; mode: 1");
            QVERIFY2(fault.isEmpty(), qPrintable("after " + trace + ": " + fault));
        }
    }

    void screensShareTheMode()
    {
        Meeting m;
        QDlgScreen other(nullptr);
        zrtest::open(other);
        for (const char* id : {"b0", "b1"})
            other.AddPerson(id, id, 0, 0, nullptr);
        ZR_TELL(m, "people 3; double u1; shown: u1");
        other.onLeftBtnDBClick(other.findPerson("b1")->pWidget);
        m.settle();
        QVERIFY(!other.isPersonVisible("b0"));
        // One leaves the maximised tile, and with it both.
        ZR_TELL(m, "double u1; mode: 1");
        QVERIFY(other.isPersonVisible("b0"));
        // A share that is on both has gone when it has left both.
        ZR_TELL(m, "mode 11; add sharescreen_1; mode: 4");
        tagPersonInfo* share = other.AddPerson("sharescreen_1", {}, 0, 0, nullptr);
        ZR_TELL(m, "remove sharescreen_1; mode: 4");
        other.DelPerson(share);
        QCOMPARE(m.mode(), int(eLayoutGrid4));
        // A screen that nobody is on any more leaves the other's mode alone, but no tile maximised.
        ZR_TELL(m, "mode 7; double u0; mode: 10; exit; mode: 7; people 1; remove u0; mode: 7");
        other.ProcessExitMeeting();
        QCOMPARE(m.mode(), int(eLayoutEqualCut));
    }

    void extScreenFollowsTheHost()
    {
        Meeting m;
        int data = 0;
        QDlgExtScreen ext;
        ext.show();
        const auto update = [&](void* user, const char* id, const char* name) {
            return ext.updatePersonInfo(user, id, false, 1, name, 2);
        };
        const auto reports = [&m] { return m.host.count(ZRMSG_VIDEO_SHOWN); };
        QVERIFY(!update(nullptr, "u1", "Ann") && !ext.person());
        QVERIFY(update(&data, "u1", "Ann") && !update(&data, "u1", "Ann"));
        ext.setLockLook(true);
        ext.setAllLook(true);
        QVERIFY(!ext.person()->bLockLook);
        // Nobody on the screen as far as galleries know, and yet the same picture.
        QVERIFY(!update(nullptr, "u1", "Anna") && !hub().isExtUser("u1") && ext.isPerson("u1"));
        QVERIFY(update(&data, "u1", "Anna") && hub().isExtUser("u1"));
        QCOMPARE(reports(), 2);
        // Somebody else begins anew.
        ext.setMute(false);
        ext.UpdateUserNetStatus("u1", 2, true, 1);
        QVERIFY(update(&data, "u2", "Bob") && ext.person()->bMute && !ext.isPerson("u1"));
        QVERIFY(!ext.tile()->playInfo()->state().bFrozen);
        QVERIFY(!update(nullptr, "u3", "") && !ext.person() && !ext.tile()->GetPersonInfo());
        // Who is to be shown on a screen that is still hidden is reported when it is shown.
        ext.hide();
        QVERIFY(update(&data, "u4", "Dan"));
        QCOMPARE(reports(), 3);
        ext.place({0, 0, 320, 180});
        QCOMPARE(reports(), 4);
    }

    void aHostThatThrowsKeepsNothingBack()
    {
        {
            Meeting m;
            m.host.onMessage = [](const auto&) { throw 1; };
            m->AddPerson("u1", "Ann", 1, 0, nullptr);
            QVERIFY_EXCEPTION_THROWN(m->isPersonVisible("u1"), int);
            m.host.onMessage = nullptr;
            m->AddPerson("u2", "Bob", 2, 0, nullptr);
            QVERIFY(m->isPersonVisible("u2")); // arranged once more
        }
        int data = 0;
        ST_ZRExtHdl* const ext = createExtScreen(
            nullptr, [](unsigned long, unsigned long long, long long) -> int { throw 1; });
        ext->m_pDlg->updatePersonInfo(&data, "u1", false, 1, "Ann", 0);
        QVERIFY_EXCEPTION_THROWN(ext->m_pDlg->onExtPlayWidgetLBtnClick(ext->m_pDlg->tile()), int);
        g_extScreens.release(ext);
        QVERIFY(!HubUser::isAny()); // nobody is inside
    }

private:
    static constexpr int kWhoIsMeant = 5; ///< the message's participant, if it has one
    static constexpr int kEverybody = 6;

    /// The host deletes the victim from inside the first message with this id.
    static void deleteFromInside(int id, int victim)
    {
        Meeting m;
        const auto persons = m.addMany(5);
        for (tagPersonInfo* person : persons)
            m->setPreview(person, person != persons[2]);
        ZR_TELL(m, "pin u0; voice u3");
        bool met = false;
        m.host.onMessage = [&](const HostDouble::Message& message) {
            if (int(message.id) != id || std::exchange(met, true))
                return;
            if (victim == kEverybody)
                m->ProcessExitMeeting();
            else
                m->onModDelPerson(victim == kWhoIsMeant ? message.person()
                                                        : persons[std::size_t(victim)]);
        };
        // With u2 the focus is kept: no picture.
        for (const char* step :
             {"menu u1", "click u2", "click u1", "click u3", "mode 4", "mode 9", "mode 2",
              "mode 10", "mode 14", "elapse 1000", "mode 11", "double u4", "elapse 1000"}) {
            ZR_TELL(m, step);
            if (met && victim == kEverybody)
                ZR_TELL(m, "timers: 0"); // an empty gallery has nothing to wait for
            for (tagPersonInfo* person : persons)
                m.play(person);
        }
        ZR_TELL(m, "remove u3");
        QVERIFY(met);
        m.host.onMessage = nullptr;
        const tagPersonInfo* focus = m->chosenFocus();
        QVERIFY(!focus || m->livePerson(focus));
        QTest::qWait(1); // the retired ones are freed
        for (const CPlayWidget* tile : m.tiles())
            QVERIFY(m->livePerson(tile->GetPersonInfo()));
        QCOMPARE(m.tell("timers: 0").isEmpty(), m.tiles().empty());
        ZR_TELL(m, "mode 1; add later; mode 6");
        QVERIFY(m->isPersonVisible("later") && !m.speaker().isEmpty());
    }
};

ZR_WIDGET_TEST_MAIN(TestScreens)
#include "tst_qdlgscreen.moc"
