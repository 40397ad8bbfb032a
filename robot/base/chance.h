#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>

namespace vemra::robot {

/// A seeded source of random numbers that gives the same ones on every machine (the library's distributions
/// don't). The generator is SplitMix64 (Steele, Lea, Flood 2014).
class Chance
{
public:
    explicit Chance(std::uint64_t seed) : state_(seed) {}

    std::uint64_t bits()
    {
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15U);
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31U);
    }

    /// At least 0, below 1.
    double uniform() { return static_cast<double>(bits() >> 11U) * 0x1.0p-53; }

    /// Normal with mean 0 and deviation 1 (Box and Muller).
    double gaussian()
    {
        if (spare_) {
            spare_ = false;
            return kept_;
        }
        const double radius = std::sqrt(-2 * std::log(1 - uniform()));
        const double angle = 2 * std::numbers::pi * uniform();
        kept_ = radius * std::sin(angle);
        spare_ = true;
        return radius * std::cos(angle);
    }

    /// A source of its own, so that one user's draws don't shift another's.
    Chance branch() { return Chance(bits()); }

private:
    std::uint64_t state_;
    double kept_ = 0;
    bool spare_ = false;
};

}  // namespace vemra::robot
