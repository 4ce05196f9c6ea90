// The error blocks of a log.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "commands.h"
#include "errorjson.h"
#include "printable.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/text/numbers.h"

namespace veltrane::config {

namespace {

constexpr wchar_t START[] = L" Error info start ";
constexpr wchar_t END[] = L" Error info end ";

struct Block {
    int line;
    CString location = {};
    CString message = {};
    CString code = {};

    /// The field that a line begins, its title removed from the line; null for a continuation.
    CString* CutTitle(CString& text) {
        const struct {
            const wchar_t* title;
            CString& field;
        } fields[] = {{L"Location:", location}, {L"Message:", message}, {L"Error Code:", code}};
        for (const auto& [title, field] : fields) {
            const CString start = title;
            if (text.Left(start.GetLength()) != start) continue;
            text = text.Mid(start.GetLength()).TrimLeft();
            return &field;
        }
        return nullptr;
    }
};

Refusal NotReadable(const CString& file) {
    return {FormatText(L"the log <%s> cannot be read", file)};
}

std::ifstream Open(const CString& file) {
    const std::string path = MapPath(file);
    std::error_code ignored;
    std::ifstream log{path};
    if (!log || std::filesystem::is_directory(path, ignored)) throw NotReadable(file);
    return log;
}

// A block without an end, such as that of a killed process, counts as far as it goes.
std::vector<Block> ReadBlocks(std::istream& log) {
    std::vector<Block> blocks;
    CString* field = nullptr;
    bool isInside = false;
    int number = 0;
    for (std::string bytes; std::getline(log, bytes);) {
        if (bytes.ends_with('\r')) bytes.pop_back();
        CString text = FromUtf8(bytes);
        ++number;
        const bool isStart = text.Find(START) > 0;
        if (isStart) blocks.push_back({number});
        if (isStart || text.Find(END) > 0) {
            isInside = isStart;
            field = nullptr;
        } else if (isInside) {
            CString* const begun = blocks.back().CutTitle(text);
            if (begun) field = begun;
            if (field) *field += (begun ? L"" : L"\r\n") + text;
        }
    }
    return blocks;
}

Json BlockJson(const Block& block) {
    Json json = ErrorJson(_wtoi(block.code), block.location, block.message);
    json["log_line"] = block.line;
    const auto holdsMark = [](const Json& text) {
        return text.get<std::string>().find("reason:") != std::string::npos;
    };
    if (std::ranges::any_of(json["reasons"], holdsMark) || holdsMark(json["message"])) json["ambiguous"] = true;
    return json;
}

CString LineText(const Json& text) {
    return Printable(FromUtf8(text.get<std::string>()));
}

void AddText(Answer& answer, const CString& file, const Json& error) {
    answer.AddLine(FormatText(L"%s:%d: error %d: %s", file, error["log_line"].get<int>(), error["number"].get<int>(),
                              LineText(error["message"])));
    for (const Json& reason : error["reasons"]) answer.AddLine(L"    while: " + LineText(reason));
    for (const Json& remark : error["remarks"]) answer.AddLine(L"    " + LineText(remark));
    for (const Json& location : error["locations"]) {
        if (!location.contains("method")) continue;
        answer.AddLine(FormatText(L"    at %s in %s:%d", LineText(location["method"]), LineText(location["file"]),
                                  location["line"].get<int>()));
    }
}

}  // namespace

Answer Errors(const Request& request) {
    if (request.words.empty()) throw Refusal{L"missing name of a log"};
    Answer answer;
    answer.document["errors"] = Json::array();
    for (const std::string& word : request.words) {
        const CString file = FromUtf8(word);
        std::ifstream log = Open(file);
        const std::vector<Block> blocks = ReadBlocks(log);
        if (log.bad()) throw NotReadable(file);
        for (const Block& block : blocks) {
            Json error = BlockJson(block);
            AddText(answer, file, error);
            if (request.words.size() > 1) error["log"] = word;
            answer.document["errors"].push_back(std::move(error));
            answer.hasFindings = true;
        }
    }
    return answer;
}

}  // namespace veltrane::config
