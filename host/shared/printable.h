#pragma once

#include <cstdint>

#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// Whether an element of text is a control character below the blank, whichever sign wide elements have.
constexpr bool IsBelowBlank(wchar_t element) {
    return static_cast<std::uint32_t>(element) < 0x20;
}

/// The text on one line: what would end it, or move the cursor, is shown as its number.
CString Printable(const CString& text);

}  // namespace veltrane::detail
