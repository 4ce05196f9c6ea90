#include <gtest/gtest.h>

#include <algorithm>

#include "documents.h"
#include "support/environment.h"
#include "support/support.h"
#include "veltrane/platform/sources/profile.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

std::string Unescaped(const std::string& text) {
    constexpr std::string_view letters = "nrt0\\";
    constexpr std::string_view meanings{"\n\r\t\0\\", 5};
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t letter = text[i] == '\\' && i + 1 < text.size() ? letters.find(text[i + 1]) : letters.npos;
        plain += letter == letters.npos ? text[i] : meanings[letter];
        if (letter != letters.npos) ++i;
    }
    return plain;
}

/// The answer to a question in which an empty name is none; the names of a list with commas between.
std::string Answer(const CString& file, const CString& section, const CString& key) {
    wchar_t buffer[2048];
    const unsigned length =
        GetPrivateProfileStringW(section.IsEmpty() ? nullptr : section.GetString(),
                                 key.IsEmpty() ? nullptr : key.GetString(), L"", buffer, 2048, file.GetString());
    std::string answer = ToUtf8(std::wstring_view{buffer, length});
    std::ranges::replace(answer, '\0', ',');
    if (answer.ends_with(',')) answer.pop_back();
    return answer;
}

}  // namespace

TEST(IniDocument, EachRowIsWhatTheReaderAnswers) {
    const TempFolder folder;
    const auto rows = TableBelow(ReadSource("docs/ini.md"), "| rule | file | section | key | answer |");
    EXPECT_GE(rows.size(), 20U);
    for (const auto& row : rows) {
        ASSERT_EQ(row.size(), 5U) << row[0];
        SCOPED_TRACE(row[0]);
        const CString file = folder.Write("document.ini", Unescaped(row[1]));
        EXPECT_EQ(Answer(file, FromUtf8(Unescaped(row[2])), FromUtf8(Unescaped(row[3]))), Unescaped(row[4]));
    }
}
