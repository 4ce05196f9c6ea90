#include "printable.h"

namespace veltrane::detail {

CString Printable(const CString& text) {
    CString line;
    for (const wchar_t element : text.View()) {
        const bool isControl = IsBelowBlank(element) || element == 0x7F;
        line += isControl ? FormatText(L"\\x%02x", static_cast<unsigned>(element)) : std::wstring(1, element);
    }
    return line;
}

}  // namespace veltrane::detail
