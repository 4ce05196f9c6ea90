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

/// For a static_assert beside a tool's rows: true, or it does not compile, where they break a rule alone, among each
/// other or beside the library's rows. The compiler shows which.
/// @code
/// static_assert(veltrane::FitsLibrary({OPTIONS, SECTIONS}));
/// @endcode
consteval bool FitsLibrary(const OwnTable& table) {
    const detail::TableRows tables[] = {detail::LIBRARY_ROWS, {table.options, table.sections}};
    detail::CheckOwnTables(tables);
    return true;
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
    /// @throws XException  a store lives; or a row breaks a rule alone, beside those of its table, of the library or of
    ///                     other registrations
    [[nodiscard]] explicit OwnOptions(const OwnTable& table);
    OwnOptions(const OwnOptions&) = delete;
    OwnOptions& operator=(const OwnOptions&) = delete;
    /// The options are unknown afterwards; while a store lives, which is a fault of the program, they stay known, and
    /// go with the last store. Pointers to their rows are valid until then.
    ~OwnOptions();
};

}  // namespace veltrane
