#include "overlaylayout.h"
#include "overlaytext.h"
#include "volumelevel.h"

#include <QtTest>

using zr::LookMark;
using zr::OverlayLayout;
using zr::OverlayMetrics;
using zr::OverlayPart;
using zr::OverlayState;

namespace {

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

OverlayMetrics metrics(const QSize& tile, bool bHighResolution = false)
{
    const int k = bHighResolution ? 2 : 1;
    const auto square = [k](int side) { return QSize(side * k, side * k); };
    return {tile,
            bHighResolution,
            {{{square(28), square(48), square(48), square(48)},
              {square(28), square(40), square(34), square(48)}}},
            textWidth};
}

OverlayState alice()
{
    OverlayState state;
    state.bPerson = state.bPicture = state.bSmall = true;
    state.name = QStringLiteral("爱丽丝");
    return state;
}

OverlayLayout layout(const OverlayState& state, const QSize& tile)
{
    return zr::layoutOverlay(state, metrics(tile));
}

} // namespace

class TestOverlayLayout : public QObject
{
    Q_OBJECT

private slots:
    void volumeLevels();
    void nameBar();
    void nothingLeavesTheTileNorOverlaps();
    void marksAndHand();
    void avatar();
    void share();
    void onlyWhatDiffersIsRepainted();
    void wordsForAssistiveTechnology();
};

void TestOverlayLayout::volumeLevels()
{
    const std::pair<int, int> rows[] = {{-5, 1}, {9, 1},  {10, 2}, {24, 2}, {25, 3}, {40, 4},
                                        {54, 4}, {55, 5}, {70, 6}, {84, 6}, {85, 7}, {1000, 7}};
    for (const auto& [volume, level] : rows)
        QCOMPARE(zr::volumeLevel(volume), level);
}

void TestOverlayLayout::nameBar()
{
    const struct
    {
        QSize tile;
        int role;
        bool self;
        int length;
        const char* shown; ///< @ stands for a character of the name
        QRect bar;
    } rows[] = {
        // 28 of the microphone and 10, 18 for a character, 20; one's own mark 30 and 6.
        {{320, 180}, 0, false, 3, "@@@", {0, 140, 112, 40}},
        {{320, 180}, 0, true, 3, "@@@(我)", {0, 140, 148, 40}},
        {{320, 180}, 1, false, 3, "@@@", {68, 140, 112, 40}}, // touches the badge
        {{320, 180}, 7, false, 3, "@@@", {0, 140, 112, 40}},  // no such role
        // The button begins at 280; others end 25 before it, oneself 5.
        {{320, 180}, 0, false, 10, "@@@@@@@@@@", {0, 140, 238, 40}},
        {{330, 180}, 0, false, 14, "@@@@@@@@@@@...", {0, 140, 265, 40}},
        {{320, 180}, 0, true, 14, "@@@@@@@@@@...(我)", {0, 140, 271, 40}},
        {{320, 180}, 2, false, 14, "@@@@@@@...", {68, 140, 187, 40}}, // beside a badge
        {{160, 90}, 0, true, 3, "@...(我)", {0, 50, 109, 40}},
        {{160, 90}, 1, true, 3, "@...(我)", {0, 50, 109, 40}}, // the badge stands above
        {{120, 90}, 0, true, 3, "(我)", {0, 50, 73, 40}},
        {{100, 90}, 0, true, 3, "", {0, 50, 38, 40}},
    };
    for (const auto& row : rows) {
        OverlayState state = alice();
        state.name = QString(row.length, QChar(0x7231));
        state.iRole = row.role;
        state.bSelf = row.self;
        const OverlayLayout result = layout(state, row.tile);
        QCOMPARE(result.at(OverlayPart::Name).text,
                 QString::fromUtf8(row.shown).replace(QLatin1Char('@'), QChar(0x7231)));
        QCOMPARE(result.at(OverlayPart::NameBar).rect, row.bar);
        QCOMPARE(result.at(OverlayPart::Audio).rect.left(), row.bar.left() + 5);
        // A weak network widens the bar of others.
        state.iNetLevel = 3;
        const int wider = row.self ? 0 : 20;
        const OverlayLayout weak = layout(state, row.tile);
        QCOMPARE(weak.at(OverlayPart::NameBar).rect.width(), row.bar.width() + wider);
        QCOMPARE(weak.at(OverlayPart::Network).isShown(), wider > 0);
    }
}

void TestOverlayLayout::nothingLeavesTheTileNorOverlaps()
{
    const QString sentence = QStringLiteral("一二三四五六七 ").repeated(20);
    const QString names[] = {QString(), QStringLiteral("爱丽丝"), QString(10000, QLatin1Char('w'))};
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
        const OverlayLayout result = zr::layoutOverlay(state, metrics(tile, (bits & 512) != 0));
        for (const zr::OverlayElement& element : result.elements) {
            QVERIFY(!element.isShown() || QRect(QPoint(), tile).contains(element.rect));
            shown += element.isShown() ? 1 : 0;
        }
        for (const OverlayPart a : apart) {
            for (const OverlayPart b : apart) {
                const QRect common = a < b ? result.at(a).rect & result.at(b).rect : QRect();
                if (!common.isEmpty())
                    qDebug() << "parts" << int(a) << int(b) << "state" << bits << tile << common;
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

void TestOverlayLayout::marksAndHand()
{
    OverlayState state = alice();
    state.bHand = true;
    const auto check = [&state](LookMark mark, const QString& text, const QRect& lookRect,
                                const QRect& handRect) {
        state.look = mark;
        const OverlayLayout result = layout(state, {640, 360});
        QCOMPARE(result.at(OverlayPart::Look).text, text);
        QCOMPARE(result.at(OverlayPart::Look).rect, lookRect);
        QCOMPARE(result.at(OverlayPart::Hand).rect, handRect);
    };
    const QRect large(16, 15, 150, 48);
    check(LookMark::AllLook, QStringLiteral("全员看TA"), {11, 10, 105, 33}, {121, 10, 34, 34});
    state.bSmall = false;
    check(LookMark::None, {}, {}, {5, 5, 48, 48});
    check(LookMark::LockLook, QStringLiteral("锁定看TA"), large, {171, 15, 48, 48});
    check(LookMark::Unlabelled, {}, large, {171, 15, 48, 48}); // keeps its place
    state.bSmall = state.bNoMenu = true;                       // not one of several
    check(LookMark::LockLook, QStringLiteral("锁定看TA"), large, {171, 15, 48, 48});
    QVERIFY(!layout(state, {640, 360}).at(OverlayPart::More).isShown());
}

void TestOverlayLayout::avatar()
{
    OverlayState state = alice();
    state.bPicture = false;
    QCOMPARE(layout(state, {320, 180}).at(OverlayPart::Avatar).rect, QRect(130, 60, 60, 60));
    QCOMPARE(layout(state, {320, 120}).at(OverlayPart::Avatar).rect, QRect(130, 10, 60, 60));
    state.bSmall = false;
    QCOMPARE(layout(state, {640, 360}).at(OverlayPart::Avatar).rect, QRect(260, 120, 120, 120));
    // 48 + 120 + 48 would be 216: with 200 it overlaps by 8, and loses 16 and 10.
    QCOMPARE(layout(state, {640, 200}).at(OverlayPart::Avatar).rect, QRect(273, 53, 94, 94));
    QCOMPARE(layout(state, {640, 200}).at(OverlayPart::Avatar).text, QStringLiteral("丽丝"));
    // Between a mark that ends at 63 and the name at 105 there is room for 34.
    state.bNoMenu = true;
    state.look = LookMark::LockLook;
    QCOMPARE(layout(state, {272, 153}).at(OverlayPart::Avatar).rect, QRect(119, 67, 34, 34));
}

void TestOverlayLayout::share()
{
    OverlayState state = alice();
    state.bShare = true;
    state.name = QStringLiteral("一二三四五六七八九十");
    state.watermark = QStringLiteral("name");
    const QSize tile(320, 180);
    const OverlayLayout shared = layout(state, tile);
    QVERIFY(!shared.at(OverlayPart::More).isShown() && !shared.at(OverlayPart::NameBar).isShown());
    QVERIFY(shared.at(OverlayPart::Watermark).isShown());
    QCOMPARE(shared.at(OverlayPart::Caption).text, QStringLiteral("一二三四五六七...发起的共享"));
    QVERIFY(shared.at(OverlayPart::Caption).rect.width() <= tile.width() - 40);
    state.bPaused = true;
    QCOMPARE(layout(state, tile).at(OverlayPart::Paused).text,
             QStringLiteral("一二三四五六七... 暂停了屏幕共享"));
    QVERIFY(!layout(state, tile).at(OverlayPart::Watermark).isShown());
    state.bSmall = false;
    QCOMPARE(layout(state, {640, 360}).at(OverlayPart::Paused).text,
             QStringLiteral("一二三四五六七八九十 暂停了屏幕共享"));
}

void TestOverlayLayout::onlyWhatDiffersIsRepainted()
{
    const QSize tile(320, 180);
    OverlayState state = alice();
    const OverlayLayout before = layout(state, tile);
    QVERIFY(zr::changedRects(before, layout(state, tile)).empty());
    state.iAudioLevel = 4;
    const std::vector<QRect> audio = zr::changedRects(before, layout(state, tile));
    QVERIFY(!audio.empty());
    for (const QRect& rect : audio)
        QCOMPARE(rect, before.at(OverlayPart::Audio).rect);
    state = alice();
    state.bSpeaking = true;
    for (const QRect& rect : zr::changedRects(before, layout(state, tile)))
        QVERIFY(rect.width() == 5 || rect.height() == 5); // the strips alone
}

void TestOverlayLayout::wordsForAssistiveTechnology()
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
    QCOMPARE(zr::tileDescription(state), QStringLiteral("麦克风已打开，摄像头已打开，网络不佳"));
    state.bShare = true;
    QCOMPARE(zr::tileName(state), QStringLiteral("爱丽丝发起的共享"));
}

QTEST_APPLESS_MAIN(TestOverlayLayout)
#include "tst_overlaylayout.moc"
