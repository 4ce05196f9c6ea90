#include "veltrane/platform/sources/sourcelines.h"

#include <string>

#include "support/support.h"

namespace {

using Kind = SourceLine::Kind;
using Reason = SourceLine::Reason;

struct Expected {
    std::string line;
    Kind kind;
    Reason reason;
    bool answers;
    std::wstring place;  // section, key and value
};

class SourceLines : public testing::Test {
protected:
    void Expect(SourceFileLines (*read)(const CString&), const std::vector<Expected>& lines, const char* end) {
        std::string bytes;
        for (const Expected& each : lines) bytes += each.line + end;
        m_View = read(m_Folder.Write("a.txt", bytes));
        ASSERT_EQ(m_View.lines.size(), lines.size());
        for (std::size_t i = 0; i < lines.size(); ++i) {
            SCOPED_TRACE(lines[i].line);
            const SourceLine& line = m_View.lines[i];
            EXPECT_EQ(line.number, static_cast<int>(i) + 1);
            EXPECT_EQ(line.kind, lines[i].kind);
            EXPECT_EQ(line.reason, lines[i].reason);
            EXPECT_EQ(line.answers, lines[i].answers);
            EXPECT_EQ(line.section + L"|" + line.key + L"|" + line.value, CString{lines[i].place});
        }
    }

    TempFolder m_Folder;
    SourceFileLines m_View;
};

TEST_F(SourceLines, TellWhatEachLineOfAnIniFileIs) {
    const std::vector<Expected> lines{
        {"lost=1", Kind::Ignored, Reason::BeforeFirstSection, false, L"|lost|1"},
        {"bare", Kind::Ignored, Reason::BeforeFirstSection, false, L"||"},
        {"[Main] ; x", Kind::Section, Reason::None, true, L"Main||"},
        {" k = ' v ' ", Kind::Entry, Reason::None, true, L"Main|k| v "},
        {"", Kind::Blank, Reason::None, false, L"Main||"},
        {"\t;k=2", Kind::Comment, Reason::None, false, L"Main||"},
        {"K=2", Kind::Entry, Reason::DuplicateKey, false, L"Main|K|2"},
        {"bare", Kind::Ignored, Reason::NoEquals, false, L"Main||"},
        {" =2", Kind::Ignored, Reason::EmptyKey, false, L"Main||"},
        {"[main]", Kind::Section, Reason::DuplicateSection, false, L"main||"},
        {"l=\xFC", Kind::Entry, Reason::DuplicateSection, false, L"main|l|\xFC"},
        {"[db", Kind::Section, Reason::HeaderWithoutBracket, true, L"db||"},
        {"k=", Kind::Entry, Reason::None, true, L"db|k|"},
    };
    for (const char* end : {"\r\n", "\n", "\r"}) Expect(ReadProfileLines, lines, end);
    EXPECT_EQ(m_View.sectionListLength, 13) << "Main, main, db";
    EXPECT_TRUE(m_View.hasWindows1252);
}

TEST_F(SourceLines, TellWhatEachLineOfARegistryIs) {
    Expect(ReadRegistryLines,
           {
               {"REGEDIT4", Kind::Header, Reason::None, false, L"||"},
               {"\"v\"=\"a\"", Kind::Ignored, Reason::NoCurrentKey, false, L"|v|"},
               {"[HKLM\\A\\B]", Kind::Section, Reason::None, true, L"A\\B||"},
               {"\"v\"=\"a\"", Kind::Entry, Reason::ReplacedLater, false, L"A\\B|v|a"},
               {"\"V\"=hex(1):62,\\", Kind::Entry, Reason::None, true, L"A\\B|V|bc"},
               {" ; between", Kind::Comment, Reason::None, false, L"||"},
               {" 63", Kind::Continuation, Reason::None, false, L"||"},
               {"@=\"a\"", Kind::Entry, Reason::RemovedLater, false, L"A\\B||a"},
               {"@=-", Kind::Removal, Reason::None, false, L"A\\B||"},
               {"\"v\"=x", Kind::Ignored, Reason::MalformedValue, false, L"A\\B||"},
               {"nothing", Kind::Ignored, Reason::Other, false, L"A\\B||"},
               {"\"a\0\"=\"b\""s, Kind::Entry, Reason::UnaskableName, false, L"A\\B|a\0|b"s},
               {"[HKLM\\C\\D]", Kind::Section, Reason::RemovedLater, false, L"C\\D||"},
               {"\"v\"=\"a\"", Kind::Entry, Reason::RemovedLater, false, L"C\\D|v|a"},
               {"[HKLM\\CD]", Kind::Section, Reason::None, true, L"CD||"},
               {"[-HKLM\\c]", Kind::Removal, Reason::None, false, L"c||"},
               {"[HKCU\\A]", Kind::Ignored, Reason::OtherRoot, false, L"||"},
               {"[HKLM\\A", Kind::Ignored, Reason::MalformedKey, false, L"||"},
           },
           "\r\n");
    Expect(ReadRegistryLines,
           {{"; x", Kind::Ignored, Reason::BadHeader, false, L"||"},
            {"[HKLM\\A]", Kind::Ignored, Reason::BadHeader, false, L"||"}},
           "\n");
}

TEST_F(SourceLines, TellHowTheFileWasRead) {
    m_Folder.Write("Sub/Mixed.ini", "\xFF\xFE[\0A\0]\0"s);
    const auto mixed = ReadProfileLines(m_Folder.Wide("sub\\mixed.INI"));
    EXPECT_EQ(mixed.path, m_Folder.Wide("Sub/Mixed.ini")) << "as on the disk";
    EXPECT_EQ(mixed.encoding, SourceEncoding::Utf16LittleEndian);
    EXPECT_EQ(mixed.lines.size(), 1U);
    const CString large = m_Folder.Write("large", "");
    std::filesystem::resize_file(m_Folder.Path() / "large", (256U << 20) + 1);
    const std::pair<CString, SourceReading> cases[] = {
        {m_Folder.Wide("sub/absent/a.ini"), SourceReading::Missing},
        {{}, SourceReading::Missing},
        {m_Folder.Wide(), SourceReading::Folder},
        {L"/dev/zero", SourceReading::NotRegular},
        {large, SourceReading::TooLarge},
    };
    for (const auto& [path, reading] : cases) EXPECT_EQ(ReadProfileLines(path).reading, reading) << ToUtf8(path);
    const auto marked = ReadProfileLines(m_Folder.Write("a.ini", "\xEF\xBB\xBF[\xC3\x84]"));
    EXPECT_EQ(marked.encoding, SourceEncoding::Utf8WithMark);
    EXPECT_FALSE(marked.hasWindows1252);
}

}  // namespace
