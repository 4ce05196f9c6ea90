#include "veltrane/options/detail/optiontable.h"
#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/process/messagebox.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr int SEPARATOR_WIDTH = 207;

}  // namespace

void ShowHelp() {
    const CString separator{L'-', SEPARATOR_WIDTH};
    CString text =
        L"Synopsis: Veltrane [options] <database-name>\r\n\r\n"
        L"where [options] is one or more of:\r\n";
    text += separator + L"\r\n";
    for (const XOptionDefinition& row : g_OptionDefinitions) {
        if (!row.IsHelpVisible()) continue;
        const std::wstring_view syntax = row.szSyntax;
        text += syntax == L"--" ? FormatText(L"%s%s", separator, L"\r\n")
                                : FormatText(L"%s\t%s%s", syntax, row.szDescription, L"\r\n");
    }
    AfxMessageBox(text, MB_ICONINFORMATION);
}
