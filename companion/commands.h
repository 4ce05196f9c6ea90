#pragma once

#include "answer.h"
#include "startup.h"

// The commands, one a file. Each answers in both forms.

namespace veltrane::config {

Answer Show(const Request& request, Startup& startup);
Answer Lint(const Request& request, Startup& startup);
Answer ExplainOptions(const Request& request, Startup& startup);
Answer Names(const Request& request, Startup& startup);
Answer Set(const Request& request, Startup& startup);
Answer Unset(const Request& request, Startup& startup);
Answer Freeze(const Request& request, Startup& startup);
Answer Files(const Request& request, Startup& startup);
/// @param commandLines  of the tool; together with the documents there must be two
Answer Diff(const Request& request, const CString& tool, const std::vector<std::vector<CString>>& commandLines);
Answer Errors(const Request& request);  ///< of a log, so without a start-up

}  // namespace veltrane::config
