#include "veltrane/foundation/xstring.h"

#include <algorithm>

#include "veltrane/platform/text/numbers.h"

namespace {

constexpr int TABULATOR_WIDTH = 8;

void SplitAt(CString& left, CString& right, const CString& text, int position) {
    CString before = text.Left(position);  // both before either is stored: text may be one of the two
    CString after = text.Mid(position + 1);
    left = std::move(before);
    right = std::move(after);
}

}  // namespace

int GetMinOrMax(const CString& mode, const CString& a, const CString& b) {
    const auto [smaller, larger] = std::minmax({_wtoi(a), _wtoi(b)});
    return mode == L"MIN" ? smaller : larger;
}

void SplitString(CString& left, CString& right, const CString& text, wchar_t separator) {
    SplitAt(left, right, text, text.Find(separator));
}

void SplitStringReverse(CString& left, CString& right, const CString& text, wchar_t separator) {
    SplitAt(left, right, text, text.ReverseFind(separator));
}

void AddString(CString& list, const CString& item) {
    list += list.IsEmpty() ? item : L", " + item;  // at once: the item may be the list itself
}

CString GetArgument(int index, const CString& text) {
    int begin = 0;
    for (int field = 0; field < index; ++field) {
        const int comma = text.Find(L',', begin);
        if (comma < 0) return {};
        begin = comma + 1;
    }
    const int end = text.Find(L',', begin);
    return end < 0 ? text.Mid(begin) : text.Mid(begin, end - begin);
}

CString GetTabulator(int count) {
    return {L'\t', count};
}

CString GetTabulator(const CString& text, int column) {
    // Compared first: column is the host's number, and the difference of two ints may overflow.
    const int used = text.GetLength() / TABULATOR_WIDTH;
    return GetTabulator(column > used ? column - used : 0);
}
