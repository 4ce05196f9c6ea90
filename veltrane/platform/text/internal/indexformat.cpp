#include "veltrane/platform/text/internal/indexformat.h"

#include <string>

#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/internal/trim.h"
#include "veltrane/platform/text/numbers.h"

namespace veltrane {

using namespace detail;

namespace {

// The one character that the front of a format stands for.
wchar_t CutCharacter(std::wstring_view& format) noexcept {
    const wchar_t character = format[0];
    format.remove_prefix(format.starts_with(L"%%") ? 2 : 1);
    return character;
}

}  // namespace

bool MatchIndex(const CString& item, const CString& format, int& index) {
    std::wstring_view rest = item.View();
    for (std::wstring_view open = format.View(); !open.empty();) {
        if (open.starts_with(L"%d")) return ScanInteger(rest, index);
        if (IsWhiteSpace(open[0])) {
            open = TrimmedLeft(open, IsWhiteSpace);
            rest = TrimmedLeft(rest, IsWhiteSpace);
            continue;
        }
        if (rest.empty() || rest[0] != CutCharacter(open)) return false;
        rest.remove_prefix(1);
    }
    return false;
}

CString FormatIndex(const CString& format, int index) {
    std::wstring text;
    bool isWritten = false;
    for (std::wstring_view open = format.View(); !open.empty();) {
        if (open.starts_with(L"%d") && !isWritten) {
            text += FormatText(L"%d", index);
            open.remove_prefix(2);
            isWritten = true;
        } else {
            text += CutCharacter(open);
        }
    }
    return CString{std::move(text)};
}

}  // namespace veltrane
