#pragma once

#include <cstdint>
#include <string_view>

namespace vemra::app {

/// A number that depends on what it is drawn for and on nothing else: what is drawn before and beside it
/// makes no difference (FNV-1a over the text, ended by the mixing of SplitMix64).
[[nodiscard]] constexpr std::uint64_t drawn(std::uint64_t seed, std::string_view what,
                                            std::uint64_t count = 0)
{
    std::uint64_t z = 0xCBF29CE484222325U ^ seed;
    for (const char c : what)
        z = (z ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    z = (z ^ count) * 0x100000001B3U + 0x9E3779B97F4A7C15U;
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
}

/// At least 0, below 1.
[[nodiscard]] constexpr double share(std::uint64_t number)
{
    return static_cast<double>(number >> 11U) * 0x1.0p-53;
}

}  // namespace vemra::app
