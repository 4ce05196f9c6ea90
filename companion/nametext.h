#pragma once

#include <iterator>
#include <vector>

#include "veltrane/foundation/nearest.h"

namespace veltrane::config {

/// A name in the form in which names are compared without regard to case.
inline CString Folded(CString name) {
    return name.MakeLower();
}

inline bool IsSameName(const CString& left, const CString& right) {
    return left.CompareNoCase(right) == 0;
}

/// The name of a row, such as &LintRow::name, that is nearest to a name; empty when none is near.
template <class Rows, class Name>
CString NearestRow(const CString& name, const Rows& rows, Name nameOfRow) {
    std::vector<CString> names;
    names.reserve(std::size(rows));
    for (const auto& row : rows) names.emplace_back(row.*nameOfRow);
    return Nearest(name, names);
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
