#pragma once

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// Formats with one "%d" that hold text of users, such as the name of a section with a database's name in it. "%%" is
/// one '%', every other '%' stands for itself, so no text acts as a conversion.

/// Reads the number of an item that has the form of a format. White space in the format fits any run of it in the item,
/// or none; case counts; whatever follows the number is ignored.
/// @param index  the number, limited to what an int holds; untouched when the item does not fit
/// @return whether the item fits up to the number; never for a format without "%d"
VELTRANE_API bool MatchIndex(const CString& item, const CString& format, int& index);

/// The item of an index: the first "%d" becomes the number, a further one stays. What this writes, MatchIndex reads.
VELTRANE_API CString FormatIndex(const CString& format, int index);

/// The index after one. Indexes come from users: after the largest int comes the smallest.
constexpr int Successor(int index) noexcept {
    return static_cast<int>(static_cast<unsigned>(index) + 1U);
}

}  // namespace veltrane
