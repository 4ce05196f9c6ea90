#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <type_traits>

#include "veltrane/foundation/xraise.h"
#include "veltrane/platform/text/encoding.h"

namespace veltrane {

namespace detail {

inline XException OutputError(const wchar_t* method) {
    constexpr XSource here{L".\\output"};
    return MakeError(here(method), L"The standard output cannot be written!");
}

template <class Part>
void AppendUtf8(std::string& line, const Part& part) {
    if constexpr (std::is_same_v<Part, char>) {
        line += part;
    } else if constexpr (std::is_arithmetic_v<Part>) {
        line += std::to_string(part);
    } else if constexpr (std::is_convertible_v<const Part&, std::string_view>) {
        line += std::string_view{part};
    } else {
        line += ToUtf8(part);
    }
}

}  // namespace detail

/// Writes a line to standard output: numbers, letters and texts, CString or UTF-8. @throws XException  it cannot be
/// written
/// @code
/// PrintLine("unit ", number, ": ", options.Get<"unit">());
/// @endcode
template <class... Parts>
void PrintLine(const Parts&... parts) {
    std::string line;
    (detail::AppendUtf8(line, parts), ...);
    line += '\n';
    if (std::fwrite(line.data(), 1, line.size(), stdout) != line.size()) throw detail::OutputError(L"PrintLine");
}

/// Flushes standard output, including what was written by std::cout unless that was unsynchronised from stdio.
/// @throws XException  that, or a write before it, has failed
inline void FlushOutput() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) throw detail::OutputError(L"FlushOutput");
}

}  // namespace veltrane
