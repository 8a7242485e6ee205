// The text of a subtitle: shaped piece by piece, and drawn from what was shaped.
#pragma once

#include "linebreaks.h"
#include "subtitlerules.h"

#include <QFont>
#include <QPointF>
#include <QRectF>
#include <QTextLayout>

#include <map>
#include <memory>

class QPainter;

/// The fonts and sizes of all subtitle lists, for the primary screen as it is when they are asked
/// for. Lives as long as somebody holds it: fonts must not outlive the application object.
struct SubtitleStyle
{
    static std::shared_ptr<const SubtitleStyle> shared();
    SubtitleStyle();

    QFont itemFont;  ///< of the sentences, and of initials of one character
    QFont smallFont; ///< of longer initials
    zr::SubtitleMetrics metrics;
    int ascentPx = 0;      ///< of itemFont
    int averageCharPx = 0; ///< of itemFont
    bool bHighResolution = false;
};

/// A text that is broken anywhere to the room it has. GUI thread.
class SentenceText
{
public:
    SentenceText();

    /// Shapes nothing yet, and keeps what was shaped before the first change.
    void setText(const QString& text);
    const QString& text() const { return m_breaks.text(); }
    /// In pixels. Shapes nothing yet.
    void setRoom(double roomPx);
    double room() const { return m_breaks.room(); }

    /// Shapes until there are so many lines, or all.
    void shapeLines(int lines);
    /// Whether all lines are known.
    bool isComplete() const { return m_breaks.isComplete(); }
    /// Those that are known, and all of them with an estimate of the others.
    int knownLines() const { return m_breaks.brokenLines(); }
    int lines() const { return m_breaks.lines(); }

    /// Draws the known lines that reach into a part of the painter's area.
    void draw(QPainter* painter, const QPointF& at, const QRectF& exposed);
    /// Gives the glyphs of a long text back, until it is drawn again.
    void dropGlyphs();

private:
    void dropUnbrokenGlyphs();
    std::unique_ptr<QTextLayout> shaped(int start, int units) const;
    const QTextLayout& layoutOf(int piece);
    void keep(int piece, std::unique_ptr<QTextLayout> layout);
    int linePx() const { return m_pStyle->metrics.lineSpacingPx; }

    std::shared_ptr<const SubtitleStyle> m_pStyle;
    zr::LineBreaks m_breaks;
    std::map<int, std::unique_ptr<QTextLayout>> m_layouts; ///< glyphs that are kept, by piece
};
