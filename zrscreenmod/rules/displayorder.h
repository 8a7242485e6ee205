// The order in which participants are shown: who can be heard comes before the muted, and among
// each those with a picture first.
#pragma once

#include <QtGlobal>

#include <vector>

namespace zr {

/// What a participant's place depends on.
struct OrderKey
{
    bool share = false; ///< a shared screen
    bool host = false;  ///< the host of the meeting
    bool self = false;  ///< the local user
    bool muted = true;
    bool picture = false; ///< the camera is on
    qint64 joinTime = 0;
    /// Place among those whom the host ordered, from 0 on; -1 for the others. Not the position that
    /// the host gave, which may be negative.
    int customized = -1;
};

/// The shared screens, then whom the host customised, in its order, then the host of the meeting
/// and the local user, then all others by what can be heard and seen of them, and by join time.
/// @param persons in join order
/// @return the display order, as indices into `persons`; each exactly once.
[[nodiscard]] std::vector<int> displayOrder(const std::vector<OrderKey>& persons);

} // namespace zr
