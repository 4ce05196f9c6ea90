#include "nameline.h"

#include <istream>
#include <string_view>

#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/encoding.h"
#include "veltrane/platform/text/numbers.h"

namespace veltrane::detail {

namespace {

constexpr int SHOWN = 64;  // elements of a line that is too long

// Cuts a word and the blanks after it from the front of a line.
bool CutWord(CString& line, const CString& word) {
    if (line.Left(word.GetLength()) != word || !IsWhiteSpace(line[word.GetLength()])) return false;
    line = line.Mid(word.GetLength()).TrimLeft();
    return true;
}

CString TextOf(std::string_view bytes, bool isFirst) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (isFirst && bytes.starts_with(mark)) bytes.remove_prefix(mark.size());
    return FromUtf8(bytes).Trim();
}

}  // namespace

NameLines::NameLines(std::istream& list) : m_List(list), m_Bytes(LONGEST + 1, '\0') {}

bool NameLines::Next() {
    while (!m_bTooLong) {
        m_List.getline(m_Bytes.data(), static_cast<std::streamsize>(m_Bytes.size()));
        if (m_List.bad() || (m_List.eof() && m_List.gcount() == 0)) return false;
        const bool hasEnd = !m_List.eof() && !m_List.fail();
        m_bTooLong = m_List.fail();
        m_Text =
            TextOf({m_Bytes.data(), static_cast<std::size_t>(m_List.gcount()) - (hasEnd ? 1 : 0)}, ++m_nNumber == 1);
        if (m_bTooLong) m_Text = m_Text.Left(SHOWN) + L"...";
        if (m_bTooLong || (!m_Text.IsEmpty() && m_Text[0] != L';')) return true;
    }
    return false;
}

std::optional<NameLine> NameLines::Line() const {
    CString rest = m_Text;
    if (CutWord(rest, L"table")) return NameLine{NameLine::Kind::Table, rest};
    if (CutWord(rest, L"column")) return NameLine{NameLine::Kind::Column, rest};
    if (CutWord(rest, L"version") && IsNumber(rest)) return NameLine{NameLine::Kind::Version, {}, _wtoi(rest)};
    return {};
}

}  // namespace veltrane::detail
