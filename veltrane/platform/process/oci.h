#pragma once

#include <cstdint>

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

inline constexpr std::uint32_t OCI_ERROR_HANDLE = 2;  ///< the kind of handle that carries errors

using OCIErrorGetFunction = std::int32_t (*)(void* handle, std::uint32_t record, unsigned char* sqlState,
                                             std::int32_t* errorCode, unsigned char* buffer, std::uint32_t bufferSize,
                                             std::uint32_t handleType);

/// Sets the client's error function; null restores the one found at run time.
VELTRANE_API void SetOCIErrorGet(OCIErrorGetFunction function);

/// The error function in use: the one that was set, else the one of the process itself, else that of the client library
/// by its well-known names, looked up once. Null when there is none.
VELTRANE_API OCIErrorGetFunction GetOCIErrorGet();

/// Calls the function in use; -1, with the results untouched, when there is none.
VELTRANE_API std::int32_t OCIErrorGet(void* handle, std::uint32_t record, unsigned char* sqlState,
                                      std::int32_t* errorCode, unsigned char* buffer, std::uint32_t bufferSize,
                                      std::uint32_t handleType);

/// Text and number of the first error record of an error handle.
struct OCIErrorText {
    bool available = false;    ///< false without a client library, and when the call fails and fills neither of the two
    std::int32_t number = -1;  ///< -1 as well when the call fails and gives no code
    CString text;              ///< as the client gave it, read as UTF-8 with Windows-1252 for single bytes
};

/// Asks the client for record 1 of an error handle. Throws nothing but memory exhaustion.
VELTRANE_API OCIErrorText ReadOCIError(void* errorHandle);

}  // namespace veltrane
