#include "robot/services/escape/escape_watch.h"

#include <algorithm>
#include <cmath>

#include "robot/services/sensing/sensing_direction.h"

namespace vemra::robot {
namespace {

// Frames after which a sign is a warning; 0: never by itself.
constexpr std::array<int, kEscapeKinds> kPatience = {
    60,   // an edge
    25,   // a wheel hangs
    100,  // a virtual wall
    100,  // bumper
    200,  // does not move at all
    0,    // left wheel
    0,    // right wheel
    0,    // main brush
    0,    // side brush
    25,   // tilted
    1,    // bumps again and again
    1,    // drops again and again
    75,   // turns
    75,   // pushes
    0,    // laser cap
};

constexpr double kTiltDeg = 6;
/// Below this share of what the wheels do the robot gets nowhere.
constexpr double kProgress = 0.25;
constexpr double kPushingMm = 40;  // mm/s of the wheels
constexpr double kTurningDeg = 15;
constexpr double kStillMm = 5;
constexpr double kStillDeg = 2;
constexpr double kTrackMm = BodyConfig{}.track_mm;

constexpr std::size_t kBumpTimes = 10;
constexpr std::uint64_t kBumpMemory = 1000;
constexpr std::size_t kDropTimes = 4;
constexpr std::uint64_t kDropMemory = 1500;
constexpr double kSamePlaceMm = 200;

}  // namespace

void EscapeWatch::count(EscapeKind kind, bool sign, bool counts)
{
    signs_[index(kind)] = sign;
    int& frames = frames_[index(kind)];
    if (!sign) {
        frames = 0;
    } else if (counts) {
        ++frames;
    }
}

void EscapeWatch::update(const Body& body, std::string_view contact)
{
    ++frame_;
    const bool driven = body.commanded() != WheelSpeeds{};
    const bool bumped = body.bumper().any();
    const bool dropped = body.wheelDrop().any();
    // In the air everything looks like an edge.
    count(EscapeKind::Cliff, body.cliffs().any() && !body.wheelDrop().both(), driven);
    count(EscapeKind::Drop, dropped, true);
    count(EscapeKind::Virtual, contact == kVirtualBump, driven);
    count(EscapeKind::Bump, bumped, driven);
    count(EscapeKind::Gesture, body.tiltDeg() >= kTiltDeg, true);
    countProgress(body);

    const Onset here{frame_, body.odometry().at};
    note(bumps_, bumped && !bumped_before_, here, kBumpMemory);
    note(drops_, dropped && !dropped_before_, here, kDropMemory);
    bumped_before_ = bumped;
    dropped_before_ = dropped;
    count(EscapeKind::BumpRepeat, repeats(bumps_, kBumpTimes), true);
    count(EscapeKind::DropRepeat, repeats(drops_, kDropTimes), true);
}

void EscapeWatch::countProgress(const Body& body)
{
    const WheelSpeeds wheels = body.wheelSpeeds();
    const double push = (wheels.left + wheels.right) / 2;
    const double turn = degreesOfRadians((wheels.right - wheels.left) / kTrackMm).value;
    const bool pushes = std::abs(push) >= kPushingMm;
    const bool turns = std::abs(turn) >= kTurningDeg;
    const bool in_air = body.wheelDrop().both();
    // Whether the robot gets on shows only while its wheels try; until then the last answer holds.
    const auto gets_nowhere = [&](EscapeKind kind, bool tries, double wheels_do, double robot_does) {
        const bool nowhere = tries ? std::abs(robot_does) < kProgress * std::abs(wheels_do) : shows(kind);
        count(kind, nowhere && !in_air, tries);
    };
    gets_nowhere(EscapeKind::ForwardSuffocate, pushes, push, body.flowSpeed());
    gets_nowhere(EscapeKind::TurnSuffocate, turns, turn, body.turnRate());

    const bool tries = pushes || turns;
    const bool still = std::abs(body.flowSpeed()) < kStillMm && std::abs(body.turnRate()) < kStillDeg;
    count(EscapeKind::Immovable, (tries ? still : shows(EscapeKind::Immovable)) && !in_air, tries);
}

void EscapeWatch::note(std::deque<Onset>& onsets, bool began, const Onset& onset, std::uint64_t memory_frames)
{
    while (!onsets.empty() && onset.frame - onsets.front().frame > memory_frames) {
        onsets.pop_front();
    }
    if (began) {
        onsets.push_back(onset);
    }
}

bool EscapeWatch::repeats(const std::deque<Onset>& onsets, std::size_t times)
{
    return onsets.size() >= times &&
           std::count_if(onsets.begin(), onsets.end(), [&onsets](const Onset& onset) {
               return distance(onset.at, onsets.back().at) <= kSamePlaceMm;
           }) >= static_cast<std::ptrdiff_t>(times);
}

bool EscapeWatch::warns(EscapeKind kind) const
{
    const int patience = kPatience[index(kind)];
    return patience > 0 && frames_[index(kind)] >= patience;
}

void EscapeWatch::settle()
{
    frames_ = {};
    bumps_.clear();
    drops_.clear();
}

void EscapeWatch::forget()
{
    settle();
    signs_ = {};
}

}  // namespace vemra::robot
