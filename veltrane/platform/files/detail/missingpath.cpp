#include "veltrane/platform/files/detail/missingpath.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <string_view>

#include "veltrane/platform/files/internal/nativefile.h"
#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/encoding.h"
#include "veltrane/platform/text/internal/utf8.h"

namespace veltrane::detail {

namespace {

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

/// Calls visit(name) for each entry of a folder. The entries are read onto the stack: a DIR would have to be allocated.
/// @return false when the folder cannot be read to its end
template <class Visit>
bool WalkFolder(const std::string& folder, Visit&& visit) {
    const NativeFile directory{
        Retried([&] { return open(FolderName(folder).c_str(), O_RDONLY | O_NONBLOCK | O_DIRECTORY | O_CLOEXEC); })};
    if (!directory) return false;
    alignas(dirent64) char entries[8192];
    for (;;) {
        const ssize_t size = Retried([&] { return getdents64(directory.Handle(), entries, sizeof entries); });
        if (size <= 0) return size == 0;
        for (ssize_t at = 0; at < size;) {
            const auto* const entry = reinterpret_cast<const dirent64*>(entries + at);
            visit(std::string_view{entry->d_name});
            at += entry->d_reclen;
        }
    }
}

/// The entry of a folder that differs in case only, the first in byte order; empty when there is none, or
/// the folder cannot be read to its end.
std::string EntryOf(const std::string& folder, std::string_view component) {
    const std::wstring folded = Folded(component);
    std::string best;
    const bool isRead = WalkFolder(folder, [&](std::string_view name) {
        if (FoldsTo(name, folded) && (best.empty() || name < best)) best = name;
    });
    return isRead ? best : std::string{};
}

}  // namespace

bool IsEntry(const std::string& name) noexcept {
    struct stat status;
    return Retried([&] { return lstat(name.c_str(), &status); }) == 0;
}

std::string MapMissingPath(const std::string& spelled) {
    std::string name;
    for (std::string_view rest = spelled; !rest.empty();) {
        const std::size_t end = std::min(rest.find('/'), rest.size());
        const std::string_view component = rest.substr(0, end);
        const std::string exact = name + std::string{component};
        if (component.empty() || IsEntry(exact)) {
            name = exact;
        } else {
            const std::string entry = IsMissing(errno) ? EntryOf(name, component) : std::string{};
            if (entry.empty()) return name.append(rest);
            name += entry;
        }
        rest.remove_prefix(end);
        if (rest.empty()) break;
        name += '/';
        rest.remove_prefix(1);
    }
    return name;
}

}  // namespace veltrane::detail
