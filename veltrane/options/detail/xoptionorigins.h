#pragma once

#include <unordered_map>
#include <vector>

#include "veltrane/options/xoptionitem.h"
#include "veltrane/options/xoptionorigin.h"

namespace veltrane::detail {

/// A value that an item got, and how.
struct XKeptOrigin {
    OptionOrigin origin;
    CString value = {};
    std::vector<OptionStep> steps = {};
};

/// The origins of the values of a store's items, those overridden in the store included. Costs nothing until somebody
/// wants them.
class XOptionOrigins {
public:
    bool AreKept() const noexcept { return m_bKept; }
    void Keep(bool wanted) noexcept { m_bKept = wanted; }

    void Note(const XOptionItem& item, XKeptOrigin origin);
    void Forget(const XOptionItem& item);

    /// All values that an item has had, the newest last. One that a host has put into the item itself comes from it.
    std::vector<XKeptOrigin> Of(const XOptionItem& item) const;

    /// Notes where the text of the next naming rule stands.
    void NoteRule(enumOption option, OptionOrigin origin);
    /// Fills in the origins of rules of one kind, which stand in the order of reading.
    void TellRules(enumOption option, std::vector<OptionRule>& rules) const;

private:
    /// A configuration may hold very many rules: file and section stand once for all of them, the text with the rule.
    struct RuleOrigin {
        enumOption option;
        int line;
        std::size_t place;
        CString key;
    };

    bool m_bKept = false;
    std::vector<RuleOrigin> m_Rules;
    std::vector<OptionOrigin> m_RulePlaces;
    std::unordered_map<const XOptionItem*, std::vector<XKeptOrigin>> m_Origins;
};

}  // namespace veltrane::detail
