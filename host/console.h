#pragma once

#include "veltrane/platform/text/cstring.h"

/// Writes a line to standard output. @throws XException when it cannot be written
void PrintLine(const CString& line);

/// Shows message boxes as text on the console: information on standard output, all else on standard error, no waiting.
void UseConsoleBoxes();
