#pragma once

#include <cstdint>
#include <string_view>

#include "veltrane/platform/export.h"

namespace veltrane::detail {

/// The front of a text as a number in the order of CString::Compare: of two texts with different numbers, the one with
/// the smaller number is less. Lets a sort compare most texts without reading them.
VELTRANE_API std::uint64_t OrderKey(std::wstring_view text) noexcept;

}  // namespace veltrane::detail
