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
    const auto found = entries_.find(key);
    return found == entries_.end() || found->second.value.empty() ? nullptr : &found->second.value;
}

bool Blackboard::erase(std::string_view key)
{
    const auto found = entries_.find(key);
    if (found == entries_.end() || found->second.value.empty())
        return false;
    if (found->second.is_kept)
        found->second.value.clear();
    else
        entries_.erase(found);
    return true;
}

Blackboard::Entry& Blackboard::entry(std::string_view key)
{
    const auto found = entries_.find(key);
    return found != entries_.end() ? found->second : entries_.try_emplace(std::string(key)).first->second;
}

std::vector<std::string> Blackboard::keys() const
{
    std::vector<std::string> names;
    for (const auto& [key, entry] : entries_)
        if (!entry.value.empty())
            names.push_back(key);
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace BT
