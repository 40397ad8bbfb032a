#include "robot/base/yaml_fields.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <set>

#include "robot/base/input_error.h"
#include "robot/base/yaml_bounds.h"

namespace vemra::robot {
namespace {

int lineOf(const YAML::Node& node)
{
    return node.IsDefined() && !node.Mark().is_null() ? node.Mark().line + 1 : 0;
}

// A scalar as T; false if it does not read as one.
template <typename T>
bool readScalar(const YAML::Node& node, T& value)
{
    return node.IsScalar() && YAML::convert<T>::decode(node, value);
}

bool readNumber(const YAML::Node& node, double& value)
{
    return readScalar(node, value) && std::isfinite(value);
}

// A field that is written twice would hide one of the two.
void refuseTwins(const YAML::Node& node, const std::string& file)
{
    std::set<std::string> names;
    for (const auto& element : node) {
        if (node.IsSequence()) {
            refuseTwins(element, file);
            continue;
        }
        if (element.first.IsScalar() && !names.insert(element.first.Scalar()).second) {
            throw InputError(
                file, lineOf(element.first),
                fmt::format("\"{}\" stands here twice: expected it once", element.first.Scalar()));
        }
        refuseTwins(element.second, file);
    }
}

std::string textOf(const std::filesystem::path& file)
{
    constexpr std::size_t most = 1 << 20;
    std::ifstream in(file, std::ios::binary);
    if (!in || std::filesystem::is_directory(file)) {
        throw InputError(file.string(), 0, "cannot be read: expected a YAML file");
    }
    std::string text(most + 1, '\0');
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(in.gcount()));
    if (text.size() > most) {
        throw InputError(file.string(), 0, fmt::format("expected at most {} bytes of YAML", most));
    }
    return text;
}

}  // namespace

YAML::Node readYaml(const std::filesystem::path& file)
{
    const std::string text = textOf(file);
    try {
        checkYamlBounds(text, file.string());
        const YAML::Node read = YAML::Load(text);
        refuseTwins(read, file.string());
        return read;
    } catch (const YAML::Exception& fault) {
        throw InputError(file.string(), fault.mark.is_null() ? 0 : fault.mark.line + 1,
                         "not YAML: " + fault.msg);
    }
}

YamlFields::YamlFields(const YAML::Node& node, std::string file, std::string what)
    : node_(node), file_(std::move(file)), what_(std::move(what))
{
    if (!node_.IsMap()) {
        throw InputError(file_, lineOf(node_), fmt::format("expected {} with fields (name: value)", what_));
    }
}

int YamlFields::line() const
{
    return lineOf(node_);
}

int YamlFields::line(std::string_view name) const
{
    return has(name) ? lineOf(node(name)) : line();
}

bool YamlFields::has(std::string_view name) const
{
    return node(name).IsDefined();
}

YAML::Node YamlFields::node(std::string_view name) const
{
    for (const auto& field : node_) {
        if (field.first.IsScalar() && field.first.Scalar() == name) {
            return field.second;
        }
    }
    return YAML::Node(YAML::NodeType::Undefined);
}

YAML::Node YamlFields::need(std::string_view name, const char* expected) const
{
    const YAML::Node found = node(name);
    if (!found.IsDefined()) {
        failAt(node_, fmt::format("{} lacks the field \"{}\": expected {}", what_, name, expected));
    }
    return found;
}

double YamlFields::number(std::string_view name) const
{
    double value = 0;
    if (!readNumber(need(name, "a number"), value)) {
        fail(name, "a number");
    }
    return value;
}

double YamlFields::number(std::string_view name, double low, double high) const
{
    const double value = number(name);
    if (value < low || value > high) {
        fail(name, fmt::format("a number from {} to {}", low, high));
    }
    return value;
}

int YamlFields::integer(std::string_view name, int low, int high) const
{
    int value = 0;
    const YAML::Node found = need(name, "a whole number");
    if (!readScalar(found, value) || value < low || value > high) {
        fail(name, fmt::format("a whole number from {} to {}", low, high));
    }
    return value;
}

bool YamlFields::flag(std::string_view name) const
{
    bool value = false;
    if (!readScalar(need(name, "true or false"), value)) {
        fail(name, "true or false");
    }
    return value;
}

std::string YamlFields::text(std::string_view name, const char* expected) const
{
    const YAML::Node found = need(name, expected);
    if (!found.IsScalar()) {
        fail(name, expected);
    }
    return found.Scalar();
}

std::vector<double> YamlFields::numbers(std::string_view name, std::size_t count) const
{
    return numbers(need(name, "a list of numbers"), name, count);
}

std::vector<double> YamlFields::numbers(const YAML::Node& list, std::string_view name,
                                        std::size_t count) const
{
    std::vector<double> values;
    bool good = list.IsSequence() && list.size() == count;
    for (std::size_t i = 0; good && i < count; ++i) {
        good = readNumber(list[i], values.emplace_back());
    }
    if (!good) {
        failAt(list, fmt::format("\"{}\": expected a list of {} numbers", name, count));
    }
    return values;
}

std::vector<double> YamlFields::places(std::string_view name, std::size_t count) const
{
    return places(need(name, "a list of numbers"), name, count);
}

std::vector<double> YamlFields::places(const YAML::Node& list, std::string_view name, std::size_t count) const
{
    constexpr double most = 1e6;
    std::vector<double> values = numbers(list, name, count);
    if (std::any_of(values.begin(), values.end(), [](double v) { return std::abs(v) > most; })) {
        failAt(list, fmt::format("\"{}\": expected metres, none beyond {:.0f}", name, most));
    }
    return values;
}

std::vector<YAML::Node> YamlFields::list(std::string_view name) const
{
    if (!has(name) || node(name).IsNull()) {
        return {};
    }
    const YAML::Node found = node(name);
    if (!found.IsSequence()) {
        fail(name, "a list");
    }
    return {found.begin(), found.end()};
}

YamlFields YamlFields::fields(std::string_view name) const
{
    return {need(name, "fields"), file_, fmt::format("\"{}\"", name)};
}

void YamlFields::allowOnly(const std::vector<std::string_view>& names) const
{
    for (const auto& field : node_) {
        const std::string name = field.first.IsScalar() ? field.first.Scalar() : "?";
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            failAt(field.first, fmt::format("{} has no field \"{}\": expected one of {}", what_, name,
                                            fmt::join(names, ", ")));
        }
    }
}

void YamlFields::fail(std::string_view name, const std::string& expected) const
{
    failAt(has(name) ? node(name) : node_, fmt::format("\"{}\": expected {}", name, expected));
}

void YamlFields::failAt(const YAML::Node& node, const std::string& message) const
{
    throw InputError(file_, lineOf(node), message);
}

}  // namespace vemra::robot
