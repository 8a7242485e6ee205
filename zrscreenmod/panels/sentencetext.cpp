#include "sentencetext.h"

#include "qzrscreenconfig.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace {

// Base sizes in pixels, scaled on a high-resolution screen.
constexpr int kItemFont = 18;
constexpr int kAvatar = 40;
constexpr int kAvatarGap = 10;
constexpr int kGap = 10;
constexpr int kLeft = 5;
constexpr int kSmallFontPx = 14; ///< not scaled

/// As many pieces of a text keep their glyphs: more than any screen shows.
constexpr size_t kKeptPieces = 8;

QFont fontOf(int pixelSize)
{
    QFont font(QStringLiteral("Microsoft YaHei"));
    font.setPixelSize(pixelSize);
    return font;
}

std::vector<zr::BrokenLine> linesOf(const QTextLayout& layout)
{
    std::vector<zr::BrokenLine> lines;
    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        lines.push_back({line.textLength(), line.naturalTextWidth()});
    }
    return lines;
}

} // namespace

std::shared_ptr<const SubtitleStyle> SubtitleStyle::shared()
{
    static std::weak_ptr<const SubtitleStyle> s_style;
    std::shared_ptr<const SubtitleStyle> style = s_style.lock();
    if (!style || style->bHighResolution != QZRScreenConfig::getInstance()->is4K()) {
        style = std::make_shared<const SubtitleStyle>();
        s_style = style;
    }
    return style;
}

SubtitleStyle::SubtitleStyle()
{
    const QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    itemFont = fontOf(hub->scaled(kItemFont));
    smallFont = fontOf(kSmallFontPx);
    bHighResolution = hub->is4K();
    const QFontMetrics font(itemFont);
    metrics = {hub->scaled(kAvatar), hub->scaled(kAvatarGap), hub->scaled(kGap),
               hub->scaled(kLeft),   font.height(),           font.lineSpacing()};
    ascentPx = font.ascent();
    averageCharPx = font.averageCharWidth();
}

SentenceText::SentenceText()
    : m_pStyle(SubtitleStyle::shared())
    , m_breaks(m_pStyle->averageCharPx, m_pStyle->itemFont.pixelSize())
{
}

void SentenceText::setText(const QString& text)
{
    m_breaks.setText(text);
    dropUnbrokenGlyphs();
}

void SentenceText::setRoom(double roomPx)
{
    m_breaks.setRoom(roomPx);
    dropUnbrokenGlyphs();
}

void SentenceText::dropUnbrokenGlyphs()
{
    const auto pieces = static_cast<int>(m_breaks.pieces().size());
    m_layouts.erase(m_layouts.lower_bound(pieces), m_layouts.end());
}

void SentenceText::shapeLines(int lines)
{
    while (!isComplete() && knownLines() < lines) {
        std::unique_ptr<QTextLayout> layout;
        m_breaks.breakNext([&](int start, int units) {
            layout = shaped(start, units);
            return linesOf(*layout);
        });
        keep(static_cast<int>(m_breaks.pieces().size()) - 1, std::move(layout));
    }
}

std::unique_ptr<QTextLayout> SentenceText::shaped(int start, int units) const
{
    auto layout = std::make_unique<QTextLayout>(text().mid(start, units), m_pStyle->itemFont);
    layout->setCacheEnabled(true); // scrolling shapes nothing anew
    QTextOption option(Qt::AlignLeft);
    option.setWrapMode(QTextOption::WrapAnywhere);
    layout->setTextOption(option);
    qreal y = 0;
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(room());
        // Letters of another font may reach higher; the baselines are even all the same.
        line.setPosition({0, y + m_pStyle->ascentPx - qRound(line.ascent())});
        y += linePx();
    }
    layout->endLayout();
    return layout;
}

const QTextLayout& SentenceText::layoutOf(int piece)
{
    if (m_layouts.count(piece) == 0) {
        const zr::TextPiece& part = m_breaks.pieces()[static_cast<size_t>(piece)];
        keep(piece, shaped(part.start, part.shapedUnits));
    }
    return *m_layouts[piece];
}

void SentenceText::keep(int piece, std::unique_ptr<QTextLayout> layout)
{
    m_layouts[piece] = std::move(layout);
    if (m_layouts.size() <= kKeptPieces)
        return;
    const auto last = std::prev(m_layouts.end());
    const bool atEnd = last->first - piece > piece - m_layouts.begin()->first;
    m_layouts.erase(atEnd ? last : m_layouts.begin());
}

void SentenceText::draw(QPainter* painter, const QPointF& at, const QRectF& exposed)
{
    // A line more at both ends: letters of another font may reach out of theirs.
    const int first = static_cast<int>(std::floor((exposed.top() - at.y()) / linePx())) - 1;
    const int last = static_cast<int>(std::ceil((exposed.bottom() - at.y()) / linePx())) + 1;
    const std::vector<zr::TextPiece>& pieces = m_breaks.pieces();
    for (size_t i = 0; i < pieces.size(); ++i) {
        const int from = std::max(first, pieces[i].firstLine);
        const int to = std::min(last, pieces[i].firstLine + pieces[i].lines);
        if (from >= to)
            continue;
        const QTextLayout& layout = layoutOf(static_cast<int>(i));
        const QPointF top(at.x(), at.y() + pieces[i].firstLine * linePx());
        for (int line = from; line < to; ++line)
            layout.lineAt(line - pieces[i].firstLine).draw(painter, top);
    }
}

void SentenceText::dropGlyphs()
{
    if (text().size() > zr::kTextPieceUnits)
        m_layouts.clear();
}
