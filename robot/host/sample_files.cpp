#include "robot/host/sample_files.h"

#include <system_error>

namespace vemra::robot {

std::filesystem::path sampleFile(std::string_view name)
{
    std::error_code fault;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", fault);
    if (!fault) {
        std::filesystem::path installed = program.parent_path().parent_path() / "share" / "vemra" / name;
        if (std::filesystem::exists(installed, fault))
            return installed;
    }
    return std::filesystem::path(VEMRA_SAMPLES) / name;
}

}  // namespace vemra::robot
