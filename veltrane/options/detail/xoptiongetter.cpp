#include "veltrane/options/detail/xoptiongetter.h"

namespace veltrane::detail {

namespace {

constexpr XSite GETTER = Here(L"XOption::GetOptionString");

const CString& Text(const XOptionItems& items, const XOptionDefinition& definition, int index) {
    const XOptionItem* const item = items.Get(definition, index);
    if (!definition.IsValueOptional()) return TextOf(item);
    if (!item) return g_BooleanStrings[0];
    return item->GetOptionString().IsEmpty() ? g_BooleanStrings[1] : item->GetOptionString();
}

}  // namespace

XOptionDefinition* KnownOption(const CString& name) {
    if (name.IsEmpty()) return nullptr;
    XOptionDefinition* const definition = FindOptionDefinition(name);
    if (!definition) {
        throw About({.argument = name}, MakeError(Here(L"XOption::GetOptionDefinition"),
                                                  L"The option <%s> is not known by the system!", name));
    }
    return definition;
}

const CString& TextOf(const XOptionItem* item) {
    static const CString& none = *new CString;  // never destroyed: objects that end late may still ask
    return item ? item->GetOptionString() : none;
}

const CString& OptionText(const XOptionItems& items, const CString& name, int index) {
    return ReadOption(GETTER, STRING_GETTER, name, [&](const XOptionDefinition& definition) -> const CString& {
        return Text(items, definition, index);
    });
}

const CString& OptionText(const XOptionItems& items, const XOptionDefinition& definition) {
    return WithReason(
        GETTER, STRING_GETTER.failure, [&]() -> const CString& { return Text(items, definition, -1); },
        std::wstring_view{definition.szLongName});
}

}  // namespace veltrane::detail
