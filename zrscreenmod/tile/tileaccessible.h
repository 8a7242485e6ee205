// Tiles for assistive technology: who is shown, in which state, and the controls as actions. The
// words are Chinese, as all texts of the overlay, which is no element of its own.
#pragma once

#include "overlaylayout.h"

#include <QAccessible>

#include <memory>
#include <vector>

/// Qt asks the module about its tiles while somebody keeps the result. Every overlay does, so that
/// Qt knows nothing of the module any more when the last tile is gone. GUI thread.
std::shared_ptr<const void> shareTileAccessibility();

/// What has changed of what a tile tells about itself.
[[nodiscard]] std::vector<QAccessible::Event> changedTexts(const zr::OverlayState& before,
                                                           const zr::OverlayState& after);
