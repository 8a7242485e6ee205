// What the module runs in, for whoever reads its log.
#pragma once

/// Logs the versions of the module and of Qt, the system, the platform plugin, the screens, the
/// fonts that stand in for those that the module asks for, and the variables of the environment
/// that change Qt or the module. The GL renderer is logged with the first tile. GUI thread.
void logSurroundings();
