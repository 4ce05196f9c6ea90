#pragma once

#include <iosfwd>
#include <streambuf>
#include <vector>

#include "lspanalysis.h"

namespace veltrane::config {

/// Answers an editor in the Language Server Protocol 3.17 until it says 'exit', or the input ends.
/// @param arguments  of the tool; the client may give others
/// @return exit code: 0 after 'shutdown', 1 without
int ServeEditor(const LspTool& tool, const std::vector<CString>& arguments, std::streambuf& input,
                std::ostream& output);

}  // namespace veltrane::config
