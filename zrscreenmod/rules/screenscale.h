// The rule that tells a high-resolution screen, and the sizes that follow from it.
#pragma once

namespace zr {

/// A primary screen counts as high-resolution above this width, in physical pixels.
constexpr int kHighResolutionWidthPx = 3500;

/// Only the width decides: a screen of 3840 x 1080 counts, one of 3500 x 2160 does not.
constexpr bool isHighResolutionScreen(int screenWidthPx)
{
    return screenWidthPx > kHighResolutionWidthPx;
}

/// A base size on a high-resolution screen: times `factor` in single precision, truncated.
constexpr int scaledSize(int base, float factor, bool highResolution)
{
    return highResolution ? static_cast<int>(static_cast<float>(base) * factor) : base;
}

} // namespace zr
