#pragma once

#include "startup.h"

// The commands, one a file. Each answers in both forms.

namespace veltrane::config {

Answer Show(const Request& request, Startup& startup);
Answer Lint(const Request& request, Startup& startup);

}  // namespace veltrane::config
