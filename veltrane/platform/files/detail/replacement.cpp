#include <utility>

#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/files/internal/foreigncode.h"
#include "veltrane/platform/files/internal/nativefile.h"
#include "veltrane/platform/files/internal/replacement.h"

namespace veltrane::detail {

namespace {

thread_local SourceReplacement* g_Newest = nullptr;

// One name for a file, whatever path leads to it. For a missing file, its folder is resolved.
std::string FullName(CStringView path) {
    const std::string name = MapPath(CString{path.View()});
    std::string full = Resolved(name);
    if (!full.empty() || name.empty()) return full;
    const std::size_t end = name.rfind('/') + 1;
    const std::string folder = Resolved(end == 0 ? "." : name.substr(0, end));
    return folder.empty() ? name : folder + '/' + name.substr(end);
}

// What snapshots keep is not used again, as after code of a host.
void OutdateSnapshots() noexcept {
    const ForeignCode changed;
}

}  // namespace

SourceReplacement::SourceReplacement(const CString& path, std::string bytes)
    : m_Name(FullName(path)), m_Bytes(std::move(bytes)), m_Older(g_Newest) {
    g_Newest = this;
    OutdateSnapshots();
}

SourceReplacement::~SourceReplacement() {
    SourceReplacement** link = &g_Newest;
    while (*link != this) link = &(*link)->m_Older;
    *link = m_Older;
    OutdateSnapshots();
}

std::optional<std::string_view> SourceReplacement::Find(CStringView path) {
    if (!g_Newest) return std::nullopt;
    const std::string name = FullName(path);
    for (const SourceReplacement* each = g_Newest; each; each = each->m_Older) {
        if (each->m_Name == name && !name.empty()) return each->m_Bytes;
    }
    return std::nullopt;
}

}  // namespace veltrane::detail
