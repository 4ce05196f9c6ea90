#pragma once

#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// Shows the help of a tool. @param tool  name of its program
void ShowHelpOf(const CString& tool);

}  // namespace veltrane::detail
