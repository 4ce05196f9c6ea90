#pragma once

#include "veltrane/foundation/xexception.h"

namespace veltrane::detail {

/// Appends to an error what helps on: the file and line that a bad value came from, the right spelling of a name, the
/// places where a missing value was looked for. The error's own text stays as it is.
void AddHints(XException& error);

}  // namespace veltrane::detail
