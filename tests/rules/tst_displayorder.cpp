#include "displayorder.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <numeric>
#include <vector>

namespace {

using Keys = std::vector<zr::OrderKey>;
using Order = std::vector<int>;

enum Sound
{
    heard,
    muted,
};

enum Picture
{
    seen,
    unseen,
};

zr::OrderKey guest(Sound sound, Picture picture, qint64 joinTime)
{
    zr::OrderKey key;
    key.muted = sound == muted;
    key.picture = picture == seen;
    key.joinTime = joinTime;
    return key;
}

zr::OrderKey share(zr::OrderKey key)
{
    key.share = true;
    return key;
}

zr::OrderKey host(zr::OrderKey key)
{
    key.host = true;
    return key;
}

zr::OrderKey self(zr::OrderKey key)
{
    key.self = true;
    return key;
}

zr::OrderKey customized(int rank, zr::OrderKey key)
{
    key.customized = rank;
    return key;
}

} // namespace

Q_DECLARE_METATYPE(Keys)
Q_DECLARE_METATYPE(Order)

class tst_DisplayOrder : public QObject
{
    Q_OBJECT

private slots:
    void order_data();
    void order();
    void everybodyOnce();
};

void tst_DisplayOrder::order_data()
{
    QTest::addColumn<Keys>("persons");
    QTest::addColumn<Order>("expected");

    QTest::newRow("nobody") << Keys{} << Order{};
    QTest::newRow("a voice without a picture comes before a picture without a voice")
        << Keys{guest(muted, seen, 1), guest(heard, unseen, 2)} << Order{1, 0};
    QTest::newRow("four buckets") << Keys{guest(muted, unseen, 1), guest(muted, seen, 2),
                                          guest(heard, unseen, 3), guest(heard, seen, 4)}
                                  << Order{3, 2, 1, 0};
    QTest::newRow("by join time within a bucket")
        << Keys{guest(heard, seen, 9), guest(heard, seen, -2), guest(heard, seen, 5)}
        << Order{1, 2, 0};
    QTest::newRow("equal join times keep the order of arrival")
        << Keys{guest(heard, seen, 3), guest(heard, seen, 3), guest(heard, seen, 3)}
        << Order{0, 1, 2};
    QTest::newRow("share, host and local user at the head, though they are muted")
        << Keys{guest(heard, seen, 1), self(guest(muted, unseen, 2)), host(guest(muted, unseen, 3)),
                share(guest(muted, unseen, 4))}
        << Order{3, 2, 1, 0};
    QTest::newRow("the local user is the host")
        << Keys{self(guest(heard, seen, 1)), host(self(guest(muted, unseen, 9)))} << Order{1, 0};
    QTest::newRow("hosts stay in the order in which they are kept")
        << Keys{host(guest(muted, unseen, 8)), host(guest(heard, seen, 2))} << Order{0, 1};
    QTest::newRow("customised by rank, between the share and the head")
        << Keys{host(guest(heard, seen, 1)), customized(7, guest(heard, seen, 2)),
                customized(0, guest(muted, unseen, 3)), share(guest(muted, unseen, 4))}
        << Order{3, 2, 1, 0};
    QTest::newRow("a customised participant is nothing else")
        << Keys{customized(2, self(guest(heard, seen, 1))),
                customized(1, share(guest(muted, seen, 2))),
                customized(0, host(guest(muted, seen, 3))), guest(heard, seen, 0)}
        << Order{2, 1, 0, 3};
}

void tst_DisplayOrder::order()
{
    QFETCH(const Keys, persons);
    QFETCH(const Order, expected);
    QCOMPARE(zr::displayOrder(persons), expected);
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
