#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/detail/lines.h"

/// A name as asked for, folded once. Blanks (U+0020) at its ends do not count.
class ProfileName {
public:
    explicit ProfileName(std::wstring_view asked);

    bool CanBeSection() const noexcept { return CanBeName(L"]\r\n"); }
    bool CanBeKey() const noexcept;

    /// Takes the name, in any case, from the front of a text that decodes to it.
    bool TakeFrom(std::string_view& text, bool withSurrogates) const noexcept;

private:
    bool CanBeName(std::wstring_view foreign) const noexcept;

    std::wstring m_Folded;
};

/// Answers one question to the text of a profile file. It looks at bytes and decodes no more of them than it must; what
/// it hands out are pieces of the text.
class ProfileScan {
public:
    ProfileScan(std::string_view text, bool withSurrogates) noexcept
        : m_Text(text), m_WithSurrogates(withSurrogates), m_Section(text, text.size()) {}

    /// Name of the next section in file order; it may be empty.
    bool NextSection(std::string_view& name) noexcept;
    /// Goes into the first section of a name, the only one that answers.
    bool EnterSection(const ProfileName& name) noexcept;

    /// Key of the next entry in the section.
    bool NextKey(std::string_view& key) noexcept;
    /// Value of the first entry from here on that has the key, without blanks and without its pair of quotes.
    bool FindValue(const ProfileName& key, std::string_view& value) noexcept;

private:
    bool NextHeader() noexcept;
    bool StandsFirstInLine(std::size_t position) const noexcept;
    bool IsNameAt(std::string_view rest, const ProfileName& name) const noexcept;
    bool NextLine(std::string_view& line) noexcept;

    std::string_view m_Text;
    bool m_WithSurrogates;
    std::size_t m_At = 0;  // where the search for headers goes on: behind the '[' of the header found last
    LineWalk m_Section;
};
