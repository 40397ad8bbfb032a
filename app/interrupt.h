#pragma once

#include <csignal>

namespace vemra::app {

/// While it lives, an interrupt (Ctrl-C) or a request to end waits, so that what was begun can be brought to
/// a good end first; then it takes effect. Signals that the process ignores stay ignored.
class Interrupt
{
public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    /// Whether one is waiting.
    [[nodiscard]] bool waits() const;

private:
    sigset_t held_{};
    sigset_t before_{};
};

}  // namespace vemra::app
