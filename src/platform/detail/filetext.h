#pragma once

#include <string>
#include <string_view>

/// Text of bytes as files and clients write it: UTF-8, and a byte that starts no valid sequence is one Windows-1252
/// character, so the bytes of old systems keep their meaning.
/// @param withSurrogates  also take lone surrogates in three-byte form, as text converted from UTF-16 has them
std::wstring DecodeFileText(std::string_view bytes, bool withSurrogates = false);
