#pragma once

#include <cstddef>
#include <string_view>

#include "veltrane/platform/sources/detail/lines.h"

namespace veltrane::detail {

/// A name as asked for, without the blanks (U+0020) at its ends. It looks at the caller's text.
class ProfileName {
public:
    explicit ProfileName(std::wstring_view asked) noexcept;

    std::wstring_view View() const noexcept { return m_Name; }
    bool CanBeSection() const noexcept { return CanStandBefore(L']'); }
    bool CanBeKey() const noexcept;
    /// Whether the name can end at a position, as far as a few bytes tell; never false for one that does.
    bool CanEndAt(std::string_view text, std::size_t last) const noexcept;

    /// Takes the name, in any case, from the front of a text.
    bool TakeFrom(std::string_view& text, bool withSurrogates) const noexcept;

private:
    bool CanStandBefore(wchar_t end) const noexcept;

    std::wstring_view m_Name;
};

/// Walks over the section headers of a profile text. It looks at bytes and hands out pieces of the text.
class ProfileSections {
public:
    ProfileSections(std::string_view text, bool withSurrogates) noexcept
        : m_Text(text), m_WithSurrogates(withSurrogates) {}

    /// Name of the next section in file order; it may be empty.
    bool Next(std::string_view& name) noexcept;
    /// Lines of the first section of a name from here on, the only one that answers: from the end of its header line
    /// to the next header.
    bool Find(const ProfileName& name, std::string_view& lines) noexcept;

private:
    bool NextHeader() noexcept;
    bool StandsFirstInLine(std::size_t position) const noexcept;
    bool IsNamed(const ProfileName& name) const noexcept;

    std::string_view m_Text;
    bool m_WithSurrogates;
    std::size_t m_At = 0;  // behind the '[' of the header found last
};

/// Walks over the entries of a section.
class ProfileKeys {
public:
    explicit ProfileKeys(std::string_view lines) noexcept : m_Lines(lines) {}

    /// Key of the next entry; never empty.
    bool Next(std::string_view& key) noexcept;

private:
    LineWalk m_Lines;
};

/// Finds the value of the first entry with a key, without blanks and without its pair of quotes.
bool FindProfileValue(std::string_view lines, const ProfileName& key, bool withSurrogates,
                      std::string_view& value) noexcept;

}  // namespace veltrane::detail
