// A process of its own for what is read once in a process: writes where paths lead ("drives" in front), else the
// arguments that the library sees.
#include <iostream>

#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;

int main(int count, char** words) {
    const bool areDrives = count > 1 && words[1] == std::string{"drives"};
    for (int i = 2; areDrives && i < count; ++i) std::cout << SpelledPath(FromUtf8(words[i])) << '|';
    for (const CString& argument : GetArguments()) {
        if (!areDrives) std::cout << ToUtf8(argument) << '\0';
    }
}
