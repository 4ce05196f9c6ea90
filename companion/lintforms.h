#pragma once

#include "answer.h"
#include "lint.h"

// The findings in the forms that services for code review read. Columns count from 1 in units of UTF-16, without a mark
// at the start of the file; a finding about a whole line has none.

namespace veltrane::config {

/// What a finding says: its text and its suggestion.
CString TextOf(const LintRun::Placed& finding);

/// Appends one workflow command of GitHub for each finding.
/// @throws Refusal  the folder of --root is missing
void AddGithub(Answer& answer, const LintRun& run, const Findings& findings, const Request& request);

/// The findings as one log of the Static Analysis Results Interchange Format 2.1.0.
/// @throws Refusal  likewise
Json SarifDocument(const LintRun& run, const Findings& findings, const Request& request);

}  // namespace veltrane::config
