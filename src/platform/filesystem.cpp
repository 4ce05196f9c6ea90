#include "platform/filesystem.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>

#include "platform/characters.h"
#include "platform/detail/folderstate.h"
#include "platform/detail/nativefile.h"
#include "platform/detail/utf8.h"
#include "platform/encoding.h"

namespace {

constexpr bool IsSeparator(wchar_t element) noexcept {
    return element == L'\\' || element == L'/';
}

/// @return 0 for A to 25 for Z, case ignored; nothing for any other element
std::optional<std::size_t> DriveIndex(wchar_t drive) noexcept {
    const wchar_t letter = FoldCharacter(drive);
    if (letter < L'a' || letter > L'z' || drive >= 0x80) return std::nullopt;  // the Kelvin sign folds to k
    return static_cast<std::size_t>(letter - L'a');
}

// Appends a wide path, every run of separators as one '/'.
void AppendPath(std::string& name, std::wstring_view path) {
    name.reserve(name.size() + path.size());
    for (const wchar_t& element : path) {
        if (IsSeparator(element)) {
            if (!name.ends_with('/')) name += '/';
        } else if (IsAscii(element)) {
            name += static_cast<char>(element);
        } else {
            AppendUtf8(name, {&element, 1});
        }
    }
}

using Drives = std::array<std::string, 26>;

void SetDrive(Drives& drives, wchar_t drive, const CString& folder) {
    const auto index = DriveIndex(drive);
    if (!index) return;
    drives[*index].clear();
    if (folder.Find(L'\0') < 0) AppendPath(drives[*index], folder.View());
}

// "C=/srv/c;D=/data"; what is not of this form is passed over.
Drives ReadDrives() {
    Drives drives;
    const char* const variable = std::getenv("VORNAK_DRIVES");
    CString rest = FromUtf8(variable ? variable : "");
    while (!rest.IsEmpty()) {
        const int end = rest.Find(L';');
        const CString entry = end < 0 ? rest : rest.Left(end);
        rest = end < 0 ? CString{} : rest.Mid(end + 1);
        if (entry[1] == L'=') SetDrive(drives, entry[0], entry.Mid(2));
    }
    return drives;
}

// Read on first need; never destroyed, since objects that end late may still open files.
Drives& DriveFolders() {
    static Drives& drives = *new Drives{ReadDrives()};
    return drives;
}

bool Exists(const std::string& name) noexcept {
    struct stat status;
    return Retried([&] { return lstat(name.c_str(), &status); }) == 0;
}

std::wstring Folded(std::string_view name) {
    return std::wstring{FromUtf8(name).MakeLower().View()};
}

// Compares as it decodes: a folder may hold many names, and most differ at once.
bool FoldsTo(std::string_view name, std::wstring_view folded) noexcept {
    for (; !name.empty() && !folded.empty(); folded.remove_prefix(1)) {
        const auto [element, length] = ReadElement(name);
        if (FoldCharacter(element) != folded.front()) return false;
        name.remove_prefix(length);
    }
    return name.empty() && folded.empty();
}

std::string FolderName(const std::string& name) {
    return name.empty() ? "." : name;
}

/// A path that was looked for in vain, and the folder that holds nothing of the next name, as it was before the look. A
/// configuration that is not there is asked for with every option: as long as the folder has not changed, its state
/// answers instead of a look at all its entries.
struct MissingPath {
    std::string path;
    std::string folder;
    FolderState state;
};

MissingPath& LastMissing() {
    static MissingPath& last = *new MissingPath;  // never destroyed, as the drives
    return last;
}

void RememberMissing(const std::string& spelled, const std::string& folder, const FolderState& before) {
    if (!before.IsSettled() || !spelled.starts_with(folder) || !ShowsItsChanges(FolderName(folder))) return;
    LastMissing() = {spelled, FolderName(folder), before};
}

/// The entry of a folder that differs in case only, the first in byte order, empty when there is none; nothing when the
/// folder can not be read to its end.
std::optional<std::string> EntryOf(const std::string& folder, std::string_view component) {
    struct Close {
        void operator()(DIR* directory) const noexcept { closedir(directory); }
    };
    const std::unique_ptr<DIR, Close> directory{opendir(FolderName(folder).c_str())};
    if (!directory) return std::nullopt;
    const std::wstring folded = Folded(component);
    std::string best;
    for (errno = 0; const dirent* const entry = readdir(directory.get()); errno = 0) {
        const std::string_view name = entry->d_name;
        if (FoldsTo(name, folded) && (best.empty() || name < best)) best = name;
    }
    return errno == 0 ? std::optional{best} : std::nullopt;
}

}  // namespace

void SetDriveFolder(wchar_t drive, const CString& folder) {
    SetDrive(DriveFolders(), drive, folder);
}

std::string SpelledPath(CStringView path) {
    std::wstring_view rest = path.View();
    if (rest.empty() || rest.find(L'\0') != std::wstring_view::npos) return {};
    std::string name;
    if (rest.size() > 1 && rest[1] == L':') {
        if (const auto drive = DriveIndex(rest[0])) {
            name = DriveFolders()[*drive];
            if (name.empty()) return {};
            rest.remove_prefix(2);
            if (!rest.empty() && !IsSeparator(rest[0]) && !name.ends_with('/')) name += '/';
        }
    }
    AppendPath(name, rest);
    return name;
}

std::string MapPath(const CString& path) {
    std::string spelled = SpelledPath(path);
    return spelled.empty() || Exists(spelled) ? spelled : MapMissingPath(spelled);
}

bool IsStillMissing(const std::string& spelled) noexcept {
    const MissingPath& last = LastMissing();
    return spelled == last.path && FolderState{last.folder} == last.state;
}

std::string MapMissingPath(const std::string& spelled) {
    std::string name;
    for (std::string_view rest = spelled; !rest.empty();) {
        const std::size_t end = std::min(rest.find('/'), rest.size());
        const std::string_view component = rest.substr(0, end);
        const std::string exact = name + std::string{component};
        if (component.empty() || Exists(exact)) {
            name = exact;
        } else {
            const bool isMissing = IsMissing(errno);
            const FolderState before{FolderName(name)};
            const auto entry = isMissing ? EntryOf(name, component) : std::nullopt;
            if (entry && entry->empty()) RememberMissing(spelled, name, before);
            if (!entry || entry->empty()) return name.append(rest);
            name += *entry;
        }
        rest.remove_prefix(end);
        if (rest.empty()) break;
        name += '/';
        rest.remove_prefix(1);
    }
    return name;
}

bool CreateDirectoryW(const CString& path, const void* /*security*/) {
    const std::string name = MapPath(path);
    return !name.empty() && Retried([&] { return mkdir(name.c_str(), 0777); }) == 0;
}
