// The list inside the subtitle panel: items that are stacked in a container, which is scrolled
// inside an area of fixed size. GUI thread.
#pragma once

#include "subtitlerules.h"

#include <QBrush>
#include <QColor>
#include <QElapsedTimer>
#include <QFont>
#include <QGraphicsObject>
#include <QPen>
#include <QTextLayout>

#include <memory>

/// The fonts and sizes of all subtitle lists, for the screen as it was when the first of them was
/// made. Lives as long as somebody holds it: fonts must not outlive the application object.
struct SubtitleStyle
{
    static std::shared_ptr<const SubtitleStyle> shared();
    SubtitleStyle();

    QFont itemFont;  ///< of the sentences, and of initials of one character
    QFont smallFont; ///< of longer initials
    zr::SubtitleMetrics metrics;
};

/// The height of an item, in pixels, from its text as one line broken to the room of an item of
/// that width. Logs how it came to it.
int globalGetItemHeight(const QString& text, int width);

class ViewObject;

/// One sentence: a circle with the speaker's initials, and the text, which has all the room right
/// of it and may break inside words.
class RectObject : public QGraphicsObject
{
    Q_OBJECT

public:
    RectObject(const QString& text, qreal x, qreal y, qreal width, qreal height,
               const QBrush& brush, int id, QGraphicsItem* parent);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    int id() const { return m_iId; }
    /// Breaks the text into lines; the height stays.
    void setText(const QString& text);
    const QString& text() const { return m_text; }
    void setItemHeight(int height);
    int itemHeight() const { return m_iHeight; }
    /// The height that the lines need as they were broken. More than globalGetItemHeight tells
    /// where the text has line breaks of its own, or where what the breaks leave of each line adds
    /// up to another one.
    int drawnHeight() const;
    /// The initials.
    void setName(const QString& name);
    const QString& name() const { return m_name; }
    void setColor(const QColor& color);
    const QColor& color() const { return m_color; }

private:
    std::shared_ptr<const SubtitleStyle> m_pStyle;
    QString m_text;
    QRectF m_rect;
    QPen m_pen;
    QColor m_textColor{205, 205, 205};
    int m_iHeight;
    int m_iId;
    QString m_name;
    QColor m_color;
    QTextLayout m_layout;
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
    /// Deletes an item and stacks the others. @return 1
    int removeItem(RectObject* item);
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
    /// The height or the position of the content has changed from outside: a movement that is under
    /// way goes on from there.
    void contentChanged();

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

    QSizeF m_size;
    ViewObject* m_pViewObject = nullptr;
    QElapsedTimer m_clock; ///< times of the inputs
    QPointF m_lastInput;
    int m_iFinger = -1; ///< that scrolls
    bool m_bPressed = false;
};
