#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// Looks for the text that is nearest to a name: about one slip (an element dropped, added, changed, or two swapped) in
/// three elements, never more than three. Works for the compiler too; case counts.
/// @code
/// NearestText search{L"logfle"};
/// for (const std::wstring_view name : names) {
///     if (search.IsNearer(name)) nearest = name;
/// }
/// @endcode
class NearestText {
public:
    /// The name must live longer.
    constexpr explicit NearestText(std::wstring_view name)
        : m_Name(name), m_nBelow(name.size() <= LONGEST ? std::min(MOST_SLIPS, name.size() / 3) + 1 : 0) {}

    /// Whether a text is nearer than every one before; the name itself is the nearest.
    constexpr bool IsNearer(std::wstring_view text) {
        const std::size_t longer = std::max(text.size(), m_Name.size());
        if (longer - std::min(text.size(), m_Name.size()) >= m_nBelow) return false;
        const std::size_t slips = CountSlips(text);
        if (slips >= m_nBelow) return false;
        m_nBelow = slips;
        return true;
    }

private:
    static constexpr std::size_t LONGEST = 64;  // a longer text is near to no name
    static constexpr std::size_t MOST_SLIPS = 3;
    using Row = std::size_t[LONGEST + MOST_SLIPS + 1];  // for each beginning of a text, the slips from one of the name

    constexpr std::size_t CountSlips(std::wstring_view text) const {
        Row rows[3] = {};  // of the beginning of the name, the one before it and the one before that, in turn
        for (std::size_t j = 0; j <= text.size(); ++j) rows[0][j] = j;
        for (std::size_t i = 1; i <= m_Name.size(); ++i) {
            Row& row = rows[i % 3];
            const Row& last = rows[(i + 2) % 3];
            row[0] = i;
            for (std::size_t j = 1; j <= text.size(); ++j) {
                const std::size_t change = m_Name[i - 1] == text[j - 1] ? 0 : 1;
                row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + change});
                const bool isSwap = i > 1 && j > 1 && m_Name[i - 1] == text[j - 2] && m_Name[i - 2] == text[j - 1];
                if (isSwap) row[j] = std::min(row[j], rows[(i + 1) % 3][j - 2] + 1);
            }
        }
        return rows[m_Name.size() % 3][text.size()];
    }

    std::wstring_view m_Name;
    std::size_t m_nBelow;  // a nearer text must have fewer slips
};

/// The text that is nearest to a name, in any case of letters, and not the name itself; empty when none is near.
[[nodiscard]] VELTRANE_API CString Nearest(const CString& name, const std::vector<CString>& texts);

}  // namespace veltrane
