#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// A text that grows at both ends: the cost of adding depends on what is added, not on what is there. A text longer
/// than a CString can be is refused, as in CString.
class XChain {
public:
    XChain() = default;
    XChain(CString text) noexcept : m_Behind(std::move(text)) {}

    CString Text() const;
    bool IsEmpty() const noexcept { return m_Front.empty() && m_Behind.IsEmpty(); }

    /// Puts a text in front, with the joint between the two; an empty chain becomes just the text.
    void PutInFront(const CString& text, std::wstring_view joint);
    /// As PutInFront, at the end.
    void Append(const CString& text, std::wstring_view joint);

private:
    /// Text and joint in a row. @throws std::length_error  too long for the chain
    CString Fitting(CString first, std::wstring_view second) const;

    std::wstring m_Front;  // what was put in front, from its last element to its first
    CString m_Behind;
};

}  // namespace veltrane::detail
