#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <limits>
#include <stdexcept>

#include "behaviortree_cpp/port_value.h"

namespace BT {

namespace {

constexpr std::string_view kOpen = "${";
/// As deep as a formula may nest, and as many values as it may have in hand at once; more is no formula.
constexpr std::size_t kMaxNesting = 32;
constexpr std::size_t kMaxValues = 16;

/// The key of the reference that begins at `at`, and where the reference ends.
std::string_view keyAt(std::string_view text, std::size_t at, std::size_t& end)
{
    const std::size_t close = text.find('}', at);
    if (close == std::string_view::npos)
        throw std::invalid_argument("'${' at position " + std::to_string(at) +
                                    " has no '}': " + std::string(text));
    const std::string_view key = detail::trimmed(text.substr(at + 2, close - at - 2));
    if (key.empty() || key.find(kOpen) != std::string_view::npos)
        throw std::invalid_argument("'${' at position " + std::to_string(at) +
                                    " names no key: " + std::string(text));
    end = close + 1;
    return key;
}

}  // namespace

/// A recursive descent that leaves its steps in the order of a stack machine.
class FormulaParser
{
public:
    using Op = Formula::Op;

    FormulaParser(std::string_view text, Blackboard* blackboard) : text_(text), blackboard_(blackboard) {}

    /// The steps, or none when the text does not follow the grammar.
    std::vector<Formula::Step> parse()
    {
        if (!disjunction())
            return {};
        skipBlanks();
        if (at_ != text_.size() || valuesNeeded() > kMaxValues)
            return {};
        return std::move(steps_);
    }

private:
    struct Token
    {
        std::string_view text;
        Op op;
    };

    [[nodiscard]] std::size_t valuesNeeded() const
    {
        std::size_t in_hand = 0;
        std::size_t most = 0;
        for (const Formula::Step& step : steps_) {
            if (step.op == Op::Number || step.op == Op::Load)
                most = std::max(most, ++in_hand);
            else if (step.op != Op::Negate && step.op != Op::Plus && step.op != Op::Not)
                --in_hand;
        }
        return most;
    }

    void skipBlanks()
    {
        while (at_ < text_.size() && detail::isBlank(text_[at_]))
            ++at_;
    }

    bool take(std::string_view token)
    {
        skipBlanks();
        if (!text_.substr(at_).starts_with(token))
            return false;
        at_ += token.size();
        return true;
    }

    template <std::size_t N>
    const Token* takeOne(const std::array<Token, N>& tokens)
    {
        for (const Token& token : tokens)
            if (take(token.text))
                return &token;
        return nullptr;
    }

    template <std::size_t N>
    bool chain(bool (FormulaParser::*below)(), const std::array<Token, N>& tokens)
    {
        if (!(this->*below)())
            return false;
        while (const Token* token = takeOne(tokens)) {
            if (!(this->*below)())
                return false;
            steps_.push_back({token->op, {}, nullptr});
        }
        return true;
    }

    bool disjunction()
    {
        static constexpr std::array<Token, 1> kTokens{{{"||", Op::Or}}};
        return chain(&FormulaParser::conjunction, kTokens);
    }
    bool conjunction()
    {
        static constexpr std::array<Token, 1> kTokens{{{"&&", Op::And}}};
        return chain(&FormulaParser::equality, kTokens);
    }
    bool equality()
    {
        static constexpr std::array<Token, 2> kTokens{{{"==", Op::Equal}, {"!=", Op::NotEqual}}};
        return chain(&FormulaParser::comparison, kTokens);
    }
    bool comparison()
    {
        static constexpr std::array<Token, 4> kTokens{
            {{"<=", Op::LessEqual}, {">=", Op::GreaterEqual}, {"<", Op::Less}, {">", Op::Greater}}};
        return chain(&FormulaParser::sum, kTokens);
    }
    bool sum()
    {
        static constexpr std::array<Token, 2> kTokens{{{"+", Op::Add}, {"-", Op::Subtract}}};
        return chain(&FormulaParser::product, kTokens);
    }
    bool product()
    {
        static constexpr std::array<Token, 2> kTokens{{{"*", Op::Multiply}, {"/", Op::Divide}}};
        return chain(&FormulaParser::unary, kTokens);
    }

    bool unary()
    {
        static constexpr std::array<Token, 3> kTokens{{{"-", Op::Negate}, {"+", Op::Plus}, {"!", Op::Not}}};
        if (++depth_ > kMaxNesting)
            return false;
        bool ok = false;
        if (const Token* token = takeOne(kTokens)) {
            ok = unary();
            steps_.push_back({token->op, {}, nullptr});
        } else
            ok = primary();
        --depth_;
        return ok;
    }

    bool primary()
    {
        if (take("("))
            return disjunction() && take(")");
        skipBlanks();
        if (text_.substr(at_).starts_with(kOpen)) {
            std::size_t end = 0;
            const std::string_view key = keyAt(text_, at_, end);
            at_ = end;
            steps_.push_back({Op::Load, {}, blackboard_ != nullptr ? &blackboard_->slot(key) : nullptr});
            return true;
        }
        return number();
    }

    bool number()
    {
        const char* begin = text_.data() + at_;
        const char* end = text_.data() + text_.size();
        if (begin == end || !(std::isdigit(static_cast<unsigned char>(*begin)) || *begin == '.'))
            return false;
        Scalar scalar;
        const auto integer = std::from_chars(begin, end, scalar.integer);
        const auto real = std::from_chars(begin, end, scalar.real);
        if (real.ec != std::errc{})
            return false;
        const bool whole = integer.ec == std::errc{} && integer.ptr == real.ptr;
        scalar.kind = whole ? Any::Kind::Integer : Any::Kind::Real;
        at_ += static_cast<std::size_t>(real.ptr - begin);
        steps_.push_back({Op::Number, scalar, nullptr});
        return true;
    }

    std::string_view text_;
    Blackboard* blackboard_;
    std::size_t at_ = 0;
    std::size_t depth_ = 0;
    std::vector<Formula::Step> steps_;
};

/// A value in hand: a scalar, or a text that is none.
struct Formula::Operand
{
    Scalar scalar;
    std::string_view text;
    bool is_text = false;

    [[nodiscard]] bool realNeeded() const { return scalar.kind == Any::Kind::Real; }

    void setInteger(std::int64_t value) { *this = {{Any::Kind::Integer, value, 0}, {}, false}; }
    void setReal(double value) { *this = {{Any::Kind::Real, 0, value}, {}, false}; }
    void setTruth(bool value) { *this = {{Any::Kind::Boolean, value ? 1 : 0, 0}, {}, false}; }

    bool load(const Any& value)
    {
        switch (value.kind()) {
            case Any::Kind::Integer:
                setInteger(value.integer());
                return true;
            case Any::Kind::Real:
                setReal(value.real());
                return true;
            case Any::Kind::Unsigned: {
                double number = 0;
                (void)value.toReal(number);
                setReal(number);
                return true;
            }
            case Any::Kind::Boolean:
                setTruth(value.boolean());
                return true;
            case Any::Kind::Text:
                loadText(value.text());
                return true;
            default:
                return false;
        }
    }

    void loadText(std::string_view value)
    {
        std::int64_t integer = 0;
        double real = 0;
        bool truth = false;
        if (parseInteger(value, integer))
            setInteger(integer);
        else if (parseReal(value, real))
            setReal(real);
        else if (parseBoolean(value, truth))
            setTruth(truth);
        else
            *this = {{}, value, true};
    }
};

bool Formula::apply(Op op, Operand& a, const Operand& b)
{
    const bool equality = op == Op::Equal || op == Op::NotEqual;
    if (a.is_text || b.is_text) {
        // A text that is no number equals nothing but the same text.
        if (!equality)
            return false;
        const bool same = a.is_text && b.is_text && a.text == b.text;
        a.setTruth(same == (op == Op::Equal));
        return true;
    }
    if (op == Op::And || op == Op::Or) {
        const bool left = a.scalar.truth();
        const bool right = b.scalar.truth();
        a.setTruth(op == Op::And ? left && right : left || right);
        return true;
    }
    const bool integers = !a.realNeeded() && !b.realNeeded();
    const std::int64_t i = a.scalar.integer;
    const std::int64_t j = b.scalar.integer;
    const double x = a.scalar.number();
    const double y = b.scalar.number();
    std::int64_t exact = 0;
    switch (op) {
        case Op::Add:
            if (integers && !__builtin_add_overflow(i, j, &exact))
                a.setInteger(exact);
            else
                a.setReal(x + y);
            return true;
        case Op::Subtract:
            if (integers && !__builtin_sub_overflow(i, j, &exact))
                a.setInteger(exact);
            else
                a.setReal(x - y);
            return true;
        case Op::Multiply:
            if (integers && !__builtin_mul_overflow(i, j, &exact))
                a.setInteger(exact);
            else
                a.setReal(x * y);
            return true;
        case Op::Divide:
            if (y == 0)
                return false;
            if (!integers || (j == -1 && i == std::numeric_limits<std::int64_t>::min()))
                a.setReal(x / y);
            else
                a.setInteger(i / j);
            return true;
        case Op::Less:
            a.setTruth(integers ? i < j : x < y);
            return true;
        case Op::LessEqual:
            a.setTruth(integers ? i <= j : x <= y);
            return true;
        case Op::Greater:
            a.setTruth(integers ? i > j : x > y);
            return true;
        case Op::GreaterEqual:
            a.setTruth(integers ? i >= j : x >= y);
            return true;
        case Op::Equal:
            a.setTruth(integers ? i == j : x == y);
            return true;
        case Op::NotEqual:
            a.setTruth(integers ? i != j : x != y);
            return true;
        default:
            return false;
    }
}

Formula::Formula(std::string_view text, Blackboard& blackboard)
    : steps_(FormulaParser(text, &blackboard).parse())
{
    std::size_t from = 0;
    while (from < text.size()) {
        const std::size_t at = text.find(kOpen, from);
        if (at == std::string_view::npos) {
            pieces_.push_back({std::string(text.substr(from)), nullptr});
            break;
        }
        std::size_t end = 0;
        const std::string_view key = keyAt(text, at, end);
        pieces_.push_back({std::string(text.substr(from, at - from)), &blackboard.slot(key)});
        from = end;
    }
}

std::optional<Scalar> Formula::evaluate() const
{
    std::array<Operand, kMaxValues> stack;
    std::size_t top = 0;  // one past the last value
    for (const Step& step : steps_) {
        switch (step.op) {
            case Op::Number:
                stack[top++] = {step.number, {}, false};
                break;
            case Op::Load:
                if (!stack[top++].load(*step.slot))
                    return std::nullopt;
                break;
            case Op::Negate:
            case Op::Plus: {
                Operand zero;
                if (!apply(step.op == Op::Negate ? Op::Subtract : Op::Add, zero, stack[top - 1]))
                    return std::nullopt;
                stack[top - 1] = zero;
                break;
            }
            case Op::Not:
                if (stack[top - 1].is_text)
                    return std::nullopt;
                stack[top - 1].setTruth(!stack[top - 1].scalar.truth());
                break;
            default:
                --top;
                if (!apply(step.op, stack[top - 1], stack[top]))
                    return std::nullopt;
                break;
        }
    }
    if (top != 1 || stack[0].is_text)
        return std::nullopt;
    return stack[0].scalar;
}

bool Formula::complete() const
{
    return std::none_of(pieces_.begin(), pieces_.end(),
                        [](const Piece& piece) { return piece.slot != nullptr && piece.slot->empty(); });
}

void Formula::appendReplaced(std::string& out) const
{
    for (const Piece& piece : pieces_) {
        out += piece.literal;
        if (piece.slot != nullptr)
            piece.slot->appendText(out);
    }
}

PortForm classifyPortText(std::string_view text)
{
    const std::size_t at = text.find(kOpen);
    if (at == std::string_view::npos)
        return PortForm::Literal;
    std::size_t end = 0;
    for (std::size_t next = at; next != std::string_view::npos; next = text.find(kOpen, end))
        (void)keyAt(text, next, end);
    const std::string_view bare = detail::trimmed(text);
    if (bare.starts_with(kOpen) && bare.find('}') == bare.size() - 1)
        return PortForm::Reference;
    return FormulaParser(text, nullptr).parse().empty() ? PortForm::Template : PortForm::Formula;
}

std::vector<std::string> referencedKeys(std::string_view text)
{
    std::vector<std::string> keys;
    std::size_t end = 0;
    for (std::size_t at = text.find(kOpen); at != std::string_view::npos; at = text.find(kOpen, end))
        keys.emplace_back(keyAt(text, at, end));
    return keys;
}

std::string_view referencedKey(std::string_view text)
{
    std::size_t end = 0;
    return keyAt(text, text.find(kOpen), end);
}

}  // namespace BT
