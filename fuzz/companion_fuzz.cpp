// Input: the words of the companion's command line, one a line ("@NAME" is a file of the folder: user.ini, list), then
// its standard input, the basic file, the user file, the registry file and the file "list", each after a line "====".
// Each question has an answer in both forms with the same exit code, the one in JSON can be read, and nothing is
// written.
#include <iostream>
#include <sstream>

#include <nlohmann/json.hpp>

#include "fuzz_program.h"
#include "veltrane/config_tool.h"
#include "veltrane/platform/sources/winreg.h"

using namespace veltrane;

namespace {

constexpr ConfigTool TOOL{"tool", "1.0"};

/// Redirects a stream during its lifetime.
class Redirected {
public:
    Redirected(std::ios& stream, std::streambuf* place) : m_Stream(stream), m_Before(stream.rdbuf(place)) {}
    Redirected(const Redirected&) = delete;
    Redirected& operator=(const Redirected&) = delete;
    ~Redirected() { m_Stream.rdbuf(m_Before); }

private:
    std::ios& m_Stream;
    std::streambuf* m_Before;
};

struct Reply {
    int code;
    std::string output;
};

Reply Ask(std::vector<std::string> words, std::string_view standardInput) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    std::istringstream input{std::string{standardInput}};
    std::ostringstream output;
    std::ostringstream errors;
    const Redirected in{std::cin, input.rdbuf()};
    const Redirected out{std::cout, output.rdbuf()};
    const Redirected err{std::cerr, errors.rdbuf()};
    const int code = RunConfigTool(static_cast<int>(arguments.size()), arguments.data(), TOOL);
    return {code, output.str()};
}

// Files without an end, words that change the form of the answer, and commands that write are left out.
std::vector<std::string> ReadWords(std::string_view input, const std::string& folder) {
    std::vector<std::string> words;
    bool isOwn = true;
    while (!input.empty()) {
        std::string word{NextLine(input)};
        word.erase(std::min(word.find('\0'), word.size()));
        isOwn = isOwn && word != "--";
        const bool isForm = word.starts_with("-h") || word.starts_with("--h") || word.starts_with("--f") ||
                            word.starts_with("--g") || word == "--version" || word == "set" || word == "unset" ||
                            word == "lsp";
        if ((isOwn && isForm) || word.find("/dev") != word.npos || word.find("/proc") != word.npos) continue;
        if (word.starts_with('@')) word.replace(0, 1, folder + '/');
        words.push_back(std::move(word));
    }
    return words;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ProgramFolder folder;
    const std::string path = folder.Native().string();
    std::string_view input = InputText(data, size);
    std::vector<std::string> words = ReadWords(NextPart(input), path);
    words.insert(words.begin(), {"tool-config", "--tool", path + "/tool", "--format=text"});
    folder.Write("tool", "");
    const std::string_view standardInput = NextPart(input);
    folder.Write(".metadata/tool.ini", NextPart(input));
    folder.Write("user.ini", NextPart(input));
    SetRegistryFile(folder.Write("registry.reg", NextPart(input)));
    folder.Write("list", input);

    const Reply text = Ask(words, standardInput);
    words[3] = "--format=json";
    const Reply json = Ask(words, standardInput);
    REQUIRE(text.code >= 0 && text.code <= 2 && json.code == text.code);
    REQUIRE(nlohmann::json::accept(json.output));
    REQUIRE(g_Folders.made.empty() && !g_Folders.isDenied);
    return 0;
}
