#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "veltrane/platform/sources/detail/nametable.h"
#include "veltrane/platform/sources/detail/profilescan.h"

namespace veltrane::detail {

/// The places of all sections and keys of a profile text, found in one pass; pays when the same text answers many
/// questions. Its answers are those of a search from the front. Keeps a view: the text must outlive it.
class ProfileIndex {
public:
    explicit ProfileIndex(FileText text);

    /// Whether there is an index: there is none for a text with a name in nearly every byte, whose index would be many
    /// times its size.
    bool IsUsable() const noexcept { return m_IsUsable; }

    /// Name of the section of a number, in file order; it may be empty. @return false after the last one
    bool NextSection(std::size_t& number, std::string_view& name) const noexcept;
    /// Lines of the first section of a name.
    bool FindSection(const ProfileName& name, std::string_view& lines) const noexcept;
    /// Value of the first entry with a key among the lines that FindSection gave for the section.
    bool FindValue(const ProfileName& section, std::string_view lines, const ProfileName& key,
                   std::string_view& value) const noexcept;
    /// Number, from 1, of the line that holds a position.
    int LineNumber(std::size_t position) const noexcept;

private:
    void AddLine(std::string_view line, NameHash& section);
    std::size_t PlaceOf(std::string_view part) const noexcept {
        return static_cast<std::size_t>(part.data() - m_Text.bytes.data());
    }
    ProfileLine LineAt(std::size_t place) const noexcept;

    FileText m_Text;
    bool m_IsUsable = true;
    std::vector<std::uint32_t> m_Headers;  // places of the brackets
    std::vector<std::uint32_t> m_Marks;    // places of the lines 1, 1 + MARK_DISTANCE ...
    NameTable m_Sections;                  // numbers of the headers
    NameTable m_Keys;                      // places of the keys, under the names of section and key
};

}  // namespace veltrane::detail
