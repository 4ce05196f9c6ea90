#include "veltrane/platform/files/cfile.h"

#include <sys/stat.h>

#include <algorithm>

#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/files/internal/nativefile.h"
#include "veltrane/platform/files/internal/replacement.h"
#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

bool LeadsToAFile(const std::string& name) noexcept {
    struct stat status;
    return !name.empty() && Retried([&] { return stat(name.c_str(), &status); }) == 0;
}

/// Length of the part that ".." never leaves: "X:" and the separators in front.
std::size_t RootLength(std::wstring_view path) noexcept {
    const bool hasDrive = path.size() >= 2 && path[1] == L':' && IsAscii(path[0]) && FoldCharacter(path[0]) >= L'a' &&
                          FoldCharacter(path[0]) <= L'z';
    const std::size_t drive = hasDrive ? 2 : 0;
    return std::min(path.find_first_not_of(PATH_SEPARATORS, drive), path.size());
}

bool IsLink(const std::wstring& path) {
    struct stat status;
    const std::string name = MapPath(CString{std::wstring_view{path}});
    return Retried([&] { return lstat(name.c_str(), &status); }) == 0 && S_ISLNK(status.st_mode);
}

// Removes the last component unless ".." leads elsewhere from it: from a link, or from a ".." that stayed.
bool RemoveLast(std::wstring& result, std::size_t root, std::wstring_view separators) {
    const std::size_t last = result.find_last_not_of(separators);
    if (last == std::wstring::npos || last < root) return true;  // nothing is above the root
    const std::size_t before = std::max(root, result.find_last_of(separators, last) + 1);
    const std::wstring prefix = result.substr(0, last + 1);
    if (std::wstring_view{prefix}.substr(before) == L".." || IsLink(prefix)) return false;
    result.resize(before);
    return true;
}

// Components stand in the result with the separators after them, as they were given.
CString WithoutDots(std::wstring_view path, std::size_t root, std::wstring_view separators) {
    std::wstring result{path.substr(0, root)};
    for (std::wstring_view rest = path.substr(root); !rest.empty();) {
        const std::size_t end = std::min(rest.find_first_of(separators), rest.size());
        const std::size_t next = std::min(rest.find_first_not_of(separators, end), rest.size());
        const std::wstring_view component = rest.substr(0, end);
        const bool isResolved = component == L"." || (component == L".." && RemoveLast(result, root, separators));
        if (!isResolved) result += rest.substr(0, next);
        // Dots at the very end name the folder itself, so the separator in front of them goes too.
        if (isResolved && end == rest.size()) result.resize(std::max(root, result.find_last_not_of(separators) + 1));
        rest.remove_prefix(next);
    }
    return CString{std::move(result)};
}

CString FullName(const CString& path) {
    if (const std::size_t root = RootLength(path.View())) return WithoutDots(path.View(), root, PATH_SEPARATORS);
    CString relative = path;
    relative.Replace(L'\\', L'/');
    const CString folder = CurrentFolder();
    const bool isTop = folder.IsEmpty() || folder[folder.GetLength() - 1] == L'/';
    return WithoutDots((folder + (isTop ? L"" : L"/") + relative).View(), folder.IsEmpty() ? 0 : 1, L"/");
}

}  // namespace

bool CFile::GetStatus(const CString& path, CFileStatus& status) {
    const bool isThere =
        LeadsToAFile(SpelledPath(path)) || LeadsToAFile(MapPath(path)) || SourceReplacement::Find(path);
    if (!isThere) return false;
    status.m_szFullName = FullName(path);
    return true;
}
