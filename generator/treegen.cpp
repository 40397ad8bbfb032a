#include "generator/treegen.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>
#include <stdexcept>

#include "description/check_keys.h"
#include "generator/emit.h"

namespace vemra::generator {

namespace {

constexpr int kRefused = 2;

std::vector<std::string> readRegistry(const std::string& file)
{
    std::ifstream in(file);
    if (!in)
        throw std::runtime_error(file + ": cannot be read");
    std::vector<std::string> names;
    std::set<std::string> seen;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.empty())
            continue;
        const auto refuse = [&](const std::string& why) {
            std::ostringstream message;
            message << file << ':' << number << ": '" << line << "' " << why;
            throw std::runtime_error(message.str());
        };
        if (!std::all_of(line.begin(), line.end(),
                         [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; }))
            refuse("cannot be a tree's name; expected letters, digits and '_'");
        if (!seen.insert(line).second)
            refuse("stands twice");
        if (!names.empty() && line < names.back())
            refuse("is out of order; names stand in ascending byte order");
        names.push_back(line);
    }
    return names;
}

/// Leaves a file alone that says the same already, so that nothing is built again for it.
void writeIfChanged(const std::filesystem::path& file, const std::string& text)
{
    if (std::ifstream old(file, std::ios::binary); old) {
        std::ostringstream have;
        have << old.rdbuf();
        if (have.str() == text)
            return;
    }
    if (file.has_parent_path())
        std::filesystem::create_directories(file.parent_path());
    const std::filesystem::path fresh = file.string() + ".new";
    {
        std::ofstream out(fresh, std::ios::binary);
        if (!(out << text).flush())
            throw std::runtime_error(fresh.string() + ": cannot be written");
    }
    std::filesystem::rename(fresh, file);
}

}  // namespace

int treegen(int argc, const char* const* argv, std::vector<description::NamedTree> described)
{
    CLI::App app("Checks the tree descriptions and turns them into the plug-in's build functions.",
                 "treegen");
    std::string registry_file;
    std::string on_purpose_file;
    std::string source_file;
    std::string exports_file;
    app.add_option("--registry", registry_file, "the names of all trees, a line each, in byte order")
        ->required();
    app.add_option("--on-purpose", on_purpose_file,
                   "what the trees hold against a rule of the keys on purpose, a line each: TREE WHAT: WHY");
    app.add_option("--source", source_file, "the C++ source to write");
    app.add_option("--exports", exports_file, "the linker's version script to write");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& fault) {
        return app.exit(fault) == 0 ? 0 : kRefused;
    }

    try {
        const std::vector<std::string> registry = readRegistry(registry_file);
        const auto on_purpose = on_purpose_file.empty() ? std::vector<description::OnPurpose>{}
                                                        : description::readOnPurpose(on_purpose_file);
        auto faults = description::check(described, registry);
        const auto key_faults =
            description::checkKeys(described, leaf::keys(), on_purpose,
                                   !on_purpose_file.empty() && described.size() == registry.size());
        faults.insert(faults.end(), key_faults.begin(), key_faults.end());
        for (const description::Fault& fault : faults)
            std::cerr << "treegen: " << description::toText(fault) << '\n';
        if (!faults.empty())
            return kRefused;
        const auto trees = completed(std::move(described), registry);
        std::ostringstream source;
        std::ostringstream exports;
        emitSource(source, trees);
        emitExports(exports, trees);
        if (!source_file.empty())
            writeIfChanged(source_file, source.str());
        if (!exports_file.empty())
            writeIfChanged(exports_file, exports.str());
    } catch (const std::exception& fault) {
        std::cerr << "treegen: " << fault.what() << '\n';
        return kRefused;
    }
    return 0;
}

}  // namespace vemra::generator
