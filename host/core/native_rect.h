// The public header and the definition of its `tagRECT`, which on Windows is the system's.
#pragma once

#if defined(_WIN32)
#    include <windows.h>
#endif

#include "zrscreenmod/zrscreenmod.h"
