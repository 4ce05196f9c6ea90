#pragma once

#include "veltrane/platform/text/cstring.h"

namespace veltrane::config {

/// A name in the form in which names are compared without regard to case.
inline CString Folded(CString name) {
    return name.MakeLower();
}

inline bool IsSameName(const CString& left, const CString& right) {
    return left.CompareNoCase(right) == 0;
}

/// A section as suggestions name it; empty for none.
inline CString Bracketed(const CString& section) {
    return section.IsEmpty() ? section : L"[" + section + L"]";
}
/// The section that a suggestion names.
inline CString WithoutBrackets(const CString& suggestion) {
    return suggestion.Mid(1, suggestion.GetLength() - 2);
}

}  // namespace veltrane::config
