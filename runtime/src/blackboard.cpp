#include "behaviortree_cpp/blackboard/blackboard.h"

#include <algorithm>
#include <utility>

#include "host_store.h"

namespace BT {

std::int64_t SteadyClock::milliseconds() const
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

Blackboard::Blackboard(std::unique_ptr<BlackboardImpl> store)
    : clock_(std::make_shared<SteadyClock>()), host_store_(std::make_shared<HostStore>(std::move(store)))
{}

const Any* Blackboard::getAny(std::string_view key) const
{
    if (host_store_ != nullptr) [[unlikely]]
        return host_store_->get(std::string(key));
    const auto found = entries_.find(key);
    return found == entries_.end() || found->second.value.empty() ? nullptr : &found->second.value;
}

bool Blackboard::contains(std::string_view key) const
{
    return host_store_ == nullptr ? getAny(key) != nullptr : host_store_->contains(std::string(key));
}

bool Blackboard::erase(std::string_view key)
{
    if (host_store_ != nullptr) [[unlikely]] {
        const bool was_there = contains(key);
        entry(key).value.clear();
        handOn(key);
        return was_there;
    }
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
        if (host_store_ == nullptr ? !entry.value.empty() : host_store_->contains(key))
            names.push_back(key);
    std::sort(names.begin(), names.end());
    return names;
}

void Blackboard::fetch(std::string_view key)
{
    Slot& slot = entry(key).value;
    if (const Any* value = getAny(key))
        slot.assign(*value);
    else
        slot.clear();
}

void Blackboard::handOn(std::string_view key)
{
    host_store_->put(std::string(key), entry(key).value);
}

void Blackboard::handOn(const Slot& slot)
{
    for (const auto& [key, entry] : entries_)
        if (&entry.value == &slot)
            handOn(key);
}

void Blackboard::handOnAfterTick(std::string_view key)
{
    host_store_->written.emplace_back(key);
}

std::vector<std::string> Blackboard::beginTick()
{
    return std::exchange(host_store_->written, {});
}

void Blackboard::endTick(std::vector<std::string> keys_of_nodes_above)
{
    const auto written = std::exchange(host_store_->written, std::move(keys_of_nodes_above));
    for (const std::string& key : written)
        handOn(key);
}

}  // namespace BT
