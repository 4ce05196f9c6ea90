#pragma once

#include "veltrane/platform/export.h"

namespace veltrane::detail {

/// While one lives, a file that has answered a question of its thread answers the next ones as it was: for a run of
/// questions, so that nobody can tell when in the run the file was read. Where code of a host runs between two of them,
/// such as the handler of a box, the next question looks anew.
class VELTRANE_API SourceSnapshot {
public:
    SourceSnapshot() noexcept;
    SourceSnapshot(const SourceSnapshot&) = delete;
    SourceSnapshot& operator=(const SourceSnapshot&) = delete;
    ~SourceSnapshot();
};

}  // namespace veltrane::detail
