#include "console.h"

#include <iostream>

#include "veltrane/foundation/xraise.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;

namespace {

constexpr XSource Here{L".\\console"};

int ShowOnConsole(const CString& text, unsigned style, unsigned /*helpId*/) {
    CString lines = text;
    lines.Replace(L"\r\n", L"\n");
    if (lines[lines.GetLength() - 1] != L'\n') lines += L'\n';
    (style == MB_ICONINFORMATION ? std::cout : std::cerr) << ToUtf8(lines) << std::flush;
    return 1;
}

}  // namespace

void PrintLine(const CString& line) {
    if (!(std::cout << ToUtf8(line) << '\n')) {
        throw MakeError(Here(L"PrintLine"), L"The standard output can not be written!");
    }
}

void UseConsoleBoxes() {
    SetMessageBoxHandler(ShowOnConsole);
}
