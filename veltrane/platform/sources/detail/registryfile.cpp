#include "veltrane/platform/sources/detail/registryfile.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "veltrane/platform/sources/detail/lines.h"
#include "veltrane/platform/sources/winreg.h"
#include "veltrane/platform/text/decoding.h"

namespace veltrane::detail {

namespace {

constexpr std::string_view HEADER = "Windows Registry Editor Version 5.00";
constexpr std::string_view OLD_HEADER = "REGEDIT4";  // its lists hold narrow text
constexpr std::string_view ROOTS[] = {"hkey_local_machine\\", "hklm\\"};

constexpr char LowerCase(char byte) noexcept {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

/// Takes a lower-case word from the front of a text that holds it in any case.
bool TakeWord(std::string_view& text, std::string_view word) noexcept {
    if (text.size() < word.size() || !std::ranges::equal(text.substr(0, word.size()), word, {}, LowerCase))
        return false;
    text.remove_prefix(word.size());
    return true;
}

bool TakeByte(std::string_view& text, char byte) noexcept {
    if (!text.starts_with(byte)) return false;
    text.remove_prefix(1);
    return true;
}

std::optional<std::uint32_t> HexDigit(char byte) noexcept {
    const char lower = LowerCase(byte);
    if (lower >= '0' && lower <= '9') return static_cast<std::uint32_t>(lower - '0');
    if (lower >= 'a' && lower <= 'f') return static_cast<std::uint32_t>(lower - 'a' + 10);
    return {};
}

/// Takes a number of 1 to most digits; a further digit stays.
bool TakeHexNumber(std::string_view& text, int most, std::uint32_t& number) noexcept {
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
bool IsTail(std::string_view text) noexcept {
    text = WithoutLeadingBlanks(text);
    return text.empty() || text[0] == ';';
}

/// Takes "text" with its quotes; a backslash hides itself or a quote and is ordinary before anything else.
bool TakeQuoted(std::string_view& text, std::string& inner) {
    if (!TakeByte(text, '"')) return false;
    inner.clear();
    while (!text.empty()) {
        if (TakeByte(text, '"')) return true;
        if (text.starts_with("\\\\") || text.starts_with("\\\"")) text.remove_prefix(1);
        inner += text[0];
        text.remove_prefix(1);
    }
    return false;
}

void AppendUnit(std::string& data, char32_t unit) {
    data += static_cast<char>(unit & 0xFF);
    data += static_cast<char>(unit >> 8);
}

/// Appends a text as 16-bit units, little-endian.
void AppendUtf16(std::string& data, std::string_view bytes, bool withSurrogates) {
    while (!bytes.empty()) {
        const auto codePoint = static_cast<char32_t>(TakeFileCharacter(bytes, withSurrogates));
        if (codePoint < 0x10000) {
            AppendUnit(data, codePoint);
        } else {
            AppendUnit(data, 0xD800 + ((codePoint - 0x10000) >> 10));
            AppendUnit(data, 0xDC00 + (codePoint & 0x3FF));
        }
    }
}

CString Folded(std::string_view bytes, bool withSurrogates) {
    return CString{DecodeFileText(bytes, withSurrogates)}.MakeLower();
}

/// Reads an export for the sake of one key.
class RegistryReader {
public:
    RegistryReader(std::string_view text, bool withSurrogates, std::wstring_view path, RegistryValues& values) noexcept
        : m_Lines(text), m_WithSurrogates(withSurrogates), m_Path(path), m_Values(values), m_Exists(path.empty()) {}

    bool Read() {
        if (!ReadHeader()) return false;
        for (std::string_view line; NextLine(line);) {
            if (line[0] == '[') {
                ReadKey(line);
            } else if (line[0] == '"' || line[0] == '@') {
                ReadValue(line);
            }
        }
        return m_Exists;
    }

private:
    /// The next line that is neither empty nor a comment, without blanks at its ends.
    bool NextLine(std::string_view& line) noexcept {
        while (NextFilledLine(line)) {
            if (line[0] != ';') return true;
        }
        return false;
    }

    bool NextFilledLine(std::string_view& line) noexcept {
        while (m_Lines.Next(line)) {
            if (!m_Lines.IsInsidePair()) ++m_Number;
            line = WithoutBlanks(line);
            if (!line.empty()) return true;
        }
        return false;
    }

    bool ReadHeader() noexcept {
        std::string_view line;
        if (!NextFilledLine(line)) return false;
        m_IsOld = line == OLD_HEADER;
        return m_IsOld || line == HEADER;
    }

    /// "[PATH]" or "[-PATH]". A line that is neither leaves no key current: its values must not fall into the key
    /// before.
    void ReadKey(std::string_view line) {
        m_IsCurrent = false;
        const std::size_t end = line.rfind(']');
        if (end == line.npos) return;
        std::string_view name = line.substr(1, end - 1);
        const bool isRemoved = TakeByte(name, '-');
        if (!std::ranges::any_of(ROOTS, [&](std::string_view root) { return TakeWord(name, root); })) return;
        if (name.starts_with('\\') || name.find("\\\\") != name.npos) return;  // an empty name inside
        if (name.ends_with('\\')) name.remove_suffix(1);
        if (isRemoved) {
            Remove(Folded(name, m_WithSurrogates).View());
        } else {
            Enter(Folded(name, m_WithSurrogates).View());
        }
    }

    void Enter(std::wstring_view path) {
        m_IsCurrent = path == m_Path;
        m_Exists = m_Exists || IsBelowOrSame(path, m_Path);
    }

    void Remove(std::wstring_view path) {
        if (!IsBelowOrSame(m_Path, path)) return;
        m_Exists = false;
        m_Values.clear();
    }

    /// Whether a key is another one or lies below it.
    static bool IsBelowOrSame(std::wstring_view path, std::wstring_view above) noexcept {
        if (above.empty()) return true;
        return path.starts_with(above) && (path.size() == above.size() || path[above.size()] == L'\\');
    }

    /// Values of other keys are read too: their lists may go on over lines that look like something else.
    void ReadValue(std::string_view line) {
        RegistryValue value;
        value.line = m_Number;
        std::string name;
        if (!TakeByte(line, '@') && !TakeQuoted(line, name)) return;
        line = WithoutLeadingBlanks(line);
        if (!TakeByte(line, '=')) return;
        line = WithoutLeadingBlanks(line);
        const bool isRemoved = line.starts_with('-') && IsTail(line.substr(1));
        if (!isRemoved && !ReadData(line, value)) return;
        if (!m_IsCurrent) return;
        if (isRemoved) {
            m_Values.erase(Folded(name, m_WithSurrogates));
        } else {
            m_Values.insert_or_assign(Folded(name, m_WithSurrogates), std::move(value));
        }
    }

    bool ReadData(std::string_view data, RegistryValue& value) {
        if (data.starts_with('"')) return ReadText(data, value);
        if (TakeWord(data, "dword:")) return ReadNumber(data, value);
        if (!TakeWord(data, "hex")) return false;
        value.type = REG_BINARY;
        if (TakeByte(data, '(') && !(TakeHexNumber(data, 8, value.type) && TakeByte(data, ')'))) return false;
        return TakeByte(data, ':') && ReadList(data, value);
    }

    bool ReadText(std::string_view data, RegistryValue& value) const {
        std::string text;
        if (!TakeQuoted(data, text) || !IsTail(data)) return false;
        value.type = REG_SZ;
        AppendUtf16(value.data, text, m_WithSurrogates);
        AppendUnit(value.data, U'\0');
        return true;
    }

    static bool ReadNumber(std::string_view data, RegistryValue& value) {
        std::uint32_t number = 0;
        if (!TakeHexNumber(data, 8, number) || !IsTail(data)) return false;
        value.type = REG_DWORD;
        AppendUnit(value.data, number & 0xFFFF);
        AppendUnit(value.data, number >> 16);
        return true;
    }

    /// All lines of the list are consumed, those of a malformed one too.
    bool ReadList(std::string_view part, RegistryValue& value) {
        std::string bytes;
        bool mayFollow = true;  // a byte: at the start and behind a comma
        bool isGood = true;
        for (bool goesOn = true; goesOn;) {
            goesOn = part.ends_with('\\') && part.find(';') == part.npos;
            if (goesOn) part.remove_suffix(1);
            isGood = isGood && AppendBytes(bytes, part.substr(0, part.find(';')), mayFollow);
            goesOn = goesOn && NextLine(part);
        }
        const bool isNarrow =
            m_IsOld && (value.type == REG_SZ || value.type == REG_EXPAND_SZ || value.type == REG_MULTI_SZ);
        if (isNarrow) {
            AppendUtf16(value.data, bytes, /*withSurrogates*/ false);
        } else {
            value.data = std::move(bytes);
        }
        return isGood;
    }

    static bool AppendBytes(std::string& bytes, std::string_view part, bool& mayFollow) {
        for (part = WithoutLeadingBlanks(part); !part.empty(); part = WithoutLeadingBlanks(part)) {
            std::uint32_t byte = 0;
            if (mayFollow ? !TakeHexNumber(part, 2, byte) : !TakeByte(part, ',')) return false;
            if (mayFollow) bytes += static_cast<char>(byte);
            mayFollow = !mayFollow;
        }
        return true;
    }

    LineWalk m_Lines;
    int m_Number = 0;  // of the line read last
    bool m_WithSurrogates;
    std::wstring_view m_Path;
    RegistryValues& m_Values;
    bool m_Exists;
    bool m_IsCurrent = false;
    bool m_IsOld = false;
};

}  // namespace

bool ReadRegistryKey(std::string_view text, bool withSurrogates, std::wstring_view path, RegistryValues& values) {
    return RegistryReader{text, withSurrogates, path, values}.Read();
}

}  // namespace veltrane::detail
