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

class tst_PersonOrder : public QObject
{
    Q_OBJECT

private slots:
    void joinTime();
    void joinTimesOfAMeetingAreUnique();
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
        {{4, 6}, 5, 5},
        {{5, 6}, 5, 7},
        {{5, 6, 8, 9}, 5, 7}, // the first gap
        {{1, 2, 3}, 2, 4},    // earlier ones do not count
        {{-1, 0}, -1, 1},
        {{kMin}, kMin, kMin + 1},
        {{kMax - 1}, kMax - 1, kMax},
        {{kMax}, kMax, kMax - 1}, // where the values end, below
        {{kMax - 4, kMax - 2, kMax - 1, kMax}, kMax - 2, kMax - 3},
        {{0, kMax - 1, kMax}, kMax - 1, kMax - 2},
    };
    for (const Row& row : rows)
        QCOMPARE(zr::uniqueJoinTime(row.taken, row.candidate), row.expected);
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
        {{guest(1), guest(2)}, 3, 2},
        {{guest(1), guest(2)}, 0, 0},
        {{guest(1), guest(2), guest(3)}, 2, 2}, // the same time goes behind
        {{self(100), guest(10), guest(30)}, 5, 1},
        {{host(100), guest(10), guest(30)}, 5, 1},
        {{guest(100, 2), guest(110)}, 5, 0}, // an administrator is displaced
        {{self(1), guest(10), host(200), guest(30)}, 20, 3},
        {{guest(50), guest(10), guest(30)}, 20, 0}, // before the first, not the nearest
        {{self(100), host(90)}, 1, 2},
    };
    for (const Row& row : rows)
        QCOMPARE(placeOf(row.keys, row.joinTime), row.expected);
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
