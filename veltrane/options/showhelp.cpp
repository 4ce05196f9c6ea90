#include "veltrane/options/detail/optionregistry.h"
#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/process/messagebox.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr int SEPARATOR_WIDTH = 207;

}  // namespace

void ShowHelp() {
    const CString separator{L'-', SEPARATOR_WIDTH};
    const OptionRegistry* const own = OptionRegistry::Registered();
    const wchar_t* const head = own ? own->HelpHead() : nullptr;
    CString text = head ? head : L"Synopsis: Veltrane [options] <database-name>\r\n\r\n";
    text += L"where [options] is one or more of:\r\n" + separator + L"\r\n";
    for (int i = 0; const XOptionDefinition* const row = GetOptionDefinitionAt(i); ++i) {
        if (!row->IsHelpVisible()) continue;
        const std::wstring_view syntax = row->szSyntax;
        text += syntax == L"--" ? FormatText(L"%s%s", separator, L"\r\n")
                                : FormatText(L"%s\t%s%s", syntax, row->szDescription, L"\r\n");
    }
    AfxMessageBox(text, MB_ICONINFORMATION);
}
