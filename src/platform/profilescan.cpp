#include "platform/detail/profilescan.h"

#include <algorithm>

#include "platform/characters.h"
#include "platform/detail/filetext.h"

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

wchar_t TakeFolded(std::string_view& text, bool withSurrogates) noexcept {
    const char first = text[0];
    if (static_cast<signed char>(first) < 0) return FoldCharacter(TakeFileCharacter(text, withSurrogates));
    text.remove_prefix(1);
    return first >= 'A' && first <= 'Z' ? first + ('a' - 'A') : first;
}

}  // namespace

ProfileName::ProfileName(std::wstring_view asked) {
    while (asked.starts_with(L' ')) asked.remove_prefix(1);
    while (asked.ends_with(L' ')) asked.remove_suffix(1);
    m_Folded = asked;
    std::ranges::transform(m_Folded, m_Folded.begin(), FoldCharacter);
}

bool ProfileName::CanBeKey() const noexcept {
    if (m_Folded.empty() || m_Folded.front() == L';' || m_Folded.front() == L'[') return false;
    return CanBeName(L"=\r\n");
}

bool ProfileName::CanBeName(std::wstring_view foreign) const noexcept {
    if (m_Folded.empty()) return true;
    // The names of a file have lost their blanks; these are the ones that a question keeps.
    constexpr std::wstring_view blanks = L"\t\v\f\x1A";
    const bool hasBlankEdge = blanks.find(m_Folded.front()) != blanks.npos || blanks.find(m_Folded.back()) != blanks.npos;
    return !hasBlankEdge && m_Folded.find_first_of(foreign) == m_Folded.npos;
}

bool ProfileName::TakeFrom(std::string_view& text, bool withSurrogates) const noexcept {
    for (const wchar_t element : m_Folded) {
        if (text.empty() || TakeFolded(text, withSurrogates) != element) return false;
    }
    return true;
}

bool ProfileScan::NextSection(std::string_view& name) noexcept {
    if (!NextHeader()) return false;
    const std::string_view rest = m_Text.substr(m_At);
    const auto* const end = std::ranges::find_if(rest, [](char byte) { return byte == ']' || IsLineEnd(byte); });
    name = Cleaned({rest.begin(), end});
    return true;
}

bool ProfileScan::EnterSection(const ProfileName& name) noexcept {
    if (!name.CanBeSection()) return false;
    while (NextHeader()) {
        if (!IsNameAt(m_Text.substr(m_At), name)) continue;
        m_Section = LineWalk{m_Text, m_At};
        std::string_view header;
        m_Section.Next(header);
        return true;
    }
    return false;
}

bool ProfileScan::NextKey(std::string_view& key) noexcept {
    for (std::string_view line; NextLine(line);) {
        const std::size_t equals = line.find('=');
        if (equals == line.npos || line[0] == ';') continue;
        key = Cleaned(line.substr(0, equals));
        if (!key.empty()) return true;
    }
    return false;
}

bool ProfileScan::FindValue(const ProfileName& key, std::string_view& value) noexcept {
    if (!key.CanBeKey()) return false;
    for (std::string_view line; NextLine(line);) {
        // The start of a line decides for nearly all of them; only behind the right key is the '=' of interest.
        std::string_view rest = line;
        if (!key.TakeFrom(rest, m_WithSurrogates)) continue;
        rest = WithoutLeadingBlanks(rest);
        if (rest.empty() || (rest[0] != '=' && rest[0] != '\0')) continue;
        const std::size_t equals = rest.find('=');
        if (equals == rest.npos) continue;
        value = WithoutQuotes(Cleaned(rest.substr(equals + 1)));
        return true;
    }
    return false;
}

bool ProfileScan::NextHeader() noexcept {
    for (std::size_t at = m_Text.find('[', m_At); at != m_Text.npos; at = m_Text.find('[', at + 1)) {
        if (!StandsFirstInLine(at)) continue;
        m_At = at + 1;
        return true;
    }
    m_At = m_Text.size();
    return false;
}

// Looks back no further than to the '[' before it, so a text full of them costs no more than one pass.
bool ProfileScan::StandsFirstInLine(std::size_t position) const noexcept {
    while (position > 0 && IsFileBlank(m_Text[position - 1])) --position;
    return position == 0 || IsLineEnd(m_Text[position - 1]);
}

bool ProfileScan::IsNameAt(std::string_view rest, const ProfileName& name) const noexcept {
    rest = WithoutLeadingBlanks(rest);
    if (!name.TakeFrom(rest, m_WithSurrogates)) return false;
    rest = WithoutLeadingBlanks(rest);
    return rest.empty() || rest[0] == ']' || rest[0] == '\0' || IsLineEnd(rest[0]);
}

// The next line of the section that is not empty, without blanks in front. The section ends at the next header.
bool ProfileScan::NextLine(std::string_view& line) noexcept {
    while (m_Section.Next(line)) {
        line = WithoutLeadingBlanks(line);
        if (!line.empty()) return line[0] != '[';
    }
    return false;
}
