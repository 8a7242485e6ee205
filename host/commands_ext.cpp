// Commands about the extended screen.
#include "command_table.h"
#include "session.h"
#include "text.h"

namespace zrhost {

namespace {

/// A command that gives the extended screen a flag.
template<typename Type, int (*ExtApi::*Setter)(void*, Type)>
void setFlag(Session& session, const Args& args)
{
    printRefusal(
        session, args,
        (session.ext().api().*Setter)(session.ext().handle(), static_cast<Type>(args.flag(0))));
}

std::string idOf(Session& session, const Args& args)
{
    return toLocal8Bit(session.person(args.text(0)).id);
}

void volume(Session& session, const Args& args)
{
    const ExtDesk& ext = session.ext();
    printRefusal(session, args,
                 ext.api().SetVolume(ext.handle(), idOf(session, args).c_str(), args.number(1)));
}

void net(Session& session, const Args& args)
{
    const ExtDesk& ext = session.ext();
    printRefusal(session, args,
                 ext.api().UpdateUserNetStatus(ext.handle(), idOf(session, args).c_str(),
                                               args.number(1), args.flagOr(3, false),
                                               args.number(2)));
}

void position(Session& session, const Args& args)
{
    const ZRRect rect = session.ext().api().GetShareWgtPos(session.ext().handle());
    session.stage().print(args.command() + ": " + std::to_string(rect.left) + ' '
                          + std::to_string(rect.top) + ' ' + std::to_string(rect.right) + ' '
                          + std::to_string(rect.bottom));
}

} // namespace

void addExtCommands(std::vector<Command>& table)
{
    using namespace arg;
    table.push_back(
        {"ext show",
         {who()},
         "show a participant in the second window",
         [](Session& s, const Args& a) { printRefusal(s, a, s.showExtended(s.person(a.text(0)))); },
         "ext show alice"});
    table.push_back({"ext clear",
                     {},
                     "nobody is on the extended screen",
                     [](Session& s, const Args& a) { printRefusal(s, a, s.ext().clear()); },
                     "ext clear"});
    table.push_back({"ext all",
                     {onOff()},
                     "its participant is pinned for everybody",
                     setFlag<bool, &ExtApi::SetAllLook>,
                     "ext all on"});
    table.push_back({"ext lock",
                     {onOff()},
                     "its participant is pinned for the local user",
                     setFlag<bool, &ExtApi::SetLockLook>,
                     "ext lock on"});
    table.push_back({"ext mute",
                     {onOff()},
                     "its participant is muted",
                     setFlag<int, &ExtApi::SetMute>,
                     "ext mute off"});
    table.push_back({"ext preview",
                     {onOff()},
                     "its participant's stream is open",
                     setFlag<bool, &ExtApi::Preview>,
                     "ext preview on"});
    table.push_back({"ext volume",
                     {who(), integer("VOLUME", -1000, 1000)},
                     "its participant's volume, 0 to 100",
                     volume,
                     "ext volume alice 50"});
    table.push_back({"ext net",
                     {who(), choice({"send", "receive"}, 1), integer("LEVEL", -1000, 1000),
                      optional(onOff("WEAK"))},
                     "its participant's network state, level 0 to 5",
                     net,
                     "ext net alice receive 1 on"});
    table.push_back({"ext pos", {}, "ask for the rectangle of its picture", position, "ext pos"});
    table.push_back({"ext screenshot",
                     {text("FILE.png")},
                     "save what the second window shows",
                     [](Session& s, const Args& a) {
                         s.stage().saveWindow(WindowId::Second, a.text(0));
                         s.stage().print("saved " + a.text(0));
                     },
                     "ext screenshot picture.png"});
    table.push_back({"ext close",
                     {},
                     "destroy the extended screen",
                     [](Session& s, const Args&) {
                         (void)s.ext().handle();
                         s.ext().close();
                         // The second window, empty now, goes behind the one with the meeting.
                         (void)s.stage().nativeWindow(s.parent());
                     },
                     "ext close"});
}

} // namespace zrhost
