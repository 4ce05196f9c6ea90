#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "veltrane/platform/sources/detail/lines.h"
#include "veltrane/platform/text/internal/decoding.h"

namespace veltrane::detail {

/// What one line of a registry export is, with the lines on which a list continues. Pieces of the text, as bytes.
struct RegistryLine {
    enum class Kind {
        Header,        ///< the first line, as it must be
        BadHeader,     ///< and the text holds no keys at all
        Key,           ///< its values follow
        RemovedKey,    ///< with everything below; no key is current then
        MalformedKey,  ///< no key is current either: its values must not go to the key before it
        OtherRoot,     ///< likewise
        Value,
        RemovedValue,
        MalformedValue,
        Other,  ///< nothing
    };
    Kind kind = Kind::Other;
    int number = 0;          ///< of the line, from 1
    int last = 0;            ///< of the line that ends it
    std::string_view line;   ///< without blanks at its ends
    std::string_view path;   ///< of a key below the machine's root, no separator at its end; OtherRoot: whole
    std::string name;        ///< of a value, in file text; empty is the default value
    std::uint32_t type = 0;  ///< of a value
    std::string data;        ///< of a value, as the calls return it
};

/// Walks over the lines of a registry export that are neither empty nor comments, from top to bottom.
class RegistryWalk {
public:
    /// @param firstNumber  number of the text's first line
    explicit RegistryWalk(FileText text, int firstNumber = 1) noexcept
        : m_Text(text), m_Lines(text.bytes), m_nNumber(firstNumber - 1) {}

    /// Reads the header, the first line that is not empty. @return false for a text without any
    bool ReadHeader(RegistryLine& read);
    bool IsOld() const noexcept { return m_IsOld; }
    void SetOld(bool isOld) noexcept { m_IsOld = isOld; }  ///< for a piece of a text with such a header

    /// Reads the next line after the header. Reuses the strings of read.
    bool Next(RegistryLine& read);
    /// Reads the next line in brackets.
    bool NextKey(RegistryLine& read);

private:
    bool NextLine(std::string_view& line) noexcept;
    bool NextFilledLine(std::string_view& line) noexcept;
    void ReadLine(RegistryLine& read);
    RegistryLine::Kind ReadValue(std::string_view line, RegistryLine& read);
    bool ReadData(std::string_view data, RegistryLine& read);
    bool ReadText(std::string_view data, RegistryLine& read) const;
    bool ReadList(std::string_view part, RegistryLine& read);

    FileText m_Text;
    LineWalk m_Lines;
    int m_nNumber;  // of the line read last
    bool m_IsOld = false;
};

}  // namespace veltrane::detail
