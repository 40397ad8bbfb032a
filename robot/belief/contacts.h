#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "robot/belief/grid.h"

namespace vemra::robot {

/// What the robot bumped into: things that the laser may not see.
class ContactMap
{
public:
    struct Contact
    {
        PointMm at;
        std::int64_t frame = 0;
        bool lasting = false;  ///< false: forgotten after a while
    };

    /// How long a contact that is not to be drawn is remembered, in frames.
    static constexpr std::int64_t kRememberedFrames = 1500;

    void add(PointMm at, std::int64_t frame, bool lasting);
    /// The floor within the disc is free: contacts in it were something that is gone.
    void clearDisc(PointMm centre, double radius_mm);
    void forgetOld(std::int64_t frame);
    void reset();

    const std::vector<Contact>& all() const { return contacts_; }
    /// Grows when a contact is added or forgotten.
    std::uint64_t version() const { return version_; }

private:
    void forget(const std::function<bool(const Contact&)>& which);

    std::vector<Contact> contacts_;
    std::uint64_t version_ = 0;
};

}  // namespace vemra::robot
