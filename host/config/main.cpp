#include "configtool.h"

int main(int argc, char** argv) {
    return veltrane::RunConfigTool(argc, argv, {"veltrane", VELTRANE_VERSION});
}
