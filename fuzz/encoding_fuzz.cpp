// Input: the bytes of a text, also used as the elements of one.
#include <cstring>

#include "fuzz_input.h"

using namespace veltrane;
using namespace veltrane::detail;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = InputText(data, size);
    const CString text = FromUtf8(bytes);
    REQUIRE(ToUtf8(text) == bytes);
    for (const wchar_t element : text.View()) {
        REQUIRE(static_cast<std::uint32_t>(element) <= 0x10FFFF);
        REQUIRE(element < 0xD800 || element > 0xDFFF || (element >= 0xDC80 && element <= 0xDCFF));
    }

    std::wstring elements(size / sizeof(wchar_t), L'\0');
    if (!elements.empty()) std::memcpy(elements.data(), data, elements.size() * sizeof(wchar_t));
    const std::string written = ToUtf8(elements);
    REQUIRE(ToUtf8(FromUtf8(written)) == written);
    return 0;
}
