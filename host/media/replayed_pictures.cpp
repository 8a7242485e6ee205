#include "replayed_pictures.h"

#include "host_error.h"

#include <cctype>
#include <climits>
#include <cstdlib>
#include <filesystem>

namespace zrhost {

namespace {

/// The number in "p12"; 0 without one.
int numberIn(const std::string& name)
{
    constexpr int kMost = 9999;
    const std::size_t digits = name.find_first_of("0123456789");
    return digits == std::string::npos ? 0 : std::atoi(name.c_str() + digits) % (kMost + 1);
}

/// Sides as they were recorded, whatever they are.
void parseSides(const std::string& text, Picture& picture)
{
    const std::size_t x = text.find('x');
    if (x == std::string::npos)
        throw HostError("call: '" + text + "' is not a size such as 640x360");
    const auto side = [](const std::string& digits) {
        const long long pixels = parseInteger(digits, 0, UINT_MAX, "call");
        return static_cast<int>(static_cast<unsigned>(pixels));
    };
    picture.width = side(text.substr(0, x));
    picture.height = side(text.substr(x + 1));
}

} // namespace

ReplayedPictures::ReplayedPictures(const std::string& file, unsigned seed)
    : m_file(std::filesystem::u8path(file), std::ios::binary)
    , m_seed(seed)
{
}

const Picture& ReplayedPictures::picture(const std::string& who, const std::string& word)
{
    const std::size_t hash = std::min(word.find('#'), word.size());
    const std::size_t at = std::min(word.find('@', hash), word.size());
    const std::string checksum = word.substr(hash, at - hash);
    m_read.data.clear();
    parseSides(word.substr(0, hash), m_read);
    const bool isPicture = m_read.width >= 1 && m_read.height >= 1 && m_read.width <= kMaxEdgePx
                           && m_read.height <= kMaxEdgePx;
    if (!isPicture || checksum == "#none"
        || (at < word.size() && readAt(word.substr(at + 1), m_read)))
        return m_read;
    return draw(who, {m_read.width, m_read.height}, checksum);
}

bool ReplayedPictures::readAt(const std::string& offset, Picture& picture)
{
    picture.data.resize(Picture::byteCount(picture.width, picture.height));
    m_file.clear();
    m_file.seekg(parseInteger(offset, 0, LLONG_MAX, "call"));
    m_file.read(reinterpret_cast<char*>(picture.data.data()),
                static_cast<std::streamsize>(picture.data.size()));
    return m_file.good();
}

const Picture& ReplayedPictures::draw(const std::string& who, Size size,
                                      const std::string& checksum)
{
    Source& drawn =
        m_sources[who + ' ' + std::to_string(size.width) + 'x' + std::to_string(size.height)];
    const int number = numberIn(who);
    if (!drawn.source)
        drawn.source =
            std::make_unique<SyntheticSource>(number, participantHue(number, m_seed), size, 25);
    else if (drawn.checksum == checksum)
        return drawn.picture;
    drawn.checksum = checksum;
    (void)drawn.source->next(drawn.picture);
    return drawn.picture;
}

} // namespace zrhost
