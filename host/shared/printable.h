#pragma once

#include <cstdint>

#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// Whether an element of text is a control character below the blank, whether wide elements are signed or not.
constexpr bool IsBelowBlank(wchar_t element) {
    return static_cast<std::uint32_t>(element) < 0x20;
}

/// The text on one line: characters that would end it or move the cursor are shown as their numbers.
CString Printable(const CString& text);

}  // namespace veltrane::detail
