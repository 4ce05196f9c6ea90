#include "veltrane/platform/files/filesystem.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>

#include "veltrane/platform/files/detail/missingpath.h"
#include "veltrane/platform/files/internal/nativefile.h"
#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/encoding.h"
#include "veltrane/platform/text/internal/utf8.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

/// @return 0 for A to 25 for Z, case ignored; nothing for any other element
std::optional<std::size_t> DriveIndex(wchar_t drive) noexcept {
    const wchar_t letter = FoldCharacter(drive);
    if (letter < L'a' || letter > L'z' || drive >= 0x80) return std::nullopt;  // the Kelvin sign folds to k
    return static_cast<std::size_t>(letter - L'a');
}

// Appends a wide path, every run of separators as one '/'.
void AppendPath(std::string& name, std::wstring_view path) {
    name.reserve(name.size() + path.size());
    while (!path.empty()) {
        if (IsPathSeparator(path[0])) {
            if (!name.ends_with('/')) name += '/';
            path.remove_prefix(1);
            continue;
        }
        const std::wstring_view component = path.substr(0, path.find_first_of(PATH_SEPARATORS));
        AppendUtf8(name, component);
        path.remove_prefix(component.size());
    }
}

// Appends a path below the folder of a drive, which ".." never leaves.
void AppendBelow(std::string& name, std::wstring_view path) {
    for (int depth = 0; !path.empty();) {
        if (IsPathSeparator(path[0])) {
            path.remove_prefix(std::min(path.find_first_not_of(PATH_SEPARATORS), path.size()));
            if (path.empty() && !name.ends_with('/')) name += '/';
            continue;
        }
        const std::wstring_view component = path.substr(0, path.find_first_of(PATH_SEPARATORS));
        path.remove_prefix(component.size());
        if (component == L".." && depth == 0) continue;
        if (component != L".") depth += component == L".." ? -1 : 1;
        if (!name.ends_with('/')) name += '/';
        AppendPath(name, component);
    }
}

/// Cuts the current folder, in which a backslash is a character, from the front of a full name.
void CutCurrentFolder(std::string& name, std::wstring_view& path) {
    if (path[0] != L'/' || path.find(L'\\') == path.npos) return;
    const CString folder = CurrentFolder();
    const std::wstring_view view = folder.View();
    if (view.find(L'\\') == view.npos || !path.starts_with(view) || path.size() == view.size()) return;
    if (path[view.size()] != L'/') return;
    name = ToUtf8(folder);
    path.remove_prefix(view.size());
}

using Drives = std::array<std::string, 26>;

void SetDrive(Drives& drives, wchar_t drive, const CString& folder) {
    const auto index = DriveIndex(drive);
    if (!index) return;
    drives[*index].clear();
    if (folder.Find(L'\0') < 0) AppendPath(drives[*index], folder.View());
}

// "C=/srv/c;D=/data"; entries of any other form are ignored.
Drives ReadDrives() {
    Drives drives;
    const char* const variable = std::getenv("VORNAK_DRIVES");
    CString rest = FromUtf8(variable ? variable : "");
    while (!rest.IsEmpty()) {
        const int end = rest.Find(L';');
        CString entry = end < 0 ? rest : rest.Left(end);
        rest = end < 0 ? CString{} : rest.Mid(end + 1);
        entry.TrimLeft();
        if (entry[1] == L'=') SetDrive(drives, entry[0], entry.Mid(2));
    }
    return drives;
}

// Read on first need; never destroyed, since objects that end late may still open files.
Drives& DriveFolders() {
    static Drives& drives = *new Drives{ReadDrives()};
    return drives;
}

}  // namespace

void veltrane::SetDriveFolder(wchar_t drive, const CString& folder) {
    SetDrive(DriveFolders(), drive, folder);
}

CString veltrane::CurrentFolder() {
    const std::unique_ptr<char, decltype(&std::free)> name{getcwd(nullptr, 0), std::free};
    return FromUtf8(name ? name.get() : "");
}

std::string veltrane::SpelledPath(CStringView path) {
    std::wstring_view rest = path.View();
    if (rest.empty() || rest.find(L'\0') != std::wstring_view::npos) return {};
    std::string name;
    const auto drive = rest.size() > 1 && rest[1] == L':' ? DriveIndex(rest[0]) : std::nullopt;
    if (drive) {
        name = DriveFolders()[*drive];
        if (!name.empty()) AppendBelow(name, rest.substr(2));
    } else {
        CutCurrentFolder(name, rest);
        AppendPath(name, rest);
    }
    return name;
}

std::string veltrane::MapPath(const CString& path) {
    std::string spelled = SpelledPath(path);
    return spelled.empty() || IsEntry(spelled) ? spelled : MapMissingPath(spelled);
}

bool CreateDirectoryW(const CString& path, const void* /*security*/) {
    const std::string name = MapPath(path);
    return !name.empty() && Retried([&] { return mkdir(name.c_str(), 0777); }) == 0;
}
