// Replies of the X server, for tests of their own connection to it.
#pragma once

#include "platform.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

template<typename T>
std::unique_ptr<T, decltype(&std::free)> owned(T* reply)
{
    return {reply, &std::free};
}

inline xcb_window_t xid(platform::NativeWindow window)
{
    return static_cast<xcb_window_t>(window);
}
