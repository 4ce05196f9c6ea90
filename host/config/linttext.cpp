// Checks of the text of a value: the words of flags, the numbers of lists, comments that are none.
#include "lint.h"
#include "printable.h"

namespace veltrane::config {

namespace {

bool IsNumber(const CString& text) {
    return text.View().find_first_not_of(L"0123456789") == std::wstring_view::npos;
}

// What a list makes of a field that is no plain number; empty for one that is.
CString FaultOf(const CString& field, XOptionDefinition& row) {
    const XOptionItem item{&row, field, 0};
    const XSetInt* const list = item.GetOptionIList();
    if (!list || list->IsEmpty()) return L"'" + Printable(field) + L"' is no positive number and is skipped";
    return IsNumber(field) ? CString{} : FormatText(L"'%s' counts as %d", Printable(field), list->GetConstRefAt(0));
}

CString ListFault(const CString& value, XOptionDefinition row) {
    for (int begin = 0; begin <= value.GetLength();) {
        const int comma = value.Find(L',', begin);
        const int end = comma < 0 ? value.GetLength() : comma;
        CString fault = FaultOf(value.Mid(begin, end - begin).Trim(), row);
        if (!fault.IsEmpty()) return fault;
        begin = end + 1;
    }
    return {};
}

CString WordFault(const CString& key, const CString& value, const XOptionDefinition& row) {
    const bool isWord = row.IsBoolean() ? IsValidBooleanString(value) : IsValidTrillianString(value);
    if (isWord) return {};
    const wchar_t* const words = row.IsBoolean() ? L"'true' or 'false'" : L"'true', 'false' or 'auto'";
    return FormatText(L"'%s' is no %s: %s means %s", Printable(value), words, key,
                      row.IsBoolean() ? L"false" : L"auto");
}

}  // namespace

void LintText(LintRun& run, const LintSource& source, const SourceLine& line, const XOptionDefinition& row) {
    const CString& value = line.value;
    if (value.IsEmpty() || value.Find(L'%') >= 0) return;
    if (value.Find(L" ;") >= 0 || value.Find(L" #") >= 0) {
        const CString text = L"there are no comments behind a value: all of '" + Printable(value) + L"' counts";
        run.Report(source, line, {"C05", Severity::Warning, text});
        return;
    }
    const bool isFlag = row.IsBoolean() || row.IsTrillian();
    const CString fault = isFlag ? WordFault(line.key, value, row) : row.IsIList() ? ListFault(value, row) : CString{};
    if (!fault.IsEmpty()) run.Report(source, line, {isFlag ? "C05" : "C06", Severity::Warning, fault});
}

}  // namespace veltrane::config
