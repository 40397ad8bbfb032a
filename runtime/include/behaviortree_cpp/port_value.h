#pragma once

/// What a port's text means, compiled once over the slots of a blackboard.
///
/// A text without "${" is literal. A text that is "${key}" as a whole (blanks may trail) is a reference.
/// Any other text with references is a formula if it follows the grammar
///
///     or     := and { "||" and }
///     and    := equal { "&&" equal }
///     equal  := less { ("==" | "!=") less }
///     less   := sum { ("<" | "<=" | ">" | ">=") sum }
///     sum    := product { ("+" | "-") product }
///     product:= unary { ("*" | "/") unary }
///     unary  := ("-" | "+" | "!") unary | number | "${" key "}" | "(" or ")"
///
/// and else a text in which each reference is replaced by the text of its value (nothing, if the key is
/// not there; such a text with a hole never reads as a number or truth value). Numbers stay integers where
/// both sides are: 7/2 is 3, cut towards zero; a sum or product that leaves the range of int64 goes on as a
/// real number. A text value counts as the number it reads as; "true" and "false" count as truth values. "=="
/// and "!=" compare texts where a side is no number. A formula has no value when one of its keys is not
/// there, an operand is no number where one is needed, or a divisor is zero; read as text it then falls back
/// on replacement.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "behaviortree_cpp/blackboard/blackboard.h"

namespace BT {

/// A number or truth value out of a formula.
struct Scalar
{
    Any::Kind kind = Any::Kind::Integer;  ///< Integer, Real or Boolean
    std::int64_t integer = 0;
    double real = 0;

    [[nodiscard]] bool truth() const { return kind == Any::Kind::Real ? real != 0 : integer != 0; }
    [[nodiscard]] double number() const
    {
        return kind == Any::Kind::Real ? real : static_cast<double>(integer);
    }
};

/// How the text of a port reads.
enum class PortForm : std::uint8_t
{
    Literal,
    Reference,
    Formula,
    Template
};

/// The form of `text`; throws std::invalid_argument with the place where a "${" is left open or empty.
[[nodiscard]] PortForm classifyPortText(std::string_view text);
/// The keys that `text` refers to, in order; throws as classifyPortText.
[[nodiscard]] std::vector<std::string> referencedKeys(std::string_view text);

/// A text with references, compiled.
class Formula
{
public:
    /// Compiles `text` on the slots of `blackboard`.
    Formula(std::string_view text, Blackboard& blackboard);

    /// True when the text follows the grammar, so that evaluate() may give a value.
    [[nodiscard]] bool computes() const { return !steps_.empty(); }
    [[nodiscard]] std::optional<Scalar> evaluate() const;
    /// Whether all keys referred to are there.
    [[nodiscard]] bool complete() const;
    /// Appends the text with each reference replaced.
    void appendReplaced(std::string& out) const;

private:
    friend class FormulaParser;

    enum class Op : std::uint8_t
    {
        Number,
        Load,
        Negate,
        Plus,
        Not,
        Add,
        Subtract,
        Multiply,
        Divide,
        Less,
        LessEqual,
        Greater,
        GreaterEqual,
        Equal,
        NotEqual,
        And,
        Or
    };
    struct Step
    {
        Op op;
        Scalar number;
        const Any* slot = nullptr;
    };
    struct Operand;
    struct Piece
    {
        std::string literal;
        const Any* slot = nullptr;
    };

    static bool apply(Op op, Operand& a, const Operand& b);

    std::vector<Step> steps_;
    std::vector<Piece> pieces_;
};

/// One port of a node.
class Port
{
public:
    Port() = default;
    Port(std::string_view name, std::string_view text)
        : name_(name.data()),
          text_(text.data()),
          name_size_(static_cast<std::uint16_t>(name.size())),
          text_size_(static_cast<std::uint32_t>(text.size()))
    {}

    [[nodiscard]] std::string_view name() const { return {name_, name_size_}; }
    /// The text as given.
    [[nodiscard]] std::string_view raw() const { return {text_, text_size_}; }
    [[nodiscard]] PortForm form() const { return form_; }
    void compile(Blackboard& blackboard);

    // Each reads the port as it is now; false when there is no such value.
    [[nodiscard]] bool toInteger(std::int64_t& out) const
    {
        if (form_ == PortForm::Reference && slot_->kind() == Any::Kind::Integer) {
            out = slot_->integer();
            return true;
        }
        return toIntegerOtherwise(out);
    }
    [[nodiscard]] bool toReal(double& out) const;
    [[nodiscard]] bool toBoolean(bool& out) const;
    /// False only for a reference to a key that is not there.
    [[nodiscard]] bool toText(std::string& out) const;
    /// As toText without a copy where none is needed: the view is into the port, the slot or `scratch`.
    [[nodiscard]] bool view(std::string_view& out, std::string& scratch) const;
    /// The value itself: what a reference refers to, the number of a formula, else the text.
    [[nodiscard]] bool toAny(Any& out) const;
    /// The slot of a reference, else nullptr.
    [[nodiscard]] const Any* reference() const { return form_ == PortForm::Reference ? slot_ : nullptr; }

private:
    [[nodiscard]] bool toIntegerOtherwise(std::int64_t& out) const;

    const char* name_ = nullptr;
    const char* text_ = nullptr;
    std::uint16_t name_size_ = 0;
    PortForm form_ = PortForm::Literal;
    std::uint32_t text_size_ = 0;
    const Any* slot_ = nullptr;
    std::unique_ptr<Formula> formula_;
};

/// The ports of a node, in one block of memory with their texts.
class PortList
{
public:
    PortList() = default;
    explicit PortList(const std::unordered_map<std::string, std::string>& texts);
    ~PortList();
    PortList(PortList&&) noexcept = default;
    PortList& operator=(PortList&& other) noexcept;
    PortList(const PortList&) = delete;
    PortList& operator=(const PortList&) = delete;

    [[nodiscard]] std::span<const Port> all() const { return {first(), count()}; }
    [[nodiscard]] std::span<Port> all() { return {first(), count()}; }

private:
    struct Header
    {
        std::size_t count = 0;
    };
    [[nodiscard]] std::size_t count() const { return block_ ? header()->count : 0; }
    [[nodiscard]] Header* header() const { return reinterpret_cast<Header*>(block_.get()); }
    [[nodiscard]] Port* first() const
    {
        return block_ ? reinterpret_cast<Port*>(block_.get() + sizeof(Header)) : nullptr;
    }

    std::unique_ptr<std::byte[]> block_;
};

}  // namespace BT
