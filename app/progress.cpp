#include "app/progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <iostream>
#include <utility>

namespace vemra::app {
namespace {

constexpr std::chrono::seconds kSilence{2};
constexpr std::chrono::milliseconds kRhythm{200};
constexpr std::uint64_t kFramesBetweenLooks = 64;

}  // namespace

Progress::Progress(std::uint64_t frames, std::function<std::string()> moment)
    : frames_(frames), moment_(std::move(moment)), on_terminal_(::isatty(STDERR_FILENO) == 1)
{}

void Progress::tell(std::uint64_t frame)
{
    if (frame % kFramesBetweenLooks != 0)
        return;
    const auto now = Clock::now();
    if (now < next_)
        return;
    next_ = now + kRhythm;
    wipe();
    std::cout.flush();
    if (!on_terminal_ || now < start_ + kSilence)
        return;
    shown_ = true;
    const double rate = static_cast<double>(frame) / std::chrono::duration<double>(now - start_).count();
    std::cerr << fmt::format("{:3.0f} %  {} of {} frames, {:.0f} a second",
                             100.0 * static_cast<double>(frame) / static_cast<double>(frames_), frame,
                             frames_, rate)
              << (moment_ ? moment_() : std::string()) << std::flush;
}

void Progress::wipe()
{
    if (shown_)
        std::cerr << "\r\033[K" << std::flush;
    shown_ = false;
}

}  // namespace vemra::app
