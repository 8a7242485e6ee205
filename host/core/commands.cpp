// What people type.
#include "command_table.h"
#include "host_error.h"
#include "host_platform.h"
#include "session.h"
#include "statistics.h"

namespace zrhost {

namespace {

/// A coordinate or length of the window system.
ArgSpec pixels(std::string name)
{
    return {std::move(name), ArgKind::Integer, false, -32768, 32767};
}

ArgSpec optional(ArgSpec spec)
{
    spec.optional = true;
    return spec;
}

ArgSpec choice(std::vector<std::string> words)
{
    ArgSpec spec{"", ArgKind::Choice};
    spec.choices = std::move(words);
    return spec;
}

void add(Session& session, const Args& args)
{
    const SourceSpec source = SourceSpec::parse(args.has(1) ? args.text(1) : "synthetic");
    session.add(args.text(0), args.has(2) ? args.text(2) : args.text(0), source);
}

void share(Session& session, const Args& args)
{
    const Participant& sponsor = session.person(args.text(0));
    const SourceSpec source = SourceSpec::parse(args.has(1) ? args.text(1) : "synthetic@1280x720");
    session.api().SetShareSponsor(session.screen(), sponsor.id);
    session.add("sharescreen_" + sponsor.id, {}, source);
}

void people(Session& session, const Args&)
{
    for (const auto& participant : session.people())
        session.stage().print(std::to_string(participant->number) + " " + participant->id + " \""
                              + participant->name + "\" " + participant->source.toText());
}

void mute(Session& session, const Args& args)
{
    session.api().SetMute(session.screen(), session.person(args.text(0)).play, args.number(1));
}

void mode(Session& session, const Args& args)
{
    session.api().ChangeLayout(session.screen(), static_cast<eLayoutType>(args.number(0)), {});
}

void ext(Session& session, const Args& args)
{
    if (args.number(0) == 0) {
        if (!args.has(1))
            throw HostError("ext show: nobody is named");
        session.showExtended(session.person(args.text(1)));
        return;
    }
    session.ext().close();
    // The second window, empty now, goes behind the one with the meeting.
    (void)session.stage().nativeWindow(session.parent());
}

void screenshot(Session& session, const Args& args)
{
    const bool second = args.number(1) != 0;
    session.stage().saveWindow(second ? WindowId::Second : session.parent(), args.text(0));
    session.stage().print("saved " + args.text(0));
}

/// The window of recorded calls that an argument names; without one that of the meeting.
WindowId windowOf(Session& session, const Args& args, std::size_t index)
{
    return args.has(index) ? session.calls().recordedWindow(args.text(index)) : session.parent();
}

void click(Session& session, const Args& args)
{
    const WindowId window = windowOf(session, args, 3);
    if (window != WindowId::None || !args.has(3)) // a replay without windows has no user
        session.stage().click(window, {args.number(0), args.number(1)}, args.number(2, 1));
}

void wheel(Session& session, const Args& args)
{
    const WindowId window = windowOf(session, args, 3);
    if (window != WindowId::None || !args.has(3))
        session.stage().turnWheel(window, {args.number(0), args.number(1)}, args.number(2));
}

void stats(Session& session, const Args&)
{
    const auto statistics = newestStatistics(readModuleLog("zrhost"));
    if (!statistics)
        throw HostError("stats: there are none (yet); start with ZRSCREEN_STATS=SECONDS");
    session.stage().print(statisticsTable(*statistics));
}

void help(Session& session, const Args&)
{
    std::string text = commandHelp();
    text.pop_back();
    session.stage().print(text);
}

} // namespace

const std::vector<Command>& commandTable()
{
    static const ArgSpec who{"WHO", ArgKind::Person};
    static const ArgSpec onOff{"", ArgKind::OnOff};
    static const ArgSpec source = optional({"SOURCE", ArgKind::Source});
    static const std::vector<Command> table{
        {"add", {{"ID"}, source, optional({"NAME"})}, "a participant joins", add},
        {"delete",
         {who},
         "a participant leaves",
         [](Session& s, const Args& a) { s.remove(s.person(a.text(0))); }},
        {"people", {}, "list the participants", people},
        {"share", {who, source}, "a participant begins to share (id sharescreen_ID)", share},
        {"mute", {who, onOff}, "the microphone is muted", mute},
        {"preview",
         {who, onOff},
         "the camera is on, pictures flow",
         [](Session& s, const Args& a) { s.setCamera(s.person(a.text(0)), a.number(1) != 0); }},
        {"streams",
         {choice({"always", "follow"})},
         "are open all the time, or as the module asks",
         [](Session& s, const Args& a) { s.followStreams(a.number(0) != 0); }},
        {"mode", {{"MODE", ArgKind::Integer, false, -1000, 1000}}, "meeting mode, 1 to 14", mode},
        {"ext",
         {choice({"show", "close"}), optional(who)},
         "show a participant in the second window",
         ext},
        {"call",
         {{"[NAME=]EXPORT ARGUMENT...", ArgKind::Call}},
         "call any export and print its answer",
         [](Session& s, const Args& a) { s.calls().call(a.words()); }},
        {"trace",
         {},
         "what follows was recorded: the host makes no screen and nobody of its own",
         [](Session& s, const Args&) { s.calls().beginReplay(); }},
        {"window",
         {{"NAME"}, {"SIZE", ArgKind::Size}},
         "the size of a window of recorded calls",
         [](Session& s, const Args& a) {
             s.calls().resizeWindow(a.text(0), parseSize(a.text(1), "window"));
         }},
        {"expect",
         {{"RECEIVER"}, {"MESSAGE"}, {"WPARAM"}, {"LPARAM"}},
         "a message that was recorded, for --check-messages",
         [](Session& s, const Args& a) { s.messages().expect(a.words()); }},
        {"click",
         {pixels("X"), pixels("Y"), optional({"TIMES", ArgKind::Integer, false, 0, 9}),
          optional({"WINDOW"})},
         "click at a point of the window; 0 times: only point there",
         click},
        {"wheel",
         {pixels("X"),
          pixels("Y"),
          {"STEPS", ArgKind::Integer, false, -100, 100},
          optional({"WINDOW"})},
         "turn the wheel there, away from the user for positive steps",
         wheel},
        {"type",
         {{"TEXT"}},
         "type at the keyboard",
         [](Session& s, const Args& a) { s.stage().typeText(a.text(0)); }},
        {"key",
         {choice({"tab", "enter", "escape", "backspace"})},
         "press a key",
         [](Session& s, const Args& a) { s.stage().pressKey(static_cast<Key>(a.number(0))); }},
        {"resize",
         {{"SIZE", ArgKind::Size}},
         "resize the window",
         [](Session& s, const Args& a) {
             s.stage().resizeWindow(s.parent(), parseSize(a.text(0), "resize"));
         }},
        {"screenshot",
         {{"FILE.png"}, optional(choice({"main", "second"}))},
         "save what a window shows",
         screenshot},
        {"stats", {}, "what each tile gets and paints, with ZRSCREEN_STATS=SECONDS", stats},
        {"wait",
         {{"SECONDS", ArgKind::Seconds}},
         "hold back the next commands",
         [](Session& s, const Args& a) { s.stage().holdCommands(a.number(0)); }},
        {"help", {}, "list the commands", help},
        {"quit", {}, "end the program", [](Session& s, const Args&) { s.stage().quit(); }},
    };
    return table;
}

} // namespace zrhost
