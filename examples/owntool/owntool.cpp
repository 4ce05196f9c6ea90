// A tool with options of its own: reads them like those of the library and tells what it would do.
#include <optional>
#include <string>

#include "options.h"
#include "veltrane/tool/tool.h"

using veltrane::PrintLine;

namespace {

using Tool = veltrane::Tool<OWN_TABLE>;

// Where a value comes from, as the store knows it.
template <veltrane::OptionName Name>
std::string Place(const Tool& tool) {
    if (!tool.options.Has<Name>()) return " (not set)";
    const veltrane::OptionOrigin origin = tool.options.Origin<Name>();
    return " (" + veltrane::ToUtf8(veltrane::LayerName(origin.layer)) +
           (origin.line > 0 ? ':' + std::to_string(origin.line) : "") + ')';
}

void Measure(Tool& tool) {
    PrintLine("database: ", tool.options.Get<"name">(), Place<"name">(tool));
    PrintLine("team:     ", tool.options.Get<"team">(), Place<"team">(tool));
    PrintLine("unit:     ", tool.options.Get<"unit">(), Place<"unit">(tool));
    const std::optional<bool> rounded = tool.options.Get<"round">();
    PrintLine("rounded:  ", !rounded ? "as the unit wants" : *rounded ? "always" : "never");
    for (const auto& source : tool.options.All<"source">()) {
        tool.Act("read " + source.value, [&] { PrintLine("source ", source.index, ": ", source.value); });
    }
    for (const auto& [index, steps] : tool.options.All<"steps">()) {
        std::string line = "steps:   ";
        for (const int step : steps) line += ' ' + std::to_string(step);
        PrintLine(line);
    }
    PrintLine(tool.options.Get<"dry-run">() ? "nothing is done" : "done");
}

}  // namespace

int main() {
    return veltrane::RunTool({.version = "1.0", .compileTime = __DATE__}, Measure);
}
