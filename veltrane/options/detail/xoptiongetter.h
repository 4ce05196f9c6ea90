#pragma once

#include <string_view>

#include "veltrane/options/detail/xoptionitems.h"
#include "veltrane/options/detail/xoptionlocation.h"

namespace veltrane::detail {

/// What a getter of one type asks of the option, and the texts of its errors.
struct GetterType {
    bool (XOptionDefinition::*isType)() const;
    XFormat<std::wstring_view> wrongType;
    XFailure<std::wstring_view> failure;
};

/// The definition of a name; null for an empty one. @throws XException  unknown name
XOptionDefinition* KnownOption(const CString& name);

/// Looks an option up, checks its type and reads it; errors get the getter's reason in front.
template <class Read>
decltype(auto) ReadOption(const XSite& site, const GetterType& type, const CString& name, Read read) {
    return WithReason(
        site, type.failure,
        [&]() -> decltype(auto) {
            const XOptionDefinition* const definition = KnownOption(name);
            if (!definition) throw MakeError(site, L"The option <%s> is not known by the system!", name);
            if (!(definition->*type.isType)()) throw MakeError(site, type.wrongType, name.View());
            return read(*definition);
        },
        name.View());
}

inline constexpr GetterType STRING_GETTER{&XOptionDefinition::IsString,
                                          L"The option <%s> is not a string option!",
                                          {L"Error retrieving the string option <%s>!",
                                           L"An unknown exception occured while retrieving the string option <%s>!"}};

/// The text of an item; "" without one.
const CString& TextOf(const XOptionItem* item);

/// The text of a string option, as XOption::GetOptionString gives it. @throws XException  likewise
const CString& OptionText(const XOptionItems& items, const CString& name, int index);
/// That of a single option that is known to be a string option.
const CString& OptionText(const XOptionItems& items, const XOptionDefinition& definition);

}  // namespace veltrane::detail
