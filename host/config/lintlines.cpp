// Checks of the INI files, line by line.
#include <algorithm>

#include "lint.h"
#include "veltrane/config/xconfiguration.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;
using Reason = SourceLine::Reason;

CString QuotedKey(const SourceLine& line) {
    return L"'" + line.key + L"'";
}

/// One walk over the lines of a file.
class FileLint {
public:
    FileLint(LintRun& run, const LintSource& source) : m_Run(run), m_Source(source) {}

    void Walk() {
        for (const SourceLine& line : m_Source.view.lines) {
            if (line.kind == Kind::Ignored) LintIgnored(line);
            if (line.kind == Kind::Section) LintSection(line);
            if (line.kind == Kind::Entry) LintEntry(line);
        }
        EndSection();
    }

private:
    void Warn(const SourceLine& line, const char* code, const CString& text, const CString& suggestion = {}) {
        m_Run.Report(m_Source, line, {code, Severity::Warning, text, suggestion});
    }

    void LintIgnored(const SourceLine& line) {
        const bool isLost = line.reason == Reason::BeforeFirstSection;
        const bool isKeyless = line.reason == Reason::EmptyKey;
        Warn(line, "C16",
             isLost      ? L"what stands before the first section is never read"
             : isKeyless ? L"a line without a key in front of its '=' is never read"
                         : L"a line without '=' is never read");
    }

    void LintSection(const SourceLine& line) {
        EndSection();
        m_Use = m_Run.UseOf(line.section);
        m_Header = &line;
        if (line.reason == Reason::HeaderWithoutBracket) {
            Warn(line, "C16", FormatText(L"the header [%s has no ']'", line.section));
        }
        if (!line.answers) {
            Warn(line, "C04", FormatText(L"section [%s] stands above already: this one is never read", line.section));
        } else if (!m_Use.isKnown) {
            Warn(line, "C01", FormatText(L"no section [%s] is known", line.section),
                 Bracketed(m_Run.NearestSection(line.section)));
        } else if (m_Use.isOther && m_Use.section == eSectionDatabase) {
            LintDatabase(line);
        }
    }

    void LintDatabase(const SourceLine& line) {
        const CString own = m_Run.startup.options.GetSectionName(eSectionDatabase);
        if (!m_Run.IsNearDatabase(m_Source, line.section, own)) return;
        const CString text = L"[" + line.section + L"] counts as the section of another database";
        m_Run.Report(m_Source, line, {"C01", Severity::Note, text, Bracketed(own)});
    }

    static CString Bracketed(const CString& section) { return section.IsEmpty() ? section : L"[" + section + L"]"; }

    void LintEntry(const SourceLine& line) {
        m_ListLength += line.key.GetLength() + 1;
        if (m_ListLength > XConfiguration::MAX_LIST && !m_FirstCut) m_FirstCut = &line;
        if (line.reason == Reason::DuplicateKey) {
            Warn(line, "C04",
                 QuotedKey(line) + FormatText(L" stands in [%s] already: this line is never read", line.section));
        }
        if (!line.answers || !m_Use.isKnown) return;
        LintLength(line);
        if (m_Run.HoldsRules(m_Use.section)) return LintRule(line);
        const KeyUse use = m_Run.UseOf(m_Use, line.key);
        if (use.row) {
            LintText(m_Run, m_Source, line, *use.row);
            LintPlace(line, *use.row);
            LintFamily(line, use);
        } else {
            LintUnknown(line);
        }
    }

    // The option that a key names, whatever the section is; null for none.
    static const XOptionDefinition* FindAnywhere(const CString& key) {
        const CString folded = CString{key}.MakeLower();
        for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
            if (row->eOption == eOptionTitle || row->eSection == eSectionNone) continue;
            std::optional<int> index;
            const bool isFamily = !row->IsSingle() && XConfiguration::IsFamilyKey(folded, row->szLongName, index);
            if (folded == row->szLongName || (isFamily && index)) return row;
        }
        return nullptr;
    }

    CString SectionOf(const XOptionDefinition& row) const {
        return Bracketed(m_Run.startup.options.GetSectionName(row.eSection));
    }

    void LintUnknown(const SourceLine& line) {
        const CString what = QuotedKey(line) + L" in [" + line.section + L"] is not asked for ";
        if (const XOptionDefinition* const row = FindAnywhere(line.key)) {
            Warn(line, "C03", what + L"there", SectionOf(*row));
        } else if (!m_Run.IsReferredTo(line.key)) {
            Warn(line, "C02", what + L"by anything", m_Run.NearestKey(m_Use, line.key));
        }
    }

    // Any text can be a rule; one that is spelled like an option need not be meant as one.
    void LintRule(const SourceLine& line) {
        const XOptionDefinition* const row = FindAnywhere(line.key);
        if (!row || line.key != CString{line.key}.MakeLower()) return;
        const CString text = QuotedKey(line) + L" is a naming rule here; the option stands in " + SectionOf(*row);
        m_Run.Report(m_Source, line, {"C03", Severity::Note, text});
    }

    void LintLength(const SourceLine& line) {
        if (line.value.GetLength() <= XConfiguration::MAX_VALUE) return;
        Warn(line, "C11",
             QuotedKey(line) + FormatText(L" has %d characters: those after the first %d are cut off",
                                          line.value.GetLength(), XConfiguration::MAX_VALUE));
    }

    void LintPlace(const SourceLine& line, const XOptionDefinition& row) {
        if (!row.IsSingle() || !m_Run.startup.options.ComesTooLate(row.szLongName)) return;
        m_Run.Report(
            m_Source, line,
            {"C12", Severity::Note,
             QuotedKey(line) + L" comes too late: start-up asks for it before this file is open; give it on the "
                               L"command line, in the registry or, of [ROOT], in the environment"});
    }

    void LintFamily(const SourceLine& line, const KeyUse& use) {
        const CString family = use.row->szLongName;
        const auto note = [&](const CString& text) { m_Run.Report(m_Source, line, {"C17", Severity::Note, text}); };
        if (use.row->IsSingle()) return;
        if (!use.index) {
            note(QuotedKey(line) + L" takes the next free index of '" + family + L"'");
        } else if (*use.index == -1) {
            Warn(line, "C14",
                 L"index -1 ends the reading of the family '" + family + L"': the values after it are lost");
        } else if (*use.index < 0 && !m_Use.index) {
            note(QuotedKey(line) + FormatText(L" has the index %d: the second hyphen is its sign", *use.index));
        }
    }

    // The readers of families and of rules ask for the list of the section's keys, which is cut.
    void EndSection() {
        if (m_FirstCut && m_Header && m_Use.isKnown) {
            Warn(*m_Header, "C11",
                 FormatText(L"the names of the keys in [%s] take more than %d characters: from '%s' in line %d on no "
                            L"family and no rule sees them",
                            m_Header->section, XConfiguration::MAX_LIST, m_FirstCut->key, m_FirstCut->number));
        }
        m_FirstCut = nullptr;
        m_ListLength = 0;
    }

    LintRun& m_Run;
    const LintSource& m_Source;
    SectionUse m_Use;
    const SourceLine* m_Header = nullptr;
    const SourceLine* m_FirstCut = nullptr;
    int m_ListLength = 0;
};

}  // namespace

void LintLines(LintRun& run) {
    for (const LintSource& source : run.sources) {
        if (source.layer != OptionLayer::Registry) FileLint{run, source}.Walk();
    }
}

}  // namespace veltrane::config
