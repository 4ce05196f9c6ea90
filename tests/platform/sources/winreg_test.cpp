#include "veltrane/platform/sources/winreg.h"

#include <sched.h>
#include <sys/mount.h>

#include "support/childprocess.h"
#include "support/support.h"

constexpr char HEADER[] = "Windows Registry Editor Version 5.00\r\n\r\n";

/// Type and bytes of a value.
using Data = std::pair<std::uint32_t, std::string>;

class WinReg : public testing::Test {
protected:
    ~WinReg() override { SetRegistryFile({}); }

    void Write(const std::string& lines, const std::string& header = HEADER) {
        SetRegistryFile(m_Folder.Write("machine.reg", header + lines));
    }

    /// @return null when there is no such key
    static HKEY Open(const wchar_t* path) {
        HKEY key = nullptr;
        const long result = RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key);
        EXPECT_EQ(result, key ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND);
        return key;
    }
    static bool Exists(const wchar_t* path) { return RegCloseKey(Open(path)) == ERROR_SUCCESS; }
    static std::optional<Data> Read(const wchar_t* path, const wchar_t* name) {
        const HKEY key = Open(path);
        if (!key) return {};
        unsigned char bytes[256];
        std::uint32_t size = sizeof bytes;
        std::uint32_t type = 99;
        const long result = RegQueryValueExW(key, name, nullptr, &type, bytes, &size);
        EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
        if (result == ERROR_SUCCESS) return Data{type, {bytes, bytes + size}};
        EXPECT_EQ(result, ERROR_FILE_NOT_FOUND);
        return {};
    }
    /// The value "v" of the key A\B after these lines.
    std::optional<Data> Import(const std::string& lines, const std::string& header = HEADER) {
        Write("[HKLM\\A\\B]\r\n" + lines, header);
        return Read(L"a\\B", L"V");
    }

    TempFolder m_Folder;
};

TEST_F(WinReg, ReadsEachKindOfData) {
    const std::tuple<const char*, std::string, std::optional<Data>> cases[] = {
        {"an escaped quote at the end", R"("v"="a\")", {}},
        {"a hand-written path", R"("v"="C:\n\\x\"")", Data{1, "C\0:\0\\\0n\0\\\0x\0\"\0\0\0"s}},
        {"above the 16 bits", "\"v\"=\"\xF0\x9F\x98\x80\"", Data{1, "\x3D\xD8\0\xDE\0\0"s}},
        {"blanks and a comment", " \"v\" \t= \"a\" ; b", Data{1, "a\0\0\0"s}},
        {"more behind the text", "\"v\"=\"a\" b", {}},
        {"no end quote", "\"v\"=\"a", {}},
        {"short number", "\"v\"=dword:1 ;", Data{4, "\1\0\0\0"s}},
        {"large number", "\"v\"=DWord:FeDCba98", Data{4, "\x98\xBA\xDC\xFE"s}},
        {"nine digits", "\"v\"=dword:123456789", {}},
        {"bytes", "\"v\"=hex:1,02 , FF", Data{3, "\1\2\xFF"}},
        {"expandable text, not expanded", "\"v\"=hex(2):25,00,", Data{2, "%\0"s}},
        {"a type of its own", "\"v\"=HEX(1b):", Data{0x1B, ""}},
        {"goes on", "\"v\"=hex:01,\\\r\n\r\n ; between \\\r\n  02,\\ \r\n03", Data{3, "\1\2\3"}},
        {"the file ends behind a backslash", "\"v\"=hex:01,\\", Data{3, "\1"}},
        {"a comment ends a list", "\"v\"=hex:01 ; \\\r\n,02", Data{3, "\1"}},
        {"two bytes without a comma", "\"v\"=hex:0\\\r\n1", {}},
        {"two commas", "\"v\"=hex:01,,02", {}},
        {"an open bracket", "\"v\"=hex(2:01", {}},
        {"no type", "\"v\"=hex():01", {}},
        {"a malformed list takes its next lines along", "\"v\"=hex:zz,\\\r\n\"v\"=\"a\"", {}},
        {"a list of another key does so, too", "[HKLM\\L]\r\n\"x\"=hex:01,\\\r\n[HKLM\\A\\B]\r\n\"v\"=\"a\"", {}},
        {"only lists go on", "\"x\"=\"a\\\r\n\"v\"=hex:01", Data{3, "\1"}},
        {"an unknown word", "\"v\"=qword:1", {}},
        {"the last of two", "\"v\"=hex:01\r\n\"V\"=hex:02", Data{3, "\2"}},
        {"a malformed line changes nothing", "\"v\"=hex:01\r\n\"v\"=hex:x", Data{3, "\1"}},
        {"removed", "\"v\"=hex:01\r\n\"V\"= - ; x", {}},
        {"not removed", "\"v\"=hex:01\r\n\"v\"=-1", Data{3, "\1"}},
        {"line ends of other systems", "\"x\"=hex:01\r\"v\"=hex:02\n\"y\"=hex:03", Data{3, "\2"}},
        {"any case, one backslash at the end", "[hKlM\\a\\b\\] x\r\n\"v\"=hex:01", Data{3, "\1"}},
        {"continued", "[HKLM\\C]\r\n[HKEY_LOCAL_MACHINE\\A\\B]\r\n\"v\"=hex:01", Data{3, "\1"}},
        {"another root", "[HKEY_CURRENT_USER\\A\\B]\r\n\"v\"=hex:", {}},
        {"an empty name inside", "[HKLM\\A\\\\B]\r\n\"v\"=hex:", {}},
        {"no bracket at the end", "[HKLM\\A\\B\r\n\"v\"=hex:", {}},
        {"blanks are part of a name", "[HKLM\\A\\B ]\r\n\"v\"=hex:", {}},
        {"the last bracket ends the path", "[HKLM\\A\\B]]\r\n\"v\"=hex:", {}},
        {"removed with its parent", "\"v\"=hex:\r\n[-HKLM\\a]\r\n[HKLM\\A\\B]", {}},
        {"removed, and no key is current", "[-HKLM\\C]\r\n\"v\"=hex:", {}},
        {"a key below is removed", "\"v\"=hex:01\r\n[-HKLM\\A\\B\\C]", Data{3, "\1"}},
        {"a key that begins alike is removed", "\"v\"=hex:01\r\n[-HKLM\\A\\BC]", Data{3, "\1"}},
        {"set again", "[-HKLM\\A]\r\n[HKLM\\A\\B]\r\n\"v\"=hex:01", Data{3, "\1"}},
    };
    for (const auto& [what, lines, data] : cases) EXPECT_EQ(Import(lines), data) << what;

    EXPECT_EQ(Import("", HEADER + "\"v\"=hex:\r\n"s), std::nullopt) << "in front of all keys";

    constexpr char old[] = "REGEDIT4\n";
    EXPECT_EQ(Import("\"v\"=hex(2):61,00", old), (Data{2, "a\0\0\0"s}));
    EXPECT_EQ(Import("\"v\"=hex(1):fc,c3,bc", old), (Data{1, "\xFC\0\xFC\0"s}));
    EXPECT_EQ(Import("\"v\"=hex(7):80,00,00", old), (Data{7, "\xAC\x20\0\0\0\0"s}));
    EXPECT_EQ(Import("\"v\"=hex:61", old), (Data{3, "a"}));
}

TEST_F(WinReg, NamesTheDefaultValueInTwoWays) {
    Write("[HKLM\\K]\r\n@=hex:01\r\n[HKLM\\L]\r\n\"\"=hex:02\r\n[HKLM\\M]\r\n@=hex:03\r\n@=-");
    EXPECT_EQ(Read(L"K", nullptr), (Data{3, "\1"}));
    EXPECT_EQ(Read(L"L", L""), (Data{3, "\2"}));
    EXPECT_EQ(Read(L"M", nullptr), std::nullopt);
}

TEST_F(WinReg, OpensKeysWithAllTheirParents) {
    Write(
        "[HKLM\\A\\B\\C]\r\n[HKLM\\\xC3\x84 x]\r\n[-HKLM\\D\\E]\r\n"
        "[HKLM\\F\\G]\r\n[-HKLM\\F]\r\n[HKLM\\F\\H]\r\n");
    for (const wchar_t* path : {L"F", L"A\\B\\C", L"a\\b", L"A\\", L"\xE4 X", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_TRUE(Exists(path)) << ToUtf8(path);
    }
    for (const wchar_t* path : {L"\\A", L"A\\\\", L"A\\\\B", L"B", L"A\\B\\C\\D", L"A\\BC", L"D", L"\\"}) {
        EXPECT_FALSE(Exists(path)) << ToUtf8(path);
    }
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(nullptr, L"A", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"A", 0, KEY_READ, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(key, nullptr);
    Write("[-HKLM\\]");
    EXPECT_FALSE(Exists(L"")) << "the root was removed";
}

TEST_F(WinReg, TreatsAFileWithoutItsHeaderAsEmpty) {
    for (const char* header : {"\r\n \t\r\nREGEDIT4 \r\n", "\xEF\xBB\xBFREGEDIT4\n"}) {
        EXPECT_TRUE(Import("\"v\"=hex:", header)) << header;
    }
    for (const char* header : {"regedit4\n", "Windows Registry Editor Version 5.00 x\n", "; comment\nREGEDIT4\n", ""}) {
        EXPECT_FALSE(Import("\"v\"=hex:", header)) << header;
    }
    for (const char* path : {"", "absent"}) {
        SetRegistryFile(m_Folder.Wide(path));
        EXPECT_FALSE(Exists(L""));
    }
}

TEST_F(WinReg, ReadsOtherEncodingsWithoutLoss) {
    EXPECT_EQ(Import("\"v\"=\"\xFC\x80\x81\""), (Data{1, "\xFC\0\xAC\x20\x81\0\0\0"s}));
    const std::string lines = "[HKLM\\tool\\\xDC]\r\n\"\xC4\"=\"\xFC\"\r\n";
    std::string wide = "\xFF\xFE";
    for (const char byte : HEADER + lines) wide += {byte, '\0'};
    for (const std::string& file : {wide, HEADER + lines}) {
        Write(file, {});
        EXPECT_EQ(Read(L"TOOL\\\xFC", L"\xE4"), (Data{1, "\xFC\0\0\0"s}));
    }
}

TEST_F(WinReg, FillsTheBufferOnlyWhenTheValueFits) {
    Write("[HKLM\\A]\r\n\"v\"=\"ab\"");
    const HKEY key = Open(L"A");
    unsigned char bytes[6] = {9};
    const auto ask = [&](const wchar_t* name, unsigned char* data, std::uint32_t size) {
        const long result = RegQueryValueExW(key, name, nullptr, nullptr, data, &size);
        return std::pair(result, size);
    };
    EXPECT_EQ(ask(L"v", bytes, 5), std::pair(ERROR_MORE_DATA, 6U));
    EXPECT_EQ(bytes[0], 9);
    EXPECT_EQ(ask(L"v", bytes, 6), std::pair(ERROR_SUCCESS, 6U));
    EXPECT_EQ(std::string(bytes, bytes + 6), "a\0b\0\0\0"s);
    EXPECT_EQ(ask(L"v", nullptr, 0), std::pair(ERROR_SUCCESS, 6U));
    EXPECT_EQ(ask(L"absent", bytes, 3), std::pair(ERROR_FILE_NOT_FOUND, 3U));
    EXPECT_EQ(RegQueryValueExW(key, L"v", nullptr, nullptr, bytes, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(ask(L"v", bytes, 6), std::pair(ERROR_INVALID_HANDLE, 6U));
    for (const HKEY closed : {key, HKEY{}}) EXPECT_EQ(RegCloseKey(closed), ERROR_INVALID_HANDLE);
}

TEST_F(WinReg, FindsItsFileThroughTheEnvironment) {
    m_Folder.Write("Sub/Machine.reg", HEADER + "[HKLM\\A]\r\n"s);
    const EnvironmentGuard variable{"VORNAK_REGISTRY", (m_Folder.Path() / "sub\\machine.REG").string()};
    EXPECT_TRUE(Exists(L"A"));
    Write("[HKLM\\B]\r\n");
    EXPECT_FALSE(Exists(L"A"));
    SetRegistryFile({});
    EXPECT_TRUE(Exists(L"A"));
}

TEST_F(WinReg, LooksForTheDefaultFileExactlyAsSpelled) {
    m_Folder.Write("Vornak/Registry.reg", HEADER + "[HKLM\\A]\r\n"s);
    const auto child = RunChild([&] {  // /etc is replaced for the child alone
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return 77;
        if (mount(m_Folder.Path().c_str(), "/etc", nullptr, MS_BIND, nullptr) != 0) return 77;
        const bool isFound = Exists(L"A");
        SetRegistryFile(L"/etc/vornak/registry.reg");
        return isFound ? 1 : Exists(L"A") ? 7 : 2;
    });
    if (child.exitCode == 77) GTEST_SKIP() << "no folders of its own for a process";
    EXPECT_EQ(child.exitCode, 7) << child.errors;
}
