#pragma once

#include "veltrane/platform/export.h"

namespace veltrane::detail {

/// While one lives, a file that has answered a question of its thread answers the next ones as it was: for a run of
/// questions that no code of a host stands between, so that nobody can tell when in the run the file was read. An
/// observer of the sources stands between them, so while one is set every question looks anew.
class VELTRANE_API SourceSnapshot {
public:
    SourceSnapshot() noexcept;
    SourceSnapshot(const SourceSnapshot&) = delete;
    SourceSnapshot& operator=(const SourceSnapshot&) = delete;
    ~SourceSnapshot();
};

/// While one lives, the snapshots of its thread are out of force, and what they kept is forgotten: for code of a host
/// that runs in the middle of a run of questions.
class VELTRANE_API SnapshotPause {
public:
    SnapshotPause() noexcept;
    SnapshotPause(const SnapshotPause&) = delete;
    SnapshotPause& operator=(const SnapshotPause&) = delete;
    ~SnapshotPause();

private:
    int m_nSnapshots;
};

}  // namespace veltrane::detail
