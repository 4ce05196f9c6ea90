#include "platform/winreg.h"

#include <optional>
#include <string>
#include <vector>

#include "platform/trace.h"
#include "support/environment.h"
#include "support/support.h"

using namespace std::string_literals;

namespace {

constexpr char HEADER[] = "Windows Registry Editor Version 5.00\r\n\r\n";

/// Type and bytes of a value.
using Data = std::pair<std::uint32_t, std::string>;

class WinReg : public testing::Test {
protected:
    ~WinReg() override { SetRegistryFile({}); }

    void Write(const std::string& bytes) { SetRegistryFile(m_Folder.Write("machine.reg", bytes)); }

    static long Open(const wchar_t* path, HKEY& key) {
        return RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key);
    }
    static bool Exists(const wchar_t* path) {
        HKEY key = nullptr;
        if (Open(path, key) != ERROR_SUCCESS) return false;
        EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
        return true;
    }
    static std::optional<Data> Read(const wchar_t* path, const wchar_t* name) {
        HKEY key = nullptr;
        if (Open(path, key) != ERROR_SUCCESS) return {};
        unsigned char bytes[256];
        std::uint32_t size = sizeof bytes;
        std::uint32_t type = 99;
        const long result = RegQueryValueExW(key, name, nullptr, &type, bytes, &size);
        EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
        if (result == ERROR_SUCCESS) return Data{type, {bytes, bytes + size}};
        EXPECT_EQ(result, ERROR_FILE_NOT_FOUND);
        return {};
    }
    /// What a line makes of the value "v".
    std::optional<Data> Import(const std::string& lines, const char* header = HEADER) {
        Write(header + "[HKLM\\K]\r\n"s + lines);
        return Read(L"K", L"v");
    }

    TempFolder m_Folder;
};

TEST_F(WinReg, ReadsEachKindOfData) {
    struct {
        const char* what;
        std::string lines;
        std::optional<Data> data;
    } const cases[] = {
        {"text", "\"v\"=\"ab\"", Data{1, "a\0b\0\0\0"s}},
        {"empty text", "\"v\"=\"\"", Data{1, "\0\0"s}},
        {"an escaped quote at the end", R"("v"="a\")", {}},
        {"a hand-written path", R"("v"="C:\new\\x")", Data{1, "C\0:\0\\\0n\0e\0w\0\\\0x\0\0\0"s}},
        {"an escaped quote", R"("v"="\"")", Data{1, "\"\0\0\0"s}},
        {"above the 16 bits", "\"v\"=\"\xF0\x9F\x98\x80\"", Data{1, "\x3D\xD8\0\xDE\0\0"s}},
        {"blanks and a comment", " \"v\" \t= \"a\" ; b", Data{1, "a\0\0\0"s}},
        {"more behind the text", "\"v\"=\"a\" b", {}},
        {"no end quote", "\"v\"=\"a", {}},
        {"no end quote of the name", "\"v=\"a\"", {}},
        {"number", "\"v\"=DWord:0000002A", Data{4, "\x2A\0\0\0"s}},
        {"short number", "\"v\"=dword:1 ;", Data{4, "\1\0\0\0"s}},
        {"large number", "\"v\"=dword:fedcba98", Data{4, "\x98\xBA\xDC\xFE"s}},
        {"nine digits", "\"v\"=dword:123456789", {}},
        {"no digits", "\"v\"=dword:", {}},
        {"bytes", "\"v\"=hex:1,02 , FF", Data{3, "\1\2\xFF"}},
        {"no bytes", "\"v\"=hex:", Data{3, ""}},
        {"a trailing comma", "\"v\"=hex:01,", Data{3, "\1"}},
        {"a type of its own", "\"v\"=HEX(1b):01", Data{0x1B, "\1"}},
        {"expandable text, not expanded", "\"v\"=hex(2):25,00,00,00", Data{2, "%\0\0\0"s}},
        {"goes on", "\"v\"=hex:01,\\\r\n\r\n ; between \\\r\n  02,\\ \r\n03", Data{3, "\1\2\3"}},
        {"the file ends behind a backslash", "\"v\"=hex:01,\\", Data{3, "\1"}},
        {"a comment ends a list", "\"v\"=hex:01 ; \\\r\n,02", Data{3, "\1"}},
        {"two bytes without a comma", "\"v\"=hex:01 02", {}},
        {"nor over lines", "\"v\"=hex:0\\\r\n1", {}},
        {"three digits", "\"v\"=hex:001", {}},
        {"two commas", "\"v\"=hex:01,,02", {}},
        {"an open bracket", "\"v\"=hex(2:01", {}},
        {"no type", "\"v\"=hex():01", {}},
        {"a malformed list takes its next lines along", "\"v\"=hex:zz,\\\r\n\"v\"=\"a\"", {}},
        {"a list of another key does so, too", "[HKLM\\L]\r\n\"x\"=hex:01,\\\r\n[HKLM\\K]\r\n\"v\"=\"a\"", {}},
        {"only lists go on", "\"x\"=\"a\\\r\n\"v\"=hex:01", Data{3, "\1"}},
        {"an unknown word", "\"v\"=qword:1", {}},
        {"the last of two", "\"v\"=hex:01\r\n\"V\"=hex:02", Data{3, "\2"}},
        {"a malformed line changes nothing", "\"v\"=hex:01\r\n\"v\"=hex:x", Data{3, "\1"}},
        {"removed", "\"v\"=hex:01\r\n\"V\"= - ; x", {}},
        {"not removed", "\"v\"=hex:01\r\n\"v\"=-1", Data{3, "\1"}},
        {"line ends of other systems", "\"x\"=hex:01\r\"v\"=hex:02\n\"y\"=hex:03", Data{3, "\2"}},
    };
    for (const auto& [what, lines, data] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(Import(lines), data);
    }
}

TEST_F(WinReg, ReadsNarrowListsOfOldExports) {
    constexpr char old[] = "REGEDIT4\n";
    EXPECT_EQ(Import("\"v\"=hex(2):61,00", old), (Data{2, "a\0\0\0"s}));
    EXPECT_EQ(Import("\"v\"=hex(1):fc,c3,bc", old), (Data{1, "\xFC\0\xFC\0"s}));
    EXPECT_EQ(Import("\"v\"=hex(7):80,00,00", old), (Data{7, "\xAC\x20\0\0\0\0"s}));
    EXPECT_EQ(Import("\"v\"=hex:61", old), (Data{3, "a"}));
    EXPECT_EQ(Import("\"v\"=hex(2):61,00"), (Data{2, "a\0"s}));
}

TEST_F(WinReg, NamesTheDefaultValueInTwoWays) {
    Write(HEADER + "[HKLM\\K]\r\n@=hex:01\r\n[HKLM\\L]\r\n\"\"=hex:02\r\n[HKLM\\M]\r\n@=hex:03\r\n@=-"s);
    EXPECT_EQ(Read(L"K", nullptr), (Data{3, "\1"}));
    EXPECT_EQ(Read(L"K", L""), (Data{3, "\1"}));
    EXPECT_EQ(Read(L"L", nullptr), (Data{3, "\2"}));
    EXPECT_EQ(Read(L"M", nullptr), std::nullopt);
}

TEST_F(WinReg, KeepsToTheKeysOfTheMachine) {
    struct {
        const char* what;
        std::string lines;
        bool found;  // the value "v" of the key "A\B"
    } const cases[] = {
        {"the key", "[HKEY_LOCAL_MACHINE\\A\\B]\r\n\"v\"=hex:", true},
        {"any case, one backslash at the end", "[hKlM\\a\\b\\] x\r\n\"v\"=hex:", true},
        {"continued", "[HKLM\\A\\B]\r\n[HKLM\\C]\r\n[HKLM\\A\\B]\r\n\"v\"=hex:", true},
        {"a value in front of all keys", "\"v\"=hex:\r\n[HKLM\\A\\B]", false},
        {"another root", "[HKLM\\A\\B]\r\n[HKEY_CURRENT_USER\\A\\B]\r\n\"v\"=hex:", false},
        {"an empty name inside", "[HKLM\\A\\B]\r\n[HKLM\\A\\\\B]\r\n\"v\"=hex:", false},
        {"an empty name at the end", "[HKLM\\A\\B]\r\n[HKLM\\A\\B\\\\]\r\n\"v\"=hex:", false},
        {"no bracket at the end", "[HKLM\\A\\B]\r\n[HKLM\\A\\B\r\n\"v\"=hex:", false},
        {"blanks are part of a name", "[HKLM\\A\\B ]\r\n\"v\"=hex:", false},
        {"the last bracket ends the path", "[HKLM\\A\\B]]\r\n\"v\"=hex:", false},
        {"removed with its parent", "[HKLM\\A\\B]\r\n\"v\"=hex:\r\n[-HKLM\\a]\r\n[HKLM\\A\\B]", false},
        {"removed, and no key is current", "[HKLM\\A\\B]\r\n[-HKLM\\C]\r\n\"v\"=hex:", false},
        {"a key below is removed", "[HKLM\\A\\B]\r\n\"v\"=hex:\r\n[-HKLM\\A\\B\\C]", true},
        {"a key that begins alike is removed", "[HKLM\\A\\B]\r\n\"v\"=hex:\r\n[-HKLM\\A\\BC]", true},
        {"set again", "[-HKLM\\A]\r\n[HKLM\\A\\B]\r\n\"v\"=hex:", true},
    };
    for (const auto& [what, lines, found] : cases) {
        SCOPED_TRACE(what);
        Write(HEADER + lines);
        EXPECT_EQ(Read(L"a\\B", L"V").has_value(), found);
    }
}

TEST_F(WinReg, OpensKeysWithAllTheirParents) {
    Write(HEADER + "[HKLM\\A\\B\\C]\r\n[HKLM\\\xC3\x84 x]\r\n[-HKLM\\D\\E]\r\n"s);
    for (const wchar_t* path : {L"A\\B\\C", L"a\\b", L"A", L"A\\", L"", L"\xE4 X"}) {
        EXPECT_TRUE(Exists(path)) << ToUtf8(CString{path});
    }
    for (const wchar_t* path : {L"\\A", L"A\\\\", L"A\\\\B", L"B", L"A\\B\\C\\D", L"A\\BC", L"D", L"D\\E", L"\\"}) {
        EXPECT_FALSE(Exists(path)) << ToUtf8(CString{path});
    }
    EXPECT_TRUE(Exists(nullptr));
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(nullptr, L"A", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"A", 0, KEY_READ, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(key, nullptr);
}

TEST_F(WinReg, TakesAFileWithoutItsHeaderAsNone) {
    struct {
        std::string header;
        bool found;
    } const cases[] = {
        {"Windows Registry Editor Version 5.00\n", true},
        {"\r\n \t\r\nREGEDIT4 \r\n", true},
        {"\xEF\xBB\xBFREGEDIT4\n", true},
        {"regedit4\n", false},
        {"Windows Registry Editor Version 5.00 x\n", false},
        {"; comment\nREGEDIT4\n", false},
        {"", false},
    };
    for (const auto& [header, found] : cases) {
        Write(header + "[HKLM\\A]\n");
        EXPECT_EQ(Exists(L"A"), found) << header;
    }
    SetRegistryFile(m_Folder.Wide());
    EXPECT_FALSE(Exists(L""));
    SetRegistryFile(m_Folder.Wide("absent"));
    EXPECT_FALSE(Exists(L""));
}

TEST_F(WinReg, ReadsAnExportInUtf16) {
    std::string wide = "\xFF\xFE";
    for (const char byte : HEADER +
                               "[HKEY_LOCAL_MACHINE\\SOFTWARE\\VORNAK\\tool\\\xDC"
                               "b]\r\n\"v\"=\"\xFC\"\r\n"s) {
        wide += byte;
        wide += '\0';
    }
    Write(wide);
    EXPECT_EQ(Read(L"software\\vornak\\TOOL\\\xFC"
                   L"B",
                   L"v"),
              (Data{1, "\xFC\0\0\0"s}));
}

TEST_F(WinReg, ReadsWindows1252WithoutLoss) {
    EXPECT_EQ(Import("\"v\"=\"\xFC\x80\x81\""), (Data{1, "\xFC\0\xAC\x20\x81\0\0\0"s}));
    Write(HEADER + "[HKLM\\\xDC]\r\n\"\xC4\"=hex:01"s);
    EXPECT_EQ(Read(L"\xFC", L"\xE4"), (Data{3, "\1"}));
}

TEST_F(WinReg, FillsTheBufferOnlyWhenTheValueFits) {
    Write(HEADER + "[HKLM\\A]\r\n\"v\"=\"ab\""s);
    HKEY key = nullptr;
    ASSERT_EQ(Open(L"A", key), ERROR_SUCCESS);
    unsigned char bytes[6] = {9, 9, 9, 9, 9, 9};
    std::uint32_t size = 5;
    std::uint32_t type = 99;
    EXPECT_EQ(RegQueryValueExW(key, L"v", nullptr, &type, bytes, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 6U);
    EXPECT_EQ(bytes[0], 9);
    EXPECT_EQ(RegQueryValueExW(key, L"v", nullptr, nullptr, bytes, &size), ERROR_SUCCESS);
    EXPECT_EQ(std::string(bytes, bytes + 6), "a\0b\0\0\0"s);
    size = 0;
    EXPECT_EQ(RegQueryValueExW(key, L"v", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 6U);
    size = 3;
    EXPECT_EQ(RegQueryValueExW(key, L"absent", nullptr, &type, bytes, &size), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(RegQueryValueExW(key, L"v", nullptr, &type, bytes, nullptr), ERROR_INVALID_PARAMETER);

    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegQueryValueExW(key, L"v", nullptr, &type, bytes, &size), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(nullptr), ERROR_INVALID_HANDLE);
}

TEST_F(WinReg, FindsItsFileThroughTheEnvironment) {
    m_Folder.Write("Sub/Machine.reg", HEADER + "[HKLM\\A]\r\n"s);
    const EnvironmentGuard variable{"VORNAK_REGISTRY", (m_Folder.Path() / "sub\\machine.REG").string()};
    EXPECT_TRUE(Exists(L"A"));
    Write(HEADER + "[HKLM\\B]\r\n"s);
    EXPECT_FALSE(Exists(L"A"));
    EXPECT_TRUE(Exists(L"B"));
    SetRegistryFile({});
    EXPECT_TRUE(Exists(L"A"));
}

TEST_F(WinReg, TellsTheObserverEachQuestion) {
    Write(HEADER + "[HKLM\\A]\r\n\"x\"=hex:01,\\\r\n  02\r\n\"v\"=\"ab\""s);
    std::vector<SourceEvent> events;
    SetSourceTrace([&](const SourceEvent& event) { events.push_back(event); });
    Read(L"a", L"V");
    Read(L"A", L"absent");
    Read(L"B", L"v");
    SetSourceTrace({});

    ASSERT_EQ(events.size(), 3U);
    EXPECT_EQ(events[0].source, SourceEvent::Source::Registry);
    EXPECT_EQ(events[0].file, m_Folder.Wide("machine.reg"));
    EXPECT_EQ(events[0].section, L"a");
    EXPECT_EQ(events[0].key, L"V");
    EXPECT_EQ(events[0].value, L"ab");
    EXPECT_EQ(events[0].line, 6);
    EXPECT_TRUE(events[0].found);
    EXPECT_FALSE(events[1].found);
    EXPECT_EQ(events[1].line, 0);
    EXPECT_FALSE(events[2].found);
    EXPECT_EQ(events[2].section, L"B");
}

TEST(RegistryText, ReadsUnitsUpToTheFirstNul) {
    struct {
        std::string bytes;
        const wchar_t* text;
    } const cases[] = {
        {"a\0b\0\0\0c\0"s, L"ab"},
        {"\x2A\0\0\0"s, L"*"},
        {"\0\0a\0"s, L""},
        {"a", L"a"},
        {"", L""},
        {"\x3D\xD8\0\xDE\x3D\xD8!\0"s, L"\x1F600\xD83D!"},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(RegistryText(reinterpret_cast<const unsigned char*>(bytes.data()),
                               static_cast<std::uint32_t>(bytes.size())),
                  text);
    }
}

}  // namespace
