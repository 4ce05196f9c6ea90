#pragma once

#include <string>
#include <string_view>

namespace veltrane::detail {

/// The text with every occurrence of a word replaced.
std::string Replaced(std::string text, std::string_view word, std::string_view replacement);

/// ASCII letters in upper case.
std::string Capitals(std::string text);

}  // namespace veltrane::detail
