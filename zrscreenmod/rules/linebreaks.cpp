#include "linebreaks.h"

#include <algorithm>
#include <cmath>

namespace zr {

namespace {

/// At the end of a piece lines may break otherwise than in the whole text: what follows is missing.
constexpr size_t kDoubtfulLines = 2;
/// As much of a text tells what its letters are like.
constexpr int kSampleUnits = 256;
/// No script below writes from right to left, none from the second on is narrow.
constexpr ushort kFirstRightToLeft = 0x0590;
constexpr ushort kFirstWide = 0x1100;

bool isReordering(QChar::Direction direction)
{
    switch (direction) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

double guessedUnitPx(const QString& text, double narrowPx, double widePx)
{
    const int sample = std::min(text.size(), kSampleUnits);
    const auto wide = std::count_if(text.begin(), text.begin() + sample,
                                    [](QChar c) { return c.unicode() >= kFirstWide; });
    return narrowPx + (widePx - narrowPx) * static_cast<double>(wide) / std::max(1, sample);
}

} // namespace

bool mayReorder(const QString& text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (text[i].unicode() < kFirstRightToLeft)
            continue;
        const bool pair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const uint c = pair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
        if (isReordering(QChar::direction(c)))
            return true;
    }
    return false;
}

LineBreaks::LineBreaks(double narrowPx, double widePx)
    : m_narrowPx(narrowPx)
    , m_widePx(widePx)
{
}

void LineBreaks::setText(const QString& text)
{
    if (text == m_text)
        return;
    const auto same = std::mismatch(m_text.cbegin(), m_text.cend(), text.cbegin(), text.cend());
    const auto kept = static_cast<int>(same.first - m_text.cbegin());
    const bool whole = text.size() > kTextPieceUnits && mayReorder(text);
    // A piece without doubtful lines is the last one: more text would go on in its last line.
    const auto gone = std::find_if(m_pieces.begin(), m_pieces.end(), [&](const TextPiece& piece) {
        return whole || m_bWhole || piece.start + piece.shapedUnits > kept
               || piece.units == piece.shapedUnits;
    });
    m_pieces.erase(gone, m_pieces.end());
    m_text = text;
    m_bWhole = whole;
}

void LineBreaks::setRoom(double roomPx)
{
    if (roomPx == m_roomPx)
        return;
    m_roomPx = roomPx;
    m_pieces.clear();
}

void LineBreaks::breakNext(const Shape& shape)
{
    const int start = brokenUnits();
    const int rest = m_text.size() - start;
    int units = m_bWhole ? rest : std::min(rest, kTextPieceUnits);
    std::vector<BrokenLine> lines = shape(start, units);
    // A line may be as long as it likes: spaces hang at its end, and some letters have no width.
    while (units < rest && lines.size() <= kDoubtfulLines) {
        units = units > rest / 2 ? rest : units * 2;
        lines = shape(start, units);
    }
    TextPiece piece{start, 0, units, brokenLines(), 0, 0};
    if (units < rest)
        lines.resize(lines.size() - kDoubtfulLines);
    for (const BrokenLine& line : lines)
        piece.units += line.units;
    piece.lines = static_cast<int>(lines.size());
    piece.usedPx = piece.lines * m_roomPx;
    if (units == rest)
        piece.usedPx += std::min(0.0, lines.back().widthPx - m_roomPx);
    m_pieces.push_back(piece);
    learn();
}

void LineBreaks::learn()
{
    double used = 0;
    for (const TextPiece& piece : m_pieces)
        used += piece.usedPx;
    m_unitPx = used / brokenUnits();
}

int LineBreaks::brokenUnits() const
{
    return m_pieces.empty() ? 0 : m_pieces.back().start + m_pieces.back().units;
}

int LineBreaks::brokenLines() const
{
    return m_pieces.empty() ? 0 : m_pieces.back().firstLine + m_pieces.back().lines;
}

int LineBreaks::lines() const
{
    if (isComplete())
        return brokenLines();
    const double unitPx = m_unitPx > 0 ? m_unitPx : guessedUnitPx(m_text, m_narrowPx, m_widePx);
    const double rest = (m_text.size() - brokenUnits()) * unitPx / m_roomPx;
    return brokenLines() + std::max(1, static_cast<int>(std::ceil(rest)));
}

} // namespace zr
