#include "lspdiagnostics.h"

#include "lintforms.h"
#include "lspparams.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;
using enum LintCode;

constexpr int FADED = 1;  // the tag for what has no effect

}  // namespace

bool LineFinding::IsNeverRead() const {
    const LintCode code = finding->code;
    const bool isUnknown = (code == C01 || code == C02) && finding->severity == Severity::Warning;
    const bool isSecond = code == C04 && !placed.line->answers;
    const bool isIgnored = (code == C15 || code == C16) && placed.line->kind == Kind::Ignored;
    return isUnknown || isSecond || isIgnored;
}

std::vector<LineFinding> FindingsIn(const LspAnalysis& analysis, const StartupSource& source) {
    static const SourceLine blank{.number = 1};
    std::vector<LineFinding> found;
    for (const LintRun::Placed& finding : analysis.findings) {
        if (!finding.isInFile || finding.source != analysis.run.SourceNumber(source.layer)) continue;
        const SourceLine* const line = FindLine(source.view, finding.line);
        found.push_back({&finding, {&source, line ? line : &blank}});
    }
    return found;
}

LspJson DiagnosticJson(const LineFinding& found, const LineUnits& units, const LspTool& tool) {
    LspJson json{{"range", RangeJson(found.Range(units))},
                 {"severity", static_cast<int>(found.finding->severity) + 1},
                 {"code", RowOf(found.finding->code).name},
                 {"codeDescription", {{"href", "man:" + tool.program + "(1)"}}},
                 {"source", tool.name},
                 {"message", ToUtf8(TextOf(*found.finding))}};
    if (found.IsNeverRead()) json["tags"] = LspJson::array({FADED});
    return json;
}

LspJson DiagnosticsOf(const LspAnalysis& analysis, const StartupSource& source, const LineUnits& units,
                      const LspTool& tool) {
    LspJson diagnostics = LspJson::array();
    for (const LineFinding& found : FindingsIn(analysis, source)) {
        diagnostics.push_back(DiagnosticJson(found, units, tool));
    }
    return diagnostics;
}

}  // namespace veltrane::config
