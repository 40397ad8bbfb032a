#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace BT {

/// Calls its subscribers, each as long as what subscribe() gave for it is kept.
template <class... Args>
class Signal
{
public:
    using CallableFunction = std::function<void(Args...)>;
    using Subscriber = std::shared_ptr<CallableFunction>;

    void notify(Args... args)
    {
        // A copy, as a subscriber may subscribe another.
        const auto subscribers = subscribers_;
        for (const auto& one : subscribers)
            if (const Subscriber alive = one.lock())
                (*alive)(args...);
        std::erase_if(subscribers_, [](const auto& one) { return one.expired(); });
    }

    [[nodiscard]] Subscriber subscribe(CallableFunction function)
    {
        auto subscriber = std::make_shared<CallableFunction>(std::move(function));
        subscribers_.emplace_back(subscriber);
        return subscriber;
    }

private:
    std::vector<std::weak_ptr<CallableFunction>> subscribers_;
};

}  // namespace BT
