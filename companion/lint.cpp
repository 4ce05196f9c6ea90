#include "lint.h"

#include <algorithm>
#include <filesystem>

#include "codelist.h"
#include "commands.h"
#include "editfile.h"
#include "lintfix.h"
#include "lintforms.h"
#include "places.h"
#include "printable.h"
#include "startupfiles.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/process/process.h"
#include "wrapped.h"

namespace veltrane::config {

namespace {

constexpr int TEXT_INDENT = 4;  // of lines after the first

/// @throws Refusal  there is no such code
const LintRow& AskedLint(const std::string& word) {
    const CString name = FromUtf8(word);
    if (const LintRow* const row = FindLint(name)) return *row;
    const CString hint = NearestHint(NearestCode(name), L"; '--explain all' lists them");
    throw Refusal{FormatText(L"'%s' is not a lint code%s", name, hint)};
}

/// The codes that are wanted: those of a list, or all but those with a hyphen in front.
class CodeFilter {
public:
    explicit CodeFilter(const std::string& list) {
        for (const std::string& word : SplitList(list)) {
            const bool isExcluded = word[0] == '-';
            (isExcluded ? m_Excluded : m_Wanted).insert(&AskedLint(word.substr(isExcluded ? 1 : 0)));
        }
    }
    bool Has(LintCode code) const {
        return (m_Wanted.empty() || m_Wanted.contains(&RowOf(code))) && !m_Excluded.contains(&RowOf(code));
    }

private:
    std::set<const LintRow*> m_Wanted;
    std::set<const LintRow*> m_Excluded;
};

/// The sources whose findings are wanted: all, or the named ones.
class FileFilter {
public:
    /// @throws Refusal  a file is missing, or is not a source
    FileFilter(const LintRun& run, const std::vector<std::string>& files) {
        for (const std::string& file : files) {
            std::error_code failure;
            if (!std::filesystem::exists(file, failure))
                throw Refusal{FormatText(L"file <%s> not found%s", FromUtf8(file),
                                         GetArguments().size() == 1 ? FORGOTTEN_HYPHENS : L"")};
            const auto isFile = [&](const StartupSource& source) {
                return std::filesystem::equivalent(MapPath(source.path), file, failure);
            };
            const auto found = std::ranges::find_if(run.sources, isFile);
            if (found == run.sources.end())
                throw Refusal{
                    FormatText(L"<%s> is not a source of this configuration; the command 'files' lists the sources",
                               FromUtf8(file))};
            m_Wanted.insert(static_cast<int>(found - run.sources.begin()));
        }
    }
    bool Has(int source) const { return m_Wanted.empty() || m_Wanted.contains(source); }

private:
    std::set<int> m_Wanted;
};

void AddLine(Answer& answer, const LintRun::Placed& finding, bool isColoured) {
    CString place = finding.isInFile ? DisplayPath(finding.file) : finding.file;
    if (finding.line > 0) place += FormatText(L":%d", finding.line);
    place += L": ";
    const std::string severity = SEVERITIES[static_cast<int>(finding.severity)];
    const CString head = place + FromUtf8(severity + ' ' + RowOf(finding.code).name + ": ");
    std::string lines;
    AddWrapped(lines, TextOf(finding), TEXT_INDENT, head);
    if (isColoured) lines.replace(ToUtf8(place).size(), severity.size(), Coloured(severity));
    answer.text += lines;
}

Json FindingJson(const LintRun::Placed& finding) {
    Json json{{"code", RowOf(finding.code).name},
              {"severity", SEVERITIES[static_cast<int>(finding.severity)]},
              {"file", finding.isInFile ? SpelledPath(finding.file) : ToUtf8(finding.file)},
              {"line", finding.line}};
    if (!finding.section.IsEmpty()) json["section"] = ToUtf8(finding.section);
    if (!finding.key.IsEmpty()) json["key"] = ToUtf8(finding.key);
    json["part"] = LINE_PARTS[static_cast<int>(finding.part)];
    json["text"] = ToUtf8(finding.text);
    if (!finding.suggestion.IsEmpty()) json["suggestion"] = ToUtf8(finding.suggestion);
    return json;
}

std::string Counted(std::ptrdiff_t count, const std::string& what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

void AddSummary(Answer& answer, const LintRun& run, const FileFilter& wanted, const std::ptrdiff_t (&counts)[3]) {
    std::ptrdiff_t files = 0;
    std::ptrdiff_t registries = 0;
    for (const StartupSource& source : run.sources) {
        const bool isLooked = wanted.Has(run.SourceNumber(source.layer)) && source.view.reading == SourceReading::Done;
        if (isLooked) ++(source.layer == OptionLayer::Registry ? registries : files);
    }
    const std::string sources = registries == 0 ? Counted(files, "file")
                                : files == 0    ? "1 registry"
                                                : Counted(files, "file") + ", 1 registry";
    answer.text += sources + ": " + Counted(counts[0], "error") + ", " + Counted(counts[1], "warning") + ", " +
                   Counted(counts[2], "note") + '\n';
}

// In the wanted format; text and JSON are made together.
void AddFindings(Answer& answer, const LintRun& run, const Findings& findings, const Request& request) {
    const std::string format = request.Value("--format");
    if (format == "github") return AddGithub(answer, run, findings, request);
    if (format == "sarif") {
        answer.document = SarifDocument(run, findings, request);
        return;
    }
    answer.document["findings"] = Json::array();
    for (const LintRun::Placed& finding : findings) {
        AddLine(answer, finding, request.isColoured);
        answer.document["findings"].push_back(FindingJson(finding));
    }
}

Answer Explain(const std::string& list) {
    Answer answer;
    answer.tellsErrors = true;  // of start-up: none is reported
    answer.document["errors"] = Json::array();
    answer.document["codes"] = Json::array();
    std::vector<std::string> words = SplitList(list);
    if (list == "all" || words.empty()) {
        words.clear();
        for (const LintRow& row : LINTS) words.emplace_back(row.name);
    }
    for (const std::string& word : words) {
        const LintRow& row = AskedLint(word);
        const char* const severity = SEVERITIES[static_cast<int>(row.severity)];
        answer.text += std::string{row.name} + ' ' + severity + ": " + row.title + '\n';
        AddWrapped(answer.text, FromUtf8(row.explanation), TEXT_INDENT);
        answer.document["codes"].push_back(
            {{"code", row.name}, {"severity", severity}, {"title", row.title}, {"explanation", row.explanation}});
    }
    return answer;
}

bool IsOfUnreadable(const LintRun& run, const LintRun::Placed& finding) {
    if (finding.code != LintCode::C19 || !finding.isInFile) return false;
    const StartupSource& source = run.SourceOf(finding);
    return IsUnreadable(source.path, source.view);
}

Findings Wanted(const Request& request, const FileFilter& files, Findings all) {
    const CodeFilter codes{request.Value("--code")};
    std::erase_if(
        all, [&](const LintRun::Placed& finding) { return !codes.Has(finding.code) || !files.Has(finding.source); });
    return all;
}

Answer Report(const Request& request, const LintRun& run, const Findings& all) {
    const FileFilter files{run, request.words};
    const Findings findings = Wanted(request, files, all);
    Answer answer;
    answer.tellsErrors = true;
    std::ptrdiff_t counts[3] = {};
    for (const LintRun::Placed& finding : findings) {
        answer.hasFindings = answer.hasFindings || IsOfUnreadable(run, finding);
        ++counts[static_cast<int>(finding.severity)];
    }
    AddFindings(answer, run, findings, request);
    if (request.Value("--format") != "sarif") AddSummary(answer, run, files, counts);
    answer.hasFindings = answer.hasFindings || counts[0] > 0 || (counts[1] > 0 && request.Has("--strict"));
    return answer;
}

CString MendText(const Mend& mend) {
    const LintRun::Placed& finding = mend.finding;
    const bool isMoved = finding.code == LintCode::C03;
    const CString old = isMoved || finding.code == LintCode::C02 ? finding.key : finding.section;
    const bool isHeader = finding.code == LintCode::C16;
    const CString change = isHeader  ? L"[" + old + L" -> [" + old + L"]"
                           : isMoved ? old + L" -> [" + mend.text + L"]"
                                     : old + L" -> " + mend.text;
    return ShortPlace({finding.file, finding.line}) + L": " + CString{RowOf(finding.code).name} + L": " +
           Printable(change) + L" (mended)";
}

/// @throws Refusal  the file has changed, or cannot be written
void WriteMended(const MendedFile& mended) {
    EditFile file{mended.path};
    if (file.Bytes() != mended.bytes)
        throw Refusal{L"<" + DisplayPath(mended.path) + L"> has changed in the meantime; try again"};
    file.Write(mended.result);
}

// Mends what is certain and reports the rest.
Answer Fix(const Request& request, Startup& startup, const LintRun& run, const Findings& all) {
    const Findings wanted = Wanted(request, FileFilter{run, request.words}, all);
    std::vector<Mend> mends = CertainMends(run, wanted);
    if (request.Has("--force")) std::ranges::copy(MovesOfKeys(run, wanted), std::back_inserter(mends));
    const std::vector<MendedFile> files = ProveMends(startup, all, mends);
    auto replacements = Replaced(files);
    const auto restarted = startup.Again();
    LintRun rest{*restarted};
    Answer answer = Report(request, rest, FindAll(rest));
    std::string mended;
    answer.document["mended"] = Json::array();
    for (const Mend& mend : mends) {
        const LintRun::Placed& finding = mend.finding;
        mended += ToUtf8(MendText(mend)) + '\n';
        answer.document["mended"].push_back({{"code", RowOf(finding.code).name},
                                             {"file", SpelledPath(finding.file)},
                                             {"line", finding.line},
                                             {"new", ToUtf8(mend.text)}});
    }
    if (request.Has("--dry-run")) {
        answer.errorText = mended + answer.text;
        answer.text.clear();
        for (const MendedFile& file : files) answer.text += file.diff;
    } else {
        answer.text = mended + answer.text;
        replacements.clear();
        for (const MendedFile& file : files) WriteMended(file);
    }
    return answer;
}

}  // namespace

Answer Lint(const Request& request, Startup& startup) {
    if (request.Has("--explain")) return Explain(request.Value("--explain"));
    if (request.Has("--dry-run") && !request.Has("--fix")) throw Refusal{L"--dry-run requires --fix"};
    if (request.Has("--force") && !request.Has("--fix")) throw Refusal{L"--force requires --fix"};
    LintRun run{startup};
    const Findings findings = FindAll(run);
    return request.Has("--fix") ? Fix(request, startup, run, findings) : Report(request, run, findings);
}

}  // namespace veltrane::config
