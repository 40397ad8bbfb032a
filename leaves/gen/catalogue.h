#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "leaves/kinds.h"

namespace vemra::leafgen {

struct PortEntry
{
    std::string name;
    leaf::PortType type = leaf::PortType::Text;
    bool required = false;
    std::vector<std::string> values;
    std::vector<std::string> examples;
    std::optional<std::string> default_text;
    std::string about;
};

struct LeafEntry
{
    std::string id;
    leaf::LeafKind kind = leaf::LeafKind::Action;
    std::string about;
    std::vector<PortEntry> ports;
};

struct Family
{
    std::string name;
    std::string about;
    std::vector<LeafEntry> leaves;
};

struct ControlEntry
{
    std::string id;
    std::size_t least_children = 0;
    std::size_t most_children = 0;
    std::string about;
    std::vector<PortEntry> ports;
};

struct KeyEntry
{
    std::string name;
    leaf::KeyType type = leaf::KeyType::Text;
    std::vector<std::string> values;
    leaf::KeyOrigin from = leaf::KeyOrigin::Trees;
    std::string about;
};

struct Catalogue
{
    std::vector<Family> families;
    std::vector<ControlEntry> controls;
    std::vector<KeyEntry> keys;
};

/// what() is "file:line: what is wrong and what was expected".
class CatalogueError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Reads all *.yaml of a folder, in the order of their names. Throws CatalogueError for the first fault.
[[nodiscard]] Catalogue readCatalogue(const std::filesystem::path& folder);

}  // namespace vemra::leafgen
