#include "nametext.h"

#include <QtTest>

class TestNameText : public QObject
{
    Q_OBJECT

private slots:
    void initials_data();
    void initials();
    void namesOfOneLine();
    void cutNamesKeepTheSuffix();
    void sentencesRoll();
};

void TestNameText::initials_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* what, const QString& name, const QString& expected) {
        QTest::newRow(what) << name << expected;
    };
    row("wide", QStringLiteral("欧阳小明"), QStringLiteral("小明"));
    row("wide wins over letters", QStringLiteral("小明ab"), QStringLiteral("ab"));
    row("the first wide character is U+00A0's neighbour", QStringLiteral("ab\u00A1"),
        QStringLiteral("b\u00A1"));
    row("letters", QStringLiteral("alice"), QStringLiteral("AL"));
    row("one letter", QStringLiteral("a"), QStringLiteral("A"));
    row("digits", QStringLiteral("12345"), QStringLiteral("45"));
    row("letters and digits", QStringLiteral("bob7"), QStringLiteral("B"));
    row("white space around and inside", QStringLiteral("  a  b "), QStringLiteral("A "));
    row("empty", QString(), QString());
    row("only white space", QStringLiteral(" \t "), QString());
    row("no character is cut in half", QStringLiteral("ab\U0001F468\u200D\U0001F469e\u0301"),
        QStringLiteral("\U0001F468\u200D\U0001F469e\u0301"));
    row("neither letter nor digit nor wide", QStringLiteral("\u0081x"), QStringLiteral("\u0081X"));
}

void TestNameText::initials()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QCOMPARE(zr::shortName(name), expected);
}

namespace {

/// Every character, but accents, is as wide as the font is high.
int width(const QString& text, int fontPx)
{
    int count = 0;
    for (const QChar c : text)
        count += c.isLowSurrogate() || c.isMark() || c.category() == QChar::Other_Format ? 0 : 1;
    return count * fontPx;
}

} // namespace

void TestNameText::namesOfOneLine()
{
    const QString replaced(QChar::ReplacementCharacter);
    QCOMPARE(zr::displayName(QStringLiteral(" a\r\nb\u2028c\u0007d ")), QStringLiteral("a b c d"));
    QCOMPARE(zr::displayName(QStringLiteral("a\u202Eb\u2067c\u200Ed")), QStringLiteral("abcd"));
    QCOMPARE(zr::displayName(QString(QChar(0xDC00)) + QChar(0xD83D)), replaced + replaced);
    const QString pair = QStringLiteral("\U0001F468\u200D\U0001F469");
    QCOMPARE(zr::displayName(QStringLiteral("ab") + pair.repeated(5000)),
             QStringLiteral("ab") + pair.repeated(50));
    QCOMPARE(zr::displayName(QString(5000, QChar(0x301))).size(), 256);
}

void TestNameText::cutNamesKeepTheSuffix()
{
    const auto cut = [](const QString& name, int characters) {
        return zr::cutName(name, QStringLiteral("+"), characters * 10, 10, width);
    };
    QCOMPARE(cut(QStringLiteral("abcdef"), 7), QStringLiteral("abcdef+"));
    QCOMPARE(cut(QStringLiteral("abcdef"), 6), QStringLiteral("ab...+"));
    QCOMPARE(cut(QStringLiteral("abcdef"), 5), QStringLiteral("a...+"));
    QCOMPARE(cut(QStringLiteral("abcdef"), 4), QStringLiteral("+"));
    for (const int none : {0, -3})
        QCOMPARE(cut(QStringLiteral("abcdef"), none), QString());
    // Neither half a pair nor a letter without its accent.
    QCOMPARE(cut(QStringLiteral("a\U0001F600bcdef"), 6), QStringLiteral("a\U0001F600...+"));
    QCOMPARE(cut(QStringLiteral("ae\u0301bcdef"), 6), QStringLiteral("ae\u0301...+"));
    // The dots stand where the name ends; the suffix is not turned around.
    QCOMPARE(cut(QStringLiteral("\u0627\u0628\u062A\u062B\u062C\u062D"), 6),
             QStringLiteral("\u2068\u0627\u0628...\u2069+"));
    QCOMPARE(zr::firstCharacters(QStringLiteral("abcdefgh"), 7), QStringLiteral("abcdefg..."));
    QCOMPARE(zr::firstCharacters(QStringLiteral("abcdefg"), 7), QStringLiteral("abcdefg"));
}

void TestNameText::sentencesRoll()
{
    const auto lines = [](const QString& text) {
        return zr::lastLines(text, 2, 60, 10, width).join(QLatin1Char('|'));
    };
    QCOMPARE(lines(QString()), QString());
    QCOMPARE(lines(QStringLiteral("one")), QStringLiteral("one"));
    QCOMPARE(lines(QStringLiteral("one two three")), QStringLiteral("two|three"));
    QCOMPARE(lines(QStringLiteral("one two three four")), QStringLiteral("three|four"));
    QCOMPARE(lines(QStringLiteral("abcdefghij")), QStringLiteral("abcdef|ghij"));
    QCOMPARE(lines(QStringLiteral("one\u0007\ntwo\u202E\n")), QStringLiteral("one|two"));
    QCOMPARE(zr::lastLines(QStringLiteral("abc"), 2, -5, 10, width),
             QStringList({QStringLiteral("b"), QStringLiteral("c")}));
    QCOMPARE(lines(QString(1000000, QLatin1Char('x'))).size(), 6 + 1 + 1024 % 6);
}

QTEST_APPLESS_MAIN(TestNameText)
#include "tst_nametext.moc"
