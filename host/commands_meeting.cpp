// Commands about the participants and what they do.
#include "command_table.h"
#include "host_error.h"
#include "host_platform.h"
#include "session.h"

namespace zrhost {

namespace {

void* play(Session& session, const Args& args)
{
    return session.person(args.text(0)).play;
}

void add(Session& session, const Args& args)
{
    const SourceSpec source = SourceSpec::parse(args.has(1) ? args.text(1) : "synthetic");
    session.add(args.text(0), args.has(2) ? args.text(2) : args.text(0), source);
}

void shareAdd(Session& session, const Args& args)
{
    const Participant& sponsor = session.person(args.text(0));
    const SourceSpec source = SourceSpec::parse(args.has(1) ? args.text(1) : "synthetic@1280x720");
    session.api().SetShareSponsor(session.screen(), toLocal8Bit(sponsor.id));
    session.add("sharescreen_" + sponsor.id, {}, source);
}

void preview(Session& session, const Args& args)
{
    printRefusal(session, args, session.setCamera(session.person(args.text(0)), args.flag(1)));
}

void name(Session& session, const Args& args)
{
    Participant& participant = session.person(args.text(0));
    participant.name = args.text(1);
    printRefusal(session, args, session.publishInfo(participant));
}

void role(Session& session, const Args& args)
{
    Participant& participant = session.person(args.text(0));
    participant.role = args.number(1);
    if (args.has(2))
        participant.identity = args.number(2);
    printRefusal(session, args, session.publishInfo(participant));
}

void self(Session& session, const Args& args)
{
    Participant& participant = session.person(args.text(0));
    participant.self = args.flag(1);
    printRefusal(session, args, session.publishInfo(participant));
}

void net(Session& session, const Args& args)
{
    const std::string id = toLocal8Bit(session.person(args.text(0)).id);
    printRefusal(session, args,
                 session.api().UpdateUserNetStatus(session.screen(), id.c_str(), args.number(1),
                                                   args.flagOr(3, false), args.number(2)));
}

void focus(Session& session, const Args& args)
{
    std::string id = toLocal8Bit(args.text(0));
    printRefusal(session, args,
                 session.api().FocusByUserID(session.screen(), id.data(), args.has(1)));
}

void active(Session& session, const Args& args)
{
    std::string id = toLocal8Bit(args.text(0));
    printRefusal(session, args, session.api().SetActivateUser(session.screen(), id.data()));
}

void people(Session& session, const Args&)
{
    for (const auto& participant : session.people())
        session.stage().print(std::to_string(participant->number) + " " + participant->id + " \""
                              + participant->name + "\" " + participant->source.toText());
}

void visible(Session& session, const Args& args)
{
    std::string id = toLocal8Bit(args.text(0));
    session.stage().print(
        "visible " + args.text(0) + " = "
        + std::to_string(session.api().IsPersonVisible(session.screen(), id.data())));
}

void visibleSmall(Session& session, const Args& args)
{
    std::string id = toLocal8Bit(args.text(0));
    session.stage().print(
        "visiblesmall " + args.text(0) + " = "
        + std::to_string(session.api().IsPersonVisibleInSmallWnd(session.screen(), id.data())));
}

} // namespace

void addMeetingCommands(std::vector<Command>& table)
{
    using namespace arg;
    const ArgSpec source = kind("SOURCE", ArgKind::Source);
    // An id as the module sees it, which need not be a participant's: the module then decides.
    const ArgSpec id = text("ID");

    table.push_back({"add",
                     {id, optional(source), optional(text("NAME"))},
                     "a participant joins",
                     add,
                     "add carol synthetic@320x180 \"Carol 李\""});
    table.push_back({"delete",
                     {who()},
                     "a participant leaves",
                     [](Session& s, const Args& a) { s.remove(s.person(a.text(0))); },
                     "delete bob"});
    table.push_back({"people", {}, "list the participants", people, "people"});
    table.push_back(
        {"frame",
         {who(), kind("SIZE", ArgKind::Size)},
         "deliver one drawn picture of a size",
         [](Session& s, const Args& a) {
             printRefusal(s, a, s.deliverOne(s.person(a.text(0)), parseSize(a.text(1), "frame")));
         },
         "frame alice 322x181"});
    table.push_back({"mute",
                     {who(), onOff()},
                     "the microphone is muted",
                     [](Session& s, const Args& a) {
                         printRefusal(s, a, s.api().SetMute(s.screen(), play(s, a), a.number(1)));
                     },
                     "mute alice on"});
    table.push_back({"volume",
                     {who(), integer("LEVEL", -1000, 1000)},
                     "speaking volume, 0 to 100",
                     [](Session& s, const Args& a) {
                         printRefusal(s, a, s.api().SetVolume(s.screen(), play(s, a), a.number(1)));
                     },
                     "volume alice 60"});
    table.push_back({"preview",
                     {who(), onOff()},
                     "the camera is on, pictures flow",
                     preview,
                     "preview alice off"});
    table.push_back({"streams",
                     {choice({"always", "follow"})},
                     "are open all the time, or as the module asks",
                     [](Session& s, const Args& a) { s.followStreams(a.flag(0)); },
                     "streams follow"});
    table.push_back({"hand",
                     {who(), onOff()},
                     "the hand is raised",
                     [](Session& s, const Args& a) {
                         printRefusal(s, a,
                                      s.api().SetPersonHandUp(s.screen(), play(s, a), a.flag(1)));
                     },
                     "hand alice on"});
    table.push_back({"name", {who(), text("NAME")}, "another name", name, "name alice \"爱丽丝\""});
    table.push_back(
        {"role",
         {who(), choice({"none", "host", "admin"}), optional(integer("IDENTITY", -1000, 1000))},
         "the role in the meeting",
         role,
         "role alice host 2"});
    table.push_back(
        {"self", {who(), onOff()}, "the participant is the local user", self, "self alice on"});
    table.push_back({"net",
                     {who(), choice({"send", "receive"}, 1), integer("LEVEL", -1000, 1000),
                      optional(onOff("WEAK"))},
                     "network state, level 0 to 5",
                     net,
                     "net alice receive 1 on"});
    table.push_back({"focus",
                     {id, optional(choice({"voice"}))},
                     "focus a participant, chosen by voice activation",
                     focus,
                     "focus alice voice"});
    table.push_back({"lock",
                     {who(), onOff()},
                     "pin for the local user",
                     [](Session& s, const Args& a) {
                         printRefusal(s, a, s.api().LockLook(s.screen(), play(s, a), a.number(1)));
                     },
                     "lock alice on"});
    table.push_back({"all",
                     {who(), onOff()},
                     "pin for everybody",
                     [](Session& s, const Args& a) {
                         printRefusal(s, a, s.api().AllLook(s.screen(), play(s, a), a.number(1)));
                     },
                     "all alice on"});
    table.push_back(
        {"active", {id}, "who is speaking; an unknown id: nobody", active, "active alice"});
    table.push_back({"speaking",
                     {id},
                     "whose speech is shown at present",
                     [](Session& s, const Args& a) {
                         printRefusal(
                             s, a,
                             s.api().SetCurrentSpeakingPerson(s.screen(), toLocal8Bit(a.text(0))));
                     },
                     "speaking alice"});
    table.push_back({"visible", {id}, "ask whether the tile is visible", visible, "visible alice"});
    table.push_back({"visiblesmall",
                     {id},
                     "ask the same of the small window",
                     visibleSmall,
                     "visiblesmall alice"});
    table.push_back({"share add",
                     {who(), optional(source)},
                     "a participant begins to share (id sharescreen_ID)",
                     shareAdd,
                     "share add alice synthetic@1280x720"});
    table.push_back({"share sponsor",
                     {id},
                     "name who shares",
                     [](Session& s, const Args& a) {
                         printRefusal(s, a,
                                      s.api().SetShareSponsor(s.screen(), toLocal8Bit(a.text(0))));
                     },
                     "share sponsor alice"});
}

} // namespace zrhost
