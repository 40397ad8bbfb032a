#include "app/trees/elf_file.h"

#include <elf.h>

#include <cstring>
#include <fstream>
#include <system_error>

namespace vemra::app {
namespace {

template <class T>
bool read(std::ifstream& in, std::uint64_t at, T& out)
{
    in.seekg(static_cast<std::streamoff>(at));
    in.read(reinterpret_cast<char*>(&out), sizeof(T));
    return in.gcount() == sizeof(T);
}

bool within(std::uint64_t at, std::uint64_t length, std::uint64_t size)
{
    return at <= size && length <= size - at;
}

}  // namespace

bool isTruncatedLibrary(const std::filesystem::path& file)
{
    std::error_code fault;
    const std::uint64_t size = std::filesystem::file_size(file, fault);
    std::ifstream in(file, std::ios::binary);
    Elf64_Ehdr head{};
    if (fault || !read(in, 0, head) || std::memcmp(head.e_ident, ELFMAG, SELFMAG) != 0 ||
        head.e_ident[EI_CLASS] != ELFCLASS64)
        return false;
    // The table of sections stands last in a library as a linker writes it.
    if (!within(head.e_shoff, std::uint64_t{head.e_shnum} * head.e_shentsize, size))
        return true;
    for (int i = 0; i < head.e_phnum; ++i) {
        Elf64_Phdr segment{};
        if (!read(in, head.e_phoff + std::uint64_t(i) * head.e_phentsize, segment) ||
            !within(segment.p_offset, segment.p_filesz, size))
            return true;
    }
    return false;
}

}  // namespace vemra::app
