// The typed getters of the store.
#include "veltrane/options/detail/xoptionitems.h"
#include "veltrane/options/detail/xoptionlocation.h"
#include "veltrane/options/xoption.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

// What a getter of one type asks of the option, and the texts of its errors.
struct GetterType {
    bool (XOptionDefinition::*isType)() const;
    XFormat<CString> wrongType;
    XFailure<CString> failure;
};

constexpr GetterType STRING_GETTER{&XOptionDefinition::IsString,
                                   L"The option <%s> is not a string option!",
                                   {L"Error retrieving the string option <%s>!",
                                    L"An unknown exception occured while retrieving the string option <%s>!"}};
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

// Looks the option up, checks its type and reads it; what goes wrong takes the getter's reason along.
template <class Read>
decltype(auto) ReadOption(XOption& store, const XSite& site, const GetterType& type, const CString& name, Read read) {
    return WithReason(
        site, type.failure,
        [&]() -> decltype(auto) {
            XOptionDefinition* const definition = store.GetOptionDefinition(name);
            if (!definition) throw MakeError(site, L"The option <%s> is not known by the system!", name);
            if (!(definition->*type.isType)()) throw MakeError(site, type.wrongType, name);
            return read(definition);
        },
        name);
}

const CString& NoText() {
    static const CString& none = *new CString;  // never destroyed: objects that end late may still ask
    return none;
}

const CString& TextOf(const XOptionItem* item) {
    return item ? item->GetOptionString() : NoText();
}

const XSetInt* ListOf(const XOptionItem* item) {
    return item ? item->GetOptionIList() : nullptr;
}

// Unlike the indexed getter, the walks take the word exactly.
bool IsExactlyTrue(const XOptionItem* item) {
    return item && item->GetOptionValue() == g_BooleanStrings[1];
}

}  // namespace

const CString& XOption::GetOptionString(const CString& name, int index) {
    const auto read = [&](XOptionDefinition* definition) -> const CString& {
        const XOptionItem* const item = m_pItems->Get(*definition, index);
        if (!definition->IsValueOptional()) return TextOf(item);
        if (!item) return g_BooleanStrings[0];
        return item->GetOptionString().IsEmpty() ? g_BooleanStrings[1] : item->GetOptionString();
    };
    return ReadOption(*this, Here(L"XOption::GetOptionString"), STRING_GETTER, name, read);
}

const CString& XOption::GetFirstOptionString(const CString& name) {
    return ReadOption(*this, Here(L"XOption::GetFirstOptionString"), STRING_GETTER, name,
                      [&](auto* definition) -> const CString& { return TextOf(m_pItems->GetFirst(definition)); });
}

const CString& XOption::GetNextOptionString(const CString& name) {
    return ReadOption(*this, Here(L"XOption::GetNextOptionString"), STRING_GETTER, name,
                      [&](auto* definition) -> const CString& { return TextOf(m_pItems->GetNext(definition)); });
}

bool XOption::GetOptionBoolean(const CString& name, int index) {
    return ReadOption(*this, Here(L"XOption::GetOptionBoolean"), BOOLEAN_GETTER, name, [&](auto* definition) {
        const XOptionItem* const item = m_pItems->Get(*definition, index);
        return item && item->GetOptionBoolean();
    });
}

bool XOption::GetFirstOptionBoolean(const CString& name) {
    return ReadOption(*this, Here(L"XOption::GetFirstOptionBoolean"), BOOLEAN_GETTER, name,
                      [&](auto* definition) { return IsExactlyTrue(m_pItems->GetFirst(definition)); });
}

bool XOption::GetNextOptionBoolean(const CString& name) {
    return ReadOption(*this, Here(L"XOption::GetNextOptionBoolean"), BOOLEAN_GETTER, name,
                      [&](auto* definition) { return IsExactlyTrue(m_pItems->GetNext(definition)); });
}

enumFlags XOption::GetOptionTrillian(const CString& name, int index) {
    return ReadOption(*this, Here(L"XOption::GetOptionTrillian"), TRILLIAN_GETTER, name, [&](auto* definition) {
        const XOptionItem* const item = m_pItems->Get(*definition, index);
        return item ? item->GetOptionTrillian() : eFlagAuto;
    });
}

const XSetInt* XOption::GetOptionIList(const CString& name, int index) {
    return ReadOption(*this, Here(L"XOption::GetOptionIList"), ILIST_GETTER, name,
                      [&](auto* definition) { return ListOf(m_pItems->Get(*definition, index)); });
}

const XSetInt* XOption::GetFirstOptionIList(const CString& name) {
    return ReadOption(*this, Here(L"XOption::GetFirstOptionIList"), ILIST_GETTER, name,
                      [&](auto* definition) { return ListOf(m_pItems->GetFirst(definition)); });
}

const XSetInt* XOption::GetNextOptionIList(const CString& name) {
    return ReadOption(*this, Here(L"XOption::GetNextOptionIList"), ILIST_GETTER, name,
                      [&](auto* definition) { return ListOf(m_pItems->GetNext(definition)); });
}
