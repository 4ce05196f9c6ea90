// The companions of a host that has names of their helpers, too.
#include "configtool.h"
#include "veltrane/tools/describe.h"

int main(int argc, char** argv) {
    return argc == 3 ? veltrane::RunDescribe(argc, argv, {"consumer", "Consumer", "1.0", "consume"})
                     : veltrane::RunConfigTool(argc, argv, {"consumer", "1.0"});
}
