// Checks of the INI files, line by line.
#include <limits>

#include "lint.h"
#include "nametext.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/platform/text/numbers.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;
using Reason = SourceLine::Reason;
using enum LintCode;

constexpr int LONGEST_LIST =
    XConfiguration::MAX_LIST + 1;  // longest that is not cut, including the end of its last name

// The start of a comment in other formats; in naming rules '#' can begin the name of a table.
bool IsForeignComment(const CString& text, bool isRule) {
    const bool isHash = text.Left(1) == L"#";
    return isRule ? text.Left(2) == L"# " : isHash || text.Left(2) == L"//";
}

bool IsInQuotes(const CString& key) {
    return key.Left(1) == L"\"" || key.Left(1) == L"'";
}

/// The option that a key means in any section, and its right spelling there.
struct MeantKey {
    const XOptionDefinition* row = nullptr;  // null for none
    std::optional<int> index = {};
    CString key = {};  // empty when the spelling is right
};

MeantKey FindFamily(const XOptionDefinition& row, const CString& key) {
    const CString name = row.szLongName;
    if (!key.View().starts_with(name.View())) return {};  // all below begin with it
    std::optional<int> index;
    if (XConfiguration::IsFamilyKey(key, name, index) && index) return {&row, index};
    const int letters = static_cast<int>(key.View().find_last_not_of(L"0123456789")) + 1;
    const bool isNumbered = letters > 0 && letters < key.GetLength();
    if (!isNumbered || key.Left(letters).TrimRight(L"_. ") != name) return {};
    return {&row, _wtoi(key.Mid(letters)), name + L"-" + key.Mid(letters)};
}

MeantKey FindAnywhere(const CString& key) {
    const CString folded = Folded(key);
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eOption == eOptionTitle || row->eSection == eSectionNone) continue;
        if (folded == row->szLongName) return {row};
        MeantKey meant = row->IsSingle() ? MeantKey{} : FindFamily(*row, folded);
        if (meant.row) return meant;
    }
    const bool isTyped = folded[0] == L'-' && folded != L"-" && folded != L"--";  // as on the command line
    const XOptionDefinition* const row = isTyped ? FindOptionDefinition(folded) : nullptr;
    const bool isOption = row && row->eOption != eOptionTitle && row->eSection != eSectionNone;
    return isOption ? MeantKey{row, {}, row->szLongName} : MeantKey{};
}

// A key in capitals is not an option and is not searched.
MeantKey FindInSmallLetters(const CString& key) {
    return key == Folded(key) ? FindAnywhere(key) : MeantKey{};
}

class FileLint {
public:
    FileLint(LintRun& run, const StartupSource& source) : m_Run(run), m_Source(source) {}

    void Walk() {
        for (const SourceLine& line : m_Source.view.lines) {
            if (line.kind == Kind::Ignored) LintIgnored(line);
            if (line.kind == Kind::Section) LintSection(line);
            if (line.kind == Kind::Entry) LintEntry(line);
        }
        EndSection();
    }

private:
    void Report(const SourceLine& line, const Finding& finding) { m_Run.Report(m_Source, line, finding); }
    void Report(const SourceLine& line, const std::optional<Finding>& finding) {
        if (finding) m_Run.Report(m_Source, line, *finding);
    }

    void LintIgnored(const SourceLine& line) {
        if (IsForeignComment(line.key, /*isRule*/ false)) {
            Report(line, Note(C16, L"only ';' begins a comment; this line is ignored anyway"));
        } else if (line.reason == Reason::BeforeFirstSection) {
            Report(line, {C16, L"this line comes before the first section and is ignored"});
        } else if (line.reason == Reason::EmptyKey) {
            Report(line, {C16, L"this line has no key before its '=' and is ignored"});
        } else {
            Report(line, {C16, L"this line has no '=' and is ignored"});
        }
    }

    void LintSection(const SourceLine& line) {
        EndSection();
        m_Use = m_Run.FindSection(line.section);
        if (!line.section.IsEmpty()) m_nSections += line.section.GetLength() + 1;
        const bool isCut = m_Source.view.sectionListLength > LONGEST_LIST && m_nSections > LONGEST_LIST;
        if (isCut && !std::exchange(m_IsCut, true)) {
            Report(line,
                   {C11, FormatText(L"the names of the sections above fill the list of %d characters; indexed values "
                                    L"and naming rules in [%s] and later sections are not read",
                                    XConfiguration::MAX_LIST, line.section)});
        }
        if (line.reason == Reason::HeaderWithoutBracket)
            Report(line, {C16, FormatText(L"the header [%s has no ']' at its end", line.section)});
        if (!line.answers) {
            Report(line, {C04, FormatText(L"section [%s] already appears above; this one is ignored", line.section)});
        } else if (!m_Use.isKnown) {
            const CString nearest = m_Run.NearestSection(line.section);
            if (!m_Run.HasDatabase() && nearest.IsEmpty()) return;  // it may be the one of the database
            Report(line, {C01, FormatText(L"[%s] is not a known section", line.section), Bracketed(nearest)});
        } else if (m_Use.isOfOtherDatabase && m_Run.IsNearOwnDatabase(m_Source, line.section)) {
            Report(line, Note(C01, FormatText(L"[%s] is taken as the section of another database", line.section),
                              Bracketed(m_Run.startup.options.GetSectionName(eSectionDatabase))));
        }
    }

    void LintEntry(const SourceLine& line) {
        m_nKeys += line.key.GetLength() + 1;
        if (m_nKeys > LONGEST_LIST && !m_FirstCut) m_FirstCut = &line;
        if (!m_Run.IsLookedAt(m_Source.layer, line.number)) return;
        if (line.reason == Reason::DuplicateKey) {
            Report(line, {C04, FormatText(L"'%s' is already set above in [%s]; this line is ignored", line.key,
                                          line.section)});
        }
        if (!line.answers || !m_Use.isKnown) return;
        if (line.value.GetLength() > XConfiguration::MAX_VALUE) {
            Report(line, {C11, FormatText(L"the value of '%s' has %d characters; only the first %d are read", line.key,
                                          line.value.GetLength(), XConfiguration::MAX_VALUE)});
        }
        const KeyUse use = m_Run.FindKey(m_Use, line.key);
        if (m_Run.HoldsRules(m_Use.section)) {
            LintRule(line);
        } else if (use.row) {
            LintOption(line, use);
        } else {
            LintUnknown(line);
        }
    }

    void LintOption(const SourceLine& line, const KeyUse& use) {
        const std::vector<Finding> faults = CheckText(line.key, line.value, *use.row);
        for (const Finding& fault : faults) Report(line, fault);
        const bool isText = !use.row->IsBoolean() && !use.row->IsTrillian() && !use.row->IsIList();
        if (isText) Report(line, CheckSigns(line.value, line.isQuoted));
        if (faults.empty()) Report(line, CheckPercent(line.value));
        if (!use.row->IsSingle()) {
            LintIndex(line, use);
        } else if (m_Run.startup.options.ComesTooLate(use.row->szLongName)) {
            Report(line,
                   {C12,
                    FormatText(L"'%s' comes too late: start-up determines it before the file is opened; give "
                               L"it on the command line, in the registry or, for options of [ROOT], in the environment",
                               line.key)});
        }
    }

    void LintUnknown(const SourceLine& line) {
        const MeantKey meant = FindAnywhere(line.key);
        const bool isElsewhere = meant.row && meant.row->eSection != m_Use.section;
        if (m_Run.IsReferredTo(line.section, line.key)) {
            if (!isElsewhere) return;
            Report(line, Note(C03, FormatText(L"in this section '%s' is read only by references", line.key),
                              Bracketed(m_Run.SectionFor(m_Source, *meant.row, meant.index))));
        } else if (IsForeignComment(line.key, /*isRule*/ false)) {
            Report(line, Note(C16, FormatText(L"only ';' begins a comment; '%s' is read as a key", line.key)));
        } else if (isElsewhere) {
            Report(line, {C03, FormatText(L"'%s' does not belong in this section", line.key),
                          Bracketed(m_Run.SectionFor(m_Source, *meant.row, meant.index))});
        } else if (meant.row) {
            const CString key = m_Use.index || meant.key.IsEmpty() ? CString{meant.row->szLongName} : meant.key;
            Report(line, {C03, FormatText(L"'%s' is not how this key is written here", line.key), key});
        } else {
            Report(line, {C02, FormatText(L"'%s' is not a known key", line.key), m_Run.NearestKey(m_Use, line.key)});
        }
    }

    // Any text can be a rule, even one that is spelled like an option.
    void LintRule(const SourceLine& line) {
        Report(line, CheckSigns(line.value, line.isQuoted));
        if (IsForeignComment(line.key, /*isRule*/ true)) {
            Report(line, {C16, FormatText(L"only ';' begins a comment; '%s' is read as a naming rule", line.key)});
        } else if (IsInQuotes(line.key)) {
            Report(line, {C14, FormatText(L"the quotes are part of the text %s that this rule replaces", line.key)});
        } else if (const MeantKey meant = FindInSmallLetters(line.key); meant.row) {
            Report(line, Note(C03, FormatText(L"'%s' is a naming rule in this section", line.key),
                              Bracketed(m_Run.SectionFor(m_Source, *meant.row, meant.index))));
        }
    }

    void LintIndex(const SourceLine& line, const KeyUse& use) {
        const CString family = use.row->szLongName;
        if (!use.index) {
            Report(line, {C17, FormatText(L"'%s' has no index and gets the next free one of '%s'", line.key, family)});
        } else if (*use.index == -1) {
            Report(line,
                   {C14, FormatText(L"the index -1 ends the values of '%s'; those after it are not read", family)});
        } else if (*use.index < 0 && !m_Use.index) {
            Report(line, {C17, FormatText(L"'%s' has the index %d; the second hyphen is read as a minus sign", line.key,
                                          *use.index)});
        } else if (*use.index == std::numeric_limits<int>::max() &&
                   (m_Use.index ? line.section : line.key).Find(L"2147483647") < 0) {
            Report(line, {C17, FormatText(L"the index of '%s' is too large and is read as %d", line.key, *use.index)});
        }
    }

    // The readers of families and of rules ask for the list of the section's keys, which is cut.
    void EndSection() {
        if (m_FirstCut && m_Run.IsListed(m_Use)) {
            Report(*m_FirstCut,
                   {.code = C11,
                    .text = FormatText(
                        L"the names of the keys above fill the list of %d characters; indexed values and naming "
                        L"rules from '%s' on are not read in [%s]",
                        XConfiguration::MAX_LIST, m_FirstCut->key, m_FirstCut->section),
                    .part = LinePart::Key});
        }
        m_FirstCut = nullptr;
        m_nKeys = 0;
    }

    LintRun& m_Run;
    const StartupSource& m_Source;
    SectionUse m_Use;
    const SourceLine* m_FirstCut = nullptr;
    int m_nKeys = 0;      // length of the list of the section's keys so far
    int m_nSections = 0;  // likewise of all sections
    bool m_IsCut = false;
};

}  // namespace

void LintLines(LintRun& run) {
    for (const StartupSource& source : run.sources) {
        const bool isLookedAt = !run.Asked() || run.Asked()->layer == source.layer;
        if (isLookedAt && source.layer != OptionLayer::Registry) FileLint{run, source}.Walk();
    }
}

}  // namespace veltrane::config
