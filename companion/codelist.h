#pragma once

#include <string>
#include <vector>

#include "lintcodes.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::config {

/// The words of a list, with commas or blanks between.
std::vector<std::string> SplitList(std::string list);

/// @param name  in any case of letters
/// @return null for a name that is not a code of lint
const LintRow* FindLint(CString name);

/// The code that may have been meant; empty when none is near.
CString NearestCode(CString name);

}  // namespace veltrane::config
