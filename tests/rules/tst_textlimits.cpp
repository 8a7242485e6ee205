#include "textlimits.h"

#include <QtTest>

class TestTextLimits : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhichPatternsAreAffordable();
    void dropsHalfCharacters();
    void findsEndlessWords();
};

void TestTextLimits::tellsWhichPatternsAreAffordable()
{
    const auto times = [](int count, const char* text) { return QByteArray(text).repeated(count); };
    const struct
    {
        QByteArray pattern;
        bool affordable;
    } rows[] = {
        {"", true},
        {"^(?=.*[0-9])(?=.*[a-z])[!-~]{8,20}$", true},
        {"(([01]?[0-9]{1,2}|2[0-4][0-9]|25[0-5])\\.){3}[0-9]{1,3}", true},
        {".{0,1000}", true},
        {"[])({9999}]*\\(\\[{2}", true}, // neither group nor repetition in a set
        {"(ab){200}", false},
        {"((a{9}){9}){9}", false},
        {"(a{1000}){1,}(.{1000}.{1000})", false},
        {"a{99999999999}(b){99999999999}", true}, // not valid, and no number
        {times(99, "(") + "a" + times(99, ")"), true},
        {times(60000, "("), false},
        {times(3000, "a?"), false},
    };
    for (const auto& row : rows)
        QVERIFY2(zr::isAffordablePattern(QString::fromLatin1(row.pattern)) == row.affordable,
                 row.pattern.left(50));
}

void TestTextLimits::dropsHalfCharacters()
{
    const QString face = QStringLiteral("😀");
    QCOMPARE(zr::withoutHalfCharacters(face + QLatin1Char('a') + face),
             face + QLatin1Char('a') + face);
    for (const QString& half : {face.left(1), face.right(1)})
        QCOMPARE(zr::withoutHalfCharacters(half + face + half + QLatin1Char('b') + half),
                 face + QLatin1Char('b'));
}

void TestTextLimits::findsEndlessWords()
{
    const QString word(4000, QLatin1Char('W'));
    QVERIFY(!zr::hasEndlessWord(word + QLatin1Char('\n') + word + QStringLiteral("会") + word));
    QVERIFY(zr::hasEndlessWord(QStringLiteral("a ") + word + QLatin1Char('W')));
}

QTEST_APPLESS_MAIN(TestTextLimits)
#include "tst_textlimits.moc"
