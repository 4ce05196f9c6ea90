// Checks of the values that the store has, or has not: what stops the tool, and where values come from unforeseen.
#include <algorithm>

#include "answer.h"
#include "lint.h"
#include "printable.h"
#include "veltrane/platform/text/indexformat.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;
using Reason = SourceLine::Reason;

CString PlaceOf(const SourcePlace& place) {
    return FormatText(L"%s:%d", DisplayPath(place.file), place.line);
}

/// Finds values of families whose index is given twice.
class IndexLint {
public:
    explicit IndexLint(LintRun& run) : m_Run(run) {}

    void Walk() {
        for (const LintSource& source : m_Run.sources) {
            if (source.layer == OptionLayer::Registry) continue;
            for (const SourceLine& line : source.view.lines) Look(source, line);
        }
    }

private:
    void Look(const LintSource& source, const SourceLine& line) {
        if (line.kind == Kind::Section) {
            m_Use = m_Run.UseOf(line.section);
            if (m_Use.index && !line.answers && !m_Use.isOther) LookAgain(source, line);
        }
        if (line.kind != Kind::Entry || line.reason == Reason::DuplicateSection || line.value.IsEmpty()) return;
        if (!m_Use.isKnown || m_Use.isOther || m_Run.HoldsRules(m_Use.section)) return;
        const KeyUse use = m_Run.UseOf(m_Use, line.key);
        if (!use.row || use.row->IsSingle() || (m_Use.index && !line.answers)) return;
        auto& places = m_Places[use.row];
        const int next = places.empty() ? 0 : Successor(places.rbegin()->first);
        const auto [known, isFirst] =
            places.try_emplace(use.index.value_or(next), SourcePlace{source.path, line.number, {}, {}, {}});
        if (!isFirst) Report(source, line, *use.row, *known);
    }

    // A section of a family that stands there twice gives its values twice.
    void LookAgain(const LintSource& source, const SourceLine& line) {
        for (const auto& [row, places] : m_Places) {
            const auto known = places.find(*m_Use.index);
            if (row->eSection == m_Use.section && known != places.end()) Report(source, line, *row, *known);
        }
    }

    void Report(const LintSource& source, const SourceLine& line, const XOptionDefinition& row,
                const std::pair<const int, SourcePlace>& first) {
        const CString text = FormatText(L"'%s' %d stands here and in %s: the tool stops", row.szLongName, first.first,
                                        PlaceOf(first.second));
        m_Run.Report(source, line, {"C08", Severity::Error, text});
    }

    LintRun& m_Run;
    SectionUse m_Use;
    std::map<const XOptionDefinition*, std::map<int, SourcePlace>> m_Places;
};

/// Finds the line that each error of start-up is about.
class ErrorLint {
public:
    explicit ErrorLint(LintRun& run) : m_Run(run) {}

    void Walk() {
        for (const XException& error : m_Run.startup.errors) {
            const ErrorSubject subject = error.GetSubject() ? *error.GetSubject() : ErrorSubject{};
            const bool isOfValue = !subject.option.IsEmpty() && !subject.places.empty();
            if (!subject.reference.IsEmpty()) {
                LintReference(error, subject);
            } else if (isOfValue && subject.index >= 0) {
                continue;  // told with both places
            } else if (isOfValue && std::ranges::none_of(subject.places, &ErrorPlace::found)) {
                LintMissing(subject);
            } else {
                m_Run.Report(OptionOrigin{{}, OptionLayer::CommandLine},
                             {"C19", Severity::Error, LastTextOf(error) + L": the tool stops"});
            }
        }
    }

private:
    // The message that the error began with, without the full stop of its own.
    static CString LastTextOf(const XException& error) {
        const Json json = ErrorJson(error);
        CString text = FromUtf8(json["message"].get<std::string>());
        return Printable(text.TrimRight(L"!"));
    }

    void LintReference(const XException& error, const ErrorSubject& subject) {
        const XOptionDefinition* const row = FindOptionDefinition(subject.reference);
        const bool isFamily = row && !row->IsSingle();
        const CString text = isFamily ? L"%" + subject.reference + L"% has several values" : LastTextOf(error);
        const Finding finding{"C09", Severity::Error, text + L": the tool stops",
                              row ? CString{} : m_Run.NearestKey({}, subject.reference)};
        const int index = subject.index;
        const OptionExplanation explanation = m_Run.startup.options.ExplainOption(subject.option, index);
        OptionOrigin place{{}, OptionLayer::CommandLine};
        for (const OptionStep& step : explanation.steps) {
            for (const OptionPlace& asked : step.places) {
                if (asked.found && asked.text.Find(L"%" + subject.reference + L"%") >= 0) place = asked;
            }
        }
        if (place.line == 0) {
            for (const ErrorPlace& known : subject.places) FindLayer(place, known);
        }
        m_Run.Report(place, finding);
    }

    static void FindLayer(OptionOrigin& place, const ErrorPlace& known) {
        if (!known.found || place.line > 0) return;
        static_cast<SourcePlace&>(place) = known;
        for (const OptionLayer layer : {OptionLayer::Registry, OptionLayer::UserFile, OptionLayer::BasicFile}) {
            if (CString{LayerName(layer)} == known.layer) place.layer = layer;
        }
    }

    // The line that may have been meant: a key or a section of nearly that name, else the header of the section.
    void LintMissing(const ErrorSubject& subject) {
        const XOptionDefinition& row = *FindOptionDefinition(subject.option);
        const CString section = m_Run.startup.options.GetSectionName(row.eSection);
        Finding finding{
            "C07", Severity::Error,
            L"'" + subject.option + L"' of [" + section + L"] has no value and is mandatory: the tool stops"};
        for (const auto& known : m_Run.Findings()) {
            const bool isOfSection = known.suggestion == L"[" + section + L"]" &&
                                     (known.key.IsEmpty() || known.key.CompareNoCase(subject.option) == 0);
            const bool isNear = known.suggestion == subject.option || isOfSection;
            if (!isNear) continue;
            const LintSource& source = m_Run.sources[static_cast<std::size_t>(known.source)];
            return m_Run.Report(source, source.view.lines[static_cast<std::size_t>(known.line) - 1], finding);
        }
        const LintSource& basic = m_Run.sources.front();
        const auto header = std::ranges::find_if(basic.view.lines, [&](const SourceLine& line) {
            return line.kind == Kind::Section && line.section.CompareNoCase(section) == 0;
        });
        m_Run.Report(basic, header == basic.view.lines.end() ? SourceLine{} : *header, finding);
    }

    LintRun& m_Run;
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
                const CString text =
                    FormatText(L"%%%s%% leads to no value and becomes the list of the sections", step.reference);
                run.Report(holder, {"C10", Severity::Warning, text});
            } else {
                holder = place;
            }
        }
    }
}

void LintItems(LintRun& run) {
    XOption& options = run.startup.options;
    std::vector<const XOptionItem*> items;
    for (const auto* item = options.GetFirstOptionItem(L""); item; item = options.GetNextOptionItem(L""))
        items.push_back(item);
    for (const XOptionItem* item : items) {
        const OptionOrigin origin = options.GetOptionOrigin(item);
        if (origin.text.Find(L'%') >= 0) LintSteps(run, *item);
        CString name;
        item->GetOptionName(name);
        if (origin.layer != OptionLayer::Environment || options.ComesTooLate(name)) continue;
        run.Report(origin, {"C13", Severity::Note,
                            L"the variable '" + name + L"' of the environment gives this option its value"});
    }
}

}  // namespace

void LintValues(LintRun& run) {
    IndexLint{run}.Walk();
    ErrorLint{run}.Walk();
    LintItems(run);
}

}  // namespace veltrane::config
