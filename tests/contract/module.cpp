#include "module.h"

#include "check.h"
#include "native.h"

#include <cstdlib>

namespace {

const char* libraryPath()
{
    const char* path = std::getenv("ZR_LIBRARY");
    return path ? path : native::kLibraryFile;
}

} // namespace

Module::Module()
    : m_library(native::loadLibrary(libraryPath()))
{
    if (!m_library)
        throw check::Abandoned{};
#define ZR_LOOK_UP(member)                                                                         \
    this->member =                                                                                 \
        reinterpret_cast<decltype(member)>(native::findSymbol(m_library, "ZRScreen_" #member));    \
    REQUIRE(this->member != nullptr);
    ZR_EXPORTS(ZR_LOOK_UP)
#undef ZR_LOOK_UP
}

void* Module::find(const char* name) const
{
    return native::findSymbol(m_library, name);
}

Module::~Module()
{
    unload();
}

void Module::unload()
{
    if (!m_library)
        return;
    CHECK(native::unloadLibrary(m_library));
    m_library = nullptr;
    CHECK(!native::isModuleLoaded());
}
