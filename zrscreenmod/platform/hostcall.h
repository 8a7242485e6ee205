// Whether the GUI thread is inside the code of a host.
#pragma once

/// While one exists, the GUI thread is inside a host's function, or inside something that may call
/// one: nothing that may have frames on the stack is destroyed. Put it around every message, and
/// around what changes the focus or the parent of a window, which on Windows calls the host as
/// well. May nest. GUI thread.
class HostCall
{
public:
    HostCall() { ++s_depth; }
    ~HostCall() { --s_depth; } // also when the host throws
    HostCall(const HostCall&) = delete;
    HostCall& operator=(const HostCall&) = delete;

    [[nodiscard]] static bool isInside() { return s_depth > 0; }

private:
    static inline int s_depth = 0;
};
