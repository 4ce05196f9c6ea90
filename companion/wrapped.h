#pragma once

#include <string>

#include "veltrane/platform/text/cstring.h"

namespace veltrane::config {

/// The width that a text for people keeps, as far as its words allow it.
inline constexpr int LINE_WIDTH = 80;

/// @return none for a count below 1
CString Blanks(int count);

/// Appends lines of words that break at blanks, so that none but that of a longer word goes past LINE_WIDTH.
/// @param margin  blanks before each line
/// @param lead    takes their place on the first line; may be empty, or longer
void AddWrapped(std::string& text, CString words, int margin, CString lead = {});

}  // namespace veltrane::config
