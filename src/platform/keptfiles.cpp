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

const FileBytes* KeptFiles::Find(CStringView path) const {
    if (!AreWanted() || path.View().empty()) return nullptr;
    const auto entry = std::ranges::find(m_Entries, path.View(), [](const Entry& kept) { return kept.path.View(); });
    return entry == m_Entries.end() ? nullptr : &entry->bytes;
}

void KeptFiles::Keep(CStringView path, FileBytes bytes) {
    m_Entries[m_nNext++ % m_Entries.size()] = {path.View(), std::move(bytes)};
}
