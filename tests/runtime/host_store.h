#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "behaviortree_cpp/blackboard/blackboard_local.h"

namespace vemra::test {

/// A store as a host may have one of its own; `values` is the host's view of it.
class Drawer : public BT::BlackboardImpl
{
public:
    using Values = std::map<std::string, BT::Any>;

    explicit Drawer(std::shared_ptr<Values> values) : values_(std::move(values)) {}

    const BT::Any* get(const std::string& key) const override
    {
        const auto found = values_->find(key);
        return found == values_->end() ? nullptr : &found->second;
    }
    void set(const std::string& key, const BT::Any& value) override { (*values_)[key] = value; }
    bool contains(const std::string& key) const override { return values_->contains(key); }

private:
    std::shared_ptr<Values> values_;
};

/// Where the values of a blackboard are kept.
enum class Keeps
{
    Itself,
    InAHostsStore
};

inline BT::Blackboard::Ptr makeBlackboard(Keeps values)
{
    return values == Keeps::Itself ? BT::Blackboard::create<BT::BlackboardLocal>()
                                   : BT::Blackboard::create<Drawer>(std::make_shared<Drawer::Values>());
}

}  // namespace vemra::test
