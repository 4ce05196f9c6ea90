#include "veltrane/collections/xstringpair.h"

template class XSetP<XStringPair>;

XStringPair::~XStringPair() = default;

int XStringPair::Compare(const XStringPair& other) const {
    const int order = m_First.Compare(other.m_First);
    return order != 0 ? order : m_Second.Compare(other.m_Second);
}

XSetStringPairs::~XSetStringPairs() = default;

void XSetStringPairs::InsertPair(const CString& first, const CString& second) {
    Adopt(std::make_unique<XStringPair>(first, second));
}
