// Input: the basic file, then the user file and the registry file, each after a line "====". The title of the section
// AUTODOC is retrieved with all its references; what comes out is short enough, holds no reference any more, or is an
// error of the system.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "fuzz_input.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/sources/winreg.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr std::string_view SEPARATOR = "\n====\n";

// The folder of a program whose configuration changes with each input.
class ProgramFolder {
public:
    ProgramFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "veltrane-fuzz-XXXXXX").string();
        REQUIRE(mkdtemp(name.data()) != nullptr);
        m_Path = name;
        std::filesystem::create_directories(m_Path / ".metadata");
    }
    ProgramFolder(const ProgramFolder&) = delete;
    ProgramFolder& operator=(const ProgramFolder&) = delete;
    ~ProgramFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }

    CString Write(const char* name, std::string_view bytes) const {
        std::ofstream{m_Path / name, std::ios::binary} << bytes;
        return FromUtf8((m_Path / name).string());
    }
    CString Path() const { return FromUtf8(m_Path.string()); }

private:
    std::filesystem::path m_Path;
};

std::string_view TakePart(std::string_view& input) {
    const std::size_t end = input.find(SEPARATOR);
    const std::string_view part = input.substr(0, end);
    input.remove_prefix(end == input.npos ? input.size() : end + SEPARATOR.size());
    return part;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ProgramFolder folder;
    std::string_view input = InputText(data, size);
    folder.Write(".metadata/tool.ini", TakePart(input));
    const CString userFile = folder.Write("user.ini", TakePart(input));
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
    return 0;
}
