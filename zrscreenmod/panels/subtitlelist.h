// The list inside the subtitle panel: items that are stacked in a container, which is scrolled
// inside an area of fixed size. GUI thread.
#pragma once

#include "sentencetext.h"

#include <QBrush>
#include <QColor>
#include <QElapsedTimer>
#include <QGraphicsObject>
#include <QPen>

#include <memory>

/// The height of an item, in pixels, from its text as one line broken to the room of an item of
/// that width. Logs how it came to it.
int globalGetItemHeight(const QString& text, int width);

class ViewObject;

/// One sentence: a circle with the speaker's initials, and the text, which has all the room right
/// of it and may break inside words. Its height is an estimate until the text was shaped to its
/// end.
class RectObject : public QGraphicsObject
{
    Q_OBJECT

public:
    RectObject(const QString& sentence, qreal x, qreal y, qreal width, const QBrush& brush, int id,
               QGraphicsItem* parent);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    int id() const { return m_iId; }
    /// Estimates the height, unless the sentence stays the same.
    void setText(const QString& sentence);
    /// What is shown of the sentence.
    const QString& text() const { return m_text.text(); }
    /// Estimates the height.
    void setItemWidth(int width);
    void setItemHeight(int height);
    int itemHeight() const { return m_iHeight; }
    /// As much of the height, from the top, as is no estimate.
    int knownHeight() const;
    /// Shapes the text down to there, from the top of the item. @return whether the height changed
    bool shapeTo(qreal bottom);
    /// Gives back what is not needed while the item is out of view.
    void leaveView() { m_text.dropGlyphs(); }
    /// The initials.
    void setName(const QString& name);
    const QString& name() const { return m_name; }
    void setColor(const QColor& color);
    const QColor& color() const { return m_color; }

private:
    void breakLines();
    int estimatedHeight() const;

    std::shared_ptr<const SubtitleStyle> m_pStyle;
    QString m_sentence;
    SentenceText m_text;
    QRectF m_rect;
    QPen m_pen;
    QColor m_textColor{205, 205, 205};
    int m_iHeight = 0;
    int m_iId;
    bool m_bHeightKnown = false;
    QString m_name;
    QColor m_color;
};

/// The container of the items; its position is the scroll position.
class ViewObject : public QGraphicsObject
{
    Q_OBJECT

public:
    explicit ViewObject(QGraphicsItem* parent);

    QRectF boundingRect() const override;
    void paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) override {}

    /// The heights of all items, each with the spacing below it.
    int contentHeight() const;
    /// Puts an item where its id belongs in the ascending order. Follow with relayout().
    void sortIn(RectObject* item);
    /// Stacks the items in their order.
    void relayout();
    /// The first item that reaches below there; null for none.
    RectObject* itemAt(qreal y) const;
    /// The first item in an area that is known there; if there is none, the first one in the area,
    /// or null.
    RectObject* knownItemIn(qreal top, qreal bottom) const;
    /// Shapes what an area shows, until the height of an item turns out to be another one, and
    /// stacks the items.
    /// @return whether that was so
    bool shapeNext(qreal top, qreal bottom, bool fromBottom);
    /// Items outside of the area give back what they can.
    void forgetOutside(qreal top, qreal bottom);
    /// Deletes an item and stacks the others. @return 1
    int removeItem(RectObject* item);
    /// The items that follow have the sizes of the present screen.
    void clearItems();

private:
    void updateList();
    std::shared_ptr<const SubtitleStyle> m_pStyle;
};

/// The area of the list. It turns presses and movements of the left button and of a finger into
/// scrolling with momentum, whose physics are QScroller's. The wheel scrolls by lines.
class ListObject : public QGraphicsObject
{
    Q_OBJECT

public:
    explicit ListObject(const QSizeF& size);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    const QSizeF& size() const { return m_size; }
    void setSize(const QSizeF& size);
    ViewObject* viewObject() const { return m_pViewObject; }

    /// Pressed, dragged, or moving on by itself.
    bool isScrolling() const;
    /// Stops at once, without a further movement; no timer is left.
    void stopScrolling();
    /// Shapes what is in view. What is read there stays in its place.
    void settle();
    /// Shows the end of the content.
    void moveToEnd();
    /// The content has changed its height, and moves down by so many pixels. A movement that is
    /// under way goes on from there.
    void shiftContent(qreal by);

signals:
    void scrollingEnded();

protected:
    bool event(QEvent* event) override;
    bool sceneEvent(QEvent* event) override;
    void wheelEvent(QGraphicsSceneWheelEvent* event) override;

private:
    void begin(const QPointF& position);
    void move(const QPointF& position);
    void end(const QPointF& position);
    bool onTouch(QEvent* event);

    qreal viewTop() const { return -m_pViewObject->y(); }
    qreal viewBottom() const { return viewTop() + m_size.height(); }
    int range() const;

    QSizeF m_size;
    ViewObject* m_pViewObject = nullptr;
    qreal m_shifted = 0;   ///< how far the content was shifted under the movement that is under way
    QElapsedTimer m_clock; ///< times of the inputs
    QPointF m_lastInput;
    int m_iFinger = -1; ///< that scrolls
    bool m_bPressed = false;
};
