// How the overlay of a tile is to look in each of its states.
//
// contactsheet.sh makes one picture of the goldens, to be looked at.
#include "golden.h"
#include "testsupport.h"

#include "overlayimages.h"
#include "overlaypainter.h"
#include "watermarkcache.h"

#include <QPainter>

#include <array>
#include <vector>

using zr::LookMark;
using zr::OverlayState;

namespace {

/// A tile over something that stands for the participant's picture, with bars above and below.
QPixmap drawTile(const OverlayState& state, const QSize& size, const OverlayImages& images)
{
    QPixmap tile(size);
    tile.fill(QColor(110, 120, 100));
    QPainter painter(&tile);
    painter.setFont(QApplication::font());
    painter.setClipRect(tile.rect());
    const zr::OverlayLayout layout = zr::layoutOverlay(state, overlayMetrics(size, images));
    QPainterPath bars;
    const int bar = size.height() / 12;
    bars.addRect(0, 0, size.width(), bar);
    bars.addRect(0, size.height() - bar, size.width(), bar);
    WatermarkCache watermark;
    paintOverlay(painter, {layout, images, bars, 50, watermark});
    return tile;
}

using States = std::vector<OverlayState>;

const QString kMark = QStringLiteral("张三-138****5678");

/// Tiles side by side, all of one size.
QPixmap drawSheet(const States& states, const QSize& tile, bool b4K)
{
    constexpr int kGap = 4;
    constexpr int kColumns = 4;
    const OverlayImages images(b4K ? QStringLiteral(":/pic4k/") : QStringLiteral(":/pic/"), b4K);
    const QSize size = b4K ? tile * 2 : tile;
    const QSize step = size + QSize(kGap, kGap);
    const int count = static_cast<int>(states.size());
    QPixmap all(std::min(kColumns, count) * step.width() - kGap,
                (count + kColumns - 1) / kColumns * step.height() - kGap);
    all.fill(Qt::black);
    QPainter painter(&all);
    for (int i = 0; i < count; ++i)
        painter.drawPixmap(i % kColumns * step.width(), i / kColumns * step.height(),
                           drawTile(states[std::size_t(i)], size, images));
    return all;
}

OverlayState alice(bool bSmall)
{
    OverlayState state;
    state.bPerson = state.bPicture = state.bCamera = true;
    state.bSmall = bSmall;
    state.name = QStringLiteral("爱丽丝");
    return state;
}

/// Each state that a person tells from the others, at one size.
States eachState(bool bSmall)
{
    std::array<OverlayState, 12> states;
    states.fill(alice(bSmall));
    auto& [plain, muted, host, administrator, allLook, lockLook, weak, says, shared, waiting,
           paused, marked] = states;
    muted.bMute = lockLook.bMute = true;
    for (OverlayState* off : {&muted, &administrator, &says, &waiting})
        off->bPicture = false;
    host.bSelf = host.bHand = true;
    host.iRole = 1;
    administrator.iRole = 2;
    administrator.iColor = administrator.iNetLevel = 1;
    allLook.look = LookMark::AllLook;
    allLook.bHand = allLook.bSpeaking = true;
    lockLook.look = LookMark::LockLook;
    lockLook.bBorder = waiting.bBorder = true;
    weak.bSpinner = true;
    weak.iNetLevel = 2;
    weak.resolution = QStringLiteral("1280*720");
    says.bSelf = true;
    says.iBubbleColor = 2;
    says.bubble = QStringLiteral("大家好，我们开始今天的会议");
    for (OverlayState* share : {&shared, &waiting, &paused, &marked})
        share->bShare = true;
    paused.bPaused = true;
    paused.name = QStringLiteral("尼古拉斯特斯拉博士");
    marked.watermark = kMark;
    return {states.begin(), states.end()};
}

States names()
{
    States states;
    for (const char* const name :
         {"", "Al", "Wolfeschlegelsteinhausenbergerdorff Senior",
          "中华人民共和国驻外大使馆文化参赞处", "李Alexander明 (Product)",
          "Иванов Пётр Александрович", "عبد الرحمن", "عبد الرحمن بن محمد بن خلدون الحضرمي",
          // Symbols that the font has; whether another one helps it out depends on the machine.
          "☺★ Família ♥♪☎☺★♥♪☎☺★♥♪☎", "Zoe\u0308 \n first\tline"}) {
        for (const bool self : {false, true}) {
            OverlayState& state = states.emplace_back(alice(true));
            state.name = QString::fromUtf8(name);
            state.bSelf = self;
            state.bPicture = state.name.size() < 20 && !self;
            state.iRole = self ? 1 : 0;
            state.iNetLevel = self ? 5 : 3;
        }
    }
    return states;
}

/// The microphone at each level and muted, and the network at each level.
States levels()
{
    States states;
    for (int i = 0; i <= 7; ++i) {
        OverlayState& state = states.emplace_back(alice(true));
        state.bMute = i == 0;
        state.iAudioLevel = std::max(1, i);
        state.iNetLevel = i;
    }
    return states;
}

States tinyTiles()
{
    States states;
    for (int i = 0; i < 8; ++i) {
        OverlayState& state = states.emplace_back(alice(true));
        state.iRole = i / 4;
        state.bSelf = (i & 2) != 0;
        state.bPicture = state.bHand = (i & 1) == 0;
        state.iNetLevel = 2;
        state.bubble = i == 3 ? QStringLiteral("你好") : QString();
    }
    return states;
}

States fullTiles()
{
    States states{alice(false), alice(false)};
    states[0].iRole = 1;
    states[0].look = LookMark::AllLook;
    states[0].bHand = states[0].bSelf = states[0].bSpeaking = true;
    states[0].bubble =
        QStringLiteral("The quick brown fox jumps over the lazy dog while everybody in "
                       "the meeting is looking on, and nobody says a word about it.\n"
                       "敏捷的棕色狐狸跳过了懒狗，大家都看着，谁也没说什么。");
    states[1].bShare = true;
    states[1].watermark = kMark;
    return states;
}

struct Golden
{
    const char* name;
    QSize tile;
    bool b4K; ///< also at double size
    States (*states)();
};

const Golden kGoldens[] = {
    {"states_small", {320, 180}, true, [] { return eachState(true); }},
    {"states_large", {640, 360}, false, [] { return eachState(false); }},
    {"names", {320, 180}, false, names},
    {"levels", {320, 60}, true, levels},
    {"tiny", {160, 90}, true, tinyTiles},
    {"full", {1280, 720}, false, fullTiles},
};

/// A shared document with a watermark, painted where the clip is.
QImage marked(WatermarkCache& cache, const QSize& tile, int dpi, const QString& text,
              const QRect& clip = {})
{
    QImage image(tile, QImage::Format_ARGB32_Premultiplied);
    image.setDotsPerMeterX(qRound(dpi / 0.0254));
    image.setDotsPerMeterY(qRound(dpi / 0.0254));
    image.fill(QColor(28, 32, 39));
    QPainter painter(&image);
    painter.setClipRect(clip, clip.isEmpty() ? Qt::NoClip : Qt::ReplaceClip);
    cache.paint(painter, tile, text);
    return image;
}

} // namespace

class TestOverlayGolden : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(zrtest::useGoldenFont()); }

    void looksAsItShould()
    {
        for (const Golden& golden : kGoldens) {
            for (const bool b4K : {false, true}) {
                if (b4K && !golden.b4K)
                    continue;
                ZR_COMPARE_GOLDEN(drawSheet(golden.states(), golden.tile, b4K),
                                  QByteArray("overlay_") + golden.name + (b4K ? "_4k" : ""));
            }
        }
    }

    /// Slices of the text are copied to each place: seams would show, and letters at an edge lack.
    void watermarkLooksLikeItsGoldens()
    {
        const struct
        {
            const char* name;
            QSize tile;
            int dpi;
            QString text;
        } rows[] = {
            {"watermark_4k", {640, 360}, 192, kMark},
            {"watermark_long", {640, 360}, 96, QString("测试 watermark ").repeated(700)},
            {"watermark_upright", {200, 700}, 96, "Alice"},
            {"watermark_edge", {610, 400}, 96, kMark}, // letters lie across it
        };
        for (const auto& row : rows) {
            WatermarkCache cache;
            ZR_COMPARE_GOLDEN(QPixmap::fromImage(marked(cache, row.tile, row.dpi, row.text)),
                              row.name);
        }
    }

    void watermarkDrawsWhatHasChangedInTheClipAndKeepsLittle()
    {
        const QSize tile(640, 360);
        const QRect part(200, 100, 300, 150);
        WatermarkCache cache;
        QImage expected = marked(cache, tile, 96, {});
        QPainter(&expected).drawImage(part.topLeft(), marked(cache, tile, 96, "Alice"), part);
        QCOMPARE(marked(cache, tile, 96, "Alice", part), expected);
        QCOMPARE(cache.drawings(), 1);
        const struct
        {
            QSize tile;
            int dpi;
            QString text;
            int drawings; ///< so far
            int mostKiB;
        } rows[] = {
            {{1280, 720}, 96, "Alice", 1, 512}, {tile, 192, "Alice", 2, 512},
            {tile, 192, "Bob", 3, 512},         {tile, 192, {}, 3, 512},
            {{1920, 1080}, 96, kMark, 4, 512},  {{1920, 1080}, 96, QString(10000, 'W'), 5, 4096},
        };
        for (const auto& row : rows) {
            marked(cache, row.tile, row.dpi, row.text);
            QCOMPARE(cache.drawings(), row.drawings);
            QVERIFY2(cache.bytes() < row.mostKiB * 1024,
                     qPrintable(QString::number(cache.bytes())));
        }
    }
};

ZR_WIDGET_TEST_MAIN(TestOverlayGolden)
#include "tst_overlaygolden.moc"
