#include "veltrane/platform/files/cfile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/files/nativefile.h"
#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

bool Exists(const std::string& name) noexcept {
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

// Components stand in the result with the separators behind them, as they were given.
CString WithoutDots(const CString& path) {
    const std::size_t root = RootLength(path.View());
    std::wstring result{path.View().substr(0, root)};
    std::wstring_view rest = path.View().substr(root);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of(PATH_SEPARATORS), rest.size());
        const std::size_t next = std::min(rest.find_first_not_of(PATH_SEPARATORS, end), rest.size());
        const std::wstring_view component = rest.substr(0, end);
        const bool isDots = component == L"." || component == L"..";
        if (component == L"..") {
            const std::size_t last = result.find_last_not_of(PATH_SEPARATORS);
            const std::size_t before = last == std::wstring::npos ? 0 : result.find_last_of(PATH_SEPARATORS, last) + 1;
            result.resize(std::max(root, before));
        }
        if (!isDots) result += rest.substr(0, next);
        // Dots at the very end name the folder itself, so the separator in front of them goes too.
        if (isDots && end == rest.size()) result.resize(std::max(root, result.find_last_not_of(PATH_SEPARATORS) + 1));
        rest.remove_prefix(next);
    }
    return CString{std::move(result)};
}

CString CurrentFolder() {
    struct Free {
        void operator()(char* text) const noexcept { std::free(text); }
    };
    const std::unique_ptr<char, Free> name{getcwd(nullptr, 0)};
    return FromUtf8(name ? name.get() : "");
}

CString FullName(const CString& path) {
    if (RootLength(path.View()) > 0) return WithoutDots(path);
    CString full = CurrentFolder();
    if (!full.IsEmpty() && full[full.GetLength() - 1] != L'/') full += L'/';
    full += path;
    full.Replace(L'\\', L'/');
    return WithoutDots(full);
}

}  // namespace

bool CFile::GetStatus(const CString& path, CFileStatus& status) {
    if (!Exists(SpelledPath(path)) && !Exists(MapPath(path))) return false;
    status.m_szFullName = FullName(path);
    return true;
}
