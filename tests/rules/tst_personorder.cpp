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

constexpr zr::PersonKey person(qint64 joinTime, int roleType = 0)
{
    return {false, roleType, joinTime};
}

int placeOf(const Keys& keys, qint64 joinTime)
{
    return zr::insertPosition(keys, joinTime, [](const zr::PersonKey& key) { return key; });
}

} // namespace

class tst_PersonOrder : public QObject
{
    Q_OBJECT

private slots:
    void joinTime();
    void position();
    void guestsStayInJoinOrder();
};

void tst_PersonOrder::joinTime()
{
    struct Row
    {
        Times taken;
        qint64 candidate, expected;
    };
    const Row rows[] = {
        {{}, 5, 5},
        {{5, 6}, 5, 7},
        {{5, 6, 8, 9}, 5, 7}, // the first gap
        {{1, 2, 3}, 2, 4},    // earlier ones do not count
        {{kMin}, kMin, kMin + 1},
        {{kMax}, kMax, kMax - 1}, // where the values end, below
        {{kMax - 4, kMax - 2, kMax - 1, kMax}, kMax - 2, kMax - 3},
        {{0, kMax - 1, kMax}, kMax - 1, kMax - 2},
    };
    for (const Row& row : rows)
        QCOMPARE(zr::uniqueJoinTime(row.taken, row.candidate), row.expected);
}

void tst_PersonOrder::position()
{
    struct Row
    {
        Keys keys;
        qint64 joinTime;
        int expected;
    };
    const Row rows[] = {
        {{}, 10, 0},
        {{person(1), person(2)}, 3, 2},
        {{person(1), person(2), person(3)}, 2, 2}, // the same time goes behind
        {{self(100), person(10), person(30)}, 5, 1},
        {{person(100, 2), person(110)}, 5, 0}, // an administrator is displaced
        {{self(1), person(10), person(200, 1), person(30)}, 20, 3},
        {{person(50), person(10), person(30)}, 20, 0}, // before the first, not the nearest
    };
    for (const Row& row : rows)
        QCOMPARE(placeOf(row.keys, row.joinTime), row.expected);
}

void tst_PersonOrder::guestsStayInJoinOrder()
{
    QRandomGenerator random(11);
    Keys keys{self(500), person(600, zr::kRoleHost)};
    Times taken{500, 600};
    for (int i = 0; i < 1000; ++i) {
        // Far fewer values than participants.
        const qint64 joinTime = zr::uniqueJoinTime(taken, random.bounded(50));
        QVERIFY(taken.insert(joinTime).second);
        keys.insert(keys.begin() + placeOf(keys, joinTime), person(joinTime, 2 * (i % 2)));
    }
    QVERIFY(keys[0].self);
    QCOMPARE(keys[1].roleType, zr::kRoleHost);
    QVERIFY(std::is_sorted(keys.begin() + 2, keys.end(),
                           [](const auto& a, const auto& b) { return a.joinTime < b.joinTime; }));
}

QTEST_APPLESS_MAIN(tst_PersonOrder)
#include "tst_personorder.moc"
