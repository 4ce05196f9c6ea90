// Runs the linked harness with every file below the given folders. A folder may be missing; no input at all is a
// failure.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int Replay(const std::filesystem::path& folder) {
    if (!std::filesystem::is_directory(folder)) return 0;
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator{folder}) {
        if (!entry.is_regular_file()) continue;
        std::ifstream file{entry.path(), std::ios::binary};
        const std::vector<char> bytes{std::istreambuf_iterator<char>{file}, {}};
        std::printf("%s\n", entry.path().c_str());
        std::fflush(stdout);  // the last line names the input that fails
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++count;
    }
    return count;
}

}  // namespace

int main(int argc, char** argv) {
    int count = 0;
    for (int i = 1; i < argc; ++i) count += Replay(argv[i]);
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
