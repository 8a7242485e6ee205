// What a tile tells somebody who does not see it.
#pragma once

#include "overlaylayout.h"

namespace zr {

/// Who is shown.
QString tileName(const OverlayState& state);
/// Role, microphone, camera, hand, network and look, in words.
QString tileDescription(const OverlayState& state);

} // namespace zr
