#include <algorithm>

#include "lint.h"

namespace veltrane::config {

namespace {

// A line that stops the tool is not also reported as a second one.
std::vector<LintRun::Placed> WithoutSecondLines(const std::vector<LintRun::Placed>& all) {
    std::set<std::pair<int, int>> stopping;
    for (const LintRun::Placed& finding : all) {
        if (finding.code == LintCode::C08) stopping.emplace(finding.source, finding.line);
    }
    std::vector<LintRun::Placed> findings;
    for (const LintRun::Placed& finding : all) {
        const bool isToldAsStop = finding.code == LintCode::C04 && stopping.contains({finding.source, finding.line});
        if (!isToldAsStop) findings.push_back(finding);
    }
    return findings;
}

}  // namespace

std::vector<LintRun::Placed> FindAll(LintRun& run) {
    const AskedLine* const asked = run.Asked();
    if (!asked) LintFiles(run);
    LintLines(run);
    if (!asked) LintRegistry(run);
    if (!asked || run.HoldsRules(asked->row.eSection)) LintRules(run);
    LintValues(run);
    LintErrors(run);
    LintUnused(run);
    SilenceFindings(run);
    std::vector<LintRun::Placed> findings = WithoutSecondLines(run.Findings());
    const auto keyOf = [](const LintRun::Placed& finding) {
        return std::tuple(finding.source, finding.line, finding.code, finding.text.View());
    };
    std::ranges::sort(findings, {}, keyOf);
    const auto isSame = [&](const auto& left, const auto& right) { return keyOf(left) == keyOf(right); };
    findings.erase(std::unique(findings.begin(), findings.end(), isSame), findings.end());
    return findings;
}

}  // namespace veltrane::config
