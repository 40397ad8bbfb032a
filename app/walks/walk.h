#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "app/trees/tree_model.h"
#include "behaviortree_cpp/tree_node.h"

namespace vemra::app {

class KeyPool;

/// What happens in a walk. Given and Answered come by chance and are the same whatever the tree does; all
/// else is what the tree makes of them.
enum class WalkEventKind
{
    Given,     ///< a key that somebody else wrote or took away
    Answered,  ///< a condition was asked
    Ended,     ///< an action, or a tree that was entered, came to its end
    Begun,     ///< an action was begun, or a tree entered
    Halted,    ///< what was begun was halted before its end
    Written,   ///< a key holds something else, or nothing, at the end of the frame
    Result     ///< the tree ended; it begins anew in the next frame
};

struct WalkEvent
{
    int frame;
    WalkEventKind kind;
    std::string text;
};

/// Whether the tree did it.
[[nodiscard]] constexpr bool isDeed(WalkEventKind kind)
{
    return kind >= WalkEventKind::Begun;
}

[[nodiscard]] std::string lineOf(const WalkEvent& event);

/// Plays trees by chance: the library's trees on leaves whose answers, and on keys whose values, are drawn
/// for the number of a walk. What is drawn for a question (a leaf, what its ports read, how often that was
/// asked) depends on nothing else, so that two trees which ask the same are answered the same. Some walks
/// favour success and some failure, in some the keys change all the time, one in eight is long; now and then
/// the tree is halted. The runtime's own leaves are the real ones, a tree that is entered counts as a leaf,
/// and what only a log tells is left out. Not for use by several threads at once.
class Walker
{
public:
    /// Throws UserError when the library cannot be loaded. The pool must outlive this object.
    Walker(const std::filesystem::path& library, const KeyPool& pool);
    ~Walker();
    Walker(const Walker&) = delete;
    Walker& operator=(const Walker&) = delete;

    /// Walk `number` of the tree, told event by event. `observer` sees all ticks. The keys that come by
    /// chance are those of the tree; where `keys_of` is given those of these trees. Throws UserError when
    /// there is no such tree.
    std::vector<WalkEvent> walk(const TreeModel& tree, std::uint64_t number,
                                BT::StatusObserver* observer = nullptr,
                                std::span<const TreeModel> keys_of = {});

private:
    struct Place;
    std::unique_ptr<Place> place_;
};

/// What the tree did in a walk, in 32 bits.
[[nodiscard]] std::uint32_t digestOf(const std::vector<WalkEvent>& events);

}  // namespace vemra::app
