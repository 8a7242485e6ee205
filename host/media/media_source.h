// Opens the source of pictures that a source option names.
#pragma once

#include "host_platform.h"
#include "source_spec.h"

#include <memory>

namespace zrhost {

/// What a synthetic source draws, and its defaults.
struct SyntheticSettings
{
    int number = 0;
    double hue = 0;
    Size size{640, 360};
    double fps = 25;
};

/// Reads a stream's header, so it may wait for data. @param stop must outlive the source
/// @return null for SourceKind::None @throws HostError, Stopped
[[nodiscard]] std::unique_ptr<PictureSource>
openSource(const SourceSpec& spec, const SyntheticSettings& synthetic, const StopSignal& stop);

/// Pictures of a YUV4MPEG2 stream, from the beginning again at the end where it can be rewound.
class Y4mSource : public PictureSource
{
public:
    /// @param fps overrides the stream's own rate when above 0 @throws HostError, Stopped
    Y4mSource(std::unique_ptr<ByteSource> bytes, double fps);
    ~Y4mSource() override;

    bool next(Picture& picture) override;
    double fps() const override { return m_fps; }

private:
    std::unique_ptr<ByteSource> m_bytes;
    std::unique_ptr<class Y4mReader> m_reader;
    double m_fps;
    bool m_hasFrame = false; ///< since the stream's beginning
};

} // namespace zrhost
