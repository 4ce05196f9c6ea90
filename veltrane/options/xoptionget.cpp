// The typed getters of the store.
#include "veltrane/options/detail/xoptiongetter.h"
#include "veltrane/options/xoption.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr GetterType BOOLEAN_GETTER{&XOptionDefinition::IsBoolean,
                                    L"The option <%s> is not a boolean option (in other words: it's not a flag)!",
                                    {L"Error retrieving the boolean option <%s>!",
                                     L"An unknown exception occured while retrieving the boolean option <%s>!"}};
constexpr GetterType TRILLIAN_GETTER{&XOptionDefinition::IsTrillian,
                                     L"The option <%s> is not a tri-state option!",
                                     {L"Error retrieving the tri-state option <%s>!",
                                      L"An unknown exception occured while retrieving the tri-state option <%s>!"}};
constexpr GetterType ILIST_GETTER{&XOptionDefinition::IsIList,
                                  L"The option <%s> is not an integer list option!",
                                  {L"Error retrieving the integer list option <%s>!",
                                   L"An unknown exception occured while retrieving the integer list option <%s>!"}};

const XSetInt* ListOf(const XOptionItem* item) {
    return item ? item->GetOptionIList() : nullptr;
}

// Unlike the indexed getter, the walks compare the word exactly.
bool IsExactlyTrue(const XOptionItem* item) {
    return item && item->GetOptionValue() == g_BooleanStrings[1];
}

}  // namespace

const CString& XOption::GetOptionString(const CString& name, int index) {
    return OptionText(*m_pItems, name, index);
}

const CString& XOption::GetFirstOptionString(const CString& name) {
    return ReadOption(
        Here(L"XOption::GetFirstOptionString"), STRING_GETTER, name,
        [&](const auto& definition) -> const CString& { return TextOf(m_pItems->GetFirst(&definition)); });
}

const CString& XOption::GetNextOptionString(const CString& name) {
    return ReadOption(Here(L"XOption::GetNextOptionString"), STRING_GETTER, name,
                      [&](const auto& definition) -> const CString& { return TextOf(m_pItems->GetNext(&definition)); });
}

bool XOption::GetOptionBoolean(const CString& name, int index) {
    return ReadOption(Here(L"XOption::GetOptionBoolean"), BOOLEAN_GETTER, name, [&](const auto& definition) {
        const XOptionItem* const item = m_pItems->Get(definition, index);
        return item && item->GetOptionBoolean();
    });
}

bool XOption::GetFirstOptionBoolean(const CString& name) {
    return ReadOption(Here(L"XOption::GetFirstOptionBoolean"), BOOLEAN_GETTER, name,
                      [&](const auto& definition) { return IsExactlyTrue(m_pItems->GetFirst(&definition)); });
}

bool XOption::GetNextOptionBoolean(const CString& name) {
    return ReadOption(Here(L"XOption::GetNextOptionBoolean"), BOOLEAN_GETTER, name,
                      [&](const auto& definition) { return IsExactlyTrue(m_pItems->GetNext(&definition)); });
}

enumFlags XOption::GetOptionTrillian(const CString& name, int index) {
    return ReadOption(Here(L"XOption::GetOptionTrillian"), TRILLIAN_GETTER, name, [&](const auto& definition) {
        const XOptionItem* const item = m_pItems->Get(definition, index);
        return item ? item->GetOptionTrillian() : eFlagAuto;
    });
}

const XSetInt* XOption::GetOptionIList(const CString& name, int index) {
    return ReadOption(Here(L"XOption::GetOptionIList"), ILIST_GETTER, name,
                      [&](const auto& definition) { return ListOf(m_pItems->Get(definition, index)); });
}

const XSetInt* XOption::GetFirstOptionIList(const CString& name) {
    return ReadOption(Here(L"XOption::GetFirstOptionIList"), ILIST_GETTER, name,
                      [&](const auto& definition) { return ListOf(m_pItems->GetFirst(&definition)); });
}

const XSetInt* XOption::GetNextOptionIList(const CString& name) {
    return ReadOption(Here(L"XOption::GetNextOptionIList"), ILIST_GETTER, name,
                      [&](const auto& definition) { return ListOf(m_pItems->GetNext(&definition)); });
}
