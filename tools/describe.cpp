#include "describe.h"

#include <cctype>
#include <exception>
#include <fstream>
#include <iostream>
#include <string_view>

#include "documents.h"
#include "optiontext.h"

namespace veltrane {

using namespace detail;

namespace {

struct {
    std::string_view name;
    std::string (*make)();
} constexpr DOCUMENTS[] = {
    {"man", CommandPage}, {"ini", IniPage}, {"bash", BashCompletion}, {"zsh", ZshCompletion}, {"fish", FishCompletion},
};

std::string Capitals(std::string text) {
    for (char& byte : text) byte = static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
    return text;
}

// The texts of the tool first: they may name it.
std::string Of(std::string text, const DescribedTool& tool) {
    const std::pair<std::string_view, std::string> parts[] = {
        {"@ABOUT@", tool.about},
        {"@ENVIRONMENT@", tool.environment},
        {"@EXAMPLES@", tool.examples},
        {"@SUMMARY@", tool.summary},
        {"@TITLE@", Capitals(tool.program)},
        {"@NAME@", tool.title},
        {"@VERSION@", tool.version},
        {"@TOOL@", tool.program},
    };
    for (const auto& [mark, part] : parts) text = Replaced(std::move(text), mark, part);
    return text;
}

bool Write(const std::string& text, const char* file) {
    std::ofstream out{file, std::ios::binary};
    out << text;
    out.close();
    return out.good();
}

int Run(std::string_view wanted, const char* file, const DescribedTool& tool) {
    for (const auto& [name, make] : DOCUMENTS) {
        if (name != wanted) continue;
        if (Write(Of(make(), tool), file)) return 0;
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
