// The one kind of failure that the host reports to its user.
#pragma once

#include <stdexcept>

namespace zrhost {

/// A failure that the user can understand: what() is one complete line without a newline.
class HostError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A wrong command line; the program then ends with another status than for a failed run.
class UsageError : public HostError
{
public:
    using HostError::HostError;
};

} // namespace zrhost
