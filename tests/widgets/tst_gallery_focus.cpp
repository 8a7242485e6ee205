// The gallery: who has the focus, what clicks and voices change, and whose stream is open. The
// rules have tests of their own; here is what the gallery makes of their answers.
#include "gallerytest.h"

#include <thread>

using zrtest::hub;
using zrtest::Meeting;

namespace {

/// u0 is the first speaker. The numbers of the news are the host messages.
const std::pair<const char*, const char*> kStories[] = {
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
     "mode 12; news: ; double u1; news: 8=7; mode: 10; double u1; mode: 12; mode 7; news: ;"
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
    {"it leaves a gallery alone", "people 10; mode 3; voice u9; seen: u0 u1 u2 u3 u4 u5 u6 u7"},
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
    {"a pin where the host dictates", "people 3; mode 7; set follow 1; pin u1; mode: 1"},
    {"a pin ends, not from its menu, or from it",
     "people 3; pin u1; mode 11; pin u1 off; mode: 11; mode 8; menu u1; pin u1 off; mode: 11;"
     "set follow 1; mode 8; menu u1; pin-for-all u1 off; mode: 1"},

    {"a report that has changed the preview is remembered",
     "add anna; stream anna off; changed anna: no; stream anna; changed anna: yes; stream anna;"
     "changed anna: yes"},
    {"who is to be told at once does not wait for who is to be told later",
     "people 2; stream u1; places u0; mode 14; elapse 1000; hidden: 1; places u1; seen: u1;"
     "stream u1; timers 0: 0; stream u1 off; timers 0: 1"},

    // --- Grades; the host is asked with the next frame ---
    {"a burst of arrangements costs nothing, nor one that comes back to where it was",
     "people 3; stream u0; stream u1; stream u2; mode 6; mode 1; mode 2; mode 14; mode 6; mode 1;"
     "news: ; frames u0 u1 u2; news: 3 3 3; mode 6; mode 1; frames u0 u1 u2; news: "},
    {"a stream that was closed begins anew; its last frames ask for nothing",
     "people 2; stream u0; frames u0; news: 4; stream u0 off; frames u0; news: ; stream u0;"
     "frames u0; news: 4; mode 1; mode 6; frames u0; news: "},
};

} // namespace

class TestGalleryFocus : public QObject
{
    Q_OBJECT

private slots:
    void stories() { QCOMPARE(zrtest::faultsOf(kStories), QString()); }

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
             {std::pair("stream u0", "stream u0 off"), {"stream u0; back", "next; elapse 1000"}}) {
            ZR_TELL(m, open);
            QVERIFY(!isRunning() && m.play(person) && isRunning());
            ZR_TELL(m, close); // the second host does not say what it closes
            QVERIFY(m.play(person) && !isRunning());
            // One whose notice comes when the next stream is open already.
            std::thread([&] { QVERIFY(m->playFrame(person, &frame)); }).join();
            ZR_TELL(m, open);
            QVERIFY(!isRunning() && m.play(person) && isRunning());
            ZR_TELL(m, close);
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
};

ZR_WIDGET_TEST_MAIN(TestGalleryFocus)
#include "tst_gallery_focus.moc"
