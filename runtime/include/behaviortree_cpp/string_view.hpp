#pragma once

#include <string>
#include <string_view>

namespace BT {

/// A text that somebody else owns.
class StringView : public std::string_view
{
public:
    using std::string_view::string_view;
    constexpr StringView() = default;
    constexpr StringView(std::string_view text) : std::string_view(text) {}  // NOLINT: a view is a view
    StringView(const std::string& text) : std::string_view(text) {}          // NOLINT: as for std

    [[nodiscard]] std::string to_string() const { return std::string(*this); }
};

}  // namespace BT
