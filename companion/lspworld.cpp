#include "lspworld.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "lspdiagnostics.h"
#include "lspuri.h"
#include "printable.h"
#include "veltrane/platform/files/filesystem.h"

namespace veltrane::config {

namespace {

bool Contains(const std::vector<std::string>& files, const std::string& file) {
    return std::ranges::find(files, file) != files.end();
}

}  // namespace

LspWorld::LspWorld(LspTool tool, std::vector<CString> arguments, LspClient& other)
    : client(other), m_Tool(std::move(tool)) {
    m_Configurations.push_back({std::move(arguments)});
}

void LspWorld::SetArguments(std::vector<CString> arguments) {
    Main().arguments = std::move(arguments);
    Refresh();
}

void LspWorld::Open(const std::string& uri, std::int64_t version, std::string text) {
    if (!documents.Open(uri, version, std::move(text)))
        client.Show(Severity::Error, FormatText(L"<%s> is too large to be checked", FromUtf8(uri)));
    Refresh();
}

void LspWorld::Change(const std::string& uri, std::optional<std::int64_t> version,
                      const std::vector<TextChange>& changes) {
    if (!documents.Change(uri, version, changes, client.Unit())) return;
    const std::string path = documents.Find(uri)->path;
    for (Configuration& configuration : m_Configurations) {
        const bool isItsOwn = configuration.owner == uri || Contains(configuration.files, path);
        if (isItsOwn) configuration.isStale = configuration.isDirty = true;
    }
}

void LspWorld::Close(const std::string& uri) {
    if (!documents.Close(uri)) return;
    Drop(uri);
    Refresh();
}

void LspWorld::Refresh() {
    m_IsAssigned = false;
    for (Configuration& configuration : m_Configurations) configuration.isStale = configuration.isDirty = true;
}

std::optional<LspView> LspWorld::Look(const std::string& uri) {
    const OpenDocument* const document = documents.Find(uri);
    if (!document || document->path.empty()) return {};
    AssignDocuments();
    LspAnalysis* const analysis = Analyze(ConfigurationOf(*document));
    const StartupSource* const source = analysis ? analysis->FindSource(document->path) : nullptr;
    if (!source) return {};
    return LspView{*document, *analysis, *source, client.Unit()};
}

// A document of the main configuration needs none of its own.
void LspWorld::AssignDocuments() {
    if (m_IsAssigned) return;
    Analyze(Main());
    m_IsAssigned = true;
    for (const auto& [uri, document] : documents.All()) {
        if (Contains(Main().files, document.path)) {
            Drop(uri);
        } else if (&ConfigurationOf(document) == &Main() && !document.path.empty()) {
            m_Configurations.push_back({ArgumentsFor(document), uri});
        }
    }
}

LspWorld::Configuration& LspWorld::ConfigurationOf(const OpenDocument& document) {
    const auto found = std::ranges::find(m_Configurations, document.uri, &Configuration::owner);
    return found == m_Configurations.end() ? Main() : *found;
}

std::vector<CString> LspWorld::ArgumentsFor(const OpenDocument& document) const {
    const std::filesystem::path path = document.path;
    const CString tool = FromUtf8(std::filesystem::path{ToUtf8(m_Tool.path)}.filename().native());
    const bool isBasic = FromUtf8(path.filename().native()).CompareNoCase(tool + L".ini") == 0;
    if (isBasic) return {L"-m", FromUtf8(path.parent_path().native())};
    return {L"-i", FromUtf8(path.native())};
}

void LspWorld::Drop(const std::string& owner) {
    const auto found = std::ranges::find(m_Configurations, owner, &Configuration::owner);
    if (found == m_Configurations.end() || owner.empty()) return;
    while (!found->published.empty()) Send(*found, std::string{found->published.begin()->first}, LspJson::array());
    if (m_LiveOf == &*found) m_LiveOf = nullptr;
    m_Configurations.erase(found);
}

LspAnalysis* LspWorld::Analyze(Configuration& configuration) {
    if (m_LiveOf == &configuration && !configuration.isStale) return m_Live.get();
    m_Live.reset();
    m_LiveOf = &configuration;
    configuration.isStale = false;
    try {
        m_Live = std::make_unique<LspAnalysis>(m_Tool, configuration.arguments);
        if (&configuration == &Main() && configuration.files != m_Live->paths) m_IsAssigned = false;
        configuration.files = m_Live->paths;
    } catch (const Refusal& refusal) {
        ReportRefusal(refusal.text);
    } catch (const XException& error) {
        ReportRefusal(error.GetMessage());
    }
    return m_Live.get();
}

bool LspWorld::HasNews() const {
    return std::ranges::any_of(m_Configurations, &Configuration::isDirty);
}

void LspWorld::Publish() {
    do {
        AssignDocuments();
        for (Configuration& configuration : m_Configurations) {
            if (std::exchange(configuration.isDirty, false)) Publish(configuration);
        }
    } while (!m_IsAssigned);
}

// The main configuration counts if it has arguments, or if one of its files is open.
void LspWorld::Publish(Configuration& configuration) {
    const bool isMain = &configuration == &Main();
    const auto isOfMain = [&](const auto& entry) { return Contains(configuration.files, entry.second.path); };
    const bool isWanted = !isMain || !configuration.arguments.empty() || std::ranges::any_of(documents.All(), isOfMain);
    std::map<std::string, LspJson> found;
    if (LspAnalysis* const analysis = isWanted ? Analyze(configuration) : nullptr) {
        for (std::size_t i = 0; i < analysis->paths.size(); ++i) {
            const OpenDocument* const document = documents.FindPath(analysis->paths[i]);
            std::string uri = document ? document->uri : UriOfPath(analysis->paths[i]);
            if (isMain || uri == configuration.owner)
                found.emplace(std::move(uri),
                              DiagnosticsOf(*analysis, analysis->run.sources[i],
                                            {client.Unit(), document ? &document->text : nullptr}, m_Tool));
        }
        if (isMain) ReportOthers(*analysis);
    }
    const std::map<std::string, LspJson> before = configuration.published;
    for (const auto& [uri, diagnostics] : before) {
        if (!found.contains(uri)) Send(configuration, uri, LspJson::array());
    }
    for (auto& [uri, diagnostics] : found) Send(configuration, uri, std::move(diagnostics));
}

// The findings of an open text are sent each time, those of any other file only when they have changed.
void LspWorld::Send(Configuration& configuration, const std::string& uri, LspJson diagnostics) {
    const OpenDocument* const document = documents.Find(uri);
    const auto known = configuration.published.find(uri);
    const bool isKnown = known == configuration.published.end() ? diagnostics.empty() : known->second == diagnostics;
    if (!document && isKnown) return;
    LspJson params{{"uri", uri}, {"diagnostics", diagnostics}};
    if (document) params["version"] = document->version;
    client.Notify("textDocument/publishDiagnostics", std::move(params));
    if (diagnostics.empty()) {
        configuration.published.erase(uri);
    } else {
        configuration.published.insert_or_assign(uri, std::move(diagnostics));
    }
}

// Findings in the environment and on the command line have no text to be shown in.
void LspWorld::ReportOthers(const LspAnalysis& analysis) {
    std::set<CString> found;
    for (const LintRun::Placed& finding : analysis.findings) {
        if (finding.isInFile) continue;
        const CString text = FormatText(L"%s: %s", finding.file, Printable(finding.text));
        found.insert(text);
        if (!m_Told.contains(text)) client.Show(finding.severity, text);
    }
    m_Told = std::move(found);
}

void LspWorld::ReportRefusal(const CString& text) {
    if (!m_Told.contains(text)) client.Show(Severity::Error, text);
    m_Told = {text};
}

}  // namespace veltrane::config
