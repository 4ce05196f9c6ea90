#include "lspclient.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "lspmessages.h"
#include "veltrane/platform/text/encoding.h"

namespace veltrane::config {

namespace {

// The value below the names of a path; null when there is none.
LspJson At(const LspJson& json, const char* path) {
    const LspJson::json_pointer pointer{path};
    return json.is_object() && json.contains(pointer) ? json.at(pointer) : LspJson{};
}

bool Lists(const LspJson& json, const char* path, const char* word) {
    const LspJson list = At(json, path);
    return list.is_array() && std::ranges::find(list, word) != list.end();
}

}  // namespace

void LspClient::Meet(const LspJson& capabilities) {
    if (Lists(capabilities, "/general/positionEncodings", "utf-8")) m_Unit = ColumnUnit::Utf8;
    m_ShowsMarkdown = Lists(capabilities, "/textDocument/hover/contentFormat", "markdown");
    m_KnowsSymbolTrees = At(capabilities, "/textDocument/documentSymbol/hierarchicalDocumentSymbolSupport") == true;
    m_CanWatch = At(capabilities, "/workspace/didChangeWatchedFiles/dynamicRegistration") == true;
}

void LspClient::Send(const LspJson& message) {
    WriteMessage(m_Output, message);
}

void LspClient::Notify(const char* method, LspJson params) {
    Send({{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(params)}});
}

void LspClient::Ask(const char* method, LspJson params) {
    Send({{"jsonrpc", "2.0"}, {"id", ++m_nAsked}, {"method", method}, {"params", std::move(params)}});
}

void LspClient::Show(Severity severity, const CString& text) {
    const bool isQuiet = severity == Severity::Note;
    Notify(isQuiet ? "window/logMessage" : "window/showMessage",
           {{"type", static_cast<int>(severity) + 1}, {"message", ToUtf8(text)}});
}

}  // namespace veltrane::config
