#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string_view>
#include <vector>

#include "robot/base/yaml_fields.h"
#include "robot/scenario/scenario.h"

namespace vemra::robot {

// The words of a scenario and what they stand for.

template <typename Value>
struct Word
{
    std::string_view text;
    Value value;
};

inline constexpr Word<PanelKey> kKeys[] = {
    {"start", PanelKey::Start},
    {"home", PanelKey::Home},
    {"key1", PanelKey::Start},
    {"key2", PanelKey::Home},
    {"key1_long", PanelKey::StartLong},
    {"key2_long", PanelKey::HomeLong},
    {"wifi", PanelKey::SetUp},
    {"reset", PanelKey::Reset},
    {"key2_very_long", PanelKey::HomeVeryLong},
};

inline constexpr Word<Mode> kAppModes[] = {
    {"pause", Mode::PauseAndStop},
    {"standby", Mode::Standby},
    {"auto", Mode::AutoClean},
    {"back_home", Mode::BackHome},
    {"remote", Mode::RemoteCtrl},
    {"ota", Mode::Ota},
    {"select_area", Mode::SelectAreaClean},
    {"draw_area", Mode::DrawAreaClean},
    {"select_point", Mode::SelectPointClean},
    {"fast_map", Mode::FastMapBuild},
};

// Modes that no tree asks for.
inline constexpr Word<Mode> kOutsideModes[] = {
    {"part_clean", Mode::PartClean}, {"follow_wall", Mode::FollowWall}, {"wifi", Mode::WifiSet},
    {"factory", Mode::Factory},      {"board_test", Mode::BoardTest},   {"factory_run", Mode::FactoryRun},
    {"self_test", Mode::SelfTest},
};

inline constexpr Word<SelfTestStep> kSelfTests[] = {
    {"board", SelfTestStep::Board}, {"app", SelfTestStep::App}, {"stop", SelfTestStep::Stop}};

inline constexpr Word<SlamMood> kSlamMoods[] = {
    {"normal", SlamMood::Normal}, {"unsure", SlamMood::Unsure}, {"silent", SlamMood::Silent}};

inline constexpr Word<bool> kWifi[] = {{"joined", true}, {"refused", false}};

inline constexpr Word<StationPart> kStationParts[] = {
    {"cap", StationPart::Cap},   {"bag", StationPart::Bag},   {"block", StationPart::Block},
    {"lock", StationPart::Lock}, {"link", StationPart::Link}, {"full", StationPart::Full},
};

inline constexpr Word<bool> kWheels[] = {{"dropped", true}, {"raised", false}};
inline constexpr Word<bool> kFitting[] = {{"installed", true}, {"removed", false}};

/// The value of a field that holds one of these words. Throws InputError with the words that would do.
template <typename Value, std::size_t Count>
Value wordOf(const YamlFields& fields, std::string_view name, const Word<Value> (&words)[Count])
{
    const std::string text = fields.text(name);
    std::vector<std::string_view> known;
    for (const Word<Value>& word : words) {
        if (word.text == text) {
            return word.value;
        }
        known.push_back(word.text);
    }
    fields.fail(name, fmt::format("one of {}, not \"{}\"", fmt::join(known, ", "), text));
}

}  // namespace vemra::robot
