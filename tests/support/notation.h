#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "behaviortree_cpp/blackboard/blackboard.h"

namespace vemra::test {

/// Port and value as read, all of which must hold.
using PortValues = std::vector<std::pair<std::string, std::string>>;

struct Step
{
    std::string who;
    PortValues values;
};

/// "Rotate angle_deg=90 | SaySomething message='on we go' | Stop": nodes with what their ports read. A value
/// with blanks stands between quotes. Throws std::invalid_argument for what is no such text.
std::vector<Step> stepsOf(std::string_view text);
/// The only step of a text.
Step stepOf(std::string_view text);

struct KeyNote
{
    enum class Kind
    {
        Plain,   ///< "key"
        Valued,  ///< "key=value"
        Gone     ///< "-key"
    };
    std::string key;
    Kind kind = Kind::Plain;
    std::string value;
};

/// "task_state=init moved -charger_pose": keys with a value, keys without, and keys that are not there.
std::vector<KeyNote> keysOf(std::string_view text);
/// Sets keys to a number or a text, or to the empty text, and erases those that go.
void setKeys(BT::Blackboard& keys, std::string_view notes);
/// These have these values, are there at all, or are not there.
testing::AssertionResult keysAre(const BT::Blackboard& keys, std::string_view notes);

}  // namespace vemra::test
