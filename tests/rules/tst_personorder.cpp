#include "personorder.h"

#include <QRandomGenerator>
#include <QtTest>

#include <limits>
#include <vector>

namespace {

constexpr qint64 kMax = std::numeric_limits<qint64>::max();
constexpr qint64 kMin = std::numeric_limits<qint64>::min();

using Times = std::set<qint64>;
using Keys = std::vector<zr::PersonKey>;

constexpr zr::PersonKey self(qint64 joinTime)
{
    return {true, 0, joinTime};
}

constexpr zr::PersonKey host(qint64 joinTime)
{
    return {false, 1, joinTime};
}

constexpr zr::PersonKey guest(qint64 joinTime, int roleType = 0)
{
    return {false, roleType, joinTime};
}

int placeOf(const Keys& keys, qint64 joinTime)
{
    return zr::insertPosition(keys, joinTime, [](const zr::PersonKey& key) { return key; });
}

} // namespace

Q_DECLARE_METATYPE(Times)
Q_DECLARE_METATYPE(Keys)

class tst_PersonOrder : public QObject
{
    Q_OBJECT

private slots:
    void joinTime_data();
    void joinTime();
    void joinTimesOfAMeetingAreUnique();
    void position_data();
    void position();
    void guestsStayInJoinOrder();
};

void tst_PersonOrder::joinTime_data()
{
    QTest::addColumn<Times>("taken");
    QTest::addColumn<qint64>("candidate");
    QTest::addColumn<qint64>("expected");

    const auto row = [](const char* name, const Times& taken, qint64 candidate, qint64 expected) {
        QTest::newRow(name) << taken << candidate << expected;
    };
    row("first", {}, 5, 5);
    row("free between others", {4, 6}, 5, 5);
    row("second with the same", {5}, 5, 6);
    row("third with the same", {5, 6}, 5, 7);
    row("stops at the first gap", {5, 6, 8, 9}, 5, 7);
    row("earlier ones do not count", {1, 2, 3}, 2, 4);
    row("below zero", {-1, 0}, -1, 1);
    row("smallest value", {kMin}, kMin, kMin + 1);
    row("largest value free", {kMax - 1}, kMax - 1, kMax);
    row("largest value taken", {kMax}, kMax, kMax - 1);
    row("top of the range taken", {kMax - 4, kMax - 2, kMax - 1, kMax}, kMax - 2, kMax - 3);
    row("gap far below the top", {0, kMax - 1, kMax}, kMax - 1, kMax - 2);
}

void tst_PersonOrder::joinTime()
{
    QFETCH(const Times, taken);
    QFETCH(const qint64, candidate);
    QTEST(zr::uniqueJoinTime(taken, candidate), "expected");
}

void tst_PersonOrder::joinTimesOfAMeetingAreUnique()
{
    QRandomGenerator random(7);
    Times taken;
    for (int i = 0; i < 1000; ++i) {
        const qint64 candidate = random.bounded(50); // far fewer values than participants
        const qint64 joinTime = zr::uniqueJoinTime(taken, candidate);
        QVERIFY(joinTime >= candidate);
        QVERIFY(taken.insert(joinTime).second);
    }
}

void tst_PersonOrder::position_data()
{
    QTest::addColumn<Keys>("keys");
    QTest::addColumn<qint64>("joinTime");
    QTest::addColumn<int>("expected");

    const auto row = [](const char* name, const Keys& keys, qint64 joinTime, int expected) {
        QTest::newRow(name) << keys << joinTime << expected;
    };
    row("first", {}, 10, 0);
    row("latest goes last", {guest(1), guest(2)}, 3, 2);
    row("earliest goes first", {guest(1), guest(2)}, 0, 0);
    row("between", {guest(1), guest(3)}, 2, 1);
    row("same time goes behind", {guest(1), guest(2), guest(3)}, 2, 2);
    row("local user is not displaced", {self(100), guest(10), guest(30)}, 5, 1);
    row("meeting host is not displaced", {host(100), guest(10), guest(30)}, 5, 1);
    row("an administrator is", {guest(100, 2), guest(110)}, 5, 0);
    row("behind one who is kept", {self(1), guest(10), host(200), guest(30)}, 20, 3);
    row("before the first, not the nearest", {guest(50), guest(10), guest(30)}, 20, 0);
    row("only those who are kept", {self(100), host(90)}, 1, 2);
}

void tst_PersonOrder::position()
{
    QFETCH(const Keys, keys);
    QFETCH(const qint64, joinTime);
    QTEST(placeOf(keys, joinTime), "expected");
}

void tst_PersonOrder::guestsStayInJoinOrder()
{
    QRandomGenerator random(11);
    Keys keys{self(500), host(600)};
    for (int i = 0; i < 1000; ++i) {
        const zr::PersonKey newcomer =
            guest(static_cast<qint64>(random.bounded(1000)), random.bounded(2) * 2);
        keys.insert(keys.begin() + placeOf(keys, newcomer.joinTime), newcomer);
    }
    QVERIFY(keys[0].self);
    QCOMPARE(keys[1].roleType, zr::kRoleHost);
    QVERIFY(std::is_sorted(keys.begin() + 2, keys.end(),
                           [](const auto& a, const auto& b) { return a.joinTime < b.joinTime; }));
}

QTEST_APPLESS_MAIN(tst_PersonOrder)
#include "tst_personorder.moc"
