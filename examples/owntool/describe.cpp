// Writes the man pages and completions of the tool.
#include "describe.h"

#include "options.h"

int main(int argc, char** argv) {
    const veltrane::OwnOptions registered{OWN_TABLE};
    return veltrane::RunDescribe(argc, argv, {"owntool", "Owntool", "1.0", "measure a database schema"});
}
