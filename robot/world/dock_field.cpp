#include "robot/world/dock_field.h"

#include <array>
#include <cmath>
#include <utility>

#include "robot/geometry/frames.h"

namespace vemra::robot {
namespace {

constexpr double kMiddleDeg = 6;
constexpr double kMiddleMm = 20;
constexpr double kCentralDeg = 20;
constexpr double kSideDeg = 65;
constexpr double kNearMm = 700;
constexpr double kNearDeg = 90;
/// The emitter sits in the face of the dock, and the wall's cell may begin a little before it.
constexpr double kFaceDepthMm = 60;
constexpr double kMirrorCarries = 0.5;

bool inSight(PointMm from, PointMm to, double short_of_mm, const Home& visible)
{
    const double way = distance(from, to) - short_of_mm;
    if (way <= 0) {
        return true;
    }
    const PointMm along = to - from;
    return !visible.castRay(from, degreesOfRadians(std::atan2(along.y, along.x)), way).has_value();
}

double cross(PointMm a, PointMm b)
{
    return a.x * b.y - a.y * b.x;
}

PointMm mirrored(PointMm place, const Mirror& mirror)
{
    const PointMm along = mirror.to - mirror.from;
    const PointMm to_place = place - mirror.from;
    const double length2 = along.x * along.x + along.y * along.y;
    const double share = (to_place.x * along.x + to_place.y * along.y) / length2;
    const PointMm foot = mirror.from + share * along;
    return 2 * foot - place;
}

// Where the straight line from a to b meets the mirror.
std::optional<PointMm> hit(PointMm a, PointMm b, const Mirror& mirror)
{
    const PointMm way = b - a;
    const PointMm along = mirror.to - mirror.from;
    const double turned = cross(way, along);
    if (std::abs(turned) < 1e-9) {
        return std::nullopt;
    }
    const double on_way = cross(mirror.from - a, along) / turned;
    const double on_mirror = cross(mirror.from - a, way) / turned;
    if (on_way <= 0 || on_way >= 1 || on_mirror < 0 || on_mirror > 1) {
        return std::nullopt;
    }
    return a + on_way * way;
}

DockSignal exchanged(DockSignal signal)
{
    constexpr std::array sides{DockSignal::None,   DockSignal::Right,       DockSignal::CentralRight,
                               DockSignal::Middle, DockSignal::CentralLeft, DockSignal::Left};
    return sides[static_cast<std::size_t>(signal)];
}

}  // namespace

DockField::DockField(const Dock& dock, Config config) : face_(dock.face), config_(std::move(config))
{}

double DockField::rangeMm(DockSignal signal)
{
    switch (signal) {
        case DockSignal::Middle:
            return 4000;
        case DockSignal::CentralLeft:
        case DockSignal::CentralRight:
            return 3500;
        case DockSignal::Left:
        case DockSignal::Right:
            return 2500;
        case DockSignal::None:
            break;
    }
    return 0;
}

// x out of the dock's face, y to the dock's own left, which is the right of a robot that faces it.
PointMm DockField::inDockFrame(PointMm place) const
{
    return seenFrom(face_, place);
}

DockSignal DockField::sentTowards(PointMm place) const
{
    const PointMm at = inDockFrame(place);
    const double off = std::abs(degreesOfRadians(std::atan2(at.y, at.x)).value);
    DockSignal signal = DockSignal::None;
    if (at.x > 0 && (off <= kMiddleDeg || std::abs(at.y) <= kMiddleMm)) {
        signal = DockSignal::Middle;
    } else if (off <= kCentralDeg) {
        signal = at.y < 0 ? DockSignal::CentralLeft : DockSignal::CentralRight;
    } else if (off <= kSideDeg) {
        signal = at.y < 0 ? DockSignal::Left : DockSignal::Right;
    }
    return config_.exchanged ? exchanged(signal) : signal;
}

std::optional<DockField::Ray> DockField::rayBy(std::size_t way, PointMm place, const Home& visible) const
{
    const auto carried = [](DockSignal signal, PointMm from, double mm, double carries) {
        return signal != DockSignal::None && mm <= carries * rangeMm(signal)
                   ? std::optional(Ray{signal, from, mm})
                   : std::nullopt;
    };
    if (way == 0) {
        const double mm = distance(place, face_.at);
        if (mm > rangeMm(DockSignal::Middle) || !inSight(place, face_.at, kFaceDepthMm, visible)) {
            return std::nullopt;
        }
        return carried(sentTowards(place), face_.at, mm, 1);
    }
    // The light's way, folded open at the mirror, is straight.
    const Mirror& mirror = config_.mirrors[way - 1];
    const PointMm image = mirrored(place, mirror);
    const auto at = hit(face_.at, image, mirror);
    if (!at || !inSight(place, *at, kFaceDepthMm, visible) ||
        !inSight(*at, face_.at, kFaceDepthMm, visible)) {
        return std::nullopt;
    }
    return carried(sentTowards(image), *at, distance(image, face_.at), kMirrorCarries);
}

std::vector<DockField::Ray> DockField::raysAt(PointMm place, const Home& visible) const
{
    std::vector<Ray> rays;
    for (std::size_t way = 0; way < ways(); ++way) {
        if (const auto ray = rayBy(way, place, visible)) {
            rays.push_back(*ray);
        }
    }
    return rays;
}

bool DockField::isNear(PointMm place, const Home& visible) const
{
    const PointMm at = inDockFrame(place);
    const double off = std::abs(degreesOfRadians(std::atan2(at.y, at.x)).value);
    return std::hypot(at.x, at.y) <= kNearMm && off <= kNearDeg &&
           inSight(place, face_.at, kFaceDepthMm, visible);
}

}  // namespace vemra::robot
