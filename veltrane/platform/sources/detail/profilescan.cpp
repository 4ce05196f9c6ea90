#include "veltrane/platform/sources/detail/profilescan.h"

#include <algorithm>

#include "veltrane/platform/sources/detail/nameend.h"
#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/decoding.h"

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

wchar_t TakeFolded(std::string_view& text, bool withSurrogates) noexcept {
    const char first = text[0];
    if (static_cast<signed char>(first) < 0) return FoldCharacter(TakeFileCharacter(text, withSurrogates));
    text.remove_prefix(1);
    return first >= 'A' && first <= 'Z' ? first + ('a' - 'A') : first;
}

bool IsEntry(std::string_view line, const ProfileName& key, bool withSurrogates, std::string_view& value) noexcept {
    line = WithoutLeadingBlanks(line);
    if (!key.TakeFrom(line, withSurrogates)) return false;
    line = WithoutLeadingBlanks(line);
    if (line.empty() || (line[0] != '=' && line[0] != '\0')) return false;
    const std::size_t equals = line.find('=');
    if (equals == line.npos) return false;
    value = WithoutQuotes(Cleaned(line.substr(equals + 1)));
    return true;
}

}  // namespace

ProfileName::ProfileName(std::wstring_view asked) noexcept : m_Name(asked) {
    while (m_Name.starts_with(L' ')) m_Name.remove_prefix(1);
    while (m_Name.ends_with(L' ')) m_Name.remove_suffix(1);
}

bool ProfileName::CanBeKey() const noexcept {
    return !m_Name.empty() && m_Name[0] != L';' && m_Name[0] != L'[' && CanStandBefore(L'=');
}

bool ProfileName::CanStandBefore(wchar_t end) const noexcept {
    // The names of a file have lost their blanks; these are the ones that a question keeps.
    const auto isBlank = [](wchar_t element) {
        return element >= 0 && element < 0x80 && IsFileBlank(static_cast<char>(element));
    };
    if (!m_Name.empty() && (isBlank(m_Name.front()) || isBlank(m_Name.back()))) return false;
    return std::ranges::none_of(
        m_Name, [end](wchar_t element) { return element == end || element == L'\r' || element == L'\n'; });
}

bool ProfileName::TakeFrom(std::string_view& text, bool withSurrogates) const noexcept {
    std::size_t taken = 0;  // elements of one byte, nearly always all of them
    for (; taken < m_Name.size(); ++taken) {
        if (taken == text.size()) return false;
        const char byte = text[taken];
        if (static_cast<signed char>(byte) < 0) break;
        const wchar_t element = m_Name[taken];
        if (byte != element && FoldCharacter(byte) != FoldCharacter(element)) return false;
    }
    text.remove_prefix(taken);
    for (const wchar_t element : m_Name.substr(taken)) {
        if (text.empty() || TakeFolded(text, withSurrogates) != FoldCharacter(element)) return false;
    }
    return true;
}

bool ProfileName::CanEndAt(std::string_view text, std::size_t last) const noexcept {
    constexpr std::size_t looked = 8;  // tells nearly all, and keeps a long name from being read again at every place
    for (std::size_t i = 1; i <= std::min(looked, m_Name.size()); ++i) {
        std::string_view byte = text.substr(last + 1 - i, 1);
        if (static_cast<signed char>(byte[0]) < 0) return true;  // an element of several bytes: to be decoded
        if (TakeFolded(byte, false) != FoldCharacter(m_Name[m_Name.size() - i])) return false;
        if (last + 1 == i) return i == m_Name.size();
    }
    return true;
}

bool ProfileSections::Next(std::string_view& name) noexcept {
    if (!NextHeader()) return false;
    const std::string_view rest = m_Text.substr(m_At);
    const auto* const end = std::ranges::find_if(rest, [](char byte) { return byte == ']' || IsLineEnd(byte); });
    name = Cleaned({rest.begin(), end});
    return true;
}

bool ProfileSections::Find(const ProfileName& name, std::string_view& lines) noexcept {
    if (!name.CanBeSection()) return false;
    while (NextHeader()) {
        if (!IsNamed(name)) continue;
        const std::size_t start = EndOfLine(m_Text, m_At);
        const std::size_t end = NextHeader() ? m_At - 1 : m_Text.size();
        lines = m_Text.substr(start, end - start);
        return true;
    }
    return false;
}

bool ProfileSections::NextHeader() noexcept {
    for (std::size_t at = m_Text.find('[', m_At); at != m_Text.npos; at = m_Text.find('[', at + 1)) {
        if (!StandsFirstInLine(at)) continue;
        m_At = at + 1;
        return true;
    }
    m_At = m_Text.size();
    return false;
}

// Looks back no further than to the '[' before it, so a text full of them costs no more than one pass.
bool ProfileSections::StandsFirstInLine(std::size_t position) const noexcept {
    while (position > 0 && IsFileBlank(m_Text[position - 1])) --position;
    return position == 0 || IsLineEnd(m_Text[position - 1]);
}

bool ProfileSections::IsNamed(const ProfileName& name) const noexcept {
    std::string_view rest = WithoutLeadingBlanks(m_Text.substr(m_At));
    if (!name.TakeFrom(rest, m_WithSurrogates)) return false;
    rest = WithoutLeadingBlanks(rest);
    return rest.empty() || rest[0] == ']' || rest[0] == '\0' || IsLineEnd(rest[0]);
}

bool ProfileKeys::Next(std::string_view& key) noexcept {
    for (std::string_view line; m_Lines.Next(line);) {
        line = WithoutLeadingBlanks(line);
        const std::size_t equals = line.find('=');
        if (equals == line.npos || line[0] == ';') continue;
        key = Cleaned(line.substr(0, equals));
        if (!key.empty()) return true;
    }
    return false;
}

bool FindProfileValue(std::string_view lines, const ProfileName& key, bool withSurrogates,
                      std::string_view& value) noexcept {
    if (!key.CanBeKey() || lines.empty()) return false;
    const NameEndSearch search{key.View()};
    // Each round leaves a line behind for good, so looking back for a line's start never looks at a byte twice.
    for (std::size_t at = search.Find(lines, 1); at < lines.size(); at = search.Find(lines, at + 1)) {
        if (!key.CanEndAt(lines, at)) continue;
        const std::size_t start = StartOfLine(lines, at);
        at = EndOfLine(lines, at);
        if (IsEntry(lines.substr(start, at - start), key, withSurrogates, value)) return true;
    }
    return false;
}

}  // namespace veltrane::detail
