#pragma once

#include <cstdint>

#include "veltrane/platform/text/cstring.h"

/// The machine's registry, read-only, kept in one text file in the form of a registry export. The file is read each
/// time a key is opened, so the next opening sees a change. A file that is missing, cannot be read or has no export
/// header holds no keys. The calls may come from several threads at once; all share the handles and the file's name.

namespace veltrane::detail {
struct RegistryKey;
}

/// Opaque: never an address, so an old or invented handle is recognised and harmless.
using HKEY = veltrane::detail::RegistryKey*;

// NOLINTNEXTLINE(performance-no-int-to-ptr): a number that hosts know, not an address
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(std::uintptr_t{0x80000002});

constexpr std::uint32_t KEY_READ = 0x20019;

/// Types of values, as reported.
constexpr std::uint32_t REG_NONE = 0;
constexpr std::uint32_t REG_SZ = 1;
constexpr std::uint32_t REG_EXPAND_SZ = 2;
constexpr std::uint32_t REG_BINARY = 3;
constexpr std::uint32_t REG_DWORD = 4;
constexpr std::uint32_t REG_MULTI_SZ = 7;

/// Results of the calls.
constexpr long ERROR_SUCCESS = 0;
constexpr long ERROR_FILE_NOT_FOUND = 2;      ///< no such key or value
constexpr long ERROR_INVALID_HANDLE = 6;      ///< null, closed or never opened
constexpr long ERROR_INVALID_PARAMETER = 87;  ///< nowhere to put the result
constexpr long ERROR_MORE_DATA = 234;         ///< the buffer is too small

/// Opens a key; the handle is to be closed with RegCloseKey and keeps the values that the key has now.
/// @param root     HKEY_LOCAL_MACHINE; no other root has keys
/// @param path     names in any case, separated by '\'; one '\' at the end is ignored; empty or null is the root
/// @param options  ignored, as is access: whatever is asked for, the key can be read only
/// @param key      receives the handle; untouched unless the result is ERROR_SUCCESS
VELTRANE_API long RegOpenKeyExW(HKEY root, const wchar_t* path, std::uint32_t options, std::uint32_t access, HKEY* key);

/// Reads a value of an open key. Texts are 16-bit units, little-endian, with the NUL units that the value has.
/// @param name      in any case; null or empty is the default value
/// @param reserved  ignored
/// @param type      receives the type of the value; may be null
/// @param data      buffer; null asks for type and size only. Untouched unless the result is ERROR_SUCCESS
/// @param size      size of the buffer in bytes; receives the size of the value, with ERROR_MORE_DATA too. May be null
///                  without a buffer
VELTRANE_API long RegQueryValueExW(HKEY key, const wchar_t* name, std::uint32_t* reserved, std::uint32_t* type,
                                   unsigned char* data, std::uint32_t* size);

VELTRANE_API long RegCloseKey(HKEY key);

namespace veltrane {

/// Names the file that holds the registry; empty restores the default: the file that the environment variable
/// VORNAK_REGISTRY names when a key is opened, else /etc/vornak/registry.reg, exactly as spelled.
VELTRANE_API void SetRegistryFile(const CString& file);

/// The file that holds the registry now.
VELTRANE_API CString GetRegistryFile();

/// Text of a value's bytes: 16-bit units, little-endian, up to the first NUL. Surrogate pairs become one element, and
/// an odd last byte is a unit with a high byte of zero.
VELTRANE_API CString RegistryText(const unsigned char* data, std::uint32_t size);

}  // namespace veltrane
