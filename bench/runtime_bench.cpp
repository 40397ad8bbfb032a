#include <benchmark/benchmark.h>

#include "bench/reference_tree.h"
#include "plugin/tree_table.h"

namespace {

using vemra::bench::ReferenceTree;

/// The time that falls on one node, which the library prints with its unit.
benchmark::Counter perNode(const benchmark::State& state)
{
    return {static_cast<double>(state.iterations()) * ReferenceTree::kNodes,
            benchmark::Counter::kIsRate | benchmark::Counter::kInvert};
}

void tickReferenceTree(benchmark::State& state, ReferenceTree::Leaves leaves)
{
    BT::BehaviorTreeFactory factory;
    ReferenceTree::registerLeaves(factory);
    const ReferenceTree reference(factory, leaves);
    for (auto _ : state)
        benchmark::DoNotOptimize(reference.tree.root_node->executeTick());
    state.counters["per_node"] = perNode(state);
}
BENCHMARK_CAPTURE(tickReferenceTree, mixed, ReferenceTree::Leaves::Mixed);
BENCHMARK_CAPTURE(tickReferenceTree, constant_leaves, ReferenceTree::Leaves::Constant);

void buildReferenceTree(benchmark::State& state)
{
    BT::BehaviorTreeFactory factory;
    ReferenceTree::registerLeaves(factory);
    const ReferenceTree model(factory);
    const vemra::bench::TableOf table(model.tree);
    const auto blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
    for (auto _ : state)
        benchmark::DoNotOptimize(vemra::plugin::buildTree(table.view(), factory, blackboard));
    state.counters["per_node"] = perNode(state);
}
BENCHMARK(buildReferenceTree);

void readPort(benchmark::State& state, const char* text)
{
    const auto blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
    blackboard->set("a", 3);
    blackboard->set("b", 4);
    BT::PortList ports(BT::NodeParameters{{"value", text}});
    BT::Port& port = ports.all().front();
    port.compile(*blackboard);
    for (auto _ : state) {
        double value = 0;
        benchmark::DoNotOptimize(port.toReal(value));
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK_CAPTURE(readPort, literal, "120");
BENCHMARK_CAPTURE(readPort, reference, "${a}");
BENCHMARK_CAPTURE(readPort, formula, "(${a} + ${b}) * 2 > 13 && ${a} != 4");

}  // namespace

BENCHMARK_MAIN();
