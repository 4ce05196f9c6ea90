#include "askedoption.h"

#include "request.h"
#include "veltrane/foundation/nearest.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/text/numbers.h"

namespace veltrane::config {

using namespace detail;

namespace {

/// How the value that a key of a file gives to a family is named here; empty if it gives none.
CString LabelOfKey(const CString& key) {
    const int hyphen = key.ReverseFind(L'-');
    int index = 0;
    if (hyphen < 1 || !ScanInteger(key.Mid(hyphen + 1).View(), index)) return {};
    const XOptionDefinition* const row = FindOptionDefinition(key.Left(hyphen));
    const bool isFamily = row && row->eOption != eOptionTitle && !row->IsSingle();
    return isFamily ? LabelOf(*row, index) : CString{};
}

}  // namespace

AskedOption ParseOption(const std::string& word) {
    CString name = FromUtf8(word);
    std::optional<int> index;
    const int bracket = name.Find(L'[');
    if (int number = 0; bracket > 0 && ScanInteger(name.Mid(bracket + 1).View(), number)) {
        index = number;
        name = name.Left(bracket);
    }
    const XOptionDefinition* const row = FindOptionDefinition(name);
    const bool isOption = row && row->eOption != eOptionTitle;
    if (isOption && index && row->IsSingle()) {
        throw Refusal{FormatText(L"'%s' has only one value; leave out the index", name)};
    }
    if (isOption) return {row, index};
    if (const CString label = LabelOfKey(name); !label.IsEmpty()) {
        throw Refusal{FormatText(L"unknown option '%s'; write '%s'", name, label)};
    }
    const wchar_t* const otherwise = GetArguments().size() == 1 ? FORGOTTEN_HYPHENS : L"";
    throw Refusal{FormatText(L"unknown option '%s'%s", name, NearestHint(NearestOption(name), otherwise))};
}

CString NearestOption(const CString& name) {
    std::vector<CString> names;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) names.emplace_back(row->szLongName);
    return Nearest(name, names);
}

bool IsRule(const XOptionDefinition& row) {
    return row.eOption == eOptionTableNameRules || row.eOption == eOptionColumnNameRules;
}

CString LabelOf(const XOptionDefinition& row, int index) {
    return row.IsSingle() || index < 0 ? CString{row.szLongName}
                                       : CString{FormatText(L"%s[%d]", row.szLongName, index)};
}

}  // namespace veltrane::config
