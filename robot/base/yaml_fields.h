#pragma once

#include <yaml-cpp/yaml.h>

#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace vemra::robot {

/// Reads a YAML file of one document and at most 1 MiB. Throws InputError with the line if it is missing, not
/// YAML, or more than a file of this kind can need (yaml_bounds.h).
YAML::Node readYaml(const std::filesystem::path& file);

/// One mapping of a YAML file, read field by field. All faults are InputErrors with file and line that name
/// the field and what was expected in it.
class YamlFields
{
public:
    /// what names the mapping in messages ("a map", "an event").
    YamlFields(const YAML::Node& node, std::string file, std::string what);

    const std::string& file() const { return file_; }
    int line() const;
    int line(std::string_view name) const;

    /// The mapping itself, for messages.
    const YAML::Node& whole() const { return node_; }
    bool has(std::string_view name) const;
    YAML::Node node(std::string_view name) const;

    double number(std::string_view name) const;
    double number(std::string_view name, double low, double high) const;
    int integer(std::string_view name, int low, int high) const;
    bool flag(std::string_view name) const;
    std::string text(std::string_view name, const char* expected = "a text") const;
    /// A list of exactly count finite numbers.
    std::vector<double> numbers(std::string_view name, std::size_t count) const;
    std::vector<double> numbers(const YAML::Node& list, std::string_view name, std::size_t count) const;
    /// Likewise of metres, the first two of a pose or all of a box: within 1,000 km of the map's origin,
    /// which is farther than any home and still exact in millimetres.
    std::vector<double> places(std::string_view name, std::size_t count) const;
    std::vector<double> places(const YAML::Node& list, std::string_view name, std::size_t count) const;
    /// The elements of a list; an absent field is an empty list.
    std::vector<YAML::Node> list(std::string_view name) const;
    /// A mapping below this one.
    YamlFields fields(std::string_view name) const;

    /// Refuses any field that is not in the list, so that a misspelt one is not silently without effect.
    void allowOnly(const std::vector<std::string_view>& names) const;

    [[noreturn]] void fail(std::string_view name, const std::string& expected) const;
    [[noreturn]] void failAt(const YAML::Node& node, const std::string& message) const;

private:
    YAML::Node need(std::string_view name, const char* expected) const;

    YAML::Node node_;
    std::string file_;
    std::string what_;
};

}  // namespace vemra::robot
