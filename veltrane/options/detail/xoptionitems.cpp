#include "veltrane/options/detail/xoptionitems.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "veltrane/options/detail/xoptionlocation.h"
#include "veltrane/platform/text/internal/indexformat.h"

namespace veltrane::detail {

namespace {

// All titles are one option.
int RowOf(const XOptionDefinition& definition) {
    return definition.eOption == eOptionTitle ? 0 : OptionRow(definition);
}

// If no index is missing, the distance of an item from the first one is its index; otherwise it is smaller.
XOptionItem* FindAscending(const std::vector<XOptionItem*>& items, int index) {
    if (items.empty() || index < items.front()->GetOptionIndex()) return nullptr;
    const auto distance = static_cast<std::size_t>(std::int64_t{index} - items.front()->GetOptionIndex());
    const auto last = items.begin() + static_cast<std::ptrdiff_t>(std::min(distance, items.size() - 1));
    if ((*last)->GetOptionIndex() == index) return *last;
    const auto found = std::lower_bound(items.begin(), last, index, [](const XOptionItem* item, int wanted) {
        return item->GetOptionIndex() < wanted;
    });
    return (*found)->GetOptionIndex() == index ? *found : nullptr;
}

void MakeRoom(std::vector<XOptionItem*>& items) {
    if (items.size() == items.capacity()) items.reserve(2 * items.size() + 1);
}

}  // namespace

XOptionItems::XOptionItems() : m_Groups(static_cast<std::size_t>(OptionRowCount())) {}

XOptionItem* XOptionItems::Insert(XOptionDefinition& definition, const CString& value, int index) {
    Group& group = GroupOf(definition);
    if (definition.IsSingle()) {
        if (XOptionItem* const item = GetFirst(&definition)) {
            item->SetOptionValue(value);
            return item;
        }
    }
    return Append(group, definition, value, index);
}

// Everything that can fail comes before the set owns the item.
XOptionItem* XOptionItems::Append(Group& group, XOptionDefinition& definition, const CString& value, int index) {
    auto item = std::make_unique<XOptionItem>(&definition, value, index);
    MakeRoom(group.items);
    MakeRoom(m_All);
    m_Items.Insert(item.get());
    m_All.push_back(item.get());
    group.isAscending = group.isAscending && (group.items.empty() || group.items.back()->GetOptionIndex() < index);
    group.largestIndex = group.items.empty() ? index : std::max(group.largestIndex, index);
    group.items.push_back(item.get());
    group.walk.all = &m_AllWalk;
    item->m_pWalk = &group.walk;
    return item.release();  // the set owns it now
}

void XOptionItems::Delete(const XOptionDefinition& definition) {
    Group& group = GroupOf(definition);
    if (group.items.empty()) return;
    m_Items.DeleteIf([&](const XOptionItem& item) { return item.m_pWalk == &group.walk; });
    group = {};
    m_AllWalk.next = 0;
    m_All.clear();
    for (int i = 0; i < m_Items.Size(); ++i) m_All.push_back(m_Items.GetAt(i));
}

void XOptionItems::Clear() {
    m_All.clear();
    m_OtherGroups.clear();
    std::ranges::fill(m_Groups, Group{});
    m_Items.Clear();
}

XOptionItem* XOptionItems::GetFirst(const XOptionDefinition* definition) {
    const std::vector<XOptionItem*>& items = definition ? GroupOf(*definition).items : m_All;
    // From the back, so that the walk begins with items that are near.
    for (auto item = items.rbegin(); item != items.rend(); ++item) (*item)->SetFlag(false);
    return GetNext(definition);
}

XOptionItem* XOptionItems::GetNext(const XOptionDefinition* definition) {
    if (!definition) return Next(m_All, m_AllWalk);
    Group& group = GroupOf(*definition);
    return Next(group.items, group.walk);
}

XOptionItem* XOptionItems::Next(const std::vector<XOptionItem*>& items, XOptionWalk& walk) {
    while (walk.next < items.size()) {
        XOptionItem* const item = items[walk.next++];
        if (item->GetFlag()) continue;
        item->SetFlag(true);
        return item;
    }
    return nullptr;
}

XOptionItem* XOptionItems::Find(const XOptionDefinition& definition, int index) const {
    const Group* const group = FindGroup(definition);
    if (!group) return nullptr;
    const auto& items = group->items;
    if (index >= 0 && group->isAscending) return FindAscending(items, index);
    const auto found = index < 0 ? items.begin() : std::ranges::find(items, index, &XOptionItem::GetOptionIndex);
    return found == items.end() ? nullptr : *found;
}

XOptionItem* XOptionItems::FindExactly(const XOptionDefinition& definition, int index) const {
    XOptionItem* const first = Find(definition, index);
    if (!first || definition.IsSingle() || index >= 0) return first;
    const auto& items = FindGroup(definition)->items;
    const auto found = std::ranges::find(items, index, &XOptionItem::GetOptionIndex);
    return found == items.end() ? nullptr : *found;
}

XOptionItem* XOptionItems::Get(const XOptionDefinition& definition, int index) const {
    if (!definition.IsSingle() && index < 0) {
        XException error =
            MakeError(Here(L"XOption::GetOptionItem"),
                      L"Use either 'GetFirstOption()' and/or 'GetNextOption()' or specify an index value!");
        AddReasonAt(error, Here(L"XOption::GetOptionItem"),
                    L"Cannot get value for option <%s>, because it is a multiple option and you haven't specified an "
                    L"index!",
                    definition.szLongName);
        throw error;
    }
    if (XOptionItem* const item = Find(definition, index)) return item;
    if (definition.IsMandatory()) {
        throw MakeError(Here(L"XOption::GetOptionItem"),
                        L"The mandatory option <%s> could not be found in the program option registry!",
                        definition.szLongName);
    }
    return nullptr;
}

int XOptionItems::FreeIndex(const XOptionDefinition& definition) const {
    const Group* const group = FindGroup(definition);
    return group && !group->items.empty() ? Successor(group->largestIndex) : 0;
}

XOptionItems::Group& XOptionItems::GroupOf(const XOptionDefinition& definition) {
    const int row = RowOf(definition);
    return row < 0 ? m_OtherGroups[definition.eOption] : m_Groups[static_cast<std::size_t>(row)];
}

const XOptionItems::Group* XOptionItems::FindGroup(const XOptionDefinition& definition) const {
    const int row = RowOf(definition);
    if (row >= 0) return &m_Groups[static_cast<std::size_t>(row)];
    const auto other = m_OtherGroups.find(definition.eOption);
    return other == m_OtherGroups.end() ? nullptr : &other->second;
}

}  // namespace veltrane::detail
