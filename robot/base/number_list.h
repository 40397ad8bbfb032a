#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace vemra::robot {

/// Numbers as an option takes them: "1.25,-0.4,90". No value unless there are exactly count finite ones.
[[nodiscard]] std::optional<std::vector<double>> numbersOfText(std::string_view text, std::size_t count);

}  // namespace vemra::robot
