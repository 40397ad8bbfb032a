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
}

void ContactMap::clearDisc(PointMm centre, double radius_mm)
{
    std::erase_if(contacts_, [&](const Contact& known) { return distance(known.at, centre) < radius_mm; });
}

void ContactMap::forgetOld(std::int64_t frame)
{
    std::erase_if(contacts_, [&](const Contact& known) {
        return !known.lasting && frame - known.frame > kRememberedFrames;
    });
}

}  // namespace vemra::robot
