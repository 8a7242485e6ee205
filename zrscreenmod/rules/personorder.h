// The order in which participants are kept: by join time, behind nobody who came later, except for
// the local user and the host of the meeting, who are never displaced.
#pragma once

#include <QtGlobal>

#include <algorithm>
#include <iterator>
#include <set>

namespace zr {

/// Role type of the meeting's host.
constexpr int kRoleHost = 1;

/// What the order depends on.
struct PersonKey
{
    bool self;
    int roleType;
    qint64 joinTime;
};

/// The join time under which a new participant is kept: the candidate, or the first value above it
/// that nobody has. Where the values end, the highest free one below the candidate.
/// Costs the logarithm of the size, and one step for each value that is passed over.
[[nodiscard]] qint64 uniqueJoinTime(const std::set<qint64>& taken, qint64 candidate);

/// True for a participant whom a newcomer with this join time goes before.
[[nodiscard]] constexpr bool isDisplacedBy(const PersonKey& key, qint64 joinTime)
{
    return !key.self && key.roleType != kRoleHost && key.joinTime > joinTime;
}

/// Where a newcomer goes: before the first participant whom it displaces, else to the end.
/// One pass without a copy of the list.
/// @param persons any sequence @param keyOf makes the PersonKey of one of its elements
template<typename Sequence, typename KeyOf>
[[nodiscard]] int insertPosition(const Sequence& persons, qint64 joinTime, KeyOf keyOf)
{
    const auto first = std::begin(persons);
    const auto place =
        std::find_if(first, std::end(persons), [joinTime, &keyOf](const auto& person) {
            return isDisplacedBy(keyOf(person), joinTime);
        });
    return static_cast<int>(std::distance(first, place));
}

} // namespace zr
