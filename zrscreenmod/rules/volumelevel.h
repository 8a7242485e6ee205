// How loud a participant is, in the steps that the microphone shows.
#pragma once

namespace zr {

constexpr int kMaxVolume = 100;
constexpr int kVolumeLevels = 7;

/// @param volume 0 to kMaxVolume; what lies outside counts as the nearest end @return 1 to
/// kVolumeLevels
constexpr int volumeLevel(int volume)
{
    constexpr int kFirstStep = 10;
    constexpr int kStep = 15;
    if (volume < kFirstStep)
        return 1;
    const int level = 2 + (volume - kFirstStep) / kStep;
    return level < kVolumeLevels ? level : kVolumeLevels;
}

} // namespace zr
