// The screens: what galleries make of the answers that the rules give, and of what hosts do to them
// from inside a message; and the extended screen's record.
#include "gallerytest.h"
#include "golden.h"

#include "dlgextscreen.h"
#include "exthandle.h"
#include "qdlgmain.h"
#include "qdlgpagemark.h"
#include "qdlgplayinfo.h"
#include "qmypagescroll.h"
#include "qmyscrollbar.h"
#include "screenhandle.h"
#include "statistics.h"

#include <thread>

using zrtest::HostDouble;
using zrtest::hub;
using zrtest::Meeting;

namespace {

/// u0 is the first speaker. The numbers of the news are the host messages.
const std::pair<const char*, const char*> kStories[] = {
    // --- Who is there ---
    {"everybody joins in their time, behind the host of the meeting",
     "add host 50; host host; add last 60; add first 10; add second 10; add third 10;"
     "shown: host first second third last; add first 77; shown: host first second third last"},
    {"pages that nobody has seen keep their places before who turns out to have a camera",
     "people 18; stream u0; stream u1; stream u2; stream u3; stream u4; stream u5; next; stream u6;"
     "stream u7; stream u8; stream u9; stream u10; stream u11; mode 13; seen: u16 u17; stream u17;"
     "order; seen: u16 u17"},
    {"streams close a second later, unless the page is turned back",
     "people 7; next; back; hidden: 0; elapse 1000; hidden: 1"},
    {"a share takes the screen and gives it back",
     "mode 6; people 2; add sharescreen_1; mode: 4; focus: sharescreen_1; remove sharescreen_1;"
     "mode: 6; focus: ; speaker: u0"},
    {"the share's rectangle is told once for each shape of its picture, and when it goes",
     "set follow 1; add sharescreen_1; share: ; picture sharescreen_1 640 360; share: yes; layout;"
     "share: yes; picture sharescreen_1 360 640; share: yes yes; exit; share: yes yes no"},
    {"where the host dictates, or pages turn, a share changes nothing",
     "mode 6; people 2; set follow 1; add sharescreen_1; set follow 0; set polling 1;"
     "add sharescreen_2; mode: 6"},

    // --- Clicks ---
    {"a click moves the stream with the focus",
     "people 3; mode 6; stream u0; stream u1; news: ; click u1; news: 9 29 14+u1 14-u0 11=u1;"
     "speaker: u1; click u1; news: 9 29; speaker: u1"},
    {"there is no stream to move",
     "people 3; mode 8; stream u1; click u1; news: 9 29 11=u1; speaker: u1"},
    {"a picture does not give way to none",
     "people 3; mode 7; stream u0; click u1; news: 9 29 15; speaker: u0"},
    {"it does to a camera whose stream is closed",
     "people 3; mode 6; stream u0; hide; elapse 1000; stream u1; elapse 1000; stream u1 off;"
     "hide off; click u1; news: 9 29 14+u1 14-u0 11=u1; speaker: u1"},
    {"the host dictates whom clicks do not move",
     "people 3; mode 6; stream u0; stream u1; set follow 1; click u1; news: 9 29; speaker: u0"},
    {"a click leads away from a pin",
     "people 3; mode 6; pin u0; click u1; news: 9 29 13 11=u1; speaker: u1"},
    {"a click leads away from a pin for all",
     "people 3; mode 6; pin-for-all u0; click u1; news: 9 29 16 11=u1; speaker: u1"},
    {"a click in a gallery chooses the next speaker, and no voice takes the place",
     "people 3; click u2; news: 9 29 11=u2; suggest u1; mode 6; speaker: u2; focus: u2"},
    {"the latest choice counts",
     "people 3; click u1; focus u0; mode 6; speaker: u0; mode 1; click u2; mode 6; speaker: u2;"
     "mode 1; click u1; pin u2; mode 6; speaker: u2; mode 1; click u1; remove u1; mode 6;"
     "speaker: u2; mode 1; click u0; focus; mode 6; speaker: u2; mode 1; stream u2; click u0;"
     "set filter 1; mode 6; speaker: u0"},
    {"a share does not take the place of a choice that waits in a gallery",
     "people 3; add sharescreen_1; mode 6; click u1; mode 1; order; mode 6; speaker: u1"},

    // --- Double clicks ---
    {"a double click maximises and comes back",
     "people 3; double u1; news: 8=5; mode: 10; shown: u1; double u1; mode: 1; shown: u0 u1 u2;"
     "mode 12; news: 8=7; double u1; news: 8=7; mode: 10; double u1; mode: 12; mode 7; news: 8=7;"
     "double u0; news: 8=6; mode: 10; shown: u0"},
    {"beside the speaker it is a click", "people 3; mode 7; double u1; mode: 7; speaker: u1"},
    {"beside a share it is nothing",
     "people 3; add sharescreen_1; mode 7; news: ; double u1; news: 8=6; speaker: sharescreen_1;"
     "mode 1; double u1; mode: 1; double sharescreen_1; mode: 10; whole sharescreen_1: yes"},
    {"who was chosen as the speaker does not stand in the way of a gallery's tiles",
     "people 3; mode 6; click u1; mode 1; double u2; shown: u2; double u2; focus: ; mode 2;"
     "double u0; shown: u0; double u0; mode 3; double u1; shown: u1; double u1; mode 7;"
     "speaker: u1; focus: u1"},
    {"with the speaker tool it is nothing", "people 3; mode 5; double u0; mode: 5"},
    {"where the host dictates it is nothing", "people 3; set follow 1; double u1; mode: 1"},
    {"while pages turn it is nothing", "people 3; set polling 1; double u1; mode: 1"},
    {"in the share's mode without a share, to its gallery",
     "people 3; mode 7; mode 10; double u1; shown: u1; double u1; mode: 10; shown: u0 u1 u2;"
     "double u2; remove u2; mode: 10; shown: u0 u1"},
    {"from the share's mode to the one before it, and not to one of long ago",
     "people 3; mode 7; double u0; double u0; mode 12; set follow 1; add sharescreen_1;"
     "order; set follow 0; mode 10; shown: sharescreen_1; double sharescreen_1; mode: 12"},
    {"the pin of somebody else ends, and who is maximised leaves",
     "people 3; mode 3; double u1; pin-for-all u2 off; shown: u1; remove u1; mode: 3"},
    {"alone there is nothing to come back to", "people 1; mode 3; double u0; mode: 3"},

    // --- The speaker ---
    {"nobody wants to look at themselves, and who is there stays",
     "add me 1; self me; mode 6; speaker: me; add first 2; speaker: first; add second 3;"
     "host second; speaker: first; focus: ; focus second; speaker: second; focus: second;"
     "remove second; speaker: first; remove first; mode: 6; speaker: me"},
    {"a pin, and before that the sponsor's share, is the arrangement's choice",
     "people 3; mode 6; focus u2; pin-for-all u1; focus; speaker: u1; sponsor u0;"
     "add sharescreen_other; add sharescreen_u0; mode 6; focus; speaker: sharescreen_u0"},
    {"a voice does not displace a choice, and nobody an unknown id",
     "people 4; mode 6; suggest u1; speaker: u1; focus u2; speaker: u2; suggest u3; speaker: u2;"
     "focus nobody; speaker: u2; mode 1; mode 8; speaker: u2; focus; focus: ; suggest u3;"
     "speaker: u3; focus u3; suggest u0; speaker: u3"},
    {"shares are named after who shares, unless the host knows better",
     "add anna 1 Anna; add ben 2 Ben; sponsor ben; add sharescreen_anna; add sharescreen_7;"
     "layout; name sharescreen_anna: Anna; name sharescreen_7: Ben; rename anna Anne;"
     "rename sharescreen_7 Board; name sharescreen_anna: Anne; name sharescreen_7: Board;"
     "remove anna; name sharescreen_anna: Ben"},
    {"with the layout control the host gives the seats",
     "set control 1; set follow 1; set speaker-seat 0; set share-seat 1; people 4;"
     "add sharescreen_1; mode 6; speaking u1; speaker: u1; voice u2; speaker: u2; voice u3;"
     "speaker: u3; click u1; speaker: u3; mode 1; shown: u3 sharescreen_1 u0 u1 u2; voice u1;"
     "shown: u1 sharescreen_1 u0 u2 u3; voice nobody; speaking u2;"
     "shown: u2 sharescreen_1 u0 u1 u3; set control 0; layout; shown: sharescreen_1 u0 u1 u2 u3"},

    // --- Voices; u9 is on the second page ---
    {"a voice becomes the speaker", "people 10; set activation 1; mode 6; voice u9; speaker: u9"},
    {"or comes into the strip",
     "people 10; mode 7; voice u9; speaker: u0; seen: u0 u1 u2 u3 u4 u5 u9"},
    {"it leaves a choice alone", "people 10; set activation 1; mode 8; focus u1; voice u9;"
                                 "speaker: u1; seen: u0 u1 u2 u3 u4 u5 u9"},
    {"or where the host dictates",
     "people 10; set activation 1; set control 1; mode 7; voice u9; speaker: u0"},
    {"it stands beside the speaker",
     "people 10; set activation 1; mode 9; focus u1; voice u9; speaker: u1;"
     "seen: u0 u1 u2 u3 u4 u5 u6 u9"},
    {"it comes into the tool", "people 10; mode 4; voice u9; speaker: u0; tool: u9"},
    {"one's own moves nothing", "people 10; mode 7; self u0; voice u0; speaker: u1; focus u1; next;"
                                "seen: u1 u7 u8 u9; voice u0; seen: u1 u7 u8 u9"},
    {"who speaks is marked",
     "people 3; mode 6; voice u1; speaking: u1; voice u2; speaking: u2; voice nobody; speaking: "},
    {"the seat of who spoke is given back",
     "people 3; set control 1; set speaker-seat 0; voice u2; shown: u2 u0 u1; voice nobody;"
     "shown: u0 u1 u2"},

    // --- The small window ---
    {"it is the strip, where there is one",
     "people 4; small: ; mode 6; small: u1 u2 u3; hide; small: ; seen: u0; whole u0: yes;"
     "hide off; small: u1 u2 u3; mode 9; small: u2 u3; hide; small: ; seen: u0 u1; hide off;"
     "small: u2 u3"},
    {"or the tool, which hides with the client",
     "people 4; mode 4; small: u1; hide; tool: ; hide off; speaking u2; small: u2; minimise;"
     "tool: ; minimise off; small: u2; tool: u2; mode 1; tool: "},
    {"the tool names who speaks, as they are called",
     "people 4; mode 4; speaking u2; says: u2; rename u2 Zoe; says: Zoe; remove u2; says: "},
    {"one's own share floats over the gallery; who is seen keeps the stream",
     "people 8; voice u7; float; tool: u7; small: u7; hidden: 1; voice u0; layout; tool: u0;"
     "grade u0: 3; float off; tool: ; hidden: 1"},

    // --- Pins ---
    {"a pin from a gallery", "people 3; pin u1; mode: 6; speaker: u1; pinned: u1"},
    {"a pin for all displaces others",
     "people 3; mode 7; pin u2; pin-for-all u1; mode: 7; speaker: u1; pinned: u1"},
    {"a pin beside a pair of speakers", "people 3; mode 9; pin u1; mode: 6; speaker: u1"},
    {"a pin on the speaker",
     "people 3; mode 7; focus u0; pin u0; mode: 6; pin-for-all u0; mode: 6"},
    {"a pin ends, not from its menu, or from it",
     "people 3; pin u1; mode 11; pin u1 off; mode: 11; mode 8; menu u1; pin u1 off; mode: 11;"
     "set follow 1; mode 8; menu u1; pin-for-all u1 off; mode: 1"},

    {"a report that has changed the preview is remembered",
     "add anna; stream anna off; changed anna: no; stream anna; changed anna: yes; stream anna;"
     "changed anna: yes"},
    {"a stream that opens while nobody sees it is to be closed again",
     "people 2; mode 14; elapse 1000; hidden: 1; stream u1; elapse 8000; hidden: 2"},
#ifndef Q_OS_WIN // where a timer of 0 ms has fired by then
    {"who is to be told at once does not wait for who is to be told later",
     "people 2; stream u1; places u0; mode 14; elapse 1000; hidden: 1; places u1; seen: u1;"
     "stream u1; timers 0: 0; stream u1 off; timers 0: 1"},
#endif

    // --- Grades; the host is asked with the next frame ---
    {"a burst of arrangements costs nothing, nor one that comes back to where it was",
     "people 3; stream u0; stream u1; stream u2; mode 6; mode 1; mode 2; mode 14; mode 6; mode 1;"
     "news: ; frames u0 u1 u2; news: 3 3 3; mode 6; mode 1; frames u0 u1 u2; news: "},
    {"a stream that was closed begins anew; its last frames ask for nothing",
     "people 2; stream u0; frames u0; news: 4; stream u0 off; frames u0; news: ; stream u0;"
     "frames u0; news: 4; mode 1; mode 6; frames u0; news: "},

    // --- Arrangements ---
    {"a share fills its mode; without one it is the adaptive gallery, but for the grades",
     "set follow 1; people 8; mode 10; shown: u0 u1 u2 u3 u4 u5; pages: 2; grade u0: 2;"
     "add sharescreen_1; shown: sharescreen_1; whole sharescreen_1: yes; grade sharescreen_1: 4;"
     "remove sharescreen_1; shown: u0 u1 u2 u3 u4 u5"},
    {"the speaker has the dialog where the tool has the next one",
     "people 3; mode 4; focus u2; shown: u2; whole u2: yes; grade u2: 4; tool: u0; grade u0: 2;"
     "mode 5; shown: u2; whole u2: yes"},
    {"a mode that there is not shows nobody",
     "people 8; mode 99; shown: ; mode -1; shown: ; mode 0; shown: ; mode 3; pages: 0;"
     "shown: u0 u1 u2 u3 u4 u5 u6 u7; set nine 1; mode 1; shown: u0 u1 u2 u3 u4 u5 u6 u7"},
    {"a dialog that is hardly visible is left alone",
     "people 3; width 49; mode 13; mute u2 off; orders: 2; shown: u0 u1 u2; grade u0: 3;"
     "elapse 1000; orders: 0; width 50; grade u0: 2; seen: u0 u1 u2"},

    // --- Order ---
    {"by role, sound and picture",
     "set follow 1; set nine 1; add none; add seen; add quiet; add loud; add me; add host;"
     "add sharescreen_1; host host; self me; mute quiet off; mute loud off; stream loud;"
     "stream seen; layout; shown: sharescreen_1 host me loud quiet seen none"},
    {"the check timer looks for a new order, where more than one is seen",
     "timers 1000: 0; people 3; orders: 1; elapse 1000; orders: 0; mode 4; mute u2 off; orders: 1;"
     "elapse 1000; orders: 0; mode 1; mute u2; orders: 1; elapse 1000; orders: 1;"
     "shown: u0 u1 u2; remove u0 u1 u2; timers 1000: 0"},
    {"a share at the head ends the focus with layout follow, else takes a free one",
     "set follow 1; people 3; add sharescreen_1; mode 12; focus u1; order keep; focus: u1; order;"
     "focus: ; set follow 0; order; focus: sharescreen_1; mode: 12; focus u1; order; focus: u1"},

    {"the host gives places, once for each, and the next ones replace them",
     "people 4; places u1; places u3 nobody u2 u3; shown: u3 u2 u0 u1"},
    {"who has no picture is filtered; a placeholder stands where nobody is left",
     "people 4; self u0; stream u2; set filter 1; layout; shown: u0 u2; add sharescreen_1; mode 1;"
     "shown: sharescreen_1 u0 u2; remove sharescreen_1; focus u3; mode 6; seen: u0 u2 u3;"
     "placeholder: no; remove u0 u2 u3; shown: ; placeholder: yes; stream u1; shown: u1;"
     "placeholder: no"},

    // --- The speaker tool ---
    {"beside a share it stays when somebody else has left, otherwise not",
     "people 4; focus u2; mode 4; tool: u0; remove u0; mode: 1; tool: ; add sharescreen_1;"
     "tool: u2; remove u2; mode: 4; tool: u1; mode 11; tool: "},

    {"it stays where it was dragged, unless it was away",
     "people 4; mode 4; tool: u1; placed: 1; layout; placed: 0; put-away; tool: ; small: ;"
     "fetch; tool: u1; small: u1; placed: 1; mode 1; mode 4; placed: 1; mode 1; tool: "},

    // --- Pages ---
    {"two arrows and the marks show where there are pages",
     "people 6; controls: 0; people 7; controls: 3; mode 3; controls: 0; mode 4; controls: 0;"
     "mode 99; controls: 0; mode 11; controls: 3; exit; controls: 0"},
    {"pages are turned 400 ms apart",
     "people 14; back; shown: u0 u1 u2 u3 u4 u5; after 399; next; page: 0; after 1; next;"
     "shown: u6 u7 u8 u9 u10 u11; after 300; back; page: 1; after 400; next; shown: u12 u13;"
     "next; page: 2; next wrap; page: 0"},
    {"by wheel, keys and arrows, from the last one on to the first by an arrow alone",
     "people 14; wheel -60; page: 0; wheel -60; page: 1; wheel 120; page: 0; key PgDown; page: 1;"
     "key Right; page: 2; key Right; page: 2; key A; page: 2; key PgUp; page: 1; key Left; page: 0;"
     "arrow right; arrow right; page: 2; arrow right; page: 0; arrow right; page: 1; arrow left;"
     "page: 0"},
    {"a strip's pages leave the speaker out",
     "people 14; mode 6; pages: 3; next; seen: u0 u10 u11 u12 u7 u8 u9"},
    {"a mode without pages keeps the page for later, whatever turns there",
     "people 14; next; next; double u12; pages: 0; next; next wrap; back; double u12; page: 2;"
     "shown: u12 u13; mode 14; back; mode 11; page: 2"},
    {"many leave a gallery",
     "people 14; next; next; page: 2; remove u0 u1 u2 u3 u4 u5 u6 u7 u8 u9 u10; page: 0;"
     "seen: u11 u12 u13; remove u11 u12 u13; mode: 1"},
    {"many leave a pair",
     "people 14; mode 9; next; page: 1; remove u0 u1 u2 u3 u4 u5 u6 u7 u8 u9 u10; page: 0;"
     "seen: u11 u12 u13; remove u11 u12 u13; mode: 1"},

    // --- Polling ---
    {"pages turn by themselves",
     "people 8; next; poll 7; seen: u0 u1 u2 u3 u4 u5; page: 0; elapse 7000; seen: u6 u7;"
     "elapse 7000; seen: u0 u1 u2 u3 u4 u5; elapse 7000; mode 11; seen: u0 u1 u2 u3; elapse 7000;"
     "seen: u4 u5 u6 u7; poll 7; seen: u0 u1 u2 u3; poll 7 off; timers 7000: 0; pages: 2"},
    {"a lone tile keeps its place",
     "people 7; mode 2; poll 7; elapse 7000; seen: u6; whole u6: no"},
    {"the speaker stays", "people 8; mode 8; poll 7; seen: u0 u1 u2 u3 u4 u5 u6; elapse 7000;"
                          "seen: u0 u7; speaker: u0; elapse 7000; seen: u0 u1 u2 u3 u4 u5 u6"},
    {"both speakers stay", "people 9; mode 9; poll 7; elapse 7000; seen: u0 u1 u8; speaker: u0"},
    {"only several pages turn",
     "people 6; poll 7; timers 7000: 0; people 7; timers 7000: 1; mode 6;"
     "timers 7000: 0; mode 1; timers 7000: 1; remove u6; timers 7000: 0;"
     "seen: u0 u1 u2 u3 u4 u5"},
    {"a period that no timer can count, and one that is none",
     "people 7; poll 2147483647; timers 2147483000: 1; poll -3; timers 1000: 3"},
};

QStringList g_lines;

void collect(QtMsgType, const QMessageLogContext&, const QString& line)
{
    g_lines.append(line);
}

} // namespace

class TestGallery : public QObject
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
        ZR_TELL(m, "mode 10; shown: u0 u1 u2");
        QVERIFY(other.isPersonVisible("b0"));
        // A share that is on both has gone when it has left both.
        ZR_TELL(m, "mode 11; add sharescreen_1; mode: 4");
        tagPersonInfo* share = other.AddPerson("sharescreen_1", {}, 0, 0, nullptr);
        ZR_TELL(m, "remove sharescreen_1; mode: 4");
        other.DelPerson(share);
        QCOMPARE(m.mode(), int(eLayoutGrid4));
        // A screen that nobody is on any more leaves the other's mode alone, but not one that was
        // entered for somebody who has gone with it.
        for (const char* story :
             {"mode 7; people 3; double u0; mode: 10; exit; mode: 7; people 1; remove u0; mode: 7",
              "mode 10; people 3; double u1; mode: 10; exit; mode: 10",
              "mode 9; add sharescreen_1; mode: 4; exit; mode: 9"})
            ZR_TELL(m, story);
        other.ProcessExitMeeting();
        QCOMPARE(m.mode(), int(eLayoutEqualCut));
    }

    void extScreenFollowsTheHost()
    {
        Meeting m;
        QDlgExtScreen ext;
        ext.show();
        const auto reportsOf = [&](const char* id) {
            (void)ext.updatePersonInfo(&m, id, false, 1, "Ann", 2);
            return m.host.count(ZRMSG_VIDEO_SHOWN);
        };
        QVERIFY(reportsOf("u1") == 1 && reportsOf("u1") == 1);
        ext.setLockLook(true);
        ext.setAllLook(true);
        QVERIFY(!ext.person()->bLockLook);
        QCOMPARE(reportsOf("u2"), 2); // somebody else begins anew, and who is nobody's meanwhile
        (void)ext.updatePersonInfo(nullptr, "u2", false, 1, "Ann", 2);
        QCOMPARE(reportsOf("u2"), 3);
        // Who is to be shown on a screen that is still hidden is reported when it is shown.
        ext.hide();
        QCOMPARE(reportsOf("u4"), 3);
        ext.place({0, 0, 320, 180});
        QCOMPARE(reportsOf("u4"), 4);
    }

    void aHostThatThrowsKeepsNothingBack()
    {
        const auto throwing = [](unsigned long, unsigned long long, long long) -> int { throw 1; };
        ST_ZRScreenHdl* const screen = createScreen(nullptr, throwing);
        QDlgScreen& gallery = *screen->m_pDlgMain->gallery();
        gallery.setJoinMeetingFinish(true);
        gallery.AddPerson("u1", "Ann", 1, 0, nullptr);
        QVERIFY(gallery.isPersonVisible("u1")); // which sends messages
        g_screens.release(screen);
        QVERIFY(!HubUser::isAny()); // nobody is inside
    }

    /// Figures, where the environment asks for them.
    void statisticsAreLoggedAndShown()
    {
        (void)hub();
        QVERIFY(!Statistics::active());
        qputenv("ZRSCREEN_STATS", "1");
        qputenv("ZRSCREEN_DEBUG_OVERLAY", "1");
        QZRScreenConfig::destroyInstance();
        Meeting m(true);
        tagPersonInfo* ann = m.add("ann");
        m->setPreview(ann, true);
        const QtMessageHandler before = qInstallMessageHandler(collect);
        VantrelRTCVideoFrameQT bad{};
        QVERIFY(m.play(ann) && m.play(ann) && !m->playFrame(ann, &bad));
        QTRY_VERIFY(!g_lines.filter("stats: 1 participants").isEmpty());
        ZR_TELL(m, "people 1; mode 6");
        qInstallMessageHandler(before);
        QCOMPARE(g_lines.filter("speaker 1  person i: 0 ,userName: \"u0\"").size(), 1);
        QCOMPARE(g_lines.filter("stats ann: in 2.0/s, refused 1, painted").size(), 1);
        QCOMPARE(ann->iFramesPerS, 2);
        QVERIFY(ann->pWidget->playInfo()->state().resolution.endsWith("2 fps, grade 4, open"));
        qunsetenv("ZRSCREEN_STATS");
        qunsetenv("ZRSCREEN_DEBUG_OVERLAY");
    }

    void menuBelongsToTheTileUnderTheMouse()
    {
        Meeting m(true);
        tagPersonInfo* person = m->AddPerson("u0", "u0", 0, 0, reinterpret_cast<void*>(77));
        m.addMany(3);
        QCursor::setPos(person->pWidget->mapToGlobal(person->pWidget->rect().center()));
        m->onClickMore(person, 33);
        QVERIFY(m.host.messages.back().wParam == 33 && m.host.messages.back().lParam == 77);
        // The mouse is on the tile still, but the tile not where the menu is.
        ZR_TELL(m, "news: 1; mode 2; news: 22; menu u0; news: 1");
        m->clearMoreMenuPerson();
        ZR_TELL(m, "remove u0; news: ");
    }

    void lateFramesStartNothing()
    {
        Meeting m;
        tagPersonInfo* person = m.addMany(7)[0];
        const VantrelRTCVideoFrameQT frame = m.frame();
        const auto isRunning = [&] { return person->iStreamStatus == kStreamRunning; };
        // The notice of a frame uncovers the tile: the picture is there before.
        connect(&hub(), &QZRScreenConfig::playFrameUpdateUI, this,
                [person] { QVERIFY(!person->pWidget->IsBufferBlank()); });
        for (const auto& [open, close] :
             {std::pair("stream u0", "stream u0 off"), {"back", "next; elapse 1000"}}) {
            ZR_TELL(m, open);
            QVERIFY(!isRunning() && m.play(person) && isRunning());
            ZR_TELL(m, close); // the second host does not say what it closes
            QVERIFY(m.play(person) && !isRunning());
            // One whose notice comes when the next stream is open already.
            std::thread([&] { QVERIFY(m->playFrame(person, &frame)); }).join();
            ZR_TELL(m, open);
            QVERIFY(!isRunning() && m.play(person) && isRunning());
            ZR_TELL(m, close);
            ZR_TELL(m, "stream u0");
        }
    }

    /// Work that was posted for somebody comes when they have gone.
    void whoHasGoneIsNobody()
    {
        Meeting m;
        tagPersonInfo* const gone = m.add("gone");
        ZR_TELL(m, "people 2; mode 7; remove gone; news: ");
        QVERIFY(!m->setAllLook(gone, true) && !m->setLockLookPerson(gone, true));
        QVERIFY(!m->setMute(gone, false) && !m->IsBindToSmallWnd(gone) && !m.play(gone));
        QVERIFY(m->setFocusPerson(gone, eLayoutSingle));
        m->setPreview(gone, true);
        m->setPersonStreamType(gone, 2);
        m->setPersonDefStreamType(gone);
        m->switchStream(gone, 2);
        m->ActivateIntoSmallWnd(gone, nullptr);
        m->onModVideoSize(gone, 10, 10);
        m->onPlayFrameUpdateUI(gone, 1, 1);
        m->onNotifyUpdateUserInfo(gone, gone);
        m->onNotifyClickExtPlayWidget(gone);
        emit hub().notifyClickMore(gone, 0);
        emit hub().handleHandup(gone);
        emit hub().modSignalPersonHandup(gone, true);
        emit hub().modSignalPersonInfo(gone, true, 1, "x", 0);
        emit hub().modSignalVolume(gone, 1);
        emit hub().modSignalDelPerson(gone);
        ZR_TELL(m, "news: ; mode: 7; seen: u0 u1");
    }

    void unchangedArrangementsTouchNothing()
    {
        Meeting m(true);
        m.addMany(21); // one more makes no new page
        for (const int mode : {1, 2, 4, 9}) {
            ZR_TELL(m, QString("mode %1").arg(mode));
            QTest::qWait(200); // the tiles' own start
            QObjectList widgets{m.gallery.get()};
            for (QWidget* child : m->findChildren<QWidget*>())
                widgets += child;
            const zrtest::EventWatch watch(
                widgets, {QEvent::Move, QEvent::Resize, QEvent::Show, QEvent::Hide, QEvent::Paint});
            ZR_TELL(m, QString("layout; order; add late 1000; rename u19 Name%1").arg(mode));
            QTest::qWait(50);
            QCOMPARE(watch.count, 0);
            ZR_TELL(m, "remove late");
        }
    }

    void pageControlsLieAboveTheTiles()
    {
        Meeting m;
        const auto controls = m->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        ZR_TELL(m, "people 7; mode 11; next; seen: u4 u5 u6");
        emit hub().clickPageCtl(nullptr); // another gallery's
        ZR_TELL(m, "page: 1");
        // That of the latest participant as well.
        bool controlSeen = false;
        for (QObject* child : m->children()) {
            const auto* tile = qobject_cast<CPlayWidget*>(child);
            QVERIFY(!(tile && tile->isShowing() && controlSeen));
            controlSeen = controlSeen || controls.contains(qobject_cast<QWidget*>(child));
        }
        m->resize(800, 500);
        const auto arrows = m->findChildren<QMyPageCtrl*>();
        const auto [left, right] = std::minmax({arrows[0]->x(), arrows[1]->x()});
        QVERIFY(left == 24 && right + arrows[1]->width() == 800 - 24);
        QCOMPARE(arrows[0]->y(), (500 - arrows[0]->height()) / 2);
        // Where the marks have no room, a bar takes their place.
        const auto* bar = m->findChild<QMyPageScroll*>();
        QVERIFY(!bar->isVisible());
        m.addMany(90);
        QVERIFY(bar->isVisible() && !m->findChild<QDlgPageMark*>()->isVisible());
        const int top = bar->y();
        QVERIFY(m->pageNext(false) && bar->y() > top);
    }

    void pageWidgetsLookAsTheirGolden()
    {
        QWidget gallery;
        gallery.setPalette(QPalette(QColor(200, 0, 200))); // stands for the tiles
        gallery.resize(600, 400);
        gallery.show();
        QVERIFY(QTest::qWaitForWindowExposed(&gallery));
        // No page, a single one, the last one, and one that is gone.
        const std::pair<int, int> pages[] = {{0, 0}, {0, 1}, {2, 3}, {3, 3}};
        for (int i = 0; i < 4; ++i) {
            auto* const mark = new QDlgPageMark(&gallery);
            mark->move(40 * i, 0);
            mark->setPages(pages[i].first, pages[i].second);
            mark->show();
        }
        const QSize camera = QImage(":/pic/nocamera.png").size();
        QDlgNoVideo noVideo(&gallery);
        QDlgNoVideo cut(&gallery);
        noVideo.setGeometry(QRect({160, 0}, camera + QSize(41, 30)));
        cut.setGeometry(450, 0, camera.width() / 2, 200);
        QVERIFY(!gallery.childAt(5, 5) && !gallery.childAt(165, 5)); // clicks go to what is below
        QMyPageCtrl next(&gallery);
        next.setImage(QImage(":/pic/pageNext.png"));
        next.setGeometry(QRect({160, 250}, next.sizeHint()));
        next.show();
        QMyPageScroll bar(&gallery);
        bar.setBarHeight(120);
        bar.move(580, 0);
        bar.show();
        QMyScrollbar scrollbar(&gallery);
        scrollbar.setGeometry(560, 0, scrollbar.sizeHint().width(), 200);
        scrollbar.setRange(0, 10000); // the handle keeps a size that can be caught
        scrollbar.show();
        ZR_COMPARE_GOLDEN(gallery.grab(), "page_widgets");
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

ZR_WIDGET_TEST_MAIN(TestGallery)
#include "tst_gallery.moc"
