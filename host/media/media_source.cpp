#include "media_source.h"

#include "host_error.h"
#include "synthetic_picture.h"
#include "y4m_reader.h"

namespace zrhost {

Y4mSource::Y4mSource(std::unique_ptr<ByteSource> bytes, double fps)
    : m_bytes(std::move(bytes))
    , m_reader(std::make_unique<Y4mReader>(*m_bytes))
    , m_fps(fps > 0 ? fps : m_reader->header().fps)
{
}

Y4mSource::~Y4mSource() = default;

bool Y4mSource::next(Picture& picture)
{
    while (!m_reader->readFrame(picture)) {
        if (!m_hasFrame)
            throw HostError("the stream has no frames");
        if (!m_bytes->rewind())
            return false;
        m_reader = std::make_unique<Y4mReader>(*m_bytes);
        m_hasFrame = false;
    }
    m_hasFrame = true;
    return true;
}

std::unique_ptr<PictureSource>
openSource(const SourceSpec& spec, const SyntheticSettings& synthetic, const StopSignal& stop)
{
    switch (spec.kind) {
    case SourceKind::None:
        return nullptr;
    case SourceKind::Synthetic:
        return std::make_unique<SyntheticSource>(synthetic.number, synthetic.hue,
                                                 spec.size.width != 0 ? spec.size : synthetic.size,
                                                 spec.fps > 0 ? spec.fps : synthetic.fps);
    case SourceKind::Y4m:
        return std::make_unique<Y4mSource>(openFile(spec.file, stop), spec.fps);
    }
    return nullptr;
}

} // namespace zrhost
