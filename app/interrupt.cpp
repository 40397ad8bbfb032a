#include "app/interrupt.h"

#include <algorithm>

namespace vemra::app {
namespace {

// The kernel keeps the note that a signal came: its own action is the default again from then on.
void note(int /*signal*/)
{}

bool came(int signal)
{
    struct sigaction now = {};
    return ::sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_DFL;
}

}  // namespace

Interrupt::Interrupt()
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        if (::sigaction(signal, nullptr, &before) != 0 || before.sa_handler == SIG_IGN)
            continue;
        struct sigaction once = {};
        once.sa_handler = note;
        once.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
        ::sigemptyset(&once.sa_mask);
        if (::sigaction(signal, &once, nullptr) == 0)
            held_.push_back({signal, before});
    }
}

Interrupt::~Interrupt()
{
    for (const Held& held : held_) {
        const bool waits = came(held.signal);
        ::sigaction(held.signal, &held.before, nullptr);
        if (waits)
            ::raise(held.signal);
    }
}

bool Interrupt::waits() const
{
    return std::any_of(held_.begin(), held_.end(), [](const Held& held) { return came(held.signal); });
}

}  // namespace vemra::app
