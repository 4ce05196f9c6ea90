// Checks of the naming rules.
#include "lint.h"
#include "veltrane/platform/text/indexformat.h"

namespace veltrane::config {

namespace {

void LintVersion(LintRun& run, const LintSource& source, const SourceLine& line, const SectionUse& use) {
    const auto warn = [&](const CString& text) { run.Report(source, line, {"C14", Severity::Warning, text}); };
    if (*use.index < 0 && !use.isOther) warn(L"a negative version ends the reading: no rule of this kind is in force");
    const CString asked = FormatIndex(use.form, *use.index);
    if (asked == CString{line.section}.MakeLower()) return;
    warn(FormatText(L"version %d is looked for in [%s]: a rule of this section deletes its text", *use.index, asked));
}

}  // namespace

void LintRules(LintRun& run) {
    for (const LintSource& source : run.sources) {
        if (source.layer == OptionLayer::Registry) continue;
        for (const SourceLine& line : source.view.lines) {
            if (line.kind != SourceLine::Kind::Section || !line.answers) continue;
            const SectionUse use = run.UseOf(line.section);
            if (use.index && run.HoldsRules(use.section)) LintVersion(run, source, line, use);
        }
    }
    for (const enumOption option : {eOptionTableNameRules, eOptionColumnNameRules}) {
        for (const OptionRule& rule : run.startup.options.GetNamingRules(option)) {
            if (rule.isInForce) continue;
            const CString text =
                FormatText(L"rule '%s' is not in force: the user file has a section of version %d and not this rule",
                           rule.oldText, rule.version);
            run.Report(rule.origin, {"C14", Severity::Warning, text});
        }
    }
}

}  // namespace veltrane::config
