#include "module.h"

#include "check.h"
#include "hostprocess.h"

#include <cstdlib>

Module::Module()
{
    const char* const path = std::getenv("ZR_LIBRARY");
    m_library = native::loadLibrary(path ? path : native::kLibraryFile);
    REQUIRE(m_library != nullptr);
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
    CHECK(!native::isLoaded("ZRScreenMod"));
}
