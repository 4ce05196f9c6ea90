#include "lintfix.h"

#include <algorithm>
#include <memory>
#include <set>
#include <tuple>

#include "edit.h"
#include "editfile.h"
#include "nametext.h"
#include "places.h"
#include "printable.h"
#include "veltrane/options/typed.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/sources/internal/replacement.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;
using enum LintCode;

// Whether one letter is dropped, added or changed, or two neighbours are swapped; case does not count.
bool IsOneSlip(CString left, CString right) {
    left.MakeLower();
    right.MakeLower();
    std::wstring_view first = left.View();
    std::wstring_view second = right.View();
    while (!first.empty() && !second.empty() && first.front() == second.front()) {
        first.remove_prefix(1);
        second.remove_prefix(1);
    }
    while (!first.empty() && !second.empty() && first.back() == second.back()) {
        first.remove_suffix(1);
        second.remove_suffix(1);
    }
    const bool isSwap = first.size() == 2 && second.size() == 2 && first[0] == second[1] && first[1] == second[0];
    return isSwap || std::max(first.size(), second.size()) == 1;
}

const LintSource& SourceOf(const LintRun& run, const LintRun::Placed& finding) {
    return run.sources[static_cast<std::size_t>(finding.source)];
}

bool HasSection(const LintSource& source, const CString& name) {
    return std::ranges::any_of(source.view.lines, [&](const SourceLine& line) {
        return line.kind == Kind::Section && IsSameName(line.section, name);
    });
}

// A key of the section that is one slip away, and the only one.
bool IsCertainKey(const LintRun& run, const LintRun::Placed& finding) {
    const SectionUse use = run.FindSection(finding.section);
    const KeyUse meant = run.FindKey(use, finding.suggestion);
    if (!meant.row || !IsOneSlip(finding.key, finding.suggestion)) return false;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        const bool isOther = row->eOption != eOptionTitle && row->eSection == use.section && row != meant.row;
        if (isOther && IsOneSlip(finding.key, row->szLongName)) return false;
    }
    return std::ranges::none_of(SourceOf(run, finding).view.lines, [&](const SourceLine& line) {
        const bool isEntry = line.kind == Kind::Entry && IsSameName(line.section, finding.section);
        return isEntry && IsSameName(line.key, finding.suggestion);
    });
}

// The name that a line should have; empty where that is not certain.
CString NameFor(const LintRun& run, const LintRun::Placed& finding) {
    const bool isIni = finding.isInFile && SourceOf(run, finding).layer != OptionLayer::Registry;
    if (!isIni || finding.line <= 0) return {};
    if (finding.code == C02) return IsCertainKey(run, finding) ? finding.suggestion : CString{};
    if (finding.code == C01 && finding.severity == Severity::Warning && !finding.suggestion.IsEmpty()) {
        const CString name = finding.suggestion.Mid(1, finding.suggestion.GetLength() - 2);
        const bool isCertain = IsOneSlip(finding.section, name) && !HasSection(SourceOf(run, finding), name);
        return isCertain ? name : CString{};
    }
    const SourceLine& line = SourceOf(run, finding).view.lines[static_cast<std::size_t>(finding.line) - 1];
    const bool isOpen = finding.code == C16 && line.reason == SourceLine::Reason::HeaderWithoutBracket;
    return isOpen && run.FindSection(line.section).isKnown ? line.section : CString{};
}

auto KeyOf(const LintRun::Placed& finding) {
    return std::tuple(finding.code, finding.source, finding.line, finding.text);
}

std::vector<std::unique_ptr<SourceReplacement>> Replaced(const std::vector<MendedFile>& files) {
    std::vector<std::unique_ptr<SourceReplacement>> replacements;
    replacements.reserve(files.size());
    for (const MendedFile& file : files)
        replacements.push_back(std::make_unique<SourceReplacement>(file.path, file.result));
    return replacements;
}

// The lines, by source, of findings that were not there before.
std::set<std::pair<int, int>> NewPlaces(Startup& startup, const std::vector<LintRun::Placed>& before) {
    std::set<decltype(KeyOf(before[0]))> known;
    for (const LintRun::Placed& finding : before) known.insert(KeyOf(finding));
    Startup restarted = Restarted(startup);
    LintRun run{restarted};
    std::set<std::pair<int, int>> places;
    for (const LintRun::Placed& finding : FindAll(run)) {
        if (!known.contains(KeyOf(finding))) places.emplace(finding.source, finding.line);
    }
    return places;
}

}  // namespace

Startup Restarted(Startup& startup) {
    std::vector<CString> words = GetArguments();
    words.erase(words.begin());
    return Startup{startup.tool, words, GetText<"version-info">(startup.options)};
}

std::vector<Mend> CertainMends(const LintRun& run, const std::vector<LintRun::Placed>& findings) {
    std::vector<Mend> mends;
    for (const LintRun::Placed& finding : findings) {
        const CString name = NameFor(run, finding);
        const auto isTwin = [&](const Mend& other) {  // two slips of one name
            const bool isThere = other.finding.source == finding.source;
            const bool isSameKind = other.finding.code == finding.code && finding.code != C16;
            return isThere && isSameKind && IsSameName(other.text, name) &&
                   IsSameName(other.finding.section, finding.section);
        };
        if (!name.IsEmpty() && std::ranges::none_of(mends, isTwin)) mends.push_back({finding, name});
    }
    return mends;
}

std::vector<MendedFile> MendedFiles(const std::vector<Mend>& mends) {
    std::set<CString> paths;
    for (const Mend& mend : mends) paths.insert(mend.finding.file);
    std::vector<MendedFile> files;
    for (const CString& path : paths) {
        FileEdit edit{path, EditFile{path}.Bytes()};
        for (const auto& [finding, text] : mends) {
            if (finding.file != path || finding.line > static_cast<int>(edit.View().lines.size())) continue;
            const SourceRange place = edit.Line(finding.line).namePlace;
            if (finding.code == C16) {
                edit.Replace({place.End(), 0}, L"]");
            } else {
                edit.Replace(place, text);
            }
        }
        files.push_back({path, edit.Bytes(), edit.Result(), edit.Diff(ToUtf8(DisplayPath(path)))});
    }
    return files;
}

std::vector<MendedFile> ProveMends(Startup& startup, const std::vector<LintRun::Placed>& before,
                                   std::vector<Mend>& mends) {
    while (!mends.empty()) {
        std::vector<MendedFile> files = MendedFiles(mends);
        const auto replacements = Replaced(files);
        const std::set<std::pair<int, int>> places = NewPlaces(startup, before);
        if (places.empty()) return files;
        const auto isBlamed = [&](const Mend& mend) {
            return places.contains({mend.finding.source, mend.finding.line});
        };
        if (std::erase_if(mends, isBlamed) == 0) mends.pop_back();  // it shows on another line: whose, is not known
    }
    return {};
}

}  // namespace veltrane::config
