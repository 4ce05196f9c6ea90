#include "veltrane/logging/xlogging.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "support/ratio.h"
#include "veltrane/foundation/xaction.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

// An entry of about 85 characters, compared with one write of its bytes.
void WriteEntry(benchmark::State& state, const std::string& logFile, const std::string& floorFile) {
    const CString text = L"loading dictionary <base_2026_11> with 1,204 tables and 18,330 columns, all";
    XLogging log;
    log.StartLogging(FromUtf8(logFile), L"bench", L"1", L"now");
    const std::string bytes = "\r\n12:00:00: " + ToUtf8(text);
    const int floor = open(floorFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    CompareToFloor(
        state, 200, [&] { benchmark::DoNotOptimize(write(floor, bytes.data(), bytes.size())); },
        [&] { log.WriteLog(text, /*newLine*/ true, /*timeStamp*/ true); });
    close(floor);
}

void LogEntryToFile(benchmark::State& state) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "veltrane_bench_log";
    std::filesystem::create_directories(folder);
    WriteEntry(state, folder / "run.log", folder / "floor.log");
    std::filesystem::remove_all(folder);
}
BENCHMARK(LogEntryToFile)->Iterations(300);

void LogEntryToNull(benchmark::State& state) {
    WriteEntry(state, "/dev/null", "/dev/null");
}
BENCHMARK(LogEntryToNull)->Iterations(300);

void DurationAsText(benchmark::State& state) {
    long value = 0;
    long other = 0;
    CompareToFloor(
        state, 1000,
        [&] {
            value += 1'234'567;
            const long ms = value % 86'400'000;
            char text[64];
            benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%02d:%02d:%04.1lf %s",
                                                   static_cast<int>(ms / 3'600'000), static_cast<int>(ms / 60'000 % 60),
                                                   static_cast<double>(ms % 60'000) / 1000.0, "hours  "));
            benchmark::DoNotOptimize(text);
        },
        [&] {
            other += 1'234'567;
            benchmark::DoNotOptimize(XAction::TimeStr(other % 86'400'000, 1, /*shortUnits*/ false));
        });
}
BENCHMARK(DurationAsText)->Iterations(300);

}  // namespace
