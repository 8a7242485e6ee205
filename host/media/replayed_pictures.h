// The pictures of recorded calls.
#pragma once

#include "picture.h"
#include "synthetic_picture.h"

#include <fstream>
#include <map>
#include <memory>
#include <string>

namespace zrhost {

/// Used by one thread.
class ReplayedPictures
{
public:
    /// @param file with whole pictures, one behind the other; may be missing @param seed of colours
    ReplayedPictures(const std::string& file, unsigned seed);

    /// The picture of a word "WIDTHxHEIGHT[#CHECKSUM[@OFFSET]]": that at the offset in the file,
    /// where there is one; else a drawn one with the number and the colour of `who`, the next one
    /// whenever the checksum has changed. Empty for a checksum "none", and for sizes that no
    /// picture has. Valid until the next call. @throws HostError
    [[nodiscard]] const Picture& picture(const std::string& who, const std::string& word);

private:
    struct Source
    {
        std::unique_ptr<SyntheticSource> source;
        Picture picture;
        std::string checksum;
    };
    [[nodiscard]] bool readAt(const std::string& offset, Picture& picture);
    [[nodiscard]] const Picture& draw(const std::string& who, Size size,
                                      const std::string& checksum);

    std::ifstream m_file;
    unsigned m_seed;
    std::map<std::string, Source> m_sources; ///< by who and size
    Picture m_read;
};

} // namespace zrhost
