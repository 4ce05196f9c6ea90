#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace veltrane::detail {

/// One element of a name, in both cases, as the bytes of a text are compared with it: a byte fits if it equals value
/// after the bits are set. Bytes from 0x80 on fit every element; the caller decodes them.
struct NamePattern {
    std::int8_t bits;
    std::int8_t value;

    static NamePattern Of(wchar_t element) noexcept;
};

/// Searches a text for places where a key could end: its last two elements, and after them a blank, a NUL or '='.
/// This skips nearly all bytes of a section, many at a step. It may find too much, never too little.
class KeyEndSearch {
public:
    /// @param name  the key, not empty
    explicit KeyEndSearch(std::wstring_view name) noexcept
        : m_Before(name.size() > 1 ? NamePattern::Of(name[name.size() - 2]) : NamePattern{-1, -1}),
          m_Last(NamePattern::Of(name.back())) {}

    /// Position of the last element of a possible key at or after start, which must not be 0; the text's size when
    /// there is none.
    std::size_t Find(std::string_view text, std::size_t start) const noexcept;

private:
    NamePattern m_Before;
    NamePattern m_Last;
};

}  // namespace veltrane::detail
