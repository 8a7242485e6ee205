#include "personorder.h"

#include <QtTest>

#include <limits>
#include <vector>

namespace {

constexpr qint64 kMax = std::numeric_limits<qint64>::max();
constexpr zr::PersonKey kSelfLate{true, 0, 500};
constexpr zr::PersonKey kHostLate{false, zr::kRoleHost, 600};

constexpr zr::PersonKey person(qint64 joinTime, int roleType = 0)
{
    return {false, roleType, joinTime};
}

} // namespace

class tst_PersonOrder : public QObject
{
    Q_OBJECT

private slots:
    void joinTime()
    {
        const struct
        {
            std::set<qint64> taken;
            qint64 candidate, expected;
        } rows[] = {
            {{}, 5, 5},
            {{1, 5, 6, 8, 9}, 5, 7}, // the first gap; earlier ones do not count
            {{kMax - 4, kMax - 2, kMax - 1, kMax}, kMax - 2, kMax - 3}, // above is none: below
            {{kMax - 2, kMax - 1, kMax}, kMax, kMax - 3},
        };
        for (const auto& row : rows)
            QCOMPARE(zr::uniqueJoinTime(row.taken, row.candidate), row.expected);
    }

    void position()
    {
        const struct
        {
            std::vector<zr::PersonKey> keys;
            qint64 joinTime;
            int expected;
        } rows[] = {
            {{}, 10, 0},
            {{person(1), person(2), person(3)}, 2, 2}, // the same time goes behind
            {{kSelfLate, kHostLate, person(10), person(30)}, 5, 2},
            {{person(100, 2), person(110)}, 5, 0},         // an administrator is displaced
            {{person(50), person(10), person(30)}, 20, 0}, // before the first, not the nearest
        };
        for (const auto& row : rows)
            QCOMPARE(
                zr::insertPosition(row.keys, row.joinTime, [](const auto& key) { return key; }),
                row.expected);
    }
};

QTEST_APPLESS_MAIN(tst_PersonOrder)
#include "tst_personorder.moc"
