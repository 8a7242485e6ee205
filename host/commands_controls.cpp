// Commands about the embedded controls and the keyboard.
#include "command_table.h"
#include "control_desk.h"
#include "native_rect.h"
#include "session.h"

#include <limits>

namespace zrhost {

namespace {

using Kind = ControlDesk::Kind;

constexpr long long kMinInt = std::numeric_limits<int>::min();
constexpr long long kMaxInt = std::numeric_limits<int>::max();
const char* const kName = "CONTROL";

std::vector<ArgSpec> nameAndRectangle()
{
    std::vector<ArgSpec> arguments = arg::rectangle();
    arguments.insert(arguments.begin(), arg::text(kName));
    return arguments;
}

void* edit(Session& session, const Args& args)
{
    return session.controls().handle(Kind::Edit, args.text(0));
}

const ControlApi::Edit& editApi(Session& session)
{
    return session.controls().api().edit;
}

/// A command that gives a line edit a text.
template<void (*ControlApi::Edit::*Setter)(void*, const char*)>
void setText(Session& session, const Args& args)
{
    (editApi(session).*Setter)(edit(session, args), args.text(1).c_str());
}

/// A command that gives a line edit a number.
template<void (*ControlApi::Edit::*Setter)(void*, int)>
void setNumber(Session& session, const Args& args)
{
    (editApi(session).*Setter)(edit(session, args), args.number(1));
}

void addEditCommands(std::vector<Command>& table)
{
    using namespace arg;
    std::vector<ArgSpec> addArgs = nameAndRectangle();
    addArgs.push_back(optional(text("PLACEHOLDER")));
    table.push_back({"edit add", addArgs, "borrow a line edit, in the screen's window",
                     [](Session& s, const Args& a) {
                         tagRECT rect = readRectangle(a, 1);
                         s.controls().addEdit(a.text(0), s.parent(), rect,
                                              a.has(5) ? a.text(5) : std::string());
                     },
                     "edit add chat 10 10 200 30 \"Type here\""});
    table.push_back({"edit remove",
                     {text(kName)},
                     "give a line edit back",
                     [](Session& s, const Args& a) { s.controls().remove(Kind::Edit, a.text(0)); },
                     "edit remove title"});
    table.push_back({"edit parent",
                     {text(kName), choice({"none", "main", "second"})},
                     "put a line edit into another window",
                     [](Session& s, const Args& a) {
                         void* const handle = edit(s, a);
                         editApi(s).SetParent(
                             handle, s.stage().nativeWindow(static_cast<WindowId>(a.number(1))));
                     },
                     "edit parent title second"});
    table.push_back({"edit move", nameAndRectangle(), "place a line edit",
                     [](Session& s, const Args& a) {
                         tagRECT rect = readRectangle(a, 1);
                         editApi(s).MoveWindow(edit(s, a), &rect);
                     },
                     "edit move title 20 20 300 30"});
    table.push_back({"edit get",
                     {text(kName)},
                     "print the text of a line edit",
                     [](Session& s, const Args& a) {
                         s.stage().print("edit get " + a.text(0) + " = \""
                                         + s.controls().textOf(a.text(0)) + "\"");
                     },
                     "edit get title"});
    table.push_back({"edit text",
                     {text(kName), text("TEXT")},
                     "replace the text",
                     setText<&ControlApi::Edit::SetText>,
                     "edit text title 会议"});
    table.push_back({"edit placeholder",
                     {text(kName), text("TEXT")},
                     "what shows while the edit is empty",
                     setText<&ControlApi::Edit::SetPlaceholderText>,
                     "edit placeholder title \"Room\""});
    table.push_back({"edit style",
                     {text(kName), text("SHEET")},
                     "set its style sheet",
                     setText<&ControlApi::Edit::SetStyleSheet>,
                     "edit style title \"QLineEdit{color:red}\""});
    table.push_back({"edit name",
                     {text(kName), text("OBJECTNAME")},
                     "set the name that style sheets select",
                     setText<&ControlApi::Edit::SetObjectName>,
                     "edit name title roomEdit"});
    table.push_back({"edit pattern",
                     {text(kName), text("PATTERN")},
                     "restrict what can be typed",
                     setText<&ControlApi::Edit::SetInputRexp>,
                     "edit pattern title [0-9]*"});
    table.push_back({"edit show",
                     {text(kName), onOff()},
                     "show or hide it",
                     setNumber<&ControlApi::Edit::Show>,
                     "edit show title off"});
    table.push_back({"edit echo",
                     {text(kName), choice({"normal", "none", "password", "onedit"})},
                     "how typed text is seen",
                     setNumber<&ControlApi::Edit::SetEchoMode>,
                     "edit echo title password"});
    table.push_back({"edit maxlength",
                     {text(kName), integer("LENGTH", kMinInt, kMaxInt)},
                     "limit the length",
                     setNumber<&ControlApi::Edit::SetMaxLength>,
                     "edit maxlength title 20"});
    table.push_back({"edit cursor",
                     {text(kName), integer("POSITION", kMinInt, kMaxInt)},
                     "place the cursor",
                     setNumber<&ControlApi::Edit::SetCursorPos>,
                     "edit cursor title 3"});
    table.push_back(
        {"edit select",
         {text(kName), integer("START", kMinInt, kMaxInt), integer("LENGTH", kMinInt, kMaxInt)},
         "select text",
         [](Session& s, const Args& a) {
             editApi(s).SetSelection(edit(s, a), a.number(1), a.number(2));
         },
         "edit select title 0 5"});
    table.push_back({"edit attribute",
                     {text(kName), integer("NUMBER", kMinInt, kMaxInt), onOff()},
                     "set an attribute of the widget",
                     [](Session& s, const Args& a) {
                         editApi(s).SetAttribute(edit(s, a), a.number(1), a.flag(2));
                     },
                     "edit attribute title 120 on"});
    table.push_back({"edit focus",
                     {text(kName)},
                     "direct the keyboard to it",
                     [](Session& s, const Args& a) { editApi(s).SetFocus(edit(s, a)); },
                     "edit focus title"});
}

void addBoxCommands(std::vector<Command>& table)
{
    using namespace arg;
    std::vector<ArgSpec> addArgs = nameAndRectangle();
    for (const char* const channel : {"RED", "GREEN", "BLUE"})
        addArgs.push_back(integer(channel, 0, 255));
    table.push_back({"box add", addArgs, "borrow a text box, in the screen's window",
                     [](Session& s, const Args& a) {
                         tagRECT rect = readRectangle(a, 1);
                         s.controls().addBox(a.text(0), s.parent(), rect, a.number(5), a.number(6),
                                             a.number(7));
                     },
                     "box add notes 10 100 300 200 32 36 44"});
    table.push_back({"box remove",
                     {text(kName)},
                     "give a text box back",
                     [](Session& s, const Args& a) { s.controls().remove(Kind::Box, a.text(0)); },
                     "box remove minutes"});
    table.push_back({"box text",
                     {text(kName), text("TEXT")},
                     "replace its text",
                     [](Session& s, const Args& a) {
                         s.controls().api().box.SetText(s.controls().handle(Kind::Box, a.text(0)),
                                                        a.text(1).c_str());
                     },
                     "box text minutes \"Item 1\""});
}

void openDate(Session& session, const Args& args)
{
    tagPOINT at{};
    at.x = args.number(1);
    at.y = args.number(2);
    const auto field = [&args](std::size_t index) {
        constexpr int kPresent = -1;
        return args.has(index) ? args.number(index) : kPresent;
    };
    session.controls().api().date.Move(session.controls().handle(Kind::Date, args.text(0)), &at,
                                       field(3), field(4), field(5), field(6), field(7), field(8));
}

void addDateCommands(std::vector<Command>& table)
{
    using namespace arg;
    table.push_back({"date add",
                     {text(kName)},
                     "borrow a date picker, in the screen's window",
                     [](Session& s, const Args& a) { s.controls().addDate(a.text(0), s.parent()); },
                     "date add start"});
    table.push_back({"date remove",
                     {text(kName)},
                     "give a date picker back",
                     [](Session& s, const Args& a) { s.controls().remove(Kind::Date, a.text(0)); },
                     "date remove when"});
    std::vector<ArgSpec> openArgs{text(kName), pixels("X"), pixels("Y")};
    for (const char* const field : {"YEAR", "MONTH", "DAY", "HOUR", "MINUTE", "SECOND"})
        openArgs.push_back(optional(integer(field, kMinInt, kMaxInt)));
    table.push_back({"date open", openArgs,
                     "open it with its right edge at X and its top at Y; -1 is the present",
                     openDate, "date open when 500 20 2150 12 24 18 30"});
    table.push_back({"date hide",
                     {text(kName)},
                     "hide it",
                     [](Session& s, const Args& a) {
                         s.controls().api().date.Hide(s.controls().handle(Kind::Date, a.text(0)));
                     },
                     "date hide when"});
}

void addKeyboardCommands(std::vector<Command>& table)
{
    using namespace arg;
    table.push_back({"type",
                     {text("TEXT")},
                     "type at the keyboard",
                     [](Session& s, const Args& a) { s.stage().typeText(a.text(0)); },
                     "type \"Hello 5\""});
    table.push_back(
        {"key",
         {choice({"tab", "enter", "escape", "backspace"})},
         "press a key",
         [](Session& s, const Args& a) { s.stage().pressKey(static_cast<Key>(a.number(0))); },
         "key tab"});
}

} // namespace

void addControlCommands(std::vector<Command>& table)
{
    addEditCommands(table);
    addBoxCommands(table);
    addDateCommands(table);
    addKeyboardCommands(table);
}

} // namespace zrhost
