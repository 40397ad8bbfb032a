#include "app/walks/walk.h"

#include <fmt/format.h>

#include <array>

#include "app/trees/tree_library.h"
#include "app/user_error.h"
#include "app/walks/chance.h"
#include "app/walks/walk_field.h"
#include "app/walks/walk_leaves.h"
#include "behaviortree_cpp/bt_factory.h"

namespace vemra::app {

struct Walker::Place
{
    explicit Place(const KeyPool& pool) : field(pool) {}

    WalkField field;
    BT::BehaviorTreeFactory factory;
};

Walker::Walker(const std::filesystem::path& library, const KeyPool& pool)
    : place_(std::make_unique<Place>(pool))
{
    registerWalkLeaves(place_->factory, place_->field);
    loadTreeLibrary(place_->factory, library);
}

Walker::~Walker() = default;

std::vector<WalkEvent> Walker::walk(const TreeModel& tree, std::uint64_t number, BT::StatusObserver* observer,
                                    std::span<const TreeModel> keys_of)
{
    auto& [field, factory] = *place_;
    if (!factory.hasTree(tree.name))
        throw UserError("there is no tree '" + tree.name + "'");
    field.begin(tree.name, number, keys_of.empty() ? std::span(&tree, 1) : keys_of);
    const BT::Tree built = factory.createTree(tree.name, field.board());
    field.board()->setStatusObserver(observer);
    while (field.frame() < field.frames()) {
        if (field.nextFrame())
            BT::haltNode(*built.root_node);
        if (const BT::NodeStatus result = built.root_node->executeTick(); result != BT::NodeStatus::RUNNING) {
            BT::haltNode(*built.root_node);
            field.tell(WalkEventKind::Result, BT::toStr(result));
        }
        field.endFrame();
    }
    field.board()->setStatusObserver(nullptr);
    // What is halted from here on was not halted by the tree.
    return field.takeEvents();
}

std::string lineOf(const WalkEvent& event)
{
    static constexpr std::array<const char*, 7> kVerbs{"given",  "asked", "ended",      "begins",
                                                       "halted", "key",   "tree ended:"};
    return fmt::format("{:>5}  {:<7} {}", event.frame, kVerbs[static_cast<std::size_t>(event.kind)],
                       event.text);
}

std::uint32_t digestOf(const std::vector<WalkEvent>& events)
{
    std::uint64_t digest = 0;
    for (const WalkEvent& event : events)
        if (isDeed(event.kind))
            digest = drawn(digest, lineOf(event));
    return static_cast<std::uint32_t>(digest ^ (digest >> 32U));
}

}  // namespace vemra::app
