#include "subtitlelist.h"

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
#include <QTouchEvent>
#include <QWheelEvent>

#include <algorithm>

namespace {

RectObject* itemOf(QGraphicsItem* child)
{
    return static_cast<RectObject*>(child); // nothing else is put into a ViewObject
}

} // namespace

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

RectObject::RectObject(const QString& sentence, qreal x, qreal y, qreal width, const QBrush& brush,
                       int id, QGraphicsItem* parent)
    : QGraphicsObject(parent)
    , m_pStyle(SubtitleStyle::shared())
    , m_rect(0, 0, width, 0)
    , m_pen(brush.color().lighter(150), 3.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin)
    , m_iId(id)
{
    setFlag(ItemClipsToShape);
    setFlag(ItemUsesExtendedStyleOption);  // only the exposed lines are drawn
    setAcceptedMouseButtons(Qt::NoButton); // the list's
    setPos(x, y);
    breakLines();
    setText(sentence);
}

QRectF RectObject::boundingRect() const
{
    const qreal half = m_pen.widthF() / 2;
    return m_rect.adjusted(-half, -half, half, half);
}

void RectObject::setText(const QString& sentence)
{
    // The store hands out the same text again and again.
    if (sentence.constData() == m_sentence.constData() || sentence == m_sentence)
        return;
    m_sentence = sentence;
    m_text.setText(zr::shownSentence(sentence));
    breakLines();
}

void RectObject::setItemWidth(int width)
{
    if (width == static_cast<int>(m_rect.width()))
        return;
    prepareGeometryChange();
    m_rect.setWidth(width);
    breakLines();
}

void RectObject::breakLines()
{
    m_text.setRoom(m_rect.width() - zr::subtitleTextLeft(m_pStyle->metrics));
    m_bHeightKnown = false;
    setItemHeight(estimatedHeight());
    update();
}

int RectObject::estimatedHeight() const
{
    return zr::subtitleItemHeight(std::max(1, m_text.lines()), m_pStyle->metrics);
}

int RectObject::knownHeight() const
{
    if (m_bHeightKnown)
        return m_iHeight;
    return m_text.knownLines() * m_pStyle->metrics.lineSpacingPx;
}

bool RectObject::shapeTo(qreal bottom)
{
    if (m_bHeightKnown)
        return false;
    const double lines = std::max(0.0, bottom) / m_pStyle->metrics.lineSpacingPx;
    m_text.shapeLines(static_cast<int>(lines) + 1);
    int height = estimatedHeight();
    m_bHeightKnown = m_text.isComplete();
    // A short text is measured, too: its letters may reach farther than they advance.
    if (m_bHeightKnown && text().size() <= zr::kTextPieceUnits)
        height = std::max(height, globalGetItemHeight(text(), static_cast<int>(m_rect.width())));
    if (height == m_iHeight)
        return false;
    setItemHeight(height);
    return true;
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
    m_text.draw(painter, textAt, option->exposedRect);

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
    qreal y = 0;
    bool moved = false;
    const auto items = childItems();
    for (QGraphicsItem* item : items) {
        if (item->y() != y) {
            prepareGeometryChange();
            item->setPos(0, y);
            moved = true;
        }
        y += itemOf(item)->itemHeight() + m_pStyle->metrics.spacingPx;
    }
    if (moved)
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

RectObject* ViewObject::knownItemIn(qreal top, qreal bottom) const
{
    const auto items = childItems();
    for (QGraphicsItem* item : items) {
        const int known = itemOf(item)->knownHeight();
        if (known > 0 && item->y() < bottom && item->y() + known > top)
            return itemOf(item);
    }
    return itemAt(top);
}

bool ViewObject::shapeNext(qreal top, qreal bottom, bool fromBottom)
{
    auto items = childItems();
    if (fromBottom)
        std::reverse(items.begin(), items.end());
    for (QGraphicsItem* item : qAsConst(items)) {
        const bool inView = item->y() < bottom && item->y() + itemOf(item)->itemHeight() > top;
        if (inView && itemOf(item)->shapeTo(bottom - item->y())) {
            relayout();
            return true;
        }
    }
    return false;
}

void ViewObject::forgetOutside(qreal top, qreal bottom)
{
    const auto items = childItems();
    for (QGraphicsItem* item : items) {
        if (item->y() >= bottom || item->y() + itemOf(item)->itemHeight() <= top)
            itemOf(item)->leaveView();
    }
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
    m_pStyle = SubtitleStyle::shared();
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

int ListObject::range() const
{
    return zr::scrollRange(m_pViewObject->contentHeight(), static_cast<int>(m_size.height()));
}

void ListObject::settle()
{
    for (;;) {
        const RectObject* read = m_pViewObject->knownItemIn(viewTop(), viewBottom());
        const qreal y = read ? read->y() : 0;
        if (!m_pViewObject->shapeNext(viewTop(), viewBottom(), false))
            break;
        shiftContent(read ? y - read->y() : 0);
        if (!isScrolling())
            m_pViewObject->setY(qBound<qreal>(-range(), m_pViewObject->y(), 0));
    }
    m_pViewObject->forgetOutside(viewTop(), viewBottom());
}

void ListObject::moveToEnd()
{
    do
        m_pViewObject->setPos(0, -range());
    while (m_pViewObject->shapeNext(viewTop(), viewBottom(), true));
    m_pViewObject->forgetOutside(viewTop(), viewBottom());
}

// A movement under way knows where it goes to, so that its positions stay what they are, and what
// moves is where they begin.
void ListObject::shiftContent(qreal by)
{
    m_pViewObject->moveBy(0, by);
    if (!isScrolling())
        return;
    m_shifted += by;
    QScroller::scroller(this)->resendPrepareEvent();
}

bool ListObject::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::ScrollPrepare: {
        auto* prepare = static_cast<QScrollPrepareEvent*>(event);
        // The range ends where following puts the content, so that a press moves nothing.
        prepare->setViewportSize(m_size);
        prepare->setContentPosRange(QRectF(0, m_shifted, 0, range()));
        prepare->setContentPos({0, viewTop() + m_shifted});
        prepare->accept();
        return true;
    }
    case QEvent::Scroll: {
        const auto* scroll = static_cast<QScrollEvent*>(event);
        m_pViewObject->setPos(
            zr::scrolledPosition(scroll->contentPos(), scroll->overshootDistance())
            + QPointF(0, m_shifted));
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
    m_pViewObject->setPos(0, qBound<double>(-range(), y, 0));
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
    if (!isScrolling())
        m_shifted = 0;
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
