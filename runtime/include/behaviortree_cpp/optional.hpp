#pragma once

#include <optional>

namespace BT {

template <class T>
using optional = std::optional<T>;
using std::nullopt;

}  // namespace BT
