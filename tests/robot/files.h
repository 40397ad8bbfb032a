#pragma once

#include <string>

#include "robot/base/input_error.h"
#include "support/folder.h"
#include "support/matchers.h"

namespace vemra::robot {

using test::bytesOf;
using test::Folder;

// The InputError that a call throws, as text; "nothing thrown" without one.
template <typename Call>
std::string faultOf(Call call)
{
    try {
        call();
    } catch (const InputError& fault) {
        return fault.what();
    }
    return "nothing thrown";
}

}  // namespace vemra::robot
