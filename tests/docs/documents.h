#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

/// Bytes of a file; an error when there is none, since an empty document would agree with too much.
inline std::string ReadDocument(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream{path, std::ios::binary}.rdbuf();
    if (bytes.str().empty()) throw std::runtime_error("cannot read " + path);
    return bytes.str();
}
inline std::string ReadSource(const std::string& name) {
    return ReadDocument(VELTRANE_SOURCE_FOLDER "/" + name);
}

inline std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in{text};
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

/// The text of a cell: blanks around it go, then one pair of backticks.
inline std::string CellText(std::string_view cell) {
    const std::size_t first = cell.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    cell = cell.substr(first, cell.find_last_not_of(' ') - first + 1);
    const bool isCode = cell.size() >= 2 && cell.front() == '`' && cell.back() == '`';
    return std::string{isCode ? cell.substr(1, cell.size() - 2) : cell};
}

/// The rows of the table of a document whose first line this is.
inline std::vector<std::vector<std::string>> TableBelow(const std::string& text, const std::string& heading) {
    std::vector<std::vector<std::string>> rows;
    const std::size_t begin = text.find('\n' + heading + '\n');
    if (begin == std::string::npos) throw std::runtime_error("no table " + heading);
    const std::vector<std::string> lines = LinesOf(text.substr(begin + 1));
    for (std::size_t i = 2; i < lines.size() && lines[i].starts_with('|'); ++i) {
        std::vector<std::string>& row = rows.emplace_back();
        for (std::size_t at = 1; at < lines[i].size();) {
            const std::size_t end = lines[i].find('|', at);
            if (end == std::string::npos) throw std::runtime_error("a row without its end: " + lines[i]);
            row.push_back(CellText(std::string_view{lines[i]}.substr(at, end - at)));
            at = end + 1;
        }
    }
    return rows;
}

/// The rows of the option table that are no titles.
inline std::vector<const XOptionDefinition*> OptionRows() {
    std::vector<const XOptionDefinition*> rows;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eOption != eOptionTitle) rows.push_back(row);
    }
    return rows;
}
