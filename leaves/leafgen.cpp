#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "leaves/gen/catalogue.h"
#include "leaves/gen/emit.h"

namespace {

namespace fs = std::filesystem;

/// Leaves a file alone that says the same already, so that nothing is built again for it.
void writeIfChanged(const fs::path& file, const std::string& text)
{
    {
        std::ifstream in(file, std::ios::binary);
        const std::string present{std::istreambuf_iterator<char>(in), {}};
        if (in && present == text)
            return;
    }
    if (file.has_parent_path())
        fs::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    out << text;
    out.close();
    if (!out)
        throw fs::filesystem_error("cannot be written", file, std::make_error_code(std::errc::io_error));
}

}  // namespace

int main(int argc, char** argv)
{
    CLI::App app{
        "Turns the catalogue of leaves into what trees, hosts and readers need.\n"
        "Exit code: 0 done, 1 wrong usage or a file that cannot be written, 2 a fault in the catalogue."};
    fs::path catalogue;
    fs::path header;
    fs::path table;
    fs::path docs;
    fs::path keys_header;
    fs::path keys_docs;
    app.add_option("--catalogue", catalogue, "folder with the *.yaml files")->required();
    app.add_option("--header", header, "where the structs for tree descriptions go (leaves.h)");
    app.add_option("--table", table, "where the table for hosts goes (catalogue.cpp)");
    app.add_option("--docs", docs, "where the reference page goes (leaves.md)");
    app.add_option("--keys-header", keys_header, "where the names of the keys go (keys.h)");
    app.add_option("--keys-docs", keys_docs, "where the page of the keys goes (keys.md)");
    try {
        app.parse(argc, argv);
        if (header.empty() && table.empty() && docs.empty() && keys_header.empty() && keys_docs.empty())
            throw CLI::RequiredError("--header, --table, --docs, --keys-header or --keys-docs");
    } catch (const CLI::ParseError& fault) {
        return app.exit(fault) == 0 ? 0 : 1;
    }

    try {
        const auto entries = vemra::leafgen::readCatalogue(catalogue);
        const auto write = [](const fs::path& file, const std::string& text) {
            if (!file.empty())
                writeIfChanged(file, text);
        };
        write(header, vemra::leafgen::headerText(entries.families));
        write(keys_header, vemra::leafgen::keysHeaderText(entries.keys));
        write(table, vemra::leafgen::tableText(entries));
        write(docs, vemra::leafgen::referenceText(entries.families));
        write(keys_docs, vemra::leafgen::keysReferenceText(entries.keys));
    } catch (const vemra::leafgen::CatalogueError& fault) {
        std::fprintf(stderr, "%s\n", fault.what());
        return 2;
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "leafgen: %s\n", fault.what());
        return 1;
    }
    return 0;
}
