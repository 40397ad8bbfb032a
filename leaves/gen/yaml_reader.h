#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "leaves/gen/catalogue.h"

namespace vemra::leafgen {

/// Identifiers, ports and keys become names in C++: what cannot be one there is refused here, where a line
/// can be told.
[[nodiscard]] bool isName(std::string_view text);
/// Letters, digits and '_'.
[[nodiscard]] bool isKeyName(std::string_view text);

/// Reads files of the catalogue; each fault is a CatalogueError with file and line.
class YamlReader
{
public:
    using Names = std::vector<std::string_view>;

protected:
    YAML::Node open(const std::filesystem::path& path);

    [[nodiscard]] std::vector<YAML::Node> list(const YAML::Node& node, const char* field) const;
    [[nodiscard]] std::string text(const YAML::Node& node, const char* field) const;
    /// A text that can be a name in C++.
    [[nodiscard]] std::string name(const YAML::Node& node, const char* field) const;
    void expectFields(const YAML::Node& node, const char* what, const Names& needed,
                      const Names& allowed) const;
    /// Each `key` is told once.
    void claim(std::map<std::string, std::string>& taken, const std::string& key, const char* what,
               const YAML::Node& node) const;
    [[noreturn]] void fail(const YAML::Node& node, const std::string& message) const;

    template <class Enum, class Texts>
    Enum oneOf(const YAML::Node& node, const char* field, const Texts& names) const
    {
        const std::string found = text(node, field);
        const auto at = std::find(names.begin(), names.end(), found);
        if (at == names.end())
            fail(node[field],
                 fmt::format("unknown {} \"{}\": expected one of {}", field, found, fmt::join(names, ", ")));
        return static_cast<Enum>(at - names.begin());
    }

private:
    [[nodiscard]] std::string place(const YAML::Node& node) const;

    std::string file_;
};

}  // namespace vemra::leafgen
