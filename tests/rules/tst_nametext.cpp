#include "nametext.h"

#include <QtTest>

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

} // namespace

class TestNameText : public QObject
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
        const struct
        {
            QString name;
            int roomChars;
            QString expected;
        } rows[] = {
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
        for (const auto& row : rows)
            QCOMPARE(zr::cutName(row.name, "+", row.roomChars * 10, 10, width), row.expected);
        QCOMPARE(zr::firstCharacters("abcdefgh", 7), QStringLiteral("abcdefg..."));
        QCOMPARE(zr::firstCharacters("abcdefg", 7), QStringLiteral("abcdefg"));
    }

    void sentencesRoll()
    {
        const struct
        {
            QString sentence, lastTwoLines;
            int roomPx = 60;
        } rows[] = {
            {"", ""},
            {"one two three four", "three|four"},
            {"abcdefghij", "abcdef|ghij"},
            {"one\u0007\ntwo\u202E\n", "one|two"},
            {"abc", "b|c", -5},
            {QString(5000, 'x'), "xxxxxx|xxxx"}, // no more than its end is broken
        };
        for (const auto& row : rows)
            QCOMPARE(zr::lastLines(row.sentence, 2, row.roomPx, 10, width).join('|'),
                     row.lastTwoLines);
    }
};

QTEST_APPLESS_MAIN(TestNameText)
#include "tst_nametext.moc"
