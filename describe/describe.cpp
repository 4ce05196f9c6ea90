#include "describe.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <string_view>

#include "documents.h"
#include "plaintext.h"
#include "shelltext.h"
#include "troff.h"

namespace veltrane {

using namespace detail;

namespace {

struct {
    std::string_view name;
    std::string (*make)(const std::string& tool);
    std::string (*quoted)(std::string_view text);
} constexpr DOCUMENTS[] = {
    {"man", CommandPage, Troff},         {"ini", IniPage, Troff},
    {"bash", BashCompletion, ShellWord}, {"zsh", ZshCompletion, ShellWord},
    {"fish", FishCompletion, FishWord},
};

// The texts of the tool first: they may name it.
std::string Of(std::string text, const DescribedTool& tool, std::string (*quoted)(std::string_view)) {
    return Filled(std::move(text), {{"@ABOUT@", tool.about},
                                    {"@ENVIRONMENT@", tool.environment},
                                    {"@EXAMPLES@", tool.examples},
                                    {"@SUMMARY@", quoted(tool.summary)},
                                    {"@TITLE@", quoted(Capitals(tool.program))},
                                    {"@NAME@", quoted(tool.title)},
                                    {"@VERSION@", quoted(tool.version)},
                                    {"@FUNCTION@", FunctionName(tool.program)},
                                    {"@TOOL@", quoted(tool.program)}});
}

bool Write(const std::string& text, const char* file) {
    std::ofstream out{file, std::ios::binary};
    out << text;
    out.close();
    return out.good();
}

int Run(std::string_view wanted, const char* file, const DescribedTool& tool) {
    for (const auto& [name, make, quoted] : DOCUMENTS) {
        if (name != wanted) continue;
        if (Write(Of(make(tool.program), tool, quoted), file)) return 0;
        std::cerr << "describe: cannot write <" << file << ">\n";
        return 1;
    }
    std::cerr << "describe: no document is called <" << wanted << ">\n";
    return 2;
}

}  // namespace

int RunDescribe(int argc, char** argv, const DescribedTool& tool) try {
    if (argc == 3) return Run(argv[1], argv[2], tool);
    std::cerr << "usage: " << argv[0] << " man|ini|bash|zsh|fish FILE\n";
    return 2;
} catch (const std::exception& error) {
    std::cerr << "describe: " << error.what() << '\n';
    return 1;
}

}  // namespace veltrane
