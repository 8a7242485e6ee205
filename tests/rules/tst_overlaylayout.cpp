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
    void nameBar_data();
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

void TestOverlayLayout::nameBar_data()
{
    QTest::addColumn<QSize>("tile");
    QTest::addColumn<int>("role");
    QTest::addColumn<bool>("self");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("shown"); // @ stands for a character of the name
    QTest::addColumn<QRect>("bar");
    const auto row = [](const char* what, const QSize& tile, int role, bool self, int length,
                        const char* shown, const QRect& bar) {
        QTest::newRow(what) << tile << role << self << length << QString::fromUtf8(shown) << bar;
    };
    const QSize tile(320, 180);
    // 28 of the microphone and 10, 18 for a character, 20; one's own mark 30 and 6.
    row("fits", tile, 0, false, 3, "@@@", {0, 140, 112, 40});
    row("self", tile, 0, true, 3, "@@@(我)", {0, 140, 148, 40});
    row("host", tile, 1, false, 3, "@@@", {69, 140, 112, 40});
    row("unknown role", tile, 7, false, 3, "@@@", {0, 140, 112, 40});
    // The button begins at 280; others end 25 before it, oneself 5.
    row("just fits", tile, 0, false, 10, "@@@@@@@@@@", {0, 140, 238, 40});
    row("cut", tile, 0, false, 14, "@@@@@@@@@@@...", {0, 140, 255, 40});
    row("cut self", tile, 0, true, 14, "@@@@@@@@@@...(我)", {0, 140, 271, 40});
    row("cut beside a badge", tile, 2, false, 14, "@@@@@@@...", {69, 140, 186, 40});
    row("cut to a character", {160, 90}, 0, true, 3, "@...(我)", {0, 50, 109, 40});
    row("badge above the name", {160, 90}, 1, true, 3, "@...(我)", {0, 50, 109, 40});
    row("no room for a character", {120, 90}, 0, true, 3, "(我)", {0, 50, 73, 40});
    row("no room for oneself", {100, 90}, 0, true, 3, "", {0, 50, 38, 40});
}

void TestOverlayLayout::nameBar()
{
    QFETCH(QSize, tile);
    QFETCH(int, length);
    QFETCH(QRect, bar);
    OverlayState state = alice();
    state.name = QString(length, QChar(0x7231));
    QFETCH(int, role);
    QFETCH(bool, self);
    QFETCH(QString, shown);
    state.iRole = role;
    state.bSelf = self;
    shown.replace(QLatin1Char('@'), QChar(0x7231));
    const OverlayLayout result = layout(state, tile);
    QCOMPARE(result.at(OverlayPart::Name).text, shown);
    QCOMPARE(result.at(OverlayPart::NameBar).rect, bar);
    QCOMPARE(result.at(OverlayPart::Audio).rect.left(), bar.left() + 5);
    // A weak network widens the bar of others.
    state.iNetLevel = 3;
    const int wider = state.bSelf ? 0 : 20;
    QCOMPARE(layout(state, tile).at(OverlayPart::NameBar).rect.width(), bar.width() + wider);
    QCOMPARE(layout(state, tile).at(OverlayPart::Network).isShown(), wider > 0);
}

void TestOverlayLayout::nothingLeavesTheTileNorOverlaps()
{
    const QString sentence = QStringLiteral("一二三四五六七 ").repeated(20);
    const QString names[] = {QString(), QStringLiteral("爱丽丝"), QString(10000, QLatin1Char('w'))};
    // These never cover each other.
    const OverlayPart apart[] = {OverlayPart::Avatar, OverlayPart::Badge, OverlayPart::NameBar,
                                 OverlayPart::More,   OverlayPart::Look,  OverlayPart::Hand,
                                 OverlayPart::Bubble};
    int shown = 0;
    for (unsigned bits = 0; bits < 512; ++bits) {
        OverlayState state = alice();
        state.bSelf = (bits & 1) != 0;
        state.bPicture = (bits & 2) != 0;
        state.bHand = (bits & 4) != 0;
        state.look = (bits & 8) != 0 ? LookMark::AllLook : LookMark::None;
        state.iRole = (bits & 16) != 0 ? 1 : 0;
        state.bubble = (bits & 32) != 0 ? sentence : QString();
        state.iNetLevel = (bits & 64) != 0 ? -3 : 5;
        state.bSmall = (bits & 128) != 0;
        state.bLargerText = (bits & 256) != 0;
        state.name = names[bits % 3];
        for (const QSize& tile : {QSize(1, 1), QSize(20, 10), QSize(60, 40), QSize(33, 300),
                                  QSize(160, 90), QSize(320, 180), QSize(1280, 720)}) {
            for (const bool highResolution : {false, true}) {
                const OverlayLayout result =
                    zr::layoutOverlay(state, metrics(tile, highResolution));
                for (const zr::OverlayElement& element : result.elements) {
                    QVERIFY(!element.isShown() || QRect(QPoint(), tile).contains(element.rect));
                    shown += element.isShown() ? 1 : 0;
                }
                for (const OverlayPart a : apart) {
                    for (const OverlayPart b : apart) {
                        // On a picture's place the avatar stays where it is below the marks.
                        const bool marks = a == OverlayPart::Avatar
                                           && (b == OverlayPart::Look || b == OverlayPart::Hand);
                        if (a >= b || marks)
                            continue;
                        const QRect common = result.at(a).rect & result.at(b).rect;
                        QVERIFY2(common.isEmpty(),
                                 qPrintable(QStringLiteral("parts %1 and %2, state %3, %4 x %5")
                                                .arg(static_cast<int>(a))
                                                .arg(static_cast<int>(b))
                                                .arg(bits)
                                                .arg(tile.width())
                                                .arg(tile.height())));
                    }
                }
            }
        }
    }
    QVERIFY(shown > 20000);
}

void TestOverlayLayout::marksAndHand()
{
    OverlayState state = alice();
    state.bSmall = false;
    state.bHand = true;
    const QSize tile(640, 360);
    QCOMPARE(layout(state, tile).at(OverlayPart::Hand).rect, QRect(5, 5, 48, 48));
    state.look = LookMark::LockLook;
    QCOMPARE(layout(state, tile).at(OverlayPart::Look).rect, QRect(16, 15, 150, 48));
    QCOMPARE(layout(state, tile).at(OverlayPart::Hand).rect, QRect(171, 14, 48, 48));
    QCOMPARE(layout(state, tile).at(OverlayPart::Look).text, QStringLiteral("锁定看TA"));
    state.look = LookMark::Unlabelled; // keeps its place
    QCOMPARE(layout(state, tile).at(OverlayPart::Hand).rect, QRect(171, 14, 48, 48));
    QVERIFY(layout(state, tile).at(OverlayPart::Look).text.isEmpty());
    state.bSmall = true;
    QCOMPARE(layout(state, tile).at(OverlayPart::Look).rect, QRect(11, 10, 105, 33));
    state.bNoMenu = true; // not one of several
    QCOMPARE(layout(state, tile).at(OverlayPart::Look).rect, QRect(16, 15, 150, 48));
    QVERIFY(!layout(state, tile).at(OverlayPart::More).isShown());
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
