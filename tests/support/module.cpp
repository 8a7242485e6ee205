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
    const std::string missing =
        exports.load([this](const char* name) { return native::findSymbol(m_library, name); });
    CHECK_EQUAL(missing, "");
    static_cast<zr::ScreenExports&>(*this) = exports.ZRScreen;
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
