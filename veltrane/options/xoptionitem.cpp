#include "veltrane/options/xoptionitem.h"

#include "veltrane/options/detail/xoptionlocation.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

template <class... Args>
void Require(const XSite& site, bool isGiven, XFormatFor<Args...> text, const Args&... args) {
    if (!isGiven) throw MakeError(site, text, args...);
}

}  // namespace

XOptionItem::XOptionItem(XOptionDefinition* definition, const CString& value, int index)
    : m_pDefinition(definition), m_Value(value), m_nIndex(index) {
    Require(Here(L"XOptionItem::XOptionItem"), definition,
            L"Cannot create an option item, because the option definition is missing!");
    if (!definition->IsIList()) return;
    m_pIList = std::make_unique<XSetInt>();
    m_pIList->BuildSet(value);
}

XOptionItem::XOptionItem(const XOptionItem& other)
    : m_pDefinition(other.m_pDefinition), m_Value(other.m_Value), m_nIndex(other.m_nIndex), m_bFlag(other.m_bFlag) {
    if (other.m_pIList) m_pIList = std::make_unique<XSetInt>(other.m_pIList.get());
}

XOptionItem::~XOptionItem() = default;

void XOptionItem::SetFlag(bool flag) {
    m_bFlag = flag;
    if (flag || !m_pWalk) return;
    m_pWalk->next = 0;
    m_pWalk->all->next = 0;
}

void XOptionItem::GetOptionName(CString& name) const {
    Require(Here(L"XOptionItem::GetOptionName"), m_pDefinition,
            L"Cannot get an option name for an option item without an option definition!");
    name = m_pDefinition->szLongName;
}

void XOptionItem::GetOptionDescription(CString& text) const {
    Require(Here(L"XOptionItem::GetOptionDescription"), m_pDefinition,
            L"Cannot get an option description for an option item without an option definition!");
    text = m_pDefinition->szDescription;
}

void XOptionItem::SetOptionValue(const CString& value) {
    m_Value = value;
    if (!m_pDefinition->IsIList()) return;
    if (!m_pIList) m_pIList = std::make_unique<XSetInt>();
    m_pIList->BuildSet(m_Value);
}

const CString& XOptionItem::GetOptionCommand() const {
    constexpr auto method = L"XOptionItem::GetOptionCommand";
    Require(Here(method), m_pDefinition,
            L"Cannot get an option command from an option item without an option definition!");
    Require(Here(method), IsCommand(),
            L"Cannot get an option command from the option item <%s>, because this one does not represent a command!",
            m_pDefinition->szLongName);
    return m_Value;
}

const CString& XOptionItem::GetOptionString() const {
    constexpr auto method = L"XOptionItem::GetOptionString";
    Require(Here(method), m_pDefinition,
            L"Cannot get an option string from an option item without an option definition!");
    Require(Here(method), IsString(),
            L"Cannot get an option string from the option item <%s>, because this one does not represent a string!",
            m_pDefinition->szLongName);
    return m_Value;
}

bool XOptionItem::GetOptionBoolean() const {
    constexpr auto method = L"XOptionItem::GetOptionBoolean";
    Require(Here(method), m_pDefinition,
            L"Cannot get an option boolean value from an option item without an option definition!");
    Require(Here(method), IsBoolean(),
            L"Cannot get an option boolean value from an option item which does not represent a boolean value!");
    return m_Value.CompareNoCase(g_BooleanStrings[1]) == 0;
}

enumFlags XOptionItem::GetOptionTrillian() const {
    constexpr auto method = L"XOptionItem::GetOptionTrillian";
    Require(Here(method), m_pDefinition,
            L"Cannot get an option tri-state value from an option item without an option definition!");
    Require(Here(method), IsTrillian(),
            L"Cannot get an option tri-state value from an option item which does not represent a tri-state value!");
    for (const enumFlags flag : {eFlagFalse, eFlagTrue}) {
        if (m_Value.CompareNoCase(g_TrillianStrings[flag]) == 0) return flag;
    }
    return eFlagAuto;
}

const XSetInt* XOptionItem::GetOptionIList() const {
    constexpr auto method = L"XOptionItem::GetOptionIList";
    Require(Here(method), m_pDefinition,
            L"Cannot get an option integer list from an option item without an option definition!");
    Require(Here(method), m_pDefinition->IsIList(),
            L"Cannot get an option integer list from an option item which does not represent an integer list!");
    return m_pIList.get();
}

void XOptionItem::SetOptionIList(XSetInt& list) {
    constexpr auto method = L"XOptionItem::SetOptionIList";
    Require(Here(method), m_pDefinition,
            L"Cannot set an option integer list for an option item without an option definition!");
    Require(Here(method), m_pDefinition->IsIList(),
            L"Cannot set an option integer list for an option item which does not represent an integer list!");
    auto copy = std::make_unique<XSetInt>();
    copy->Union(list);
    m_pIList = std::move(copy);
}
