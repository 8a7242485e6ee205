#include "call_desk.h"

#include "export_call.h"
#include "host_error.h"
#include "host_platform.h"
#include "native_rect.h"
#include "session.h"
#include "synthetic_picture.h"

#include <cstdint>
#include <cstdio>
#include <limits>
#include <utility>

namespace zrhost {

namespace {

using zr::Kind;

Session* g_dateSession = nullptr;

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

int parsePixels(const std::string& text)
{
    constexpr int kMostPx = 32767;
    return static_cast<int>(parseInteger(text, -kMostPx, kMostPx, "call"));
}

WindowId parseWindow(const std::string& word)
{
    if (word == "none")
        return WindowId::None;
    if (word == "main" || word == "second")
        return word == "main" ? WindowId::Main : WindowId::Second;
    throw HostError("call: '" + word + "' is none of none, main, second");
}

} // namespace

/// Turns the words of one call into its arguments.
class CallDesk::Reader
{
public:
    Reader(const CallDesk& desk, const zr::Export& row, const std::vector<std::string>& words)
        : m_desk(desk)
        , m_row(row)
        , m_words(words)
    {
    }

    Value read(const zr::Argument& argument)
    {
        Value value;
        const bool typed = !usageOf(argument).empty();
        const std::string word = typed ? m_words.at(m_at++) : std::string();
        if (isHandle(argument.kind))
            value.handle = m_desk.handle(argument.kind, word);
        else if (!typed)
            fill(argument, value);
        else
            parse(argument, word, value);
        return value;
    }

private:
    /// What the host adds by itself.
    void fill(const zr::Argument& argument, Value& value) const
    {
        constexpr int kBufferBytes = 4096;
        if (argument.kind == Kind::Buffer)
            value.text.resize(kBufferBytes);
        value.length = kBufferBytes;
        if (argument.kind == Kind::Notify)
            value.notify = m_row.answer.kind == Kind::DatePicker ? &CallDesk::onDate
                           : m_row.answer.kind == Kind::Ext      ? &ExtDesk::notify
                                                                 : &Session::notify;
    }

    void parse(const zr::Argument& argument, const std::string& word, Value& value) const
    {
        constexpr long long kMostInt = std::numeric_limits<int>::max();
        switch (argument.kind) {
        case Kind::Window:
            value.handle = m_desk.m_session.stage().nativeWindow(parseWindow(word));
            break;
        case Kind::HostValue:
            value.handle = reinterpret_cast<void*>(
                static_cast<std::uintptr_t>(parseInteger(word, 0, kMostInt, "call")));
            break;
        case Kind::Rectangle:
            parseRectangle(word, value.rect);
            break;
        case Kind::Point: {
            const std::vector<std::string> parts = split(word, 2);
            value.point.x = parsePixels(parts[0]);
            value.point.y = parsePixels(parts[1]);
            break;
        }
        case Kind::Picture:
            draw(parseSize(word, "call"), value);
            break;
        case Kind::Order:
            parseOrder(word, value.order);
            break;
        case Kind::Watermark:
            parseWatermark(word, value.watermark);
            break;
        case Kind::Flag:
            value.number = parseOnOff(word, "call") ? 1 : 0;
            break;
        case Kind::Number: // the module decides what it refuses
            value.number = parseInteger(word, -kMostInt - 1, kMostInt, "call");
            break;
        default:
            value.text = argument.encoding == zr::Encoding::Utf8 ? word : toLocal8Bit(word);
            break;
        }
    }

    /// @throws HostError for other than so many parts
    static std::vector<std::string> split(const std::string& word, std::size_t count)
    {
        std::vector<std::string> parts = splitList(word);
        if (parts.size() != count)
            throw HostError("call: '" + word + "' has not " + std::to_string(count) + " parts");
        return parts;
    }
    static void parseRectangle(const std::string& word, tagRECT& rect)
    {
        const std::vector<std::string> parts = split(word, 3);
        const Size size = parseSize(parts[2], "call");
        rect.left = parsePixels(parts[0]);
        rect.top = parsePixels(parts[1]);
        rect.right = rect.left + size.width;
        rect.bottom = rect.top + size.height;
    }
    static void parseOrder(const std::string& word, std::map<int, std::string>& order)
    {
        for (const std::string& part : splitList(word)) {
            const std::size_t equals = part.find('=');
            if (equals == std::string::npos && !word.empty())
                throw HostError("call: '" + part + "' is not POSITION=ID");
            if (!word.empty())
                order[parsePixels(part.substr(0, equals))] = part.substr(equals + 1);
        }
    }
    static void parseWatermark(const std::string& word, __WTMark_Info& info)
    {
        const std::vector<std::string> parts = split(word, 4);
        info.bEnabled = true;
        info.cloundType = parsePixels(parts[0]);
        info.name = toLocal8Bit(parts[1]);
        info.phone = parts[2];
        info.email = parts[3];
    }
    static void draw(Size size, Value& value)
    {
        SyntheticSource source(0, 0, size, 1);
        (void)source.next(value.picture);
        value.frame = frameOf(value.picture);
    }

    const CallDesk& m_desk;
    const zr::Export& m_row;
    const std::vector<std::string>& m_words;
    std::size_t m_at = 1;
};

CallDesk::CallDesk(Session& session)
    : m_session(session)
{
    g_dateSession = &session;
}

CallDesk::~CallDesk()
{
    for (const auto& [name, named] : m_named)
        releaseHandle(m_session.exports(), named.kind, named.handle);
    g_dateSession = nullptr;
}

void CallDesk::check(const std::vector<std::string>& words)
{
    const zr::Export& row = *findExport(words.front()).second;
    std::size_t count = 1;
    for (std::size_t i = 0; i < row.argumentCount; ++i)
        count += usageOf(row.arguments[i]).empty() ? 0 : 1;
    if (words.size() != count)
        throw HostError("call: write " + usageOf(row));
}

void CallDesk::call(const std::vector<std::string>& words)
{
    check(words);
    const auto [name, row] = findExport(words.front());
    if (m_named.count(name) != 0)
        throw HostError("call: there is a '" + name + "' already");
    std::vector<Value> values;
    Reader reader(*this, *row, words);
    for (std::size_t i = 0; i < row->argumentCount; ++i)
        values.push_back(reader.read(row->arguments[i]));
    for (std::size_t i = 0; i < row->argumentCount; ++i) {
        if (row->arguments[i].use == zr::Use::Ends && words.size() > 1)
            m_named.erase(words[1]);
    }
    const Answer answer = callExport(m_session.exports(), *row, values);
    if (isHandle(row->answer.kind))
        keep(name, row->answer.kind, answer.handle);
    else if (row->answer.kind != Kind::Nothing)
        m_session.stage().print(std::string(row->name) + " = " + wordsOf(*row, answer, values));
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
    if (!handle)
        throw HostError("call: the module gives no handle for '" + name + "'");
    m_named.emplace(name, Named{kind, handle});
}

void* CallDesk::handle(Kind kind, const std::string& name) const
{
    const auto found = m_named.find(name);
    if (found != m_named.end() && found->second.kind == kind)
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

int CallDesk::onDate(unsigned long message, unsigned long long wParam, long long)
{
    if (!g_dateSession)
        return 0;
    std::string line = "date cleared";
    if (message == ZRDATE_CHOSEN) {
        const auto* const record =
            reinterpret_cast<const ZRDateRecord*>(static_cast<std::uintptr_t>(wParam));
        char text[64];
        std::snprintf(text, sizeof text, "date chosen %04d-%02d-%02d %02d:%02d", record->year,
                      record->month, record->day, record->hour, record->minute);
        line = text;
    }
    g_dateSession->stage().print(line);
    return 0;
}

} // namespace zrhost
