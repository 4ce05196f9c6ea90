#pragma once

#include <string>

#include "veltrane/platform/text/cstring.h"

namespace veltrane::config {

/// The width of a text for people, as far as its words allow it.
inline constexpr int LINE_WIDTH = 80;

/// @return none for a count below 1
CString Blanks(int count);

/// Appends lines that break at blanks, so that only a line with a longer word goes past LINE_WIDTH.
/// @param margin  blanks before each line
/// @param lead    replaces them on the first line; may be empty, or longer
void AddWrapped(std::string& text, CString words, int margin, CString lead = {});

}  // namespace veltrane::config
