#include "app/manual.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <sstream>
#include <string>

#include "version/version.h"

namespace vemra::app {
namespace {

/// Text that no sign of man is read in.
std::string plain(const std::string& text)
{
    std::string out;
    bool line_begins = true;
    for (const char c : text) {
        if (line_begins && (c == '.' || c == '\''))
            out += "\\&";
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else
            out += c;
        line_begins = c == '\n';
    }
    return out;
}

std::string namesOf(const CLI::Option& option)
{
    std::string names;
    for (const std::string& name : option.get_snames())
        names += (names.empty() ? "\\fB\\-" : ", \\fB\\-") + plain(name) + "\\fR";
    for (const std::string& name : option.get_lnames())
        names += (names.empty() ? "\\fB\\-\\-" : ", \\fB\\-\\-") + plain(name) + "\\fR";
    return names;
}

// What may be given: the type, as in FILE or {json,xml}; nothing for a flag.
std::string valueOf(const CLI::Option& option)
{
    if (option.get_items_expected_max() == 0)
        return {};
    std::string type = option.get_type_name();
    if (const std::size_t open = type.find('{'); open != std::string::npos)
        type = type.substr(open);
    return "\\fI" + plain(type) + "\\fR";
}

void writeOption(std::ostream& out, const CLI::Option& option)
{
    const std::string names = namesOf(option);
    const std::string value = valueOf(option);
    out << ".TP\n" << names << (names.empty() || value.empty() ? "" : " ") << value << '\n';
    out << plain(option.get_description());
    if (const std::string usual = option.get_default_str(); !usual.empty())
        out << " (" << plain(usual) << ')';
    out << '\n';
}

void writeCommand(std::ostream& out, const CLI::App& command, const std::string& path)
{
    out << ".SS " << plain(path);
    for (const CLI::Option* option : command.get_options())
        if (option->get_positional())
            out << ' ' << valueOf(*option);
    out << '\n' << plain(command.get_description()) << ".\n";
    for (const CLI::Option* option : command.get_options())
        writeOption(out, *option);
    if (const std::string footer = command.get_footer(); !footer.empty())
        out << ".PP\n.nf\n" << plain(footer) << "\n.fi\n";
    for (const CLI::App* below : command.get_subcommands([](const CLI::App*) { return true; }))
        writeCommand(out, *below, path + " " + below->get_name());
}

}  // namespace

void writeManual(std::ostream& out, const CLI::App& program)
{
    out << ".TH VEMRA 1 \"\" \"" << plain(vemra::version()) << "\" \"User Commands\"\n"
        << ".SH NAME\nvemra \\- " << plain(program.get_description()) << '\n'
        << ".SH SYNOPSIS\n\\fBvemra\\fR \\fICOMMAND\\fR [\\fIOPTIONS\\fR]\n.SH COMMANDS\n";
    for (const CLI::App* below : program.get_subcommands([](const CLI::App*) { return true; }))
        writeCommand(out, *below, below->get_name());
    out << ".SH OPTIONS\n";
    for (const CLI::Option* option : program.get_options())
        writeOption(out, *option);
    out << ".SH EXAMPLES AND EXIT CODES\n.nf\n" << plain(program.get_footer()) << "\n.fi\n";
}

void addManualCommand(CLI::App& program)
{
    CLI::App& manual = *program.add_subcommand("manual", "Print the manual page of this command");
    manual.footer("To read it: vemra manual | man -l -");
    manual.callback([&program] { writeManual(std::cout, program); });
}

}  // namespace vemra::app
