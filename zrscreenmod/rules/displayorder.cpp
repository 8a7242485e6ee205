#include "displayorder.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace zr {

namespace {

enum class Group
{
    kShare,
    kCustomized,
    kHost,
    kSelf,
    kHeardAndSeen,
    kHeard,
    kSeen,
    kNeither,
};

Group groupOf(const OrderKey& key)
{
    if (key.customized >= 0)
        return Group::kCustomized;
    if (key.share)
        return Group::kShare;
    if (key.host)
        return Group::kHost;
    if (key.self)
        return Group::kSelf;
    if (!key.muted)
        return key.picture ? Group::kHeardAndSeen : Group::kHeard;
    return key.picture ? Group::kSeen : Group::kNeither;
}

/// Compares as the places do. Join times decide among the buckets alone: at the head the order is
/// the one in which the participants are kept.
std::tuple<Group, qint64> rankOf(const OrderKey& key)
{
    const Group group = groupOf(key);
    if (group == Group::kCustomized)
        return {group, key.customized};
    return {group, group >= Group::kHeardAndSeen ? key.joinTime : 0};
}

} // namespace

std::vector<int> displayOrder(const std::vector<OrderKey>& persons)
{
    std::vector<std::tuple<Group, qint64>> ranks;
    ranks.reserve(persons.size());
    for (const OrderKey& key : persons)
        ranks.push_back(rankOf(key));
    std::vector<int> order(persons.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&ranks](int a, int b) {
        return ranks[static_cast<std::size_t>(a)] < ranks[static_cast<std::size_t>(b)];
    });
    return order;
}

} // namespace zr
