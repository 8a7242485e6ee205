#include "displayorder.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <numeric>

namespace {

using Keys = std::vector<zr::OrderKey>;
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

} // namespace

class tst_DisplayOrder : public QObject
{
    Q_OBJECT

private slots:
    void order();
    void everybodyOnce();
};

void tst_DisplayOrder::order()
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
        Keys keys;
        for (const QString& person : QString(persons).split(' '))
            keys.push_back(key(person));
        QVERIFY2(zr::displayOrder(keys) == expected, persons);
    }
}

void tst_DisplayOrder::everybodyOnce()
{
    QRandomGenerator random(31);
    for (int meeting = 0; meeting < 200; ++meeting) {
        Keys persons(static_cast<std::size_t>(random.bounded(40)));
        for (auto& key : persons) {
            const quint32 bits = random.generate();
            key = {(bits & 1) != 0,  (bits & 2) != 0,    (bits & 4) != 0,      (bits & 8) != 0,
                   (bits & 16) != 0, random.bounded(10), random.bounded(-1, 3)};
        }
        Order order = zr::displayOrder(persons);
        // Ordering the ordered list changes nothing: the check timer must come to rest.
        Keys ordered;
        for (const int index : order)
            ordered.push_back(persons.at(static_cast<std::size_t>(index)));
        Order same(persons.size());
        std::iota(same.begin(), same.end(), 0);
        QCOMPARE(zr::displayOrder(ordered), same);
        std::sort(order.begin(), order.end());
        QCOMPARE(order, same);
    }
}

QTEST_APPLESS_MAIN(tst_DisplayOrder)
#include "tst_displayorder.moc"
