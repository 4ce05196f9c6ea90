#pragma once

#include <cstdint>
#include <vector>

#include "platform/cstring.h"

/// The arguments of the process as the system split them, element 0 the program; empty when they can not be read. Read
/// from the system once.
VELTRANE_API std::vector<CString> GetArguments();

/// Replaces the arguments, for hosts that were not started with the ones they mean.
VELTRANE_API void SetArguments(std::vector<CString> arguments);

/// Text of an environment variable, its name in exact case. A variable set to nothing is found and empty.
/// @return false, with value untouched, when it is not set or the name is empty or holds '=' or NUL
VELTRANE_API bool GetEnvironmentText(CString& value, const CString& name);

/// Monotonic milliseconds from an arbitrary start, wrapping to negative after 24.8 days: subtract as unsigned.
VELTRANE_API std::int32_t TickCount();
