#include "called_people.h"

#include "host_platform.h"
#include "session.h"

#include <algorithm>

namespace zrhost {

namespace {

Participant* withPlay(const People& people, const void* play)
{
    const auto found = std::find_if(people.begin(), people.end(),
                                    [&](const auto& other) { return other->play == play; });
    return found == people.end() ? nullptr : found->get();
}

void addPerson(People& people, const std::vector<Value>& values, void* play)
{
    if (!play || withPlay(people, play))
        return;
    auto added = std::make_unique<Participant>();
    added->id = values[1].text;
    added->name = values[2].text;
    added->hostValue = reinterpret_cast<std::intptr_t>(values[5].handle);
    added->play = play;
    added->screen = values[0].handle;
    added->camera = false;
    people.push_back(std::move(added));
}

/// Takes away those for whom `leaves` is true.
template<typename Leaves>
void removePeople(People& people, Leaves leaves)
{
    people.erase(std::remove_if(people.begin(), people.end(),
                                [&](const auto& person) { return leaves(*person); }),
                 people.end());
}

/// Calls by which whoever was recorded comes and goes.
void followMembership(People& people, std::size_t call, const std::vector<Value>& values,
                      const Answer& answer)
{
    switch (call) {
    case zr::table::kZRScreen_AddPerson:
        addPerson(people, values, answer.handle);
        break;
    case zr::table::kZRScreen_DelPerson:
        removePeople(people,
                     [&](const Participant& person) { return person.play == values[1].handle; });
        break;
    case zr::table::kZRScreen_ExitMeeting:
    case zr::table::kZRScreen_Release:
        removePeople(people,
                     [&](const Participant& person) { return person.screen == values[0].handle; });
        break;
    default:
        break;
    }
}

void setInfo(Participant& person, const std::vector<Value>& values)
{
    person.self = values[2].number != 0;
    person.role = static_cast<int>(values[3].number);
    if (!values[4].text.empty())
        person.name = values[4].text;
}

/// Calls that name a participant by the handle.
void followPlay(Participant& person, std::size_t call, const std::vector<Value>& values)
{
    const auto number = static_cast<int>(values[2].number);
    switch (call) {
    case zr::table::kZRScreen_SetPersonInfo:
        setInfo(person, values);
        break;
    case zr::table::kZRScreen_SetMute:
        person.muted = number != 0;
        break;
    case zr::table::kZRScreen_SetVolume:
        person.volume = std::clamp(number, 0, 100);
        break;
    case zr::table::kZRScreen_Preview:
        person.open = number != 0;
        person.camera = person.media ? person.camera : person.open;
        break;
    case zr::table::kZRScreen_SetPersonHandUp:
        person.hand = number != 0;
        break;
    default:
        break;
    }
}

/// Calls that name a participant by the id.
void followId(const People& people, std::size_t call, const std::vector<Value>& values)
{
    const std::string id = fromLocal8Bit(values[1].text);
    for (const auto& person : people) {
        if (call == zr::table::kZRScreen_SetActivateUser)
            person->speaking = person->id == id;
        else if (person->id == id)
            person->network = std::clamp(static_cast<int>(values[4].number), 0, 5);
    }
}

} // namespace

void followCall(People& people, const zr::Export& row, const std::vector<Value>& values,
                const Answer& answer, bool replays)
{
    const auto call = static_cast<std::size_t>(&row - zr::kExports);
    if (replays)
        followMembership(people, call, values, answer);
    switch (call) {
    case zr::table::kZRScreen_SetActivateUser:
    case zr::table::kZRScreen_UpdateUserNetStatus:
        followId(people, call, values);
        break;
    default:
        if (values.size() > 2 && row.arguments[1].kind == zr::Kind::Play) {
            if (Participant* const person = withPlay(people, values[1].handle))
                followPlay(*person, call, values);
        }
        break;
    }
}

} // namespace zrhost
