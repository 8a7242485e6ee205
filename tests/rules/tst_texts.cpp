// What is made of texts: names, patterns, the watermark, subtitles, and lines broken piece by
// piece.
#include "linebreaks.h"
#include "nametext.h"
#include "subtitlerules.h"
#include "textlimits.h"
#include "watermarktext.h"

#include <QtTest>

#include <cmath>
#include <limits>

using zr::BrokenLine;
using zr::FollowStep;
using zr::LineBreaks;

namespace {

/// Every character, but accents, is as wide as the font is high.
int width(const QString& text, int fontPx)
{
    int count = 0;
    for (const QChar c : text)
        count += c.isLowSurrogate() || c.isMark() || c.category() == QChar::Other_Format ? 0 : 1;
    return count * fontPx;
}

const QString kPair = QStringLiteral("\U0001F468\u200D\U0001F469"); ///< one character

constexpr int kAll = std::numeric_limits<int>::max();
const QString kReordered(QChar(0x5D0)); ///< a letter that is written from right to left

QString letters(int units)
{
    QString text;
    for (int i = 0; i < units; ++i)
        text += QChar('a' + (i % 20 * (i % 20) + i / 7) % 20);
    return text;
}

/// Every letter is as wide as its number: 'a' 1 pixel, 'b' 2. Spaces hang, bars break.
std::vector<BrokenLine> broken(const QString& text, double room)
{
    std::vector<BrokenLine> lines(1);
    for (const QChar c : text) {
        const double px = c == ' ' ? 5 : c == '|' ? 0 : c.unicode() - 'a' + 1;
        const double used = lines.back().widthPx;
        if (c != ' ' && used > 0 && used + px > room)
            lines.emplace_back();
        lines.back().units += 1;
        lines.back().widthPx += px;
        if (c == '|')
            lines.emplace_back();
    }
    return lines;
}

LineBreaks make(const QString& text, double room)
{
    LineBreaks breaks(8, 18);
    breaks.setText(text);
    breaks.setRoom(room);
    return breaks;
}

/// Breaks until there are so many lines. @return the units that are shaped for them
int shape(LineBreaks& breaks, int lines)
{
    int units = 0;
    while (!breaks.isComplete() && breaks.brokenLines() < lines) {
        breaks.breakNext([&](int start, int count) {
            units += count;
            return broken(breaks.text().mid(start, count), breaks.room());
        });
    }
    return units;
}

} // namespace

class tst_Texts : public QObject
{
    Q_OBJECT

private slots:
    void initials()
    {
        const QString rows[][2] = {
            {"小明ab", "ab"}, // the wide ones win over the letters
            {"ab\u00A1", "b\u00A1"},
            {"alice", "AL"},
            {"12345", "45"},
            {"bob7", "B"},
            {"  a  b ", "A "},
            {" \t ", ""},
            {"ab" + kPair + "e\u0301", kPair + "e\u0301"},
            {"\u0081x", "\u0081X"}, // neither letter nor digit nor wide
        };
        for (const auto& [name, expected] : rows)
            QCOMPARE(zr::shortName(name), expected);
    }

    void namesOfOneLine()
    {
        const QString halfPairs = QString(QChar(0xDC00)) + QChar(0xD83D);
        const QString rows[][2] = {
            {" a\r\nb\u2028c\u0007d ", "a b c d"},
            {"a\u202Eb\u2067c\u200Ed", "abcd"},
            {halfPairs, QString(2, QChar::ReplacementCharacter)},
            {"ab" + kPair.repeated(5000), "ab" + kPair.repeated(50)},
            {QString(5000, QChar(0x301)), QString(256, QChar(0x301))},
        };
        for (const auto& [name, shown] : rows)
            QCOMPARE(zr::displayName(name), shown);
    }

    void cutNamesKeepTheSuffix()
    {
        // A name, for how many characters there is room, and what is shown.
        const std::tuple<QString, int, QString> rows[] = {
            {"abcdef", 7, "abcdef+"},
            {"abcdef", 6, "ab...+"},
            {"abcdef", 5, "a...+"},
            {"abcdef", 4, "+"},
            {"abcdef", -3, ""},
            // Neither half a pair nor a letter without its accent.
            {"a\U0001F600bcdef", 6, "a\U0001F600...+"},
            {"ae\u0301bcdef", 6, "ae\u0301...+"},
            // The dots stand where the name ends; the suffix is not turned around.
            {"\u0627\u0628\u062A\u062B\u062C\u062D", 6, "\u2068\u0627\u0628...\u2069+"},
        };
        for (const auto& [name, roomChars, shown] : rows)
            QCOMPARE(zr::cutName(name, "+", roomChars * 10, 10, width), shown);
        QCOMPARE(zr::firstCharacters("abcdefgh", 7), QStringLiteral("abcdefg..."));
        QCOMPARE(zr::firstCharacters("abcdefg", 7), QStringLiteral("abcdefg"));
    }

    void sentencesRoll()
    {
        // A sentence, the room for it in pixels, and its last two lines.
        const std::tuple<QString, int, QString> rows[] = {
            {"", 60, ""},
            {"one two three four", 60, "three|four"},
            {"abcdefghij", 60, "abcdef|ghij"},
            {"one\u0007\ntwo\u202E\n", 60, "one|two"},
            {"abc", -5, "b|c"},
            {QString(5000, 'x'), 60, "xxxxxx|xxxx"}, // no more than its end is broken
        };
        for (const auto& [sentence, roomPx, lines] : rows)
            QCOMPARE(zr::lastLines(sentence, 2, roomPx, 10, width).join('|'), lines);
    }

    void patternsAreAffordable()
    {
        const std::pair<QString, bool> rows[] = {
            {"^(?=.*[0-9])(?=.*[a-z])[!-~]{8,20}$", true},
            {"(([01]?[0-9]{1,2}|2[0-4][0-9]|25[0-5])\\.){3}[0-9]{1,3}", true},
            {".{0,1000}", true},
            {"[])({9999}]*\\(\\[{2}", true}, // neither group nor repetition in a set
            {"(ab){200}", false},
            {"((a{9}){9}){9}", false},
            {"(a{1000}){1,}(.{1000}.{1000})", false},
            {"a{99999999999}(b){99999999999}", true}, // not valid, and no number
            {QString(99, '(') + "a" + QString(99, ')'), true},
            {QString(60000, '('), false},
            {QString("a?").repeated(3000), false},
        };
        for (const auto& [pattern, affordable] : rows)
            QVERIFY2(zr::isAffordablePattern(pattern) == affordable, qPrintable(pattern.left(50)));
    }

    void halfCharactersAndEndlessWords()
    {
        const QString face = QStringLiteral("😀");
        QCOMPARE(zr::withoutHalfCharacters("a" + face), "a" + face);
        for (const QString& half : {face.left(1), face.right(1)})
            QCOMPARE(zr::withoutHalfCharacters(half + face + half + "b" + half), face + "b");
        const QString word(4000, 'W');
        QVERIFY(!zr::hasEndlessWord(word + "\n" + word + QStringLiteral("会") + word));
        QVERIFY(zr::hasEndlessWord("a " + word + "W"));
    }

    void watermark()
    {
        const QString name = QStringLiteral("张三");
        const QString phone = QStringLiteral("13812345678");
        const std::pair<zr::WatermarkInfo, QString> rows[] = {
            {{true, 0, name, phone, "zhang@example.com"}, name},
            {{true, 3, name, phone, "zhang@example.com"}, name}, // no such kind
            {{true, 1, name, phone, ""}, name + "-138****5678"},
            {{true, 1, name, "1234567", ""}, name + "-123****"},
            {{true, 1, name, "123456", ""}, name + "-123456"},
            {{true, 1, name, "", "zhang@example.com"}, name},
            {{true, 2, name, phone, "zhang@example.com"}, name + "-zhang@example.com"},
            {{true, 2, name, phone, ""}, name},
            {{true, 1, "", phone, ""}, ""},
            {{true, 2, "a\nb", "", "c\td"}, "a b-c d"},
            {{false, 0, name, phone, ""}, ""},
        };
        for (const auto& [info, text] : rows)
            QCOMPARE(zr::watermarkText(info), text);
        QCOMPARE(zr::watermarkText({true, 0, QString(10000, 'x'), {}, {}}).size(), 10000);
        QCOMPARE(zr::watermarkText({true, 2, QString(350000, 'x'), {}, "a"}).size(), 20000);

        const std::pair<QSize, int> tiles[] = {
            {{16, 9}, 420}, {{7680, 4320}, 1}, {{1280, 720}, 300000}, {{100, 0}, 420}};
        for (const auto& [tile, textWidth] : tiles) {
            const QVector<QPoint> grid = zr::watermarkGrid(tile, {textWidth, 45, 16});
            QVERIFY(grid.size() < 1000);
            QCOMPARE(grid.isEmpty(), tile.isEmpty()); // it always has a place
        }
    }

    void measuresItems()
    {
        const zr::SubtitleMetrics metrics{40, 10, 10, 5, 26, 27};
        // Width of the text and of the item, lines.
        constexpr int kRows[][3] = {
            {0, 355, 1}, {300, 355, 1}, {301, 355, 2}, {900, 355, 3}, // 300 pixels of room
            {7, 56, 7},  {900, 55, 1},  {900, 0, 1},                  // hardly any, and none
        };
        for (const auto& [textPx, itemPx, lines] : kRows) {
            QCOMPARE(zr::subtitleLines(textPx, itemPx - zr::subtitleTextLeft(metrics)), lines);
            QCOMPARE(zr::subtitleItemHeight(lines, metrics), 27 * lines + 39);
        }
        // An avatar that is higher than a line of text.
        QCOMPARE(zr::subtitleItemHeight(1, {80, 20, 20, 10, 26, 27}), 80);
        QCOMPARE(zr::subtitleTextTop(metrics), 7.0);
        // A million lines: all items together still fit an int.
        const qint64 highest = zr::subtitleItemHeight(1000000, metrics);
        QVERIFY(highest > 10000000);
        QVERIFY(zr::kMaxSubtitles * (highest + 20) < kAll);
    }

    void showsWhatCanBeDrawn()
    {
        const QChar line(QChar::LineSeparator);
        QCOMPARE(zr::shownSentence("a\r\nb\rc\nd\u2029e"), QString("a%1b%1c%1d%1e").arg(line));
        QCOMPARE(zr::shownSentence(QString("tab\tbell\a") + QChar(0)), QString("tab bell  "));
        const QString ordinary = QString::fromUtf8("大家好 hello 👍");
        QCOMPARE(zr::shownSentence(ordinary), ordinary);
        QCOMPARE(zr::shownSentence(QString(100000, 'x')).size(), 100000);
        QVERIFY(zr::shownSentence(QString(1000000, 'x')).size() < 1000000);
        // The table of colours is repeated, also before its beginning.
        QCOMPARE(zr::repeatedIndex(std::numeric_limits<int>::min(), 4), 0);
        QCOMPARE(zr::repeatedIndex(kAll, 4), 3);
    }

    void scrolls()
    {
        // The end of the newest item, where the list of 400 pixels stands, the content before.
        const std::tuple<int, double, int, FollowStep> rows[] = {
            {66, 0, 0, FollowStep::Fits},
            {399, 0, 330, FollowStep::Fits}, // a pixel is left
            {400, 0, 334, FollowStep::ToEnd},
            {5000, 0, 0, FollowStep::ToEnd},
            {1060, -590, 1000, FollowStep::ToEnd}, // ten pixels off the end
            {1060, -589, 1000, FollowStep::Reading},
            {1060, -640, 1000, FollowStep::ToEnd}, // pulled past it
        };
        for (const auto& [newBottom, position, oldContent, step] : rows)
            QCOMPARE(int(zr::followStep(400, newBottom, position, oldContent)), int(step));
        QCOMPARE(zr::scrollRange(1000, 400), 600);
        QCOMPARE(zr::scrollRange(300, 400), 0);
        // Up and down only; pulled down at the top and up at the end.
        QCOMPARE(zr::scrolledPosition({3, 120}, {0, 0}), QPointF(0, -120));
        QCOMPARE(zr::scrolledPosition({0, 0}, {5, -30}), QPointF(0, 30));
        QCOMPARE(zr::scrolledPosition({0, 600}, {5, 30}), QPointF(0, -630));
    }

    void piecesBreakAsTheWhole()
    {
        const QString texts[] = {letters(1),
                                 letters(1000),
                                 letters(1001),
                                 letters(7777),
                                 QString(5000, ' '),
                                 QString("|").repeated(3000),
                                 QString("abcdefg|").repeated(700),
                                 letters(900) + QString(5000, ' ') + letters(900) + '|'};
        for (const QString& text : texts) {
            for (const double room : {1.0, 50.0, 300.0}) {
                LineBreaks breaks = make(text, room);
                shape(breaks, kAll);
                const std::vector<BrokenLine> whole = broken(text, room);
                QCOMPARE(breaks.lines(), static_cast<int>(whole.size()));
                size_t line = 0;
                for (const zr::TextPiece& piece : breaks.pieces()) {
                    QCOMPARE(static_cast<size_t>(piece.firstLine), line);
                    const auto drawn = broken(text.mid(piece.start, piece.shapedUnits), room);
                    for (int i = 0; i < piece.lines; ++i, ++line)
                        QCOMPARE(drawn[static_cast<size_t>(i)].units, whole[line].units);
                }
            }
        }
        QVERIFY(make({}, 100).isComplete());
        QVERIFY(make(letters(5000), 0).isComplete());
        QCOMPARE(make(letters(5000), -5).lines(), 0);
    }

    void shapesWhatIsAskedFor()
    {
        LineBreaks breaks = make(letters(100000), 200);
        QVERIFY(shape(breaks, 20) <= 1000);
        QCOMPARE(shape(breaks, 20), 0);
        QVERIFY(shape(breaks, 100) <= 2000);
        // All of it takes hardly more than its length, with another room, too.
        QVERIFY(shape(breaks, kAll) < 110000);
        breaks.setRoom(200);
        QVERIFY(breaks.isComplete());
        breaks.setRoom(220);
        QCOMPARE(breaks.brokenLines(), 0);
        QVERIFY(shape(breaks, 1) <= 1000);
        // What cannot be broken into lines that soon is not shaped over and over.
        LineBreaks spaces = make("a" + QString(100000, ' ') + "b", 200);
        QVERIFY(shape(spaces, 2) < 300000);
        // What may stand in another order is one piece.
        LineBreaks mixed = make(letters(5000) + kReordered, 200);
        QCOMPARE(shape(mixed, 1), 5001);
    }

    void keepsWhatIsBeforeAChange()
    {
        const QString text = letters(10000);
        // What it is changed to, and the units that are shaped again: at most so many.
        const std::pair<QString, int> changes[] = {
            {text, 0},
            {text + "more", 2000},
            {text.left(9900) + "other", 2000},
            {text.left(5000) + "other" + text.mid(5000), 7000},
            {"other" + text, 11000},
            {text.left(400), 400},
        };
        for (const auto& [changed, units] : changes) {
            LineBreaks breaks = make(text, 200);
            shape(breaks, kAll);
            breaks.setText(changed);
            QVERIFY(shape(breaks, kAll) <= units);
            QCOMPARE(breaks.lines(), static_cast<int>(broken(changed, 200).size()));
            breaks.setText(changed + kReordered); // which concerns everything before it
            QCOMPARE(breaks.brokenLines(), 0);
        }
    }

    void estimatesTheRest()
    {
        const QString text = letters(10000);
        LineBreaks breaks = make(text, 200);
        QCOMPARE(breaks.lines(), 10000 * 8 / 200);
        QCOMPARE(make(QString(10000, QChar(0x5B57)), 200).lines(), 10000 * 18 / 200);
        shape(breaks, 1);
        for (const double room : {200.0, 120.0}) {
            breaks.setRoom(room);
            const double lines = static_cast<double>(broken(text, room).size());
            QVERIFY(std::abs(breaks.lines() - lines) < lines / 10);
        }
        // A short one is as wide as it was.
        LineBreaks brief = make("abc", 200);
        shape(brief, 1);
        brief.setRoom(6);
        QCOMPARE(brief.lines(), 1);
        brief.setRoom(5);
        QCOMPARE(brief.lines(), 2);
    }

    void findsWhatMayReorder()
    {
        for (const char* text : {"", "hello", "大家好 hello 👍", "\u2028\u00A0\u0301"})
            QVERIFY(!zr::mayReorder(QString::fromUtf8(text)));
        for (const char* text : {"hello שלום", "مرحبا", "abc\u202Edef", "\u2067a", "\U0001E900"})
            QVERIFY2(zr::mayReorder(QString::fromUtf8(text)), text);
        QVERIFY(!zr::mayReorder(QString(QChar(0xD83A)))); // half a letter
    }
};

QTEST_APPLESS_MAIN(tst_Texts)
#include "tst_texts.moc"
