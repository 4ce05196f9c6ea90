#include "nameline.h"

#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/encoding.h"
#include "veltrane/platform/text/numbers.h"

namespace veltrane::detail {

namespace {

// Takes a word and the blanks after it off the front of a line.
bool TakeWord(CString& line, const CString& word) {
    if (line.Left(word.GetLength()) != word || !IsWhiteSpace(line[word.GetLength()])) return false;
    line = line.Mid(word.GetLength()).TrimLeft();
    return true;
}

bool IsNumber(const CString& text) {
    return !text.IsEmpty() && text.View().find_first_not_of(L"0123456789") == std::wstring_view::npos;
}

}  // namespace

CString NameLineText(std::string_view bytes, bool isFirst) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (isFirst && bytes.starts_with(mark)) bytes.remove_prefix(mark.size());
    return FromUtf8(bytes).Trim();
}

bool IsBlankNameLine(const CString& text) {
    return text.IsEmpty() || text[0] == L';';
}

std::optional<NameLine> ReadNameLine(const CString& text) {
    CString rest = text;
    if (TakeWord(rest, L"table")) return NameLine{NameLine::Kind::Table, rest};
    if (TakeWord(rest, L"column")) return NameLine{NameLine::Kind::Column, rest};
    if (TakeWord(rest, L"version") && IsNumber(rest)) return NameLine{NameLine::Kind::Version, {}, _wtoi(rest)};
    return {};
}

}  // namespace veltrane::detail
