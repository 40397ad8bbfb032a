#include "app/completion/bash.h"

#include <ostream>

#include "app/completion/tables.h"

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

}  // namespace

void writeBashCompletion(std::ostream& out, const CLI::App& program)
{
    out << "# Completion of the vemra command in bash.\n";
    writeCompletionTables(out, program);
    out << kScript;
}

}  // namespace vemra::app
