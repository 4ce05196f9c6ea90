#include "veltrane/foundation/xchain.h"

#include <stdexcept>
#include <utility>

namespace veltrane::detail {

CString XChain::Text() const {
    if (m_Front.empty()) return m_Behind;
    std::wstring text;
    text.reserve(m_Front.size() + m_Behind.View().size());
    text.append(m_Front.rbegin(), m_Front.rend()).append(m_Behind.View());
    return CString{std::move(text)};
}

void XChain::PutInFront(const CString& text, std::wstring_view joint) {
    if (IsEmpty()) {
        m_Behind = text;
        return;
    }
    const CString added = Fitting(text, joint);
    m_Front.append(added.View().rbegin(), added.View().rend());
}

void XChain::Append(const CString& text, std::wstring_view joint) {
    m_Behind += IsEmpty() ? text : Fitting(CString{joint}, text.View());
}

CString XChain::Fitting(CString first, std::wstring_view second) const {
    constexpr auto longest = static_cast<std::size_t>(CString::MAX_LENGTH);
    first += second;
    if (first.View().size() > longest - m_Front.size() - m_Behind.View().size()) throw std::length_error("CString");
    return first;
}

}  // namespace veltrane::detail
