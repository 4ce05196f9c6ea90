#pragma once

#include <string>

namespace veltrane::detail {

std::string CommandPage();     ///< veltrane.1
std::string IniPage();         ///< veltrane.ini.5
std::string BashCompletion();  ///< veltrane
std::string ZshCompletion();   ///< _veltrane
std::string FishCompletion();  ///< veltrane.fish

}  // namespace veltrane::detail
