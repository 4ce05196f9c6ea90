#pragma once

#include <cstdint>
#include <vector>

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// The arguments of the process as the system split them, element 0 the program; empty when they cannot be read. Read
/// from the system once.
[[nodiscard]] VELTRANE_API std::vector<CString> GetArguments();

/// Replaces the arguments, for hosts that were started with others.
VELTRANE_API void SetArguments(std::vector<CString> arguments);

/// Fills each standard stream that the process was started without, so that no file opened later takes its number;
/// reading and writing the stream still fails.
VELTRANE_API void HoldStandardStreams() noexcept;

/// Monotonic milliseconds from an arbitrary start, wrapping to negative after 24.8 days: subtract as unsigned.
[[nodiscard]] VELTRANE_API std::int32_t TickCount();

}  // namespace veltrane
