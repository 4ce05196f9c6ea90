#include "veltrane/platform/sources/detail/profileindex.h"

#include <algorithm>

namespace veltrane::detail {

namespace {

constexpr int MARK_DISTANCE = 16;  // lines: marks take little memory, and counting from one little time

}  // namespace

ProfileIndex::ProfileIndex(FileText text) : m_Text(text) {
    constexpr std::size_t bytesOfName = 4;  // average at least; a name takes five times that in the tables
    NameHash section;
    LineWalk lines{text.bytes};
    int number = 0;
    for (std::string_view line; m_IsUsable && lines.Next(line);) {
        if (!lines.IsInsidePair() && number++ % MARK_DISTANCE == 0) {
            m_Marks.push_back(static_cast<std::uint32_t>(PlaceOf(line)));
        }
        AddLine(line, section);
        m_IsUsable = m_Sections.Size() + m_Keys.Size() <= text.bytes.size() / bytesOfName + bytesOfName;
    }
    m_Sections.Link();
    m_Keys.Link();
}

void ProfileIndex::AddLine(std::string_view line, NameHash& section) {
    const ProfileLine read = ReadProfileLine(line);
    if (read.kind == ProfileLine::Kind::Header) {
        section = NameHash{}.AddFolded(m_Text.Piece(read.name));
        m_Sections.Add(section, m_Headers.size());
        m_Headers.push_back(static_cast<std::uint32_t>(PlaceOf(read.line)));
    } else if (read.kind == ProfileLine::Kind::Entry && !m_Headers.empty()) {
        m_Keys.Add(NameHash{section}.AddFolded(m_Text.Piece(read.name)), PlaceOf(read.line));
    }
}

ProfileLine ProfileIndex::LineAt(std::size_t place) const noexcept {
    return ReadProfileLine(m_Text.bytes.substr(place, EndOfLine(m_Text.bytes, place) - place));
}

bool ProfileIndex::NextSection(std::size_t& number, std::string_view& name) const noexcept {
    if (number == m_Headers.size()) return false;
    name = LineAt(m_Headers[number++]).name;
    return true;
}

bool ProfileIndex::FindSection(const ProfileName& name, std::string_view& lines) const noexcept {
    return m_Sections.Find(NameHash{}.AddFolded(name.View()), [&](std::size_t number) {
        const ProfileLine header = LineAt(m_Headers[number]);
        if (!name.Is(m_Text.Piece(header.name))) return false;
        const std::size_t start = m_Headers[number] + header.line.size();
        const std::size_t end = number + 1 < m_Headers.size() ? m_Headers[number + 1] : m_Text.bytes.size();
        lines = m_Text.bytes.substr(start, end - start);
        return true;
    });
}

bool ProfileIndex::FindValue(const ProfileName& section, std::string_view lines, const ProfileName& key,
                             std::string_view& value) const noexcept {
    const std::size_t start = PlaceOf(lines);
    return m_Keys.Find(NameHash{}.AddFolded(section.View()).AddFolded(key.View()), [&](std::size_t place) {
        if (place < start || place >= start + lines.size()) return false;  // of another section of the name
        const ProfileLine entry = LineAt(place);
        if (!key.Is(m_Text.Piece(entry.name))) return false;
        value = entry.Value();
        return true;
    });
}

int ProfileIndex::LineNumber(std::size_t position) const noexcept {
    const auto mark = std::ranges::upper_bound(m_Marks, position) - 1;  // a position in a line comes after some mark
    const auto before = static_cast<int>(mark - m_Marks.begin()) * MARK_DISTANCE;
    return before + detail::LineNumber(m_Text.bytes.substr(*mark), position - *mark);
}

}  // namespace veltrane::detail
