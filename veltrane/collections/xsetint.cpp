#include "veltrane/collections/xsetint.h"

#include <algorithm>
#include <cstdint>

#include "veltrane/platform/text/numbers.h"

template class XSetData<int>;
template class XSet<int>;

namespace {

// Gives the gap in front of each value: its first number, and the value that ends it.
template <class Visit>
void VisitGaps(const XSetInt& set, Visit visit) {
    const int size = set.Size();  // the visitor may let the set grow
    std::int64_t first = 1;       // wider than the values: it goes one beyond INT_MAX
    for (int i = 0; i < size; ++i) {
        const int value = set.GetConstRefAt(i);
        if (first < value) visit(first, value);
        first = std::int64_t{value} + 1;
    }
}

}  // namespace

XSetInt::XSetInt(const XSetInt* other) {
    if (!other) return;
    for (int i = 0; i < other->Size(); ++i) Insert(other->GetConstRefAt(i));
}

void XSetInt::Insert(int number) {
    Insert(number, /*unique*/ false);
    m_nMax = std::max(m_nMax, number);
}

void XSetInt::Union(const XSetInt& other) {
    const int size = other.Size();  // the other set may be this one, which grows
    for (int i = 0; i < size; ++i) Insert(other.GetConstRefAt(i));
    Sort();
}

void XSetInt::Union(const XSetInt* other) {
    if (other) Union(*other);
}

void XSetInt::BuildSet(const CString& text) {
    std::wstring_view rest = text.View();
    for (bool more = true; more;) {
        const std::size_t comma = rest.find(L',');
        const int number = _wtoi(rest.substr(0, comma));  // skips white space; a piece of nothing else gives 0
        if (number > 0) Insert(number);
        more = comma != std::wstring_view::npos;
        if (more) rest.remove_prefix(comma + 1);
    }
}

void XSetInt::GetFreeNumbers(XSetInt& out) const {
    std::size_t count = 0;
    VisitGaps(*this, [&](std::int64_t first, int end) { count += static_cast<std::size_t>(end - first); });
    if (!out.Reserve(count)) return;
    VisitGaps(*this, [&](std::int64_t first, int end) {
        for (int number = static_cast<int>(first); number < end; ++number) out.Insert(number);
    });
}

void XSetInt::CalcMax() {
    if (Size() == 0) {
        m_nMax = 0;
    } else if (IsSorted()) {
        m_nMax = GetConstRefAt(Size() - 1);
    } else {
        for (int i = 0; i < Size(); ++i) m_nMax = std::max(m_nMax, GetConstRefAt(i));
    }
}

int XSetInt::GetNextNumber() {
    if (Size() == 0) {
        m_nMax = static_cast<int>(static_cast<std::uint32_t>(m_nMax) + 1);
        return m_nMax;
    }
    const int number = GetConstRefAt(0);
    Delete(0);
    return number;
}
