#include "textlimits.h"

#include <QStringList>

#include <algorithm>
#include <vector>

namespace zr {

namespace {

/// The last character of the set of characters that begins at `from`. A bracket right at the start
/// belongs to the set.
int endOfSet(const QString& pattern, int from)
{
    int at = from + 1;
    if (at < pattern.size() && pattern.at(at) == QLatin1Char('^'))
        ++at;
    for (++at; at < pattern.size() && pattern.at(at) != QLatin1Char(']'); ++at) {
        if (pattern.at(at) == QLatin1Char('\\'))
            ++at;
    }
    return at;
}

/// The largest number of "2,5}", which begins at `from`.
qint64 highestCount(const QString& pattern, int from)
{
    const QString counts = pattern.mid(from, pattern.indexOf(QLatin1Char('}'), from) - from);
    int highest = 0;
    for (const QString& number : counts.split(QLatin1Char(',')))
        highest = std::max(highest, number.toInt());
    return highest;
}

} // namespace

bool isAffordablePattern(const QString& pattern)
{
    constexpr std::size_t kMaxDepth = 100;
    constexpr qint64 kMaxGroup = 500;
    constexpr qint64 kMaxLength = 2000;

    std::vector<qint64> lengths{0}; // expanded, of each group that is open
    qint64 atom = 0;                // of what a quantifier would repeat
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        qint64 added = 1;
        if (c == QLatin1Char('(')) {
            lengths.push_back(0);
        } else if (c == QLatin1Char(')') && lengths.size() > 1) {
            atom = added = lengths.back() + 1;
            lengths.pop_back();
        } else if (c == QLatin1Char('{')) {
            added = atom * highestCount(pattern, i + 1);
            if (atom > 1 && added > kMaxGroup)
                return false;
        } else if (!QStringLiteral("*+?").contains(c)) {
            atom = 1;
            if (c == QLatin1Char('['))
                i = endOfSet(pattern, i);
            else if (c == QLatin1Char('\\'))
                ++i;
        }
        lengths.back() += added;
        if (lengths.size() > kMaxDepth || lengths.back() > kMaxLength)
            return false;
    }
    return true;
}

QString withoutHalfCharacters(const QString& text)
{
    QString whole;
    whole.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (!c.isSurrogate()) {
            whole += c;
        } else if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            whole += c;
            whole += text.at(++i);
        }
    }
    return whole;
}

bool hasEndlessWord(const QString& text)
{
    constexpr int kMaxWord = 4000;
    constexpr ushort kFirstIdeograph = 0x2e80; // from here on lines break between any two
    int length = 0;
    for (const QChar c : text) {
        length = c.isSpace() || c.unicode() >= kFirstIdeograph ? 0 : length + 1;
        if (length > kMaxWord)
            return true;
    }
    return false;
}

} // namespace zr
