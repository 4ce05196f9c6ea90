// Prints man pages and shell completions, made from the option table.
// Usage: veltrane_describe man|ini|bash|zsh|fish FILE

#include <exception>
#include <fstream>
#include <iostream>
#include <string_view>

#include "documents.h"

namespace {

struct {
    std::string_view name;
    std::string (*make)();
} constexpr DOCUMENTS[] = {
    {"man", CommandPage}, {"ini", IniPage}, {"bash", BashCompletion}, {"zsh", ZshCompletion}, {"fish", FishCompletion},
};

bool Write(const std::string& text, const char* file) {
    std::ofstream out{file, std::ios::binary};
    out << text;
    out.close();
    return out.good();
}

int Run(std::string_view wanted, const char* file) {
    for (const auto& [name, make] : DOCUMENTS) {
        if (name != wanted) continue;
        if (Write(make(), file)) return 0;
        std::cerr << "veltrane_describe: cannot write <" << file << ">\n";
        return 1;
    }
    std::cerr << "veltrane_describe: no document is called <" << wanted << ">\n";
    return 2;
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc == 3) return Run(argv[1], argv[2]);
    std::cerr << "usage: veltrane_describe man|ini|bash|zsh|fish FILE\n";
    return 2;
} catch (const std::exception& error) {
    std::cerr << "veltrane_describe: " << error.what() << '\n';
    return 1;
}
