// The library as a host sees it: loaded by path, known by its public header only.
#pragma once

#include "exports.h"
#include "hostwindow.h"

#include <string>

/// The library, loaded for the life of the object. The member `X` is the export `ZRScreen_X`; those
/// of the other families are in `exports`.
class Module : public zr::ScreenExports
{
public:
    Module();
    ~Module();
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    /// Unloads the library early. Checks that it is really gone from the process.
    void unload();
    /// Forgets the library without unloading it: it ends with the process.
    void leaveLoaded() { m_library = nullptr; }

    zr::Exports exports;

private:
    void* m_library = nullptr;
};

/// A string argument. The interface takes `char*` but only reads it.
inline char* text(const std::string& value)
{
    return const_cast<char*>(value.c_str());
}
