#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "behaviortree_cpp/port_value.h"

namespace BT {

namespace {

bool scalarToInteger(const Scalar& scalar, std::int64_t& out)
{
    if (scalar.kind != Any::Kind::Real) {
        out = scalar.integer;
        return true;
    }
    return realToInteger(scalar.real, out);
}

void appendScalar(const Scalar& scalar, std::string& out)
{
    if (scalar.kind == Any::Kind::Boolean)
        out += scalar.integer != 0 ? "true" : "false";
    else if (scalar.kind == Any::Kind::Real)
        appendNumber(out, scalar.real);
    else
        appendNumber(out, scalar.integer);
}

/// Reads a replaced text by way of a value.
template <class T>
bool textTo(std::string_view text, bool (Any::*read)(T&) const, T& out)
{
    Any value;
    value.setText(text);
    return (value.*read)(out);
}

}  // namespace

Port::Port(std::string_view name, std::string_view text)
    : name_head_(detail::headOf(name)),
      text_(text.data()),
      text_size_(static_cast<std::uint32_t>(text.size())),
      name_size_(static_cast<std::uint16_t>(name.size()))
{
    readLiteral();
}

void Port::readLiteral()
{
    if (std::int64_t integer = 0; parseInteger(raw(), integer)) {
        literal_ = Literal::Integer;
        integer_ = integer;
    } else if (double real = 0; parseReal(raw(), real)) {
        literal_ = Literal::Real;
        real_ = real;
    } else if (bool truth = false; parseBoolean(raw(), truth)) {
        literal_ = Literal::Boolean;
        integer_ = truth ? 1 : 0;
    }
}

void Port::dropFormula()
{
    if (form_ == PortForm::Formula || form_ == PortForm::Template)
        std::destroy_at(&formula_);
}

void Port::compile(Blackboard& blackboard)
{
    PortForm form = PortForm::Literal;  // as a "${" left open is
    try {
        form = classifyPortText(raw());
    } catch (const std::invalid_argument&) {
    }
    if (form == PortForm::Reference)
        slot_ = &blackboard.slot(referencedKey(raw()));
    else if (form != PortForm::Literal) {
        auto formula = std::make_unique<Formula>(raw(), blackboard);
        dropFormula();
        std::construct_at(&formula_, std::move(formula));
    }
    form_ = form;
}

bool Port::toIntegerOtherwise(std::int64_t& out) const
{
    switch (form_) {
        case PortForm::Reference:
            return slot_->toInteger(out);
        case PortForm::Formula:
            if (const auto value = formula_->evaluate())
                return scalarToInteger(*value, out);
            return false;
        case PortForm::Literal:
            if (literal_ == Literal::Integer)
                out = integer_;
            return literal_ == Literal::Integer ||
                   (literal_ == Literal::Real && scalarToInteger({Any::Kind::Real, 0, real_}, out));
        case PortForm::Template:
            break;
    }
    std::string text;
    return formula_->complete() && toText(text) && textTo(text, &Any::toInteger, out);
}

bool Port::toReal(double& out) const
{
    switch (form_) {
        case PortForm::Reference:
            return slot_->toReal(out);
        case PortForm::Formula:
            if (const auto value = formula_->evaluate()) {
                out = value->number();
                return true;
            }
            return false;
        case PortForm::Literal:
            if (literal_ == Literal::Real)
                out = real_;
            else if (literal_ == Literal::Integer)
                out = static_cast<double>(integer_);
            return literal_ == Literal::Real || literal_ == Literal::Integer;
        case PortForm::Template:
            break;
    }
    std::string text;
    return formula_->complete() && toText(text) && parseReal(text, out);
}

bool Port::toBoolean(bool& out) const
{
    switch (form_) {
        case PortForm::Reference:
            return slot_->toBoolean(out);
        case PortForm::Formula:
            if (const auto value = formula_->evaluate()) {
                out = value->truth();
                return true;
            }
            return false;
        case PortForm::Literal:
            if (literal_ != Literal::Text)
                out = literal_ == Literal::Real ? real_ != 0 : integer_ != 0;
            return literal_ != Literal::Text;
        case PortForm::Template:
            break;
    }
    std::string text;
    return formula_->complete() && toText(text) && textTo(text, &Any::toBoolean, out);
}

bool Port::toText(std::string& out) const
{
    std::string_view text;
    std::string scratch;
    if (!view(text, scratch))
        return false;
    if (text.data() == scratch.data())
        out = std::move(scratch);
    else
        out.assign(text);
    return true;
}

bool Port::viewOther(std::string_view& out, std::string& scratch) const
{
    switch (form_) {
        case PortForm::Literal:
            return false;  // is its own view
        case PortForm::Reference:
            if (slot_->empty())
                return false;
            out = slot_->view(scratch);
            return true;
        case PortForm::Formula:
        case PortForm::Template:
            scratch.clear();
            if (const auto value = formula_->computes() ? formula_->evaluate() : std::nullopt)
                appendScalar(*value, scratch);
            else
                formula_->appendReplaced(scratch);
            out = scratch;
            return true;
    }
    return false;
}

bool Port::toAny(Any& out) const
{
    if (form_ == PortForm::Reference) {
        if (slot_->empty())
            return false;
        out.assign(*slot_);
        return true;
    }
    if (form_ == PortForm::Formula)
        if (const auto value = formula_->evaluate()) {
            if (value->kind == Any::Kind::Real)
                out.setReal(value->real);
            else if (value->kind == Any::Kind::Integer)
                out.setInteger(value->integer);
            else
                out.setBoolean(value->truth());
            return true;
        }
    std::string_view text;
    std::string scratch;
    if (!view(text, scratch))
        return false;
    out.setText(text);
    return true;
}

PortList::PortList(const std::unordered_map<std::string, std::string>& texts)
{
    if (texts.empty())
        return;
    std::size_t size = sizeof(Header) + texts.size() * sizeof(Port);
    const std::size_t texts_begin = size;
    for (const auto& [name, text] : texts)
        size += text.size() + 1 + (Port::isLong(name) ? name.size() : 0);
    auto* block = static_cast<std::byte*>(::operator new(size));
    new (block) Header;
    first_.reset(reinterpret_cast<Port*>(block + sizeof(Header)));
    char* place = reinterpret_cast<char*>(block + texts_begin);
    const auto keep = [&place](const std::string& text) {
        std::memcpy(place, text.data(), text.size());
        const std::string_view kept(place, text.size());
        place += text.size();
        return kept;
    };
    for (const auto& [name, text] : texts) {
        const std::string_view kept = keep(text);
        *place++ = '\0';  // so that a literal reads as a C string too
        if (Port::isLong(name))
            keep(name);
        new (first_.get() + count()) Port(name, kept);
        ++headerOf(first_.get()).count;
    }
}

const Port* PortList::findBehindFirst(std::string_view name) const
{
    for (const Port& port : all().subspan(1))
        if (port.isCalled(name))
            return &port;
    return nullptr;
}

void PortList::Release::operator()(Port* first) const
{
    Header& header = headerOf(first);
    for (Port& port : std::span(first, header.count))
        port.~Port();
    ::operator delete(&header);
}

}  // namespace BT
