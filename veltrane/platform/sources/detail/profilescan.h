#pragma once

#include <cstddef>
#include <string_view>

#include "veltrane/platform/sources/detail/lines.h"
#include "veltrane/platform/text/internal/decoding.h"

namespace veltrane::detail {

/// What one line of a profile text is, taken by itself. Pieces of the text, as bytes.
struct ProfileLine {
    enum class Kind {
        Blank,
        Comment,
        Header,
        Entry,
        NoEquals,  ///< nothing: neither listed nor found
        NoKey,     ///< nothing, too
    };
    Kind kind = Kind::Blank;
    std::string_view line;   ///< without the blanks in front
    std::string_view name;   ///< of a section, or the key
    std::string_view right;  ///< of an entry: what follows its '='; of a header: from its bracket on

    /// Value of an entry, without blanks and without its pair of quotes.
    std::string_view Value() const noexcept;
};

/// @param line  without its end
ProfileLine ReadProfileLine(std::string_view line) noexcept;

/// A name as asked for, without the blanks (U+0020) at its ends. Keeps a view of the caller's text.
class ProfileName {
public:
    explicit ProfileName(std::wstring_view asked) noexcept;

    std::wstring_view View() const noexcept { return m_Name; }
    /// Whether a name of a profile text is this one, in any case.
    bool Is(FileText name) const noexcept;
    /// Whether the name can end at a position, as far as a few bytes tell; never false for one that does.
    bool CanEndAt(std::string_view text, std::size_t last) const noexcept;

private:
    std::wstring_view m_Name;
};

/// Walks over the section headers of a profile text.
class ProfileSections {
public:
    explicit ProfileSections(FileText text) noexcept : m_Text(text) {}

    /// Name of the next section in file order; it may be empty.
    bool Next(std::string_view& name) noexcept;
    /// Lines of the first section of a name from here on, the only one that answers: from the end of its header line
    /// to the next header.
    bool Find(const ProfileName& name, std::string_view& lines) noexcept;

private:
    bool NextHeader() noexcept;
    bool StandsFirstInLine(std::size_t position) const noexcept;

    FileText m_Text;
    std::size_t m_At = 0;  // after the '[' of the header found last
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

/// Finds the value of the first entry with a key in the lines of a section.
bool FindProfileValue(FileText text, const ProfileName& key, std::string_view& value) noexcept;

}  // namespace veltrane::detail
