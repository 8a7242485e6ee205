// What the subtitle list shows of a sentence, how high it is, and when it follows the newest one.
#include "subtitlerules.h"

#include <QtTest>

#include <limits>

using zr::FollowStep;

class TestSubtitleRules : public QObject
{
    Q_OBJECT

private slots:
    void measuresItems();
    void showsWhatCanBeDrawn();
    void repeatsTheTable();
    void followsTheEnd();
    void scrollsUpAndDownOnly();

private:
    const zr::SubtitleMetrics m_metrics{40, 10, 10, 5, 26, 27};
};

void TestSubtitleRules::measuresItems()
{
    constexpr struct
    {
        int textPx, itemPx, lines;
    } kCases[] = {
        {0, 355, 1}, {300, 355, 1}, {301, 355, 2}, {900, 355, 3}, // 300 pixels of room
        {7, 56, 7},  {900, 55, 1},  {900, 40, 1},  {900, 0, 1},   // hardly any, and none
    };
    for (const auto& c : kCases) {
        QCOMPARE(zr::subtitleLines(c.textPx, c.itemPx - zr::subtitleTextLeft(m_metrics)), c.lines);
        QCOMPARE(zr::subtitleItemHeight(c.lines, m_metrics), 27 * c.lines + 39);
    }
    // An avatar that is higher than a line of text.
    QCOMPARE(zr::subtitleItemHeight(1, {80, 20, 20, 10, 26, 27}), 80);
    QCOMPARE(zr::subtitleTextTop(m_metrics), 7.0);
    // A million lines: all items together still fit an int.
    const qint64 highest = zr::subtitleItemHeight(1000000, m_metrics);
    QVERIFY(highest > 10000000);
    QVERIFY(zr::kMaxSubtitles * (highest + 20) < std::numeric_limits<int>::max());
}

void TestSubtitleRules::showsWhatCanBeDrawn()
{
    const QChar line(QChar::LineSeparator);
    QCOMPARE(zr::shownSentence("a\r\nb\rc\nd\u2029e"), QString("a%1b%1c%1d%1e").arg(line));
    QCOMPARE(zr::shownSentence(QString("tab\tbell\a") + QChar(0)), QString("tab bell  "));
    const QString ordinary = QString::fromUtf8("大家好 hello 👍");
    QCOMPARE(zr::shownSentence(ordinary), ordinary);
    QCOMPARE(zr::shownSentence(QString(100000, 'x')).size(), 100000);
    QVERIFY(zr::shownSentence(QString(1000000, 'x')).size() < 1000000);
}

void TestSubtitleRules::repeatsTheTable()
{
    QCOMPARE(zr::repeatedIndex(std::numeric_limits<int>::min(), 4), 0);
    QCOMPARE(zr::repeatedIndex(std::numeric_limits<int>::max(), 4), 3);
}

void TestSubtitleRules::followsTheEnd()
{
    const struct
    {
        int newBottom;
        double position;
        int oldContent;
        FollowStep step;
    } rows[] = {
        {66, 0, 0, FollowStep::Fits},
        {399, 0, 330, FollowStep::Fits}, // a pixel is left
        {400, 0, 334, FollowStep::ToEnd},
        {460, 0, 394, FollowStep::ToEnd},
        {5000, 0, 0, FollowStep::ToEnd},
        {1060, -600, 1000, FollowStep::ToEnd},
        {1060, -590, 1000, FollowStep::ToEnd}, // ten pixels off the end
        {1060, -589, 1000, FollowStep::Reading},
        {1060, -640, 1000, FollowStep::ToEnd}, // pulled past it
    };
    for (const auto& [newBottom, position, oldContent, step] : rows)
        QCOMPARE(int(zr::followStep(400, newBottom, position, oldContent)), int(step));
}

void TestSubtitleRules::scrollsUpAndDownOnly()
{
    QCOMPARE(zr::scrollRange(1000, 400), 600);
    QCOMPARE(zr::scrollRange(300, 400), 0);
    QCOMPARE(zr::scrolledPosition({3, 120}, {0, 0}), QPointF(0, -120));
    QCOMPARE(zr::scrolledPosition({0, 0}, {5, -30}), QPointF(0, 30));    // pulled down at the top
    QCOMPARE(zr::scrolledPosition({0, 600}, {5, 30}), QPointF(0, -630)); // and up at the end
}

QTEST_APPLESS_MAIN(TestSubtitleRules)
#include "tst_subtitlerules.moc"
