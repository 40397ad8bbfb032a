#include "description/check.h"
#include "description/check_keys.h"
#include "description/tree.h"
#include "support/matchers.h"

namespace vemra::test {
namespace {

std::vector<std::string> faultsOf(const std::vector<NamedTree>& trees,
                                  const std::vector<std::string>& registry = {"A", "B", "C"})
{
    std::vector<std::string> lines;
    for (const Fault& fault : check(trees, registry))
        lines.push_back(toText(fault));
    return lines;
}

std::vector<std::string> faultsIn(const Node& root)
{
    return faultsOf({{"A", root}});
}

const Node kLeaf = AlwaysSuccess{};

TEST(Refusals, NumberOfChildren)
{
    EXPECT_THAT(faultsIn(Sequence(kLeaf, Node("Inverter", {}, {}))),
                ElementsAre("A: Sequence/1:Inverter: Inverter takes exactly 1 child, has 0"));
    EXPECT_THAT(faultsIn(Node("ForceSuccess", {}, {kLeaf, kLeaf})),
                ElementsAre("A: ForceSuccess: ForceSuccess takes exactly 1 child, has 2"));
    EXPECT_THAT(faultsIn(Node("IfThenElse", {}, {kLeaf, kLeaf})),
                ElementsAre("A: IfThenElse: IfThenElse takes exactly 3 children, has 2"));
    EXPECT_THAT(faultsIn(Node("PostProcess", {}, {kLeaf})),
                ElementsAre("A: PostProcess: PostProcess takes exactly 2 children, has 1"));
    EXPECT_THAT(faultsIn(Node("Fallback", {}, {})),
                ElementsAre("A: Fallback: Fallback takes at least 1 child, has 0"));
    EXPECT_THAT(faultsIn(Node("Stop", {}, {kLeaf})),
                ElementsAre("A: Stop: Stop takes exactly 0 children, has 1"));
}

TEST(Refusals, UnknownNodesAndPorts)
{
    EXPECT_THAT(faultsIn(Named("first", Sequence(Named("odd", Node("Stopp", {}, {}))))),
                ElementsAre("A: Sequence/0:Stopp(odd): no node type 'Stopp'"));
    EXPECT_THAT(faultsIn(Node("Stop", {{"hard", "1"}}, {})), ElementsAre("A: Stop: Stop has no port hard"));
    EXPECT_THAT(
        faultsIn(Node("Repeat", {{"num_cycle", "1"}}, {kLeaf})),
        ElementsAre("A: Repeat: Repeat has no port num_cycle", "A: Repeat: Repeat lacks port num_cycles"));
    EXPECT_THAT(faultsIn(Node("BB_Precondition", {{"key", "k"}}, {kLeaf})),
                ElementsAre("A: BB_Precondition: BB_Precondition lacks port expected"));
    EXPECT_THAT(faultsIn(Node("SubtreeCondition", {}, {})),
                ElementsAre("A: SubtreeCondition: SubtreeCondition lacks port subtree_file_path",
                            "A: SubtreeCondition: SubtreeCondition lacks port expand_in_logger"));
    EXPECT_THAT(faultsIn(Rotate{.angle_deg = 90, .angular_velocity_deg_s = 60}),
                ElementsAre("A: Rotate: Rotate lacks port false_relative_true_absolute"));
    EXPECT_THAT(faultsIn(Node("EraseBlackboard", {{"key", "a"}, {"key", "b"}}, {})),
                ElementsAre("A: EraseBlackboard: port key is given twice"));
}

TEST(Refusals, TextsThatCannotBeRead)
{
    const auto faultOf = [](const Node& node) {
        const auto faults = check({{"A", node}}, {"A"});
        return faults.size() == 1 ? faults.front().message : std::to_string(faults.size()) + " faults";
    };
    EXPECT_EQ(faultOf(SaySomething{"left ${open"}),
              "port message=\"left ${open\": '${' at position 5 has no '}': left ${open");
    EXPECT_EQ(faultOf(EraseBlackboard{"${}"}), "port key=\"${}\": '${' at position 0 names no key: ${}");
    EXPECT_EQ(faultOf(Frameout("soon", kLeaf)),
              "port frames=\"soon\": expected an integer, a reference or an expression");
    EXPECT_EQ(faultOf(Loop("1.5", kLeaf)),
              "port num_cycles=\"1.5\": expected an integer, a reference or an expression");
    EXPECT_EQ(faultOf(Delay{"${yaw} +"}),
              "port ticks=\"${yaw} +\": expected an integer, a reference or an expression that can be read");
    EXPECT_EQ(
        faultOf(BoolMatch{.bool_a = "${a} > > 1", .bool_b = "true"}),
        "port bool_a=\"${a} > > 1\": expected a truth value, a reference or an expression that can be read");
    EXPECT_EQ(faultOf(SetBlackboardWithType{.key = "k", .type = "int", .value = "many"}),
              "port value=\"many\": expected an integer, a reference or an expression");
    EXPECT_EQ(faultOf(SetBlackboardWithType{.key = "k", .type = "text", .value = "a"}),
              "port type=\"text\": expected one of: bool, float, int");
    EXPECT_EQ(faultOf(RelocMap{"begin"}), "port reloc_state=\"begin\": expected one of: start, end");
    EXPECT_EQ(faultOf(ParallelNode(3, kLeaf, kLeaf)),
              "port threshold=\"3\": expected 1 to the number of children, 2");
}

TEST(Refusals, TreesThatDoNotExistOrEnterEachOtherInACircle)
{
    EXPECT_THAT(
        faultsIn(Sequence(SubtreeCondition{"reuse/Escap.xml"})),
        ElementsAre("A: Sequence/0:SubtreeCondition: there is no tree 'Escap' (path \"reuse/Escap.xml\")"));
    EXPECT_THAT(faultsIn(StandsForNoTree({"b"})), IsEmpty());
    EXPECT_THAT(faultsIn(StandsForNoTree({"B"})),
                ElementsAre("A: SubtreeCondition: 'B' is said to stand for no tree, but there is one"));
    EXPECT_THAT(
        faultsOf({{"A", Inverter(SubtreeCondition{"B.xml"})},
                  {"B", SubtreeCondition{"reuse/C"}},
                  {"C", Sequence(kLeaf, SubtreeCondition{"A"})}}),
        ElementsAre("C: Sequence/1:SubtreeCondition: trees enter each other in a circle: A -> B -> C -> A"));
    EXPECT_THAT(faultsOf({{"A", SubtreeCondition{"A"}}}),
                ElementsAre("A: SubtreeCondition: trees enter each other in a circle: A -> A"));
    EXPECT_THAT(faultsOf({{"X", kLeaf}, {"A", kLeaf}, {"A", kLeaf}}),
                ElementsAre("X: is not in the registry of trees", "A: is told twice"));
}

TEST(Refusals, TwoBodiesUnderOneInnerName)
{
    const Node one = SubTree("Docking", SetBlackboard{"k", "1"});
    const Node other = SubTree("Docking", SetBlackboard{"k", "2"});
    EXPECT_THAT(
        faultsIn(Sequence(one, Inverter(other), one)),
        ElementsAre("A: Sequence/1:Inverter/0:SubTree(Docking): inner tree 'Docking' has another body than "
                    "at Sequence/0:SubTree(Docking)"));
    EXPECT_THAT(faultsOf({{"A", one}, {"B", other}}), IsEmpty());  // an inner tree belongs to its file
}

TEST(Refusals, SpareWhatIsOddButRight)
{
    EXPECT_THAT(faultsIn(Sequence(
                    Node("AlwaysSuccess", {{"area_reset", "${wash_mop_mode}"}, {"ticks", "999999999"}}, {}),
                    BoolMatch{.bool_a = "last_back_out_of_field", .bool_b = "true"},
                    BoolMatch{.bool_a = "${a} >= ${b} ", .bool_b = "true"},
                    SetBlackboardWithType{.key = "k", .type = "float", .value = "-${left_speed}"},
                    SubtreeCondition{"B", "falsee"}, SaySomething{"${a} -> ${b}"})),
                IsEmpty());
}

constexpr std::string_view kStages[] = {"init", "cleaning"};
constexpr leaf::KeyContract kKeys[] = {
    {"task_state", leaf::KeyType::Text, kStages, leaf::KeyOrigin::Trees, "stage"},
    {"tries", leaf::KeyType::Int, {}, leaf::KeyOrigin::Trees, "count"},
    {"goal", leaf::KeyType::Point, {}, leaf::KeyOrigin::Slam, "place"},
};

std::vector<std::string> keyFaultsIn(const Node& root, const std::vector<OnPurpose>& on_purpose = {},
                                     bool complete = false)
{
    std::vector<std::string> lines;
    for (const Fault& fault : checkKeys({{"A", root}}, kKeys, on_purpose, complete))
        lines.push_back(toText(fault));
    return lines;
}

TEST(RefusedKeys, MisspeltNamesTextsAndTypes)
{
    EXPECT_THAT(keyFaultsIn(EraseBlackboard{"task_sate"}),
                ElementsAre("A: EraseBlackboard: there is no key 'task_sate' in the catalogue"));
    EXPECT_THAT(keyFaultsIn(Sequence(SaySomething{"at ${gaol}"})),
                ElementsAre("A: Sequence/0:SaySomething: there is no key 'gaol' in the catalogue"));
    EXPECT_THAT(keyFaultsIn(BB_Precondition("brake", kLeaf)),
                ElementsAre("A: BB_Precondition: there is no key 'brake' in the catalogue"));
    EXPECT_THAT(
        keyFaultsIn(SetBlackboard{"task_state", "clean"}),
        ElementsAre("A: SetBlackboard: key 'task_state' never holds \"clean\"; it holds one of: init, "
                    "cleaning"));
    EXPECT_THAT(keyFaultsIn(StringMatch{"clean", "${task_state}"}).size(), 1);
    EXPECT_THAT(keyFaultsIn(SetBlackboardWithType{.key = "tries", .type = "float", .value = "0"}),
                ElementsAre("A: SetBlackboardWithType: key 'tries' is written as float, and holds int"));
    EXPECT_THAT(
        keyFaultsIn(Sequence(StringMatch{"${task_state}", "init"}, StringMatch{"${task_state}", "${goal}"},
                             SetBlackboard{"task_state", "${task_state}"}, SaySomething{"${${goal}}"},
                             SetBlackboardWithType{.key = "tries", .type = "int", .value = "0"})),
        IsEmpty());
}

TEST(RefusedKeys, ThoseThatNothingWritesOrUsesOnceAllTreesAreThere)
{
    const Node root = Sequence(StringMatch{"${task_state}", "init"}, SaySomething{"${goal}"});
    EXPECT_THAT(keyFaultsIn(root), IsEmpty());
    EXPECT_THAT(keyFaultsIn(root, {}, true),
                ElementsAre("A: Sequence/0:StringMatch: key 'task_state' is read, and nothing writes it",
                            "the catalogue of keys: no tree uses the key 'tries'"));
}

TEST(RefusedKeys, SpareWhatIsOnPurposeAndNothingElse)
{
    const Node root = Sequence(EraseBlackboard{"task_sate"}, SetBlackboard{"task_state", "none"});
    EXPECT_THAT(keyFaultsIn(root, {{"A", "task_sate", "kept"}, {"A", "task_state=none", "kept"}}), IsEmpty());
    EXPECT_THAT(keyFaultsIn(root, {{"A", "task_sate", "kept"}}).size(), 1);
    EXPECT_THAT(keyFaultsIn(kLeaf, {{"A", "task_sate", "kept"}}),
                ElementsAre("A: 'task_sate' is said to be there on purpose, and is not"));
}

}  // namespace
}  // namespace vemra::test
