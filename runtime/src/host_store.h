#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "behaviortree_cpp/blackboard/blackboard.h"

namespace BT {

/// A store of the host's own behind a blackboard.
class HostStore
{
public:
    explicit HostStore(std::unique_ptr<BlackboardImpl> store) : store_(std::move(store)) {}

    /// The value, or nullptr when the key does not exist.
    [[nodiscard]] const Any* get(const std::string& key) const
    {
        const Any* value = store_->get(key);
        return value != nullptr && !value->empty() ? value : nullptr;
    }
    [[nodiscard]] bool contains(const std::string& key) const
    {
        return store_->contains(key) && get(key) != nullptr;
    }
    void put(const std::string& key, const Any& value)
    {
        if (!value.empty())
            store_->set(key, value);
        else if (contains(key))
            store_->erase(key);
    }

    std::vector<std::string> written;  ///< keys whose slots are to be handed on after the tick

private:
    std::unique_ptr<BlackboardImpl> store_;
};

}  // namespace BT
