// The companions of a host that has names of their helpers, too, and a hostile one of its own.
#include "veltrane/config_tool.h"
#include "veltrane/tools/describe.h"

int main(int argc, char** argv) {
    constexpr char name[] = "a\"b^c\\d@e'f";
    return argc == 3 && argv[1][0] != '-' ? veltrane::RunDescribe(argc, argv, {name, "Consumer", "1.0", "consume"})
                                          : veltrane::RunConfigTool(argc, argv, {name, "1.0"});
}
