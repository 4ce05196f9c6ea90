#pragma once

#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "veltrane/platform/text/cstring.h"
#include "veltrane/platform/text/encoding.h"

// What a command is asked, and what it answers.

namespace veltrane::config {

using Json = nlohmann::ordered_json;

/// What was asked for after the name of the command.
struct Request {
    std::map<std::string, std::string> options;  ///< by name with its hyphens; "" for one without a value
    std::vector<std::string> words;
    bool isColoured = false;  ///< whether standard output is a terminal that shows colours

    bool Has(const std::string& option) const { return options.contains(option); }
    /// @return the value of an option, "" when it is not given
    std::string Value(const std::string& option) const {
        const auto found = options.find(option);
        return found == options.end() ? std::string{} : found->second;
    }
};

/// The same answer in both forms, for standard output, and whether there is something to look at.
struct Answer {
    Json document = Json::object();
    std::string text;
    std::string talk = {};  ///< for standard error, beside the text
    bool hasFindings = false;
    bool tellsErrors = false;  ///< of start-up, among its findings

    void AddLine(const CString& line) { text += ToUtf8(line) + '\n'; }
};

/// The word of a severity in its colour on a terminal.
std::string Coloured(const std::string& severity);

/// The question itself is at fault, or what it asks for cannot be read. The text is one line.
struct Refusal {
    CString text;
};

/// Texts of one line each in columns that are as wide as their widest text, two blanks between.
class Columns {
public:
    void Add(std::vector<CString> row) { m_Rows.push_back(std::move(row)); }
    /// Appends the rows, each after an indent.
    void Print(Answer& answer, const CString& indent = {}) const;

private:
    std::vector<std::vector<CString>> m_Rows;
};

}  // namespace veltrane::config
