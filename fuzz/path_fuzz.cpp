// Input: a line with the folder of drive C in the tree ("" for none), one with a path and one with a name. The parts of
// the path, and the file that it leads to in a small tree whose names differ only in case, are compared with a walk
// that reads every folder.
#include <cctype>
#include <filesystem>

#include "fuzz_program.h"
#include "fuzz_text.h"
#include "veltrane/foundation/xpath.h"
#include "veltrane/platform/files/cfile.h"
#include "veltrane/platform/files/filesystem.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

bool IsSeparator(wchar_t element) {
    return element == L'\\' || element == L'/';
}

std::vector<Text> ComponentsOf(const Text& path) {
    std::vector<Text> components(1);
    for (const wchar_t element : path) {
        if (IsSeparator(element)) components.emplace_back();
        if (!IsSeparator(element)) components.back() += element;
    }
    std::erase(components, Text{});
    return components;
}

bool IsThere(const std::string& name) {
    struct stat ignored {};
    return lstat(name.c_str(), &ignored) == 0;
}

/// The entry of a folder that a component stands for; the component itself without one.
std::string EntryFor(const std::string& folder, const Text& component) {
    const std::string spelled = ToUtf8(component);
    if (IsThere(folder + spelled)) return spelled;
    std::string best;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator{folder.empty() ? "." : folder, ignored}) {
        const std::string name = entry.path().filename().string();
        if (Folded(Text{FromUtf8(name).View()}) != Folded(component)) continue;
        if (best.empty() || name < best) best = name;
    }
    return best.empty() ? spelled : best;
}

/// What a path leads to; empty for one that cannot exist.
std::string Expected(Text path, const std::string& drive) {
    if (path.empty() || path.find(L'\0') != path.npos) return {};
    const bool isDrive = path.size() > 1 && path[1] == L':' && path[0] < 0x80 && std::isalpha(path[0]);
    if (isDrive && (drive.empty() || FoldCharacter(path[0]) != L'c')) return {};
    if (isDrive) path.erase(0, 2);
    std::vector<Text> components;
    for (const Text& component : ComponentsOf(path)) {
        const auto depth = static_cast<std::ptrdiff_t>(components.size()) - std::ranges::count(components, L".") -
                           2 * std::ranges::count(components, L"..");
        if (!isDrive || component != L".." || depth > 0) components.push_back(component);
    }
    std::string name = isDrive ? drive : "";
    const bool isRooted = isDrive || IsSeparator(path[0]);
    bool isLost = false;  // from the first component on that is not there all stay as spelled
    for (std::size_t i = 0; i < components.size(); ++i) {
        if (isRooted || i > 0) name += '/';
        const std::string entry = isLost ? ToUtf8(components[i]) : EntryFor(name, components[i]);
        name += entry;
        isLost = isLost || !IsThere(name);
    }
    const bool endsInSeparator = !path.empty() && IsSeparator(path.back());
    return endsInSeparator ? name + '/' : name;
}

void RequireParts(const CString& path, const CString& name) {
    CString folder;
    CString last;
    SplitFileName(folder, last, path);
    const int at = folder.GetLength();
    REQUIRE(last.View().find_first_of(L"\\/") == std::wstring_view::npos);
    REQUIRE(path == last || (IsSeparator(path[at]) && path == folder + path[at] + last));
    REQUIRE(last.IsEmpty() || (GetFileName(path) == last && GetPath(path) == folder));
    REQUIRE(GetFileNameBase(path) + (path.Find(L'.') < 0 ? CString{} : GetFileNameExtension(path)) == path);
    const CString built = BuildFileName(path, name);
    REQUIRE(built.Right(name.GetLength()) == name);
    REQUIRE(built == name || built.GetLength() - path.GetLength() - name.GetLength() <= 1);
    REQUIRE(built == name || built.Left(path.GetLength()) == path);
    REQUIRE(IsAbsolutePath(path) == (path[0] == L'/' || path.Find(L':') >= 0));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ProgramFolder folder;
    static const bool isMade = [] {
        for (const char* name : {"Data", "data", "DATA", "Data/Sub", "data/x y",
                                 "stra\xC3\x9F"
                                 "e",
                                 "odd\xFF"}) {
            std::filesystem::create_directory(folder.Native() / name);
        }
        for (const char* name : {"Data/File.txt", "Data/FILE.TXT", "data/x y/z", "Data/Sub/\xC3\xA4", "data/b\\s"}) {
            folder.Write(name, "");
        }
        std::filesystem::create_symlink("Data/Sub", folder.Native() / "link");
        std::filesystem::create_symlink("nothing", folder.Native() / "dangling");
        return true;
    }();
    REQUIRE(isMade);
    std::string_view input = InputText(data, size);
    const std::string drive{NextLine(input)};
    const CString path = FromUtf8(NextLine(input));
    const CString name = FromUtf8(NextLine(input));
    RequireParts(path, name);

    const bool hasDrive = drive == "Data" || drive == "data/" || drive == ".";
    const std::string root = folder.Native().string();
    const std::string at = hasDrive ? (folder.Native() / drive).lexically_normal().string() : std::string{};
    const std::string driveFolder = at.ends_with('/') ? at.substr(0, at.size() - 1) : at;
    SetDriveFolder(L'C', FromUtf8(driveFolder));
    for (const CString& each : {path, CString{FromUtf8(root) + L"/" + path}, CString{L"c:" + path}}) {
        const std::string expected = Expected(Text{each.View()}, driveFolder);
        REQUIRE(MapPath(each) == expected);
        struct stat status {};
        const bool isThere = !expected.empty() && stat(expected.c_str(), &status) == 0;
        REQUIRE(FileExists(each) == isThere);
    }
    return 0;
}
