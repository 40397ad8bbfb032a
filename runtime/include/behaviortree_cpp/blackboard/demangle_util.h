#pragma once

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <typeinfo>

namespace BT {

/// A type's name as it stands in a source; the name itself when it cannot be read.
[[nodiscard]] inline std::string demangle(const char* name)
{
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(name, nullptr, nullptr, &status),
                                                      std::free);
    return status == 0 ? text.get() : name;
}
[[nodiscard]] inline std::string demangle(const std::type_info& type)
{
    return demangle(type.name());
}

}  // namespace BT
