#pragma once

#include <stdexcept>
#include <string>

namespace vemra::robot {

/// A file or an option given by a person cannot be used. what() is "file:line: message", or "file: message"
/// where there is no line; for an option, file() is the option's name.
class InputError : public std::runtime_error
{
public:
    /// line counts from 1; 0 means that the fault has no line.
    InputError(const std::string& file, int line, const std::string& message)
        : std::runtime_error(file + (line > 0 ? ":" + std::to_string(line) : "") + ": " + message),
          file_(file),
          line_(line)
    {}

    const std::string& file() const { return file_; }
    int line() const { return line_; }

private:
    std::string file_;
    int line_;
};

}  // namespace vemra::robot
