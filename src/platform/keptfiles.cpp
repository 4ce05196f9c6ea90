#include "platform/detail/keptfiles.h"

#include <algorithm>
#include <utility>

#include "platform/detail/tracing.h"

namespace {

int g_Snapshots = 0;  // that live

}  // namespace

SourceSnapshot::SourceSnapshot() noexcept {
    ++g_Snapshots;
}

SourceSnapshot::~SourceSnapshot() {
    if (--g_Snapshots == 0) Kept() = {};
}

KeptFiles& Kept() {
    static KeptFiles& kept = *new KeptFiles;  // never destroyed: objects that end late may still ask
    return kept;
}

bool KeptFiles::AreWanted() noexcept {
    return g_Snapshots > 0 && !HasObserver();
}

const FileBytes* KeptFiles::Find(const CString& path) const {
    if (!AreWanted() || path.IsEmpty()) return nullptr;
    const auto entry = std::ranges::find(m_Entries, path, &Entry::path);
    return entry == m_Entries.end() ? nullptr : &entry->bytes;
}

void KeptFiles::Keep(const CString& path, FileBytes bytes) {
    m_Entries[m_nNext++ % m_Entries.size()] = {path, std::move(bytes)};
}
