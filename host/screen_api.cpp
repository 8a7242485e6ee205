#include "screen_api.h"

#include "host_error.h"

#include <string>
#include <type_traits>

namespace zrhost {

ScreenApi ScreenApi::resolve(const std::function<void*(const char*)>& lookUp)
{
    ScreenApi api;
    std::string missing;
    const auto resolve = [&](auto& member, const char* name) {
        member = reinterpret_cast<std::decay_t<decltype(member)>>(lookUp(name));
        if (!member)
            missing += (missing.empty() ? "" : ", ") + std::string(name);
    };
#define ZRHOST_RESOLVE(name) resolve(api.name, "ZRScreen_" #name);
    ZRHOST_SCREEN_EXPORTS(ZRHOST_RESOLVE)
#undef ZRHOST_RESOLVE
    resolve(api.WtmarkSetInfo, "ZRScreenWtmark_SetInfo");
    resolve(api.WtmarkSetEnabled, "ZRScreenWtmark_SetEnabled");
    std::string missingControls;
    api.controls = ControlApi::resolve(lookUp, missingControls);
    api.ext = ExtApi::resolve(lookUp, missingControls);
    missing +=
        missing.empty() ? missingControls.substr(missingControls.empty() ? 0 : 2) : missingControls;
    if (!missing.empty())
        throw HostError("the library does not export " + missing);
    return api;
}

} // namespace zrhost
