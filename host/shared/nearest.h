#pragma once

#include <vector>

#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// The text that is nearest to a name, in any case of letters, and not the name itself; empty when none is near: about
/// one slip (a letter dropped, added, changed, or two swapped) in three letters, never more than three.
CString Nearest(const CString& name, const std::vector<CString>& texts);

}  // namespace veltrane::detail
