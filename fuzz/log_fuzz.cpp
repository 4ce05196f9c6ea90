// Input: what is written to a log, one a line: "w" and an entry, "u" and a text as it is, or "e" and the number, the
// method, the message and the reasons of an error, separated by tabs; "\" stands for a line end. The companion
// reports every error block, and texts of one line word by word.
#include <algorithm>
#include <iostream>
#include <sstream>

#include <nlohmann/json.hpp>

#include "fuzz_program.h"
#include "fuzz_text.h"
#include "veltrane/config_tool.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/foundation/xstring.h"
#include "veltrane/logging/xlogging.h"
#include "veltrane/platform/text/numbers.h"

using namespace veltrane;

namespace {

struct Written {
    int number = 0;
    std::vector<CString> methods;  // the newest first, as the reasons
    std::vector<CString> texts;
    CString message;
};

CString NextField(CString& line) {
    CString field;
    if (line.Find(L'\t') < 0) line += L'\t';
    SplitString(field, line, line, L'\t');
    field.Replace(L"\\", L"\r\n");
    return field;
}

// Whether a text cannot be mistaken for another part of its block.
bool IsPlain(const CString& text) {
    for (const wchar_t element : text.View()) {
        const bool isText = element >= L' ' && element < 0xD800;
        if (!isText || (element != L' ' && IsWhiteSpace(element))) return false;
    }
    const bool isMark = text.Find(L" Error info ") >= 0 || text.Find(L"reason:") >= 0 || text.Find(L"> in [") >= 0;
    return !isMark && !text.IsEmpty() && CString{text}.Trim() == text;
}

Written WriteError(XLogging& log, CString line) {
    Written written;
    XException error;
    written.number = _wtoi(NextField(line));
    for (int i = 0; i == 0 || !line.IsEmpty(); ++i) {
        const CString method = NextField(line);
        const CString text = NextField(line);
        if (i == 0) error.SetError(written.number, L".\\log", method, 7, text);
        if (i > 0) error.AddError(L".\\log", method, 7, text);
        if (i > 0 && written.number == 0) continue;
        written.methods.insert(written.methods.begin(), method);
        written.texts.insert(written.texts.begin(), text);
    }
    written.message = error.GetMessage();
    log.ShowError(error.GetNumber(), error.GetLocation(), error.GetMessage());
    return written;
}

void RequireReported(const nlohmann::json& reported, const Written& written) {
    if (!std::ranges::all_of(written.methods, IsPlain) || !std::ranges::all_of(written.texts, IsPlain)) return;
    const std::size_t last = written.texts.size() - 1;
    REQUIRE(reported["number"] == written.number);
    REQUIRE(reported["message"] == ToUtf8(written.texts[last]) && reported["reasons"].size() == last);
    for (std::size_t i = 0; i < last; ++i) REQUIRE(reported["reasons"][i] == ToUtf8(written.texts[i]));
    REQUIRE(reported["locations"].size() == last + 1);
    for (std::size_t i = 0; i <= last; ++i) {
        REQUIRE(reported["locations"][i]["method"] == ToUtf8(written.methods[i]) &&
                reported["locations"][i]["line"] == 7);
    }
}

nlohmann::json AskErrors(std::string log) {
    std::string words[] = {"tool-config", "--format=json", "errors", std::move(log)};
    char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data()};
    std::ostringstream output;
    std::streambuf* const before = std::cout.rdbuf(output.rdbuf());
    const int code = RunConfigTool(4, arguments, {"tool", "1.0"});
    std::cout.rdbuf(before);
    const nlohmann::json answer = nlohmann::json::parse(output.str());
    REQUIRE(code == (answer["errors"].empty() ? 0 : 1));
    return answer["errors"];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ProgramFolder folder;
    const std::string path = folder.Native() / "run.log";
    std::vector<Written> errors;
    bool isHostile = false;
    XLogging log;
    log.StartLogging(FromUtf8(path), L"tool", L"1.0", L"today");
    for (const CString& line : LinesOf(InputText(data, size))) {
        CString rest = line.Mid(1);
        if (line[0] == L'e') errors.push_back(WriteError(log, rest));
        if (line[0] == L'w') log.WriteLog(NextField(rest), /*newLine*/ true, /*timeStamp*/ true);
        if (line[0] == L'u') log.WriteUnformatted(NextField(rest));
        isHostile = isHostile || line.Find(L"Error info") >= 0;
    }
    log.CloseLogFile();

    const nlohmann::json reported = AskErrors(path);
    if (isHostile) return 0;
    std::erase_if(errors, [last = Written{}](const Written& error) mutable {  // one that repeats the one before
        const bool isRepeat = last.number == error.number && last.message == error.message;
        last = error;
        return isRepeat;
    });
    REQUIRE(reported.size() == errors.size());
    for (std::size_t i = 0; i < errors.size(); ++i) RequireReported(reported[i], errors[i]);
    return 0;
}
