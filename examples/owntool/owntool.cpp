// A tool with options of its own: reads them like those of the library and tells what it would do.
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

#include "options.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/options/typed.h"
#include "veltrane/platform/text/encoding.h"

using veltrane::ToUtf8;

namespace {

using Options = veltrane::TypedOptions<OWN_TABLE>;

void StartUp(XOption& options) {
    const std::filesystem::path program = std::filesystem::canonical("/proc/self/exe");
    options.KeepOrigins(true);
    options.Initialize(veltrane::FromUtf8(program.parent_path().native()), L"owntool", L"" __DATE__, L"1.0", L"");
    options.OpenConfiguration();
    options.ReadConfiguration();
}

// Where a value comes from, as the store knows it.
template <veltrane::OptionName Name>
std::string Place(const Options& options) {
    if (!options.Has<Name>()) return " (not set)";
    const veltrane::OptionOrigin origin = options.Origin<Name>();
    return " (" + ToUtf8(veltrane::LayerName(origin.layer)) +
           (origin.line > 0 ? ':' + std::to_string(origin.line) : "") + ')';
}

void Measure(const Options& options) {
    std::cout << "database: " << options.Get<"name">() << Place<"name">(options) << '\n'
              << "team:     " << options.Get<"team">() << Place<"team">(options) << '\n'
              << "unit:     " << options.Get<"unit">() << Place<"unit">(options) << '\n';
    const std::optional<bool> rounded = options.Get<"round">();
    std::cout << "rounded:  " << (!rounded ? "as the unit wants" : *rounded ? "always" : "never") << '\n';
    for (const auto& [index, file] : options.All<"source">()) std::cout << "source " << index << ": " << file << '\n';
    for (const auto& [index, steps] : options.All<"steps">()) {
        std::cout << "steps:   ";
        for (const int step : steps) std::cout << ' ' << step;
        std::cout << '\n';
    }
    std::cout << (options.Get<"dry-run">() ? "nothing is done\n" : "done\n");
}

}  // namespace

int main() {
    try {
        const veltrane::OwnOptions registered{OWN_TABLE};
        XOption options;
        StartUp(options);
        Measure(Options{options});
        return 0;
    } catch (XException& error) {
        error.Show();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return 1;
}
