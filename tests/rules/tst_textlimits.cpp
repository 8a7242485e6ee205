#include "textlimits.h"

#include <QtTest>

class TestTextLimits : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhichPatternsAreAffordable()
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

    void dropsHalfCharacters()
    {
        const QString face = QStringLiteral("😀");
        QCOMPARE(zr::withoutHalfCharacters("a" + face), "a" + face);
        for (const QString& half : {face.left(1), face.right(1)})
            QCOMPARE(zr::withoutHalfCharacters(half + face + half + "b" + half), face + "b");
    }

    void findsEndlessWords()
    {
        const QString word(4000, 'W');
        QVERIFY(!zr::hasEndlessWord(word + "\n" + word + QStringLiteral("会") + word));
        QVERIFY(zr::hasEndlessWord("a " + word + "W"));
    }
};

QTEST_APPLESS_MAIN(TestTextLimits)
#include "tst_textlimits.moc"
