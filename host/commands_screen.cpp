// Commands about the arrangement, the windows and the run itself.
#include "command_table.h"
#include "host_error.h"
#include "host_platform.h"
#include "native_rect.h"
#include "session.h"

#include <limits>
#include <map>

namespace zrhost {

namespace {

void mode(Session& session, const Args& args)
{
    std::map<int, std::string> sorting;
    for (std::size_t i = 1; i < args.count(); ++i)
        sorting[args.number(i)] = toLocal8Bit(args.text(i));
    printRefusal(session, args,
                 session.api().ChangeLayout(session.screen(),
                                            static_cast<eLayoutType>(args.number(0)), sorting));
}

void move(Session& session, const Args& args)
{
    tagRECT rect = readRectangle(args);
    printRefusal(session, args, session.api().MoveWindow(session.screen(), &rect, 0));
}

void toolbar(Session& session, const Args& args)
{
    tagRECT rect = readRectangle(args);
    printRefusal(session, args,
                 session.api().SetVideoToolbarStatus(session.screen(), &rect, args.flag(4)));
}

void sharePos(Session& session, const Args&)
{
    const ZRRect rect = session.api().GetShareWgtPos(session.screen());
    session.stage().print("sharepos = " + std::to_string(rect.left) + "," + std::to_string(rect.top)
                          + " to " + std::to_string(rect.right) + ","
                          + std::to_string(rect.bottom));
}

void subtitleAdd(Session& session, const Args& args)
{
    std::string speaker = toLocal8Bit(args.text(2));
    std::string sentence = toLocal8Bit(args.text(3));
    printRefusal(session, args,
                 session.api().AddSentence(session.screen(), args.number(0), args.number(1),
                                           speaker.data(), sentence.data()));
}

void watermarkSet(Session& session, const Args& args)
{
    __WTMark_Info info;
    info.bEnabled = true;
    info.cloundType = args.number(0);
    info.name = toLocal8Bit(args.text(1));
    info.phone = args.has(2) ? args.text(2) : std::string();
    info.email = args.has(3) ? args.text(3) : std::string();
    session.api().WtmarkSetInfo(info);
}

void watermarkShow(Session& session, const Args& args)
{
    session.api().WtmarkSetEnabled(args.flag(0));
}

void help(Session& session, const Args&)
{
    std::string text = commandHelp();
    text.pop_back();
    session.stage().print(text);
}

/// A command without arguments that prints what a query answered.
template<int (*ScreenApi::*Query)(void*)>
void ask(Session& session, const Args& args)
{
    printAnswer(session, args, (session.api().*Query)(session.screen()));
}

/// A command with one on/off argument for an export that takes just that.
template<int (*ScreenApi::*Setter)(void*, bool)>
void setFlag(Session& session, const Args& args)
{
    printRefusal(session, args, (session.api().*Setter)(session.screen(), args.flag(0)));
}

/// A command for an export that takes nothing but the screen.
template<int (*ScreenApi::*Export)(void*)>
void call(Session& session, const Args& args)
{
    printRefusal(session, args, (session.api().*Export)(session.screen()));
}

void addArrangementCommands(std::vector<Command>& table)
{
    using namespace arg;
    table.push_back({"mode",
                     {integer("MODE", -1000, 1000), optional(kind("POSITION=ID", ArgKind::Order))},
                     "meeting mode, 1 to 14, with a customised order",
                     mode,
                     "mode 2 0=bob 1=alice"});
    table.push_back({"curmode", {}, "ask for the mode", ask<&ScreenApi::GetCurMode>, "curmode"});
    table.push_back({"joinfinish",
                     {onOff()},
                     "joining is complete",
                     setFlag<&ScreenApi::JoinMeetingFinish>,
                     "joinfinish on"});
    table.push_back({"reorder",
                     {onOff("KEEPFOCUS")},
                     "order and arrange anew",
                     setFlag<&ScreenApi::ReOrder>,
                     "reorder on"});
    table.push_back({"voiceactivate",
                     {onOff()},
                     "voice activation",
                     setFlag<&ScreenApi::SetVoiceActivate>,
                     "voiceactivate on"});
    table.push_back({"support9",
                     {onOff()},
                     "nine tiles a page",
                     setFlag<&ScreenApi::SetSupport9EqualCut>,
                     "support9 on"});
    table.push_back({"support16",
                     {onOff()},
                     "the gallery of sixteen tiles",
                     setFlag<&ScreenApi::SetSupport16EqualCut>,
                     "support16 on"});
    table.push_back({"polling",
                     {onOff(), integer("SECONDS", -1000, 100000)},
                     "rotate the pages",
                     [](Session& s, const Args& a) {
                         printRefusal(
                             s, a, s.api().SetOpenPollingPage(s.screen(), a.flag(0), a.number(1)));
                     },
                     "polling on 5"});
    table.push_back({"layoutctrl",
                     {onOff("OPEN"), onOff("FOLLOW"), integer("SHAREINDEX", -1000, 1000),
                      integer("SPEAKERINDEX", -1000, 1000), onOff("NOVIDEOFILTER")},
                     "who dictates the arrangement",
                     [](Session& s, const Args& a) {
                         printRefusal(s, a,
                                      s.api().SetLayoutCtrl(s.screen(), a.flag(0), a.flag(1),
                                                            a.number(2), a.number(3), a.flag(4)));
                     },
                     "layoutctrl on off 0 1 on"});
    table.push_back({"hidenocamera",
                     {onOff()},
                     "switch the no-video filter off",
                     setFlag<&ScreenApi::SetHideNoCameraWnd>,
                     "hidenocamera on"});
    table.push_back(
        {"extend",
         {onOff(), optional(onOff("DEVICECHANGE"))},
         "the extended screen",
         [](Session& s, const Args& a) {
             printRefusal(s, a, s.api().SetExtendScreen(s.screen(), a.flag(0), a.flagOr(1, false)));
         },
         "extend on off"});
    table.push_back({"isextended",
                     {},
                     "ask whether the extended screen is on",
                     [](Session& s, const Args& a) { printAnswer(s, a, s.api().IsExtendScreen()); },
                     "isextended"});
}

void addShareCommands(std::vector<Command>& table)
{
    using namespace arg;
    table.push_back({"share pause",
                     {onOff()},
                     "pause the shared picture",
                     setFlag<&ScreenApi::SetPauseShareWindow>,
                     "share pause on"});
    table.push_back({"share self",
                     {onOff("FLOAT"), onOff("MUTEVIDEO")},
                     "prepare for the local user's own share",
                     [](Session& s, const Args& a) {
                         printRefusal(s, a,
                                      s.api().PopSelfShareWnd(s.screen(), a.flag(0), a.flag(1)));
                     },
                     "share self on off"});
    table.push_back({"share whiteboardclosed",
                     {},
                     "the whiteboard was closed",
                     call<&ScreenApi::SetIsCloseWhiteBoard>,
                     "share whiteboardclosed"});
    table.push_back(
        {"sharepos", {}, "ask for the shared picture's rectangle", sharePos, "sharepos"});
    table.push_back({"hidesmall",
                     {onOff()},
                     "hide the small window",
                     setFlag<&ScreenApi::SetHideSmallWidget>,
                     "hidesmall on"});
    table.push_back({"showsmall",
                     {onOff("SHOW"), onOff("MUTE")},
                     "show the small window again, close hidden streams",
                     [](Session& s, const Args& a) {
                         printAnswer(s, a, s.api().ShowSmallWnd(s.screen(), a.flag(0), a.flag(1)));
                     },
                     "showsmall on off"});
    table.push_back({"smallid",
                     {},
                     "ask for the small window's id",
                     ask<&ScreenApi::GetSmallWndID>,
                     "smallid"});
    std::vector<ArgSpec> toolbarArgs = arg::rectangle();
    toolbarArgs.push_back(onOff());
    table.push_back({"toolbar", toolbarArgs, "the client's toolbar over the video", toolbar,
                     "toolbar 10 20 300 40 on"});
    table.push_back({"mouseonmore",
                     {},
                     "test the mouse against the \"more\" button",
                     call<&ScreenApi::IsMouseOnBtnMore>,
                     "mouseonmore"});
    table.push_back({"clearmore",
                     {},
                     "forget whose \"more\" menu is open",
                     call<&ScreenApi::ClearMoreMenuPtr>,
                     "clearmore"});
    table.push_back({"subtitle open",
                     {},
                     "open the subtitle panel",
                     [](Session& s, const Args& a) {
                         printRefusal(s, a, s.api().OpenSubtitle(s.screen(), true));
                     },
                     "subtitle open"});
    table.push_back({"subtitle close",
                     {},
                     "close the subtitle panel",
                     [](Session& s, const Args& a) {
                         printRefusal(s, a, s.api().OpenSubtitle(s.screen(), false));
                     },
                     "subtitle close"});
    table.push_back({"subtitle clear",
                     {},
                     "clear the subtitles",
                     call<&ScreenApi::ClearSubtitles>,
                     "subtitle clear"});
    constexpr long long kMaxInt = std::numeric_limits<int>::max();
    table.push_back({"subtitle add",
                     {integer("ID", -kMaxInt, kMaxInt), integer("COLOUR", -1000, 1000),
                      text("SPEAKER"), text("SENTENCE")},
                     "add or replace a sentence",
                     subtitleAdd,
                     "subtitle add 7 2 Alice \"Good morning\""});
    table.push_back({"watermark set",
                     {integer("KIND", -kMaxInt, kMaxInt), text("NAME"), optional(text("PHONE")),
                      optional(text("EMAIL"))},
                     "write over shares: the name, with 1 the phone, with 2 the address",
                     watermarkSet,
                     "watermark set 1 Alice 13812345678"});
    table.push_back({"watermark show",
                     {onOff()},
                     "switch what is written over shares",
                     watermarkShow,
                     "watermark show off"});
}

void addWindowCommands(std::vector<Command>& table)
{
    using namespace arg;
    table.push_back({"resize",
                     {kind("SIZE", ArgKind::Size)},
                     "resize the window",
                     [](Session& s, const Args& a) {
                         s.stage().resizeWindow(s.parent(), parseSize(a.text(0), "resize"));
                     },
                     "resize 800x600"});
    table.push_back(
        {"move", arg::rectangle(), "place the screen in its window", move, "move 10 20 400 300"});
    table.push_back(
        {"reparent",
         {choice({"none", "main", "second"})},
         "put the screen into another window",
         [](Session& s, const Args& a) { s.setParent(static_cast<WindowId>(a.number(0))); },
         "reparent second"});
    const ArgSpec x = pixels("X");
    const ArgSpec y = pixels("Y");
    table.push_back(
        {"click",
         {x, y, optional(integer("TIMES", 0, 9))},
         "click at a point of the window; 0 times: only point there",
         [](Session& s, const Args& a) {
             s.stage().click(s.parent(), {a.number(0), a.number(1)}, a.has(2) ? a.number(2) : 1);
         },
         "click 100 50 2"});
    table.push_back({"wheel",
                     {x, y, integer("STEPS", -100, 100)},
                     "turn the wheel there, away from the user for positive steps",
                     [](Session& s, const Args& a) {
                         s.stage().turnWheel(s.parent(), {a.number(0), a.number(1)}, a.number(2));
                     },
                     "wheel 100 50 -1"});
    table.push_back({"screenshot",
                     {text("FILE.png")},
                     "save what the window shows",
                     [](Session& s, const Args& a) {
                         s.stage().saveWindow(s.parent(), a.text(0));
                         s.stage().print("saved " + a.text(0));
                     },
                     "screenshot picture.png"});
    table.push_back({"init",
                     {},
                     "create the screen in the main window",
                     [](Session& s, const Args&) { s.openScreen(WindowId::Main); },
                     "init"});
    table.push_back({"exitmeeting",
                     {},
                     "stop the timers and empty the gallery",
                     call<&ScreenApi::ExitMeeting>,
                     "exitmeeting"});
    table.push_back({"release",
                     {},
                     "remove the participants, destroy the screen",
                     [](Session& s, const Args&) {
                         (void)s.screen();
                         s.closeScreen();
                     },
                     "release"});
    table.push_back({"wait",
                     {kind("SECONDS", ArgKind::Seconds)},
                     "hold back the next commands",
                     [](Session& s, const Args& a) { s.stage().holdCommands(a.number(0)); },
                     "wait 0.5"});
    table.push_back({"help", {}, "list the commands", help, "help"});
    table.push_back(
        {"quit", {}, "end the program", [](Session& s, const Args&) { s.stage().quit(); }, "quit"});
}

} // namespace

void addScreenCommands(std::vector<Command>& table)
{
    addArrangementCommands(table);
    addShareCommands(table);
    addWindowCommands(table);
}

} // namespace zrhost
