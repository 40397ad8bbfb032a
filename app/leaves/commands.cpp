#include "app/leaves/commands.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "app/near_names.h"
#include "app/user_error.h"
#include "leaves/contract.h"

namespace vemra::app {

namespace {

using Json = nlohmann::ordered_json;

struct LeavesOptions
{
    std::string family;
    std::string leaf;
    bool names_only = false;
    bool json = false;
};

Json toJson(std::span<const leaf::PortContract> contracts)
{
    Json ports = Json::array();
    for (const leaf::PortContract& port : contracts)
        ports.push_back({{"name", port.name},
                         {"type", leaf::toText(port.type)},
                         {"required", port.required},
                         {"values", port.values},
                         {"examples", port.examples},
                         {"default", port.default_text ? Json(*port.default_text) : Json(nullptr)},
                         {"about", port.about}});
    return ports;
}

Json toJson(const leaf::LeafContract& leaf)
{
    return {{"id", leaf.id},
            {"family", leaf.family},
            {"kind", leaf::toText(leaf.kind)},
            {"about", leaf.about},
            {"ports", toJson(leaf.ports)}};
}

Json toJson(const leaf::ControlContract& control)
{
    return {{"id", control.id},
            {"kind", "control"},
            {"least_children", control.least_children},
            {"most_children",
             control.most_children == leaf::kAnyNumber ? Json(nullptr) : Json(control.most_children)},
            {"about", control.about},
            {"ports", toJson(control.ports)}};
}

std::string lowerCase(std::string_view text)
{
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

/// The family that begins with `name`, or else the one that has it as a part; case does not matter.
const leaf::FamilyContract& familyNamed(const std::string& name)
{
    const std::string wanted = lowerCase(name);
    std::vector<const leaf::FamilyContract*> begun;
    std::vector<const leaf::FamilyContract*> part;
    std::vector<std::string> known;
    for (const leaf::FamilyContract& family : leaf::families()) {
        const std::size_t at = lowerCase(family.name).find(wanted);
        if (at == 0)
            begun.push_back(&family);
        if (at != std::string::npos)
            part.push_back(&family);
        known.emplace_back(family.name);
    }
    const auto& found = begun.empty() ? part : begun;
    if (found.size() == 1)
        return *found.front();
    throw UserError((found.empty() ? "there is no family '" : "several families are called '") + name +
                    "'; the families are: " + fmt::format("{}", fmt::join(known, "; ")));
}

std::string quotedList(std::span<const std::string_view> texts)
{
    std::string out;
    for (const std::string_view text : texts)
        out += fmt::format("{}\"{}\"", out.empty() ? "" : ", ", text);
    return out;
}

void print(std::string_view about, std::span<const leaf::PortContract> ports)
{
    if (!about.empty())
        std::cout << "  " << about << '\n';
    for (const leaf::PortContract& port : ports) {
        std::cout << fmt::format("\n  {}: {}", port.name, leaf::toText(port.type));
        if (port.default_text)
            std::cout << fmt::format(", \"{}\" unless given", *port.default_text);
        else if (!port.required)
            std::cout << ", may be left out";
        std::cout << '\n';
        if (!port.about.empty())
            std::cout << "    " << port.about << '\n';
        if (!port.values.empty())
            std::cout << "    one of " << quotedList(port.values) << '\n';
        if (!port.examples.empty())
            std::cout << "    such as " << quotedList(port.examples) << '\n';
    }
}

void print(const leaf::LeafContract& leaf)
{
    std::cout << fmt::format("{}  {}, {}\n", leaf.id, leaf::toText(leaf.kind), leaf.family);
    print(leaf.about, leaf.ports);
}

void print(const leaf::ControlContract& control)
{
    const std::string children = control.most_children == leaf::kAnyNumber
                                     ? fmt::format("{} or more", control.least_children)
                                     : std::to_string(control.least_children);
    std::cout << fmt::format("{}  control node, children: {}\n", control.id, children);
    print(control.about, control.ports);
}

template <class Contract>
void show(const Contract& node, bool json)
{
    if (json)
        std::cout << toJson(node).dump(2) << '\n';
    else
        print(node);
}

void list(const LeavesOptions& options)
{
    const std::span<const leaf::LeafContract> leaves =
        options.family.empty() ? leaf::all() : familyNamed(options.family).leaves;
    Json all = Json::array();
    for (const leaf::LeafContract& leaf : leaves) {
        if (options.json)
            all.push_back(toJson(leaf));
        else if (options.names_only)
            std::cout << leaf.id << '\n';
        else
            std::cout << fmt::format("{:<42} {:<10} {}\n", leaf.id, leaf::toText(leaf.kind), leaf.family);
    }
    if (options.json)
        std::cout << all.dump(2) << '\n';
}

void show(const LeavesOptions& options)
{
    if (const leaf::LeafContract* leaf = leaf::find(options.leaf))
        return show(*leaf, options.json);
    if (const leaf::ControlContract* control = leaf::findControl(options.leaf))
        return show(*control, options.json);
    std::vector<std::string> known;
    for (const leaf::LeafContract& other : leaf::all())
        known.emplace_back(other.id);
    for (const leaf::ControlContract& other : leaf::controls())
        known.emplace_back(other.id);
    throw UserError("there is no leaf '" + options.leaf + "'" + didYouMean(options.leaf, known));
}

void families()
{
    for (const leaf::FamilyContract& family : leaf::families())
        std::cout << fmt::format("{:<22} {:>3} leaves\n  {}\n", family.name, family.leaves.size(),
                                 family.about);
}

}  // namespace

void addLeavesCommand(CLI::App& program)
{
    const auto options = std::make_shared<LeavesOptions>();
    CLI::App& leaves =
        *program.add_subcommand("leaves", "What the trees ask of a host: conditions and actions");
    leaves.require_subcommand(1);

    CLI::App& list_command = *leaves.add_subcommand("list", "All leaves with their kind and family");
    list_command
        .add_option("--family", options->family,
                    "Those of one family alone; the beginning of its name is enough")
        ->type_name("FAMILY");
    auto* names = list_command.add_flag("--names", options->names_only, "Names alone, a line each");
    list_command.add_flag("--json", options->json, "As JSON, with all that is known of them")
        ->excludes(names);
    list_command.callback([options] { list(*options); });

    CLI::App& show_command =
        *leaves.add_subcommand("show", "A leaf or control node: its kind, what it does, its ports");
    show_command.add_option("leaf", options->leaf, "Identifier of the leaf")->required()->type_name("LEAF");
    show_command.add_flag("--json", options->json, "As JSON");
    show_command.callback([options] { show(*options); });

    leaves.add_subcommand("families", "The families of leaves")->callback([] { families(); });
}

}  // namespace vemra::app
