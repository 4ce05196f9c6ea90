// Input: the bytes that a client sends after its 'initialize'. A line "~METHOD PARAMS" is framed as the message with
// that method and those parameters, as a request with an id if a '?' follows the '~'; "@" is the folder of the files.
// Every reply is a JSON message of the protocol, and nothing is written.
#include <nlohmann/json.hpp>
#include <sstream>

#include "fuzz_program.h"
#include "lsp.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/sources/winreg.h"

using namespace veltrane;

namespace {

using nlohmann::json;

std::string Framed(const std::string& body) {
    return "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string Message(std::string_view line) {
    const bool isRequest = line.starts_with('?');
    if (isRequest) line.remove_prefix(1);
    const std::size_t blank = std::min(line.find(' '), line.size());
    const std::string params{line.substr(std::min(blank + 1, line.size()))};
    const json method = json(std::string{line.substr(0, blank)});
    return Framed("{" + std::string{isRequest ? "\"id\":1," : ""} +
                  "\"method\":" + method.dump(-1, ' ', false, json::error_handler_t::replace) +
                  (params.empty() ? "" : ",\"params\":" + params) + "}");
}

// Lines that name files of the system, some of which have no end, are left out.
std::string SentBytes(std::string_view input, const std::string& folder) {
    std::string sent = Message(R"(?initialize {"initializationOptions":{"arguments":["db","-m",")" + folder +
                               R"(/.metadata","-i",")" + folder + R"(/user.ini"]}})");
    while (!input.empty()) {
        std::string line{NextLine(input)};
        for (std::size_t at = 0; (at = line.find('@', at)) != line.npos; at += folder.size())
            line.replace(at, 1, folder);
        if (line.find("arguments") != line.npos || line.find("rootUri") != line.npos) continue;
        sent += line.starts_with('~') ? Message(std::string_view{line}.substr(1)) : line + "\r\n";
    }
    return sent;
}

void RequireMessages(std::string_view output) {
    constexpr std::string_view head = "Content-Length: ";
    while (!output.empty()) {
        REQUIRE(output.starts_with(head));
        const std::size_t end = output.find("\r\n\r\n");
        REQUIRE(end != output.npos);
        const std::size_t length = std::stoul(std::string{output.substr(head.size(), end - head.size())});
        REQUIRE(end + 4 + length <= output.size());
        const json message = json::parse(output.substr(end + 4, length), nullptr, /*allow_exceptions*/ false);
        REQUIRE(message.is_array() || (message.is_object() && message["jsonrpc"] == "2.0"));
        output.remove_prefix(end + 4 + length);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ProgramFolder folder;
    const std::string path = folder.Native().string();
    SetMessageBoxHandler([](const CString&, unsigned, unsigned) { return 1; });
    folder.Write("tool", "");
    folder.Write(".metadata/tool.ini", "[ROOT]\nlogfile=%name%.log\n[db]\nrole=r\ndictionary-name=d\nregistry=g\n");
    folder.Write("user.ini", "[USER]\nquiet=yes\n");
    SetRegistryFile(
        folder.Write("registry.reg", "REGEDIT4\n[HKLM\\SOFTWARE\\VORNAK\\tool\\USER]\n\"exit\"=\"true\"\n"));
    std::stringbuf input{SentBytes(InputText(data, size), path)};
    std::ostringstream output;
    const int code = config::ServeEditor({FromUtf8(path + "/tool"), L"1.0", "tool", "tool-config"}, {}, input, output);
    REQUIRE(code == 0 || code == 1);
    RequireMessages(output.str());
    REQUIRE(g_Folders.made.empty() && !g_Folders.isDenied);
    return 0;
}
