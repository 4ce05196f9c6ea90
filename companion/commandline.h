#pragma once

#include <optional>
#include <string>
#include <vector>

#include "request.h"
#include "veltrane/config_tool.h"

// The command line of the program itself, without that of the tool.

namespace veltrane::config {

/// @param name  of the program, as its help and its version show it
/// @param hasArguments  whether arguments of the tool follow, after '--'
/// @return  nothing if the help or the version was asked for and printed
/// @throws Refusal  the words are not a valid command line
std::optional<Request> ParseCommandLine(const ConfigTool& tool, const std::string& name, std::vector<std::string> words,
                                        bool hasArguments);

/// Whether colours are wanted and can be shown.
/// @param descriptor  "1" is standard output, "2" standard error
bool IsColoured(const std::string& wish, const char* descriptor);

}  // namespace veltrane::config
