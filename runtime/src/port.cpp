#include <cstring>
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

/// Reads a literal or replaced text by way of a value.
template <class T>
bool textTo(std::string_view text, bool (Any::*read)(T&) const, T& out)
{
    Any value;
    value.setText(text);
    return (value.*read)(out);
}

}  // namespace

void Port::compile(Blackboard& blackboard)
{
    slot_ = nullptr;
    formula_.reset();
    try {
        form_ = classifyPortText(raw());
    } catch (const std::invalid_argument&) {
        form_ = PortForm::Literal;  // a "${" left open means itself
    }
    if (form_ == PortForm::Reference)
        slot_ = &blackboard.slot(referencedKeys(raw()).front());
    else if (form_ != PortForm::Literal)
        formula_ = std::make_unique<Formula>(raw(), blackboard);
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
            return parseInteger(raw(), out) || textTo(raw(), &Any::toInteger, out);
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
            return parseReal(raw(), out);
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
            return parseBoolean(raw(), out) || textTo(raw(), &Any::toBoolean, out);
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

bool Port::view(std::string_view& out, std::string& scratch) const
{
    switch (form_) {
        case PortForm::Literal:
            out = raw();
            return true;
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
        size += name.size() + text.size() + 1;
    block_ = std::make_unique_for_overwrite<std::byte[]>(size);
    new (block_.get()) Header;
    char* place = reinterpret_cast<char*>(block_.get()) + texts_begin;
    const auto keep = [&place](const std::string& text) {
        std::memcpy(place, text.data(), text.size());
        const std::string_view kept(place, text.size());
        place += text.size();
        return kept;
    };
    for (const auto& [name, text] : texts) {
        const std::string_view kept_name = keep(name);
        const std::string_view kept_text = keep(text);
        *place++ = '\0';  // so that a literal reads as a C string too
        new (first() + header()->count) Port(kept_name, kept_text);
        ++header()->count;
    }
}

PortList& PortList::operator=(PortList&& other) noexcept
{
    std::swap(block_, other.block_);
    return *this;
}

PortList::~PortList()
{
    for (Port& port : all())
        port.~Port();
}

}  // namespace BT
