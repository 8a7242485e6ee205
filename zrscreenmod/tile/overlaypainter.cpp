#include "overlaypainter.h"

#include "overlayimages.h"
#include "personorder.h"
#include "screenscale.h"
#include "subtitlerules.h"
#include "watermarkcache.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <array>

using zr::OverlayElement;
using zr::OverlayPart;

namespace {

const QColor kBackground(28, 32, 39);
const QColor kNameBar(12, 16, 23, 128);
const QColor kLookMark(0, 0, 0, 128);
const QColor kBubble(45, 48, 56, 200);
const QColor kSpinnerTint(76, 8, 10, 15);

constexpr int kMarkRadius = 10;

/// Of all texts of the overlay.
QFont overlayFont(int pixelSize)
{
    QFont font(QStringLiteral("微软雅黑"));
    font.setPixelSize(std::max(1, pixelSize));
    return font;
}

class Painter
{
public:
    Painter(QPainter& painter, const OverlayPaint& paint)
        : m_p(painter)
        , m_paint(paint)
    {
    }

    void paint(OverlayPart part, const OverlayElement& element)
    {
        m_p.save();
        switch (part) {
        case OverlayPart::Cover:
            paintCover(element);
            break;
        case OverlayPart::Avatar:
            paintAvatar(element);
            break;
        case OverlayPart::Badge:
            paintBadge(element);
            break;
        case OverlayPart::NameBar:
            paintBar(element.rect);
            break;
        case OverlayPart::Audio:
            m_p.drawPixmap(element.rect, m_paint.images.audio(element.variant, isSmall()));
            break;
        case OverlayPart::Name:
            drawText(element, Qt::AlignLeft);
            break;
        case OverlayPart::Network:
            paintNetwork(element);
            break;
        case OverlayPart::Spinner:
            paintSpinner(element);
            break;
        case OverlayPart::More:
            m_p.drawPixmap(element.rect, m_paint.images.more(isSmall()));
            break;
        case OverlayPart::Paused:
            drawText(element, Qt::AlignHCenter);
            break;
        case OverlayPart::Caption:
            paintBar(element.rect);
            drawText(element, Qt::AlignLeft);
            break;
        case OverlayPart::Watermark:
            m_paint.watermark.paint(m_p, element.rect.size(), element.text);
            break;
        case OverlayPart::Resolution:
            drawText(element, Qt::AlignRight);
            break;
        case OverlayPart::Look:
            paintLook(element);
            break;
        case OverlayPart::Hand:
            m_p.drawPixmap(element.rect, m_paint.images.hand(isSmall()));
            break;
        case OverlayPart::Bubble:
            paintBubble(element);
            break;
        case OverlayPart::Border:
            paintBorder(element);
            break;
        case OverlayPart::Count:
            break;
        }
        m_p.restore();
    }

private:
    bool isSmall() const { return m_paint.layout.bSmall; }
    int scaled(int base) const
    {
        return zr::scaledSize(base, 2.0F, m_paint.images.isHighResolution());
    }

    void drawText(const OverlayElement& element, Qt::Alignment horizontally)
    {
        m_p.setPen(Qt::white);
        m_p.setFont(overlayFont(element.fontPx));
        const auto place = static_cast<int>(horizontally | Qt::AlignVCenter);
        m_p.drawText(element.textRect, place | Qt::TextSingleLine, element.text);
    }
    void fillRounded(const QRect& rect, const QColor& color)
    {
        m_p.setRenderHint(QPainter::Antialiasing);
        m_p.setPen(Qt::NoPen);
        m_p.setBrush(color);
        m_p.drawRoundedRect(rect, scaled(kMarkRadius), scaled(kMarkRadius));
    }
    void paintCover(const OverlayElement& cover);
    void paintAvatar(const OverlayElement& avatar);
    void paintBadge(const OverlayElement& badge);
    void paintBar(const QRect& bar);
    void paintNetwork(const OverlayElement& network);
    void paintSpinner(const OverlayElement& spinner);
    void paintLook(const OverlayElement& look);
    void paintBubble(const OverlayElement& bubble);
    void paintBorder(const OverlayElement& border);

    QPainter& m_p;
    const OverlayPaint& m_paint;
};

void Painter::paintCover(const OverlayElement& cover)
{
    if (cover.variant == static_cast<int>(zr::Cover::Full))
        m_p.fillRect(cover.rect, kBackground);
    else
        m_p.fillPath(m_paint.bars, kBackground);
}

void Painter::paintAvatar(const OverlayElement& avatar)
{
    m_p.setRenderHint(QPainter::Antialiasing);
    m_p.setPen(Qt::NoPen);
    m_p.setBrush(avatarColor(avatar.variant));
    m_p.drawEllipse(avatar.rect);
    if (!avatar.text.isEmpty()) {
        drawText(avatar, Qt::AlignHCenter);
        return;
    }
    // Head and shoulders of somebody, with the proportions of the drawing headcolorblue_120.
    m_p.setBrush(Qt::white);
    m_p.translate(avatar.rect.topLeft());
    m_p.scale(avatar.rect.width() / 120.0, avatar.rect.height() / 120.0);
    m_p.drawEllipse(QRectF(42, 28, 36, 36));
    m_p.drawChord(QRectF(28, 70, 64, 48), 0, 180 * 16);
}

void Painter::paintBadge(const OverlayElement& badge)
{
    m_p.fillRect(badge.rect,
                 badge.variant == zr::kRoleHost ? QColor(89, 152, 255) : QColor(228, 143, 70));
    drawText(badge, Qt::AlignHCenter);
}

void Painter::paintBar(const QRect& bar)
{
    // Only the top right corner is round.
    const int radius = scaled(4);
    const int corner = scaled(5);
    QPainterPath outline;
    outline.setFillRule(Qt::WindingFill);
    outline.addRoundedRect(bar, radius, radius);
    outline.addRect(bar.left(), bar.top(), corner, corner);
    outline.addRect(bar.left(), bar.bottom() + 1 - corner, corner, corner);
    outline.addRect(bar.right() + 1 - corner, bar.bottom() + 1 - corner, corner, corner);
    m_p.setRenderHint(QPainter::Antialiasing);
    m_p.fillPath(outline, kNameBar);
}

void Painter::paintNetwork(const OverlayElement& network)
{
    constexpr int kBars = 5;
    const QColor idle(216, 204, 204, 204);
    // A good network is not shown, so there are only two colours.
    const QColor color = network.variant <= 2 ? QColor(255, 100, 100) : QColor(248, 169, 2);
    const int lit = std::clamp(network.variant, 1, kBars);
    const QRect& rect = network.rect;
    const int penWidth = scaled(2);
    const int step = (rect.width() - penWidth) / (kBars - 1);
    for (int i = 0; i < kBars; ++i) {
        // From two sevenths of the icon's height: the first bar alone has to be seen.
        const int height = rect.height() * (2 * (kBars - 1) + i * 5) / (7 * (kBars - 1));
        m_p.fillRect(rect.left() + i * step, rect.bottom() + 1 - height, penWidth, height,
                     i < lit ? color : idle);
    }
}

void Painter::paintSpinner(const OverlayElement& spinner)
{
    m_p.fillRect(spinner.rect, kSpinnerTint);
    const QRect& target = spinner.textRect;
    const QPixmap& image = m_paint.images.spinner();
    if (image.isNull() || target.isEmpty())
        return;
    const int side = std::min(image.width(), image.height());
    const QRect square((image.width() - side) / 2, (image.height() - side) / 2, side, side);
    m_p.setRenderHint(QPainter::SmoothPixmapTransform);
    m_p.translate(QRectF(target).center());
    m_p.rotate(m_paint.iSpinnerAngle);
    m_p.drawPixmap(
        QRectF(-target.width() / 2.0, -target.height() / 2.0, target.width(), target.height()),
        image, square);
}

void Painter::paintLook(const OverlayElement& look)
{
    if (look.text.isEmpty())
        return;
    fillRounded(look.rect, kLookMark);
    drawText(look, Qt::AlignHCenter);
}

void Painter::paintBubble(const OverlayElement& bubble)
{
    const int dot = scaled(10);
    const QRect& rect = bubble.rect;
    fillRounded(rect, kBubble);
    const QStringList lines = bubble.text.split(QLatin1Char('\n'));
    const int line = bubble.fontPx * 3 / 2;
    const int secondFontPx = bubble.fontPx / 18 * 15;
    const int secondLine = secondFontPx * 3 / 2;
    const int height = lines.size() > 1 ? line + secondLine : line;
    OverlayElement text;
    text.fontPx = bubble.fontPx;
    text.text = lines.first();
    text.textRect = bubble.textRect;
    text.textRect.setTop(rect.top() + (rect.height() - height) / 2);
    text.textRect.setHeight(line);
    m_p.setBrush(avatarColor(bubble.variant));
    m_p.drawEllipse(rect.left() + scaled(15), text.textRect.top() + (line - dot) / 2, dot, dot);
    drawText(text, Qt::AlignLeft);
    if (lines.size() > 1) {
        text.text = lines.last();
        text.fontPx = secondFontPx;
        text.textRect.translate(0, line);
        text.textRect.setHeight(secondLine);
        drawText(text, Qt::AlignLeft);
    }
}

void Painter::paintBorder(const OverlayElement& border)
{
    const QColor color = border.variant == static_cast<int>(zr::Border::Speaking)
                             ? QColor(0, 255, 0)
                             : QColor(10, 10, 10);
    for (const QRect& strip : zr::borderRects(border.rect.size(), border.textRect.left()))
        m_p.fillRect(strip, color);
}

} // namespace

zr::OverlayMetrics overlayMetrics(const QSize& tile, const OverlayImages& images)
{
    const zr::TextWidth width = [](const QString& text, int fontPx) {
        const QFontMetrics font(overlayFont(fontPx));
        return std::max(font.boundingRect(text).width(), font.horizontalAdvance(text));
    };
    return {tile, images.isHighResolution(), {images.sizes(false), images.sizes(true)}, width};
}

void paintOverlay(QPainter& painter, const OverlayPaint& paint)
{
    const QRectF clip = painter.clipBoundingRect();
    for (std::size_t i = 0; i < paint.layout.elements.size(); ++i) {
        const OverlayElement& element = paint.layout.elements[i];
        if (element.isShown() && clip.intersects(element.rect))
            Painter(painter, paint).paint(static_cast<OverlayPart>(i), element);
    }
}

QColor avatarColor(int index)
{
    static constexpr std::array<QRgb, 4> kColors{qRgb(112, 98, 248), qRgb(94, 176, 242),
                                                 qRgb(95, 203, 146), qRgb(195, 109, 241)};
    const int known = zr::repeatedIndex(index, static_cast<int>(kColors.size()));
    return QColor(kColors[static_cast<std::size_t>(known)]);
}
