#include "app/interrupt.h"

namespace vemra::app {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

}  // namespace

Interrupt::Interrupt()
{
    ::sigemptyset(&held_);
    for (const int signal : kSignals) {
        struct sigaction action = {};
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN)
            ::sigaddset(&held_, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &held_, &before_);
}

Interrupt::~Interrupt()
{
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

bool Interrupt::waits() const
{
    sigset_t pending{};
    ::sigpending(&pending);
    for (const int signal : kSignals) {
        if (::sigismember(&held_, signal) == 1 && ::sigismember(&pending, signal) == 1)
            return true;
    }
    return false;
}

}  // namespace vemra::app
