#pragma once

#include "veltrane/platform/export.h"

namespace veltrane::detail {

/// While one lives, a file that has answered a question of its thread is not read again for the next ones, so that a
/// run of questions sees one state of it. Where code of a host runs between two of them, such as the handler of a box,
/// the next question reads the file again.
class VELTRANE_API SourceSnapshot {
public:
    SourceSnapshot() noexcept;
    SourceSnapshot(const SourceSnapshot&) = delete;
    SourceSnapshot& operator=(const SourceSnapshot&) = delete;
    ~SourceSnapshot();
};

}  // namespace veltrane::detail
