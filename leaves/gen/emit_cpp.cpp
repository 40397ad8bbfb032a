#include <fmt/format.h>

#include <map>
#include <string_view>

#include "leaves/gen/emit.h"

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

}  // namespace

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

std::string tableText(const std::vector<Family>& families)
{
    constexpr std::string_view kKinds[] = {"LeafKind::Condition", "LeafKind::Action"};
    constexpr std::string_view kTypes[] = {"PortType::Text", "PortType::Int", "PortType::Float",
                                           "PortType::Bool", "PortType::Key", "PortType::OutKey",
                                           "PortType::Value"};
    TextLists lists;
    std::string ports;
    std::string leaves;
    std::string family_table;
    std::size_t count = 0;
    for (const Family& family : families) {
        family_table +=
            fmt::format("    {{{}, {},\n     std::span<const LeafContract>(kLeaves).subspan({}, {})}},\n",
                        cppText(family.name), cppText(family.about), count, family.leaves.size());
        count += family.leaves.size();
        for (const LeafEntry& leaf : family.leaves) {
            std::string ports_of_leaf = "{}";
            if (!leaf.ports.empty()) {
                ports_of_leaf = "kPortsOf" + leaf.id;
                ports += fmt::format("constexpr PortContract {}[] = {{\n", ports_of_leaf);
                for (const PortEntry& port : leaf.ports)
                    ports += fmt::format("    {{{}, {}, {}, {}, {}, {}}},\n", cppText(port.name),
                                         kTypes[static_cast<std::size_t>(port.type)],
                                         lists.nameOf(port.values), lists.nameOf(port.examples),
                                         port.default_text ? cppText(*port.default_text) : "std::nullopt",
                                         cppText(port.about));
                ports += "};\n";
            }
            leaves +=
                fmt::format("    {{{}, {}, {}, {}, {}}},\n", cppText(leaf.id), cppText(family.name),
                            kKinds[static_cast<std::size_t>(leaf.kind)], cppText(leaf.about), ports_of_leaf);
        }
    }
    return fmt::format(R"({}#include "leaves/contract.h"

namespace vemra::leaf {{
namespace {{

{}
{}
constexpr LeafContract kLeaves[] = {{
{}}};

constexpr FamilyContract kFamilies[] = {{
{}}};

}}  // namespace

std::span<const LeafContract> all()
{{
    return kLeaves;
}}

std::span<const FamilyContract> families()
{{
    return kFamilies;
}}

}}  // namespace vemra::leaf
)",
                       kOrigin, lists.code(), ports, leaves, family_table);
}

}  // namespace vemra::leafgen
