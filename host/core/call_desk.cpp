#include "call_desk.h"

#include "export_call.h"
#include "host_error.h"
#include "host_platform.h"
#include "native_rect.h"
#include "session.h"
#include "traced_words.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace zrhost {

namespace {

using zr::Kind;

/// An answer that is no handle.
std::string wordsOf(const zr::Export& row, const Answer& answer, const std::vector<Value>& values)
{
    const ZRRect& r = answer.rect;
    std::string words = row.answer.kind == Kind::Rectangle
                            ? std::to_string(r.left) + ' ' + std::to_string(r.top) + ' '
                                  + std::to_string(r.right) + ' ' + std::to_string(r.bottom)
                            : std::to_string(answer.number);
    for (std::size_t i = 0; i < row.argumentCount; ++i) {
        if (row.arguments[i].kind == Kind::Buffer)
            words += " \"" + values[i].text.substr(0, values[i].text.find('\0')) + '"';
    }
    return words;
}

/// How an argument is written; empty for one that the host adds by itself.
std::string usageOf(const zr::Argument& argument)
{
    if (argument.use == zr::Use::Ignored)
        return {};
    switch (argument.kind) {
    case Kind::Play:
        return "WHO";
    case Kind::LineEdit:
        return "EDIT";
    case Kind::TextBox:
        return "BOX";
    case Kind::DatePicker:
        return "PICKER";
    case Kind::Window:
        return "none|main|second";
    case Kind::HostValue:
        return "VALUE";
    case Kind::UserId:
        return "ID";
    case Kind::Text:
        return "TEXT";
    case Kind::Rectangle:
        return "X,Y,WIDTHxHEIGHT";
    case Kind::Point:
        return "X,Y";
    case Kind::Picture:
        return "WIDTHxHEIGHT";
    case Kind::Order:
        return "POSITION=ID,...";
    case Kind::Watermark:
        return "KIND,NAME,PHONE,EMAIL";
    case Kind::Flag:
        return "on|off";
    case Kind::Number:
        return argument.most == LLONG_MAX
                   ? "N"
                   : std::to_string(argument.least)
                         + (argument.most == INT_MAX ? ".." : ".." + std::to_string(argument.most));
    default: // the host's own screen and extended screen, its functions, a buffer and its length
        return {};
    }
}

std::string usageOf(const zr::Export& row)
{
    std::string usage = (isHandle(row.answer.kind) ? "NAME=" : "") + std::string(row.name);
    for (std::size_t i = 0; i < row.argumentCount; ++i) {
        const std::string word = usageOf(row.arguments[i]);
        usage += word.empty() ? "" : " " + word;
    }
    return usage;
}

/// The name before "=" and the export behind it.
std::pair<std::string, const zr::Export*> findExport(const std::string& word)
{
    const std::size_t equals = word.find('=');
    const std::string name = equals == std::string::npos ? word : word.substr(equals + 1);
    for (const zr::Export& row : zr::kExports) {
        if (name != row.name)
            continue;
        if (isHandle(row.answer.kind) != (equals != std::string::npos))
            throw HostError("call: write " + usageOf(row));
        return {word.substr(0, name.size() == word.size() ? 0 : equals), &row};
    }
    throw HostError("call: there is no export '" + name + "'");
}

/// Whatever it is: the module decides what it refuses.
long long anyNumber(const std::string& text)
{
    return parseInteger(text, LLONG_MIN, LLONG_MAX, "call");
}

int anyInt(const std::string& text)
{
    return static_cast<int>(parseInteger(text, INT_MIN, INT_MAX, "call"));
}

/// How many words a call has that a person types.
std::size_t typedCount(const zr::Export& row)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < row.argumentCount; ++i)
        count += usageOf(row.arguments[i]).empty() ? 0 : 1;
    return count;
}

} // namespace

/// Turns the words of one call into its arguments.
class CallDesk::Reader
{
public:
    Reader(CallDesk& desk, const zr::Export& row, const std::vector<std::string>& words)
        : m_desk(desk)
        , m_row(row)
        , m_words(words)
        , m_complete(words.size() - 1 == row.argumentCount)
    {
    }

    Value read(const zr::Argument& argument)
    {
        Value value;
        const bool typed = !usageOf(argument).empty();
        const std::string word = typed || m_complete ? m_words.at(m_at++) : std::string();
        if (const auto wrong = wrongAddress(word))
            pass(*wrong, value);
        else if (isHandle(argument.kind))
            value.handle = m_desk.handle(argument.kind, word);
        else if (!typed && argument.use != zr::Use::Ignored)
            fill(argument, value);
        else if (!word.empty() || typed)
            parse(argument, word, value);
        return value;
    }

private:
    static constexpr int kBufferBytes = 4096;

    static void pass(void* address, Value& value)
    {
        value.address = value.handle = address;
        value.notify = reinterpret_cast<ZRNotify>(address);
    }

    /// What the host adds by itself.
    void fill(const zr::Argument& argument, Value& value) const
    {
        if (argument.kind == Kind::Buffer)
            value.text.resize(kBufferBytes);
        value.length = kBufferBytes;
        if (argument.kind == Kind::Length && m_complete)
            value.length = std::min(anyInt(m_words.back()), kBufferBytes);
        if (argument.kind == Kind::Notify)
            value.notify = m_row.answer.kind == Kind::DatePicker ? &CallDesk::onDate
                           : m_row.answer.kind == Kind::Ext      ? &ExtDesk::notify
                                                                 : &Session::notify;
    }

    void parse(const zr::Argument& argument, const std::string& word, Value& value) const
    {
        switch (argument.kind) {
        case Kind::Window:
            value.handle = m_desk.window(m_row, word);
            break;
        case Kind::HostValue:
            value.handle = reinterpret_cast<void*>(static_cast<std::intptr_t>(anyNumber(word)));
            break;
        case Kind::Rectangle:
            parseRectangle(word, value.rect);
            break;
        case Kind::Point: {
            const std::vector<std::string> parts = split(word, 2);
            value.point.x = anyInt(parts[0]);
            value.point.y = anyInt(parts[1]);
            break;
        }
        case Kind::Picture: // of whom the word before it tells
            value.frame = frameOf(m_desk.m_pictures.picture(m_words.at(m_at - 2), word));
            break;
        case Kind::Order:
            parseOrder(word, value.order);
            break;
        case Kind::Watermark:
            parseWatermark(word, value.watermark);
            break;
        case Kind::Flag:
            value.number = m_complete && word != "on" && word != "off"
                               ? anyNumber(word)
                               : (parseOnOff(word, "call") ? 1 : 0);
            break;
        case Kind::Number:
            value.number = anyNumber(word);
            break;
        default:
            value.text = decodeText(word, argument.encoding != zr::Encoding::Utf8);
            break;
        }
    }

    /// @throws HostError for other than so many parts
    static std::vector<std::string> split(const std::string& word, std::size_t count)
    {
        std::vector<std::string> parts = decodeList(word);
        if (parts.size() != count)
            throw HostError("call: '" + word + "' has not " + std::to_string(count) + " parts");
        return parts;
    }
    /// Position and size, or the four edges.
    static void parseRectangle(const std::string& word, tagRECT& rect)
    {
        const bool isSized = word.find('x') != std::string::npos;
        const std::vector<std::string> parts = split(word, isSized ? 3 : 4);
        rect.left = anyInt(parts[0]);
        rect.top = anyInt(parts[1]);
        if (isSized) {
            const Size size = parseSize(parts[2], "call");
            rect.right = rect.left + size.width;
            rect.bottom = rect.top + size.height;
        } else {
            rect.right = anyInt(parts[2]);
            rect.bottom = anyInt(parts[3]);
        }
    }
    static void parseOrder(const std::string& word, std::map<int, std::string>& order)
    {
        for (const std::string& part : decodeList(word)) {
            const std::size_t equals = part.find('=');
            if (equals == std::string::npos && !word.empty())
                throw HostError("call: '" + part + "' is not POSITION=ID");
            if (!word.empty())
                order[anyInt(part.substr(0, equals))] = part.substr(equals + 1);
        }
    }
    static void parseWatermark(const std::string& word, __WTMark_Info& info)
    {
        const bool isSwitched = std::count(word.begin(), word.end(), ',') == 4;
        const std::vector<std::string> parts = split(word, isSwitched ? 5 : 4);
        info.bEnabled = !isSwitched || parseOnOff(parts[4], "call");
        info.cloundType = anyInt(parts[0]);
        info.name = toLocal8Bit(parts[1]);
        info.phone = parts[2];
        info.email = parts[3];
    }

    CallDesk& m_desk;
    const zr::Export& m_row;
    const std::vector<std::string>& m_words;
    const bool m_complete; ///< with what the host adds by itself
    std::size_t m_at = 1;
};

CallDesk::CallDesk(Session& session)
    : m_session(session)
    , m_pictures(session.settings().frames, session.settings().seed)
{
}

CallDesk::~CallDesk()
{
    for (const auto& [name, named] : m_named) {
        if (!named.hasEnded && named.handle)
            releaseHandle(m_session.exports(), named.kind, named.handle);
    }
}

void CallDesk::check(const std::vector<std::string>& words)
{
    const zr::Export& row = *findExport(words.front()).second;
    const std::size_t count = words.size() - 1;
    if (count != typedCount(row) && count != row.argumentCount)
        throw HostError("call: write " + usageOf(row));
}

void CallDesk::call(const std::vector<std::string>& words)
{
    check(words);
    const auto [name, row] = findExport(words.front());
    if (has(name))
        throw HostError("call: there is a '" + name + "' already");
    std::vector<Value> values;
    Reader reader(*this, *row, words);
    for (std::size_t i = 0; i < row->argumentCount; ++i)
        values.push_back(reader.read(row->arguments[i]));
    for (std::size_t i = 0; i < row->argumentCount; ++i) {
        if (row->arguments[i].use == zr::Use::Ends)
            end(row->arguments[i].kind, values[i].handle);
    }
    const Answer answer = callExport(m_session.exports(), *row, values);
    m_session.follow(*row, values, answer, m_replays);
    if (m_replays && row == &zr::kExports[zr::table::kZRScreenExt_Release])
        (void)m_session.stage().nativeWindow(m_session.parent()); // before the empty window
    if (isHandle(row->answer.kind))
        keep(name, row->answer.kind, answer.handle);
    else if (!m_replays && row->answer.kind != Kind::Nothing)
        m_session.stage().print(std::string(row->name) + " = " + wordsOf(*row, answer, values));
}

bool CallDesk::has(const std::string& name) const
{
    const auto found = m_named.find(name);
    return found != m_named.end() && !found->second.hasEnded;
}

std::string CallDesk::help()
{
    std::string help;
    for (const zr::Export& row : zr::kExports)
        help += "  call " + usageOf(row) + "\n";
    return help;
}

void CallDesk::keep(const std::string& name, Kind kind, void* handle)
{
    if (!handle && !m_replays)
        throw HostError("call: the module gives no handle for '" + name + "'");
    m_named[name] = {kind, handle};
}

void CallDesk::end(Kind kind, const void* handle)
{
    for (auto& [name, named] : m_named) {
        if (named.kind == kind && named.handle == handle && !named.hasEnded)
            named = {kind, *wrongAddress("!unknown"), true};
    }
}

void* CallDesk::handle(Kind kind, const std::string& name) const
{
    const auto found = m_named.find(name);
    if (found != m_named.end() && found->second.kind == kind
        && (m_replays || !found->second.hasEnded))
        return found->second.handle;
    switch (kind) {
    case Kind::Screen:
        return m_session.screen();
    case Kind::Ext:
        return m_session.ext().handle();
    case Kind::Play:
        return m_session.person(name).play;
    default:
        throw HostError("call: there is no such control '" + name + "'");
    }
}

WindowId CallDesk::recordedWindow(const std::string& name) const
{
    const auto found = m_windows.find(name);
    if (found == m_windows.end() || !found->second.id)
        throw HostError("there is no window '" + name + "'");
    return *found->second.id;
}

void CallDesk::resizeWindow(const std::string& name, Size size)
{
    RecordedWindow& window = m_windows[name];
    window.size = size;
    if (window.id && *window.id != WindowId::None)
        m_session.stage().resizeWindow(*window.id, size);
}

HWND CallDesk::window(const zr::Export& row, const std::string& name)
{
    if (name == "none")
        return nullptr;
    if (name == "main" || name == "second")
        return m_session.stage().nativeWindow(name == "main" ? WindowId::Main : WindowId::Second);
    if (!m_replays)
        throw HostError("call: '" + name + "' is none of none, main, second");
    RecordedWindow& window = m_windows[name];
    if (!window.id) {
        const WindowId id = chooseWindow(row);
        window.id = id;
        if (id != WindowId::None && window.size.width > 0)
            m_session.stage().resizeWindow(id, window.size);
    }
    return m_session.stage().nativeWindow(*window.id);
}

/// The host has two windows: extended screens go into the second one, and so does a screen in
/// another window than the first.
WindowId CallDesk::chooseWindow(const zr::Export& row) const
{
    if (m_session.parent() == WindowId::None)
        return WindowId::None;
    const auto isMain = [](const auto& entry) { return entry.second.id == WindowId::Main; };
    const bool isTaken = std::any_of(m_windows.begin(), m_windows.end(), isMain);
    const Kind kind = isHandle(row.answer.kind) ? row.answer.kind : row.arguments[0].kind;
    return kind == Kind::Ext || (kind == Kind::Screen && isTaken) ? WindowId::Second
                                                                  : WindowId::Main;
}

int CallDesk::onDate(unsigned long message, unsigned long long wParam, long long lParam)
{
    Session::hear(message, wParam, lParam, true);
    return 0;
}

} // namespace zrhost
