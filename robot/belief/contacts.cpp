#include "robot/belief/contacts.h"

#include <algorithm>

namespace vemra::robot {
namespace {

constexpr double kSamePlaceMm = 20;

}  // namespace

void ContactMap::add(PointMm at, std::int64_t frame, bool lasting)
{
    for (Contact& known : contacts_) {
        if (distance(known.at, at) < kSamePlaceMm) {
            known.frame = frame;
            known.lasting = known.lasting || lasting;
            return;
        }
    }
    contacts_.push_back({at, frame, lasting});
    ++version_;
}

void ContactMap::reset()
{
    contacts_.clear();
    ++version_;
}

void ContactMap::forget(const std::function<bool(const Contact&)>& which)
{
    if (std::erase_if(contacts_, which) > 0) {
        ++version_;
    }
}

void ContactMap::clearDisc(PointMm centre, double radius_mm)
{
    forget([&](const Contact& known) { return distance(known.at, centre) < radius_mm; });
}

void ContactMap::forgetOld(std::int64_t frame)
{
    forget([&](const Contact& known) { return !known.lasting && frame - known.frame > kRememberedFrames; });
}

}  // namespace vemra::robot
