#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "veltrane/platform/text/utf8.h"
#include "veltrane/platform/text/windows1252.h"

namespace veltrane::detail {

/// Takes one character from the front of bytes, which must not be empty, as files and clients write it: UTF-8, and a
/// byte that starts no valid sequence is one Windows-1252 character, so the bytes of old systems keep their meaning.
/// @param withSurrogates  also take lone surrogates in three-byte form, as text converted from UTF-16 has them
inline wchar_t TakeFileCharacter(std::string_view& bytes, bool withSurrogates) noexcept {
    const auto first = static_cast<std::uint8_t>(bytes[0]);
    const auto [codePoint, length] = ReadUtf8(bytes, withSurrogates);
    bytes.remove_prefix(length != 0 ? length : 1);
    return length != 0 ? static_cast<wchar_t>(codePoint) : FromWindows1252(first);
}

/// Text of bytes, character by character as TakeFileCharacter.
std::wstring DecodeFileText(std::string_view bytes, bool withSurrogates = false);

}  // namespace veltrane::detail
