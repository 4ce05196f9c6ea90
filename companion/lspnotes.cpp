// What the client tells about its documents and files.
#include "lspparams.h"
#include "lsprequests.h"

namespace veltrane::config {

namespace {

// Older clients leave it out.
std::optional<std::int64_t> VersionIn(const LspJson& document) {
    const LspJson version = document.value("version", LspJson{});
    return version.is_number_integer() ? std::optional{version.get<std::int64_t>()} : std::nullopt;
}

TextChange ChangeIn(const LspJson& json) {
    TextChange change{{}, json.at("text").get<std::string>()};
    if (json.contains("range")) change.range = RangeIn(json.at("range"));
    return change;
}

}  // namespace

void OnInitialized(LspWorld& world, const LspJson&) {
    if (!world.client.CanWatch()) return;
    const LspJson watchers = LspJson::array({{{"globPattern", "**/*.{ini,reg}"}}});
    const LspJson registration{
        {"id", "files"}, {"method", "workspace/didChangeWatchedFiles"}, {"registerOptions", {{"watchers", watchers}}}};
    world.client.Ask("client/registerCapability", {{"registrations", LspJson::array({registration})}});
}

void OnOpened(LspWorld& world, const LspJson& params) {
    const LspJson& document = params.at("textDocument");
    world.Open(UriIn(params), VersionIn(document).value_or(0), document.at("text").get<std::string>());
}

void OnChanged(LspWorld& world, const LspJson& params) {
    std::vector<TextChange> changes;
    for (const LspJson& change : params.at("contentChanges")) changes.push_back(ChangeIn(change));
    world.Change(UriIn(params), VersionIn(params.at("textDocument")), changes);
}

void OnClosed(LspWorld& world, const LspJson& params) {
    world.Close(UriIn(params));
}

void OnFilesChanged(LspWorld& world, const LspJson&) {
    world.Refresh();
}

}  // namespace veltrane::config
