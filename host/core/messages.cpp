#include "messages.h"

#include "host_platform.h"
#include "zrscreenmod/zrscreenmod.h"

#include <cstdint>
#include <cstdio>

namespace zrhost {

namespace {

enum class Arguments
{
    None,
    Person,     ///< person, host value
    Menu,       ///< horizontal position, host value
    PlayHandle, ///< play handle, host value
    Mode,
    ModeClass,
    UserId,
    Edit,
    ShareShown,
};

struct MessageText
{
    unsigned long id;
    const char* name;
    Arguments arguments;
};

#define ZRHOST_MESSAGE(name, arguments)                                                            \
    {                                                                                              \
        name, #name, Arguments::arguments                                                          \
    }
constexpr MessageText kMessages[] = {
    ZRHOST_MESSAGE(ZRMSG_CLICK_AUDIO, Person),
    ZRHOST_MESSAGE(ZRMSG_CLICK_MORE, Menu),
    ZRHOST_MESSAGE(ZRMSG_DBLCLICK_LAYOUT, ModeClass),
    ZRHOST_MESSAGE(ZRMSG_TILE_CLICK, None),
    ZRHOST_MESSAGE(ZRMSG_CLICK_HANDUP, Person),
    ZRHOST_MESSAGE(ZRMSG_FOCUS_PERSON, Person),
    ZRHOST_MESSAGE(ZRMSG_GALLERY_PRESS, None),
    ZRHOST_MESSAGE(ZRMSG_LOOK_TOAST_NOT_ALL, None),
    ZRHOST_MESSAGE(ZRMSG_FOCUS_STREAM, UserId),
    ZRHOST_MESSAGE(ZRMSG_FOCUS_KEPT, None),
    ZRHOST_MESSAGE(ZRMSG_LOOK_TOAST_ALL, None),
    ZRHOST_MESSAGE(ZRMSG_PERSON_REMOVED, Person),
    ZRHOST_MESSAGE(ZRMSG_VIDEO_HIDDEN, Person),
    ZRHOST_MESSAGE(ZRMSG_VIDEO_SHOWN, Person),
    ZRHOST_MESSAGE(ZRMSG_MORE_MENU_CLOSED, None),
    ZRHOST_MESSAGE(ZRMSG_PERSON_INFO_UPDATED, PlayHandle),
    ZRHOST_MESSAGE(ZRMSG_EDIT_LBUTTON_DOWN, Edit),
    ZRHOST_MESSAGE(ZRMSG_EDIT_LBUTTON_UP, Edit),
    ZRHOST_MESSAGE(ZRMSG_EDIT_KEY, Edit),
    ZRHOST_MESSAGE(ZRMSG_SCREEN_MODE, Mode),
    ZRHOST_MESSAGE(ZRMSG_GALLERY_CLICK, None),
    ZRHOST_MESSAGE(ZRMSG_SHARE_RECT_CHANGED, ShareShown),
};
#undef ZRHOST_MESSAGE

std::string hex(unsigned long long value)
{
    char text[32];
    std::snprintf(text, sizeof text, "0x%llx", value);
    return text;
}

std::string describeArguments(Arguments arguments, unsigned long long wParam, long long lParam,
                              const HostValueName& nameOf)
{
    const auto hostValue = [&] {
        const std::string name = nameOf(lParam);
        return " hostValue=" + (name.empty() ? std::to_string(lParam) : name);
    };
    switch (arguments) {
    case Arguments::Person:
        return " person=" + hex(wParam) + hostValue();
    case Arguments::Menu:
        return " right=" + std::to_string(static_cast<long long>(wParam)) + hostValue();
    case Arguments::PlayHandle:
        return " play=" + hex(wParam) + hostValue();
    case Arguments::Mode:
        return " mode=" + std::to_string(static_cast<long long>(wParam));
    case Arguments::ModeClass:
        return " class=" + std::to_string(wParam);
    case Arguments::UserId: {
        const char* const userId = reinterpret_cast<const char*>(static_cast<uintptr_t>(wParam));
        return " userId=" + fromLocal8Bit(userId ? userId : "")
               + (lParam != 0 ? " focus=new" : " focus=old");
    }
    case Arguments::Edit:
        return " edit=" + hex(wParam);
    case Arguments::ShareShown:
        return " shown=" + std::to_string(wParam);
    case Arguments::None:
        break;
    }
    return {};
}

} // namespace

std::string describeMessage(unsigned long message, unsigned long long wParam, long long lParam,
                            const HostValueName& nameOf)
{
    for (const MessageText& known : kMessages) {
        if (known.id == message)
            return "message " + std::string(known.name)
                   + describeArguments(known.arguments, wParam, lParam, nameOf);
    }
    if (message >= 2 && message <= 4) {
        const std::string name = nameOf(lParam);
        return "stream request grade=" + std::to_string(message) + " for "
               + (name.empty() ? std::to_string(lParam) : name);
    }
    return "message " + std::to_string(message) + " wParam=" + hex(wParam)
           + " lParam=" + std::to_string(lParam);
}

} // namespace zrhost
