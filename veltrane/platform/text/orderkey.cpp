#include "veltrane/platform/text/orderkey.h"

#include <cstddef>

namespace veltrane::detail {

std::uint64_t OrderKey(std::wstring_view text) noexcept {
    constexpr std::size_t ELEMENTS = 9;  // of 7 bits each
    constexpr std::uint32_t BEYOND = 0x7F;
    std::uint64_t key = 0;
    for (std::size_t i = 0; i < ELEMENTS; ++i) {
        const auto element = i < text.size() ? static_cast<std::uint32_t>(text[i]) : 0;
        // Elements outside ASCII are many, so texts that have one here share the largest number from here on.
        if (element >= BEYOND) return ((key + 1) << 7 * (ELEMENTS - i)) - 1;
        key = key << 7 | element;
    }
    return key;
}

}  // namespace veltrane::detail
