#include "nametext.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace zr {

namespace {

constexpr int kMaxNameUnits = 256;
/// Of a longer sentence only the end is broken into lines; they are more than a tile shows.
constexpr int kMaxBubbleUnits = 1024;

/// Stands for what was cut off.
QString cutMark()
{
    return QStringLiteral("...");
}

/// Explicit embeddings, overrides and isolates, and the marks of a direction.
bool turnsDirection(QChar c)
{
    const ushort u = c.unicode();
    return (u >= 0x202A && u <= 0x202E) || (u >= 0x2066 && u <= 0x2069) || u == 0x200E
           || u == 0x200F || u == 0x061C;
}

/// The first position at or before `at` where no character is cut.
int boundaryBefore(const QString& text, int at)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(at);
    return finder.isAtBoundary() ? at : std::max(0, finder.toPreviousBoundary());
}

/// Half a surrogate pair becomes the replacement character.
void mendSurrogates(QString& text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (!text.at(i).isSurrogate())
            continue;
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else
            text[i] = QChar::ReplacementCharacter;
    }
}

/// Without what would be shown as a box, break the line or turn the text around.
QString printable(const QString& text)
{
    QString shown;
    shown.reserve(text.size());
    for (const QChar c : text) {
        const bool unprintable = c.category() == QChar::Other_Control
                                 || c.category() == QChar::Separator_Line
                                 || c.category() == QChar::Separator_Paragraph;
        if (!turnsDirection(c))
            shown += unprintable ? QLatin1Char(' ') : c;
    }
    return shown.simplified();
}

/// Dots belong to the side where a name ends, which is the left one of a name that is written from
/// right to left; what follows the name is not to be turned around with it.
QString isolated(const QString& name)
{
    constexpr QChar kFirstStrongIsolate(0x2068);
    constexpr QChar kPopDirectionalIsolate(0x2069);
    return name.isRightToLeft() ? kFirstStrongIsolate + name + kPopDirectionalIsolate : name;
}

/// How much of the text, from `start` on, goes on a line. At least one character does.
int lineEnd(const QString& text, int start, int roomPx, int fontPx, const TextWidth& width)
{
    int fits = start;
    int beyond = text.size() + 1;
    while (fits + 1 < beyond) {
        const int middle = (fits + beyond) / 2;
        if (width(text.mid(start, middle - start), fontPx) <= roomPx)
            fits = middle;
        else
            beyond = middle;
    }
    if (fits == text.size())
        return fits;
    const int space = text.lastIndexOf(QLatin1Char(' '), fits);
    if (space > start)
        return space + 1;
    const int boundary = boundaryBefore(text, fits);
    if (boundary > start)
        return boundary;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(start);
    const int next = finder.toNextBoundary();
    return next > start ? next : text.size();
}

} // namespace

QString shortName(const QString& userName)
{
    const QString name = userName.simplified();
    bool wide = false;
    bool digits = false;
    bool letters = false;
    for (const QChar c : name) {
        if (c >= QChar(0xA0))
            wide = true;
        else if (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            digits = true;
        else if (c > QChar(0) && c < QChar(0x7F))
            letters = true;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, name);
    if (wide || (digits && !letters)) {
        finder.toEnd();
        finder.toPreviousBoundary();
        return name.mid(std::max(0, finder.toPreviousBoundary()));
    }
    return name.left(letters && !digits ? 2 : 1).toUpper();
}

QString displayName(const QString& userName)
{
    QString name = userName.left(kMaxNameUnits);
    if (name.size() < userName.size()) {
        // A little of what follows tells whether it belongs to the last character.
        const int whole = boundaryBefore(userName.left(kMaxNameUnits + 2), kMaxNameUnits);
        name.truncate(whole > 0 ? whole : kMaxNameUnits);
    }
    mendSurrogates(name);
    return printable(name);
}

QString cutName(const QString& name, const QString& suffix, int roomPx, int fontPx,
                const TextWidth& width)
{
    const auto fits = [&](const QString& text) { return width(text, fontPx) <= roomPx; };
    if (QString whole = isolated(name) + suffix; fits(whole))
        return whole;
    const auto cut = [&](int length) { return isolated(name.left(length) + cutMark()) + suffix; };
    int kept = 0;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, name);
    for (int end = finder.toNextBoundary(); end > 0 && end < name.size() && fits(cut(end));
         end = finder.toNextBoundary()) {
        kept = end;
    }
    if (kept > 0)
        return cut(kept);
    return fits(suffix) ? suffix : QString();
}

QString firstCharacters(const QString& name, int count)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, name);
    int end = 0;
    for (int i = 0; i < count && end >= 0; ++i)
        end = finder.toNextBoundary();
    return end < 0 || end >= name.size() ? name : name.left(end) + cutMark();
}

QStringList lastLines(const QString& text, int lines, int roomPx, int fontPx,
                      const TextWidth& width)
{
    QString sentence = text.right(kMaxBubbleUnits);
    mendSurrogates(sentence);
    QStringList result;
    const QStringList paragraphs = sentence.split(QLatin1Char('\n'));
    for (const QString& paragraph : paragraphs) {
        const QString line = printable(paragraph);
        for (int start = 0; start < line.size();) {
            const int end = lineEnd(line, start, roomPx, fontPx, width);
            result += line.mid(start, end - start).trimmed();
            start = end;
        }
    }
    return result.mid(std::max(0, result.size() - lines));
}

} // namespace zr
