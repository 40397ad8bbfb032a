#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "robot/base/clock.h"
#include "robot/scenario/scenario.h"

namespace vemra::robot {
namespace {

constexpr double kMaxMs = 200.0 * 24 * 3600 * 1000;

struct Unit
{
    std::string_view name;
    double ms;
};

// "ms" stands before "m", which it begins with.
constexpr std::array<Unit, 4> kUnits{{{"ms", 1}, {"s", 1e3}, {"m", 6e4}, {"h", 36e5}}};

// Takes the unit that the text begins with; 0 without one.
double takeUnit(std::string_view& text)
{
    for (const Unit& unit : kUnits) {
        if (text.starts_with(unit.name)) {
            text.remove_prefix(unit.name.size());
            return unit.ms;
        }
    }
    return 0;
}

}  // namespace

std::optional<std::uint64_t> framesOfText(std::string_view text)
{
    double ms = 0;
    bool first = true;
    bool counted = false;
    if (text.empty()) {
        return std::nullopt;
    }
    while (!text.empty()) {
        double amount = 0;
        const auto [rest, fault] =
            std::from_chars(text.data(), text.data() + text.size(), amount, std::chars_format::fixed);
        if (fault != std::errc{} || !std::isfinite(amount) || std::signbit(amount) || counted) {
            return std::nullopt;
        }
        text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
        // A bare number counts frames and stands alone.
        counted = text.empty() && first;
        first = false;
        const double unit = counted ? kFrameMs : takeUnit(text);
        if (unit == 0) {
            return std::nullopt;
        }
        ms += amount * unit;
    }
    const double frames = std::round(ms / kFrameMs);
    if (ms > kMaxMs || std::abs(frames * kFrameMs - ms) > 1e-6) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(frames);
}

}  // namespace vemra::robot
