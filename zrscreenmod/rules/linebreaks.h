// The lines of a long text, broken piece by piece and only as far as somebody looks.
#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace zr {

/// A text up to here is one piece. In code units.
constexpr int kTextPieceUnits = 1000;

/// A line as it was broken.
struct BrokenLine
{
    int units = 0;      ///< in code units, with the spaces that hang at its end
    double widthPx = 0; ///< without these spaces
};

/// Whole lines of a text that are shaped by themselves.
struct TextPiece
{
    int start = 0;       ///< in code units
    int units = 0;       ///< of its lines
    int shapedUnits = 0; ///< to shape so that its lines break as in the whole text
    int firstLine = 0;   ///< in the whole text
    int lines = 0;       ///< one or more
    double usedPx = 0;   ///< room that its text takes, with what the breaks leave of each line
};

/// Whether letters of the text may stand in another order than they are written, so that a part of
/// it cannot be shaped without the rest.
bool mayReorder(const QString& text);

/// Where the lines of a text end. What was not broken yet is estimated.
class LineBreaks
{
public:
    /// Breaks a part of the text, from its first unit on, into all of its lines: one at least.
    using Shape = std::function<std::vector<BrokenLine>(int start, int units)>;

    /// @param narrowPx, widePx what letters are taken to advance before one was shaped: Latin ones
    ///        and ideographs
    LineBreaks(double narrowPx, double widePx);

    /// What was broken is kept up to where the text has changed.
    void setText(const QString& text);
    const QString& text() const { return m_text; }
    /// In pixels. Another room forgets all lines. Without room there are none.
    void setRoom(double roomPx);
    double room() const { return m_roomPx; }

    bool isComplete() const { return m_roomPx <= 0 || brokenUnits() >= m_text.size(); }
    /// Breaks the next piece. Not when it is complete.
    void breakNext(const Shape& shape);

    const std::vector<TextPiece>& pieces() const { return m_pieces; }
    int brokenLines() const;
    /// Of the whole text: estimated, unless it is complete.
    int lines() const;

private:
    int brokenUnits() const;
    void learn();

    QString m_text;
    std::vector<TextPiece> m_pieces;
    double m_roomPx = 0;
    double m_narrowPx;
    double m_widePx;
    double m_unitPx = 0;   ///< room that a code unit takes; 0: nothing was shaped yet
    bool m_bWhole = false; ///< all of the text is one piece
};

} // namespace zr
