#include "check.h"
#include "native.h"

#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <unistd.h>

LogCapture::LogCapture()
    : m_path(std::filesystem::temp_directory_path()
             / ("zrcontract-" + std::to_string(getpid()) + ".log"))
    , m_stderr(dup(fileno(stderr)))
{
    std::FILE* const file = std::fopen(m_path.string().c_str(), "ab");
    REQUIRE(file != nullptr && m_stderr >= 0);
    std::fflush(stderr);
    dup2(fileno(file), fileno(stderr));
    std::fclose(file);
}

LogCapture::~LogCapture()
{
    std::fflush(stderr);
    dup2(m_stderr, fileno(stderr));
    close(m_stderr);
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

std::string LogCapture::take()
{
    std::fflush(stderr);
    std::ifstream file(m_path, std::ios::binary);
    file.seekg(m_readTo);
    std::string log{std::istreambuf_iterator<char>(file), {}};
    m_readTo += static_cast<std::streamoff>(log.size());
    return log;
}
