// Prints an option of a tool and where its value comes from: origin NAME [TOOL-ARGUMENT...]
#include <cstdio>

#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;

int main(int count, char** words) try {
    if (count < 2) return 2;
    const CString name = FromUtf8(words[1]);
    std::vector<CString> arguments{L"tool"};
    for (int i = 2; i < count; ++i) arguments.push_back(FromUtf8(words[i]));
    SetArguments(arguments);
    XOption options;
    options.KeepOrigins(true);
    options.LookOnly(true);
    options.Initialize(L".", L"tool", L"", L"", L"");
    options.OpenConfiguration();
    options.ReadConfiguration();
    for (const OptionOrigin& origin : options.GetOptionCandidates(name, -1).candidates) {
        std::printf("%s %s:%d: %s\n", ToUtf8(LayerName(origin.layer)).c_str(), ToUtf8(origin.file).c_str(), origin.line,
                    ToUtf8(origin.text).c_str());
    }
    return 0;
} catch (const XException& error) {
    return std::fprintf(stderr, "%s\n", ToUtf8(error.GetMessage()).c_str()), 1;
}
