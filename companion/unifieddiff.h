#pragma once

#include <string>
#include <string_view>

namespace veltrane::config {

/// The changes between two texts as `diff -u` shows them; empty for the same texts. Meant for few changes in long
/// texts: finding the end of a changed run takes the square of its length.
std::string UnifiedDiff(const std::string& name, std::string_view before, std::string_view after);

}  // namespace veltrane::config
