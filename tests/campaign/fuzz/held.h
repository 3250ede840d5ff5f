// What the fuzzing of several readers shares: how a finding is told, texts that a terminal takes, files in
// memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace held {

inline void require(bool holds, const char* what, std::string_view about = {})
{
    if (!holds) {
        fprintf(stderr, "found: %s: %.*s\n", what, static_cast<int>(about.size()), about.data());
        abort();
    }
}

// One line of UTF-8 without control characters. Written apart from what the programs print with.
inline bool isPrintable(std::string_view text)
{
    for (size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i]);
        const size_t more = first < 0x80 ? 0 : first < 0xC0 ? 9 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
        if (more == 9 || first >= 0xF8 || i + more >= text.size())
            return false;
        uint32_t point = more == 0 ? first : first & (0x3Fu >> more);
        for (size_t k = 1; k <= more; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0) != 0x80)
                return false;
            point = point << 6 | (next & 0x3F);
        }
        constexpr uint32_t kLowest[] = {0, 0x80, 0x800, 0x10000};
        if (point < kLowest[more] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF))
            return false;
        if ((point < 0x20 && point != '\t') || (point >= 0x7F && point < 0xA0))
            return false;
        i += more + 1;
    }
    return true;
}

// A file that is nowhere but in memory.
class File {
public:
    explicit File(std::string_view bytes) : m_fd(memfd_create("fuzz", MFD_CLOEXEC))
    {
        require(m_fd >= 0 && write(m_fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
                "no file");
    }
    ~File() { close(m_fd); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_fd); }

private:
    int m_fd;
};

} // namespace held
