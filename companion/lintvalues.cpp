// Checks of the values that the store has or lacks: unexpected origins, and their effects.
#include <algorithm>

#include "libraryoption.h"
#include "lint.h"
#include "nametext.h"
#include "printable.h"
#include "veltrane/foundation/xpath.h"
#include "veltrane/platform/sources/environment.h"
#include "veltrane/platform/text/internal/indexformat.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;
using Reason = SourceLine::Reason;
using enum LintCode;

/// Finds values of families whose index is given twice.
class IndexLint {
public:
    explicit IndexLint(LintRun& run) : m_Run(run) {}

    void Walk() {
        if (m_Run.Asked() && m_Run.Asked()->row.IsSingle()) return;
        for (const StartupSource& source : m_Run.sources) {
            if (source.layer == OptionLayer::Registry) continue;
            for (const SourceLine& line : source.view.lines) Look(source, line);
        }
    }

private:
    void Look(const StartupSource& source, const SourceLine& line) {
        if (line.kind == Kind::Section) {
            m_Use = m_Run.FindSection(line.section);
            if (m_Use.index && !line.answers && !m_Use.isOfOtherDatabase) LookAgain(source, line);
        }
        if (line.kind != Kind::Entry || line.reason == Reason::DuplicateSection || line.value.IsEmpty()) return;
        if (!m_Use.isKnown || m_Use.isOfOtherDatabase || m_Run.HoldsRules(m_Use.section)) return;
        const KeyUse use = m_Run.FindKey(m_Use, line.key);
        if (!use.row || use.row->IsSingle() || (m_Use.index && !line.answers)) return;
        auto& places = m_Places[use.row];
        const int next = places.empty() ? 0 : Successor(places.rbegin()->first);
        const auto [known, isFirst] =
            places.try_emplace(use.index.value_or(next), SourcePlace{source.path, line.number, {}, {}, {}});
        if (!isFirst) Report(source, line, *use.row, *known);
    }

    // A section of a family that occurs twice gives its values twice.
    void LookAgain(const StartupSource& source, const SourceLine& line) {
        for (const auto& [row, places] : m_Places) {
            const auto known = places.find(*m_Use.index);
            if (row->eSection == m_Use.section && known != places.end()) Report(source, line, *row, *known);
        }
    }

    void Report(const StartupSource& source, const SourceLine& line, const XOptionDefinition& row,
                const std::pair<const int, SourcePlace>& first) {
        m_Run.Report(source, line,
                     {C08, FormatText(L"index %d of '%s' is already given at %s; the tool stops", first.first,
                                      row.szLongName, ShortPlace(first.second))});
    }

    LintRun& m_Run;
    SectionUse m_Use;
    std::map<const XOptionDefinition*, std::map<int, SourcePlace>> m_Places;
};

// A reference that leads to no value becomes the list of the sections.
void LintSteps(LintRun& run, const XOptionItem& item) {
    CString name;
    item.GetOptionName(name);
    OptionPlace holder;
    for (const OptionStep& step : run.startup.options.ExplainOption(name, item.GetOptionIndex()).steps) {
        for (const OptionPlace& place : step.places) {
            if (!place.found) continue;
            const bool isList =
                step.kind == OptionStep::Kind::Reference && place.section.IsEmpty() && !place.file.IsEmpty();
            if (isList) {
                run.Report(holder, {C10, FormatText(L"%%%s%% has no value and is replaced by the list of all sections",
                                                    step.reference)});
            } else {
                holder = place;
            }
        }
    }
}

// The text of a value with references is known only here; texts of the environment have not been checked before.
void LintItem(LintRun& run, const XOptionItem& item) {
    XOption& options = run.startup.options;
    const OptionOrigin origin = options.GetOptionOrigin(&item);
    CString name;
    item.GetOptionName(name);
    const bool isOfEnvironment = origin.layer == OptionLayer::Environment;
    if (HasReference(origin.text) || isOfEnvironment) {
        LintSteps(run, item);
        for (const Finding& fault : CheckText(name, item.GetOptionValue(), *FindOptionDefinition(name))) {
            run.Report(origin, fault);
        }
    }
    if (isOfEnvironment && !options.ComesTooLate(name))
        run.Report(origin, {C13, FormatText(L"the environment variable '%s' sets this option", name)});
}

void LintItems(LintRun& run) {
    XOption& options = run.startup.options;
    const AskedLine* const asked = run.Asked();
    if (asked && !HasReference(asked->line.value)) return;
    const bool isPassed = !asked || run.IsReferredTo(asked->line.section, asked->line.key);
    const auto isOfLine = [&](const XOptionItem* item) {
        const OptionOrigin origin = options.GetOptionOrigin(item);
        return run.IsLookedAt(origin.layer, origin.line);
    };
    std::vector<const XOptionItem*> items;
    for (const auto* item = options.GetFirstOptionItem(L""); item; item = options.GetNextOptionItem(L"")) {
        if (isPassed || isOfLine(item)) items.push_back(item);
    }
    for (const XOptionItem* item : items) LintItem(run, *item);
}

bool HasFinding(const LintRun& run, LintCode code, const SourcePlace& place) {
    return std::ranges::any_of(run.Findings(), [&](const LintRun::Placed& known) {
        return known.code == code && known.file == place.file && known.line == place.line;
    });
}

// The path as the tool opens it: a relative one goes below the folder of logs.
void LintLogFile(LintRun& run) {
    const XOption& options = run.startup.options;
    const XOptionItem* const item = FindItem<"logfile">(options);
    if (!item || item->GetOptionValue().IsEmpty()) return;
    const CString file = item->GetOptionValue();
    const XOptionItem* const folderOfLogs = FindItem<"logging">(options);
    const CString logs = folderOfLogs ? folderOfLogs->GetOptionValue() : CString{};
    const bool isBelow = !IsAbsolutePath(file) && IsAbsolutePath(logs);
    CString folder;
    CString name;
    SplitFileName(folder, name, isBelow ? BuildFileName(logs, file) : file);
    if (folder.IsEmpty() || folder == logs || FileExists(folder)) return;
    const OptionOrigin origin = options.GetOptionOrigin(item);
    if (HasFinding(run, C10, origin)) return;  // a list of sections is not a missing folder
    run.Report(origin, {C22, FormatText(L"the folder <%s> of the log file does not exist; the tool cannot open its log",
                                        Printable(folder))});
}

/// Checks values that are not in force now: they may be later.
class UnusedLint {
public:
    explicit UnusedLint(LintRun& run) : m_Run(run), m_Root(Folded(run.startup.options.GetSectionName(eSectionRoot))) {
        for (const LintRun::Placed& known : run.Findings()) {
            if (known.code == C09) m_Told.emplace(known.source, known.line);
        }
    }

    void Walk() {
        for (const StartupSource& source : m_Run.sources) {
            for (const SourceLine& line : source.view.lines) {
                const bool mayMatter = line.value.IsEmpty() || HasReference(line.value);
                const bool isRead = line.kind == Kind::Entry && line.answers;
                if (isRead && mayMatter && m_Run.IsLookedAt(source.layer, line.number)) Look(source, line);
            }
        }
    }

private:
    void Look(const StartupSource& source, const SourceLine& line) {
        const std::optional<CString> section = m_Run.SectionOf(source, line);
        const SectionUse use = section ? m_Run.FindSection(*section) : SectionUse{};
        if (!use.isKnown || m_Run.HoldsRules(use.section)) return;
        const KeyUse key = m_Run.FindKey(use, line.key);
        if (line.value.IsEmpty() && key.row && !use.isOfOtherDatabase) LintEmpty(source, line, *key.row);
        const bool isTold = m_Told.contains({m_Run.SourceNumber(source.layer), line.number});
        if (isTold || (!key.row && !m_Run.IsReferredTo(*section, line.key))) return;
        for (const CString& name : ReferencesOf(line.value)) {
            if (name.IsEmpty() || Leads(*section, name)) continue;
            const CString text = FormatText(L"%%%s%% leads nowhere, but the value is not used now", Printable(name));
            m_Run.Report(source, line, Note(C09, text, m_Run.NearestKey({}, name)));
        }
    }

    void AddKeys() {
        for (const StartupSource& source : m_Run.sources) {
            for (const SourceLine& line : source.view.lines) {
                const std::optional<CString> section = m_Run.SectionOf(source, line);
                if (line.kind == Kind::Entry && line.answers && section && !line.value.IsEmpty())
                    m_Keys.emplace(Folded(*section), Folded(line.key));
            }
        }
    }

    // Whether a reference finds something, or the list of the sections.
    bool Leads(const CString& section, const CString& name) {
        CString ignored;
        const XOptionDefinition* const row = FindOptionDefinition(name);
        const bool isOption = row && row->IsString() && row->IsSingle();
        if (isOption || GetEnvironmentText(ignored, name)) return true;
        if (m_Keys.empty()) AddKeys();
        const CString key = Folded(name);
        return m_Keys.contains({Folded(section), key}) || m_Keys.contains({m_Root, key});
    }

    // An empty value of a file does not hide the value of a weaker source.
    void LintEmpty(const StartupSource& source, const SourceLine& line, const XOptionDefinition& row) {
        if (!row.IsSingle() || source.layer != OptionLayer::UserFile) return;
        for (const OptionPlace& place : m_Run.startup.options.GetOptionCandidates(row.szLongName, -1).places) {
            if (!place.found || place.layer != OptionLayer::BasicFile) continue;
            const CString text = FormatText(L"the empty value counts as no value; %s is used", ShortPlace(place));
            m_Run.Report(source, line, Note(C20, text));
        }
    }

    LintRun& m_Run;
    CString m_Root;
    std::set<std::pair<CString, CString>> m_Keys;  // sections and keys with a value, folded
    std::set<std::pair<int, int>> m_Told;          // sources and lines
};

}  // namespace

void LintValues(LintRun& run) {
    IndexLint{run}.Walk();
    LintItems(run);
    LintLogFile(run);
}

void LintUnused(LintRun& run) {
    UnusedLint{run}.Walk();
}

}  // namespace veltrane::config
