#pragma once

#include <string>
#include <string_view>

namespace veltrane::detail {

/// UTF-8 text as troff source that shows exactly that text, wherever it stands in a line or in a quoted argument.
std::string Troff(std::string_view text);
/// The same in bold or italic.
std::string Bold(std::string_view text);
std::string Italic(std::string_view text);
/// An entry of a list: its head and the text below.
std::string Entry(std::string_view head, std::string_view body);

}  // namespace veltrane::detail
