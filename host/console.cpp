#include "console.h"

#include <iostream>

#include "veltrane/foundation/xraise.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;

namespace {

constexpr XSource Here{L".\\console"};

}  // namespace

void PrintLine(const CString& line) {
    if (!(std::cout << ToUtf8(line) << '\n')) {
        throw MakeError(Here(L"PrintLine"), L"The standard output cannot be written!");
    }
}

void UseConsoleBoxes() {
    SetMessageBoxHandler([](const CString& text, unsigned style, unsigned /*helpId*/) {
        WriteToConsole(text, style);
        return 1;
    });
}
