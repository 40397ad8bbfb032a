#pragma once

#include <stdexcept>

namespace vemra::app {

/// Exit codes of the command.
inline constexpr int kDone = 0;
inline constexpr int kNotAsExpected = 1;
inline constexpr int kBadInput = 2;

/// What a person asked for cannot be done as asked. what() says what was wrong and what was expected; the
/// command prints it and ends with kBadInput.
class UserError : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

}  // namespace vemra::app
