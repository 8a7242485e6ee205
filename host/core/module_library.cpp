#include "module_library.h"

#include "host_error.h"

#include <filesystem>
#include <vector>

namespace zrhost {

namespace {

/// @throws HostError where there is none
std::string findLibrary(const std::string& file)
{
    if (!file.empty()) {
        if (const std::string problem = whyUnreadable(file); !problem.empty())
            throw HostError("cannot load the library '" + file + "': " + problem);
        return file;
    }
    const auto folder = std::filesystem::u8path(programFile()).parent_path();
    const std::vector<std::string> candidates = libraryCandidates(folder.u8string());
    for (const std::string& candidate : candidates) {
        if (whyUnreadable(candidate).empty())
            return candidate;
    }
    throw HostError("the library is not there (" + candidates.front()
                    + "); name it with --library");
}

} // namespace

ModuleLibrary::ModuleLibrary(const std::string& file)
    : m_library(std::make_unique<DynamicLibrary>(findLibrary(file)))
{
    const std::string missing =
        m_exports.load([this](const char* name) { return m_library->symbol(name); });
    if (!missing.empty())
        throw HostError("the library does not export " + missing);
}

} // namespace zrhost
