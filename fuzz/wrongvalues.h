// Arguments that no host should pass and that the module can tell, beside right ones.
#pragma once

#include "export_call.h"
#include "hostprocess.h"
#include "script.h"

#include <map>
#include <vector>

/// The handles that the module has given out, and those that it has taken back. An address that is
/// given out again is none of the latter any more.
class Handles
{
public:
    void keep(zr::Kind kind, void* handle);
    void end(zr::Kind kind, void* handle);
    [[nodiscard]] const std::vector<void*>& live(zr::Kind kind) { return m_live[kind]; }
    /// Mostly one that is alive.
    [[nodiscard]] void* any(zr::Kind kind, Script& script);

private:
    std::map<zr::Kind, std::vector<void*>> m_live;
    std::map<zr::Kind, std::vector<void*>> m_gone;
};

/// Values for the arguments of calls.
class WrongValues
{
public:
    /// @param windows of the host
    WrongValues(Handles& handles, std::vector<void*>& windows, ZRNotify notify);
    [[nodiscard]] zrhost::Value any(const zr::Argument& argument, Script& script);

private:
    Handles& m_handles;
    std::vector<void*>& m_windows;
    const ZRNotify m_notify;
};
