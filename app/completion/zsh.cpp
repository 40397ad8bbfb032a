#include "app/completion/zsh.h"

#include <ostream>

#include "app/completion/tables.h"

namespace vemra::app {

namespace {

/// Firm part of the script; the tables that it looks into stand before it.
constexpr const char* kScript = R"zsh(
_vemra_offer() {
    case $1 in
        TREE) compadd -- ${(f)"$($words[1] trees list --names 2>/dev/null)"} ;;
        LEAF) compadd -- ${(f)"$($words[1] leaves list --names 2>/dev/null)"} ;;
        NODE) compadd -- ${(f)"$($words[1] leaves list --names 2>/dev/null; _vemra_types)"} ;;
        KEY) compadd -- ${(f)"$($words[1] trees keys --names 2>/dev/null)"} ;;
        FILE) _files ;;
        DIR) _files -/ ;;
        NONE) ;;
        *) compadd -- ${=1} ;;
    esac
}

_vemra() {
    local where="" word kind
    local -i i
    for ((i = 2; i < CURRENT; i++)); do
        word=$words[i]
        if [[ $word == -* ]]; then
            [[ $word != *=* && -n "$(_vemra_value "$where" "$word")" ]] && ((i++))
        elif [[ " $(_vemra_commands "$where") " == *" $word "* ]]; then
            where+="/$word"
        fi
    done
    word=$words[CURRENT]
    if [[ $word == --*=* ]]; then
        kind=$(_vemra_value "$where" "${word%%=*}")
        compset -P '*='
    elif ((i > CURRENT)); then
        kind=$(_vemra_value "$where" "$words[CURRENT-1]")
    elif [[ $word == -* ]]; then
        kind=$(_vemra_options "$where")
    else
        kind="$(_vemra_commands "$where")$(_vemra_operand "$where")"
    fi
    _vemra_offer "$kind"
}

if [[ $funcstack[1] == _vemra ]]; then
    _vemra "$@"
elif (($+functions[compdef])); then
    compdef _vemra vemra
fi
)zsh";

}  // namespace

void writeZshCompletion(std::ostream& out, const CLI::App& program)
{
    out << "#compdef vemra\n# Completion of the vemra command in zsh.\n";
    writeCompletionTables(out, program);
    out << kScript;
}

}  // namespace vemra::app
