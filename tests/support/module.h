// The library as a host sees it: loaded by path, known by its public header only.
#pragma once

#include "check.h"
#include "export_call.h"
#include "host_platform.h"
#include "hostprocess.h"

#include <cstdlib>
#include <memory>
#include <string>

/// The library, loaded for the life of the object. The member `X` is the export `ZRScreen_X`; those
/// of the other families are in `exports`.
class Module : public zr::ScreenExports
{
public:
    Module()
    {
        const char* const path = std::getenv("ZR_LIBRARY");
        REQUIRE(path != nullptr);
        m_library = std::make_unique<zrhost::DynamicLibrary>(path);
        CHECK_EQUAL(exports.load([this](const char* name) { return m_library->symbol(name); }), "");
        static_cast<zr::ScreenExports&>(*this) = exports.ZRScreen;
    }
    ~Module() { unload(); }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    /// Unloads the library early. Checks that it is really gone from the process.
    void unload()
    {
        if (!m_library)
            return;
        m_library.reset();
        CHECK(!native::isLoaded("ZRScreenMod"));
    }
    /// Forgets the library without unloading it: it ends with the process.
    void leaveLoaded()
    {
        static std::unique_ptr<zrhost::DynamicLibrary>& kept =
            *new std::unique_ptr<zrhost::DynamicLibrary>;
        kept = std::move(m_library);
    }

    zr::Exports exports;

private:
    std::unique_ptr<zrhost::DynamicLibrary> m_library;
};

/// A string argument. The interface takes `char*` but only reads it.
inline char* text(const std::string& value)
{
    return const_cast<char*>(value.c_str());
}
