#include "personorder.h"

#include <limits>

namespace zr {

namespace {

qint64 highestFreeBelow(const std::set<qint64>& taken, qint64 value)
{
    for (auto it = std::make_reverse_iterator(taken.lower_bound(value));
         value > std::numeric_limits<qint64>::min(); ++it) {
        --value;
        if (it == taken.rend() || *it != value)
            break;
    }
    return value;
}

} // namespace

qint64 uniqueJoinTime(const std::set<qint64>& taken, qint64 candidate)
{
    qint64 joinTime = candidate;
    for (auto it = taken.lower_bound(candidate); it != taken.end() && *it == joinTime; ++it) {
        if (joinTime == std::numeric_limits<qint64>::max())
            return highestFreeBelow(taken, candidate);
        ++joinTime;
    }
    return joinTime;
}

} // namespace zr
