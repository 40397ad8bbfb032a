#include <tinyxml2.h>

#include <map>
#include <set>

#include "app_support.h"

namespace vemra::test {
namespace {

using nlohmann::json;

TEST(ExportJson, HoldsEveryRegisteredTree)
{
    const auto registered = linesOf(bytesOf(VEMRA_SOURCE_DIR "/trees/registry.txt"));
    std::vector<std::string> exported;
    const json all = json::parse(vemraOutput({"trees", "export", "--format", "json"}));
    for (const json& tree : all.at("trees"))
        exported.push_back(tree.at("name"));
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

std::vector<const tinyxml2::XMLElement*> below(const tinyxml2::XMLElement& above)
{
    std::vector<const tinyxml2::XMLElement*> elements;
    for (const auto* e = above.FirstChildElement(); e != nullptr; e = e->NextSiblingElement())
        elements.push_back(e);
    return elements;
}

// An XML export as an editor reads it.
class EditorFile
{
public:
    explicit EditorFile(const std::string& text)
    {
        if (document_.Parse(text.c_str(), text.size()) != tinyxml2::XML_SUCCESS)
            throw std::runtime_error(document_.ErrorStr());
        main_tree = document_.RootElement()->Attribute("main_tree_to_execute");
        for (const auto* part : below(*document_.RootElement()))
            if (part->Name() == std::string("BehaviorTree")) {
                EXPECT_TRUE(trees.emplace(part->Attribute("ID"), part).second) << part->Attribute("ID");
            }
        for (const auto* type : below(*document_.RootElement()->FirstChildElement("TreeNodesModel")))
            for (auto& ports = declared_[typeOf(*type)]; const auto* port : below(*type))
                EXPECT_TRUE(ports.insert(port->Attribute("name")).second) << port->Attribute("name");
    }

    // Counts the nodes of a tree with its inner trees filled in, and checks each on the way.
    std::size_t count(const std::string& tree)
    {
        const auto body = below(*trees.at(tree));
        EXPECT_EQ(body.size(), 1U) << tree;
        return count(*body.front());
    }

    std::string main_tree;
    std::map<std::string, const tinyxml2::XMLElement*> trees;
    std::size_t entered = 0;  // references to other trees that were counted

private:
    static std::string typeOf(const tinyxml2::XMLElement& node)
    {
        const char* const id = node.Attribute("ID");
        return std::string(node.Name()) + " " + (id != nullptr ? id : "");
    }

    std::size_t count(const tinyxml2::XMLElement& node)
    {
        static const std::set<std::string> kKnown{
            "AlwaysFailure", "AlwaysSuccess", "Fallback",     "ForceFailure",  "ForceSuccess", "Inverter",
            "Repeat",        "Sequence",      "SequenceStar", "SetBlackboard", "Timeout"};
        const std::string kind = node.Name();
        if (!kKnown.contains(kind)) {
            EXPECT_TRUE(declared_.contains(typeOf(node))) << typeOf(node);
            for (const auto* port = node.FirstAttribute(); port != nullptr; port = port->Next())
                if (const std::string name = port->Name(); name != "ID" && name != "name") {
                    EXPECT_TRUE(declared_[typeOf(node)].contains(name)) << typeOf(node) << " " << name;
                }
        }
        if (kind == "SubTree") {
            const std::string id = node.Attribute("ID");
            EXPECT_TRUE(trees.contains(id)) << id;
            // An inner tree is part of the tree; one that is entered stands for itself.
            const char* const path = node.Attribute("subtree_file_path");
            if (path == nullptr)
                return 1 + count(id);
            ++entered;
            EXPECT_THAT(path, HasSubstr(id));
            return 1;
        }
        std::size_t nodes = 1;
        for (const auto* child : below(node))
            nodes += count(*child);
        return nodes;
    }

    tinyxml2::XMLDocument document_;
    std::map<std::string, std::set<std::string>> declared_;
};

TEST(ExportXml, DeclaresAllThatAnEditorDoesNotKnowAndLosesNoNode)
{
    EditorFile file(vemraOutput({"trees", "export", "--format", "xml"}));
    EXPECT_EQ(file.main_tree, "RobotNode");
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
    EXPECT_EQ(file.entered, entering);
}

TEST(ExportXml, KeepsTheOrderAskedForAndTheFirstIsTheMainTree)
{
    const std::string text =
        vemraOutput({"trees", "export", "Escape", "Back2cm", "Escape", "--format", "xml"});
    EditorFile file(text);
    EXPECT_EQ(file.main_tree, "Escape");
    EXPECT_TRUE(file.trees.contains("Back2cm"));
    EXPECT_LT(text.find("ID=\"Escape\""), text.find("ID=\"Back2cm\""));
}

TEST(ExportXml, InnerTreesOfOneNameStayApartWhereTheyDiffer)
{
    EditorFile file(vemraOutput(
        {"trees", "export", "InnerTwins", "OwnLeaf", "--format", "xml", "--plugin", foreignTrees()}));
    std::vector<std::string> names;
    for (const auto& [name, tree] : file.trees)
        names.push_back(name);
    EXPECT_THAT(names, ElementsAre("InnerTwins", "InnerTwins.Twin", "InnerTwins.Twin.2", "OwnLeaf"));
    EXPECT_EQ(file.count("InnerTwins"), 7U);
    EXPECT_EQ(file.count("OwnLeaf"), 1U);
    EXPECT_STREQ(file.trees.at("OwnLeaf")->FirstChildElement()->Attribute("tune"),
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
    const auto shown = [&drawn](const std::string& part) {
        std::size_t times = 0;
        for (std::size_t at = 0; (at = drawn.out.find(part, at)) != std::string::npos; ++at)
            ++times;
        return times;
    };
    std::size_t nodes = 0;
    for (const auto& [name, tree] : exportedNodes(names)) {
        nodes += tree.size();
        EXPECT_EQ(shown(">" + name + "</text>"), 1U) << name;
    }
    EXPECT_EQ(shown("class=\"cluster\""), names.size());
    EXPECT_EQ(shown("class=\"node\""), nodes);
    EXPECT_EQ(shown("class=\"edge\""), nodes - names.size());
}

}  // namespace
}  // namespace vemra::test
