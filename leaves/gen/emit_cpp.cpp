#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <string_view>

#include "leaves/gen/emit.h"
#include "leaves/gen/yaml_reader.h"

namespace vemra::leafgen {
namespace {

constexpr std::string_view kOrigin = "// Made by leafgen from leaves/catalogue; changes belong there.\n";

std::string cppText(std::string_view text)
{
    std::string out = "\"";
    for (const char c : text) {
        if (c == '\n') {
            out += "\\n";
            continue;
        }
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    return out + '"';
}

std::string structText(const LeafEntry& leaf)
{
    std::string members;
    std::string visits;
    for (const PortEntry& port : leaf.ports) {
        members += fmt::format("    Port {}{};  ///< {}\n", port.name,
                               port.default_text ? " = " + cppText(*port.default_text) : "{}", port.about);
        visits += fmt::format("        visit(\"{0}\", {0});\n", port.name);
    }
    return fmt::format(R"(
/// {2}
struct {0}
{{
    static constexpr const char* id = "{0}";
{1}
    template <class F>
    void each_port([[maybe_unused]] F&& visit) const
    {{
{3}    }}
}};
)",
                       leaf.id, members, leaf.about, visits);
}

/// Lists of literals, each written once however many ports share it.
class TextLists
{
public:
    std::string nameOf(const std::vector<std::string>& texts)
    {
        if (texts.empty())
            return "{}";
        const auto [at, added] = names_.try_emplace(texts, fmt::format("kTexts{}", names_.size()));
        if (added) {
            code_ += fmt::format("constexpr std::string_view {}[] = {{", at->second);
            for (const std::string& text : texts)
                code_ += cppText(text) + ", ";
            code_ += "};\n";
        }
        return at->second;
    }

    [[nodiscard]] const std::string& code() const { return code_; }

private:
    std::map<std::vector<std::string>, std::string> names_;
    std::string code_;
};

/// A key has the verbs of what it holds.
std::string_view keyStruct(leaf::KeyType type)
{
    switch (type) {
        case leaf::KeyType::Int:
            return "IntKey";
        case leaf::KeyType::Float:
            return "FloatKey";
        case leaf::KeyType::Bool:
            return "BoolKey";
        default:
            return "Key";
    }
}

}  // namespace

std::string keysHeaderText(const std::vector<KeyEntry>& keys)
{
    std::string out = fmt::format(
        "{}#pragma once\n\n#include \"description/key.h\"\n\nnamespace vemra::description::key {{\n\n",
        kOrigin);
    for (const KeyEntry& key : keys)
        out += fmt::format("/// {3} ({4})\ninline constexpr {0} {1}{{\"{2}\"}};\n", keyStruct(key.type),
                           isName(key.name) ? key.name : key.name + "_", key.name, key.about,
                           leaf::toText(key.type));
    return out + "\n}  // namespace vemra::description::key\n";
}

std::string headerText(const std::vector<Family>& families)
{
    std::string out =
        fmt::format("{}#pragma once\n\n#include \"leaves/port.h\"\n\nnamespace vemra::leaf {{\n", kOrigin);
    for (const Family& family : families) {
        out += fmt::format("\n// --- {} ---\n", family.name);
        for (const LeafEntry& leaf : family.leaves)
            out += structText(leaf);
    }
    return out + "\n}  // namespace vemra::leaf\n";
}

namespace {

/// The name of the table of a node's ports, whose code is added to `code`.
std::string portsTable(const std::string& id, const std::vector<PortEntry>& ports, TextLists& lists,
                       std::string& code)
{
    constexpr std::string_view kTypes[] = {"PortType::Text", "PortType::Int", "PortType::Float",
                                           "PortType::Bool", "PortType::Key", "PortType::OutKey",
                                           "PortType::Value"};
    if (ports.empty())
        return "{}";
    code += fmt::format("constexpr PortContract kPortsOf{}[] = {{\n", id);
    for (const PortEntry& port : ports)
        code += fmt::format("    {{{}, {}, {}, {}, {}, {}, {}}},\n", cppText(port.name),
                            kTypes[static_cast<std::size_t>(port.type)], lists.nameOf(port.values),
                            lists.nameOf(port.examples),
                            port.default_text ? cppText(*port.default_text) : "std::nullopt",
                            cppText(port.about), port.required);
    code += "};\n";
    return "kPortsOf" + id;
}

/// An array, or an empty span where C++ knows no empty array.
std::string arrayText(std::string_view type, std::string_view name, const std::string& entries)
{
    return entries.empty() ? fmt::format("constexpr std::span<const {}> {}{{}};\n", type, name)
                           : fmt::format("constexpr {} {}[] = {{\n{}}};\n", type, name, entries);
}

std::string keyEntries(const std::vector<KeyEntry>& keys, TextLists& lists)
{
    std::string out;
    for (const KeyEntry& key : keys)
        out += fmt::format("    {{{}, static_cast<KeyType>({}), {}, static_cast<KeyOrigin>({}), {}}},\n",
                           cppText(key.name), static_cast<int>(key.type), lists.nameOf(key.values),
                           static_cast<int>(key.from), cppText(key.about));
    return out;
}

}  // namespace

std::string tableText(const Catalogue& catalogue)
{
    constexpr std::string_view kKinds[] = {"LeafKind::Condition", "LeafKind::Action"};
    TextLists lists;
    std::string ports;
    std::string leaves;
    std::string family_table;
    std::size_t count = 0;
    for (const Family& family : catalogue.families) {
        family_table +=
            fmt::format("    {{{}, {},\n     std::span<const LeafContract>(kLeaves).subspan({}, {})}},\n",
                        cppText(family.name), cppText(family.about), count, family.leaves.size());
        count += family.leaves.size();
        for (const LeafEntry& leaf : family.leaves)
            leaves += fmt::format("    {{{}, {}, {}, {}, {}}},\n", cppText(leaf.id), cppText(family.name),
                                  kKinds[static_cast<std::size_t>(leaf.kind)], cppText(leaf.about),
                                  portsTable(leaf.id, leaf.ports, lists, ports));
    }
    std::string controls;
    for (const ControlEntry& control : catalogue.controls)
        controls += fmt::format(
            "    {{{}, {}, {}, {}, {}}},\n", cppText(control.id), control.least_children,
            control.most_children == leaf::kAnyNumber ? "kAnyNumber" : std::to_string(control.most_children),
            cppText(control.about), portsTable(control.id, control.ports, lists, ports));
    std::vector<KeyEntry> sorted = catalogue.keys;
    std::sort(sorted.begin(), sorted.end(),
              [](const KeyEntry& a, const KeyEntry& b) { return a.name < b.name; });
    const std::string keys = keyEntries(sorted, lists);
    return fmt::format(R"({}#include "leaves/contract.h"

namespace vemra::leaf {{
namespace {{

{}
{}
{}
{}
{}
{}
}}  // namespace

std::span<const LeafContract> all()
{{
    return kLeaves;
}}

std::span<const FamilyContract> families()
{{
    return kFamilies;
}}

std::span<const ControlContract> controls()
{{
    return kControls;
}}

std::span<const KeyContract> keys()
{{
    return kKeys;
}}

}}  // namespace vemra::leaf
)",
                       kOrigin, lists.code(), ports, arrayText("LeafContract", "kLeaves", leaves),
                       arrayText("FamilyContract", "kFamilies", family_table),
                       arrayText("ControlContract", "kControls", controls),
                       arrayText("KeyContract", "kKeys", keys));
}

}  // namespace vemra::leafgen
