#include "veltrane/collections/xstringvector.h"

#include "veltrane/collections/sharedempty.h"

using namespace veltrane::detail;

XStringVector::~XStringVector() = default;

void XStringVector::Append(const CString& text) {
    m_Vector.push_back(text);
    m_itAct = m_itEnd = m_Vector.size();
}

bool XStringVector::First(CString& out) {
    m_itAct = 0;
    m_itEnd = m_Vector.size();
    return Read(out);
}

bool XStringVector::Next(CString& out) {
    if (m_itAct < m_itEnd) ++m_itAct;
    return Read(out);
}

bool XStringVector::Read(CString& out) const {
    if (m_itAct >= m_itEnd) return false;
    out = m_Vector[m_itAct];
    return true;
}

void XStringVector::Clear() noexcept {
    m_Vector.clear();
    m_itAct = m_itEnd = 0;
}

int XStringVector::Compare(const XStringVector* other) const {
    if (!other) return 1;
    if (GetSize() != other->GetSize()) return GetSize() < other->GetSize() ? -1 : 1;
    for (std::size_t i = 0; i < m_Vector.size(); ++i) {
        if (const int order = m_Vector[i].Compare(other->m_Vector[i]); order != 0) return order;
    }
    return 0;
}

// Deleting a vector cannot throw, so there is nothing to absorb.
XStringMap::~XStringMap() {
    for (const auto& [key, vector] : m_Map.All()) delete vector;
}

void XStringMap::Insert(const CString& key, XStringVector* vector) {
    m_Map.Add(key, vector);
}

const CString& XStringMap::GetActKey() const {
    static const XLasting<CString> tEmpty;
    const auto* entry = m_Map.Act();
    return entry ? entry->first : tEmpty.value;
}

XStringVector* XStringMap::GetActValue() const {
    const auto* entry = m_Map.Act();
    return entry ? entry->second : nullptr;
}
