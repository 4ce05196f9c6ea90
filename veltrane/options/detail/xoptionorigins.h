#pragma once

#include <unordered_map>
#include <vector>

#include "veltrane/options/xoptionitem.h"
#include "veltrane/options/xoptionorigin.h"

namespace veltrane::detail {

/// What the sources answered to one question of a retrieval, and the places that were asked.
struct XKeptAnswer {
    CString text = {};                     ///< not of the first answer: that is the text of the origin
    std::vector<OptionPlace> places = {};  ///< of the first answer, the one of the origin without its text
    bool isWhole = false;                  ///< else the question ended in an error
};

/// A value that an item got, and how: the answers are enough to replace its references once more, and take no more
/// room however often a reference stands in the value.
struct XKeptOrigin {
    OptionOrigin origin = {};
    CString value = {};
    CString section = {};                   ///< of the value, in which its references are looked up first
    std::vector<XKeptAnswer> answers = {};  ///< to the value itself, then to its references, as asked for
};

/// The origins of the values of a store's items, those overridden in the store included. Costs nothing until somebody
/// wants them.
class XOptionOrigins {
public:
    bool AreKept() const noexcept { return m_bKept; }
    void Keep(bool wanted) noexcept { m_bKept = wanted; }

    /// When it fails, what is known of the item stays as it was.
    void Note(const XOptionItem& item, XKeptOrigin origin);
    void Forget(const XOptionItem& item);

    /// All values that an item has had, the newest last. One that a host has put into the item itself comes from it.
    std::vector<XKeptOrigin> Of(const XOptionItem& item) const;

    /// Where the value of an item comes from; the host without an answer.
    OptionOrigin LastOf(const XOptionItem& item) const;

    /// Notes where the text of a naming rule stands. @param number  of the rule among those of its kind, from 0
    void NoteRule(enumOption option, int number, OptionOrigin origin);
    /// Fills in the origins of all rules of one kind.
    void AddOrigins(enumOption option, std::vector<OptionRule>& rules) const;

private:
    /// A configuration may hold very many rules: file and section stand once for all of them, the text with the rule.
    struct RuleOrigin {
        enumOption option;
        int number;
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
