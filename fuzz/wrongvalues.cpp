#include "wrongvalues.h"

#include "hostmemory.h"
#include "picture.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <utility>

namespace {

using zr::Kind;

constexpr std::size_t kMemoryBytes = 1 << 20;

void remove(std::vector<void*>& handles, void* handle)
{
    handles.erase(std::remove(handles.begin(), handles.end(), handle), handles.end());
}

void* unreadable()
{
    return reinterpret_cast<void*>(std::uintptr_t{0x10});
}

/// Where memory ends that can be read, before as much that cannot: no picture that reaches beyond
/// it has its last byte in somebody else's memory. Pictures and texts lie before it.
char* memoryEnd()
{
    static char* const end = [] {
        void* const pages = native::makePages(2 * kMemoryBytes);
        std::memset(pages, 'a', kMemoryBytes);
        char* const closed = static_cast<char*>(pages) + kMemoryBytes;
        native::protectPages(closed, kMemoryBytes, false);
        return closed;
    }();
    return end;
}

char* tooLongText()
{
    static std::string text(platform::kMaxTextBytes + 1, 'n');
    return text.data();
}

void* anyAddress(Script& script)
{
    void* const addresses[] = {nullptr, unreadable(), memoryEnd(), memoryEnd() - 3,
                               reinterpret_cast<void*>(UINTPTR_MAX - 64)};
    return script.oneOf(addresses);
}

std::string anyWords(const zr::Argument& argument, Script& script)
{
    static const std::string ids[] = {"u1",
                                      "u2",
                                      "u3",
                                      "u4",
                                      "u5",
                                      "u6",
                                      "u7",
                                      "u8",
                                      "u9",
                                      "sharescreen_u1",
                                      "sharescreen_u2",
                                      "sharescreen_",
                                      "",
                                      "nobody"};
    static const std::string texts[] = {
        "",
        "Ann",
        "\xe5\xbc\xa0\xe4\xb8\x89",
        "a b\tc\nd\r\n e",
        "<b>Ann</b><table><tr><td width=99999>x",
        "QLineEdit { color: red; min-width: 99999px }",
        "* { font: 900pt \"none\" } QLineEdit#a::hover{",
        "[0-9]{1,3}(a|b)*",
        "((((",
        "\xff\xfe\xc0\xed\xa0\x80\xf8",
        "\xe2\x80\xae\xd8\xb4\xf0\x9f\x91\xa8\xe2\x80\x8d\xf0\x9f\x91\xa9",
        std::string(300, 'w'),
        std::string(5000, 'x'),
        "%1%2%n%s",
    };
    if (script.once(6))
        return script.bytes(24);
    return argument.kind == Kind::UserId ? script.oneOf(ids) : script.oneOf(texts);
}

long long anyNumber(const zr::Argument& argument, Script& script)
{
    static const long long extremes[] = {INT_MIN, INT_MAX, -1, 0, LLONG_MIN, LLONG_MAX, 1000, 255};
    const bool isRange = argument.least > LLONG_MIN;
    const long long least = isRange ? argument.least : -2;
    const long long most = isRange ? std::min(argument.most, least + 255) : 20;
    switch (script.pick(12)) {
    case 0:
        return script.oneOf(extremes);
    case 1:
        return script.number();
    case 2:
        return script.oneOf({least - 1, most + 1});
    default:
        return least + script.pick(static_cast<int>(most - least) + 1);
    }
}

/// With one long side at most: both would be gigabytes of picture.
tagRECT anyRect(Script& script)
{
    static const int extremes[] = {INT_MIN, INT_MIN + 1, -40000,      -1,
                                   16384,   40000,       INT_MAX - 1, INT_MAX};
    tagRECT rect{script.pick(64), script.pick(64), 0, 0};
    rect.right = rect.left + 2 * script.pick(180);
    rect.bottom = rect.top + script.pick(200);
    if (!script.once(8))
        return rect;
    rect.left = script.oneOf(extremes);
    if (script.once(2))
        rect.right = script.oneOf(extremes);
    if (script.once(2)) {
        std::swap(rect.left, rect.top);
        std::swap(rect.right, rect.bottom);
    }
    return rect;
}

std::map<int, std::string> anyOrder(const zr::Argument& argument, Script& script)
{
    std::map<int, std::string> order;
    for (int left = script.pick(6); left > 0; --left)
        order[script.once(4) ? script.number() : script.pick(9)] = anyWords(argument, script);
    return order;
}

zrhost::Value anyText(const zr::Argument& argument, Script& script)
{
    zrhost::Value value;
    value.text = anyWords(argument, script);
    if (!argument.byValue && script.once(24))
        value.address = script.once(8) ? tooLongText() : anyAddress(script);
    return value;
}

VantrelRTCVideoFrameQT anyFrame(Script& script)
{
    static const std::uint32_t sizes[][2] = {{64, 36},       {160, 90},
                                             {322, 181},     {16, 16},
                                             {1, 1},         {2, 3},
                                             {7, 9},         {0, 5},
                                             {5, 0},         {3, 16384},
                                             {16384, 5},     {16385, 1},
                                             {1, 16385},     {UINT32_MAX, UINT32_MAX},
                                             {65536, 65536}, {0x80000000U, 2}};
    VantrelRTCVideoFrameQT frame{};
    const auto& size = sizes[script.once(3) ? script.pick(16) : script.pick(4)];
    frame.width = size[0];
    frame.height = size[1];
    const std::uint64_t luma = std::uint64_t{size[0]} * size[1];
    const std::uint64_t chroma =
        (std::uint64_t{size[0]} + 1) / 2 * ((std::uint64_t{size[1]} + 1) / 2);
    const std::uint64_t promised = std::min<std::uint64_t>(luma + 2 * chroma, kMemoryBytes);
    // The last byte of a picture that is too short cannot be read.
    const std::uint64_t given = script.once(16) ? promised / 2 : promised;
    frame.pData = reinterpret_cast<const std::uint8_t*>(memoryEnd() - given);
    if (script.once(16))
        frame.pData = static_cast<const std::uint8_t*>(anyAddress(script));
    return frame;
}

} // namespace

void Handles::keep(zr::Kind kind, void* handle)
{
    for (auto& [other, handles] : m_gone)
        remove(handles, handle);
    m_live[kind].push_back(handle);
}

void Handles::end(zr::Kind kind, void* handle)
{
    std::vector<void*>& live = m_live[kind];
    const std::size_t before = live.size();
    remove(live, handle);
    if (live.size() == before)
        return;
    m_gone[kind].push_back(handle);
    if (kind == Kind::Screen) { // and with it its play handles; the others' are not missed
        std::vector<void*> plays = std::exchange(m_live[Kind::Play], {});
        m_gone[Kind::Play].insert(m_gone[Kind::Play].end(), plays.begin(), plays.end());
    }
}

void* Handles::any(zr::Kind kind, Script& script)
{
    static const std::vector<char> stranger(4096, 'z');
    std::vector<void*>& live = m_live[kind];
    const int choice = live.empty() ? 11 : script.pick(24);
    if (choice > 4 && !live.empty())
        return script.oneOf(live);
    switch (choice == 11 ? script.pick(5) : choice) {
    case 0:
        return nullptr;
    case 1:
        return m_gone[kind].empty() ? unreadable() : script.oneOf(m_gone[kind]);
    case 2:
        return live.empty() ? unreadable() : static_cast<char*>(live.front()) + 1;
    case 3:
        for (const auto& [other, handles] : m_live) {
            if (other != kind && !handles.empty())
                return handles.back();
        }
        [[fallthrough]];
    default:
        return const_cast<char*>(stranger.data() + 64 * script.pick(8));
    }
}

WrongValues::WrongValues(Handles& handles, std::vector<void*>& windows, ZRNotify notify)
    : m_handles(handles)
    , m_windows(windows)
    , m_notify(notify)
{
}

zrhost::Value WrongValues::any(const zr::Argument& argument, Script& script)
{
    zrhost::Value value;
    switch (argument.kind) {
    case Kind::Window:
        value.handle = script.oneOf(m_windows);
        return value;
    case Kind::Notify:
        value.notify = script.once(8)
                           ? reinterpret_cast<ZRNotify>(script.once(2) ? unreadable() : nullptr)
                           : m_notify;
        return value;
    case Kind::HostValue:
        value.handle = script.once(4) ? anyAddress(script) : unreadable();
        return value;
    case Kind::UserId:
    case Kind::Text:
        return anyText(argument, script);
    case Kind::Rectangle:
        value.rect = anyRect(script);
        break;
    case Kind::Point:
        value.point = {static_cast<int>(anyNumber({}, script)), script.pick(200)};
        break;
    case Kind::Picture:
        value.frame = anyFrame(script);
        break;
    case Kind::Order:
        value.order = anyOrder(argument, script);
        return value;
    case Kind::Watermark:
        value.watermark = {script.once(2), script.pick(4), anyWords(argument, script),
                           anyWords(argument, script), anyWords(argument, script)};
        break;
    case Kind::Buffer:
        value.text.assign(64, '\0');
        break;
    case Kind::Length: // never more than the buffer has
        value.length = script.once(4) ? static_cast<int>(script.oneOf({INT_MIN, -1, 0, 1})) : 64;
        break;
    case Kind::Flag:
        value.number = script.pick(2);
        return value;
    case Kind::Number:
        value.number = anyNumber(argument, script);
        return value;
    default:
        value.handle = m_handles.any(argument.kind, script);
        return value;
    }
    if (script.once(24))
        value.address = anyAddress(script);
    return value;
}
