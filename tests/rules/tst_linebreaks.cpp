// How a long text is broken piece by piece.
#include "linebreaks.h"

#include <QtTest>

#include <cmath>

using zr::BrokenLine;
using zr::LineBreaks;

class TestLineBreaks : public QObject
{
    Q_OBJECT

private slots:
    void breaksAsOnePiece();
    void shapesWhatIsAskedFor();
    void keepsWhatIsBeforeAChange();
    void estimatesTheRest();
    void findsWhatMayReorder();

private:
    /// Every letter is as wide as its number: 'a' 1 pixel, 'b' 2. Spaces hang, bars break.
    static std::vector<BrokenLine> broken(const QString& text, double room);
    /// Breaks until there are so many lines, and counts the units that are shaped.
    static int shape(LineBreaks& breaks, int lines);
    static LineBreaks make(const QString& text, double room)
    {
        LineBreaks breaks(8, 18);
        breaks.setText(text);
        breaks.setRoom(room);
        return breaks;
    }
    static QString letters(int units)
    {
        QString text;
        for (int i = 0; i < units; ++i)
            text += QChar('a' + (i % 20 * (i % 20) + i / 7) % 20);
        return text;
    }
};

std::vector<BrokenLine> TestLineBreaks::broken(const QString& text, double room)
{
    std::vector<BrokenLine> lines(1);
    double used = 0;
    for (const QChar c : text) {
        const double px = c == ' ' ? 5 : c == '|' ? 0 : c.unicode() - 'a' + 1;
        if (c != ' ' && used > 0 && used + px > room) {
            lines.emplace_back();
            used = 0;
        }
        used += px;
        lines.back().units += 1;
        lines.back().widthPx = used;
        if (c == '|') {
            lines.emplace_back();
            used = 0;
        }
    }
    return lines;
}

int TestLineBreaks::shape(LineBreaks& breaks, int lines)
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

void TestLineBreaks::breaksAsOnePiece()
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
            shape(breaks, std::numeric_limits<int>::max());
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

void TestLineBreaks::shapesWhatIsAskedFor()
{
    LineBreaks breaks = make(letters(100000), 200);
    QVERIFY(shape(breaks, 20) <= 1000);
    QCOMPARE(shape(breaks, 20), 0);
    QVERIFY(shape(breaks, 100) <= 2000);
    // All of it takes hardly more than its length, with another room, too.
    QVERIFY(shape(breaks, 1000000) < 110000);
    breaks.setRoom(200);
    QVERIFY(breaks.isComplete());
    breaks.setRoom(220);
    QCOMPARE(breaks.brokenLines(), 0);
    QVERIFY(shape(breaks, 1) <= 1000);
    // What cannot be broken into lines that soon is not shaped over and over.
    LineBreaks spaces = make("a" + QString(100000, ' ') + "b", 200);
    QVERIFY(shape(spaces, 2) < 300000);
    // What may stand in another order is one piece.
    LineBreaks mixed = make(letters(5000) + QChar(0x5D0), 200);
    QCOMPARE(shape(mixed, 1), 5001);
}

void TestLineBreaks::keepsWhatIsBeforeAChange()
{
    const QString text = letters(10000);
    const struct
    {
        QString text;
        int units; ///< at most, to break it again
    } changes[] = {
        {text, 0},
        {text + "more", 2000},
        {text.left(9900) + "other", 2000},
        {text.left(5000) + "other" + text.mid(5000), 7000},
        {"other" + text, 11000},
        {text.left(400), 400},
    };
    for (const auto& change : changes) {
        LineBreaks breaks = make(text, 200);
        shape(breaks, 1000000);
        breaks.setText(change.text);
        QVERIFY(shape(breaks, 1000000) <= change.units);
        QCOMPARE(breaks.lines(), static_cast<int>(broken(change.text, 200).size()));
    }
    // Letters that may reorder change everything before them, too.
    LineBreaks breaks = make(text, 200);
    shape(breaks, 1000000);
    breaks.setText(text + QChar(0x5D0));
    QCOMPARE(breaks.brokenLines(), 0);
}

void TestLineBreaks::estimatesTheRest()
{
    const QString text = letters(10000);
    const auto near = [&](const LineBreaks& breaks) {
        const double lines = static_cast<double>(broken(text, breaks.room()).size());
        return std::abs(breaks.lines() - lines) < lines / 10;
    };
    LineBreaks breaks = make(text, 200);
    QCOMPARE(breaks.lines(), 10000 * 8 / 200);
    QCOMPARE(make(QString(10000, QChar(0x5B57)), 200).lines(), 10000 * 18 / 200);
    shape(breaks, 1);
    QVERIFY(near(breaks));
    breaks.setRoom(120);
    QVERIFY(near(breaks));
    // A short one is as wide as it was.
    LineBreaks brief = make("abc", 200);
    shape(brief, 1);
    brief.setRoom(6);
    QCOMPARE(brief.lines(), 1);
    brief.setRoom(5);
    QCOMPARE(brief.lines(), 2);
}

void TestLineBreaks::findsWhatMayReorder()
{
    for (const char* text : {"", "hello", "大家好 hello 👍", "\u2028\u00A0\u0301"})
        QVERIFY(!zr::mayReorder(QString::fromUtf8(text)));
    for (const char* text : {"hello שלום", "مرحبا", "abc\u202Edef", "\u2067a", "\U0001E900"})
        QVERIFY2(zr::mayReorder(QString::fromUtf8(text)), text);
    QVERIFY(!zr::mayReorder(QString(QChar(0xD83A)))); // half a letter
}

QTEST_APPLESS_MAIN(TestLineBreaks)
#include "tst_linebreaks.moc"
