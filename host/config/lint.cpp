#include "lint.h"

#include <algorithm>
#include <filesystem>

#include "commands.h"
#include "veltrane/platform/files/filesystem.h"

namespace veltrane::config {

namespace {

const char* const SEVERITIES[] = {"error", "warning", "note"};

/// The codes that are wanted: those of a list, or all but those with a hyphen in front.
class CodeFilter {
public:
    explicit CodeFilter(std::string list) {
        std::ranges::replace(list, ',', ' ');
        for (std::size_t begin = 0; (begin = list.find_first_not_of(' ', begin)) != std::string::npos;) {
            const std::size_t end = std::min(list.find(' ', begin), list.size());
            const bool isExcluded = list[begin] == '-';
            std::string code = list.substr(begin + (isExcluded ? 1 : 0), end - begin - (isExcluded ? 1 : 0));
            if (code.size() != 3 || code[0] != 'C') throw Refusal{L"no code is called '" + FromUtf8(code) + L"'"};
            (isExcluded ? m_Excluded : m_Wanted).insert(std::move(code));
            begin = end;
        }
    }
    bool Has(const std::string& code) const {
        return (m_Wanted.empty() || m_Wanted.contains(code)) && !m_Excluded.contains(code);
    }

private:
    std::set<std::string> m_Wanted;
    std::set<std::string> m_Excluded;
};

// Whether a source is among the files that are asked for.
bool IsAsked(const LintRun& run, const LintRun::Placed& finding, const Request& request) {
    if (request.words.empty()) return true;
    if (finding.source >= static_cast<int>(run.sources.size())) return false;
    const std::string path = MapPath(finding.file);
    return std::ranges::any_of(request.words, [&](const std::string& word) {
        std::error_code failure;
        return std::filesystem::equivalent(path, word, failure);
    });
}

// By file, line and code, each said once; a line that stops the tool is not told to be a second one, too.
std::vector<LintRun::Placed> Sorted(const LintRun& run, const Request& request) {
    const CodeFilter filter{request.Value("--code")};
    std::set<std::pair<int, int>> stopping;
    for (const LintRun::Placed& finding : run.Findings()) {
        if (std::string_view{finding.code} == "C08") stopping.emplace(finding.source, finding.line);
    }
    const auto keyOf = [](const LintRun::Placed& finding) {
        return std::tuple(finding.source, finding.line, std::string_view{finding.code}, finding.text.View());
    };
    std::vector<LintRun::Placed> findings;
    for (const LintRun::Placed& finding : run.Findings()) {
        const bool isTwice =
            std::string_view{finding.code} == "C04" && stopping.contains({finding.source, finding.line});
        if (filter.Has(finding.code) && IsAsked(run, finding, request) && !isTwice) findings.push_back(finding);
    }
    std::ranges::sort(findings, {}, keyOf);
    const auto isSame = [&](const auto& left, const auto& right) { return keyOf(left) == keyOf(right); };
    findings.erase(std::unique(findings.begin(), findings.end(), isSame), findings.end());
    return findings;
}

void AddLine(Answer& answer, const LintRun& run, const LintRun::Placed& finding, bool isColoured) {
    const bool isFile = finding.source < static_cast<int>(run.sources.size());
    CString place = isFile ? DisplayPath(finding.file) : finding.file;
    if (finding.line > 0) place += FormatText(L":%d", finding.line);
    std::string severity = SEVERITIES[static_cast<int>(finding.severity)];
    if (isColoured) severity = Coloured(severity);
    const CString meant =
        finding.suggestion.IsEmpty()
            ? CString{}
            : L"; did you mean " +
                  (finding.suggestion[0] == L'[' ? finding.suggestion : L"'" + finding.suggestion + L"'") + L"?";
    answer.text += ToUtf8(place) + ": " + severity + ' ' + finding.code + ": " + ToUtf8(finding.text + meant) + '\n';
}

Json FindingJson(const LintRun::Placed& finding) {
    Json json{{"code", finding.code},
              {"severity", SEVERITIES[static_cast<int>(finding.severity)]},
              {"file", ToUtf8(finding.file)},
              {"line", finding.line}};
    if (!finding.section.IsEmpty()) json["section"] = ToUtf8(finding.section);
    if (!finding.key.IsEmpty()) json["key"] = ToUtf8(finding.key);
    json["text"] = ToUtf8(finding.text);
    if (!finding.suggestion.IsEmpty()) json["suggestion"] = ToUtf8(finding.suggestion);
    return json;
}

std::string Counted(std::ptrdiff_t count, const std::string& what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

void AddSummary(Answer& answer, const LintRun& run, const std::ptrdiff_t (&counts)[3]) {
    const auto files = std::ranges::count_if(run.sources, [](const LintSource& source) {
        return source.layer != OptionLayer::Registry && source.view.reading == SourceReading::Done;
    });
    const bool hasRegistry = std::ranges::any_of(run.sources, [](const LintSource& source) {
        return source.layer == OptionLayer::Registry && source.view.reading == SourceReading::Done;
    });
    answer.text += Counted(files, "file") + (hasRegistry ? ", 1 registry" : "") + ": " + Counted(counts[0], "error") +
                   ", " + Counted(counts[1], "warning") + ", " + Counted(counts[2], "note") + '\n';
}

}  // namespace

Answer Lint(const Request& request, Startup& startup) {
    LintRun run{startup};
    LintFiles(run);
    LintLines(run);
    LintRegistry(run);
    LintRules(run);
    LintValues(run);
    Answer answer;
    answer.tellsErrors = true;
    answer.document["findings"] = Json::array();
    std::ptrdiff_t counts[3] = {};
    for (const LintRun::Placed& finding : Sorted(run, request)) {
        ++counts[static_cast<int>(finding.severity)];
        AddLine(answer, run, finding, request.isColoured);
        answer.document["findings"].push_back(FindingJson(finding));
    }
    AddSummary(answer, run, counts);
    answer.hasFindings = counts[0] > 0 || (counts[1] > 0 && request.Has("--strict"));
    return answer;
}

}  // namespace veltrane::config
