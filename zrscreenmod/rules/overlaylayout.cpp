#include "overlaylayout.h"

#include "personorder.h"
#include "screenscale.h"
#include "texts.h"

#include <algorithm>
#include <tuple>

namespace zr {

namespace {

constexpr int kRoleAdministrator = 2;
/// The network icon warns: from this level on there is nothing to tell.
constexpr int kGoodNetLevel = 4;
constexpr int kBubbleLines = 2;
constexpr int kPausedNameCharacters = 7;

/// The sizes of the elements on a tile of one of two sizes. Base pixels: twice as many on a screen
/// of high resolution.
struct Sizes
{
    int barHeight; ///< of the name, the badge beside it and a share's caption
    int nameFont;
    int textInset; ///< by which the name stands nearer to the microphone
    int badgeWidth;
    int badgeFont;
    int avatar;
    int avatarFont; ///< on an avatar of full size
    double look;    ///< the mark, to that of a large tile
    int captionFont;
    QSize paused;
    int pausedFont;
};
constexpr Sizes kLarge{48, 26, 0, 94, 22, 120, 36, 1.0, 26, {620, 40}, 22};
constexpr Sizes kSmall{40, 18, 5, 68, 18, 60, 22, 0.7, 20, {220, 20}, 14};

// The same on every tile; base pixels, too.
constexpr int kMargin = 5;   ///< between an element and the edge, a bar's or the tile's
constexpr int kGap = 10;     ///< between two elements
constexpr int kClear = 4;    ///< around what may come close
constexpr int kNameEnd = 20; ///< from the name to the end of a bar that has the room
constexpr int kMenuGap = 30; ///< from such a bar to the menu's button
constexpr int kSelfGap = 6;  ///< to one's own mark
constexpr QSize kStackedBadge(52, 20);
constexpr int kStackedBadgeFont = 14;
constexpr QSize kNetwork(18, 14);
constexpr int kWider = 20; ///< is the bar beside it; twice that on a screen of high resolution
constexpr int kSmallestAvatar = 16;
constexpr QRect kLook(16, 15, 150, 48);
constexpr int kDot = 10; ///< before what is said
constexpr int kBubblePadding = 15;
constexpr QSize kSmallestBubble(120, 50);
constexpr int kBubbleFont = 18; ///< of the newest line; twice that for larger text
constexpr int kOlderFont = 15;  ///< of the line above, beside 18
constexpr QSize kResolution(160, 40);
constexpr int kCaptionFree = 40; ///< of the tile's width
constexpr int kSpeakingBorder = 5;
constexpr int kDarkBorder = 2;

/// Lays one tile out. Each function reads what the ones before it have placed.
class Builder
{
public:
    Builder(const OverlayState& state, const OverlayMetrics& metrics)
        : m_in(state)
        , m_metrics(metrics)
        , m_width(metrics.tile.width())
        , m_height(metrics.tile.height())
        , m_small(!state.bNoMenu && (state.bSmall || m_width < scaled(kSmallTileWidthPx)))
        , m_sizes(m_small ? kSmall : kLarge)
    {
        m_out.size = metrics.tile;
        m_out.bSmall = m_small;
    }

    OverlayLayout build()
    {
        if (!m_in.bPerson || m_width <= 0 || m_height <= 0)
            return m_out;
        if (m_in.bShare) {
            buildShare();
        } else {
            buildNameRow();
            buildMarks();
            buildBubble();
            buildCover();
            if (!m_in.resolution.isEmpty())
                buildResolution();
        }
        buildBorder();
        return m_out;
    }

private:
    int scaled(int base) const { return scaledSize(base, 2.0F, m_metrics.bHighResolution); }
    QSize scaled(const QSize& base) const { return {scaled(base.width()), scaled(base.height())}; }
    /// One of the sizes that depend on the tile's.
    int sized(int Sizes::*size) const { return scaled(m_sizes.*size); }
    const OverlayImageSizes& images() const { return m_metrics.images[m_small ? 1 : 0]; }
    OverlayElement& at(OverlayPart part) { return m_out.at(part); }
    QRect tile() const { return {QPoint(0, 0), m_metrics.tile}; }
    int width(const QString& text, int fontPx) const { return m_metrics.width(text, fontPx); }
    QRect centred(const QSize& size) const
    {
        return {QPoint((m_width - size.width()) / 2, (m_height - size.height()) / 2), size};
    }
    /// The size of texts that have none of their own. The values are not scaled.
    int baseFontPx() const
    {
        const int px = m_small ? (m_metrics.bHighResolution ? 16 : 18) : 24;
        return px + (m_in.bLargerText ? 6 : 0);
    }

    void buildNameRow();
    void buildBadge(int barHeight);
    void stackBadge();
    /// The name as it fits a bar.
    struct FittedName
    {
        QString text;
        int right;  ///< of the bar, exclusive
        bool bFits; ///< at least its first character does
    };
    FittedName fitName(int left) const;
    void buildNetwork();
    void buildCover();
    QRect avatarRect(int floor) const;
    void buildAvatar();
    void buildMarks();
    void buildBubble();
    void buildResolution();
    void buildShare();
    void buildPaused(const QString& name);
    void buildCaption(const QString& name);
    void buildBorder();

    const OverlayState& m_in;
    const OverlayMetrics& m_metrics;
    const int m_width;
    const int m_height;
    const bool m_small;
    const Sizes& m_sizes;
    int m_rowTop = 0;     ///< of the name bar
    int m_textOffset = 0; ///< from the bar's left edge to the name
    OverlayLayout m_out;
};

void Builder::buildBadge(int barHeight)
{
    const QString role = roleName(m_in.iRole);
    if (role.isEmpty())
        return;
    OverlayElement& badge = at(OverlayPart::Badge);
    badge.text = role;
    badge.variant = m_in.iRole;
    badge.fontPx = sized(&Sizes::badgeFont);
    badge.rect = QRect(0, m_rowTop, std::min(sized(&Sizes::badgeWidth), m_width), barHeight);
    badge.textRect = badge.rect;
    if (barHeight < badge.fontPx)
        badge = OverlayElement();
}

/// On a very small tile the badge stands above the name, as small as can be read.
void Builder::stackBadge()
{
    OverlayElement& badge = at(OverlayPart::Badge);
    const QSize size = scaled(kStackedBadge);
    badge.fontPx = scaled(kStackedBadgeFont);
    badge.rect = QRect(QPoint(0, m_rowTop - size.height() - 1), size);
    badge.textRect = badge.rect;
    if (!tile().contains(badge.rect))
        badge = OverlayElement();
}

/// @param left of the bar
Builder::FittedName Builder::fitName(int left) const
{
    const int fontPx = sized(&Sizes::nameFont);
    const int more = m_out.at(OverlayPart::More).rect.width();
    const int limit = m_width - more - scaled(kMenuGap);
    const QString name = displayName(m_in.name);
    const QString suffix = m_in.bSelf ? selfSuffix() : QString();
    const int text =
        width(name, fontPx) + (m_in.bSelf ? width(suffix, fontPx) + scaled(kSelfGap) : 0);
    const int right = left + images().audio.width() + scaled(kGap) + text + scaled(kNameEnd);
    if (right <= limit)
        return {cutName(name, suffix, m_width, fontPx, m_metrics.width), right, true};
    // Nothing stands to the right of one's own name, so it may come nearer to the button.
    const int rightmost = m_in.bSelf ? m_width - more - scaled(kMargin) : limit + scaled(kMargin);
    const int textLeft = left + m_textOffset;
    const int room = rightmost - scaled(kMargin) - textLeft;
    const QString cut = cutName(name, suffix, room, fontPx, m_metrics.width);
    if (cut.isEmpty())
        return {cut, left + images().audio.width() + scaled(kGap), room >= 0 && name.isEmpty()};
    // The bars of others end in one line, however wide the last character is.
    const int cutRight = textLeft + width(cut, fontPx) + scaled(kGap);
    return {cut, m_in.bSelf ? std::min(rightmost, cutRight) : rightmost,
            name.isEmpty() || cut != suffix};
}

void Builder::buildNameRow()
{
    const OverlayImageSizes& images = this->images();
    const int barHeight = std::min(sized(&Sizes::barHeight), m_height);
    const int barTop = m_rowTop = m_height - barHeight;
    m_textOffset = images.audio.width() + scaled(kGap) - sized(&Sizes::textInset);
    QRect& more = at(OverlayPart::More).rect;
    more =
        QRect(QPoint(m_width - images.more.width(), m_height - images.more.height()), images.more);
    // The microphone is the last to go.
    if (m_in.bNoMenu || !tile().contains(more) || more.left() < images.audio.width() + scaled(kGap))
        more = QRect();

    buildBadge(barHeight);
    const OverlayElement& badge = at(OverlayPart::Badge);
    OverlayElement& name = at(OverlayPart::Name);
    int left = badge.rect.width();
    FittedName fitted = fitName(left);
    if (!fitted.bFits && badge.isShown()) {
        stackBadge();
        left = 0;
        fitted = fitName(left);
    }
    name.text = fitted.text;
    const bool audioFits = left + scaled(kMargin) + images.audio.width() <= m_width
                           && images.audio.height() <= barHeight;
    if (!audioFits)
        return;
    QRect& bar = at(OverlayPart::NameBar).rect;
    bar = QRect(left, barTop, std::min(fitted.right, m_width) - left, barHeight);
    at(OverlayPart::Audio).rect =
        QRect(QPoint(left + scaled(kMargin), barTop + (barHeight - images.audio.height()) / 2),
              images.audio);
    at(OverlayPart::Audio).variant = m_in.bMute ? 0 : m_in.iAudioLevel;
    if (!name.text.isEmpty()) {
        name.fontPx = sized(&Sizes::nameFont);
        name.textRect = bar.adjusted(m_textOffset, 0, 0, 0);
        name.rect = name.textRect;
    }
    buildNetwork();
}

void Builder::buildNetwork()
{
    if (!isWeakNetwork(m_in))
        return;
    const QRect& more = at(OverlayPart::More).rect;
    QRect& bar = at(OverlayPart::NameBar).rect;
    const int rightmost = more.isEmpty() ? m_width : more.left() - scaled(kMargin);
    const int wider = m_metrics.bHighResolution ? scaled(2 * kWider) : kWider;
    bar.setWidth(std::min(bar.width() + wider, rightmost - bar.left()));
    const QSize size = scaled(kNetwork);
    OverlayElement& network = at(OverlayPart::Network);
    network.rect = QRect(QPoint(bar.right() + 1 - scaled(kClear) - size.width(),
                                bar.top() + (bar.height() - size.height()) / 2),
                         size);
    network.variant = std::max(0, m_in.iNetLevel);
    if (!bar.contains(network.rect) || network.rect.intersects(at(OverlayPart::Audio).rect))
        network = OverlayElement();
}

void Builder::buildCover()
{
    OverlayElement& cover = at(OverlayPart::Cover);
    cover.rect = tile();
    cover.variant = static_cast<int>(m_in.bPicture ? Cover::Bars : Cover::Full);
    if (!m_in.bPicture)
        buildAvatar();
    if (m_in.bSpinner) {
        OverlayElement& spinner = at(OverlayPart::Spinner);
        const QSize image = images().spinner;
        const int side = std::min({image.width(), image.height(), m_width, m_height});
        spinner.rect = tile();
        spinner.textRect = centred({side, side});
    }
}

/// @param floor what the avatar stays above
QRect Builder::avatarRect(int floor) const
{
    int side = std::min(sized(&Sizes::avatar), m_width);
    int top = (m_height - side) / 2;
    if (m_small || floor < m_rowTop) {
        // It moves up, and shrinks when the tile's top is reached.
        const int bottom = floor - scaled(kGap);
        side = std::min(side, bottom - scaled(kClear));
        top = std::min((m_height - side) / 2, bottom - side);
    } else if (const int overlap = top + side - floor; overlap > 0) {
        side -= 2 * overlap + scaled(kGap);
        top = (m_height - side) / 2;
    }
    return {(m_width - side) / 2, top, side, side};
}

void Builder::buildAvatar()
{
    const QRect& badge = at(OverlayPart::Badge).rect;
    const QRect& look = at(OverlayPart::Look).rect;
    const QRect& hand = at(OverlayPart::Hand).rect;
    // It clears what the participant says, too.
    const OverlayElement& bubble = at(OverlayPart::Bubble);
    int floor = bubble.isShown() ? bubble.rect.top() : m_rowTop;
    QRect rect = avatarRect(floor);
    if (rect.intersects(badge)) {
        floor = badge.top();
        rect = avatarRect(floor);
    }
    if (rect.intersects(look) || rect.intersects(hand)) {
        const int ceiling = std::max(look.bottom(), hand.bottom()) + 1;
        const int side = std::min(rect.width(), floor - ceiling - 2 * scaled(kClear));
        rect = QRect((m_width - side) / 2, (ceiling + floor - side) / 2, side, side);
    }
    if (rect.width() < scaled(kSmallestAvatar) || rect.top() < 0)
        return;
    OverlayElement& avatar = at(OverlayPart::Avatar);
    avatar.rect = rect;
    avatar.textRect = rect;
    avatar.text = shortName(displayName(m_in.name));
    avatar.fontPx = sized(&Sizes::avatarFont) * rect.width() / sized(&Sizes::avatar);
    // Two characters of some scripts, or two emoji, are wider than two letters.
    const int room = rect.width() * 7 / 8;
    if (const int text = width(avatar.text, avatar.fontPx); text > room)
        avatar.fontPx = std::max(1, avatar.fontPx * room / text);
    avatar.variant = m_in.iColor;
}

void Builder::buildMarks()
{
    const QRect& badge = at(OverlayPart::Badge).rect;
    const QSize handSize = images().hand;
    QPoint handAt(scaled(kMargin), scaled(kMargin));
    if (m_in.look != LookMark::None) {
        const auto size = [&](int base) { return static_cast<int>(scaled(base) * m_sizes.look); };
        const QRect mark(size(kLook.x()), size(kLook.y()), size(kLook.width()),
                         size(kLook.height()));
        OverlayElement& look = at(OverlayPart::Look);
        if (mark.right() < m_width && mark.bottom() < m_rowTop && !mark.intersects(badge)) {
            look.rect = mark;
            look.textRect = mark;
            look.variant = static_cast<int>(m_in.look);
            look.fontPx = scaled(baseFontPx() - 2);
            look.text = lookText(m_in.look);
            handAt = QPoint(mark.right() + 1 + scaled(kMargin),
                            mark.top() + (mark.height() - handSize.height()) / 2);
        }
    }
    if (!m_in.bHand || handSize.isEmpty())
        return;
    QRect hand(handAt, handSize);
    // A badge that stands above the name drives it to the other side.
    if (hand.intersects(badge))
        hand.moveRight(m_width - 1 - scaled(kMargin));
    if (hand.left() >= 0 && hand.right() < m_width && hand.bottom() < m_rowTop
        && !hand.intersects(badge))
        at(OverlayPart::Hand).rect = hand;
}

void Builder::buildBubble()
{
    if (m_in.bubble.isEmpty())
        return;
    const int margin = scaled(kMargin);
    const int padding = scaled(kBubblePadding);
    const int textLeft = padding + scaled(kDot) + scaled(kGap);
    const int fontPx = scaled(m_in.bLargerText ? 2 * kBubbleFont : kBubbleFont);
    const int room = m_width - 2 * margin - textLeft - padding;
    if (room < fontPx)
        return;
    const int line = fontPx * 3 / 2;
    const int secondLine = fontPx / kBubbleFont * kOlderFont * 3 / 2;
    // It stands above the name and leaves the marks free.
    const OverlayElement& badge = at(OverlayPart::Badge);
    const int bottom =
        std::min(m_rowTop, badge.isShown() ? badge.rect.top() : m_height) - scaled(kGap);
    const int top =
        std::max(at(OverlayPart::Look).rect.bottom(), at(OverlayPart::Hand).rect.bottom()) + 1
        + margin;
    const int lines = line + secondLine + 2 * margin > bottom - top ? 1 : kBubbleLines;
    const QStringList texts = lastLines(m_in.bubble, lines, room, fontPx, m_metrics.width);
    if (texts.isEmpty())
        return;
    const QSize smallest = scaled(kSmallestBubble);
    const bool two = texts.size() > 1;
    const int wanted = std::max(line + (two ? secondLine : 0) + 2 * margin, smallest.height());
    const int height = std::min(wanted, bottom - top);
    if (height < line)
        return;
    int textWidth = 0;
    for (const QString& text : texts)
        textWidth = std::max(textWidth, width(text, fontPx));
    const int bubbleWidth = std::max(smallest.width(), textLeft + textWidth + padding);
    OverlayElement& bubble = at(OverlayPart::Bubble);
    bubble.rect =
        QRect(margin, bottom - height, std::min(bubbleWidth, m_width - 2 * margin), height);
    bubble.textRect = bubble.rect.adjusted(textLeft, 0, 0, 0);
    bubble.text = texts.join(QLatin1Char('\n'));
    bubble.fontPx = fontPx;
    bubble.variant = m_in.iBubbleColor;
}

void Builder::buildResolution()
{
    OverlayElement& resolution = at(OverlayPart::Resolution);
    resolution.fontPx = baseFontPx();
    const QSize text(width(m_in.resolution, resolution.fontPx) + 2 * scaled(kGap), 0);
    const QSize size = scaled(kResolution).expandedTo(text).boundedTo(m_metrics.tile);
    resolution.rect = QRect(QPoint(std::max(0, m_width - size.width() - scaled(kGap)), 0), size);
    resolution.textRect = resolution.rect;
    resolution.text = m_in.resolution;
}

void Builder::buildShare()
{
    OverlayElement& cover = at(OverlayPart::Cover);
    cover.rect = tile();
    const bool bars = m_in.bPicture && !m_in.bPaused;
    cover.variant = static_cast<int>(bars ? Cover::Bars : Cover::Full);
    const QString name = displayName(m_in.name);
    if (m_in.bPaused) {
        buildPaused(name);
        return;
    }
    buildCaption(name);
    if (m_in.bPicture && !m_in.watermark.isEmpty()) {
        OverlayElement& watermark = at(OverlayPart::Watermark);
        watermark.rect = tile();
        watermark.text = m_in.watermark;
    }
}

void Builder::buildPaused(const QString& name)
{
    const QString suffix = Text::tr(" 暂停了屏幕共享");
    const QSize full = scaled(m_sizes.paused);
    const QSize size(std::min(full.width(), m_width), full.height());
    OverlayElement& paused = at(OverlayPart::Paused);
    paused.fontPx = sized(&Sizes::pausedFont);
    paused.rect = centred(size).intersected(tile());
    paused.textRect = paused.rect;
    paused.text = cutName(m_small ? firstCharacters(name, kPausedNameCharacters) : name, suffix,
                          size.width(), paused.fontPx, m_metrics.width)
                      .trimmed();
    if (paused.text.isEmpty() || paused.rect.height() < paused.fontPx)
        paused = OverlayElement();
}

void Builder::buildCaption(const QString& name)
{
    const QString suffix = shareSuffix();
    const int height = std::min(sized(&Sizes::barHeight), m_height);
    const int padding = scaled(kGap);
    OverlayElement& caption = at(OverlayPart::Caption);
    caption.fontPx = sized(&Sizes::captionFont);
    const int room = m_width - scaled(kCaptionFree) - 2 * padding;
    caption.text = cutName(name, suffix, room, caption.fontPx, m_metrics.width);
    if (caption.text.isEmpty() || height < caption.fontPx) {
        caption = OverlayElement();
        return;
    }
    caption.rect =
        QRect(0, m_height - height, width(caption.text, caption.fontPx) + 2 * padding, height);
    caption.textRect = caption.rect.adjusted(padding, 0, 0, 0);
}

void Builder::buildBorder()
{
    if (!m_in.bSpeaking && !m_in.bBorder)
        return;
    const int thickness = scaled(m_in.bSpeaking ? kSpeakingBorder : kDarkBorder);
    OverlayElement& border = at(OverlayPart::Border);
    border.rect = tile();
    border.textRect = tile().adjusted(thickness, thickness, -thickness, -thickness);
    border.variant = static_cast<int>(m_in.bSpeaking ? Border::Speaking : Border::Dark);
}

void addArea(std::vector<QRect>& rects, OverlayPart part, const OverlayElement& element,
             const QSize& tile)
{
    if (!element.isShown())
        return;
    if (part != OverlayPart::Border) {
        rects.push_back(element.rect);
        return;
    }
    for (const QRect& strip : borderRects(tile, element.textRect.left()))
        rects.push_back(strip);
}

} // namespace

bool OverlayState::operator==(const OverlayState& other) const
{
    const auto tie = [](const OverlayState& s) {
        return std::tie(s.bPerson, s.bShare, s.bPaused, s.bPicture, s.bSelf, s.bSpeaking, s.bBorder,
                        s.bSpinner, s.bMute, s.bCamera, s.bSmall, s.bNoMenu, s.bFrozen, s.bHand,
                        s.bLargerText, s.iRole, s.iColor, s.iAudioLevel, s.iNetLevel,
                        s.iBubbleColor, s.look, s.name, s.resolution, s.watermark, s.bubble);
    };
    return tie(*this) == tie(other);
}

bool OverlayElement::operator==(const OverlayElement& other) const
{
    const auto tie = [](const OverlayElement& e) {
        return std::tie(e.rect, e.textRect, e.text, e.fontPx, e.variant);
    };
    return tie(*this) == tie(other);
}

QString roleName(int role)
{
    if (role == kRoleHost)
        return Text::tr("主持人");
    return role == kRoleAdministrator ? Text::tr("管理员") : QString();
}

QString lookText(LookMark look)
{
    switch (look) {
    case LookMark::AllLook:
        return Text::tr("全员看TA");
    case LookMark::LockLook:
        return Text::tr("锁定看TA");
    case LookMark::None:
    case LookMark::Unlabelled:
        break;
    }
    return {};
}

QString selfSuffix()
{
    return Text::tr("(我)");
}

QString shareSuffix()
{
    return Text::tr("发起的共享");
}

bool isWeakNetwork(const OverlayState& state)
{
    return !state.bSelf && state.iNetLevel < kGoodNetLevel;
}

OverlayLayout layoutOverlay(const OverlayState& state, const OverlayMetrics& metrics)
{
    return Builder(state, metrics).build();
}

std::vector<QRect> changedRects(const OverlayLayout& before, const OverlayLayout& after)
{
    std::vector<QRect> rects;
    for (std::size_t i = 0; i < after.elements.size(); ++i) {
        if (before.elements[i] == after.elements[i])
            continue;
        addArea(rects, static_cast<OverlayPart>(i), before.elements[i], before.size);
        addArea(rects, static_cast<OverlayPart>(i), after.elements[i], after.size);
    }
    return rects;
}

std::array<QRect, 4> borderRects(const QSize& tile, int widthPx)
{
    const int w = tile.width();
    const int h = tile.height();
    return {QRect(0, 0, w, widthPx), QRect(0, h - widthPx, w, widthPx), QRect(0, 0, widthPx, h),
            QRect(w - widthPx, 0, widthPx, h)};
}

} // namespace zr
