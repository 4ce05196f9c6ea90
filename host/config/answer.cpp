#include "answer.h"

#include <algorithm>

namespace veltrane::config {

namespace {

constexpr int WIDEST = 72;  // a longer text moves its own row alone

}  // namespace

void Columns::Print(Answer& answer, const CString& indent) const {
    std::vector<int> widths;
    for (const auto& row : m_Rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i + 1 < row.size(); ++i) {
            if (row[i].GetLength() <= WIDEST) widths[i] = std::max(widths[i], row[i].GetLength());
        }
    }
    for (const auto& row : m_Rows) {
        CString line = indent;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            const bool isLast = i + 1 == row.size();
            if (!isLast) line += CString{L' ', std::max(widths[i] - row[i].GetLength(), 0) + 2};
        }
        answer.AddLine(line.TrimRight());
    }
}

std::string Coloured(const std::string& severity) {
    const char* const colour = severity == "error" ? "\x1B[1;31m" : severity == "warning" ? "\x1B[1;35m" : "\x1B[1;36m";
    return colour + severity + "\x1B[0m";
}

}  // namespace veltrane::config
