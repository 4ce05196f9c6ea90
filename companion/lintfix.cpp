#include "lintfix.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <tuple>

#include "edit.h"
#include "editfile.h"
#include "nametext.h"
#include "places.h"

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

bool HasSection(const StartupSource& source, const CString& name) {
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
        const bool isOtherOption = row->eOption != eOptionTitle && row->eSection == use.section && row != meant.row;
        if (isOtherOption && IsOneSlip(finding.key, row->szLongName)) return false;
    }
    return std::ranges::none_of(run.SourceOf(finding).view.lines, [&](const SourceLine& line) {
        const bool isEntry = line.kind == Kind::Entry && IsSameName(line.section, finding.section);
        return isEntry && IsSameName(line.key, finding.suggestion);
    });
}

// The name that a line should have; empty when that is not certain.
CString NameFor(const LintRun& run, const LintRun::Placed& finding) {
    const bool isIni = finding.isInFile && run.SourceOf(finding).layer != OptionLayer::Registry;
    const SourceLine* const line = isIni ? FindLine(run.SourceOf(finding).view, finding.line) : nullptr;
    if (!line) return {};
    if (finding.code == C02) return IsCertainKey(run, finding) ? finding.suggestion : CString{};
    if (finding.code == C01 && finding.severity == Severity::Warning && !finding.suggestion.IsEmpty()) {
        const CString name = WithoutBrackets(finding.suggestion);
        const bool isCertain = IsOneSlip(finding.section, name) && !HasSection(run.SourceOf(finding), name);
        return isCertain ? name : CString{};
    }
    const bool isOpen = finding.code == C16 && line->reason == SourceLine::Reason::HeaderWithoutBracket;
    return isOpen && run.FindSection(line->section).isKnown ? line->section : CString{};
}

bool IsMove(const Mend& mend) {
    return mend.finding.code == C03;
}

// Puts the lines of moves, as they are, after the last entries of their sections, or in new sections at the end.
void MoveLines(FileEdit& edit, const std::vector<Mend>& mends) {
    std::map<CString, std::vector<CString>> made;  // sections
    for (const Mend& mend : mends) {
        if (!IsMove(mend) || mend.finding.file != edit.Path() || !edit.HasLine(mend.finding.line)) continue;
        const SourceLine& line = edit.Line(mend.finding.line);
        const CString text = DecodeSource(line.place.In(edit.Bytes()), edit.View().encoding);
        edit.Remove(line);
        const auto isTarget = [&](const CString& section) { return IsSameName(section, mend.text); };
        if (const SourceLine* const header = edit.FindHeader(isTarget)) {
            edit.InsertAfter(edit.LastEntry(*header).number, {text});
        } else {
            std::vector<CString>& lines = made[mend.text];
            if (lines.empty()) lines.push_back(L"[" + mend.text + L"]");
            lines.push_back(text);
        }
    }
    for (const auto& [name, lines] : made) edit.InsertAfter(static_cast<int>(edit.View().lines.size()), lines);
}

std::vector<MendedFile> MendedFiles(const std::vector<Mend>& mends) {
    std::set<CString> paths;
    for (const Mend& mend : mends) paths.insert(mend.finding.file);
    std::vector<MendedFile> files;
    for (const CString& path : paths) {
        FileEdit edit{path, EditFile{path}.Bytes()};
        for (const Mend& mend : mends) {
            const auto& [finding, text] = mend;
            if (finding.file != path || IsMove(mend) || !edit.HasLine(finding.line)) continue;
            const SourceRange place = edit.Line(finding.line).namePlace;
            if (finding.code == C16) {
                edit.Replace({place.End(), 0}, L"]");
            } else {
                edit.Replace(place, text);
            }
        }
        MoveLines(edit, mends);
        files.push_back({path, edit.Bytes(), edit.Result(), edit.Diff(ToUtf8(DisplayPath(path)))});
    }
    return files;
}

// What a finding says without its place: a move renumbers the lines after it, and texts contain line numbers too.
auto KeyOf(const LintRun::Placed& finding) {
    std::wstring text{finding.text.View()};
    std::erase_if(text, [](wchar_t element) { return element >= L'0' && element <= L'9'; });
    return std::tuple(finding.code, finding.source, text);
}

Findings NewFindings(Startup& startup, const Findings& before) {
    std::multiset<decltype(KeyOf(before[0]))> known;
    for (const LintRun::Placed& finding : before) known.insert(KeyOf(finding));
    const auto restarted = startup.Again();
    LintRun run{*restarted};
    Findings findings;
    for (const LintRun::Placed& finding : FindAll(run)) {
        const auto same = known.find(KeyOf(finding));
        if (same == known.end()) {
            findings.push_back(finding);
        } else {
            known.erase(same);
        }
    }
    return findings;
}

// Whether a finding is about the line of a mend, which after a move has another number.
bool IsAbout(const LintRun::Placed& finding, const Mend& mend) {
    if (finding.source != mend.finding.source) return false;
    if (!IsMove(mend)) return finding.line == mend.finding.line;
    return IsSameName(finding.section, mend.text) && IsSameName(finding.key, mend.finding.key);
}

}  // namespace

std::vector<Mend> CertainMends(const LintRun& run, const Findings& findings) {
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

std::vector<Mend> MovesOfKeys(const LintRun& run, const Findings& findings) {
    std::vector<Mend> moves;
    for (const LintRun::Placed& finding : findings) {
        const bool isMisplaced = finding.code == C03 && finding.severity == Severity::Warning && finding.isInFile;
        if (!isMisplaced || finding.suggestion[0] != L'[') continue;
        const StartupSource& source = run.SourceOf(finding);
        const CString name = WithoutBrackets(finding.suggestion);
        const auto isThere = [&](const SourceLine& line) {
            return line.kind == Kind::Entry && IsSameName(line.section, name) && IsSameName(line.key, finding.key);
        };
        const auto isTwin = [&](const Mend& other) {
            return other.finding.source == finding.source && IsSameName(other.text, name) &&
                   IsSameName(other.finding.key, finding.key);
        };
        if (std::ranges::none_of(source.view.lines, isThere) && std::ranges::none_of(moves, isTwin))
            moves.push_back({finding, name});
    }
    return moves;
}

std::list<SourceReplacement> Replaced(const std::vector<MendedFile>& files) {
    std::list<SourceReplacement> replacements;
    for (const MendedFile& file : files) replacements.emplace_back(file.path, file.result);
    return replacements;
}

std::vector<MendedFile> ProveMends(Startup& startup, const Findings& before, std::vector<Mend>& mends) {
    while (!mends.empty()) {
        std::vector<MendedFile> files = MendedFiles(mends);
        const auto replacements = Replaced(files);
        const Findings findings = NewFindings(startup, before);
        if (findings.empty()) return files;
        const auto isBlamed = [&](const Mend& mend) {
            return std::ranges::any_of(findings, [&](const auto& finding) { return IsAbout(finding, mend); });
        };
        if (std::erase_if(mends, isBlamed) == 0)
            mends.pop_back();  // it appears on another line: the mend that causes it is not known
    }
    return {};
}

}  // namespace veltrane::config
