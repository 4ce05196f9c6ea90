#pragma once

#include "veltrane/collections/XSet.h"

extern template class VELTRANE_API XSetData<CString>;
extern template class VELTRANE_API XSet<CString>;

/// A set of strings with list parsing and set arithmetic, in the order of CString::Compare.
/// @code
/// XSetString before, after, gone;
/// before.InsertList(L"orders, items", /*sort*/ true, L",");
/// after.InsertList(L"orders", /*sort*/ true, L",");
/// gone.Sub(before, after);  // "items"
/// @endcode
class VELTRANE_API XSetString : public XSet<CString> {
public:
    /// The difference of the sizes; among equal sizes CString::Compare of the first strings that differ, else 0.
    int Compare(const XSetString& other) const;

    /// All strings in stored order, joined by "," without blanks.
    void GetList(CString& out) const;
    /// Splits a text at every element of separators and inserts each piece that the set does not hold yet, without
    /// white space at its ends, empty pieces included; an empty text is one empty piece.
    /// @param sort  sorts the set at the end
    void InsertList(const CString& text, bool sort, const CString& separators);

    /// Append a - b and a ∩ b, duplicates matched one to one; a and b are sorted and stay so.
    void Sub(XSetString& a, XSetString& b);
    void Intersection(XSetString& a, XSetString& b);

private:
    void InsertPieces(const std::vector<CString>& pieces);
};
