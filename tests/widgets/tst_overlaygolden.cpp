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

/// Tiles side by side, all of one size.
class Sheet
{
public:
    Sheet(const QSize& tile, bool b4K)
        : m_tile(b4K ? tile * 2 : tile)
        , m_images(b4K ? QStringLiteral(":/pic4k/") : QStringLiteral(":/pic/"), b4K)
    {
    }

    void add(const OverlayState& state)
    {
        QPixmap picture(m_tile);
        // Stands for the participant's picture, with bars above and below.
        picture.fill(QColor(110, 120, 100));
        QPainter painter(&picture);
        painter.setFont(QApplication::font());
        painter.setClipRect(picture.rect());
        const zr::OverlayLayout layout = zr::layoutOverlay(state, overlayMetrics(m_tile, m_images));
        QPainterPath bars;
        const int bar = m_tile.height() / 12;
        bars.addRect(0, 0, m_tile.width(), bar);
        bars.addRect(0, m_tile.height() - bar, m_tile.width(), bar);
        WatermarkCache watermark;
        paintOverlay(painter, {layout, m_images, bars, 50, watermark});
        const QPoint at = place(static_cast<int>(m_vecTiles.size()));
        for (const QRect& rect : textAreas(layout))
            m_vecTextAreas.push_back(rect.translated(at));
        m_vecTiles.push_back(picture);
    }

    QPixmap pixmap() const
    {
        const int count = static_cast<int>(m_vecTiles.size());
        const int rows = (count + kColumns - 1) / kColumns;
        QPixmap all(std::min(kColumns, count) * (m_tile.width() + kGap) - kGap,
                    rows * (m_tile.height() + kGap) - kGap);
        all.fill(Qt::black);
        QPainter painter(&all);
        for (int i = 0; i < count; ++i)
            painter.drawPixmap(place(i), m_vecTiles[static_cast<std::size_t>(i)]);
        return all;
    }
    /// What looks otherwise with another font, by no more than the font.
    const QVector<QRect>& textAreas() const { return m_vecTextAreas; }

private:
    static constexpr int kGap = 4;
    static constexpr int kColumns = 4;

    QPoint place(int i) const
    {
        return {(i % kColumns) * (m_tile.width() + kGap),
                (i / kColumns) * (m_tile.height() + kGap)};
    }
    QVector<QRect> textAreas(const zr::OverlayLayout& layout) const
    {
        QVector<QRect> areas;
        for (std::size_t i = 0; i < layout.elements.size(); ++i) {
            const zr::OverlayElement& element = layout.elements[i];
            const auto part = static_cast<zr::OverlayPart>(i);
            QRect area = element.text.isEmpty() ? QRect() : element.textRect;
            // These are as wide as their text.
            if (part == zr::OverlayPart::Name)
                area.setRight(layout.at(zr::OverlayPart::More).rect.left() - 1);
            else if (part == zr::OverlayPart::Caption || part == zr::OverlayPart::Bubble)
                area.setRight(m_tile.width() - 1);
            else if (part == zr::OverlayPart::Watermark)
                area = element.rect;
            else if (part == zr::OverlayPart::Avatar) // the circle around it counts
                area = area.adjusted(area.width() / 8, area.width() / 4, -area.width() / 8,
                                     -area.width() / 4);
            if (!area.isEmpty())
                areas.push_back(area);
        }
        return areas;
    }

    const QSize m_tile;
    const OverlayImages m_images;
    std::vector<QPixmap> m_vecTiles;
    QVector<QRect> m_vecTextAreas;
};

OverlayState alice(bool bSmall)
{
    OverlayState state;
    state.bPerson = state.bPicture = state.bCamera = true;
    state.bSmall = bSmall;
    state.name = QStringLiteral("爱丽丝");
    return state;
}

/// Each state that a person tells from the others, at one size.
void addStates(Sheet& sheet, bool bSmall)
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
    marked.watermark = QStringLiteral("张三-138****5678");
    for (const OverlayState& state : states)
        sheet.add(state);
}

void addNames(Sheet& sheet)
{
    const QString names[] = {
        QString(),
        QStringLiteral("Al"),
        QStringLiteral("Wolfeschlegelsteinhausenbergerdorff Senior"),
        QStringLiteral("中华人民共和国驻外大使馆文化参赞处"),
        QStringLiteral("李Alexander明 (Product)"),
        QStringLiteral("Иванов Пётр Александрович"),
        QStringLiteral("عبد الرحمن"),
        QStringLiteral("عبد الرحمن بن محمد بن خلدون الحضرمي"),
        // Symbols that the font has; whether it is helped out by another one depends on the
        // machine.
        QStringLiteral("☺★ Família ♥♪☎☺★♥♪☎☺★♥♪☎☺★♥♪☎"),
        QStringLiteral("Zoe\u0308 \n first\tline"),
    };
    for (const QString& name : names) {
        for (const bool self : {false, true}) {
            OverlayState state = alice(true);
            state.name = name;
            state.bSelf = self;
            state.bPicture = name.size() < 20 && !self;
            state.iRole = self ? 1 : 0;
            state.iNetLevel = self ? 5 : 3;
            sheet.add(state);
        }
    }
}

/// The microphone at each level and muted, and the network at each level.
void addLevels(Sheet& sheet)
{
    for (int i = 0; i <= 7; ++i) {
        OverlayState state = alice(true);
        state.bMute = i == 0;
        state.iAudioLevel = std::max(1, i);
        state.iNetLevel = i;
        sheet.add(state);
    }
}

void addTiny(Sheet& sheet)
{
    for (int i = 0; i < 8; ++i) {
        OverlayState state = alice(true);
        state.iRole = i / 4;
        state.bSelf = (i & 2) != 0;
        state.bPicture = state.bHand = (i & 1) == 0;
        state.iNetLevel = 2;
        state.bubble = i == 3 ? QStringLiteral("你好") : QString();
        sheet.add(state);
    }
}

void addFull(Sheet& sheet)
{
    OverlayState state = alice(false);
    state.iRole = 1;
    state.look = LookMark::AllLook;
    state.bHand = state.bSelf = state.bSpeaking = true;
    state.bubble = QStringLiteral("The quick brown fox jumps over the lazy dog while everybody in "
                                  "the meeting is looking on, and nobody says a word about it.\n"
                                  "敏捷的棕色狐狸跳过了懒狗，大家都看着，谁也没说什么。");
    sheet.add(state);
    OverlayState share = alice(false);
    share.bShare = true;
    share.watermark = QStringLiteral("张三-138****5678");
    sheet.add(share);
}

struct Golden
{
    const char* name;
    QSize tile;
    bool b4K; ///< also at double size
    void (*fill)(Sheet&);
};

const Golden kGoldens[] = {
    {"states_small", {320, 180}, true, [](Sheet& sheet) { addStates(sheet, true); }},
    {"states_large", {640, 360}, false, [](Sheet& sheet) { addStates(sheet, false); }},
    {"names", {320, 180}, false, addNames},
    {"levels", {320, 60}, true, addLevels},
    {"tiny", {160, 90}, true, addTiny},
    {"full", {1280, 720}, false, addFull},
};

} // namespace

class TestOverlayGolden : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void looksAsItShould_data();
    void looksAsItShould();
    void iconsAreToldApart();

private:
    bool m_bFont = false; ///< texts look as in the goldens
};

void TestOverlayGolden::initTestCase()
{
    const bool installed = zrtest::useGoldenFont();
    const bool onWindows = QSysInfo::kernelType() == QLatin1String("winnt"); // draws it otherwise
    QVERIFY2(installed || onWindows, "the package fonts-noto-cjk is not installed");
    m_bFont = !onWindows;
}

void TestOverlayGolden::looksAsItShould_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("b4K");
    for (int i = 0; i < static_cast<int>(std::size(kGoldens)); ++i) {
        QTest::newRow(kGoldens[i].name) << i << false;
        if (kGoldens[i].b4K)
            QTest::addRow("%s_4k", kGoldens[i].name) << i << true;
    }
}

void TestOverlayGolden::looksAsItShould()
{
    QFETCH(int, index);
    QFETCH(bool, b4K);
    const Golden& golden = kGoldens[index];
    if (golden.fill == addNames && !m_bFont)
        QSKIP("the bars are as wide as the font makes them");
    Sheet sheet(golden.tile, b4K);
    golden.fill(sheet);
    const QString wrong = zrtest::compareGolden(
        sheet.pixmap(), QStringLiteral("overlay_") + QString::fromUtf8(QTest::currentDataTag()),
        m_bFont ? QVector<QRect>() : sheet.textAreas());
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

/// The tolerance forgives smoothing, and neither an icon that has moved nor a neighbour's.
void TestOverlayGolden::iconsAreToldApart()
{
    const auto onTile = [](const QPixmap& icon, int shift) {
        QImage image(60, 60, QImage::Format_RGB32);
        image.fill(QColor(60, 64, 58));
        QPainter(&image).drawPixmap(6 + shift, 6, icon);
        return image;
    };
    const OverlayImages images(QStringLiteral(":/pic/"), false);
    for (int level = 0; level <= 7; ++level) {
        const QImage icon = onTile(images.audio(level, true), 0);
        QVERIFY(!zrtest::looksLike(onTile(images.audio((level + 1) % 8, true), 0), icon));
        QVERIFY(!zrtest::looksLike(onTile(images.audio(level, true), 1), icon));
    }
    for (const QPixmap& icon : {images.more(true), images.hand(true), images.spinner()})
        QVERIFY(!zrtest::looksLike(onTile(icon, 1), onTile(icon, 0)));
}

ZR_WIDGET_TEST_MAIN(TestOverlayGolden)
#include "tst_overlaygolden.moc"
