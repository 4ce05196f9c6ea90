#pragma once

#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "json.h"
#include "request.h"

// What a command answers.

namespace veltrane::config {

class Startup;

/// The answer in both forms, for standard output, and whether it has findings.
struct Answer {
    Json document = Json::object();
    std::string text;
    std::string errorText = {};  ///< for standard error, in addition to the text
    bool hasFindings = false;
    bool tellsErrors = false;               ///< of start-up, among its findings
    std::shared_ptr<Startup> startup = {};  ///< whose errors are shown instead of those that the command met

    void AddLine(const CString& line) { text += ToUtf8(line) + '\n'; }
};

/// The word of a severity in its colour on a terminal.
std::string Coloured(const std::string& severity);

/// Appends a remark on the lines above it.
void AddNote(Answer& answer, const CString& text);

/// Texts of one line each in columns that are as wide as their widest text, two blanks between. The last text of a row
/// may be wider than its column. Columns that would go past LINE_WIDTH begin a new line in every row, and texts break
/// at blanks.
class Columns {
public:
    void Add(std::vector<CString> row) { m_Rows.push_back(std::move(row)); }
    /// Appends the rows.
    /// @param indent   of each row
    /// @param hanging  number of the column below which the new lines begin
    void Print(Answer& answer, int indent = 0, std::size_t hanging = 1) const;
    /// Appends the rows, each on one line whatever its length.
    void PrintUnbroken(Answer& answer) const;

private:
    std::vector<std::vector<CString>> m_Rows;
};

}  // namespace veltrane::config
