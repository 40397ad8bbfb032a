#pragma once

#include <string_view>

namespace vemra::app {

/// The files of the page that stand beside this one, made part of the program during the build.
extern const std::string_view kPageFrame;
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;

}  // namespace vemra::app
