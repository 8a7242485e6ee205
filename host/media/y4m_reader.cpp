#include "y4m_reader.h"

#include "host_error.h"
#include "text.h"

#include <algorithm>
#include <cstring>
#include <sstream>

namespace zrhost {

namespace {

constexpr char kMagic[] = "YUV4MPEG2";
constexpr std::size_t kMaxLineBytes = 4096;
constexpr std::size_t kBufferBytes = 4096;

bool startsWith(const std::string& text, const char* prefix)
{
    return text.compare(0, std::strlen(prefix), prefix) == 0;
}

double parseRate(const std::string& text)
{
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos)
        throw HostError("YUV4MPEG2 frame rate '" + text + "' is not a ratio");
    constexpr long long kMax = 1'000'000'000;
    const std::string what = "YUV4MPEG2 frame rate";
    const long long top = parseInteger(text.substr(0, colon), 0, kMax, what);
    const long long bottom = parseInteger(text.substr(colon + 1), 0, kMax, what);
    if (top == 0 || bottom == 0)
        return 25;
    return std::clamp(static_cast<double>(top) / static_cast<double>(bottom), 0.1, 240.0);
}

void checkChroma(const std::string& name)
{
    // The 8-bit 4:2:0 variants differ in where the chroma samples lie, which nobody can see here.
    for (const char* known : {"420", "420jpeg", "420mpeg2", "420paldv"}) {
        if (name == known)
            return;
    }
    throw HostError("YUV4MPEG2 with chroma '" + name + "' is not supported (only 8-bit 4:2:0)");
}

} // namespace

Y4mHeader Y4mHeader::parse(const std::string& line)
{
    std::istringstream words(line);
    std::string word;
    if (!(words >> word) || word != kMagic)
        throw HostError("not a YUV4MPEG2 stream");
    Y4mHeader header;
    while (words >> word) {
        const std::string value = word.substr(1);
        switch (word.front()) {
        case 'W':
            header.width = static_cast<int>(parseInteger(value, 1, kMaxEdgePx, "YUV4MPEG2 width"));
            break;
        case 'H':
            header.height =
                static_cast<int>(parseInteger(value, 1, kMaxEdgePx, "YUV4MPEG2 height"));
            break;
        case 'F':
            header.fps = parseRate(value);
            break;
        case 'C':
            checkChroma(value);
            break;
        default: // interlacing, aspect ratio, comments: of no use here
            break;
        }
    }
    if (header.width == 0 || header.height == 0)
        throw HostError("YUV4MPEG2 header without a width and a height");
    return header;
}

Y4mReader::Y4mReader(ByteSource& bytes)
    : m_bytes(bytes)
    , m_buffer(kBufferBytes)
{
    // The magic is checked before the line's end is looked for: a file of another kind shall be
    // called that, and not a long line.
    constexpr std::size_t kMagicBytes = sizeof kMagic - 1;
    std::string line(kMagicBytes, '\0');
    const std::size_t got = readUpTo(reinterpret_cast<std::uint8_t*>(line.data()), kMagicBytes);
    line.resize(got);
    if (got == 0)
        throw HostError("the stream is empty");
    if (line != kMagic)
        throw HostError("not a YUV4MPEG2 stream");
    std::string rest;
    if (!readLine(rest))
        throw HostError("truncated YUV4MPEG2 header");
    m_header = Y4mHeader::parse(line + rest);
}

bool Y4mReader::readFrame(Picture& picture)
{
    std::string line;
    if (!readLine(line))
        return false;
    if (line != "FRAME" && !startsWith(line, "FRAME "))
        throw HostError("no FRAME header before frame " + std::to_string(m_frames + 1));
    picture.width = m_header.width;
    picture.height = m_header.height;
    picture.data.resize(Picture::byteCount(m_header.width, m_header.height));
    const std::size_t got = readUpTo(picture.data.data(), picture.data.size());
    if (got != picture.data.size())
        throw HostError("truncated frame " + std::to_string(m_frames + 1) + ": "
                        + std::to_string(got) + " of " + std::to_string(picture.data.size())
                        + " bytes");
    ++m_frames;
    return true;
}

bool Y4mReader::fill()
{
    m_at = 0;
    m_end = m_bytes.read(m_buffer.data(), m_buffer.size());
    return m_end != 0;
}

bool Y4mReader::readLine(std::string& line)
{
    line.clear();
    while (m_at != m_end || fill()) {
        const char c = static_cast<char>(m_buffer[m_at++]);
        if (c == '\n')
            return true;
        if (line.size() == kMaxLineBytes)
            throw HostError("YUV4MPEG2 header line without an end");
        line += c;
    }
    if (!line.empty())
        throw HostError("truncated YUV4MPEG2 header");
    return false;
}

std::size_t Y4mReader::readUpTo(std::uint8_t* to, std::size_t size)
{
    std::size_t got = std::min(size, m_end - m_at);
    std::memcpy(to, m_buffer.data() + m_at, got);
    m_at += got;
    while (got < size) {
        const std::size_t more = m_bytes.read(to + got, size - got);
        if (more == 0)
            break;
        got += more;
    }
    return got;
}

} // namespace zrhost
