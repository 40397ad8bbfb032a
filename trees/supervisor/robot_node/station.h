#pragma once

/// The base station as the supervisor drives it beside the running mode: emptying the dust box into it,
/// watching its health, and the washing of the mop, which this product's station does not have.

#include <string>

#include "description/tree.h"

namespace vemra::trees::robot_node {

// --- dust ---------------------------------------------------------------------------------------

inline Node stop_dust_fan()
{
    return DustContrlSet{.dust_status = "DUST_QUIT", .time_set = "0"};
}

/// Gives up whatever emptying is under way and puts the station at rest.
Node dust_init_subtree();

/// The emptying that the user asked for; it runs on the charger alone.
Node manual_dust();

/// The emptying that a cleaning has made due; it runs while charging or asleep alone.
Node auto_dust();

/// Lets the station's fan empty the dust box, for `time_ms`, and stops it.
inline Nodes run_dust_fan(const Port& time_ms)
{
    return row(DustContrlSet{.dust_status = "DUST_START", .time_set = time_ms}, DustTimeHandle{},
               stop_dust_fan());
}

/// The station's light while its fan runs: steady once the battery is full, else breathing.
Node dust_light();

// --- health -------------------------------------------------------------------------------------

/// The station reports the fault `code`.
inline Node station_error(const std::string& code)
{
    return DoesHappenStationErr{"OLO_HEALTH_STATUS_TYPE_" + code};
}

/// Stops the robot, tells what ails the station and goes to the error mode.
Node station_status_detect();

/// Watches the station, and takes up an emptying that an error cut short.
Node station_health_check();

// --- wash ---------------------------------------------------------------------------------------

Node station_base_handle();
Node auto_wash();
Node manual_wash();

/// The station is washing or drying the mop.
Node wash_or_dry_runs();

/// Breaks off the washing or drying, which may be taken up again later.
Node interrupt_wash();

/// Watches the wash station for errors, and takes up a wash that one cut short.
Node wash_station_err_check();

/// Gives up whatever washing or drying is under way.
Node wash_init_subtree();

/// The same, whenever the robot has left the charger.
Node wash_init();

}  // namespace vemra::trees::robot_node
