#include <tinyxml2.h>

#include <fstream>
#include <functional>
#include <map>
#include <set>

#include "app_support.h"

namespace vemra::test {
namespace {

using nlohmann::json;

TEST(ExportJson, HoldsEveryRegisteredTreeWithNodesInCreationOrder)
{
    std::ifstream registry(std::string(VEMRA_SOURCE_DIR) + "/trees/registry.txt");
    std::vector<std::string> registered;
    for (std::string name; std::getline(registry, name);)
        registered.push_back(name);

    std::vector<std::string> exported;
    const json all = json::parse(vemraOutput({"trees", "export", "--format", "json"}));
    for (const json& tree : all.at("trees")) {
        exported.push_back(tree.at("name"));
        int index = 0;
        int before = -1;
        for (const json& node : tree.at("nodes")) {
            const int parent = node.at("parent");
            // Depth first: a node's parent is the one before it or one of that one's ancestors.
            int above = before;
            while (above != parent && above >= 0)
                above = tree["nodes"][static_cast<std::size_t>(above)]["parent"];
            ASSERT_EQ(above, parent) << tree["name"] << " node " << index;
            before = index++;
        }
    }
    EXPECT_EQ(exported, registered);
    EXPECT_THAT(linesOf(vemraOutput({"trees", "list", "--names"})), ElementsAreArray(registered));
}

TEST(ExportJson, SaysWhatTheNodesAre)
{
    const auto trees = exportedNodes({"Back2cm"});
    ASSERT_EQ(trees.size(), 1U);
    const json expected = json::parse(R"([
        {"id":"SequenceStar","name":"SequenceStar","parent":-1,"ports":{"reset_on_failure":"true"}},
        {"id":"Sequence","name":"Sequence","parent":0,"ports":{}},
        {"id":"SubtreeCondition","name":"SubtreeCondition","parent":1,
         "ports":{"subtree_file_path":"Escape","expand_in_logger":"false"}},
        {"id":"SubtreeCondition","name":"SubtreeCondition","parent":1,
         "ports":{"subtree_file_path":"BTBack2cm.xml","expand_in_logger":"false"}},
        {"id":"SubtreeCondition","name":"SubtreeCondition","parent":0,
         "ports":{"subtree_file_path":"AlwaysSuccess.xml","expand_in_logger":"false"}}])");
    EXPECT_EQ(trees.at("Back2cm"), expected);

    const json own = exportedNodes({"OwnLeaf", "--plugin", foreignTrees()}).at("OwnLeaf");
    EXPECT_EQ(own[0]["name"], "a \\ label");
    EXPECT_EQ(own[0]["ports"]["tune"], "a \"quoted\"\n<tune> & </script>");
}

// An XML export as an editor reads it.
class EditorFile
{
public:
    explicit EditorFile(const std::string& text)
    {
        if (document_.Parse(text.c_str(), text.size()) != tinyxml2::XML_SUCCESS)
            throw std::runtime_error(document_.ErrorStr());
        root_ = document_.FirstChildElement("root");
        for (const auto* e = root_->FirstChildElement("BehaviorTree"); e != nullptr;
             e = e->NextSiblingElement("BehaviorTree"))
            EXPECT_TRUE(trees_.emplace(e->Attribute("ID"), e).second) << e->Attribute("ID");
        const auto* model = root_->FirstChildElement("TreeNodesModel");
        for (const auto* e = model->FirstChildElement(); e != nullptr; e = e->NextSiblingElement()) {
            auto& ports = declared_[std::string(e->Name()) + " " + e->Attribute("ID")];
            for (const auto* port = e->FirstChildElement(); port != nullptr;
                 port = port->NextSiblingElement())
                EXPECT_TRUE(ports.insert(port->Attribute("name")).second) << port->Attribute("name");
        }
    }

    [[nodiscard]] std::string mainTree() const { return root_->Attribute("main_tree_to_execute"); }
    [[nodiscard]] const std::map<std::string, const tinyxml2::XMLElement*>& trees() const { return trees_; }
    // References to other trees that were counted.
    [[nodiscard]] std::size_t entered() const { return entered_; }

    // Counts the nodes of a tree with its inner trees filled in, and checks each on the way.
    std::size_t count(const std::string& tree) const
    {
        const auto* body = trees_.at(tree)->FirstChildElement();
        EXPECT_TRUE(body != nullptr && body->NextSiblingElement() == nullptr) << tree;
        return count(*body);
    }

private:
    std::size_t count(const tinyxml2::XMLElement& node) const
    {
        static const std::set<std::string> kKnown{
            "AlwaysFailure", "AlwaysSuccess", "Fallback",     "ForceFailure",  "ForceSuccess", "Inverter",
            "Repeat",        "Sequence",      "SequenceStar", "SetBlackboard", "Timeout"};
        const std::string kind = node.Name();
        const char* id = node.Attribute("ID");
        if (kind == "SubTree") {
            EXPECT_TRUE(trees_.contains(id)) << id;
            EXPECT_TRUE(declared_.contains("SubTree " + std::string(id))) << id;
            // An inner tree is part of the tree; one that is entered stands for itself, with its ports.
            const char* path = node.Attribute("subtree_file_path");
            if (path == nullptr)
                return 1 + count(id);
            ++entered_;
            EXPECT_THAT(std::string(path), HasSubstr(id));
            EXPECT_TRUE(declared_.at("SubTree " + std::string(id)).contains("subtree_file_path"));
            return 1;
        }
        if (!kKnown.contains(kind)) {
            const auto type = declared_.find(kind + " " + (id != nullptr ? id : ""));
            EXPECT_NE(type, declared_.end()) << kind << " " << (id != nullptr ? id : "");
            if (type != declared_.end())
                for (const auto* port = node.FirstAttribute(); port != nullptr; port = port->Next())
                    if (const std::string name = port->Name(); name != "ID" && name != "name") {
                        EXPECT_TRUE(type->second.contains(name)) << id << " " << name;
                    }
        }
        std::size_t nodes = 1;
        for (const auto* child = node.FirstChildElement(); child != nullptr;
             child = child->NextSiblingElement())
            nodes += count(*child);
        return nodes;
    }

    tinyxml2::XMLDocument document_;
    const tinyxml2::XMLElement* root_ = nullptr;
    std::map<std::string, const tinyxml2::XMLElement*> trees_;
    std::map<std::string, std::set<std::string>> declared_;
    mutable std::size_t entered_ = 0;
};

TEST(ExportXml, DeclaresAllThatAnEditorDoesNotKnowAndLosesNoNode)
{
    const EditorFile file(vemraOutput({"trees", "export", "--format", "xml"}));
    EXPECT_EQ(file.mainTree(), "RobotNode");
    const auto trees = exportedNodes();
    std::size_t entering = 0;
    for (const auto& [name, nodes] : trees) {
        EXPECT_EQ(file.count(name), nodes.size()) << name;
        for (const json& node : nodes)
            // The list of trees spells this one as no tree is spelt: it stays a leaf.
            entering += node["id"] == "SubtreeCondition" &&
                        node["ports"].value("subtree_file_path", "") != "reuse/CrossLineSearch";
    }
    // All others are in the file, so all are references.
    EXPECT_EQ(file.entered(), entering);
}

TEST(ExportXml, KeepsTheOrderAskedForAndTheFirstIsTheMainTree)
{
    const std::string text =
        vemraOutput({"trees", "export", "Escape", "Back2cm", "Escape", "--format", "xml"});
    const EditorFile file(text);
    EXPECT_EQ(file.mainTree(), "Escape");
    EXPECT_TRUE(file.trees().contains("Back2cm"));
    EXPECT_LT(text.find("ID=\"Escape\""), text.find("ID=\"Back2cm\""));
}

TEST(ExportXml, InnerTreesOfOneNameStayApartWhereTheyDiffer)
{
    const EditorFile file(vemraOutput(
        {"trees", "export", "InnerTwins", "OwnLeaf", "--format", "xml", "--plugin", foreignTrees()}));
    std::vector<std::string> names;
    for (const auto& [name, tree] : file.trees())
        names.push_back(name);
    EXPECT_THAT(names, ElementsAre("InnerTwins", "InnerTwins.Twin", "InnerTwins.Twin.2", "OwnLeaf"));
    EXPECT_EQ(file.count("InnerTwins"), 7U);
    EXPECT_EQ(file.count("OwnLeaf"), 1U);
    EXPECT_STREQ(file.trees().at("OwnLeaf")->FirstChildElement()->Attribute("tune"),
                 "a \"quoted\"\n<tune> & </script>");
}

TEST(ExportDot, WritesLabelsSoThatTheyAreReadAsTheyWere)
{
    EXPECT_THAT(
        vemraOutput({"trees", "export", "OwnLeaf", "--format", "dot", "--plugin", foreignTrees()}),
        HasSubstr("label=\"Whistle\\n(a \\\\ label)\\ntune = a \\\"quoted\\\"\\n<tune> & </script>\""));
}

TEST(ExportDot, IsDrawn)
{
    const Folder folder;
    const std::vector<std::string> names{"Back2cm", "Escape", "EscapeCoat", "CrossBridge"};
    std::vector<std::string> words{"trees", "export", "--format", "dot", "--out", folder / "trees.dot"};
    words.insert(words.begin() + 2, names.begin(), names.end());
    vemraOutput(words);
    const ProgramResult drawn = runProgram({"dot", "-Tsvg", folder / "trees.dot"});
    EXPECT_EQ(drawn.exit_code, 0) << drawn.err;
    tinyxml2::XMLDocument picture;
    ASSERT_EQ(picture.Parse(drawn.out.c_str(), drawn.out.size()), tinyxml2::XML_SUCCESS)
        << picture.ErrorStr();
    std::map<std::string, std::size_t> seen;
    std::vector<std::string> clusters;
    const std::function<void(const tinyxml2::XMLElement&)> walk = [&](const tinyxml2::XMLElement& element) {
        if (const char* kind = element.Attribute("class")) {
            ++seen[kind];
            if (std::string_view(kind) == "cluster")
                clusters.emplace_back(element.FirstChildElement("text")->GetText());
        }
        for (const auto* e = element.FirstChildElement(); e != nullptr; e = e->NextSiblingElement())
            walk(*e);
    };
    walk(*picture.RootElement());
    std::size_t nodes = 0;
    for (const auto& [name, tree] : exportedNodes(names))
        nodes += tree.size();
    EXPECT_EQ(seen["node"], nodes);
    EXPECT_EQ(seen["edge"], nodes - names.size());
    EXPECT_THAT(clusters, UnorderedElementsAreArray(names));
}

}  // namespace
}  // namespace vemra::test
