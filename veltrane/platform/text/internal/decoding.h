#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "veltrane/platform/text/internal/utf8.h"
#include "veltrane/platform/text/internal/windows1252.h"

namespace veltrane::detail {

/// Text of a file as its bytes.
struct FileText {
    std::string_view bytes;
    bool withSurrogates = false;  ///< lone surrogates count in three-byte form, as text converted from UTF-16 has them

    /// A piece of it.
    FileText Piece(std::string_view piece) const noexcept { return {piece, withSurrogates}; }
};

/// Cuts one character from the front of a text, which must not be empty, as files and clients write it: UTF-8, and a
/// byte that starts no valid sequence is one Windows-1252 character, so the bytes of old systems keep their meaning.
inline wchar_t CutFileCharacter(FileText& text) noexcept {
    const auto first = static_cast<std::uint8_t>(text.bytes[0]);
    const auto [codePoint, length] = ReadUtf8(text.bytes, text.withSurrogates);
    text.bytes.remove_prefix(length != 0 ? length : 1);
    return length != 0 ? static_cast<wchar_t>(codePoint) : FromWindows1252(first);
}

/// The whole text, character by character as CutFileCharacter.
inline std::wstring DecodeFileText(FileText text) {
    std::wstring decoded;
    decoded.reserve(text.bytes.size());
    while (!text.bytes.empty()) decoded += CutFileCharacter(text);
    return decoded;
}

}  // namespace veltrane::detail
