#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace veltrane::detail {

/// The text with every occurrence of a word replaced.
std::string Replaced(std::string text, std::string_view word, std::string_view replacement);

/// The text with its marks replaced by their texts, one mark after the other: a text may hold marks that come later.
std::string Filled(std::string text, std::initializer_list<std::pair<std::string_view, std::string>> marks);

/// ASCII letters in upper case.
std::string Capitals(std::string text);

}  // namespace veltrane::detail
