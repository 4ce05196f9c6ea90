#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "request.h"

// What a command answers.

namespace veltrane::config {

using Json = nlohmann::ordered_json;

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
