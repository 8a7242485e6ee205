// Who the speaker is, who stands beside the speaker, and what a click or a voice changes.
#pragma once

#include "layoutgeometry.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace zr {

/// What the choice of a speaker depends on, for one participant.
struct SpeakerKey
{
    bool share = false;     ///< a shared screen
    bool sponsor = false;   ///< the participant whose share it is, or that share itself
    bool pinned = false;    ///< by the host of the meeting or by the local user
    bool activated = false; ///< the voice-activated participant
    bool talking = false;   ///< named by the host as the one who speaks
    bool previous = false;  ///< was the speaker before
    bool host = false;      ///< the host of the meeting
    bool self = false;      ///< the local user
};

/// Chooses the speaker where nobody has: a share (the sponsor's before others), else who is pinned,
/// else who speaks, else who was the speaker before, else the host, else the first one. The local
/// user is chosen last: nobody wants to look at themselves.
/// @return an index into `persons`, of the first among equals; -1 when it is empty
[[nodiscard]] int defaultSpeaker(const std::vector<SpeakerKey>& persons);

/// Chooses who stands beside the speaker: as the second large tile, or in the speaker tool. A share
/// stands there only for somebody who is none; beside a share its sponsor comes after who speaks.
/// @param speaker index into `persons`, or -1 @return never the speaker; -1 without anybody else
[[nodiscard]] int nextSpeaker(const std::vector<SpeakerKey>& persons, int speaker);

/// Chooses who is shown in the speaker tool while the local user shares: as beside a share, and
/// nobody is the speaker. @return -1 when `persons` is empty
[[nodiscard]] int floatingSpeaker(const std::vector<SpeakerKey>& persons);

/// What a click on a tile does.
enum class ClickEffect
{
    None,       ///< the speaker was clicked, or the host dictates the layout
    Select,     ///< nobody is the speaker in this mode; the participant becomes the next one
    Move,       ///< the participant becomes the speaker
    MoveStream, ///< as Move, and the speaker's stream goes over to the participant
    Keep,       ///< the speaker has a picture and the participant has none: nothing changes
};

struct ClickInput
{
    int mode = eLayoutEqualCut;
    bool dictated = false;         ///< the host dictates the layout
    bool onSpeaker = false;        ///< the speaker's own tile was clicked
    bool speakerHasStream = false; ///< the host has the speaker's stream open
    bool personHasPicture = false; ///< the clicked participant's camera is on
};

[[nodiscard]] ClickEffect clickEffect(const ClickInput& input);

/// What a participant's voice does.
enum class VoiceEffect
{
    None,
    Speaker,     ///< the participant becomes the speaker
    SmallWindow, ///< the participant is shown beside the speaker
};

struct VoiceInput
{
    int mode = eLayoutEqualCut;
    bool activation = false;    ///< the host has switched voice activation on
    bool dictated = false;      ///< the host dictates the layout
    bool chosenSpeaker = false; ///< a user or the host chose the speaker
    bool self = false;          ///< it is the local user's voice
};

[[nodiscard]] VoiceEffect voiceEffect(const VoiceInput& input);

/// Lets a participant take the last of the strip's places for as long as they speak, unless they
/// have a tile on the page, or a lone other one would have to go.
/// @param placements of a mode with a strip: the large tiles, then the strip
/// @param person index in the display list; -1 for nobody @param large number of large tiles
void admitToStrip(std::vector<TilePlacement>& placements, int person, int large);

/// A place in the display list that the host reserves; below 0 for none.
template<typename T>
struct Seat
{
    T* person = nullptr;
    int seat = -1;
};

/// Puts who has a seat on it, or on the last place where the list is shorter, and leaves the order
/// of all others. For the same seat, and the same person, the first one of `seats` counts.
template<typename T>
void takeSeats(std::vector<T*>& list, std::vector<Seat<T>> seats)
{
    std::vector<Seat<T>> taken;
    for (const Seat<T>& candidate : seats) {
        const auto place = std::find(list.begin(), list.end(), candidate.person);
        if (!candidate.person || candidate.seat < 0 || place == list.end())
            continue;
        list.erase(place);
        taken.push_back(candidate);
    }
    std::stable_sort(taken.begin(), taken.end(),
                     [](const Seat<T>& a, const Seat<T>& b) { return a.seat < b.seat; });
    std::size_t next = 0; // the first place that no seat has taken
    for (const Seat<T>& seat : taken) {
        next = std::min(std::max(next, static_cast<std::size_t>(seat.seat)), list.size());
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(next), seat.person);
        ++next;
    }
}

} // namespace zr
