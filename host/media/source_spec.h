// How a user names a participant's pictures.
#pragma once

#include "text.h"

#include <string>
#include <string_view>

namespace zrhost {

enum class SourceKind
{
    None,      ///< no pictures
    Synthetic, ///< a drawn, moving picture
    Y4m        ///< a YUV4MPEG2 file, played in a loop, or pipe
};

/// Text form: KIND[@WIDTHxHEIGHT][/FPS][:FILE], for example "synthetic@320x180/15" or
/// "y4m:talk.y4m".
struct SourceSpec
{
    SourceKind kind = SourceKind::Synthetic;
    std::string file; ///< Y4m only
    Size size;        ///< 0 x 0: the source's own, or the host's default for a synthetic one
    double fps = 0;   ///< 0: the source's own rate

    /// @throws HostError
    [[nodiscard]] static SourceSpec parse(std::string_view text);
    /// @throws HostError when the source's file cannot be read. Does not look into it.
    void checkFile() const;
    [[nodiscard]] std::string toText() const;
};

} // namespace zrhost
