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
#include "behaviortree_cpp/text.h"

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
/// The key of a text whose form is Reference, as a part of the text.
[[nodiscard]] std::string_view referencedKey(std::string_view text);

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
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;

    [[nodiscard]] std::string_view name() const
    {
        return {name_size_ <= sizeof(name_head_) ? reinterpret_cast<const char*>(&name_head_) : longName(),
                name_size_};
    }
    /// Whether this is its name: two comparisons with a short one that is written in the program.
    [[gnu::always_inline]] [[nodiscard]] bool isCalled(std::string_view name) const
    {
        return name_head_ == detail::headOf(name) && name_size_ == name.size() &&
               (name.size() <= sizeof(name_head_) || detail::sameText(this->name(), name));
    }
    /// The text as given.
    [[nodiscard]] std::string_view raw() const { return {text_, text_size_}; }
    [[nodiscard]] PortForm form() const { return form_; }
    void compile(Blackboard& blackboard);

    // Each reads the port as it is now; false when there is no such value.
    [[nodiscard]] bool toInteger(std::int64_t& out) const
    {
        if (form_ == PortForm::Reference && slot_->kind() == Any::Kind::Integer) [[likely]] {
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
    [[nodiscard]] bool view(std::string_view& out, std::string& scratch) const
    {
        if (form_ == PortForm::Literal) {
            out = raw();
            return true;
        }
        if (form_ == PortForm::Reference && slot_->isText()) {
            out = slot_->text();
            return true;
        }
        return viewOther(out, scratch);
    }
    /// The value itself: what a reference refers to, the number of a formula, else the text.
    [[nodiscard]] bool toAny(Any& out) const;
    /// The slot of a reference, else nullptr.
    [[nodiscard]] const Any* reference() const { return form_ == PortForm::Reference ? slot_ : nullptr; }

private:
    friend class PortList;

    /// What a literal reads as.
    enum class Literal : std::uint8_t
    {
        Text,
        Integer,
        Real,
        Boolean
    };

    /// `text` stays where it is, ends with a zero, and has the name behind that where it is a long one.
    Port(std::string_view name, std::string_view text);
    ~Port() { dropFormula(); }

    static bool isLong(std::string_view name) { return name.size() > sizeof(name_head_); }
    [[nodiscard]] const char* longName() const { return text_ + text_size_ + 1; }
    void readLiteral();
    void dropFormula();
    [[nodiscard]] bool toIntegerOtherwise(std::int64_t& out) const;
    [[nodiscard]] bool viewOther(std::string_view& out, std::string& scratch) const;

    std::uint64_t name_head_;  ///< all of most names
    const char* text_;
    std::uint32_t text_size_;
    std::uint16_t name_size_;
    PortForm form_ = PortForm::Literal;
    Literal literal_ = Literal::Text;
    union {
        std::int64_t integer_ = 0;  ///< of a literal, by what it reads as
        double real_;
        const Any* slot_;                   ///< of a reference
        std::unique_ptr<Formula> formula_;  ///< of any other text
    };
};

/// The ports of a node, in one block of memory with their texts.
class PortList
{
public:
    PortList() = default;
    explicit PortList(const std::unordered_map<std::string, std::string>& texts);

    [[nodiscard]] std::span<const Port> all() const { return {first_.get(), count()}; }
    [[nodiscard]] std::span<Port> all() { return {first_.get(), count()}; }
    /// The port of that name, or nullptr.
    [[gnu::always_inline]] [[nodiscard]] const Port* find(std::string_view name) const
    {
        const Port* first = first_.get();
        if (first == nullptr || first->isCalled(name)) [[likely]]
            return first;
        return findBehindFirst(name);
    }

private:
    struct Header
    {
        std::size_t count = 0;
    };
    struct Release
    {
        void operator()(Port* first) const;
    };
    static Header& headerOf(Port* first) { return reinterpret_cast<Header*>(first)[-1]; }

    [[nodiscard]] std::size_t count() const { return first_ ? headerOf(first_.get()).count : 0; }
    [[nodiscard]] const Port* findBehindFirst(std::string_view name) const;

    std::unique_ptr<Port, Release> first_;  ///< the header stands before it
};

}  // namespace BT
