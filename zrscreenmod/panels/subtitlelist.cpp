#include "subtitlelist.h"

#include "qzrscreenconfig.h"

#include <QApplication>
#include <QDebug>
#include <QFontMetrics>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsSceneWheelEvent>
#include <QPainter>
#include <QScrollEvent>
#include <QScrollPrepareEvent>
#include <QScroller>
#include <QStyleOptionGraphicsItem>
#include <QTextOption>
#include <QTouchEvent>
#include <QWheelEvent>

#include <algorithm>

namespace {

// Base sizes in pixels, scaled on a high-resolution screen.
constexpr int kItemFont = 18;
constexpr int kAvatar = 40;
constexpr int kSpacing = 10;
constexpr int kGap = 10;
constexpr int kLeft = 5;
constexpr int kSmallFontPx = 14; ///< not scaled

/// The glyphs of texts up to here are kept, so that scrolling shapes nothing anew; those of longer
/// ones would be megabytes.
constexpr int kCachedUnits = 2000;

QFont fontOf(int pixelSize)
{
    QFont font(QStringLiteral("Microsoft YaHei"));
    font.setPixelSize(pixelSize);
    return font;
}

RectObject* itemOf(QGraphicsItem* child)
{
    return static_cast<RectObject*>(child); // nothing else is put into a ViewObject
}

} // namespace

std::shared_ptr<const SubtitleStyle> SubtitleStyle::shared()
{
    static std::weak_ptr<const SubtitleStyle> s_style;
    std::shared_ptr<const SubtitleStyle> style = s_style.lock();
    if (!style) {
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
    const QFontMetrics font(itemFont);
    metrics = {hub->scaled(kAvatar), hub->scaled(kSpacing), hub->scaled(kGap),
               hub->scaled(kLeft),   font.height(),         font.lineSpacing()};
}

int globalGetItemHeight(const QString& text, int width)
{
    const auto style = SubtitleStyle::shared();
    const int textWidth = QFontMetrics(style->itemFont).boundingRect(text).width();
    const int room = width - zr::subtitleTextLeft(style->metrics);
    const int lines = zr::subtitleLines(textWidth, room);
    qDebug() << "iTextWidth:" << textWidth << ",iWidth:" << room << ",iLineNum:" << lines;
    return zr::subtitleItemHeight(lines, style->metrics);
}

// --- RectObject -------------------------------------------------------------------------------

RectObject::RectObject(const QString& text, qreal x, qreal y, qreal width, qreal height,
                       const QBrush& brush, int id, QGraphicsItem* parent)
    : QGraphicsObject(parent)
    , m_pStyle(SubtitleStyle::shared())
    , m_rect(0, 0, width, height)
    , m_pen(brush.color().lighter(150), 3.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin)
    , m_iHeight(static_cast<int>(height))
    , m_iId(id)
{
    setFlag(ItemClipsToShape);
    setFlag(ItemUsesExtendedStyleOption);  // only the exposed lines are drawn
    setAcceptedMouseButtons(Qt::NoButton); // the list's
    setPos(x, y);
    setText(text);
}

QRectF RectObject::boundingRect() const
{
    const qreal half = m_pen.widthF() / 2;
    return m_rect.adjusted(-half, -half, half, half);
}

void RectObject::setText(const QString& text)
{
    m_text = text;
    m_layout.clearLayout();
    m_layout.setText(text);
    m_layout.setFont(m_pStyle->itemFont);
    m_layout.setCacheEnabled(text.size() <= kCachedUnits);
    QTextOption option(Qt::AlignLeft);
    option.setWrapMode(QTextOption::WrapAnywhere);
    m_layout.setTextOption(option);
    const qreal room = m_rect.width() - zr::subtitleTextLeft(m_pStyle->metrics);
    qreal height = 0;
    if (room > 0 && !text.isEmpty()) {
        // Letters of another font may reach higher; the baselines are even all the same.
        const int ascent = QFontMetrics(m_pStyle->itemFont).ascent();
        m_layout.beginLayout();
        for (QTextLine line = m_layout.createLine(); line.isValid(); line = m_layout.createLine()) {
            line.setLineWidth(room);
            line.setPosition({0, height + ascent - qRound(line.ascent())});
            height += m_pStyle->metrics.lineSpacingPx;
        }
        m_layout.endLayout();
    }
    update();
}

int RectObject::drawnHeight() const
{
    return zr::subtitleItemHeight(m_layout.lineCount(), m_pStyle->metrics);
}

void RectObject::setItemHeight(int height)
{
    prepareGeometryChange();
    m_iHeight = height;
    m_rect.setHeight(height);
}

void RectObject::setName(const QString& name)
{
    if (name == m_name)
        return;
    m_name = name;
    update();
}

void RectObject::setColor(const QColor& color)
{
    if (color == m_color)
        return;
    m_color = color;
    update();
}

void RectObject::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    const zr::SubtitleMetrics& metrics = m_pStyle->metrics;
    painter->setPen(m_textColor);
    const QPointF textAt(zr::subtitleTextLeft(metrics), zr::subtitleTextTop(metrics));
    m_layout.draw(painter, textAt, {}, option->exposedRect);

    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(m_color);
    painter->setBrush(m_color);
    const QRect avatar(metrics.leftPx, 0, metrics.avatarPx, metrics.avatarPx);
    painter->drawEllipse(avatar);
    painter->setFont(m_name.size() < 2 ? m_pStyle->itemFont : m_pStyle->smallFont);
    painter->setPen(Qt::white);
    painter->drawText(avatar, Qt::AlignCenter, m_name.toUpper());
}

// --- ViewObject -------------------------------------------------------------------------------

ViewObject::ViewObject(QGraphicsItem* parent)
    : QGraphicsObject(parent)
    , m_pStyle(SubtitleStyle::shared())
{
    setFlag(ItemHasNoContents);
    setAcceptedMouseButtons(Qt::NoButton);
}

QRectF ViewObject::boundingRect() const
{
    QRectF bounds;
    const auto items = childItems();
    for (const QGraphicsItem* item : items)
        bounds |= item->boundingRect().translated(item->pos());
    return bounds;
}

int ViewObject::contentHeight() const
{
    int height = 0;
    const auto items = childItems();
    for (QGraphicsItem* item : items)
        height += itemOf(item)->itemHeight() + m_pStyle->metrics.spacingPx;
    return height;
}

void ViewObject::sortIn(RectObject* item)
{
    const auto items = childItems();
    for (QGraphicsItem* other : items) {
        if (itemOf(other)->id() > item->id()) {
            item->stackBefore(other);
            return;
        }
    }
}

void ViewObject::relayout()
{
    prepareGeometryChange();
    qreal y = 0;
    const auto items = childItems();
    for (QGraphicsItem* item : items) {
        item->setPos(0, y);
        y += itemOf(item)->itemHeight() + m_pStyle->metrics.spacingPx;
    }
    updateList();
}

RectObject* ViewObject::itemAt(qreal y) const
{
    const auto items = childItems();
    for (QGraphicsItem* item : items) {
        if (item->y() + itemOf(item)->itemHeight() > y)
            return itemOf(item);
    }
    return nullptr;
}

int ViewObject::removeItem(RectObject* item)
{
    delete item;
    relayout();
    return 1;
}

void ViewObject::clearItems()
{
    prepareGeometryChange();
    qDeleteAll(childItems());
    updateList();
}

void ViewObject::updateList()
{
    if (QGraphicsItem* list = parentItem())
        list->update();
}

// --- ListObject -------------------------------------------------------------------------------

// The scroller is fed from here, not by QScroller::grabGesture: what recognises the gesture keeps a
// pointer to the application object of its first use, and Qt stays in memory when the module goes
// and comes back with another one.
ListObject::ListObject(const QSizeF& size)
    : m_size(size)
    , m_pViewObject(new ViewObject(this))
{
    setFlag(ItemClipsChildrenToShape);
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptTouchEvents(true);
    m_clock.start();
    connect(QScroller::scroller(this), &QScroller::stateChanged, this,
            [this](QScroller::State state) {
                if (state == QScroller::Inactive)
                    emit scrollingEnded();
            });
}

QRectF ListObject::boundingRect() const
{
    return {QPointF(0, 0), m_size};
}

void ListObject::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    painter->fillRect(boundingRect(), QColor(58, 62, 70));
}

void ListObject::setSize(const QSizeF& size)
{
    prepareGeometryChange();
    m_size = size;
}

bool ListObject::isScrolling() const
{
    return QScroller::scroller(static_cast<const QObject*>(this))->state() != QScroller::Inactive;
}

void ListObject::stopScrolling()
{
    m_bPressed = false;
    QScroller::scroller(this)->stop();
}

void ListObject::contentChanged()
{
    if (isScrolling())
        QScroller::scroller(this)->resendPrepareEvent();
}

bool ListObject::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::ScrollPrepare: {
        auto* prepare = static_cast<QScrollPrepareEvent*>(event);
        // The range ends where following puts the content, so that a press moves nothing.
        const int range =
            zr::scrollRange(m_pViewObject->contentHeight(), static_cast<int>(m_size.height()));
        prepare->setViewportSize(m_size);
        prepare->setContentPosRange(QRectF(0, 0, 0, range));
        prepare->setContentPos(-m_pViewObject->pos());
        prepare->accept();
        return true;
    }
    case QEvent::Scroll: {
        const auto* scroll = static_cast<QScrollEvent*>(event);
        m_pViewObject->setPos(
            zr::scrolledPosition(scroll->contentPos(), scroll->overshootDistance()));
        return true;
    }
    default:
        return QGraphicsObject::event(event);
    }
}

bool ListObject::sceneEvent(QEvent* event)
{
    const auto position = [event] {
        return static_cast<QGraphicsSceneMouseEvent*>(event)->scenePos();
    };
    switch (event->type()) {
    case QEvent::GraphicsSceneMousePress:
    case QEvent::GraphicsSceneMouseDoubleClick: // the second press of two quick drags
        qDebug() << "mousePress";
        begin(position());
        return true;
    case QEvent::GraphicsSceneMouseMove:
        move(position());
        return true;
    case QEvent::GraphicsSceneMouseRelease:
        qDebug() << "mouseRelease";
        end(position());
        return true;
    case QEvent::UngrabMouse:
        end(m_lastInput);
        return QGraphicsObject::sceneEvent(event);
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        return onTouch(event);
    default:
        return QGraphicsObject::sceneEvent(event);
    }
}

void ListObject::wheelEvent(QGraphicsSceneWheelEvent* event)
{
    event->accept();
    if (m_bPressed || event->orientation() != Qt::Vertical)
        return;
    stopScrolling();
    const int linePx = SubtitleStyle::shared()->metrics.lineSpacingPx;
    const double notches = event->delta() / static_cast<double>(QWheelEvent::DefaultDeltasPerStep);
    const double y = m_pViewObject->y() + notches * QApplication::wheelScrollLines() * linePx;
    const int range =
        zr::scrollRange(m_pViewObject->contentHeight(), static_cast<int>(m_size.height()));
    m_pViewObject->setPos(0, qBound<double>(-range, y, 0));
}

bool ListObject::onTouch(QEvent* event)
{
    event->accept();
    const auto points = static_cast<QTouchEvent*>(event)->touchPoints();
    if (event->type() == QEvent::TouchBegin && !points.isEmpty())
        m_iFinger = points.first().id();
    // The first finger scrolls. Going on with another one would jump to where that is.
    const auto finger = std::find_if(points.begin(), points.end(),
                                     [this](const auto& point) { return point.id() == m_iFinger; });
    const QPointF position = finger == points.end() ? m_lastInput : finger->scenePos();
    if (event->type() == QEvent::TouchBegin) {
        begin(position);
        return true;
    }
    const bool over = event->type() != QEvent::TouchUpdate;
    if (over)
        qDebug() << "QEvent::TouchEnd";
    if (over || (finger != points.end() && finger->state() == Qt::TouchPointReleased))
        end(position);
    else
        move(position);
    return true;
}

void ListObject::begin(const QPointF& position)
{
    m_bPressed = true;
    m_lastInput = position;
    QScroller::scroller(this)->handleInput(QScroller::InputPress, position, m_clock.elapsed());
}

void ListObject::move(const QPointF& position)
{
    m_lastInput = position;
    if (m_bPressed)
        QScroller::scroller(this)->handleInput(QScroller::InputMove, position, m_clock.elapsed());
}

void ListObject::end(const QPointF& position)
{
    if (!m_bPressed)
        return;
    m_bPressed = false;
    QScroller::scroller(this)->handleInput(QScroller::InputRelease, position, m_clock.elapsed());
}
