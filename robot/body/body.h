#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "robot/base/chance.h"
#include "robot/body/dock_receivers.h"
#include "robot/body/laser.h"
#include "robot/body/pose_source.h"
#include "robot/world/dock.h"
#include "robot/world/world.h"

namespace vemra::robot {

struct WheelSpeeds
{
    double left = 0;   ///< mm/s
    double right = 0;  ///< mm/s
    bool operator==(const WheelSpeeds&) const = default;
};

/// Something on the left, ahead, on the right.
struct Sides
{
    bool left = false;
    bool middle = false;
    bool right = false;
    [[nodiscard]] bool any() const { return left || middle || right; }
    bool operator==(const Sides&) const = default;
};

struct WheelDrop
{
    bool left = false;
    bool right = false;
    [[nodiscard]] bool any() const { return left || right; }
    [[nodiscard]] bool both() const { return left && right; }
    bool operator==(const WheelDrop&) const = default;
};

struct BodyConfig
{
    double track_mm = 230;         ///< from wheel to wheel
    double acceleration = 1000;    ///< of a wheel, mm/s^2
    double braking = 3000;         ///< likewise
    double odometry_noise = 0.01;  ///< deviation of one step's length, as a share of it
    double gyro_noise = 0.002;     ///< deviation of one step's turn, as a share of it
    LaserConfig laser = {};
};

/// The robot's body in the world: two driven wheels, a bumper around the front, cliff sensors, a gyro, an
/// optical flow sensor and a laser. Yaws count on over whole turns. The same calls on the same seed give the
/// same numbers.
class Body
{
public:
    /// The world must outlive the body. Whether the robot fits where it is put is not looked at.
    Body(const World& world, const PoseMm& at, Chance chance, const BodyConfig& config = {});

    // --- commands: the wheels keep a speed until the next one. That of a driver lapses when it is not given
    // again in the step after: a motion that is neither ticked nor ended goes on by no means.

    void drive(WheelSpeeds speeds, const void* driver = nullptr)
    {
        commanded_ = speeds;
        driver_ = driver;
        ordered_in_ = steps_;
    }
    /// Forward speed in mm/s and turn to the left in degrees/s.
    void driveArc(double forward_mm_s, double turn_deg_s, const void* driver = nullptr);
    void stop() { drive({}); }
    /// A driver lets go: the wheels stop, unless another took them over meanwhile.
    void release(const void* driver)
    {
        if (driver_ == driver)
            stop();
    }
    [[nodiscard]] WheelSpeeds commanded() const { return commanded_; }

    /// Time goes on; a frame is 0.02 s.
    void step(double seconds);
    [[nodiscard]] std::uint64_t steps() const { return steps_; }

    // --- senses: what the robot can know

    /// What the wheels' encoders say.
    [[nodiscard]] WheelSpeeds wheelSpeeds() const { return wheels_; }
    /// The wheels' way and the gyro's turn summed up, from the pose that the robot was put at first. Blind to
    /// slip and to being carried.
    [[nodiscard]] const PoseMm& odometry() const { return odometry_; }
    /// What the gyro tells now is no turn; to be asked for where the robot stands still.
    void zeroGyro() { gyro_drift_ = 0; }
    /// Moves the frame of the odometry, so that it now says `pose`.
    void setOdometry(const PoseMm& pose) { odometry_ = pose; }
    [[nodiscard]] const Sides& bumper() const { return bumper_; }
    /// Something holds the robot back from behind. There is no bumper there; the wheels feel it.
    [[nodiscard]] bool rearContact() const { return rear_contact_; }
    [[nodiscard]] const Sides& cliffs() const { return cliffs_; }
    /// The line laser sees a step in the floor at the front of the casing.
    [[nodiscard]] const Sides& stepAhead() const { return step_ahead_; }
    [[nodiscard]] const WheelDrop& wheelDrop() const { return wheel_drop_; }
    /// Speed over the floor by the optical flow sensor, mm/s; negative backwards.
    [[nodiscard]] double flowSpeed() const { return flow_speed_; }
    /// Turn by the gyro, degrees/s.
    [[nodiscard]] double turnRate() const { return turn_rate_; }
    /// Away from level, degrees.
    [[nodiscard]] double tiltDeg() const { return tilt_deg_; }
    /// The gyro felt somebody move the robot, within this many seconds.
    [[nodiscard]] bool feltMovedWithin(double seconds) const { return since_moved_s_ <= seconds; }

    /// A turn of the laser from where the robot is now. Valid until the next one.
    [[nodiscard]] const LaserScan& scan();
    /// The last turn of the laser, less than five steps old.
    [[nodiscard]] const LaserScan& recentScan();

    /// The line laser close over the floor: from the front of the casing to the nearest thing ahead, low ones
    /// too; nothing beyond 150 mm gives no value.
    [[nodiscard]] std::optional<double> nearAhead() const;

    [[nodiscard]] const LaserConfig& laser() const { return config_.laser; }
    [[nodiscard]] double trackMm() const { return config_.track_mm; }

    /// What the four receivers hear of the dock's infrared in this step.
    [[nodiscard]] const Hearing& dockHearing() const { return dock_hearing_; }
    /// The robot stands in the dock's near field.
    [[nodiscard]] bool nearDock() const { return near_dock_; }

    // --- ground truth: for the world, figures and tests, not for services

    [[nodiscard]] const PoseMm& truePose() const { return pose_; }
    /// Way over the floor on its own wheels, mm.
    [[nodiscard]] double runMm() const { return run_mm_; }
    [[nodiscard]] bool lifted() const { return lifted_; }
    [[nodiscard]] bool heldFast() const { return grip_mm_ > 0; }

    struct TrackPoint
    {
        PoseMm pose;
        bool carried_here = false;
    };
    /// Where the body went, a point every 20 mm or 10 degrees; of a long run fewer, so that there are never
    /// more than kMostTrackPoints.
    static constexpr std::size_t kMostTrackPoints = 50'000;
    [[nodiscard]] const std::vector<TrackPoint>& track() const { return track_; }

    // --- what happens to it

    void lift();
    /// Puts a lifted robot down.
    void setDown(const PoseMm& at);
    void carryTo(const PoseMm& at);
    /// The share of the wheels' way that is lost: 0 on a good floor, 1 when they spin.
    void setSlip(double share) { slip_ = share; }
    /// Something holds the robot: it stays where it is until its wheels have worked for so many mm.
    void holdFast(double wheel_mm) { grip_mm_ = wheel_mm; }
    /// The gyro's zero has wandered: it tells so much too much, until it is zeroed.
    void setGyroDrift(double deg_s) { gyro_drift_ = deg_s; }
    /// The robot stands on something: tilted until it has run or turned its wheels so far.
    void tilt(double degrees, double wheel_mm);
    /// The bumper stays in where it is pressed until the robot has moved so far.
    void jamBumper(const Sides& sides, double way_mm);

private:
    /// Where the casing was pushed against something.
    struct Touch
    {
        PointMm at;
        PointMm behind;  ///< a little further on, inside of the thing
    };

    void turnWheels(double seconds);
    void moveOverFloor(double forward_mm, double turn_deg);
    void touch(PointMm direction);
    void feelContacts();
    void feelFloor();
    void hearDock();
    void putAt(const PoseMm& at);
    void recordTrack(bool carried);
    void thinTrack();

    const World& world_;
    BodyConfig config_;
    Chance odometry_chance_;
    Chance laser_chance_;
    Chance dock_chance_;
    double odometry_scale_;

    PoseMm pose_;
    PoseMm odometry_;
    WheelSpeeds commanded_;
    const void* driver_ = nullptr;
    std::uint64_t ordered_in_ = 0;  ///< step of the command
    WheelSpeeds wheels_;
    std::uint64_t steps_ = 0;

    std::vector<Touch> touches_;
    Sides bumper_;
    Sides cliffs_;
    Sides step_ahead_;
    Sides jammed_;
    WheelDrop wheel_drop_;
    bool rear_contact_ = false;
    bool lifted_ = false;
    Hearing dock_hearing_;
    bool near_dock_ = false;
    double flow_speed_ = 0;
    double turn_rate_ = 0;
    double gyro_drift_ = 0;
    double since_moved_s_ = 1e9;
    double slip_ = 0;
    double grip_mm_ = 0;
    double jam_mm_ = 0;
    double tilt_deg_ = 0;
    double tilt_mm_ = 0;
    double run_mm_ = 0;
    LaserScan recent_scan_;
    std::vector<TrackPoint> track_;
    double track_step_mm_ = 20;
    double track_step_deg_ = 10;
};

/// The pose without any error: for tests, and until a localisation takes over.
class TruePose final : public PoseSource
{
public:
    explicit TruePose(const Body& body) : body_(body) {}
    [[nodiscard]] PoseMm pose() const override { return body_.truePose(); }

private:
    const Body& body_;
};

/// The pose by dead reckoning alone.
class OdometryPose final : public PoseSource
{
public:
    explicit OdometryPose(const Body& body) : body_(body) {}
    [[nodiscard]] PoseMm pose() const override { return body_.odometry(); }

private:
    const Body& body_;
};

}  // namespace vemra::robot
