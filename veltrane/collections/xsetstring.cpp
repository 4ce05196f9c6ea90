#include "veltrane/collections/xsetstring.h"

#include <set>
#include <string>
#include <string_view>

#include "veltrane/collections/matchsorted.h"
#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/internal/trim.h"

using namespace veltrane;
using namespace veltrane::detail;

template class XSetData<CString>;
template class XSet<CString>;

namespace {

// White space may itself be a separator: the text in front is trimmed before the next separator is searched.
std::vector<CString> Split(std::wstring_view text, std::wstring_view separators) {
    std::vector<CString> pieces;
    std::wstring_view rest = Trimmed(text, IsWhiteSpace);
    for (std::size_t end; (end = rest.find_first_of(separators)) != std::wstring_view::npos;) {
        pieces.emplace_back(TrimmedRight(rest.substr(0, end), IsWhiteSpace));
        rest = TrimmedLeft(rest.substr(end + 1), IsWhiteSpace);
    }
    pieces.emplace_back(rest);
    return pieces;
}

XMatch Match(XSetString& a, XSetString& b) {
    a.Sort();
    b.Sort();
    return MatchSorted(a.Size(), b.Size(),
                       [&](int i, int j) { return a.GetConstRefAt(i).Compare(b.GetConstRefAt(j)); });
}

}  // namespace

int XSetString::Compare(const XSetString& other) const {
    if (Size() != other.Size()) return Size() - other.Size();
    for (int i = 0; i < Size(); ++i) {
        if (const int order = GetConstRefAt(i).Compare(other.GetConstRefAt(i)); order != 0) return order;
    }
    return 0;
}

void XSetString::GetList(CString& out) const {
    std::wstring list;
    for (int i = 0; i < Size(); ++i) {
        if (i > 0) list += L',';
        list += GetConstRefAt(i).View();
    }
    out = CString{std::move(list)};
}

void XSetString::InsertList(const CString& text, bool sort, const CString& separators) {
    InsertPieces(Split(text.View(), separators.View()));
    if (sort) Sort();
}

void XSetString::InsertPieces(const std::vector<CString>& pieces) {
    constexpr std::size_t FEW = 32;  // fewer are found faster by searching the set than by indexing it
    auto piece = pieces.begin();
    // A set marked sorted is searched by binary search, until the first piece is inserted.
    for (; piece != pieces.end() && (IsSorted() || pieces.size() < FEW); ++piece) Insert(*piece, /*unique*/ true);
    if (piece == pieces.end()) return;

    const auto less = [this](int a, int b) { return GetConstRefAt(a) < GetConstRefAt(b); };
    std::set<int, decltype(less)> known(less);
    for (int i = 0; i < Size(); ++i) known.insert(i);
    for (; piece != pieces.end(); ++piece) {
        if (!Insert(*piece, /*unique*/ false)) continue;
        const int last = Size() - 1;
        if (!known.insert(last).second) Delete(last);
    }
}

void XSetString::Sub(XSetString& a, XSetString& b) {
    for (const int position : Match(a, b).onlyFirst) Insert(a.GetConstRefAt(position), /*unique*/ false);
}

void XSetString::Intersection(XSetString& a, XSetString& b) {
    for (const int position : Match(a, b).both) Insert(a.GetConstRefAt(position), /*unique*/ false);
}
