// A tool with options of its own: reads them like those of the library and tells what it would do.
#include <filesystem>
#include <iostream>

#include "options.h"
#include "veltrane/collections/xsetint.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/text/encoding.h"

using veltrane::ToUtf8;

namespace {

constexpr const char* ROUNDING[] = {"never", "always", "as the unit wants"};

void StartUp(XOption& options) {
    const std::filesystem::path program = std::filesystem::canonical("/proc/self/exe");
    options.KeepOrigins(true);
    options.Initialize(veltrane::FromUtf8(program.parent_path().native()), L"owntool", L"" __DATE__, L"1.0", L"");
    options.OpenConfiguration();
    options.ReadConfiguration();
}

// Where a value comes from, as the store knows it.
std::string Place(XOption& options, const CString& name) {
    const XOptionItem* const item = options.GetOptionItem(name, -1);
    if (!item) return " (not set)";
    const veltrane::OptionOrigin origin = options.GetOptionOrigin(item);
    return " (" + ToUtf8(veltrane::LayerName(origin.layer)) +
           (origin.line > 0 ? ':' + std::to_string(origin.line) : "") + ')';
}

void Measure(XOption& options) {
    std::cout << "database: " << ToUtf8(options.GetOptionString(L"name", -1)) << Place(options, L"name") << '\n'
              << "team:     " << ToUtf8(options.GetOptionString(L"team", -1)) << Place(options, L"team") << '\n'
              << "unit:     " << ToUtf8(options.GetOptionString(L"unit", -1)) << Place(options, L"unit") << '\n'
              << "rounded:  " << ROUNDING[options.GetOptionTrillian(L"round", -1)] << '\n';
    for (auto* item = options.GetFirstOptionItem(L"source"); item; item = options.GetNextOptionItem(L"source")) {
        std::cout << "source " << item->GetOptionIndex() << ": " << ToUtf8(item->GetOptionString()) << '\n';
    }
    for (const XSetInt* steps = options.GetFirstOptionIList(L"steps"); steps;
         steps = options.GetNextOptionIList(L"steps")) {
        std::cout << "steps:   ";
        for (int i = 0; i < steps->Size(); ++i) std::cout << ' ' << steps->GetConstRefAt(i);
        std::cout << '\n';
    }
    std::cout << (options.GetOptionBoolean(L"dry-run", -1) ? "nothing is done\n" : "done\n");
}

}  // namespace

int main() {
    try {
        const veltrane::OwnOptions registered{OWN_TABLE};
        XOption options;
        StartUp(options);
        Measure(options);
        return 0;
    } catch (XException& error) {
        error.Show();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return 1;
}
