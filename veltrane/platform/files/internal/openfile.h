#pragma once

#include <string>

#include "veltrane/platform/files/internal/nativefile.h"

namespace veltrane::detail {

/// Opens a file through the path mapping; a path spelled as on the disk costs one open. It may be a pipe or a device,
/// for which it does not wait: check its size before reading from it.
/// @param spelled  as SpelledPath gives it
/// @return no file when it is missing or unreadable
NativeFile OpenForReading(const std::string& spelled);

}  // namespace veltrane::detail
