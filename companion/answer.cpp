#include "answer.h"

#include <algorithm>

#include "wrapped.h"

namespace veltrane::config {

namespace {

constexpr int WIDEST = 72;  // a longer text moves only its own row
constexpr int BETWEEN = 2;  // blanks between columns
constexpr int NOTE_INDENT = 4;

using Row = std::vector<CString>;

struct Column {
    int width = 0;
    int widestInside = 0;  // of texts that do not end their row
    int widest = 0;
    int start = 0;
    bool isBroken = false;
};

std::vector<Column> Measured(const std::vector<Row>& rows, int indent) {
    std::vector<Column> columns;
    for (const Row& row : rows) {
        columns.resize(std::max(columns.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            Column& column = columns[i];
            const int length = row[i].GetLength();
            column.widest = std::max(column.widest, length);
            if (i + 1 == row.size()) continue;
            column.widestInside = std::max(column.widestInside, length);
            if (length <= WIDEST) column.width = std::max(column.width, length);
        }
    }
    for (Column& column : columns) {
        column.start = indent;
        indent += column.width + BETWEEN;
    }
    return columns;
}

CString Joined(const Row& row, const std::vector<Column>& columns) {
    CString line;
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (row[i].IsEmpty() || columns[i].isBroken) continue;
        const int gap = line.IsEmpty() ? 0 : BETWEEN;
        line += Blanks(std::max(columns[i].start - line.GetLength(), gap)) + row[i];
    }
    return line;
}

void PrintRow(Answer& answer, const Row& row, const std::vector<Column>& columns, int margin) {
    CString lead = Joined(row, columns);
    CString last;
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (!row[i].IsEmpty() && !columns[i].isBroken) last = row[i];
    }
    lead = lead.Left(lead.GetLength() - last.GetLength());
    AddWrapped(answer.text, last, margin, lead);
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (!row[i].IsEmpty() && columns[i].isBroken) AddWrapped(answer.text, row[i], margin);
    }
}

}  // namespace

void Columns::Print(Answer& answer, int indent, std::size_t hanging) const {
    std::vector<Column> columns = Measured(m_Rows, indent);
    bool isBroken = false;
    for (std::size_t i = hanging + 1; i < columns.size(); ++i) {
        const int start = std::max(columns[i].start, columns[i - 1].start + columns[i - 1].widestInside + BETWEEN);
        isBroken = isBroken || start + columns[i].widest > LINE_WIDTH;
        columns[i].isBroken = isBroken;
    }
    const int margin = hanging < columns.size() ? columns[hanging].start + 2 : indent;
    for (const Row& row : m_Rows) PrintRow(answer, row, columns, margin);
}

void Columns::PrintUnbroken(Answer& answer) const {
    const std::vector<Column> columns = Measured(m_Rows, 0);
    for (const Row& row : m_Rows) answer.AddLine(Joined(row, columns).TrimRight());
}

void AddNote(Answer& answer, const CString& text) {
    AddWrapped(answer.text, L"note: " + text, NOTE_INDENT);
}

std::string Coloured(const std::string& severity) {
    const char* const colour = severity == "error" ? "\x1B[1;31m" : severity == "warning" ? "\x1B[1;35m" : "\x1B[1;36m";
    return colour + severity + "\x1B[0m";
}

}  // namespace veltrane::config
