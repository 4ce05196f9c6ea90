#include "veltrane/config_tool.h"
#include "veltrane/tool/shortmemory.h"

namespace {

// Before the static objects of the libraries.
[[gnu::used, gnu::section(".preinit_array")]] void (*const g_AtStart)() = [] { veltrane::EndWhereMemoryIsShort(2); };

}  // namespace

int main(int argc, char** argv) {
    return veltrane::RunConfigTool(argc, argv, {"veltrane", VELTRANE_VERSION});
}
