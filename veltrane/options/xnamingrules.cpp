#include "veltrane/options/xnamingrules.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstring>

using namespace veltrane;

template class XSetP<XNamingRule>;

namespace {

// Which pairs of neighbours a name holds, as a set of hashes. It rejects most rules by the last and the first pair of
// their old text, before that text is copied, put in upper case and searched: the last one first, because rules often
// begin alike. Letters hash alike in both cases, so one filter serves names as they are and in upper case; a pair that
// is not ASCII rejects nothing, as its upper case may be anything.
class NameFilter {
public:
    explicit NameFilter(std::wstring_view name) noexcept { Reset(name); }

    void Reset(std::wstring_view name) noexcept {
        m_nLength = name.size();
        m_Pairs.fill(0);
        for (std::size_t i = 1; i < name.size(); ++i) {
            const std::size_t hash = Hash(PairAt(name, i - 1));
            m_Pairs[hash / 64] |= std::uint64_t{1} << (hash % 64);
        }
    }

    bool MayContain(std::wstring_view text) const noexcept {
        if (text.size() > m_nLength) return false;
        if (text.size() < 2) return !text.empty();
        return MayHold(PairAt(text, text.size() - 2)) && MayHold(PairAt(text, 0));
    }

private:
    static constexpr std::uint64_t ASCII = 0x0000'007F'0000'007F;
    static constexpr std::uint64_t CASE_BIT = 0x0000'0020'0000'0020;  // the difference of 'a' and 'A'
    static constexpr std::size_t HASHES = 1024;                       // two letters of five bits each do not collide

    static_assert(sizeof(wchar_t) == 4);
    static std::uint64_t PairAt(std::wstring_view text, std::size_t position) noexcept {
        std::uint64_t pair = 0;
        std::memcpy(&pair, text.data() + position, sizeof pair);
        return pair;
    }
    static std::size_t Hash(std::uint64_t pair) noexcept {
        pair &= ~CASE_BIT;
        return (pair ^ pair >> 27) % HASHES;
    }
    bool MayHold(std::uint64_t pair) const noexcept {
        const std::size_t hash = Hash(pair);
        return ((m_Pairs[hash / 64] >> (hash % 64) & 1) | (pair & ~ASCII)) != 0;
    }

    std::size_t m_nLength = 0;
    std::array<std::uint64_t, HASHES / 64> m_Pairs{};
};

int Apply(const XNamingRule& rule, CString& name, bool keepCase) {
    CString oldText = rule.GetFirst();
    CString newText = rule.GetSecond();
    if (!keepCase) {
        oldText.MakeUpper();
        newText.MakeUpper();
    }
    return name.Replace(oldText, newText);
}

}  // namespace

int XNamingRule::Compare(const XNamingRule& other) const {
    if (m_nVersion == other.m_nVersion) return m_Pair.Compare(other.m_Pair);
    const std::int64_t difference = std::int64_t{m_nVersion} - other.m_nVersion;
    return static_cast<int>(std::clamp<std::int64_t>(difference, INT_MIN, INT_MAX));
}

XNamingRules::~XNamingRules() = default;

void XNamingRules::InsertRule(int version, const CString& first, const CString& second) {
    Adopt(std::make_unique<XNamingRule>(version, first, second));
}

void XNamingRules::ReplaceName(CString& name, int version, bool keepCase) const {
    name = Renamed(name, version, keepCase, [](int, const CString&) {});
}

std::vector<OptionRenaming> XNamingRules::Preview(const CString& name, int version, bool keepCase) const {
    std::vector<OptionRenaming> changes;
    CString before = name;
    if (!keepCase) before.MakeUpper();
    Renamed(name, version, keepCase, [&](int rule, const CString& after) {
        if (after != before) changes.push_back({rule, after});
        before = after;
    });
    return changes;
}

// Calls changed(rule, name) for each replacement.
template <class Changed>
CString XNamingRules::Renamed(const CString& name, int version, bool keepCase, Changed changed) const {
    CString renamed = name;
    if (!keepCase) renamed.MakeUpper();
    NameFilter filter{renamed.View()};
    for (int i = 0; i < Size(); ++i) {
        const XNamingRule* const rule = Objects()[static_cast<std::size_t>(i)];
        if (!rule) continue;
        if (rule->GetVersion() > version) break;
        if (!filter.MayContain(rule->GetFirst().View())) continue;
        if (Apply(*rule, renamed, keepCase) == 0) continue;
        filter.Reset(renamed.View());
        changed(i, renamed);
    }
    return renamed;
}
