#include "veltrane/platform/sources/detail/registrywalk.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "veltrane/platform/sources/winreg.h"
#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/internal/utf16.h"

namespace veltrane::detail {

namespace {

constexpr std::string_view HEADER = "Windows Registry Editor Version 5.00";
constexpr std::string_view OLD_HEADER = "REGEDIT4";  // its lists hold narrow text
constexpr std::string_view ROOTS[] = {"hkey_local_machine\\", "hklm\\"};

wchar_t LowerCase(char byte) noexcept {
    return FoldCharacter(static_cast<unsigned char>(byte));
}

/// Cuts a lower-case word from the front of a text that holds it in any case.
bool CutWord(std::string_view& text, std::string_view word) noexcept {
    if (!std::ranges::equal(text.substr(0, word.size()), word, {}, LowerCase)) return false;
    text.remove_prefix(word.size());
    return true;
}

bool CutByte(std::string_view& text, char byte) noexcept {
    if (!text.starts_with(byte)) return false;
    text.remove_prefix(1);
    return true;
}

std::optional<std::uint32_t> HexDigit(char byte) noexcept {
    const wchar_t lower = LowerCase(byte);
    if (lower >= L'0' && lower <= L'9') return static_cast<std::uint32_t>(lower - L'0');
    if (lower >= L'a' && lower <= L'f') return static_cast<std::uint32_t>(lower - L'a' + 10);
    return {};
}

/// Cuts a number of 1 to most digits; a further digit stays.
bool CutHexNumber(std::string_view& text, int most, std::uint32_t& number) noexcept {
    int count = 0;
    number = 0;
    for (; count < most && !text.empty(); ++count) {
        const auto digit = HexDigit(text[0]);
        if (!digit) break;
        number = number << 4 | *digit;
        text.remove_prefix(1);
    }
    return count > 0;
}

/// Whether nothing but a comment follows.
bool IsOnlyComment(std::string_view text) noexcept {
    text = WithoutLeadingBlanks(text);
    return text.empty() || text[0] == ';';
}

/// Cuts "text" with its quotes; a backslash escapes itself or a quote and is an ordinary character before anything
/// else.
bool CutQuoted(std::string_view& text, std::string& inner) {
    if (!CutByte(text, '"')) return false;
    inner.clear();
    while (!text.empty()) {
        if (CutByte(text, '"')) return true;
        if (text.starts_with("\\\\") || text.starts_with("\\\"")) text.remove_prefix(1);
        inner += text[0];
        text.remove_prefix(1);
    }
    return false;
}

void AppendText(std::string& data, FileText text) {
    while (!text.bytes.empty()) AppendUtf16(data, static_cast<char32_t>(CutFileCharacter(text)));
}

bool AppendBytes(std::string& bytes, std::string_view part, bool& expectsByte) {
    for (part = WithoutLeadingBlanks(part); !part.empty(); part = WithoutLeadingBlanks(part)) {
        std::uint32_t byte = 0;
        if (expectsByte ? !CutHexNumber(part, 2, byte) : !CutByte(part, ',')) return false;
        if (expectsByte) bytes += static_cast<char>(byte);
        expectsByte = !expectsByte;
    }
    return true;
}

bool ReadNumber(std::string_view data, RegistryLine& read) {
    std::uint32_t number = 0;
    if (!CutHexNumber(data, 8, number) || !IsOnlyComment(data)) return false;
    read.type = REG_DWORD;
    AppendUnit(read.data, number & 0xFFFF);
    AppendUnit(read.data, number >> 16);
    return true;
}

/// "[PATH]" or "[-PATH]".
RegistryLine::Kind ReadKey(std::string_view line, std::string_view& path) noexcept {
    using enum RegistryLine::Kind;
    const std::size_t end = line.rfind(']');
    if (end == line.npos) return MalformedKey;
    path = line.substr(1, end - 1);
    const bool isRemoved = CutByte(path, '-');
    if (!std::ranges::any_of(ROOTS, [&](std::string_view root) { return CutWord(path, root); })) return OtherRoot;
    if (path.starts_with('\\') || path.find("\\\\") != path.npos) return MalformedKey;  // an empty name inside
    if (path.ends_with('\\')) path.remove_suffix(1);
    return isRemoved ? RemovedKey : Key;
}

}  // namespace

bool RegistryWalk::NextLine(std::string_view& line) noexcept {
    while (NextFilledLine(line)) {
        if (line[0] != ';') return true;
    }
    return false;
}

bool RegistryWalk::NextFilledLine(std::string_view& line) noexcept {
    while (m_Lines.Next(line)) {
        if (!m_Lines.IsInsidePair()) ++m_nNumber;
        line = WithoutBlanks(line);
        if (!line.empty()) return true;
    }
    return false;
}

bool RegistryWalk::ReadHeader(RegistryLine& read) {
    if (!NextFilledLine(read.line)) return false;
    read.number = read.last = m_nNumber;
    m_IsOld = read.line == OLD_HEADER;
    read.kind = m_IsOld || read.line == HEADER ? RegistryLine::Kind::Header : RegistryLine::Kind::BadHeader;
    return true;
}

bool RegistryWalk::Next(RegistryLine& read) {
    if (!NextLine(read.line)) return false;
    ReadLine(read);
    return true;
}

bool RegistryWalk::NextKey(RegistryLine& read) {
    while (NextLine(read.line)) {
        const bool isKey = read.line[0] == '[';
        if (isKey || read.line.ends_with('\\')) ReadLine(read);  // a list consumes its further lines too
        if (isKey) return true;
    }
    return false;
}

void RegistryWalk::ReadLine(RegistryLine& read) {
    read.number = m_nNumber;
    const char first = read.line[0];
    if (first == '[') {
        read.kind = ReadKey(read.line, read.path);
    } else {
        read.kind = first == '"' || first == '@' ? ReadValue(read.line, read) : RegistryLine::Kind::Other;
    }
    read.last = m_nNumber;
}

RegistryLine::Kind RegistryWalk::ReadValue(std::string_view line, RegistryLine& read) {
    using enum RegistryLine::Kind;
    read.name.clear();
    read.data.clear();
    if (!CutByte(line, '@') && !CutQuoted(line, read.name)) return MalformedValue;
    line = WithoutLeadingBlanks(line);
    if (!CutByte(line, '=')) return MalformedValue;
    line = WithoutLeadingBlanks(line);
    if (line.starts_with('-') && IsOnlyComment(line.substr(1))) return RemovedValue;
    return ReadData(line, read) ? Value : MalformedValue;
}

bool RegistryWalk::ReadData(std::string_view data, RegistryLine& read) {
    if (data.starts_with('"')) return ReadText(data, read);
    if (CutWord(data, "dword:")) return ReadNumber(data, read);
    if (!CutWord(data, "hex")) return false;
    read.type = REG_BINARY;
    if (CutByte(data, '(') && !(CutHexNumber(data, 8, read.type) && CutByte(data, ')'))) return false;
    return CutByte(data, ':') && ReadList(data, read);
}

bool RegistryWalk::ReadText(std::string_view data, RegistryLine& read) const {
    std::string text;
    if (!CutQuoted(data, text) || !IsOnlyComment(data)) return false;
    read.type = REG_SZ;
    AppendText(read.data, m_Text.Piece(text));
    AppendUnit(read.data, U'\0');
    return true;
}

/// All lines of the list are consumed, those of a malformed one too.
bool RegistryWalk::ReadList(std::string_view part, RegistryLine& read) {
    std::string bytes;
    bool expectsByte = true;  // at the start and after a comma
    bool isGood = true;
    for (bool goesOn = true; goesOn;) {
        goesOn = part.ends_with('\\') && part.find(';') == part.npos;
        if (goesOn) part.remove_suffix(1);
        isGood = isGood && AppendBytes(bytes, part.substr(0, part.find(';')), expectsByte);
        goesOn = goesOn && NextLine(part);
    }
    const bool isNarrow = m_IsOld && (read.type == REG_SZ || read.type == REG_EXPAND_SZ || read.type == REG_MULTI_SZ);
    if (isNarrow) {
        AppendText(read.data, {bytes});
    } else {
        read.data = std::move(bytes);
    }
    return isGood;
}

}  // namespace veltrane::detail
