#include "robot/base/output_file.h"

#include <fstream>
#include <system_error>

#include "robot/base/input_error.h"

namespace vemra::robot {

void writeFile(const std::filesystem::path& file, std::string_view bytes)
{
    std::filesystem::path part = file;
    part += ".part";
    std::ofstream out(part, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    std::error_code fault;
    if (out) {
        std::filesystem::rename(part, file, fault);
    }
    if (!out || fault) {
        std::error_code ignored;
        std::filesystem::remove(part, ignored);
        throw InputError(file.string(), 0, "cannot be written");
    }
}

}  // namespace vemra::robot
