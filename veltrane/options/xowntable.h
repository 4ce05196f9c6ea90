#pragma once

#include <span>

#include "veltrane/options/optiontable.h"

namespace veltrane {

/// The options of a tool's own, in the form of the library's table.
struct OwnTable {
    std::span<const XOptionDefinition> options = {};
    std::span<const XConfigSection> sections = {};  ///< further ones, fixed names or below others
    /// First lines of the help, line ends included, in place of the library's; null keeps those.
    const wchar_t* helpHead = nullptr;
};

/// Whether a tool's rows can stand in one table with the library's: for a static_assert beside them.
/// @code
/// static_assert(veltrane::FitsLibrary({OPTIONS, SECTIONS}));
/// @endcode
consteval bool FitsLibrary(const OwnTable& table) {
    const auto differ = [](const auto& rows, const auto& known) {
        for (const auto& row : rows) {
            for (const auto& other : known) {
                if (!detail::Differ(row, other)) return false;
            }
        }
        return true;
    };
    for (const XOptionDefinition& row : table.options) {
        const bool isThere = detail::IsAmong(row.eSection, table.sections);
        if (!isThere && !detail::IsAmong(row.eSection, detail::g_ConfigSections)) return false;
    }
    for (const XConfigSection& row : table.sections) {
        const bool isThere = detail::IsAmong(row.eParent, table.sections);
        if (!isThere && !detail::IsAmong(row.eParent, detail::g_ConfigSections)) return false;
    }
    return detail::OptionsDiffer(table.options) && detail::SectionsDiffer(table.sections) &&
           differ(table.options, detail::g_OptionDefinitions) && differ(table.sections, detail::g_ConfigSections);
}

/// Makes the options of a tool's own known to the process while it lives: they are found, typed, read, walked and shown
/// like the library's, after those and in the order of registration. To be made before the first store and to outlive
/// the last one. Several may live side by side, as those of a tool and of its modules.
/// @code
/// int main() {
///     const veltrane::OwnOptions options{{OPTIONS, SECTIONS, L"Synopsis: scale [options] <database-name>\r\n"}};
///     XOption store;
/// @endcode
class VELTRANE_API OwnOptions {
public:
    /// Copies rows, sections and texts: they need not live any longer.
    /// @throws XException  a store lives; an id or a name is in use, among them those of rows that are registered
    ///                     already; a name that could not be typed; a section that does not exist or stands below
    ///                     itself
    [[nodiscard]] explicit OwnOptions(const OwnTable& table);
    OwnOptions(const OwnOptions&) = delete;
    OwnOptions& operator=(const OwnOptions&) = delete;
    /// The options are unknown afterwards; while a store lives, which is a fault of the program, they stay known, and
    /// go with the last store. Pointers to their rows are valid until then.
    ~OwnOptions();
};

}  // namespace veltrane
