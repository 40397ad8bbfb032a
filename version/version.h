#pragma once

namespace vemra {

/// commit-<branch>-<commits since the last tag>-g<hash>
[[nodiscard]] const char* version();

}  // namespace vemra
