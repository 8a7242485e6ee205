#include "media_source.h"

#include "host_error.h"
#include "synthetic_picture.h"
#include "y4m_reader.h"

namespace zrhost {

Y4mSource::Y4mSource(std::unique_ptr<ByteSource> bytes, double fps)
    : m_bytes(std::move(bytes))
{
    try {
        m_reader = std::make_unique<Y4mReader>(*m_bytes);
    } catch (const HostError&) {
        // A program that failed says more about it than the stream that it did not write.
        const std::string problem = m_bytes->endProblem();
        if (!problem.empty())
            throw HostError(problem);
        throw;
    }
    m_fps = fps > 0 ? fps : m_reader->header().fps;
}

Y4mSource::~Y4mSource() = default;

bool Y4mSource::next(Picture& picture)
{
    while (!m_reader->readFrame(picture)) {
        if (const std::string problem = m_bytes->endProblem(); !problem.empty())
            throw HostError(problem);
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

std::vector<std::string> decoderArguments(const SourceSpec& spec)
{
    std::string filter = "scale=";
    if (spec.size.width != 0)
        filter += std::to_string(spec.size.width) + ":" + std::to_string(spec.size.height) + ":";
    filter += "out_color_matrix=bt709:out_range=tv,setsar=1";
    if (spec.fps > 0)
        filter += ",fps=" + std::to_string(spec.fps);
    // "file:" keeps FFmpeg from taking a name for an option or a network address.
    return {"ffmpeg",  "-nostdin",     "-v",           "error", "-threads",
            "1",       "-stream_loop", "-1",           "-i",    "file:" + spec.file,
            "-map",    "0:v:0",        "-vf",          filter,  "-pix_fmt",
            "yuv420p", "-f",           "yuv4mpegpipe", "-"};
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
    case SourceKind::Video:
        return std::make_unique<Y4mSource>(openProgram(decoderArguments(spec), stop), spec.fps);
    }
    return nullptr;
}

} // namespace zrhost
