#include "app/whole_number.h"

#include <fmt/format.h>

#include <charconv>
#include <string>

namespace vemra::app {

CLI::Validator wholeNumber(std::uint64_t low, std::uint64_t high)
{
    const auto fault = [low, high](const std::string& text) -> std::string {
        std::uint64_t value = 0;
        const char* end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, value);
        if (error == std::errc{} && stop == end && value >= low && value <= high)
            return {};
        const std::string upwards = high == std::numeric_limits<std::uint64_t>::max()
                                        ? fmt::format("of at least {}", low)
                                        : fmt::format("from {} to {}", low, high);
        return fmt::format("expected a whole number {}, not '{}'", upwards, text);
    };
    return {fault, std::string()};
}

}  // namespace vemra::app
