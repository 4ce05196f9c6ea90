#pragma once

#include "veltrane/collections/XSet.h"

extern template class VELTRANE_API XSetData<int>;
extern template class VELTRANE_API XSet<int>;

/// A set of integers, duplicates kept, that remembers the largest number inserted or returned.
/// @code
/// XSetInt numbers;
/// numbers.BuildSet(L"1, 3,7");
/// @endcode
class VELTRANE_API XSetInt : public XSet<int> {
public:
    XSetInt() = default;
    /// Inserts the values of another set; null leaves the set empty.
    explicit XSetInt(const XSetInt* other);

    int GetMax() const noexcept { return m_nMax; }
    void SetMax(int max) noexcept { m_nMax = max; }

    // The forms of the base do not touch the maximum.
    using XSet<int>::Insert;
    using XSet<int>::Union;
    void Insert(int number);
    /// Appends all values of another set and sorts; null does nothing.
    void Union(const XSetInt& other);
    void Union(const XSetInt* other);

    /// Appends the numbers above 0 of a comma-separated list in the order of the text; anything else in it is skipped.
    void BuildSet(const CString& text);
    /// Appends to out the numbers between each value and the one before it, from 1 on: the free numbers below the
    /// largest value, when this set is sorted. They can be many: below 2,000,000,000 there are as many, of 16 bytes
    /// each. If there is no memory for all of them, none is appended and the box of Insert says so.
    void GetFreeNumbers(XSetInt& out) const;
    /// Sets the maximum to 0 for an empty set, to the last value of a sorted one, else to the largest of all values and
    /// itself.
    void CalcMax();
    /// Removes and returns the first value; an empty set increments its maximum instead (INT_MAX wraps to INT_MIN).
    int GetNextNumber();

private:
    int m_nMax = -1;
};
