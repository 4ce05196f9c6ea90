// The errors of start-up, each at the place that it is about.
#include <algorithm>

#include "answer.h"
#include "askedoption.h"
#include "errorjson.h"
#include "libraryoption.h"
#include "lint.h"
#include "printable.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;
using enum LintCode;

CString WithoutStop(const Json& text) {
    return Printable(FromUtf8(text.get<std::string>()).TrimRight(L"!"));
}

// The message that an error began with and its remarks on the folder or file, without hints for the command line.
CString MessageOf(const XException& error) {
    const Json json = ErrorJson(error);
    const Json& remarks = json["remarks"];
    const bool isPlain = remarks.empty() || remarks[0].get<std::string>().starts_with('<');
    return isPlain ? WithoutStop(json["message"])
                   : FormatText(L"%s (%s)", WithoutStop(json["message"]), WithoutStop(remarks[0]));
}

class ErrorLint {
public:
    explicit ErrorLint(LintRun& run) : m_Run(run), m_Meant(run.MeantDatabase()) {}

    void Walk() {
        if (!m_Meant.IsEmpty()) LintDatabase();
        for (const XException& error : m_Run.startup.errors) {
            const ErrorSubject subject = error.GetSubject() ? *error.GetSubject() : ErrorSubject{};
            const auto found = std::ranges::find(subject.places, true, &OptionPlace::found);
            const bool isFound = found != subject.places.end();
            if (!subject.reference.IsEmpty()) {
                LintReference(error, subject);
            } else if (subject.index >= 0 && !subject.places.empty()) {
                continue;  // reported with both places
            } else if (!subject.places.empty()) {
                LintMissing(subject, isFound ? OptionOrigin{*found} : LikelyPlace(subject));
            } else {
                LintOther(error, subject);
            }
        }
    }

private:
    static OptionOrigin CommandLine() { return {{}, OptionLayer::CommandLine}; }

    OptionOrigin DatabasePlace() const {
        return m_Run.startup.options.GetOptionOrigin(FindItem<"name">(m_Run.startup.options));
    }

    // The word is wrong, not the sections of the files.
    void LintDatabase() {
        const CString name = m_Run.startup.options.GetSectionName(eSectionDatabase);
        m_Run.Report(DatabasePlace(),
                     {C01, FormatText(L"no source has a section for the database '%s'", name), m_Meant});
    }

    // The value that start-up could not use is where the option was given.
    void LintOther(const XException& error, const ErrorSubject& subject) {
        OptionOrigin place = CommandLine();
        if (!subject.option.IsEmpty() && subject.argument.IsEmpty()) {
            const auto candidates = m_Run.startup.options.GetOptionCandidates(subject.option, -1).candidates;
            const auto given = std::ranges::find_if(
                candidates, [](const OptionOrigin& origin) { return origin.layer > OptionLayer::StartUp; });
            if (given != candidates.end()) place = *given;
        }
        const CString name = CString{subject.argument}.TrimLeft(L'-').MakeLower();
        const CString meant = subject.option.IsEmpty() ? NearestOption(name) : CString{};
        m_Run.Report(place, {C19, FormatText(L"%s; the tool stops", MessageOf(error)), meant, Severity::Error});
    }

    void LintReference(const XException& error, const ErrorSubject& subject) {
        const XOptionDefinition* const row = FindOptionDefinition(subject.reference);
        const bool isMissing = row && row->IsMandatory() && row->IsSingle();
        if (isMissing) return;  // reported as missing
        const CString name = Printable(subject.reference);
        const CString text = row && !row->IsSingle()
                                 ? FormatText(L"%%%s%% names an option with several values; the tool stops", name)
                                 : FormatText(L"%s; the tool stops", MessageOf(error));
        const CString meant = row ? CString{} : m_Run.NearestKey({}, subject.reference);
        m_Run.Report(HolderOf(subject), {C09, text, meant});
    }

    // The line that holds the reference itself.
    OptionOrigin HolderOf(const ErrorSubject& subject) const {
        OptionOrigin place = CommandLine();
        for (const OptionStep& step : m_Run.startup.options.ExplainOption(subject.option, subject.index).steps) {
            for (const OptionPlace& asked : step.places) {
                if (asked.found && asked.text.Find(L"%" + subject.reference + L"%") >= 0) place = asked;
            }
        }
        const auto found = std::ranges::find(subject.places, true, &OptionPlace::found);
        if (place.line == 0 && found != subject.places.end()) place = *found;
        return place;
    }

    void LintMissing(const ErrorSubject& subject, const OptionOrigin& place) {
        if (m_Run.sources.front().view.reading == SourceReading::Missing) return;  // the cause is reported
        const CString section = m_Run.startup.options.GetSectionName(FindOptionDefinition(subject.option)->eSection);
        m_Run.Report(place, {C07, FormatText(L"the mandatory option '%s' of [%s] has no value; the tool stops",
                                             subject.option, section)});
    }

    // The line that was probably meant: a key or a section of nearly that name, else the header of the section.
    OptionOrigin LikelyPlace(const ErrorSubject& subject) const {
        if (!m_Meant.IsEmpty()) return DatabasePlace();
        const CString section = m_Run.startup.options.GetSectionName(FindOptionDefinition(subject.option)->eSection);
        for (const LintRun::Placed& known : m_Run.Findings()) {
            const bool isOfSection =
                known.isInFile && known.suggestion == L"[" + section + L"]" && Holds(known, subject.option);
            if (!known.isInFile || (known.suggestion != subject.option && !isOfSection)) continue;
            return {{known.file, known.line, known.section, known.key}, m_Run.SourceOf(known).layer};
        }
        const StartupSource& basic = m_Run.sources.front();
        OptionOrigin place{{basic.path, 0, section}, basic.layer};
        for (const SourceLine& line : basic.view.lines) {  // the last of several: those after the first are ignored
            if (line.kind == Kind::Section && line.section.CompareNoCase(section) == 0) place.line = line.number;
        }
        return place;
    }

    // Whether a line that was found is one of the option, or the header of a section that has it.
    bool Holds(const LintRun::Placed& known, const CString& option) const {
        if (!known.key.IsEmpty()) return known.key.CompareNoCase(option) == 0;
        return std::ranges::any_of(m_Run.SourceOf(known).view.lines, [&](const SourceLine& line) {
            return line.section == known.section && line.key.CompareNoCase(option) == 0;
        });
    }

    LintRun& m_Run;
    CString m_Meant;  // the database, when that of the command line is misspelt
};

}  // namespace

void LintErrors(LintRun& run) {
    ErrorLint{run}.Walk();
}

}  // namespace veltrane::config
