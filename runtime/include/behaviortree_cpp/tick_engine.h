#pragma once

#include <condition_variable>
#include <mutex>

namespace BT {

/// Lets one thread wait for another: wait() goes on after as many calls as notify() had.
class TickEngine
{
public:
    explicit TickEngine(int initial_value) : value_(initial_value) {}

    void wait()
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return value_ > 0; });
        --value_;
    }

    void notify()
    {
        {
            const std::lock_guard lock(mutex_);
            ++value_;
        }
        changed_.notify_one();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int value_;
};

}  // namespace BT
