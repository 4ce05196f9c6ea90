#pragma once

#include <functional>

#include "veltrane/platform/text/cstring.h"

inline constexpr unsigned MB_OK = 0x00;               ///< plain box with an OK button
inline constexpr unsigned MB_ICONERROR = 0x10;        ///< stop sign
inline constexpr unsigned MB_ICONINFORMATION = 0x40;  ///< information sign

namespace veltrane {

/// Shows a box and returns when the user has closed it; the result is that of AfxMessageBox.
using MessageBoxHandler = std::function<int(const CString& text, unsigned style, unsigned helpId)>;

/// Writes a text as the default box does, to the stream of the style, and returns at once: for the handlers of hosts.
VELTRANE_API void WriteToConsole(const CString& text, unsigned style);

/// Installs a handler; an empty one restores the default. @return the handler before, empty for the default
VELTRANE_API MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler);

}  // namespace veltrane

/// Shows a modal message box through the installed handler, which may throw and may show boxes itself. The default
/// handler writes the text and a line end to standard error (standard output for information boxes), "\r\n" as "\n",
/// and waits for Enter only when standard input and that stream are both terminals; it returns 1.
/// @return the handler's result
VELTRANE_API int AfxMessageBox(const CString& text, unsigned style = MB_OK, unsigned helpId = 0);
