#include "behaviortree_cpp/blackboard/blackboard.h"

#include <algorithm>

namespace BT {

std::int64_t SteadyClock::milliseconds() const
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

const Any* Blackboard::getAny(std::string_view key) const
{
    const auto found = slots_.find(key);
    return found == slots_.end() || found->second.empty() ? nullptr : &found->second;
}

bool Blackboard::erase(std::string_view key)
{
    const auto found = slots_.find(key);
    if (found == slots_.end() || found->second.empty())
        return false;
    found->second.clear();
    return true;
}

Blackboard::Slot& Blackboard::slot(std::string_view key)
{
    const auto found = slots_.find(key);
    return found != slots_.end() ? found->second : slots_.try_emplace(std::string(key)).first->second;
}

std::vector<std::string> Blackboard::keys() const
{
    std::vector<std::string> names;
    for (const auto& [key, value] : slots_)
        if (!value.empty())
            names.push_back(key);
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace BT
