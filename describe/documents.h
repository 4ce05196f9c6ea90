#pragma once

#include <string>

namespace veltrane::detail {

// The documents of a tool, by the name of its program.

std::string CommandPage(const std::string& tool);     ///< veltrane.1
std::string IniPage(const std::string& tool);         ///< veltrane.ini.5
std::string BashCompletion(const std::string& tool);  ///< veltrane
std::string ZshCompletion(const std::string& tool);   ///< _veltrane
std::string FishCompletion(const std::string& tool);  ///< veltrane.fish

}  // namespace veltrane::detail
