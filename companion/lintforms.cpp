#include "lintforms.h"

#include <array>
#include <filesystem>
#include <map>

#include "commandtable.h"
#include "lspspot.h"
#include "lspuri.h"
#include "printable.h"
#include "veltrane/platform/files/filesystem.h"

namespace veltrane::config {

namespace {

namespace fs = std::filesystem;

std::string MessageOfCommand(const std::string& text) {
    return PercentEncoded(text,
                          [](char byte) { return std::string_view{"%\r\n"}.find(byte) != std::string_view::npos; });
}

std::string PropertyOfCommand(const std::string& text) {
    return PercentEncoded(text,
                          [](char byte) { return std::string_view{"%\r\n:,"}.find(byte) != std::string_view::npos; });
}

/// The piece of its line that a finding is about, as an editor marks it, in units of UTF-16; nothing for all of it.
std::optional<TextRange> MarkedPiece(const LintRun& run, const LintRun::Placed& finding) {
    if (!finding.isInFile || finding.part == LinePart::Line) return {};
    const StartupSource& source = run.SourceOf(finding);
    const SourceLine* const line = FindLine(source.view, finding.line);
    if (!line || source.layer == OptionLayer::Registry) return {};
    return RangeOf({&source, line}, finding.part, {ColumnUnit::Utf16, /*text*/ nullptr});
}

/// The files of findings, relative to a folder.
class FindingPaths {
public:
    explicit FindingPaths(const std::string& root) {
        std::error_code failure;
        m_Root = fs::canonical(root.empty() ? "." : root, failure);
        if (failure || !fs::is_directory(m_Root, failure))
            throw Refusal{FormatText(L"folder <%s> not found", FromUtf8(root))};
    }

    const fs::path& Root() const { return m_Root; }

    /// @return the whole path of a file that is not below the folder; empty for a finding without a file
    const fs::path& Of(const LintRun::Placed& finding) {
        const auto [known, isNew] = m_Paths.try_emplace(finding.file);
        if (isNew && finding.isInFile) known->second = FromRoot(MapPath(finding.file));
        return known->second;
    }

private:
    // The file itself may be a link to a file elsewhere.
    fs::path FromRoot(const fs::path& file) const {
        std::error_code failure;
        const fs::path whole = fs::weakly_canonical(file.parent_path(), failure) / file.filename();
        fs::path below = whole.lexically_relative(m_Root);
        return below.empty() || *below.begin() == ".." ? whole : below;
    }

    fs::path m_Root;
    std::map<CString, fs::path> m_Paths;
};

// A brace would begin a placeholder.
Json MessageJson(CString text) {
    text.Replace(L"{", L"{{");
    text.Replace(L"}", L"}}");
    return {{"text", ToUtf8(text)}};
}

Json RuleJson(const LintRow& row) {
    return {{"id", row.name},
            {"shortDescription", {{"text", Sentence(row.title)}}},
            {"fullDescription", {{"text", row.explanation}}},
            {"help", {{"text", row.explanation}}},
            {"defaultConfiguration", {{"level", SEVERITIES[static_cast<std::size_t>(row.severity)]}}}};
}

Json RegionJson(const LintRun& run, const LintRun::Placed& finding) {
    Json region{{"startLine", finding.line}};
    if (const std::optional<TextRange> piece = MarkedPiece(run, finding)) {
        region["startColumn"] = piece->begin.column + 1;
        region["endColumn"] = piece->end.column + 1;
    }
    return region;
}

Json LocationJson(const LintRun& run, const LintRun::Placed& finding, const fs::path& path) {
    if (path.empty()) return {{"logicalLocations", Json::array({Json{{"name", ToUtf8(finding.file)}}})}};
    Json artifact{{"uri", path.is_absolute() ? UriOfPath(path.native()) : PathInUri(path.native())}};
    if (path.is_relative()) artifact["uriBaseId"] = "%SRCROOT%";
    Json physical{{"artifactLocation", std::move(artifact)}};
    if (finding.line > 0) physical["region"] = RegionJson(run, finding);
    return {{"physicalLocation", std::move(physical)}};
}

}  // namespace

CString TextOf(const LintRun::Placed& finding) {
    CString text = Printable(finding.text);
    const CString& meant = finding.suggestion;
    if (meant.IsEmpty()) return text;
    const CString name = meant[0] == L'[' ? meant : L"'" + meant + L"'";
    return text + L"; did you mean " + name + L"?";
}

void AddGithub(Answer& answer, const LintRun& run, const Findings& findings, const Request& request) {
    constexpr std::array words{"error", "warning", "notice"};
    FindingPaths paths{request.Value("--root")};
    for (const LintRun::Placed& finding : findings) {
        const fs::path& path = paths.Of(finding);
        std::string properties;
        if (!path.empty()) properties += "file=" + PropertyOfCommand(path) + ',';
        if (finding.line > 0) properties += "line=" + std::to_string(finding.line) + ',';
        if (const std::optional<TextRange> piece = MarkedPiece(run, finding)) {
            properties += "col=" + std::to_string(piece->begin.column + 1) +
                          ",endColumn=" + std::to_string(piece->end.column + 1) + ',';
        }
        const std::string place = path.empty() ? ToUtf8(finding.file) + ": " : "";
        answer.text += std::string{"::"} + words[static_cast<std::size_t>(finding.severity)] + ' ' + properties +
                       "title=" + RowOf(finding.code).name + "::" + MessageOfCommand(place + ToUtf8(TextOf(finding))) +
                       '\n';
    }
}

Json SarifDocument(const LintRun& run, const Findings& findings, const Request& request) {
    FindingPaths paths{request.Value("--root")};
    Json rules = Json::array();
    for (const LintRow& row : LINTS) rules.push_back(RuleJson(row));
    Json results = Json::array();
    for (const LintRun::Placed& finding : findings) {
        results.push_back({{"ruleId", RowOf(finding.code).name},
                           {"ruleIndex", static_cast<int>(finding.code)},
                           {"level", SEVERITIES[static_cast<std::size_t>(finding.severity)]},
                           {"message", MessageJson(TextOf(finding))},
                           {"locations", Json::array({LocationJson(run, finding, paths.Of(finding))})}});
    }
    const std::string root = UriOfPath((paths.Root() / "").native());
    const Json driver{{"name", request.program}, {"version", request.version}, {"rules", std::move(rules)}};
    Json log{{"tool", {{"driver", driver}}},
             {"columnKind", "utf16CodeUnits"},
             {"originalUriBaseIds", {{"%SRCROOT%", {{"uri", root}}}}},
             {"results", std::move(results)}};
    return {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
            {"version", "2.1.0"},
            {"runs", Json::array({std::move(log)})}};
}

}  // namespace veltrane::config
