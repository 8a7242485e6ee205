// In which order participants are listed, shown and counted.
#include "displayorder.h"
#include "personorder.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <limits>
#include <numeric>

namespace {

using Order = std::vector<int>;

/// A participant by letters: Share, Host, seLf, heard (Voice), Picture; then the join time, and
/// behind a slash the place that the host of the meeting gave.
zr::OrderKey key(const QString& person)
{
    zr::OrderKey key;
    key.share = person.contains('S');
    key.host = person.contains('H');
    key.self = person.contains('L');
    key.muted = !person.contains('V');
    key.picture = person.contains('P');
    const QString place = person.section('/', 1);
    key.customized = place.isEmpty() ? -1 : place.toInt();
    const QString joined = person.section('/', 0, 0);
    key.joinTime = joined.mid(joined.indexOf(QRegularExpression("[-0-9]"))).toLongLong();
    return key;
}

constexpr qint64 kMax = std::numeric_limits<qint64>::max();

} // namespace

class tst_Order : public QObject
{
    Q_OBJECT

private slots:
    void displayOrder()
    {
        const std::pair<const char*, Order> rows[] = {
            {"1 P2 V3 VP4", {3, 2, 1, 0}},  // voices before pictures
            {"VP9 VP-2 VP5", {1, 2, 0}},    // alike ones by join time
            {"VP3 VP3 VP3", {0, 1, 2}},     // and then by arrival
            {"VP1 L2 H3 S4", {3, 2, 1, 0}}, // at the head though muted
            {"LVP1 HL9", {1, 0}},           // the local user is the host
            {"H8 HVP2", {0, 1}},            // hosts stay in the order in which they are kept
            {"HVP1 VP2/7 3/0 S4", {3, 2, 1, 0}},
            {"LVP1/2 SP2/1 HP3/0 VP0", {2, 1, 0, 3}}, // who has a place is nothing else
        };
        for (const auto& [persons, expected] : rows) {
            std::vector<zr::OrderKey> keys;
            for (const QString& person : QString(persons).split(' '))
                keys.push_back(key(person));
            QVERIFY2(zr::displayOrder(keys) == expected, persons);
        }
    }

    void everybodyIsShownOnce()
    {
        QRandomGenerator random(31);
        for (int meeting = 0; meeting < 200; ++meeting) {
            std::vector<zr::OrderKey> persons(static_cast<std::size_t>(random.bounded(40)));
            for (auto& key : persons) {
                const quint32 bits = random.generate();
                key = {(bits & 1) != 0,  (bits & 2) != 0,    (bits & 4) != 0,      (bits & 8) != 0,
                       (bits & 16) != 0, random.bounded(10), random.bounded(-1, 3)};
            }
            Order order = zr::displayOrder(persons);
            // Ordering the ordered list changes nothing: the check timer must come to rest.
            std::vector<zr::OrderKey> ordered;
            for (const int index : order)
                ordered.push_back(persons.at(static_cast<std::size_t>(index)));
            Order same(persons.size());
            std::iota(same.begin(), same.end(), 0);
            QCOMPARE(zr::displayOrder(ordered), same);
            std::sort(order.begin(), order.end());
            QCOMPARE(order, same);
        }
    }

    void joinTimesAreUnique()
    {
        const std::tuple<std::set<qint64>, qint64, qint64> rows[] = {
            {{}, 5, 5},
            {{1, 5, 6, 8, 9}, 5, 7}, // the first gap; earlier ones do not count
            {{kMax - 4, kMax - 2, kMax - 1, kMax}, kMax - 2, kMax - 3}, // above is none: below
            {{kMax - 2, kMax - 1, kMax}, kMax, kMax - 3},
        };
        for (const auto& [taken, candidate, expected] : rows)
            QCOMPARE(zr::uniqueJoinTime(taken, candidate), expected);
    }

    void insertsByJoinTime()
    {
        // Who is listed: self, role, join time. Then the join time of who comes, and the place.
        const std::tuple<std::vector<zr::PersonKey>, qint64, int> rows[] = {
            {{}, 10, 0},
            {{{false, 0, 1}, {false, 0, 2}, {false, 0, 3}}, 2, 2}, // the same time goes behind
            {{{true, 0, 500}, {false, zr::kRoleHost, 600}, {false, 0, 10}, {false, 0, 30}}, 5, 2},
            {{{false, 2, 100}, {false, 0, 110}}, 5, 0}, // an administrator is displaced
            {{{false, 0, 50}, {false, 0, 10}, {false, 0, 30}}, 20, 0}, // before the first later one
        };
        for (const auto& [keys, joinTime, place] : rows)
            QCOMPARE(zr::insertPosition(keys, joinTime, [](const auto& key) { return key; }),
                     place);
    }
};

QTEST_APPLESS_MAIN(tst_Order)
#include "tst_order.moc"
