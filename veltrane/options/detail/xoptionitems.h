#pragma once

#include <map>
#include <vector>

#include "veltrane/collections/XSet.h"
#include "veltrane/options/detail/optionlookup.h"
#include "veltrane/options/xoptionitem.h"

namespace veltrane::detail {

/// The items of a store in the order of insertion, and the walks over them. The groups beside the items give the
/// answers of a scan over all items from the front, marks included.
class XOptionItems {
public:
    XOptionItems();

    /// Stores a value: in place of that of a single option's item, after all items for another. @return the item
    XOptionItem* Insert(XOptionDefinition& definition, const CString& value, int index);
    void Delete(const XOptionDefinition& definition);  ///< all items of the option
    void Clear();

    /// Walks over the items of an option, or over all without a definition. A walk has no position of its own: it marks
    /// what it has met.
    XOptionItem* GetFirst(const XOptionDefinition* definition);
    XOptionItem* GetNext(const XOptionDefinition* definition);

    /// The first item of an option with an index, with any for an index below 0; null without one. Leaves the marks.
    XOptionItem* Find(const XOptionDefinition& definition, int index) const;
    /// As Find, but of an option with several values the index must match, below 0 too.
    XOptionItem* FindExactly(const XOptionDefinition& definition, int index) const;
    /// As Find. @throws XException  option with several values and index < 0; mandatory option without the item
    XOptionItem* Get(const XOptionDefinition& definition, int index) const;
    /// One more than the largest index of the option's items, wrapping after the largest int; 0 without any.
    int FreeIndex(const XOptionDefinition& definition) const;

    /// The items of an option, or all without a definition, in the order of insertion.
    const std::vector<XOptionItem*>& ItemsOf(const XOptionDefinition* definition) {
        return definition ? GroupOf(*definition).items : m_All;
    }
    static const XOptionDefinition& DefinitionOf(const XOptionItem& item) { return *item.m_pDefinition; }

private:
    struct Group {
        std::vector<XOptionItem*> items;  // of one option, in the order of insertion
        XOptionWalk walk;
        int largestIndex = 0;     // of the items
        bool isAscending = true;  // by index, so that one is found in halves
    };

    Group& GroupOf(const XOptionDefinition& definition);
    const Group* FindGroup(const XOptionDefinition& definition) const;
    XOptionItem* Append(Group& group, XOptionDefinition& definition, const CString& value, int index);
    static XOptionItem* Next(const std::vector<XOptionItem*>& items, XOptionWalk& walk);

    XSetP<XOptionItem> m_Items;
    std::vector<XOptionItem*> m_All;
    XOptionWalk m_AllWalk;
    std::vector<Group> m_Groups;                // by row of the option table
    std::map<enumOption, Group> m_OtherGroups;  // of definitions that hosts made up
};

}  // namespace veltrane::detail
