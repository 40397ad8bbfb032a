#include "robot/belief/robot_map.h"

#include <cmath>

namespace vemra::robot {
namespace {

constexpr std::uint64_t kScanEveryFrames = 5;
// A robot that stands still sees the same: this often is enough.
constexpr std::uint64_t kScanAtRestFrames = 50;
constexpr double kAtRestMm = 3;
constexpr double kAtRestDeg = 0.5;
constexpr double kLevelDeg = 5;
// A body that stands on a place is proof that there is nothing; the rim is left to the errors of the pose.
constexpr double kSurelyUnderMm = kRobotRadiusMm - 45;
// The laser explains a contact when it sees something so near to the casing.
constexpr double kExplainedMm = 40;
constexpr double kContactSpreadDeg = 40;
// A contact lies a little outside of the casing.
constexpr double kOutsideMm = 10;

// Where the sides of the casing's front are felt.
constexpr double kSideDeg = 50;

// The middle of where something was met; positive to the left.
double bearingOf(const Sides& met)
{
    constexpr double kBetween = 25;
    if (met.left == met.right) {
        return 0;
    }
    const double off = met.middle ? kBetween : kSideDeg;
    return met.left ? off : -off;
}

// The range of a beam with those of its neighbours that met the same thing: a drive close to a wall goes by
// the nearest of many beams, and noise alone would put the wall nearer.
double smoothed(const LaserScan& scan, std::size_t beam)
{
    constexpr double kSameThingMm = 30;
    const std::size_t beams = scan.ranges_mm.size();
    const double range = *scan.ranges_mm[beam];
    double sum = range;
    int count = 1;
    for (const std::size_t beside : {(beam + 1) % beams, (beam + beams - 1) % beams}) {
        if (const auto& other = scan.ranges_mm[beside]; other && std::abs(*other - range) < kSameThingMm) {
            sum += *other;
            ++count;
        }
    }
    return sum / count;
}

}  // namespace

void RobotMap::update(std::uint64_t frame)
{
    if (body_.wheelDrop().any()) {
        return;
    }
    const PoseMm now = pose();
    const bool at_rest = scanned_ && distance(now.at, scanned_at_.at) < kAtRestMm &&
                         std::abs(now.yaw.value - scanned_at_.yaw.value) < kAtRestDeg;
    const std::uint64_t since = frame - scanned_in_;
    if (!scanned_ || since >= (at_rest ? kScanAtRestFrames : kScanEveryFrames)) {
        scanned_in_ = frame;
        enterScan();
    }
    const std::size_t points = track_.size();
    track_.follow(now.at);
    if (track_.size() != points) {
        contacts_.clearDisc(now.at, kSurelyUnderMm);
        if (draw_mode_ == DrawMode::ClearOnly || draw_mode_ == DrawMode::Everything) {
            occupancy_.clearDisc(now.at, kSurelyUnderMm);
        }
    }
    enterContact(frame);
}

void RobotMap::setVirtualWalls(VirtualWalls walls)
{
    virtual_walls_ = std::move(walls);
    ++walls_set_;
}

void RobotMap::enterScan()
{
    if (std::abs(body_.tiltDeg()) > kLevelDeg) {
        return;
    }
    const LaserScan& scan = body_.scan();
    const PoseMm at = pose();
    std::vector<Beam> beams;
    beams.reserve(scan.ranges_mm.size());
    seen_.clear();
    double farthest = 0;
    for (std::size_t i = 0; i < scan.ranges_mm.size(); ++i) {
        const Degrees heading{at.yaw.value + scan.bearing(i).value};
        beams.push_back({heading, scan.ranges_mm[i]});
        if (scan.ranges_mm[i]) {
            seen_.push_back(at.at + smoothed(scan, i) * direction(heading));
            farthest = std::max(farthest, *scan.ranges_mm[i]);
        }
    }
    // A beam without an end says only that nothing is near: some things don't throw light back.
    constexpr double kTrustedMm = 3000;
    occupancy_.enter(at.at, beams, std::min(farthest, kTrustedMm));
    scanned_at_ = at;
    scanned_ = true;
}

// A side of the bumper is long: where the body has been there is nothing, so that what was met lies farther
// back.
PointMm RobotMap::contactAt(const PoseMm& at, double bearing) const
{
    constexpr double kBackDeg = 20;
    constexpr double kFarthestBackDeg = 90;
    const auto placeAt = [&](double deg) {
        return at.at + (kRobotRadiusMm + kOutsideMm) * direction({at.yaw.value + deg});
    };
    for (double deg = std::abs(bearing); bearing != 0 && deg <= kFarthestBackDeg; deg += kBackDeg) {
        const PointMm place = placeAt(std::copysign(deg, bearing));
        if (!track_.covered(cellAt(place))) {
            return place;
        }
    }
    return placeAt(bearing);
}

Sides RobotMap::enterSteps()
{
    Sides closed;
    const Sides& felt = body_.stepAhead();
    if (!felt.any()) {
        return closed;
    }
    const PoseMm at = pose();
    const auto enter = [&](bool here, double bearing) {
        const PointMm place = at.at + kRobotRadiusMm * direction({at.yaw.value + bearing});
        if (here) {
            steps_.meet(place, !new_steps_closed_);
        }
        return here && !steps_.isOpen(place);
    };
    closed.left = enter(felt.left, kSideDeg);
    closed.middle = enter(felt.middle, 0);
    closed.right = enter(felt.right, -kSideDeg);
    return closed;
}

void RobotMap::enterContact(std::uint64_t frame)
{
    contacts_.forgetOld(static_cast<std::int64_t>(frame));
    const Sides& bumper = body_.bumper();
    const Sides& cliffs = body_.cliffs();
    const Sides steps = enterSteps();
    const Sides met{bumper.left || cliffs.left || steps.left, bumper.middle || cliffs.middle || steps.middle,
                    bumper.right || cliffs.right || steps.right};
    const bool now = met.any();
    if (now && !pressed_) {
        last_contact_frame_ = frame;
        if (met.left && met.right && !met.middle) {
            // Between two things.
            meet(-kSideDeg, frame);
            meet(kSideDeg, frame);
        } else {
            meet(bearingOf(met), frame);
        }
    }
    pressed_ = now;
}

// Something was met. The laser may explain it, and a step is kept in a book of its own; else it goes into the
// map.
void RobotMap::meet(double bearing, std::uint64_t frame)
{
    last_contact_ = contactAt(pose(), bearing);
    const bool edge = body_.cliffs().any();
    const auto seen = body_.recentScan().nearest({bearing}, {kContactSpreadDeg});
    const bool explained = seen && *seen <= kRobotRadiusMm + kExplainedMm;
    if (!edge && (explained || !body_.bumper().any())) {
        return;
    }
    const bool draw = draw_mode_ == DrawMode::BlockOnly || draw_mode_ == DrawMode::Everything;
    // Where the body has been nothing stands for good.
    const bool lasting = draw && (edge || !track_.covered(cellAt(last_contact_)));
    contacts_.add(last_contact_, static_cast<std::int64_t>(frame), lasting);
}

void RobotMap::forgetCleaning()
{
    cleaned_.reset();
    traced_walls_.reset();
    ++resets_;
}

void RobotMap::setAside()
{
    if (!aside_) {
        aside_ = Aside{std::move(occupancy_), std::move(track_), std::move(contacts_), std::move(cleaned_),
                       std::move(traced_walls_)};
        occupancy_ = {};
        track_ = {};
        contacts_ = {};
        cleaned_ = {};
        traced_walls_ = {};
        scanned_ = false;
        seen_.clear();
        ++resets_;
    }
}

void RobotMap::bringBack()
{
    if (aside_) {
        occupancy_ = std::move(aside_->occupancy);
        track_ = std::move(aside_->track);
        contacts_ = std::move(aside_->contacts);
        cleaned_ = std::move(aside_->cleaned);
        traced_walls_ = std::move(aside_->traced_walls);
        aside_.reset();
        scanned_ = false;
        seen_.clear();
        ++resets_;
    }
}

void RobotMap::reset()
{
    occupancy_.reset();
    track_.reset();
    contacts_.reset();
    steps_.reset();
    cleaned_.reset();
    traced_walls_.reset();
    ++resets_;
    scanned_ = false;
}

std::vector<PointMm> RobotMap::obstaclesNear(double radius_mm, bool by_laser) const
{
    const PointMm at = pose().at;
    std::vector<PointMm> near;
    if (by_laser) {
        std::copy_if(seen_.begin(), seen_.end(), std::back_inserter(near),
                     [&](PointMm p) { return distance(p, at) <= radius_mm; });
    }
    for (const ContactMap::Contact& contact : contacts_.all()) {
        if (distance(contact.at, at) <= radius_mm) {
            near.push_back(contact.at);
        }
    }
    std::copy_if(steps_.closed().begin(), steps_.closed().end(), std::back_inserter(near),
                 [&](PointMm p) { return distance(p, at) <= radius_mm; });
    return near;
}

}  // namespace vemra::robot
