#include "robot/events/timeline_printer.h"

#include <fmt/format.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <utility>

#include "robot/base/clock.h"

namespace vemra::robot {
namespace {

const char* colourOf(std::string_view kind)
{
    constexpr std::array<std::pair<std::string_view, const char*>, 10> kColours{{
        {"mode", "\033[1;34m"},
        {"task_state", "\033[36m"},
        {"robot_status", "\033[36m"},
        {"user", "\033[1;32m"},
        {"error", "\033[1;31m"},
        {"expectation", "\033[1;31m"},
        {"light", "\033[33m"},
        {"station_light", "\033[33m"},
        {"music", "\033[35m"},
        {"message", "\033[2m"},
    }};
    for (const auto& [of, colour] : kColours)
        if (of == kind)
            return colour;
    return "";
}

// A message is one line, whatever is in it.
std::string oneLine(const std::string& text)
{
    std::string line = text;
    for (char& c : line) {
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') {
            c = ' ';
        }
    }
    return line;
}

}  // namespace

void TimelinePrinter::take(const LogEntry& entry)
{
    if (const auto* battery = std::get_if<event::BatteryLevel>(&entry.event)) {
        if (told_battery_ && std::abs(battery->percent - *told_battery_) < 10)
            return;
        told_battery_ = battery->percent;
    }
    Line line{entry.frame, kindOf(entry.event), toText(entry.event)};
    if (pending_ && pending_->kind == line.kind && pending_->text == line.text &&
        entry.frame <= last_frame_ + 1) {
        ++times_;
        last_frame_ = entry.frame;
        return;
    }
    print();
    pending_ = std::move(line);
    last_frame_ = entry.frame;
    times_ = 1;
}

void TimelinePrinter::finish(const nlohmann::ordered_json& report)
{
    print();
    pending_.reset();
    if (report.is_object() && report.contains("frames")) {
        summarise(report);
    }
    out_.flush();
}

void TimelinePrinter::summarise(const nlohmann::ordered_json& report)
{
    const auto frames = report.value("frames", std::uint64_t{0});
    out_ << fmt::format("\n{} frames, {}", frames, timeOfFrame(frames));
    if (const std::string mode = report.value("mode", ""); !mode.empty()) {
        out_ << ", " << mode;
    }
    if (report.contains("battery")) {
        out_ << fmt::format(", battery {:.0f} %", report.value("battery", 0.0));
    }
    if (report.contains("run_mm")) {
        out_ << fmt::format(", {:.1f} m driven", report.value("run_mm", 0.0) / 1000);
    }
    out_ << '\n';
    if (report.value("cleaned_m2", 0.0) > 0) {
        out_ << fmt::format("{:.1f} % of {:.1f} m2 cleaned, {:.1f} m2 of it again; ideal time {:.0f} s\n",
                            100 * report.value("coverage", 0.0), report.value("reachable_m2", 0.0),
                            report.value("recleaned_m2", 0.0), report.value("ideal_time_s", 0.0));
        if (const auto passes = report.find("passes"); passes != report.end() && passes->size() > 1)
            summarisePasses(*passes);
        if (const auto by = report.find("t97_s"); by != report.end() && by->is_number())
            out_ << fmt::format("97 % after {:.0f} s, {:.1f} times the ideal; ", by->get<double>(),
                                by->get<double>() / std::max(1.0, report.value("ideal_time_s", 1.0)));
        out_ << fmt::format("{} turns, {} bumps, {} escapes, {} stalls\n", report.value("turns", 0),
                            report.value("bumps", 0), report.value("escapes", 0), report.value("stalls", 0));
    }
    if (const auto expected = report.find("expectations"); expected != report.end())
        summariseExpectations(*expected);
    const auto unanswered = report.find("leaves_without_service");
    if (unanswered == report.end() || unanswered->empty()) {
        return;
    }
    out_ << "leaves that nothing on this robot answers, and how often they were asked:";
    for (const auto& [leaf, ticks] : unanswered->items()) {
        out_ << fmt::format(" {} {}", leaf, ticks.get<std::uint64_t>());
    }
    out_ << '\n';
}

void TimelinePrinter::summarisePasses(const nlohmann::ordered_json& passes)
{
    out_ << "passes over the floor:";
    for (const auto& pass : passes)
        out_ << fmt::format(" {:.1f} % in {:.0f} s;", 100 * pass.value("coverage", 0.0),
                            pass.value("time_s", 0.0));
    out_ << '\n';
}

void TimelinePrinter::summariseExpectations(const nlohmann::ordered_json& expected)
{
    const auto count = [&expected](const char* name) { return expected.value(name, std::uint64_t{0}); };
    if (count("met") + count("unmet") + count("open") == 0)
        return;
    out_ << fmt::format("as expected: {}, otherwise: {}", count("met"), count("unmet"));
    if (count("open") > 0)
        out_ << fmt::format(", not come to: {}", count("open"));
    out_ << '\n';
}

void TimelinePrinter::print()
{
    if (!headed_) {
        out_ << fmt::format("{:>8}  {:>11}  what\n", "frame", "time");
        headed_ = true;
    }
    if (!pending_) {
        return;
    }
    const char* colour = colour_ ? colourOf(pending_->kind) : "";
    out_ << fmt::format("{:>8}  {:>11}  {}{:<13}  {}{}{}\n", pending_->frame, timeOfFrame(pending_->frame),
                        colour, pending_->kind, oneLine(pending_->text),
                        times_ > 1 ? fmt::format("  x{}", times_) : "", *colour != '\0' ? "\033[0m" : "");
}

std::string timeOfFrame(std::uint64_t frame)
{
    const std::uint64_t ms = frame * kFrameMs;
    return fmt::format("{}:{:02}:{:02}.{:03}", ms / 3'600'000, ms / 60'000 % 60, ms / 1000 % 60, ms % 1000);
}

bool isColourTerminal(int descriptor)
{
    return ::isatty(descriptor) == 1 && std::getenv("NO_COLOR") == nullptr;
}

}  // namespace vemra::robot
