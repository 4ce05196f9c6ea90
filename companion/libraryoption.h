#pragma once

#include "veltrane/options/typed.h"

namespace veltrane::config {

/// A single option of the library by its long name; a name that the library does not have does not compile.
template <OptionName Name>
inline constexpr const XOptionDefinition& LIBRARY_OPTION =
    detail::NamedOption<Name, LIBRARY_ALONE, detail::Values::One>::ROW;

/// Its item; null without one, also in a tool that leaves the option out.
template <OptionName Name>
const XOptionItem* FindItem(const XOption& options) {
    return options.FindOptionItem(LIBRARY_OPTION<Name>, -1);
}

}  // namespace veltrane::config
