#pragma once

#include "veltrane/collections/XSet.h"
#include "veltrane/platform/text/cstring.h"

/// Two strings, ordered by the first, then by the second, as CString::Compare orders.
/// @code
/// const XStringPair rule{L"tmp_", L"wrk_"};
/// name.Replace(rule.GetFirst(), rule.GetSecond());
/// @endcode
class VELTRANE_API XStringPair {
public:
    XStringPair() = default;
    XStringPair(const CString& first, const CString& second) : m_First(first), m_Second(second) {}
    XStringPair(const XStringPair&) = default;
    XStringPair& operator=(const XStringPair&) = default;
    virtual ~XStringPair();

    const CString& GetFirst() const noexcept { return m_First; }
    const CString& GetSecond() const noexcept { return m_Second; }

    int Compare(const XStringPair& other) const;
    int FullCompare(const XStringPair& other) const { return Compare(other); }
    bool operator<(const XStringPair& other) const { return Compare(other) < 0; }

    // A pair has no flag of its own: every one is part of the subset of the marked ones.
    bool GetFlag() const noexcept { return true; }
    void SetFlag(bool /*flag*/) const noexcept {}

private:
    CString m_First;
    CString m_Second;
};

extern template class VELTRANE_API XSetP<XStringPair>;

/// An owning set of string pairs; the same pair may be in it any number of times.
/// @code
/// XSetStringPairs renamed;
/// renamed.InsertPair(L"tmp_orders", L"wrk_orders");
/// renamed.Sort();
/// @endcode
class VELTRANE_API XSetStringPairs : public XSetP<XStringPair> {
public:
    XSetStringPairs() = default;
    XSetStringPairs(const XSetStringPairs&) = default;
    XSetStringPairs& operator=(const XSetStringPairs&) = default;
    ~XSetStringPairs() override;

    /// @throws XException  of Insert
    void InsertPair(const CString& first, const CString& second);
};
