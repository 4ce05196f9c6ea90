#pragma once

#include <optional>
#include <string_view>

#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// What a line of a name list says: "table NAME", "column NAME" or "version N".
struct NameLine {
    enum class Kind { Table, Column, Version };
    Kind kind;
    CString name = {};
    int version = 0;
};

/// The text of a line without blanks at its ends; the first one may begin with the mark that other systems put in front
/// of UTF-8.
CString NameLineText(std::string_view bytes, bool isFirst);

/// Whether a line says nothing: empty, or a comment that begins with ';'.
bool IsBlankNameLine(const CString& text);

/// @return nothing for a line that is none of the three
std::optional<NameLine> ReadNameLine(const CString& text);

}  // namespace veltrane::detail
