#pragma once

#include "veltrane/platform/text/cstring.h"

/// The debug switch of the process, off until the host sets it.
[[nodiscard]] VELTRANE_API bool IsDebug();
VELTRANE_API void SetDebug(bool on);

/// Shows a text in an information box while the switch is on.
VELTRANE_API void PrintDebug(const CString& text);
