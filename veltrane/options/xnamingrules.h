#pragma once

#include <vector>

#include "veltrane/collections/xstringpair.h"
#include "veltrane/options/xoptionorigin.h"
#include "veltrane/platform/text/cstring.h"

/// One renaming: from a version on, the new text takes the place of the old one in names.
struct VELTRANE_API XNamingRule {
    XNamingRule(int version = -1, const CString& first = {}, const CString& second = {})
        : m_nVersion(version), m_Pair(first, second) {}
    /// Without the flag: a new rule is not marked.
    XNamingRule(const XNamingRule& other) : m_nVersion(other.m_nVersion), m_Pair(other.m_Pair) {}
    XNamingRule& operator=(const XNamingRule&) = default;
    ~XNamingRule() = default;

    int GetVersion() const noexcept { return m_nVersion; }
    const CString& GetFirst() const noexcept { return m_Pair.GetFirst(); }    ///< the old text
    const CString& GetSecond() const noexcept { return m_Pair.GetSecond(); }  ///< the new text
    void SetFlag(bool flag) noexcept { m_bFlag = flag; }
    bool GetFlag() const noexcept { return m_bFlag; }

    /// The difference of the versions (at most INT_MAX, at least INT_MIN), then the order of old and new text.
    int Compare(const XNamingRule& other) const;
    int FullCompare(const XNamingRule& other) const { return Compare(other); }
    bool operator<(const XNamingRule& other) const { return Compare(other) < 0; }

    int m_nVersion;
    XStringPair m_Pair;
    bool m_bFlag = false;
};

template <>
inline constexpr std::string_view veltrane::XClassKey<XNamingRule> = "struct ";

extern template class VELTRANE_API XSetP<XNamingRule>;

/// The rules for one kind of name, in the order of insertion, which is the order of application.
/// @code
/// rules.InsertRule(3, L"TMP_", L"WRK_");
/// rules.ReplaceName(name, 5, /*keepCase*/ false);
/// @endcode
class VELTRANE_API XNamingRules : public XSetP<XNamingRule> {
public:
    XNamingRules() = default;
    XNamingRules(const XNamingRules&) = default;
    XNamingRules& operator=(const XNamingRules&) = default;
    ~XNamingRules() override;

    /// Appends a rule. Rules must come in ascending order of their versions. @throws XException  of Insert
    void InsertRule(int version, const CString& first, const CString& second);

    /// Applies the rules one after the other, each to the result of those before, up to the first one of a version
    /// above the given one. An empty old text changes nothing.
    /// @param keepCase  false: name and rules are used in upper case, and the result is in upper case even if no rule
    /// applies
    /// @throws std::length_error  a rule makes the name longer than CString allows; the name is as before
    void ReplaceName(CString& name, int version, bool keepCase) const;

    /// The changes that ReplaceName makes to a name, one for each rule that changes it. @throws as ReplaceName
    std::vector<veltrane::OptionRenaming> Preview(const CString& name, int version, bool keepCase) const;

private:
    template <class Changed>
    CString Renamed(const CString& name, int version, bool keepCase, Changed changed) const;
};
