#include "veltrane/platform/sources/detail/profilescan.h"

#include <algorithm>
#include <cstdint>

#include "veltrane/platform/sources/detail/keyendsearch.h"
#include "veltrane/platform/sources/detail/nametable.h"

namespace veltrane::detail {

namespace {

// Names, keys and values end at their first NUL, and lose their blanks after that.
std::string_view Cleaned(std::string_view text) noexcept {
    return WithoutBlanks(text.substr(0, text.find('\0')));
}

std::string_view WithoutQuotes(std::string_view value) noexcept {
    const bool isQuoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

}  // namespace

std::string_view ProfileLine::Value() const noexcept {
    return WithoutQuotes(Cleaned(right));
}

ProfileLine ReadProfileLine(std::string_view line) noexcept {
    using enum ProfileLine::Kind;
    line = WithoutLeadingBlanks(line);
    if (line.empty()) return {Blank, line, {}, {}};
    if (line[0] == ';') return {Comment, line, {}, {}};
    if (line[0] == '[') {
        const std::size_t end = std::min(line.find(']'), line.size());
        return {Header, line, Cleaned(line.substr(1, end - 1)), line.substr(end)};
    }
    const std::size_t equals = line.find('=');
    if (equals == line.npos) return {NoEquals, line, {}, {}};
    const std::string_view key = Cleaned(line.substr(0, equals));
    return {key.empty() ? NoKey : Entry, line, key, line.substr(equals + 1)};
}

ProfileName::ProfileName(std::wstring_view asked) noexcept
    : m_Name(Trimmed(asked, [](wchar_t element) { return element == L' '; })) {}

bool ProfileName::Is(FileText name) const noexcept {
    for (const wchar_t element : m_Name) {
        if (name.bytes.empty()) return false;
        if (static_cast<std::uint32_t>(element) < 0x80 && name.bytes[0] == static_cast<char>(element)) {
            name.bytes.remove_prefix(1);  // same spelling, as nearly always
        } else if (CutFolded(name) != FoldCharacter(element)) {
            return false;
        }
    }
    return name.bytes.empty();
}

bool ProfileName::CanEndAt(std::string_view text, std::size_t last) const noexcept {
    constexpr std::size_t looked = 8;  // decides nearly every case, and a long name is not read again at every place
    for (std::size_t i = 1; i <= std::min(looked, m_Name.size()); ++i) {
        const auto byte = static_cast<signed char>(text[last + 1 - i]);
        if (byte < 0) return true;  // an element of several bytes: to be decoded
        if (FoldCharacter(byte) != FoldCharacter(m_Name[m_Name.size() - i])) return false;
        if (last + 1 == i) return i == m_Name.size();
    }
    return true;
}

bool ProfileSections::Next(std::string_view& name) noexcept {
    if (!NextHeader()) return false;
    const std::size_t bracket = m_At - 1;
    name = ReadProfileLine(m_Text.bytes.substr(bracket, EndOfLine(m_Text.bytes, m_At) - bracket)).name;
    return true;
}

bool ProfileSections::Find(const ProfileName& name, std::string_view& lines) noexcept {
    for (std::string_view each; Next(each);) {
        if (!name.Is(m_Text.Piece(each))) continue;
        const std::size_t start = EndOfLine(m_Text.bytes, m_At);
        const std::size_t end = NextHeader() ? m_At - 1 : m_Text.bytes.size();
        lines = m_Text.bytes.substr(start, end - start);
        return true;
    }
    return false;
}

bool ProfileSections::NextHeader() noexcept {
    for (std::size_t at = m_Text.bytes.find('[', m_At); at != m_Text.bytes.npos; at = m_Text.bytes.find('[', at + 1)) {
        if (!StandsFirstInLine(at)) continue;
        m_At = at + 1;
        return true;
    }
    m_At = m_Text.bytes.size();
    return false;
}

// Looks back no further than to the '[' before it, so a text full of them costs no more than one pass.
bool ProfileSections::StandsFirstInLine(std::size_t position) const noexcept {
    while (position > 0 && IsFileBlank(m_Text.bytes[position - 1])) --position;
    return position == 0 || IsLineEnd(m_Text.bytes[position - 1]);
}

bool ProfileKeys::Next(std::string_view& key) noexcept {
    for (std::string_view line; m_Lines.Next(line);) {
        const ProfileLine read = ReadProfileLine(line);
        key = read.name;
        if (read.kind == ProfileLine::Kind::Entry) return true;
    }
    return false;
}

bool FindProfileValue(FileText text, const ProfileName& key, std::string_view& value) noexcept {
    const std::string_view lines = text.bytes;
    if (key.View().empty() || lines.empty()) return false;
    const KeyEndSearch search{key.View()};
    // Each round finishes a line, so looking back for a line's start never reads a byte twice.
    for (std::size_t at = search.Find(lines, 1); at < lines.size(); at = search.Find(lines, at + 1)) {
        if (!key.CanEndAt(lines, at)) continue;
        const std::size_t start = StartOfLine(lines, at);
        at = EndOfLine(lines, at);
        const ProfileLine read = ReadProfileLine(lines.substr(start, at - start));
        if (read.kind != ProfileLine::Kind::Entry || !key.Is(text.Piece(read.name))) continue;
        value = read.Value();
        return true;
    }
    return false;
}

}  // namespace veltrane::detail
