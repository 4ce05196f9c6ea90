#pragma once

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// Text of an environment variable, its name in exact case. A variable set to nothing is found and empty.
/// @return false, with value untouched, when it is not set or the name is empty or holds '=' or NUL
VELTRANE_API bool GetEnvironmentText(CString& value, const CString& name);

}  // namespace veltrane
