#include "control_api.h"

namespace zrhost {

ControlApi ControlApi::resolve(const std::function<void*(const char*)>& lookUp,
                               std::string& missing)
{
    const auto find = [&](const char* name) {
        void* const found = lookUp(name);
        if (!found)
            missing += std::string(", ") + name;
        return found;
    };
    ControlApi api;
#define ZRHOST_RESOLVE(name)                                                                       \
    api.edit.name = reinterpret_cast<decltype(api.edit.name)>(find("ZRCtrl_QLineEdit_" #name));
    ZRHOST_EDIT_EXPORTS(ZRHOST_RESOLVE)
#undef ZRHOST_RESOLVE
#define ZRHOST_RESOLVE(name)                                                                       \
    api.box.name = reinterpret_cast<decltype(api.box.name)>(find("ZRCtrl_QTextEdit_" #name));
    ZRHOST_BOX_EXPORTS(ZRHOST_RESOLVE)
#undef ZRHOST_RESOLVE
#define ZRHOST_RESOLVE(name)                                                                       \
    api.date.name = reinterpret_cast<decltype(api.date.name)>(find("ZRScreenDate_" #name));
    ZRHOST_DATE_EXPORTS(ZRHOST_RESOLVE)
#undef ZRHOST_RESOLVE
    return api;
}

} // namespace zrhost
