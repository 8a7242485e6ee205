// What a tile shows of whom, where, and when it uncovers the picture.
#include "layoutgeometry.h"
#include "meetingmode.h"
#include "overlaystate.h"
#include "tilereveal.h"

#include <QtTest>

using zr::LookMark;
using zr::OverlayState;
using zr::TilePlace;
using Step = zr::TileReveal::Step;

namespace {

struct Input
{
    zr::TilePerson person;
    zr::TileSettings settings;
    zr::TileView view;
};

/// Somebody in the focus of the meeting whose picture shows.
Input shown(TilePlace place)
{
    Input in;
    in.person.bPreview = in.person.bStream = true;
    in.settings.mode = eLayoutSpeakerRight;
    in.settings.watermark = QStringLiteral("mark");
    in.view = {place, false, false, QStringLiteral("hello"), 2};
    return in;
}

struct Row
{
    const char* what;
    void (*change)(Input& in);
    bool (*holds)(const OverlayState& state);
    const char* where = "GTE"; ///< in the gallery, the tool, on the extended screen; not elsewhere
};

const Row kRows[] = {
    {"a picture", [](Input&) {}, [](auto& s) { return s.bPicture && s.bCamera && !s.bSpinner; }},
    {"stream closed", [](Input& in) { in.person.bPreview = false; },
     [](auto& s) { return !s.bPicture && !s.bCamera; }},
    {"no frames", [](Input& in) { in.person.bStream = false; },
     [](auto& s) { return !s.bPicture && !s.bCamera; }},
    {"hidden", [](Input& in) { in.person.bHidden = true; },
     [](auto& s) { return !s.bPicture && s.bCamera; }},
    {"loading", [](Input& in) { in.view.bLoading = true; }, [](auto& s) { return !s.bPicture; }},
    {"bad network", [](Input& in) { in.person.net.report(2, true, 1); },
     [](auto& s) { return s.bPicture && s.bSpinner && s.iNetLevel == 1; }},
    {"frozen", [](Input& in) { in.person.net.report(1, true, 1); },
     [](auto& s) { return s.bFrozen; }, "GE"},
    {"bad for too long",
     [](Input& in) {
         in.person.net.report(1, true, 0);
         in.view.bLoadTimedOut = true;
     },
     [](auto& s) { return !s.bPicture && !s.bSpinner; }},
    {"bad in one direction still",
     [](Input& in) {
         in.person.net.report(1, true, 0);
         in.person.net.report(2, true, 0);
         in.person.net.report(1, false, 3);
     },
     [](auto& s) { return s.bSpinner && s.iNetLevel == 3; }},
    {"one's own picture never waits",
     [](Input& in) {
         in.person.bSelf = in.view.bLoadTimedOut = true;
         in.person.net.report(1, true, 0);
     },
     [](auto& s) { return s.bPicture && !s.bSpinner; }},
    {"speaker's border", [](Input& in) { in.person.bSpeaking = true; },
     [](auto& s) { return s.bSpeaking; }, "G"},
    {"no highlight",
     [](Input& in) {
         in.person.bSpeaking = true;
         in.settings.switches.speakingHighlight = false;
     },
     [](auto& s) { return !s.bSpeaking; }},
    {"dark border", [](Input&) {}, [](auto& s) { return s.bBorder; }, "T"},
    {"no menu", [](Input&) {}, [](auto& s) { return s.bNoMenu; }, "E"},
    {"small", [](Input& in) { in.person.iGrade = zr::kGradeGrid; },
     [](auto& s) { return s.bSmall; }},
    {"not small", [](Input& in) { in.person.iGrade = zr::kGradeLarge; },
     [](auto& s) { return !s.bSmall; }},
    {"everybody's hand", [](Input& in) { in.person.bHand = true; },
     [](auto& s) { return s.bHand; }},
    {"another's hand",
     [](Input& in) {
         in.person.bHand = true;
         in.settings.switches.allHands = false;
     },
     [](auto& s) { return !s.bHand; }},
    {"one's own hand",
     [](Input& in) {
         in.person.bHand = in.person.bSelf = true;
         in.settings.switches.allHands = false;
     },
     [](auto& s) { return s.bHand; }},
    {"the mark for all goes first",
     [](Input& in) { in.person.bAllLook = in.person.bLockLook = true; },
     [](auto& s) { return s.look == LookMark::AllLook; }},
    {"locked", [](Input& in) { in.person.bLockLook = true; },
     [](auto& s) { return s.look == LookMark::LockLook; }},
    {"nobody is larger",
     [](Input& in) {
         in.person.bLockLook = true;
         in.settings.mode = eLayout6Cut;
     },
     [](auto& s) { return s.look == LookMark::None; }, "GT"},
    {"two are larger",
     [](Input& in) {
         in.person.bAllLook = true;
         in.settings.mode = eLayoutSpeaker4;
     },
     [](auto& s) { return s.look == LookMark::None; }, "GT"},
    {"a mark without a label",
     [](Input& in) {
         in.person.bLockLook = true;
         in.settings.switches.lookOwner = 1;
     },
     [](auto& s) { return s.look == LookMark::Unlabelled; }, "GT"},
    {"larger text", [](Input& in) { in.settings.switches.largerText = true; },
     [](auto& s) { return s.bLargerText; }},
    {"the picture's size",
     [](Input& in) {
         in.person.video = {640, 360};
         in.settings.switches.showResolution = true;
     },
     [](auto& s) { return s.resolution == QLatin1String("640*360"); }},
    {"no size yet", [](Input& in) { in.settings.switches.showResolution = true; },
     [](auto& s) { return s.resolution.isEmpty(); }},
    {"words", [](Input&) {}, [](auto& s) { return s.bubble == "hello" && s.iBubbleColor == 2; }},
    {"a share needs no stream report",
     [](Input& in) {
         in.person.bShare = true;
         in.person.bPreview = in.person.bStream = false;
     },
     [](auto& s) { return s.bPicture && s.watermark == "mark" && s.bubble.isEmpty(); }},
    {"a paused share", [](Input& in) { in.person.bShare = in.settings.bPauseShare = true; },
     [](auto& s) { return s.bPaused && !s.bPicture; }},
    {"a pause is a share's alone", [](Input& in) { in.settings.bPauseShare = true; },
     [](auto& s) { return !s.bPaused && s.bPicture && s.watermark.isEmpty(); }},
};

} // namespace

class TestOverlayState : public QObject
{
    Q_OBJECT

private slots:
    void everyInputInEveryPlace();
    void spellsAreCounted();
    void firstPicturesAreKeptBack();
    void frozenPictureComesLater();
};

void TestOverlayState::everyInputInEveryPlace()
{
    const std::pair<TilePlace, char> places[] = {
        {TilePlace::Gallery, 'G'}, {TilePlace::SpeakTool, 'T'}, {TilePlace::ExtScreen, 'E'}};
    for (const Row& row : kRows) {
        for (const auto& [place, letter] : places) {
            Input in = shown(place);
            row.change(in);
            const bool holds = row.holds(zr::overlayState(in.person, in.settings, in.view));
            QVERIFY2(holds == QByteArray(row.where).contains(letter),
                     (QByteArray(row.what) + ' ' + letter).constData());
        }
    }
}

void TestOverlayState::spellsAreCounted()
{
    zr::NetStatus net;
    const std::tuple<int, bool, int> reports[] = {{1, false, 0}, {1, true, 1},  {2, true, 1},
                                                  {1, false, 1}, {2, false, 1}, {2, true, 2}};
    for (const auto& [direction, bad, spell] : reports) {
        net.report(direction, bad, 3);
        QCOMPARE(net.iSpell, spell);
    }
}

void TestOverlayState::firstPicturesAreKeptBack()
{
    zr::TileReveal reveal;
    bool blank = true;
    int asked = 0;
    const auto render = [&](bool picture) {
        return reveal.render(picture, [&] {
            ++asked;
            return blank;
        });
    };
    for (const bool picture : {false, true}) {
        reveal.bind(true);
        QVERIFY(render(picture) == Step::Wait && reveal.isChanging());
        QVERIFY(!reveal.setFrozen(false)); // another change of what the tile shows
        QCOMPARE(reveal.endChange(), picture);
        QVERIFY(!reveal.endChange());
    }
    (void)render(true);
    reveal.bind(true); // what was kept back was the former participant's
    QVERIFY(!reveal.endChange());
    asked = 0;
    for (int i = 0; i < 30; ++i)
        QVERIFY(render(true) == Step::Cover);
    QVERIFY(render(true) == Step::Repaint && asked == 30);
    reveal.bind(false); // no slow start
    (void)reveal.endChange();
    QVERIFY(render(true) == Step::Repaint);
    reveal.bind(true);
    (void)reveal.endChange();
    blank = false;
    QVERIFY(render(true) == Step::Repaint);
}

void TestOverlayState::frozenPictureComesLater()
{
    zr::TileReveal reveal;
    const auto render = [&reveal] { return reveal.render(true, [] { return false; }); };
    QVERIFY(!reveal.setFrozen(true) && !reveal.setFrozen(false)); // none has come
    QVERIFY(!reveal.setFrozen(true));
    QVERIFY(render() == Step::Hold && !reveal.setFrozen(true));
    QVERIFY(reveal.setFrozen(false) && !reveal.setFrozen(false));
    QVERIFY(render() == Step::Repaint);
}

QTEST_APPLESS_MAIN(TestOverlayState)
#include "tst_overlaystate.moc"
