#include "robot/base/number_list.h"

#include <charconv>
#include <cmath>

namespace vemra::robot {

std::optional<std::vector<double>> numbersOfText(std::string_view text, std::size_t count)
{
    std::vector<double> values;
    const char* at = text.data();
    const char* const end = text.data() + text.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0 && (at == end || *at++ != ','))
            return std::nullopt;
        const auto [rest, fault] = std::from_chars(at, end, values.emplace_back());
        if (fault != std::errc{} || !std::isfinite(values.back()))
            return std::nullopt;
        at = rest;
    }
    return at == end ? std::optional(values) : std::nullopt;
}

}  // namespace vemra::robot
