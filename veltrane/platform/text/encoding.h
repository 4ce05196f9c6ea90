#pragma once

#include <string>
#include <string_view>

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// UTF-8 of a text. An element U+DC80..U+DCFF gives back the byte that FromUtf8 made it of; other lone surrogates take
/// three bytes each, and an element that is not a code point becomes U+FFFD.
VELTRANE_API std::string ToUtf8(CStringView text);

/// Text of UTF-8 bytes, read strictly: no overlong forms, no surrogates. A byte that starts no valid sequence becomes
/// the element U+DC00 + byte, so any bytes (arguments, environment, file names) come back unchanged from ToUtf8.
VELTRANE_API CString FromUtf8(std::string_view bytes);

}  // namespace veltrane
