#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace vemra::leaf {

/// Whether a leaf goes on until it is halted: it holds something for as long as what stands beside it runs
/// (sensors off or on, the trace), or drives without an end of its own.
[[nodiscard]] inline bool isHolding(std::string_view id)
{
    static constexpr std::array<std::string_view, 5> kHolding{
        "TemporarilyDisableSensor", "TemporarilyEnableSensor", "TraceLogger", "OpenCloseMove", "GoBackwards"};
    return std::find(kHolding.begin(), kHolding.end(), id) != kHolding.end();
}

}  // namespace vemra::leaf
