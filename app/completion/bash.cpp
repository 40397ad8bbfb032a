#include "app/completion/bash.h"

#include <CLI/CLI.hpp>
#include <cctype>
#include <ostream>
#include <string>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "leaves/contract.h"

namespace vemra::app {

namespace {

/// Firm part of the script; the tables that it looks into stand before it.
constexpr const char* kScript = R"bash(
_vemra_words() {
    case $1 in
        TREE) "${COMP_WORDS[0]}" trees list --names 2>/dev/null ;;
        LEAF) "${COMP_WORDS[0]}" leaves list --names 2>/dev/null ;;
        NODE) "${COMP_WORDS[0]}" leaves list --names 2>/dev/null; _vemra_types ;;
        KEY) "${COMP_WORDS[0]}" trees keys --names 2>/dev/null ;;
        FILE) compgen -f -- "$2" ;;
        DIR) compgen -d -- "$2" ;;
        NONE) ;;
        *) printf '%s\n' $1 ;;
    esac
}

_vemra() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} path="" i word kind
    # bash takes --option=value apart at the sign.
    if [[ $current == = ]]; then
        current=""
    elif [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD-2]}
    fi
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $word == -* ]]; then
            if [[ ${COMP_WORDS[i+1]} == = ]]; then
                ((i += 2))
            elif [[ -n $(_vemra_value "$path" "$word") ]]; then
                ((i++))
            fi
        elif [[ " $(_vemra_commands "$path") " == *" $word "* ]]; then
            path+="/$word"
        fi
    done
    kind=$(_vemra_value "$path" "$before")
    if [[ -z $kind ]]; then
        if [[ $current == -* ]]; then
            kind=$(_vemra_options "$path")
        else
            kind="$(_vemra_commands "$path")$(_vemra_operand "$path")"
        fi
    fi
    COMPREPLY=()
    [[ $kind == FILE || $kind == DIR ]] && compopt -o filenames 2>/dev/null
    while IFS= read -r word; do
        if [[ -n $word && $word == "$current"* ]]; then
            COMPREPLY+=("$word")
        fi
    done < <(_vemra_words "$kind" "$current")
}

complete -F _vemra vemra
)bash";

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
        if (type == known)
            return known;
    // A number or a text of its own: nothing to offer, but it is a value.
    return "NONE";
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

struct Tables
{
    std::string commands;
    std::string options;
    std::string values;
    std::string operands;
};

std::string row(const std::string& pattern, const std::string& words)
{
    return "        \"" + pattern + "\") echo \"" + words + "\" ;;\n";
}

void fill(Tables& tables, const CLI::App& command, const std::string& path)
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

}  // namespace

void writeBashCompletion(std::ostream& out, const CLI::App& program)
{
    Tables tables;
    fill(tables, program, "");
    out << "# Completion of the vemra command in bash.\n";
    writeTable(out, "_vemra_commands", "$1", tables.commands);
    writeTable(out, "_vemra_options", "$1", tables.options);
    writeTable(out, "_vemra_value", "$1 $2", tables.values);
    writeTable(out, "_vemra_operand", "$1", tables.operands);
    out << "\n_vemra_types() {\n    cat <<'END'\n" << nodeTypes() << "END\n}\n" << kScript;
}

}  // namespace vemra::app
