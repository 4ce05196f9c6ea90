#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "fuzz_text.h"
#include "veltrane/platform/sources/winreg.h"

using Bytes = std::vector<unsigned char>;

inline void AppendUnits(Bytes& bytes, const Text& text) {
    const auto append = [&](std::uint32_t unit) {
        bytes.push_back(static_cast<unsigned char>(unit));
        bytes.push_back(static_cast<unsigned char>(unit >> 8));
    };
    for (const wchar_t each : text) {
        const auto element = static_cast<std::uint32_t>(each);
        if (element > 0xFFFF) append(0xD800 + ((element - 0x10000) >> 10));
        append(element > 0xFFFF ? 0xDC00 + (element & 0x3FF) : element);
    }
}

/// Cuts off a text in quotes and the blanks after it, and returns the text.
inline std::optional<Text> CutQuoted(Text& rest) {
    Text text;
    for (std::size_t at = 1; at < rest.size(); ++at) {
        if (rest[at] == L'"') {
            rest = Trimmed(rest.substr(at + 1));
            return text;
        }
        const bool isEscape =
            rest[at] == L'\\' && at + 1 < rest.size() && (rest[at + 1] == L'\\' || rest[at + 1] == L'"');
        text += rest[isEscape ? ++at : at];
    }
    return {};
}

/// Cuts off the '@' of the default value and returns its name, which is empty.
inline std::optional<Text> CutDefault(Text& rest) {
    rest = Trimmed(rest.substr(1));
    return Text{};
}

inline bool IsOnlyComment(const Text& text) {
    return Trimmed(text).empty() || Trimmed(text)[0] == L';';
}

inline bool AreDigits(const Text& text, std::size_t most) {
    return !text.empty() && text.size() <= most && text.find_first_not_of(L"0123456789abcdefABCDEF") == text.npos;
}

inline std::uint32_t NumberOf(const Text& digits) {
    return static_cast<std::uint32_t>(std::stoul(digits, nullptr, 16));
}

/// The keys and values of a registry export, read in the plainest way, to compare with.
class RegistryModel {
public:
    struct Value {
        std::uint32_t type = 0;
        Bytes bytes;
    };
    using Key = std::map<Text, Value>;  // by folded name
    using Keys = std::map<Text, Key>;   // by folded path without the root; "" is the root itself

    explicit RegistryModel(const Text& text) {
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find_first_of(L"\r\n", at), text.size());
            m_Lines.push_back(Trimmed(text.substr(at, end - at)));
            at = end + 1;
        }
        std::erase(m_Lines, Text{});
        if (m_Lines.empty() || !IsHeader(m_Lines[0])) return;
        keys[{}];
        for (m_At = 1; m_At < m_Lines.size(); ++m_At) ReadLine(m_Lines[m_At]);
    }

    Keys keys;

private:
    bool IsHeader(const Text& line) {
        m_bOld = line == L"REGEDIT4";
        return m_bOld || line == L"Windows Registry Editor Version 5.00";
    }

    void ReadLine(Text line) {
        if (line[0] == L'[') ReadKey(line);
        if (line[0] != L'"' && line[0] != L'@') return;
        const std::optional<Text> name = line[0] == L'"' ? CutQuoted(line) : CutDefault(line);
        if (!name || line.empty() || line[0] != L'=') return;
        ReadData(Folded(*name), Trimmed(line.substr(1)));
    }

    void ReadKey(const Text& line) {
        m_pKey = nullptr;
        const std::size_t end = line.rfind(L']');
        if (end == line.npos) return;
        Text path = Folded(line.substr(1, end - 1));
        const bool isRemoval = path.starts_with(L'-');
        if (isRemoval) path.erase(0, 1);
        const Text root = path.substr(0, path.find(L'\\') + 1);
        if (root != L"hkey_local_machine\\" && root != L"hklm\\") return;
        path.erase(0, root.size());
        if (path.starts_with(L'\\') || path.find(L"\\\\") != path.npos) return;
        if (path.ends_with(L'\\')) path.pop_back();
        if (isRemoval) {
            std::erase_if(keys, [&](const auto& key) {
                return path.empty() || key.first == path || key.first.starts_with(path + L'\\');
            });
            return;
        }
        m_pKey = &keys[{}];
        for (std::size_t at = 0; at != path.npos && !path.empty();) {
            at = path.find(L'\\', at + 1);
            m_pKey = &keys[path.substr(0, at)];
        }
    }

    void ReadData(const Text& name, Text data) {
        if (data.empty()) return;
        std::optional<Value> value;
        if (data[0] == L'-' && IsOnlyComment(data.substr(1))) {
            if (m_pKey) m_pKey->erase(name);
        } else if (data[0] == L'"') {
            const std::optional<Text> text = CutQuoted(data);
            if (!text || !IsOnlyComment(data)) return;
            value = Value{REG_SZ, {}};
            AppendUnits(value->bytes, *text + L'\0');
        } else if (Folded(data).starts_with(L"dword:")) {
            const Text digits = data.substr(6, data.find_first_of(L" \t\v\f\x1A;", 6) - 6);
            if (!IsOnlyComment(data.substr(6 + digits.size()))) return;
            if (!AreDigits(digits, 8)) return;
            value = Value{REG_DWORD, {}};
            for (int i = 0; i < 4; ++i) value->bytes.push_back(static_cast<unsigned char>(NumberOf(digits) >> 8 * i));
        } else if (Folded(data).starts_with(L"hex")) {
            value = ReadList(data.substr(3));
        }
        if (value && m_pKey) (*m_pKey)[name] = *value;
    }

    std::optional<Value> ReadList(const Text& data) {
        Value value{REG_BINARY, {}};
        const std::size_t colon = data.find(L':');
        if (colon == data.npos) return {};
        if (colon > 0) {
            const Text digits = data.substr(1, colon - 1 - 1);
            if (colon < 3 || data[0] != L'(' || data[colon - 1] != L')' || !AreDigits(digits, 8)) return {};
            value.type = NumberOf(digits);
        }
        Text list;
        Text line = data.substr(colon + 1);
        while (line.ends_with(L'\\') && line.find(L';') == line.npos) {
            list += line.substr(0, line.size() - 1) + L' ';
            while (++m_At < m_Lines.size() && m_Lines[m_At][0] == L';') {
            }
            line = m_At < m_Lines.size() ? m_Lines[m_At] : Text{};
        }
        list += line;
        if (!ReadBytes(value.bytes, list.substr(0, list.find(L';')))) return {};
        const bool isNarrow =
            m_bOld && (value.type == REG_SZ || value.type == REG_EXPAND_SZ || value.type == REG_MULTI_SZ);
        if (isNarrow) {
            const std::string narrow{value.bytes.begin(), value.bytes.end()};
            value.bytes.clear();
            AppendUnits(value.bytes, Decoded("\xEF\xBB\xBF" + narrow));
        }
        return value;
    }

    static bool ReadBytes(Bytes& bytes, Text list) {
        list = Trimmed(list);
        if (list.empty()) return true;
        if (list.ends_with(L',')) list = Trimmed(list.substr(0, list.size() - 1));
        for (std::size_t at = 0; at <= list.size();) {
            const std::size_t end = std::min(list.find(L',', at), list.size());
            const Text digits = Trimmed(list.substr(at, end - at));
            if (!AreDigits(digits, 2)) return false;
            bytes.push_back(static_cast<unsigned char>(NumberOf(digits)));
            at = end + 1;
        }
        return true;
    }

    std::vector<Text> m_Lines;
    std::size_t m_At = 0;
    bool m_bOld = false;
    Key* m_pKey = nullptr;
};
