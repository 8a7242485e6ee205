// What a tile shows of whom, where each part of its overlay stands, and when it uncovers the
// picture.
#include "layoutgeometry.h"
#include "meetingmode.h"
#include "overlaylayout.h"
#include "overlaystate.h"
#include "overlaytext.h"
#include "tilereveal.h"
#include "volumelevel.h"

#include <QtTest>

#include <map>

using zr::LookMark;
using zr::OverlayLayout;
using zr::OverlayMetrics;
using zr::OverlayPart;
using zr::OverlayState;
using zr::TilePlace;
using Step = zr::TileReveal::Step;

namespace {

// --- The state ----------------------------------------------------------------------------------

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
    in.person.iGrade = zr::kGradeLarge;
    in.settings.mode = eLayoutSpeakerRight;
    in.settings.watermark = QStringLiteral("mark");
    in.view = {place, false, false, QStringLiteral("hello"), 2};
    return in;
}

/// What a state shows, in words.
QStringList words(const Input& in)
{
    const OverlayState s = zr::overlayState(in.person, in.settings, in.view);
    const char* const names[] = {"picture", "camera", "spinner", "frozen", "speaking",
                                 "border",  "lone",   "small",   "self",   "hand",
                                 "larger",  "share",  "paused"};
    const bool flags[] = {s.bPicture,    s.bCamera, s.bSpinner, s.bFrozen, s.bSpeaking,
                          s.bBorder,     s.bNoMenu, s.bSmall,   s.bSelf,   s.bHand,
                          s.bLargerText, s.bShare,  s.bPaused};
    static_assert(std::size(names) == std::size(flags));
    const char* const looks[] = {"", "all-look", "lock-look", "unlabelled"};
    QStringList on{looks[int(s.look)], QString("net%1").arg(s.iNetLevel), s.watermark,
                   s.resolution};
    for (std::size_t i = 0; i < std::size(flags); ++i)
        on += flags[i] ? names[i] : "";
    if (!s.bubble.isEmpty())
        on += QString("%1/%2").arg(s.bubble).arg(s.iBubbleColor);
    on.removeAll(QString());
    on.sort();
    return on;
}

const std::map<QString, void (*)(Input&)> kChanges{
    {"closed", [](Input& in) { in.person.bPreview = false; }},
    {"no-frames", [](Input& in) { in.person.bStream = false; }},
    {"hidden", [](Input& in) { in.person.bHidden = true; }},
    {"loading", [](Input& in) { in.view.bLoading = true; }},
    {"timed-out", [](Input& in) { in.view.bLoadTimedOut = true; }},
    {"bad-to-send", [](Input& in) { in.person.net.report(1, true, 0); }},
    {"good-to-send", [](Input& in) { in.person.net.report(1, false, 3); }},
    {"bad-to-receive", [](Input& in) { in.person.net.report(2, true, 1); }},
    {"self", [](Input& in) { in.person.bSelf = true; }},
    {"speaking", [](Input& in) { in.person.bSpeaking = true; }},
    {"no-highlight", [](Input& in) { in.settings.switches.speakingHighlight = false; }},
    {"grid", [](Input& in) { in.person.iGrade = zr::kGradeGrid; }},
    {"strip", [](Input& in) { in.person.iGrade = zr::kGradeSmall; }},
    {"hand", [](Input& in) { in.person.bHand = true; }},
    {"own-hand-only", [](Input& in) { in.settings.switches.allHands = false; }},
    {"all-look", [](Input& in) { in.person.bAllLook = true; }},
    {"lock-look", [](Input& in) { in.person.bLockLook = true; }},
    {"nobody-larger", [](Input& in) { in.settings.mode = eLayout6Cut; }},
    {"two-larger", [](Input& in) { in.settings.mode = eLayoutSpeaker4; }},
    {"no-label", [](Input& in) { in.settings.switches.lookOwner = 1; }},
    {"larger-text", [](Input& in) { in.settings.switches.largerText = true; }},
    {"tell-size", [](Input& in) { in.settings.switches.showResolution = true; }},
    {"sized",
     [](Input& in) {
         in.person.video = {640, 360};
     }},
    {"share", [](Input& in) { in.person.bShare = true; }},
    {"pause", [](Input& in) { in.settings.bPauseShare = true; }},
};

/// What changes add to the words of a state and take from them. Letters before a colon: in the
/// gallery, in the tool, on the extended screen alone.
const std::pair<QString, QString> kStates[] = {
    {"closed", "-picture -camera"},
    {"no-frames", "-picture -camera"},
    {"hidden", "-picture"},
    {"loading", "-picture"},
    {"bad-to-receive", "spinner -net5 net1 GE:frozen"},
    {"bad-to-receive bad-to-send good-to-send", "spinner -net5 net3 GE:frozen"},
    {"bad-to-send timed-out", "-picture -net5 net0 GE:frozen"},
    {"bad-to-send timed-out self", "self -net5 net0 GE:frozen"}, // one's own picture never waits
    {"speaking", "G:speaking"},
    {"speaking no-highlight", ""},
    {"grid", "small"},
    {"strip", "small"},
    {"hand", "hand"},
    {"hand own-hand-only", ""},
    {"hand own-hand-only self", "self hand"},
    {"all-look lock-look", "all-look"},
    {"lock-look", "lock-look"},
    {"lock-look nobody-larger", "E:lock-look"},
    {"all-look two-larger", "E:all-look"},
    {"lock-look no-label", "GT:unlabelled E:lock-look"},
    {"larger-text", "larger"},
    {"tell-size", ""}, // there is none yet
    {"tell-size sized", "640*360"},
    {"share closed no-frames", "share mark -camera -hello/2"}, // needs no report of a stream
    {"share pause", "share mark paused -picture -camera -hello/2"},
    {"pause", ""}, // of nothing
};

// --- The layout ---------------------------------------------------------------------------------

/// A font whose wide characters are square, and the others a third as wide.
int textWidth(const QString& text, int fontPx)
{
    int thirds = 0;
    for (const QChar c : text) {
        if (c.category() != QChar::Mark_NonSpacing && c.category() != QChar::Other_Format)
            thirds += c.unicode() >= 0x2E80 ? 3 : 1;
    }
    return thirds * fontPx / 3;
}

OverlayLayout layout(const OverlayState& state, const QSize& tile, bool bHighResolution = false)
{
    const int k = bHighResolution ? 2 : 1;
    const auto square = [k](int side) { return QSize(side * k, side * k); };
    const OverlayMetrics metrics{tile,
                                 bHighResolution,
                                 {{{square(28), square(48), square(48), square(48)},
                                   {square(28), square(40), square(34), square(48)}}},
                                 textWidth};
    return zr::layoutOverlay(state, metrics);
}

OverlayState alice()
{
    OverlayState state;
    state.bPerson = state.bPicture = state.bSmall = true;
    state.name = QStringLiteral("爱丽丝");
    return state;
}

} // namespace

class tst_Overlay : public QObject
{
    Q_OBJECT

private slots:
    void everyInputInEveryPlace()
    {
        const std::tuple<TilePlace, QChar, QStringList> places[] = {
            {TilePlace::Gallery, 'G', {"camera", "hello/2", "net5", "picture"}},
            {TilePlace::SpeakTool, 'T', {"border", "camera", "hello/2", "net5", "picture"}},
            {TilePlace::ExtScreen, 'E', {"camera", "hello/2", "lone", "net5", "picture"}}};
        for (const auto& [place, letter, plain] : places) {
            QCOMPARE(words(shown(place)), plain);
            for (const auto& [changes, differences] : kStates) {
                Input in = shown(place);
                for (const QString& change : changes.split(' '))
                    kChanges.at(change)(in);
                QStringList expected = plain;
                for (const QString& word : differences.split(' ', Qt::SkipEmptyParts)) {
                    if (word.startsWith('-'))
                        expected.removeOne(word.mid(1));
                    else if (!word.contains(':') || word.section(':', 0, 0).contains(letter))
                        expected += word.section(':', -1);
                }
                expected.sort();
                const QStringList got = words(in);
                QVERIFY2(got == expected, qPrintable(changes + ": " + got.join(' ')));
            }
        }
    }

    void spellsAreCounted()
    {
        zr::NetStatus net;
        const std::tuple<int, bool, int> reports[] = {{1, false, 0}, {1, true, 1},  {2, true, 1},
                                                      {1, false, 1}, {2, false, 1}, {2, true, 2}};
        for (const auto& [direction, bad, spell] : reports) {
            net.report(direction, bad, 3);
            QCOMPARE(net.iSpell, spell);
        }
    }

    void firstPicturesAreKeptBack()
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

    void frozenPictureComesLater()
    {
        zr::TileReveal reveal;
        const auto render = [&reveal] { return reveal.render(true, [] { return false; }); };
        QVERIFY(!reveal.setFrozen(true) && !reveal.setFrozen(false)); // none has come
        QVERIFY(!reveal.setFrozen(true));
        QVERIFY(render() == Step::Hold && !reveal.setFrozen(true));
        QVERIFY(reveal.setFrozen(false) && !reveal.setFrozen(false));
        QVERIFY(render() == Step::Repaint);
    }

    void volumeLevels()
    {
        const std::pair<int, int> rows[] = {{-5, 1}, {9, 1},  {10, 2}, {24, 2}, {25, 3}, {40, 4},
                                            {54, 4}, {55, 5}, {70, 6}, {84, 6}, {85, 7}, {1000, 7}};
        for (const auto& [volume, level] : rows)
            QCOMPARE(zr::volumeLevel(volume), level);
    }

    void nothingLeavesTheTileNorOverlaps()
    {
        const QString sentence = QStringLiteral("一二三四五六七 ").repeated(20);
        const QString names[] = {QString(), QStringLiteral("爱丽丝"), QString(10000, 'w')};
        const OverlayPart apart[] = {OverlayPart::Avatar, OverlayPart::Badge, OverlayPart::NameBar,
                                     OverlayPart::More,   OverlayPart::Look,  OverlayPart::Hand,
                                     OverlayPart::Bubble};
        const QSize tiles[] = {{1, 1},    {20, 10},  {60, 40},   {33, 300},  {74, 239},  {76, 96},
                               {121, 89}, {160, 90}, {272, 153}, {320, 180}, {1280, 720}};
        int shown = 0;
        for (unsigned bits = 0; bits < 1024; ++bits) {
            OverlayState state = alice();
            state.bSelf = (bits & 1) != 0;
            state.bPicture = (bits & 2) != 0;
            state.bHand = (bits & 4) != 0;
            state.look = (bits & 8) != 0 ? LookMark::AllLook : LookMark::None;
            state.iRole = (bits & 16) != 0 ? 1 : 0;
            state.bubble = (bits & 32) != 0 ? sentence : QString();
            state.iNetLevel = (bits & 64) != 0 ? -3 : 5;
            state.bSmall = (bits & 128) != 0;
            state.bNoMenu = (bits & 256) != 0;
            state.name = names[bits % 3];
            const QSize& tile = tiles[bits % std::size(tiles)];
            const OverlayLayout result = layout(state, tile, (bits & 512) != 0);
            for (const zr::OverlayElement& element : result.elements) {
                QVERIFY(!element.isShown() || QRect(QPoint(), tile).contains(element.rect));
                shown += element.isShown() ? 1 : 0;
            }
            for (const OverlayPart a : apart) {
                for (const OverlayPart b : apart) {
                    const QRect common = a < b ? result.at(a).rect & result.at(b).rect : QRect();
                    if (!common.isEmpty())
                        qDebug() << "parts" << int(a) << int(b) << "state" << bits << tile
                                 << common;
                    QVERIFY(common.isEmpty());
                }
            }
            // What is written fits its place.
            const zr::OverlayElement& badge = result.at(OverlayPart::Badge);
            QVERIFY(badge.fontPx <= badge.rect.height());
            QVERIFY(textWidth(badge.text, badge.fontPx) <= badge.rect.width());
        }
        QVERIFY(shown > 2000);
    }

    // Where else it all stands, the goldens show.
    void avatarsMakeRoom()
    {
        OverlayState state = alice();
        state.bPicture = false;
        state.bNoMenu = true;
        state.look = LookMark::LockLook;
        // Between a mark that ends at 63 and the name at 105 there is room for 34.
        QCOMPARE(layout(state, {272, 153}).at(OverlayPart::Avatar).rect, QRect(119, 67, 34, 34));
        // 48 + 120 + 48 would be 216: with 200 it overlaps by 8, and loses 16 and 10.
        state.bSmall = state.bNoMenu = false;
        state.look = LookMark::None;
        QCOMPARE(layout(state, {640, 200}).at(OverlayPart::Avatar).rect, QRect(273, 53, 94, 94));
    }

    void wordsForAssistiveTechnology()
    {
        OverlayState state = alice();
        state.bMute = state.bSelf = state.bHand = true;
        state.iRole = 1;
        state.iNetLevel = 0;
        QCOMPARE(zr::tileName(state), QStringLiteral("爱丽丝(我)"));
        QCOMPARE(zr::tileDescription(state),
                 QStringLiteral("主持人，麦克风已静音，摄像头已关闭，已举手"));
        state = alice();
        state.bCamera = true;
        state.iNetLevel = 1;
        QCOMPARE(zr::tileDescription(state),
                 QStringLiteral("麦克风已打开，摄像头已打开，网络不佳"));
        state.bShare = true;
        QCOMPARE(zr::tileName(state), QStringLiteral("爱丽丝发起的共享"));
    }
};

QTEST_APPLESS_MAIN(tst_Overlay)
#include "tst_overlay.moc"
