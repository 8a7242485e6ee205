// The module, loaded at run time.
#pragma once

#include "host_platform.h"
#include "zrscreenmod/exports.h"

#include <memory>
#include <string>

namespace zrhost {

/// Loads the module on the GUI thread, and unloads it there with its end.
class ModuleLibrary
{
public:
    /// @param file empty for the library beside the program, or where it is installed
    /// @throws HostError
    explicit ModuleLibrary(const std::string& file);

    [[nodiscard]] const zr::Exports& exports() const { return m_exports; }

private:
    std::unique_ptr<DynamicLibrary> m_library;
    zr::Exports m_exports;
};

} // namespace zrhost
