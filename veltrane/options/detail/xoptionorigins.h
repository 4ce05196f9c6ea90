#pragma once

#include <unordered_map>
#include <vector>

#include "veltrane/options/xoptionitem.h"
#include "veltrane/options/xoptionorigin.h"

namespace veltrane::detail {

/// What the sources answered to one question of a retrieval, and the places that were asked.
struct XKeptAnswer {
    CString text = {};                     ///< empty for the first answer, whose text is that of the origin
    std::vector<OptionPlace> places = {};  ///< of the first answer, the one of the origin without its text
    bool isWhole = false;                  ///< else the question ended in an error
};

/// A value that an item got, and how. The answers are enough to replace its references again; a reference that is in
/// the value many times has one answer.
struct XKeptOrigin {
    OptionOrigin origin = {};
    CString value = {};
    CString section = {};                   ///< of the value, in which its references are looked up first
    std::vector<XKeptAnswer> answers = {};  ///< to the value itself, then to its references, as asked for
};

/// The origins of the values of a store's items, including those overridden in the store. Costs nothing unless wanted.
class XOptionOrigins {
public:
    bool AreKept() const noexcept { return m_bKept; }
    void Keep(bool wanted) noexcept { m_bKept = wanted; }

    /// When it fails, the known origins of the item stay as they were.
    void Note(const XOptionItem& item, XKeptOrigin origin);
    void Forget(const XOptionItem& item);

    /// All values that an item has had, the newest last. A value that the host has put into the item itself comes from
    /// the host.
    std::vector<XKeptOrigin> Of(const XOptionItem& item) const;

    /// Where the value of an item comes from; the host without an answer.
    OptionOrigin LastOf(const XOptionItem& item) const;

    /// Notes where the text of a naming rule is. @param number  of the rule among those of its kind, from 0
    void NoteRule(enumOption option, int number, OptionOrigin origin);
    /// Fills in the origins of all rules of one kind.
    void AddOrigins(enumOption option, std::vector<OptionRule>& rules) const;

private:
    /// A configuration may hold very many rules: file and section are kept once for all of them, and the text with the
    /// rule.
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
