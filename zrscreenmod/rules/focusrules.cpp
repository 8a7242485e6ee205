#include "focusrules.h"

#include "meetingmode.h"

namespace zr {

namespace {

// The smaller the rank, the sooner somebody is chosen.

int speakerRank(const SpeakerKey& key)
{
    if (key.share)
        return key.sponsor ? 0 : 1;
    if (key.pinned)
        return 2;
    if (key.self)
        return 8;
    if (key.activated)
        return 3;
    if (key.talking)
        return 4;
    if (key.previous)
        return 5;
    return key.host ? 6 : 7;
}

int neighbourRank(const SpeakerKey& key, bool besideShare)
{
    if (key.share)
        return besideShare ? 7 : 0;
    if (key.self)
        return 8;
    if (key.activated)
        return 1;
    if (key.talking)
        return 2;
    if (key.sponsor && besideShare)
        return 3;
    if (key.previous)
        return 4;
    return key.host ? 5 : 6;
}

/// Index of the first element with the smallest rank, without the one at `except`.
template<typename Rank>
int firstOfLeast(const std::vector<SpeakerKey>& persons, int except, Rank rank)
{
    int best = -1;
    for (int i = 0; i < static_cast<int>(persons.size()); ++i) {
        const auto at = [&persons](int index) { return persons[static_cast<std::size_t>(index)]; };
        if (i != except && (best < 0 || rank(at(i)) < rank(at(best))))
            best = i;
    }
    return best;
}

} // namespace

int defaultSpeaker(const std::vector<SpeakerKey>& persons)
{
    return firstOfLeast(persons, -1, speakerRank);
}

int nextSpeaker(const std::vector<SpeakerKey>& persons, int speaker)
{
    const bool besideShare = speaker >= 0 && speaker < static_cast<int>(persons.size())
                             && persons[static_cast<std::size_t>(speaker)].share;
    return firstOfLeast(persons, speaker, [besideShare](const SpeakerKey& key) {
        return neighbourRank(key, besideShare);
    });
}

int floatingSpeaker(const std::vector<SpeakerKey>& persons)
{
    return firstOfLeast(persons, -1,
                        [](const SpeakerKey& key) { return neighbourRank(key, true); });
}

ClickEffect clickEffect(const ClickInput& input)
{
    if (input.dictated)
        return ClickEffect::None;
    if (!isSpeakerMode(input.mode))
        return ClickEffect::Select;
    if (input.onSpeaker)
        return ClickEffect::None;
    if (!input.speakerHasStream)
        return ClickEffect::Move;
    return input.personHasPicture ? ClickEffect::MoveStream : ClickEffect::Keep;
}

VoiceEffect voiceEffect(const VoiceInput& input)
{
    if (!isSpeakerMode(input.mode) || input.dictated || input.self)
        return VoiceEffect::None;
    if (input.activation && !input.chosenSpeaker && !isSpeakerToolMode(input.mode))
        return VoiceEffect::Speaker;
    return VoiceEffect::SmallWindow;
}

void admitToStrip(std::vector<TilePlacement>& placements, int person, int large)
{
    const auto holds = [person](const TilePlacement& tile) { return tile.index == person; };
    if (person < 0 || static_cast<int>(placements.size()) < std::max(0, large) + 2
        || std::any_of(placements.begin(), placements.end(), holds))
        return;
    placements.back().index = person;
}

} // namespace zr
