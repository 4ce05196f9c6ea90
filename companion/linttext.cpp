// Checks of the text of a value: the words of flags, the numbers of lists, and characters that look like comments or
// quotes.
#include <algorithm>
#include <limits>

#include "lint.h"
#include "nametext.h"
#include "printable.h"
#include "veltrane/platform/text/numbers.h"

namespace veltrane::config {

namespace {

using enum LintCode;

constexpr const wchar_t* REMARK_MARKS[] = {L" ;", L" # "};  // "Ticket #12" is not a remark

// Whether a number is read differently from how it is written.
bool IsTooLarge(const CString& digits) {
    const CString largest = FormatText(L"%d", std::numeric_limits<int>::max());
    const CString number = CString{digits}.TrimLeft(L'0');
    return number.GetLength() > largest.GetLength() || (number.GetLength() == largest.GetLength() && number > largest);
}

// How a list reads a field that is not a plain number; empty for a plain number.
CString FaultOf(const CString& field) {
    const int number = _wtoi(field);
    if (field.IsEmpty()) return L"the list has an empty entry, which is skipped";
    if (number <= 0) return FormatText(L"'%s' is not a positive number and is skipped", Printable(field));
    if (IsNumber(field) && !IsTooLarge(field)) return {};
    return FormatText(L"'%s' is read as %d", Printable(field), number);
}

std::vector<Finding> ListFaults(const CString& value) {
    std::vector<Finding> faults;
    for (int begin = 0; begin < value.GetLength();) {  // an empty text after a last comma is not an entry
        const int comma = value.Find(L',', begin);
        const int end = comma < 0 ? value.GetLength() : comma;
        const CString fault = FaultOf(value.Mid(begin, end - begin).Trim());
        if (!fault.IsEmpty()) faults.push_back({C06, fault});
        begin = end + 1;
    }
    return faults;
}

CString WordFault(const CString& key, const CString& value, const XOptionDefinition& row) {
    const bool isBoolean = row.IsBoolean();
    if (isBoolean ? IsValidBooleanString(value) : IsValidTrillianString(value)) return {};
    const CString shown = Printable(value);
    if (value.Find(L" ;") >= 0 || value.Find(L" #") >= 0) {
        return FormatText(
            L"comments after a value are not supported; the whole text '%s' is used, and %s is taken as %s", shown, key,
            isBoolean ? L"false" : L"auto");
    }
    return isBoolean ? FormatText(L"'%s' is neither 'true' nor 'false'; %s is taken as false", shown, key)
                     : FormatText(L"'%s' is not 'true', 'false' or 'auto'; %s is taken as auto", shown, key);
}

bool IsPath(const CString& text) {
    return text.View().find_first_of(L"./\\") != std::wstring_view::npos;
}

// Whether the rest of a value reads like a remark rather than a part of it: words that go on in small letters, or
// anything but a path after a single path.
bool IsRemark(const CString& before, const CString& rest) {
    const int blank = rest.Find(L' ');
    const bool isSentence = blank > 0 && rest[0] >= L'a' && rest[0] <= L'z';
    const bool isAfterPath = IsPath(before) && before.Find(L' ') < 0 && !IsPath(rest);
    return isSentence || (isAfterPath && !rest.IsEmpty());
}

bool HasRemark(CString value) {
    value.Replace(L"\t", L" ");
    return std::ranges::any_of(REMARK_MARKS, [&](const wchar_t* mark) {
        const int at = value.Find(mark);
        const bool isOnly = value.ReverseFind(mark[1]) == at + 1;
        return at > 0 && isOnly && IsRemark(value.Left(at).Trim(), value.Mid(at + 2).Trim());
    });
}

// A single quote at an end may be an apostrophe, and one after a number may mean inches.
bool HasLoneQuote(const CString& value) {
    const std::wstring_view text = value.View();
    const bool isOpened = text.starts_with(L'"') || text.starts_with(L'\'');
    const bool isClosed =
        text.ends_with(L'"') && (text.size() < 2 || text[text.size() - 2] < L'0' || text[text.size() - 2] > L'9');
    if (!isOpened && !isClosed) return false;
    return std::ranges::count(text, isOpened ? text.front() : text.back()) % 2 == 1;
}

}  // namespace

std::vector<CString> ReferencesOf(const CString& value) {
    std::vector<CString> names;
    for (int open = value.Find(L'%'), close; open >= 0; open = value.Find(L'%', close + 1)) {
        close = value.Find(L'%', open + 1);
        if (close < 0) break;
        names.push_back(value.Mid(open + 1, close - open - 1));
    }
    return names;
}

bool HasReference(const CString& value) {
    return !ReferencesOf(value).empty();
}

std::vector<Finding> CheckText(const CString& key, const CString& value, const XOptionDefinition& row) {
    if (value.IsEmpty() || HasReference(value)) return {};
    if (row.IsIList()) return ListFaults(value);
    const CString fault = row.IsBoolean() || row.IsTrillian() ? WordFault(key, value, row) : CString{};
    return fault.IsEmpty() ? std::vector<Finding>{} : std::vector<Finding>{{C05, fault}};
}

std::optional<Finding> CheckSigns(const CString& value, bool isQuoted) {
    const CString shown = Printable(value);
    if (!isQuoted && HasRemark(value))
        return Finding{C21,
                       FormatText(L"comments after a value are not supported; the whole text '%s' is used", shown)};
    if (!isQuoted && HasLoneQuote(value))
        return Finding{C21, FormatText(L"an unmatched quote in '%s' is part of the value", shown)};
    return {};
}

std::optional<Finding> CheckPercent(const CString& value) {
    if (std::ranges::count(ReferencesOf(value), CString{}) > 0)
        return Finding{C10, L"'%%' does not mean '%'; it is replaced by the list of the section's keys"};
    if (std::ranges::count(value.View(), L'%') % 2 == 0) return {};
    return Finding{C21, FormatText(L"an unmatched '%%' in '%s' is part of the value", Printable(value))};
}

}  // namespace veltrane::config
