#pragma once

/// Trees written as XML, for hosts that keep trees of their own beside the plug-in's. Needs the library
/// behaviortree_cpp_xml, which is not for the robot: the plug-in parses nothing.
///
///     <root main_tree_to_execute="M">
///       <BehaviorTree ID="M">
///         <Sequence name="x"> <Action ID="Rotate" angle_deg="90"/> <SubTree ID="Dock"/> </Sequence>
///       </BehaviorTree>
///     </root>
///
/// An element is a node type, or `Action`, `Condition`, `Control` or `Decorator` with the type in `ID`;
/// `name` is the label and every other attribute a port. `<SubTree ID="T"/>` stands for a copy of tree T of
/// the same file, and so does `<T/>` where T is a tree and no node type; a `SubTree` with a child is that
/// stretch itself. `<include path="more.xml"/>` in the root takes in the trees of another file, looked for
/// beside the one that names it. Other elements of the root, such as `TreeNodesModel`, are for editors and
/// passed over.

#include <memory>
#include <string>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"

namespace BT {

/// Reads one file or text and makes its main tree, any number of times. Whatever is wrong with it is a
/// BehaviorTreeException that names the file (or "text"), the line and what was expected.
class XMLParser
{
public:
    /// The factory must outlive the parser.
    explicit XMLParser(const BehaviorTreeFactory& factory);
    ~XMLParser();
    XMLParser(const XMLParser&) = delete;
    XMLParser& operator=(const XMLParser&) = delete;

    void loadFromFile(const std::string& filename);
    void loadFromText(const std::string& xml_text);

    /// Appends the nodes of the main tree to `nodes` in creation order and returns its root. When it
    /// throws, `nodes` is as it was. Without `main_tree_to_execute` the only tree is the main one.
    TreeNode::Ptr instantiateTree(std::vector<TreeNode::Ptr>& nodes, const Blackboard::Ptr& blackboard);

private:
    class Document;
    const BehaviorTreeFactory& factory_;
    std::unique_ptr<Document> document_;
};

/// The main tree, on a blackboard of its own when none is given.
[[nodiscard]] Tree buildTreeFromText(const BehaviorTreeFactory& factory, const std::string& text,
                                     const Blackboard::Ptr& blackboard = Blackboard::create());
[[nodiscard]] Tree buildTreeFromFile(const BehaviorTreeFactory& factory, const std::string& filename,
                                     const Blackboard::Ptr& blackboard = Blackboard::create());

/// The XML of a built tree, with each inner tree in place. `compact_representation`: elements bear the node
/// types, else leaves stand as `Action` and `Condition` with an ID, as editors want them. Reading it back
/// gives the same nodes. `TreeNodesModel` names the node types with their ports.
[[nodiscard]] std::string writeXML(const BehaviorTreeFactory& factory, const TreeNode* root_node,
                                   bool compact_representation = false);

}  // namespace BT
