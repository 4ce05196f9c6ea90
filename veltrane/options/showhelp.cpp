#include "veltrane/foundation/xpath.h"
#include "veltrane/options/detail/help.h"
#include "veltrane/options/detail/optionlookup.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/process/process.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr int SEPARATOR_WIDTH = 207;

// A tool with only some of the library's rows is not the tool that their texts name.
CString ForTool(CString text, const CString& tool) {
    if (!OptionRegistry::Library().HasAll()) text.Replace(L"Veltrane", tool);
    return text;
}

CString HelpHead(const CString& tool) {
    const OptionRegistry* const own = OptionRegistry::Registered();
    const wchar_t* const head = own ? own->HelpHead() : nullptr;
    return head ? head : ForTool(L"Synopsis: Veltrane [options] <database-name>\r\n\r\n", tool);
}

}  // namespace

CString DescribeOption(const XOptionDefinition& row, const CString& tool) {
    const bool isOfLibrary = OptionRow(row) < OPTION_COUNT;
    return isOfLibrary ? ForTool(row.szDescription, tool) : row.szDescription;
}

void ShowHelp() {
    const std::vector<CString> words = GetArguments();
    ShowHelpOf(words.empty() ? CString{} : GetFileName(words[0]));
}

namespace veltrane::detail {

void ShowHelpOf(const CString& tool) {
    const CString separator{L'-', SEPARATOR_WIDTH};
    CString text = HelpHead(tool) + L"where [options] is one or more of:\r\n" + separator + L"\r\n";
    for (int i = 0; const XOptionDefinition* const row = GetOptionDefinitionAt(i); ++i) {
        if (!row->IsHelpVisible()) continue;
        const std::wstring_view syntax = row->szSyntax;
        text += syntax == L"--" ? FormatText(L"%s%s", separator, L"\r\n")
                                : FormatText(L"%s\t%s%s", syntax, DescribeOption(*row, tool), L"\r\n");
    }
    AfxMessageBox(text, MB_ICONINFORMATION);
}

}  // namespace veltrane::detail
