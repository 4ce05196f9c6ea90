#pragma once

#include <sys/mman.h>
#include <unistd.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "veltrane/platform/text/encoding.h"

/// Ends the run with a report if a condition does not hold.
#define REQUIRE(condition)                                                                 \
    do {                                                                                   \
        if (!(condition)) {                                                                \
            std::fprintf(stderr, "%s:%d: not true: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                  \
        }                                                                                  \
    } while (false)

inline std::string_view InputText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Cuts off the first line of an input and returns it without its end.
inline std::string_view NextLine(std::string_view& input) {
    const std::size_t end = input.find('\n');
    const std::string_view line = input.substr(0, end);
    input.remove_prefix(end == input.npos ? input.size() : end + 1);
    return line;
}

/// A file in memory, with new contents for each input.
class MemoryFile {
public:
    void Write(std::string_view bytes) const {
        REQUIRE(m_Handle >= 0 && ftruncate(m_Handle, 0) == 0);
        REQUIRE(pwrite(m_Handle, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
    }
    CString Name() const { return veltrane::FromUtf8("/proc/self/fd/" + std::to_string(m_Handle)); }

private:
    int m_Handle = memfd_create("input", MFD_CLOEXEC);
};
