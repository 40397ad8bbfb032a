#include "app/completion/tables.h"

#include <CLI/CLI.hpp>
#include <cctype>
#include <ostream>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "leaves/contract.h"

namespace vemra::app {
namespace {

struct CompletionTables
{
    std::string commands;
    std::string options;
    std::string values;
    std::string operands;
};

// One word of each family is enough for --family.
std::string familyWords()
{
    std::string words;
    for (const leaf::FamilyContract& family : leaf::families()) {
        std::string word(family.name.substr(0, family.name.find(' ')));
        while (!word.empty() && std::ispunct(static_cast<unsigned char>(word.back())) != 0)
            word.pop_back();
        words += (words.empty() ? "" : " ") + word;
    }
    return words;
}

/// What completes a value: a kind that the script knows, or the words themselves.
std::string kindOf(const CLI::Option& option)
{
    const std::string type = option.get_type_name();
    if (const std::size_t open = type.find('{'); open != std::string::npos) {
        std::string words = type.substr(open + 1, type.find('}', open) - open - 1);
        for (char& c : words)
            if (c == ',')
                c = ' ';
        return words;
    }
    if (type == "FAMILY")
        return familyWords();
    for (const char* known : {"TREE", "LEAF", "NODE", "KEY", "FILE", "DIR"})
        if (type == known || type.starts_with(std::string(known) + "["))
            return known;
    // A number or a text of its own: nothing to offer, but it is a value.
    return "NONE";
}

std::string row(const std::string& pattern, const std::string& words)
{
    return "        \"" + pattern + "\") echo \"" + words + "\" ;;\n";
}

void fill(CompletionTables& tables, const CLI::App& command, const std::string& path)
{
    std::string words;
    for (const CLI::App* below : command.get_subcommands([](const CLI::App*) { return true; })) {
        words += (words.empty() ? "" : " ") + below->get_name();
        fill(tables, *below, path + "/" + below->get_name());
    }
    if (!words.empty())
        tables.commands += row(path, words);

    std::string names;
    for (const CLI::Option* option : command.get_options()) {
        std::vector<std::string> own;
        for (const std::string& name : option->get_lnames())
            own.push_back("--" + name);
        for (const std::string& name : option->get_snames())
            own.push_back("-" + name);
        if (own.empty()) {
            if (const std::string kind = kindOf(*option); kind != "NONE")
                tables.operands += row(path, kind);
            continue;
        }
        for (const std::string& name : own) {
            names += (names.empty() ? "" : " ") + name;
            if (option->get_items_expected_max() > 0) {
                std::string pattern = path;
                pattern.append(" ").append(name);
                tables.values += row(pattern, kindOf(*option));
            }
        }
    }
    tables.options += row(path, names);
}

void writeTable(std::ostream& out, const char* name, const char* key, const std::string& rows)
{
    out << '\n' << name << "() {\n    case \"" << key << "\" in\n" << rows << "    esac\n}\n";
}

// Node types that are no leaves, a line each.
std::string nodeTypes()
{
    const BT::BehaviorTreeFactory factory;
    std::string lines;
    for (const BT::TreeNodeManifest& type : factory.manifests())
        if (leaf::find(type.registration_ID) == nullptr)
            lines += type.registration_ID + "\n";
    return lines;
}

}  // namespace

void writeCompletionTables(std::ostream& out, const CLI::App& program)
{
    CompletionTables tables;
    fill(tables, program, "");
    writeTable(out, "_vemra_commands", "$1", tables.commands);
    writeTable(out, "_vemra_options", "$1", tables.options);
    writeTable(out, "_vemra_value", "$1 $2", tables.values);
    writeTable(out, "_vemra_operand", "$1", tables.operands);
    out << "\n_vemra_types() {\n    cat <<'END'\n" << nodeTypes() << "END\n}\n";
}

}  // namespace vemra::app
