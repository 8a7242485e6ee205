// Tiles for assistive technology: who is shown, in which state, and the controls as actions.
#pragma once

#include "overlaylayout.h"

#include <memory>

class QDlgPlayInfo;

/// Qt asks the module about its tiles while somebody keeps the result. Every overlay does, so that
/// Qt knows nothing of the module any more when the last tile is gone. GUI thread.
std::shared_ptr<const void> shareTileAccessibility();

/// Tells what has changed of an overlay's tile; costs nothing while nobody listens.
void announceTile(const QDlgPlayInfo& overlay, const zr::OverlayState& before,
                  const zr::OverlayState& after);
