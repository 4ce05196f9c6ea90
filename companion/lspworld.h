#pragma once

#include <list>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "lspanalysis.h"
#include "lspclient.h"
#include "lspdocuments.h"
#include "lspspot.h"

namespace veltrane::config {

/// What a question about a document looks at.
struct LspView {
    const OpenDocument& document;
    LspAnalysis& analysis;
    const StartupSource& source;  ///< that the document is
    ColumnUnit unit;

    LineUnits Units() const { return {unit, &document.text}; }
};

/// The documents of the client, the configurations that they belong to, and the findings that were sent to it.
///
/// The main configuration is that of the tool's command line. A document that is not one of its files makes a
/// configuration of its own: as the basic file when it has that name, otherwise as a user file. Only the document's own
/// findings count there.
class LspWorld {
public:
    LspWorld(LspTool tool, std::vector<CString> arguments, LspClient& client);

    /// Sets another command line of the tool.
    void SetArguments(std::vector<CString> arguments);
    void Open(const std::string& uri, std::int64_t version, std::string text);
    void Change(const std::string& uri, std::optional<std::int64_t> version, const std::vector<TextChange>& changes);
    void Close(const std::string& uri);
    /// Files on the disk may have changed.
    void Refresh();

    /// Whether something has changed since the findings were sent.
    bool HasNews() const;
    /// Sends the client the present findings. As Look, to be called while the open documents stand for their files.
    void Publish();
    /// @return nothing for a document that is not open, or is no file of a configuration
    std::optional<LspView> Look(const std::string& uri);

    const LspTool& Tool() const { return m_Tool; }

    LspDocuments documents;
    LspClient& client;

private:
    struct Configuration {
        std::vector<CString> arguments;
        std::string owner = {};                         // URI of the document that makes it; empty for the main one
        std::vector<std::string> files = {};            // of its last start-up
        std::map<std::string, LspJson> published = {};  // what the client knows, by URI
        bool isStale = true;                            // its text or a file has changed since it was checked
        bool isDirty = true;                            // likewise since its findings were sent
    };

    Configuration& Main() { return m_Configurations.front(); }
    Configuration& ConfigurationOf(const OpenDocument& document);
    std::vector<CString> ArgumentsFor(const OpenDocument& document) const;
    void AssignDocuments();
    void Drop(const std::string& owner);
    LspAnalysis* Analyze(Configuration& configuration);
    void Publish(Configuration& configuration);
    void Send(Configuration& configuration, const std::string& uri, LspJson diagnostics);
    void ReportOthers(const LspAnalysis& analysis);
    void ReportRefusal(const CString& text);

    LspTool m_Tool;
    std::list<Configuration> m_Configurations;  // the main one first
    bool m_IsAssigned = false;                  // whether each document is assigned to one of them
    std::unique_ptr<LspAnalysis> m_Live;        // of the configuration that was looked at last
    const Configuration* m_LiveOf = nullptr;    // null for none
    std::set<CString> m_Told;                   // of no file, as of the last time
};

}  // namespace veltrane::config
