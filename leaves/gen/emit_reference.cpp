#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <string_view>

#include "leaves/gen/emit.h"

namespace vemra::leafgen {
namespace {

/// In a table a bar would open a new column.
std::string cell(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        if (c == '|')
            out += '\\';
        out += c;
    }
    return out;
}

std::string codeList(const std::vector<std::string>& texts)
{
    std::string out;
    for (const std::string& text : texts)
        out += fmt::format("{}`{}`", out.empty() ? "" : ", ", cell(text));
    return out;
}

std::string portText(const PortEntry& port)
{
    std::string out = fmt::format("`{}` *{}*: {}", port.name, leaf::toText(port.type), cell(port.about));
    if (!port.required && !port.default_text)
        out += ". May be left out";
    // The two truth values go without saying.
    if (!port.values.empty() && port.type != leaf::PortType::Bool)
        out += fmt::format(". One of {}", codeList(port.values));
    if (!port.examples.empty())
        out += fmt::format(". Such as {}", codeList(port.examples));
    if (port.default_text)
        out += fmt::format(". Default `{}`", *port.default_text);
    return out;
}

/// The anchor under which the page's heading can be reached.
std::string anchor(std::string_view heading)
{
    std::string out;
    for (const char c : heading) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) != 0)
            out += static_cast<char>(std::tolower(byte));
        else if (c == ' ' || c == '-')
            out += '-';
    }
    return out;
}

std::size_t conditionsOf(const Family& family)
{
    return static_cast<std::size_t>(
        std::count_if(family.leaves.begin(), family.leaves.end(),
                      [](const LeafEntry& leaf) { return leaf.kind == leaf::LeafKind::Condition; }));
}

}  // namespace

std::string referenceText(const std::vector<Family>& families)
{
    std::size_t leaves = 0;
    std::size_t conditions = 0;
    std::string overview;
    std::string body;
    for (const Family& family : families) {
        const std::size_t tests = conditionsOf(family);
        leaves += family.leaves.size();
        conditions += tests;
        overview += fmt::format("| [{}](#{}) | {} | {} | {} |\n", family.name, anchor(family.name),
                                family.leaves.size(), tests, family.leaves.size() - tests);
        body += fmt::format("\n## {}\n\n{}\n\n| Leaf | Kind | What it does | Ports |\n|---|---|---|---|\n",
                            family.name, family.about);
        for (const LeafEntry& leaf : family.leaves) {
            std::string ports;
            for (const PortEntry& port : leaf.ports)
                ports += (ports.empty() ? "" : "<br>") + portText(port);
            body += fmt::format("| `{}` | {} | {} | {} |\n", leaf.id, leaf::toText(leaf.kind),
                                cell(leaf.about), ports);
        }
    }
    return fmt::format(R"(# The leaves

<!-- Made by leafgen from leaves/catalogue; changes belong there. -->

A tree acts on the robot through leaves alone. Whoever answers the trees gives each of them an
implementation, as a condition (it succeeds or fails at once) or as an action (it may run for many ticks and
stops when halted).

A port is text. `${{key}}` in it is filled in from the blackboard each time the leaf reads it, and numbers and
truth values may be expressions such as `${{turn_angle}} / 2`. The type says what the text stands for then:
*text*, *int*, *float*, *bool*; *key*, the name of a key to read or to test; *out_key*, the name of a key to
write (left empty, nothing is written); *value*, anything the blackboard can hold. `treegen` refuses a leaf
that lacks a port, unless the port has a default or may be left out; what is left out is not there for the leaf.

| Family | Leaves | Conditions | Actions |
|---|---|---|---|
{}| **All** | **{}** | **{}** | **{}** |
{})",
                       overview, leaves, conditions, leaves - conditions, body);
}

std::string keysReferenceText(const std::vector<KeyEntry>& keys)
{
    std::string rows;
    for (const KeyEntry& key : keys)
        rows += fmt::format("| `{}` | {} | {}{} | {} |\n", key.name, leaf::toText(key.type), cell(key.about),
                            key.values.empty() || key.values == std::vector<std::string>{"true", "false"}
                                ? ""
                                : ". One of " + codeList(key.values),
                            key.from == leaf::KeyOrigin::Trees ? "" : leaf::toText(key.from));
    return fmt::format(R"(# The keys of the blackboard

<!-- Made by leafgen from leaves/catalogue/keys.yaml; changes belong there. -->

Trees and robot talk with each other through keys. A *flag* says what it has to say by being there; *text*, *int*,
*float* and *bool* are written by `SetBlackboard` and `SetBlackboardWithType`; *key* holds the name of another key.
The last column says who writes a key that no tree writes. `vemra trees keys` shows for each key which nodes write,
test, read and erase it.

Some keys hold more than a number or a text. Each has a text, which is what `SaySomething`, `vemra run --watch` and a
port that mixes text and keys show; the texts of points to *path* can be written in a scenario's `set` too. Lengths are
whole mm in the frame of the map, angles degrees.

| Holds | Text | Such as |
|---|---|---|
| point | `x;y`; `current_coord` shows its cell as `column;row` | `1250;-400` |
| pose | `x;y;yaw` | `1250;-400;90` |
| box | `left;low;right;high` | `0;0;9000;6700` |
| line | `x;y;x;y`, from its start to its end | `500;925;3200;925` |
| bridge | `TYPE;x;y;x;y`: `HISTORY`, `TRIALWITHTRACE`, `TRIALNOTRACE`, `TMP` or `STEP`, and its corners | `HISTORY;1200;900;1700;900` |
| path | `x;y;x;y;...`; of a plan what is left of it, stretch by stretch | `500;900;1200;900 \| HISTORY;1200;900;1700;900` |
| list | what was sent, its items parted by `;` | `1;3;4` |
| map | its extent, in cells of 50 mm; it cannot be written | `206 x 160 cells from -3;-3` |

| Key | Holds | Meaning | From |
|---|---|---|---|
{})",
                       rows);
}

}  // namespace vemra::leafgen
