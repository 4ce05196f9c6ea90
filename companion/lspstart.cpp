#include <filesystem>

#include "lsprequests.h"
#include "lspuri.h"
#include "veltrane/platform/text/encoding.h"

namespace veltrane::config {

namespace {

constexpr int CHANGES_OF_PARTS = 2;  // the client tells what has changed, not the whole text

// The client may start the server anywhere; relative names in the arguments are below the folder that it works on.
void EnterRoot(const LspJson& params) {
    LspJson root = params.value("rootUri", LspJson{});
    const LspJson folders = params.value("workspaceFolders", LspJson{});
    if (root.is_null() && folders.is_array() && !folders.empty()) root = folders[0].value("uri", LspJson{});
    const std::optional<std::string> path = root.is_string() ? PathOfUri(root.get<std::string>()) : std::nullopt;
    std::error_code ignored;
    if (path) std::filesystem::current_path(*path, ignored);
}

std::vector<CString> ArgumentsIn(const LspJson& options) {
    std::vector<CString> arguments;
    for (const LspJson& word : options.at("arguments")) arguments.push_back(FromUtf8(word.get<std::string>()));
    return arguments;
}

LspJson Capabilities(ColumnUnit unit) {
    return {{"positionEncoding", unit == ColumnUnit::Utf8 ? "utf-8" : "utf-16"},
            {"textDocumentSync", {{"openClose", true}, {"change", CHANGES_OF_PARTS}, {"save", true}}},
            {"hoverProvider", true},
            {"completionProvider", {{"triggerCharacters", {"[", "%", "="}}}},
            {"definitionProvider", true},
            {"referencesProvider", true},
            {"documentSymbolProvider", true},
            {"foldingRangeProvider", true},
            {"codeActionProvider", {{"codeActionKinds", {"quickfix"}}}},
            {"semanticTokensProvider", {{"legend", TokenLegend()}, {"full", true}}}};
}

}  // namespace

LspJson Initialize(LspWorld& world, const LspJson& params) {
    if (params.is_object()) {
        world.client.Meet(params.value("capabilities", LspJson{}));
        EnterRoot(params);
        const LspJson options = params.value("initializationOptions", LspJson{});
        if (options.is_object() && options.contains("arguments")) world.SetArguments(ArgumentsIn(options));
    }
    return {{"capabilities", Capabilities(world.client.Unit())},
            {"serverInfo", {{"name", world.Tool().program}, {"version", ToUtf8(world.Tool().version)}}}};
}

}  // namespace veltrane::config
