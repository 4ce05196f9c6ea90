#include "errorjson.h"

#include <nlohmann/json.hpp>

#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/encoding.h"
#include "veltrane/platform/text/numbers.h"

namespace veltrane::config {

namespace {

// The joints of an error's texts; a line that begins with a tabulator is a remark.
constexpr wchar_t REASON[] = L"reason: \t";

std::vector<CString> LinesOf(CString text) {
    text.Replace(L"\r\n", L"\n");
    std::vector<CString> lines;
    for (int begin = 0; begin <= text.GetLength();) {
        const int found = text.Find(L'\n', begin);
        const int end = found < 0 ? text.GetLength() : found;
        lines.push_back(text.Mid(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

// "<XOption::Open> in [xoption], line [71]"
Json LocationJson(CString text) {
    text.Trim();
    const int in = text.Find(L"> in [");
    const int line = text.Find(L"], line [");
    if (text[0] != L'<' || in < 0 || line < in) return {{"text", ToUtf8(text)}};
    return {{"method", ToUtf8(text.Mid(1, in - 1))},
            {"file", ToUtf8(text.Mid(in + 6, line - in - 6))},
            {"line", _wtoi(text.Mid(line + 9))}};
}

}  // namespace

Json ErrorJson(int number, const CString& location, const CString& message) {
    std::vector<CString> texts;
    Json remarks = Json::array();
    for (const CString& line : LinesOf(message)) {
        if (texts.empty()) {
            texts.push_back(line);
        } else if (line.Left(9) == REASON) {
            texts.push_back(line.Mid(9));
        } else if (IsWhiteSpace(line[0])) {
            remarks.push_back(ToUtf8(CString{line}.Trim()));
        } else {
            texts.back() += L"\n" + line;
        }
    }
    Json error{{"number", number}, {"reasons", Json::array()}, {"message", ToUtf8(texts.back())}, {"remarks", remarks}};
    for (std::size_t i = 0; i + 1 < texts.size(); ++i) error["reasons"].push_back(ToUtf8(texts[i]));
    error["locations"] = Json::array();
    for (const CString& line : LinesOf(location)) {
        if (!line.IsEmpty()) error["locations"].push_back(LocationJson(line));
    }
    return error;
}

Json ErrorJson(const XException& error) {
    return ErrorJson(error.GetNumber(), error.GetLocation(), error.GetMessage());
}

}  // namespace veltrane::config
