#include "veltrane/platform/sources/detail/keptfiles.h"

#include <algorithm>
#include <utility>

#include "veltrane/platform/files/foreigncode.h"
#include "veltrane/platform/sources/snapshot.h"

namespace veltrane::detail {

namespace {

// Of this thread. Plain numbers and addresses: nothing is made when the first snapshot begins or ends, and nothing is
// destroyed while objects that end late may still ask.
thread_local int g_Snapshots = 0;  // that live
thread_local KeptFiles* g_Kept = nullptr;

}  // namespace

const ProfileIndex* KeptFile::Profile() {
    if (m_nAsked++ == 0) return nullptr;
    if (!m_Profile) m_Profile.emplace(file.Text(), file.WithSurrogates());
    return m_Profile->IsUsable() ? &*m_Profile : nullptr;
}

RegistryIndex& KeptFile::Registry() {
    if (!m_Registry) m_Registry.emplace(file.Text(), file.WithSurrogates());
    return *m_Registry;
}

SourceSnapshot::SourceSnapshot() noexcept {
    ++g_Snapshots;
}

SourceSnapshot::~SourceSnapshot() {
    if (--g_Snapshots == 0) delete std::exchange(g_Kept, nullptr);
}

KeptFiles* KeptFiles::Current() {
    if (g_Snapshots == 0 || ForeignCode::IsRunning()) return nullptr;
    if (g_Kept && g_Kept->m_nForeignRuns != ForeignCode::Runs()) delete std::exchange(g_Kept, nullptr);
    if (!g_Kept) g_Kept = new KeptFiles;
    return g_Kept;
}

std::shared_ptr<KeptFile> KeptFiles::Find(CStringView path, Spelling spelling) const {
    const auto entry = std::ranges::find_if(m_Entries, [&](const Entry& kept) {
        return kept.file && kept.spelling == spelling && kept.path.View() == path.View();
    });
    return entry == m_Entries.end() ? nullptr : entry->file;
}

void KeptFiles::Keep(CStringView path, Spelling spelling, std::shared_ptr<KeptFile> file) {
    m_Entries[m_nNext++ % m_Entries.size()] = {path.View(), spelling, std::move(file)};
}

}  // namespace veltrane::detail
