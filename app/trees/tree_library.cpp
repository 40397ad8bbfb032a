#include "app/trees/tree_library.h"

#include <dlfcn.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <sstream>
#include <system_error>

#include "app/near_names.h"
#include "app/trees/elf_file.h"
#include "app/user_error.h"
#include "leaves/host/host.h"

namespace vemra::app {

namespace {

/// Takes what is written to std::cout while it lives.
class OutputCatch
{
public:
    OutputCatch() : old_(std::cout.rdbuf(caught_.rdbuf())) {}
    ~OutputCatch() { std::cout.rdbuf(old_); }
    OutputCatch(const OutputCatch&) = delete;
    OutputCatch& operator=(const OutputCatch&) = delete;

    [[nodiscard]] std::string text() const { return caught_.str(); }

private:
    std::ostringstream caught_;
    std::streambuf* old_;
};

}  // namespace

std::filesystem::path ownTreeLibrary()
{
    // Any function of the runtime tells where that is.
    Dl_info runtime{};
    if (::dladdr(reinterpret_cast<const void*>(&BT::treeNameOfPath), &runtime) == 0)
        return "libvemra_tree.so";
    return std::filesystem::path(runtime.dli_fname).parent_path() / "libvemra_tree.so";
}

std::string loadTreeLibrary(BT::BehaviorTreeFactory& factory, const std::filesystem::path& file)
{
    std::error_code fault;
    if (!std::filesystem::exists(file, fault))
        throw UserError(file.string() + ": no such file; expected a library of trees");
    if (isTruncatedLibrary(file))
        throw UserError(file.string() + ": cannot be loaded as a library of trees: the file ends early");
    const OutputCatch output;
    try {
        // A name without a slash would be looked for in the system's folders.
        factory.registerFromPlugin(std::filesystem::absolute(file).string());
    } catch (const std::exception& reason) {
        throw UserError(file.string() + ": cannot be loaded as a library of trees: " + reason.what());
    }
    return output.text();
}

TreeLibrary::TreeLibrary(const std::filesystem::path& file)
    : file_(file), blackboard_(BT::Blackboard::create<BT::BlackboardLocal>())
{
    loadTreeLibrary(factory_, file);
    names_ = factory_.treeNames();
    leaf::LeafHost host(factory_);
    host.use_runtime_builtin();
    host.register_defaults();
}

void TreeLibrary::expect(const std::string& name) const
{
    if (!has(name))
        throw UserError("there is no tree '" + name + "'" + didYouMean(name, names_));
}

std::optional<BT::NodeStatus> TreeLibrary::constantResult(const ModelNode& node) const
{
    static constexpr const char* kComparisons[] = {"StringMatch", "BoolMatch", "IsAGreaterThanBInt",
                                                   "IsAGreaterThanBFloat"};
    const bool compares =
        std::find(std::begin(kComparisons), std::end(kComparisons), node.id) != std::end(kComparisons);
    const bool refers = std::any_of(node.ports.begin(), node.ports.end(), [](const auto& port) {
        return port.second.find("${") != std::string::npos;
    });
    if (!compares || refers)
        return std::nullopt;
    const BT::NodeParameters ports(node.ports.begin(), node.ports.end());
    return factory_.instantiateTreeNode(node.id, node.name, ports, blackboard_)->executeTick();
}

TreeModel TreeLibrary::build(const std::string& name) const
{
    expect(name);
    try {
        return modelOf(name, factory_.createTree(name, blackboard_));
    } catch (const std::exception& reason) {
        throw UserError(file_.string() + ": tree '" + name + "' cannot be built: " + reason.what());
    }
}

}  // namespace vemra::app
