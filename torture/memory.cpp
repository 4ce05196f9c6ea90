// Lets allocation 1, 2, 3, ... of each scenario fail, alone and with all later ones, until a run has none that fails.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>

#include "failingmemory.h"
#include "scenarios.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/text/encoding.h"

using namespace torture;

namespace {

const char* g_Scenario = "";
std::int64_t g_Number = 0;

[[noreturn]] void Fail(const char* what) {
    EndFailing();
    std::fprintf(stderr, "%s, allocation %lld: %s\n", g_Scenario, static_cast<long long>(g_Number), what);
    std::_Exit(EXIT_FAILURE);
}

/// @return whether an allocation failed
bool RunOnce(const NamedScenario& scenario, const CString& folder, bool fromThereOn) {
    const auto objects = scenario.make(folder);
    FailAt(g_Number, fromThereOn);
    try {
        objects->Act();
    } catch (...) {  // NOLINT(bugprone-empty-catch): the tests check how failures are reported
    }
    const bool hasFailed = EndFailing();
    const std::string fault = objects->Fault();
    if (!fault.empty()) Fail(fault.c_str());
    return hasFailed;
}

}  // namespace

int main() {
    std::string folder = (std::filesystem::temp_directory_path() / "veltrane-torture-XXXXXX").string();
    if (!mkdtemp(folder.data())) return EXIT_FAILURE;
    Prepare(folder);
    std::set_terminate([] { Fail("the process is ended"); });
    veltrane::SetMessageBoxHandler([](const CString&, unsigned, unsigned) { return 1; });
    std::int64_t failures = 0;
    for (const NamedScenario& scenario : Scenarios()) {
        g_Scenario = scenario.name;
        std::int64_t count = 0;
        for (const bool fromThereOn : {false, true}) {
            for (g_Number = 1; RunOnce(scenario, veltrane::FromUtf8(folder), fromThereOn); ++g_Number) ++count;
        }
        std::printf("%-24s %6lld allocations failed, nothing broken\n", scenario.name, static_cast<long long>(count));
        failures += count;
    }
    std::printf("%-24s %6lld\n", "all", static_cast<long long>(failures));
    std::filesystem::remove_all(folder);
    return EXIT_SUCCESS;
}
