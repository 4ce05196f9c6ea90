// A tool with options of its own: reads them like those of the library and tells what it would do.
#include <optional>
#include <string>
#include <vector>

#include "options.h"
#include "veltrane/tool/tool.h"

using veltrane::PrintLine;
using Tool = veltrane::Tool<OWN_TABLE>;

namespace {

// Where a value comes from, as the store knows it.
template <veltrane::OptionName Name>
std::string Place(const Tool& tool) {
    if (!tool.options.Has<Name>()) return " (not set)";
    const veltrane::OptionOrigin origin = tool.options.Origin<Name>();
    return " (" + veltrane::ToUtf8(veltrane::LayerName(origin.layer)) +
           (origin.line > 0 ? ':' + std::to_string(origin.line) : "") + ')';
}

std::string Rounded(std::optional<bool> rounded) {
    return !rounded ? "as the unit wants" : *rounded ? "always" : "never";
}

std::string Joined(const std::vector<int>& steps) {
    std::string text;
    for (const int step : steps) text += ' ' + std::to_string(step);
    return text;
}

}  // namespace

int main() {
    return veltrane::RunTool({.version = "1.0", .compileTime = __DATE__}, [](Tool& tool) {
        const auto& options = tool.options;
        PrintLine("database: ", options.Get<"name">(), Place<"name">(tool));
        PrintLine("team:     ", options.Get<"team">(), Place<"team">(tool));
        PrintLine("unit:     ", options.Get<"unit">(), Place<"unit">(tool));
        PrintLine("rounded:  ", Rounded(options.Get<"round">()));
        for (const auto& source : options.All<"source">()) {
            tool.Act("read " + source.value, [&] { PrintLine("source ", source.index, ": ", source.value); });
        }
        for (const auto& list : options.All<"steps">()) PrintLine("steps:   ", Joined(list.value));
        PrintLine(options.Get<"dry-run">() ? "nothing is done" : "done");
    });
}
