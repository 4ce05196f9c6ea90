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

}  // namespace veltrane::detail
