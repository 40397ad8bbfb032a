#pragma once

#include <optional>
#include <string>
#include <utility>

namespace vemra::leaf {

/// The text of one port of a leaf in a tree description; absent unless given.
/// A number may be given as such and stands as its decimal text.
class Port
{
public:
    Port() = default;
    // Implicit on purpose: a description gives plain values.
    Port(const char* text) : text_(text) {}              // NOLINT(google-explicit-constructor)
    Port(std::string text) : text_(std::move(text)) {}   // NOLINT(google-explicit-constructor)
    Port(int number) : text_(std::to_string(number)) {}  // NOLINT(google-explicit-constructor)
    Port(bool) = delete;                                 // write "true" or "false"
    Port(double) = delete;                               // write the digits as they shall stand

    [[nodiscard]] bool given() const { return text_.has_value(); }
    [[nodiscard]] const std::string& text() const { return *text_; }

private:
    std::optional<std::string> text_;
};

}  // namespace vemra::leaf
