#include "platform/detail/keptfiles.h"

#include <algorithm>
#include <utility>

#include "platform/detail/tracing.h"

namespace {

int g_Snapshots = 0;  // that live

// Outside a snapshot; in one there is no limit, it ends soon.
constexpr std::size_t MAX_KEPT_SIZE = 65536;

bool IsInSnapshot() noexcept {
    return g_Snapshots > 0 && !IsTracing();
}

}  // namespace

SourceSnapshot::SourceSnapshot() noexcept {
    ++g_Snapshots;
}

SourceSnapshot::~SourceSnapshot() {
    if (--g_Snapshots == 0) Kept().EndSnapshot();
}

KeptFiles& Kept() {
    static KeptFiles& kept = *new KeptFiles;  // never destroyed: objects that end late may still ask
    return kept;
}

const FileBytes* KeptFiles::Find(const CString& path) {
    const auto entry = std::ranges::find(m_Entries, path.View(), [](const Entry& kept) { return kept.path.View(); });
    if (entry == m_Entries.end()) return nullptr;
    if (entry->isOfSnapshot && IsInSnapshot()) return &entry->bytes;
    if (!entry->isSettled || FileState{entry->spelled.c_str()} != entry->state) return nullptr;
    entry->isOfSnapshot = IsInSnapshot();
    return &entry->bytes;
}

bool KeptFiles::IsWorthKeeping(const FileState& state, std::size_t size) noexcept {
    return IsInSnapshot() || (size <= MAX_KEPT_SIZE && state.IsSettled());
}

void KeptFiles::Keep(const CString& path, std::string spelled, const FileState& state, FileBytes bytes) {
    auto entry = std::ranges::find(m_Entries, path.View(), [](const Entry& kept) { return kept.path.View(); });
    if (entry == m_Entries.end()) entry = m_Entries.begin() + static_cast<std::ptrdiff_t>(m_nNext++ % m_Entries.size());
    const bool isSettled = bytes.size <= MAX_KEPT_SIZE && state.IsSettled();
    *entry = {path, std::move(spelled), state, std::move(bytes), IsInSnapshot(), isSettled};
}

void KeptFiles::EndSnapshot() {
    for (Entry& entry : m_Entries) {
        entry.isOfSnapshot = false;
        if (!entry.isSettled) entry = {};
    }
}
