#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "app/trees/tree_model.h"
#include "behaviortree_cpp/bt_factory.h"

namespace vemra::app {

/// The tree that a robot starts with.
inline constexpr const char* kFirstTree = "RobotNode";

/// The library of trees that belongs to this program: libvemra_tree.so beside the runtime that it runs with.
[[nodiscard]] std::filesystem::path ownTreeLibrary();

/// Loads the library into the factory, and returns what it wrote to standard output meanwhile, so that
/// output for other programs stays clean. Throws UserError when the file cannot be loaded.
std::string loadTreeLibrary(BT::BehaviorTreeFactory& factory, const std::filesystem::path& file);

/// A library of trees, loaded to be looked at: all leaves of the contract do nothing.
class TreeLibrary
{
public:
    /// Throws UserError when the file cannot be loaded.
    explicit TreeLibrary(const std::filesystem::path& file);

    /// In the order of registration.
    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }
    [[nodiscard]] bool has(const std::string& name) const { return factory_.hasTree(name); }
    /// All that a node can be.
    [[nodiscard]] const std::vector<BT::TreeNodeManifest>& nodeTypes() const { return factory_.manifests(); }
    /// Throws UserError when there is no such tree, with the names that are near.
    void expect(const std::string& name) const;
    /// The result of a comparison whose texts refer to nothing on the blackboard; nothing for all other
    /// nodes.
    [[nodiscard]] std::optional<BT::NodeStatus> constantResult(const ModelNode& node) const;
    /// Builds a tree and takes it down again. Throws UserError when there is no such tree or when it names a
    /// node type that nobody knows.
    [[nodiscard]] TreeModel build(const std::string& name) const;

private:
    std::filesystem::path file_;
    BT::BehaviorTreeFactory factory_;
    BT::Blackboard::Ptr blackboard_;
    std::vector<std::string> names_;
};

}  // namespace vemra::app
