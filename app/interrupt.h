#pragma once

#include <csignal>
#include <vector>

namespace vemra::app {

/// While it lives, the first interrupt (Ctrl-C) or request to end waits, so that what was begun can be
/// brought to a good end; it takes effect with the end of this object. A second one ends the process at once.
/// Signals that the process ignores stay ignored.
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
    struct Held
    {
        int signal;
        struct sigaction before;
    };

    std::vector<Held> held_;
};

}  // namespace vemra::app
