// Input: the basic file, then the user file and the registry file, each after a line "====". The title of the section
// AUTODOC is retrieved with all its references: the result is short enough and has no reference left, or it is an error
// of the library.
#include <algorithm>

#include "fuzz_program.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/sources/winreg.h"

using namespace veltrane;
using namespace veltrane::detail;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ProgramFolder folder;
    std::string_view input = InputText(data, size);
    folder.Write(".metadata/tool.ini", NextPart(input));
    const CString userFile = folder.Write("user.ini", NextPart(input));
    SetRegistryFile(folder.Write("registry.reg", input));
    SetArguments({L"tool", L"--ini", userFile, L"db"});
    try {
        XOption options;
        options.Initialize(folder.Path(), L"tool", L"", L"", L"");
        options.OpenConfiguration();
        options.RetrieveOption(L"autodoc-title");
        const CString& title = options.GetOptionString(L"autodoc-title", -1);
        REQUIRE(std::ranges::count(title.View(), L'%') <= 1);
        REQUIRE(title.GetLength() <= 1'048'576);
    } catch (const XException& error) {
        REQUIRE(error.GetNumber() == -1 && !error.GetMessage().IsEmpty());
    }
    RemoveFolders();
    return 0;
}
