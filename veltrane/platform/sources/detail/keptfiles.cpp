#include "veltrane/platform/sources/detail/keptfiles.h"

#include <algorithm>
#include <utility>

#include "veltrane/platform/sources/detail/tracing.h"
#include "veltrane/platform/sources/snapshot.h"

namespace veltrane::detail {

namespace {

// Of this thread; without an end of their own, since objects that end late may still ask.
thread_local int g_Snapshots = 0;  // that live
thread_local KeptFiles* g_Kept = nullptr;

}  // namespace

SourceSnapshot::SourceSnapshot() noexcept {
    ++g_Snapshots;
}

SourceSnapshot::~SourceSnapshot() {
    if (--g_Snapshots == 0) delete std::exchange(g_Kept, nullptr);
}

KeptFiles* KeptFiles::Current() {
    if (g_Snapshots == 0 || HasObserver()) return nullptr;
    if (!g_Kept) g_Kept = new KeptFiles;
    return g_Kept;
}

const FileBytes* KeptFiles::Find(CStringView path) const {
    if (path.View().empty()) return nullptr;
    const auto entry = std::ranges::find(m_Entries, path.View(), [](const Entry& kept) { return kept.path.View(); });
    return entry == m_Entries.end() ? nullptr : &entry->bytes;
}

void KeptFiles::Keep(CStringView path, FileBytes bytes) {
    m_Entries[m_nNext++ % m_Entries.size()] = {path.View(), std::move(bytes)};
}

}  // namespace veltrane::detail
