#pragma once

#include <string>

namespace vemra::robot {

/// Walks over a YAML text before any memory is taken for what it says. Throws InputError for a second
/// document, more than 50 levels, more than 100,000 values with all aliases written out, and an alias within
/// what it stands for; YAML::Exception where it is no YAML.
void checkYamlBounds(const std::string& text, const std::string& file);

}  // namespace vemra::robot
