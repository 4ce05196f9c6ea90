#pragma once

#include <span>

#include "veltrane/options/libraryrows.h"

namespace veltrane {

/// The options of a tool's own, in the form of the library's table, and which of the library's it has beside them.
struct OwnTable {
    std::span<const XOptionDefinition> options = {};
    std::span<const XConfigSection> sections = {};  ///< further ones, fixed names or below others
    /// First lines of the help, line ends included, in place of the library's; null keeps those.
    const wchar_t* helpHead = nullptr;
    /// The same for the whole process, so a module leaves the choice to its tool: it keeps the default.
    LibraryRows library = ALL_ROWS;
};

/// For a static_assert beside a tool's rows: true, or it does not compile, where they break a rule alone, among each
/// other or beside the library's rows that the tool has. The compiler shows which.
/// @code
/// static_assert(veltrane::FitsLibrary(OWN_TABLE));
/// @endcode
consteval bool FitsLibrary(const OwnTable& table) {
    detail::TableRows library = detail::LIBRARY_ROWS;
    library.present = table.library.View();
    const detail::TableRows tables[] = {library, {table.options, table.sections}};
    detail::CheckOwnTables(tables);
    return true;
}

/// Makes the options of a tool's own known to the process while it lives: they are found, typed, read, walked and shown
/// like the library's, after those and in the order of registration. To be made before the first store and to outlive
/// the last one. Several may live side by side, as those of a tool and of its modules; the choice of one among the
/// library's rows then counts for all, until the last of them has ended.
/// @code
/// int main() {
///     const veltrane::OwnOptions options{{OPTIONS, SECTIONS, L"Synopsis: scale [options] <database-name>\r\n"}};
///     XOption store;
/// @endcode
class VELTRANE_API OwnOptions {
public:
    /// Copies rows, sections and texts: they need not live any longer.
    /// @throws XException  a store lives; another registration has made another choice among the library's rows; or a
    ///                     row breaks a rule alone, beside those of its table, of the library or of other
    ///                     registrations, whose rows must not need one that is left out now
    [[nodiscard]] explicit OwnOptions(const OwnTable& table);
    OwnOptions(const OwnOptions&) = delete;
    OwnOptions& operator=(const OwnOptions&) = delete;
    /// The options are unknown afterwards; while a store lives, which is a fault of the program, they stay known, and
    /// go with the last store. Pointers to their rows are valid until then.
    ~OwnOptions();
};

}  // namespace veltrane
