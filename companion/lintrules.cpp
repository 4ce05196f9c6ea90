// Checks of the naming rules.
#include "lint.h"
#include "nametext.h"
#include "printable.h"
#include "veltrane/platform/text/internal/indexformat.h"

namespace veltrane::config {

namespace {

using enum LintCode;

void LintVersion(LintRun& run, const StartupSource& source, const SourceLine& line, const SectionUse& use) {
    if (*use.index < 0 && !use.isOfOtherDatabase) {
        run.Report(source, line, {C14, L"a negative version ends the reading; no rule of this kind is in force"});
    }
    const CString asked = FormatIndex(use.form, *use.index);
    if (asked == Folded(line.section)) return;
    run.Report(source, line,
               {C14, FormatText(L"rules of version %d are read from [%s]; here every match is replaced by nothing",
                                *use.index, asked)});
}

std::pair<CString, CString> FoldedTexts(const CString& first, const CString& second) {
    return {Folded(first), Folded(second)};
}

void LintUndone(LintRun& run, const std::vector<OptionRule>& rules) {
    std::map<std::pair<CString, CString>, const OptionRule*> last;
    for (const OptionRule& rule : rules) {
        if (rule.isInForce) last[FoldedTexts(rule.oldText, rule.newText)] = &rule;
    }
    for (const OptionRule& rule : rules) {
        const auto back = last.find(FoldedTexts(rule.newText, rule.oldText));
        const bool isUndone = rule.isInForce && back != last.end() && back->second > &rule;
        if (!isUndone || rule.oldText.CompareNoCase(rule.newText) == 0) continue;
        const OptionRule& later = *back->second;
        const CString text = FormatText(L"version %d (%s) turns '%s' back into '%s'", later.version,
                                        ShortPlace(later.origin), Printable(rule.newText), Printable(rule.oldText));
        run.Report(rule.origin, Note(C14, text));
    }
}

void LintHidden(LintRun& run, const std::vector<OptionRule>& rules) {
    for (const OptionRule& rule : rules) {
        if (rule.isInForce) continue;
        run.Report(rule.origin,
                   {C14, FormatText(L"the user file has a section of version %d without '%s', so this rule "
                                    L"is not in force",
                                    rule.version, Printable(rule.oldText))});
    }
}

}  // namespace

void LintRules(LintRun& run) {
    for (const StartupSource& source : run.sources) {
        if (source.layer == OptionLayer::Registry) continue;
        for (const SourceLine& line : source.view.lines) {
            if (line.kind != SourceLine::Kind::Section || !line.answers) continue;
            const SectionUse use = run.FindSection(line.section);
            if (use.index && run.HoldsRules(use.section)) LintVersion(run, source, line, use);
        }
    }
    for (const enumOption option : {eOptionTableNameRules, eOptionColumnNameRules}) {
        const std::vector<OptionRule> rules = run.startup.options.GetNamingRules(option);
        LintHidden(run, rules);
        LintUndone(run, rules);
    }
}

}  // namespace veltrane::config
