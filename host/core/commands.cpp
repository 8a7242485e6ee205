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

void meeting(Session& session, const Args& args)
{
    session.addMany(args.number(0), SourceSpec::parse(args.has(1) ? args.text(1) : "synthetic"));
}

void mute(Session& session, const Args& args)
{
    session.setMuted(session.person(args.text(0)), args.number(1) != 0);
}

void volume(Session& session, const Args& args)
{
    Participant& participant = session.person(args.text(0));
    participant.volume = args.number(1);
    session.api().SetVolume(session.screen(), participant.play, participant.volume);
}

void hand(Session& session, const Args& args)
{
    Participant& participant = session.person(args.text(0));
    participant.hand = args.number(1) != 0;
    session.api().SetPersonHandUp(session.screen(), participant.play, participant.hand);
}

void role(Session& session, const Args& args)
{
    Participant& participant = session.person(args.text(0));
    participant.role = args.number(1);
    session.reportInfo(participant);
}

void self(Session& session, const Args& args)
{
    Participant& participant = session.person(args.text(0));
    participant.self = args.number(1) != 0;
    session.reportInfo(participant);
}

void rename(Session& session, const Args& args)
{
    Participant& participant = session.person(args.text(0));
    participant.name = args.text(1);
    session.reportInfo(participant);
}

void network(Session& session, const Args& args)
{
    constexpr int kWeakUpTo = 1;
    constexpr int kSending = 1;
    constexpr int kReceiving = 2;
    Participant& participant = session.person(args.text(0));
    participant.network = args.number(1);
    session.api().UpdateUserNetStatus(session.screen(), toLocal8Bit(participant.id).c_str(),
                                      participant.self ? kSending : kReceiving,
                                      participant.network <= kWeakUpTo, participant.network);
}

void speaking(Session& session, const Args& args)
{
    session.setSpeaking(args.has(0) ? &session.person(args.text(0)) : nullptr);
}

void focus(Session& session, const Args& args)
{
    const std::string id = args.has(0) ? session.person(args.text(0)).id : "";
    session.api().FocusByUserID(session.screen(), toLocal8Bit(id).data(), false);
}

void pin(Session& session, const Args& args)
{
    constexpr int kForMe = 1;
    constexpr int kForAll = 2;
    void* const play = session.person(args.text(0)).play;
    session.api().LockLook(session.screen(), play, args.number(1) == kForMe);
    session.api().AllLook(session.screen(), play, args.number(1) == kForAll);
}

void page(Session& session, const Args& args)
{
    const Size size = session.stage().windowSize(session.parent());
    session.stage().turnWheel(session.parent(), {size.width / 2, size.height / 2},
                              args.number(0) == 0 ? -1 : 1);
}

void polling(Session& session, const Args& args)
{
    constexpr int kSeconds = 5;
    session.api().SetOpenPollingPage(session.screen(), args.number(0) != 0,
                                     args.number(1, kSeconds));
}

void subtitles(Session& session, const Args& args)
{
    session.api().OpenSubtitle(session.screen(), args.number(0) != 0);
}

void say(Session& session, const Args& args)
{
    constexpr int kColours = 4;
    const Participant& speaker = session.person(args.text(0));
    session.api().AddSentence(session.screen(), session.nextSentence(), speaker.number % kColours,
                              toLocal8Bit(speaker.name).data(), toLocal8Bit(args.text(1)).data());
}

void watermark(Session& session, const Args& args)
{
    constexpr int kWithPhone = 1;
    const auto& api = session.exports().ZRScreenWtmark;
    if (!args.has(1)) {
        api.SetEnabled(args.number(0) != 0);
        return;
    }
    __WTMark_Info info{};
    info.bEnabled = args.number(0) != 0;
    info.cloundType = args.has(2) ? kWithPhone : 0;
    info.name = toLocal8Bit(args.text(1));
    info.phone = args.has(2) ? args.text(2) : "";
    api.SetInfo(info);
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
    const auto statistics = newestStatistics(readModuleLog());
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
        {"meeting",
         {{"N", ArgKind::Integer, false, 1, 500}, source},
         "so many participants join: user1, user2, ...",
         meeting},
        {"delete",
         {who},
         "a participant leaves",
         [](Session& s, const Args& a) { s.remove(s.person(a.text(0))); }},
        {"people", {}, "list the participants", people},
        {"share", {who, source}, "a participant begins to share (id sharescreen_ID)", share},
        {"mute", {who, onOff}, "the microphone is muted", mute},
        {"volume",
         {who, {"VOLUME", ArgKind::Integer, false, 0, 100}},
         "how loud the microphone is, 0 to 100",
         volume},
        {"hand", {who, onOff}, "a hand is raised", hand},
        {"role", {who, choice({"none", "host", "administrator"})}, "what somebody is here", role},
        {"self", {who, onOff}, "this is the local user", self},
        {"rename", {who, {"NAME"}}, "somebody has another name", rename},
        {"network",
         {who, {"LEVEL", ArgKind::Integer, false, 0, 5}},
         "0 none to 5 best; up to 1 it is weak, and the picture freezes",
         network},
        {"speaking", {optional(who)}, "somebody speaks, or nobody", speaking},
        {"focus", {optional(who)}, "is chosen as the speaker of modes that have one", focus},
        {"pin", {who, choice({"off", "me", "all"})}, "is pinned for the local user or all", pin},
        {"preview",
         {who, onOff},
         "the camera is on, pictures flow",
         [](Session& s, const Args& a) { s.setCamera(s.person(a.text(0)), a.number(1) != 0); }},
        {"streams",
         {choice({"always", "follow"})},
         "are open all the time, or as the module asks",
         [](Session& s, const Args& a) { s.followStreams(a.number(0) != 0); }},
        {"mode", {{"MODE", ArgKind::Integer, false, -1000, 1000}}, "meeting mode, 1 to 14", mode},
        {"page",
         {choice({"next", "previous"})},
         "turn the page, with the wheel over the middle of the window",
         page},
        {"polling",
         {onOff, optional({"SECONDS", ArgKind::Integer, false, 1, 3600})},
         "pages turn by themselves",
         polling},
        {"subtitles", {onOff}, "the subtitle panel", subtitles},
        {"say", {who, {"TEXT"}}, "a sentence for the subtitles", say},
        {"watermark",
         {onOff, optional({"NAME"}), optional({"PHONE"})},
         "over shared screens; without a name as before",
         watermark},
        {"tool",
         {onOff},
         "the speaker tool of modes 4 and 5, or the strip beside the speakers",
         [](Session& s, const Args& a) {
             s.api().SetHideSmallWidget(s.screen(), a.number(0) == 0);
         }},
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
