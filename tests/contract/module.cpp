#include "module.h"

#include "check.h"

#include <cstdlib>
#include <dlfcn.h>
#include <fstream>

namespace {

const char* libraryPath()
{
    const char* path = std::getenv("ZR_LIBRARY");
    return path ? path : "libZRScreenMod.so.0";
}

/// Whether a file of that name is still mapped into the process.
bool isMapped(const std::string& name)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find(name) != std::string::npos)
            return true;
    }
    return false;
}

} // namespace

Module::Module()
    : m_library(dlopen(libraryPath(), RTLD_NOW | RTLD_LOCAL))
{
    if (!m_library) {
        check::fail(__FILE__, __LINE__, dlerror());
        throw check::Abandoned{};
    }
#define ZR_LOOK_UP(member)                                                                         \
    member = reinterpret_cast<decltype(member)>(dlsym(m_library, "ZRScreen_" #member));            \
    REQUIRE(member != nullptr);
    ZR_EXPORTS(ZR_LOOK_UP)
#undef ZR_LOOK_UP
}

Module::~Module()
{
    unload();
}

void Module::unload()
{
    if (!m_library)
        return;
    CHECK_EQUAL(dlclose(m_library), 0);
    m_library = nullptr;
    CHECK(!isMapped("libZRScreenMod"));
}
