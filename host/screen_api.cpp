#include "screen_api.h"

#include "host_error.h"

#include <string>

namespace zrhost {

ScreenApi ScreenApi::resolve(const std::function<void*(const char*)>& lookUp)
{
    ScreenApi api;
    std::string missing;
#define ZRHOST_RESOLVE(name)                                                                       \
    api.name = reinterpret_cast<decltype(api.name)>(lookUp("ZRScreen_" #name));                    \
    if (!api.name)                                                                                 \
        missing += missing.empty() ? "ZRScreen_" #name : ", ZRScreen_" #name;
    ZRHOST_SCREEN_EXPORTS(ZRHOST_RESOLVE)
#undef ZRHOST_RESOLVE
    std::string missingControls;
    api.controls = ControlApi::resolve(lookUp, missingControls);
    missing +=
        missing.empty() ? missingControls.substr(missingControls.empty() ? 0 : 2) : missingControls;
    if (!missing.empty())
        throw HostError("the library does not export " + missing);
    return api;
}

} // namespace zrhost
