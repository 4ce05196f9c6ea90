#include "veltrane/platform/sources/sourcelines.h"

#include <memory>
#include <thread>

#include "support/support.h"
#include "veltrane/foundation/xpath.h"
#include "veltrane/platform/files/internal/replacement.h"
#include "veltrane/platform/sources/internal/snapshot.h"

using Kind = SourceLine::Kind;
using Reason = SourceLine::Reason;

/// A line, its kind and reason, whether it answers, and its section, key and value.
using ExpectedLine = std::tuple<std::string, Kind, Reason, bool, CString>;

static SourceFileLines Expect(SourceFileLines (*read)(const CString&), const std::vector<ExpectedLine>& expected,
                              const std::string& end) {
    std::string bytes;
    for (const ExpectedLine& each : expected) bytes += std::get<0>(each) + end;
    const TempFolder folder;
    const SourceFileLines view = read(folder.Write("a.txt", bytes));
    EXPECT_EQ(view.lines.size(), expected.size());
    for (int number = 0; const SourceLine& line : view.lines) {
        const ExpectedLine& wanted = expected.at(static_cast<std::size_t>(number++));
        EXPECT_EQ(line.number, number);
        const CString place = line.section + L"|" + line.key + L"|" + line.value;
        EXPECT_EQ(wanted, std::tuple(std::get<0>(wanted), line.kind, line.reason, line.answers, place));
    }
    return view;
}

TEST(SourceLines, TellWhatEachLineOfAnIniFileIs) {
    const std::vector<ExpectedLine> lines{
        {"lost=1", Kind::Ignored, Reason::BeforeFirstSection, false, L"|lost|1"},
        {"bare", Kind::Ignored, Reason::BeforeFirstSection, false, L"|bare|"},
        {"[Main] ; x", Kind::Section, Reason::None, true, L"Main||"},
        {" k = ' v ' ", Kind::Entry, Reason::None, true, L"Main|k| v "},
        {"", Kind::Blank, Reason::None, false, L"Main||"},
        {"\t;k=2 ", Kind::Comment, Reason::None, false, L"Main|;k=2|"},
        {"K=2", Kind::Entry, Reason::DuplicateKey, false, L"Main|K|2"},
        {" bare\t", Kind::Ignored, Reason::NoEquals, false, L"Main|bare|"},
        {" =2", Kind::Ignored, Reason::EmptyKey, false, L"Main||"},
        {"[main]", Kind::Section, Reason::DuplicateSection, false, L"main||"},
        {"l=\xFC", Kind::Entry, Reason::DuplicateSection, false, L"main|l|\xFC"},
        {"[db", Kind::Section, Reason::HeaderWithoutBracket, true, L"db||"},
        {"k=", Kind::Entry, Reason::None, true, L"db|k|"},
    };
    for (const char* end : {"\r\n", "\n", "\r"}) {
        const SourceFileLines view = Expect(ReadProfileLines, lines, end);
        EXPECT_EQ(view.sectionListLength, 13) << "Main, main, db";
        EXPECT_TRUE(view.hasWindows1252);
        EXPECT_TRUE(view.lines[3].isQuoted && !view.lines[6].isQuoted && !view.lines[12].isQuoted);
    }
}

TEST(SourceLines, TellWhatEachLineOfARegistryIs) {
    Expect(ReadRegistryLines,
           {
               {"REGEDIT4", Kind::Header, Reason::None, false, L"||"},
               {"\"v\"=\"a\"", Kind::Ignored, Reason::NoCurrentKey, false, L"|v|"},
               {"[HKLM\\A\\B]", Kind::Section, Reason::None, true, L"A\\B||"},
               {"\"v\"=\"a\"", Kind::Entry, Reason::ReplacedLater, false, L"A\\B|v|a"},
               {"\"V\"=hex(1):62,\\", Kind::Entry, Reason::None, true, L"A\\B|V|bc"},
               {" ; between", Kind::Comment, Reason::None, false, L"|; between|"},
               {" 63", Kind::Continuation, Reason::None, false, L"||"},
               {"@=\"a\"", Kind::Entry, Reason::RemovedLater, false, L"A\\B||a"},
               {"@=-", Kind::Removal, Reason::None, false, L"A\\B||"},
               {"\"v\"=x", Kind::Ignored, Reason::MalformedValue, false, L"A\\B||"},
               {"nothing", Kind::Ignored, Reason::Other, false, L"A\\B||"},
               {"\"a\0\"=\"b\""s, Kind::Entry, Reason::UnaskableName, false, L"A\\B|a\0|b"s},
               {"[HKLM\\C\\D]", Kind::Section, Reason::RemovedLater, false, L"C\\D||"},
               {"\"v\"=\"a\"", Kind::Entry, Reason::RemovedLater, false, L"C\\D|v|a"},
               {"[HKLM\\C!]", Kind::Section, Reason::None, true, L"C!||"},
               {"[HKLM\\A", Kind::Ignored, Reason::MalformedKey, false, L"||"},
               {"\"v\"=\"a\"", Kind::Ignored, Reason::NoCurrentKey, false, L"|v|"},
               {"[-HKLM\\c]", Kind::Removal, Reason::None, false, L"c||"},
               {"[HKCU\\A]", Kind::Ignored, Reason::OtherRoot, false, L"HKCU\\A||"},
           },
           "\r\n");
    Expect(ReadRegistryLines,
           {{"; x", Kind::Ignored, Reason::BadHeader, false, L"|; x|"},
            {"[HKLM\\A]", Kind::Ignored, Reason::BadHeader, false, L"||"}},
           "\n");
}

TEST(SourceLines, TellHowTheFileWasRead) {
    const TempFolder folder;
    folder.Write("Sub/Mixed.ini", "\xFF\xFE[\0A\0]\0"s);
    const auto mixed = ReadProfileLines(folder.Wide("sub\\mixed.INI"));
    EXPECT_EQ(mixed.path, folder.Wide("Sub/Mixed.ini")) << "as on the disk";
    EXPECT_EQ(mixed.encoding, SourceEncoding::Utf16LittleEndian);
    EXPECT_EQ(mixed.lines.size(), 1U);
    const CString large = folder.Write("large", "");
    std::filesystem::resize_file(folder.Path() / "large", (256U << 20) + 1);
    const std::pair<CString, SourceReading> cases[] = {
        {folder.Wide("sub/absent/a.ini"), SourceReading::Missing},
        {{}, SourceReading::Missing},
        {folder.Wide(), SourceReading::Folder},
        {L"/dev/zero", SourceReading::NotRegular},
        {large, SourceReading::TooLarge},
    };
    for (const auto& [path, reading] : cases) EXPECT_EQ(ReadProfileLines(path).reading, reading) << ToUtf8(path);
    const auto marked = ReadProfileLines(folder.Write("a.ini", "\xEF\xBB\xBF[\xC3\x84]"));
    EXPECT_EQ(marked.encoding, SourceEncoding::Utf8WithMark);
    EXPECT_FALSE(marked.hasWindows1252);
}

TEST(SourceReplacement, AnswersForItsFileWhicheverPathLeadsThere) {
    const TempFolder folder;
    const CString path = folder.Write("a.ini", "[A]\nk=disk\n");
    std::filesystem::create_symlink("a.ini", folder.Path() / "link");
    const auto read = [&](const char* name) {
        const SourceFileLines view = ReadProfileLines(folder.Wide(name));
        return view.lines.size() == 2 ? view.lines[1].value : CString{};
    };
    const SourceSnapshot snapshot;
    EXPECT_EQ(read("a.ini"), L"disk");
    auto first = std::make_unique<SourceReplacement>(folder.Wide("link"), "[A]\nk=first\n");
    EXPECT_EQ(read("A.INI"), L"first");
    const SourceReplacement second{path, "\xFF\xFE[\0A\0]\0\r\0\n\0k\0=\0"s + "2\0"s};
    first.reset();
    EXPECT_EQ(read("./a.ini"), L"2");
    EXPECT_FALSE(FileExists(folder.Wide("b.ini")));
    const SourceReplacement missing{folder.Wide("b.ini"), "[A]\nk=b"};
    EXPECT_EQ(read("b.ini"), L"b");
    EXPECT_TRUE(FileExists(folder.Wide("./b.ini")));
    std::thread{[&] { EXPECT_EQ(read("a.ini"), L"disk"); }}.join();
}
