#include "veltrane/config/xregistry.h"

#include "support/support.h"

class XRegistryTest : public testing::Test {
protected:
    XRegistryTest() {
        std::string bytes =
            "REGEDIT4\n[HKLM\\SOFTWARE\\VORNAK\\ROOT]\n\"logfile\"=\"machine.log\"\n"
            "[HKLM\\SOFTWARE\\VORNAK\\tool]\n\"data\"=\"D:\\\\data\"\n[HKLM\\SOFTWARE\\VORNAK\\tool\\ROOT]\n"
            "\"text\"=\"t\xFCr\"\n\"number\"=dword:2a\n\"expand\"=hex(2):25,61,25,00\n\"none\"=hex:\n"
            "\"zeros\"=hex:00,00\n\"odd\"=hex:61,00,62\n\"several\"=hex(7):61,00,62,00,00\n";
        for (const int size : {63, 64, 5000})
            bytes += ToUtf8(FormatText(L"\"%d\"=\"%s\"\n", size, CString{L'x', size}));
        SetRegistryFile(m_Folder.Write("machine.reg", bytes));
    }
    ~XRegistryTest() override { SetRegistryFile({}); }

    TempFolder m_Folder;
};

TEST_F(XRegistryTest, ReadsValuesOfEveryTypeAsText) {
    const CString none = L"before";
    const auto expect = [&](const wchar_t* subKey, const wchar_t* section, const wchar_t* name, const CString& value) {
        CString found = none;
        EXPECT_EQ(XRegistry{subKey}.GetValue(found, section, name), value != none) << ToUtf8(CString{name});
        EXPECT_EQ(found, value);
    };
    expect(L"tool", L"ROOT", L"text", L"t\xFCr");
    expect(L"tool", L"ROOT", L"number", L"*");
    expect(L"tool", L"ROOT", L"expand", L"%a%");
    expect(L"tool", L"ROOT", L"zeros", L"");
    expect(L"tool", L"ROOT", L"odd", L"ab");
    expect(L"tool", L"ROOT", L"several", L"a");
    expect(L"tool", L"ROOT", L"63", {L'x', 63});
    expect(L"tool", L"ROOT", L"64", {L'x', 64});
    expect(L"tool", L"ROOT", L"5000", {L'x', 5000});
    expect(L"tool", L"ROOT", L"absent", none);
    expect(L"tool", L"ROOT", L"none", none);
    expect(L"tool", L"absent", L"text", none);
    expect(L"", L"ROOT", L"logfile", L"machine.log");
    expect(L"TOOL", L"", L"Data", L"D:\\data");
}

TEST_F(XRegistryTest, ReadsFromTheKeyThatIsOpen) {
    XRegistry registry{L"tool"};
    CString value;
    const auto expectClosed = [&] {
        const XException error = ErrorOf([&] { registry.GetValue(value, L"text"); });
        EXPECT_EQ(error.GetMessage(), L"No opened registry key to get a value from!");
        EXPECT_EQ(error.GetLocation().Find(L"<XRegistry::GetValue> in [xregistry], line ["), 0);
    };
    expectClosed();
    ASSERT_TRUE(registry.Open(L"ROOT"));
    EXPECT_TRUE(registry.GetValue(value, L"text"));
    EXPECT_EQ(value, L"t\xFCr");
    EXPECT_FALSE(registry.GetValue(value, L"absent"));
    for (int i = 0; i < 2; ++i) registry.Close();
    expectClosed();
    EXPECT_TRUE(registry.GetValue(value, L"ROOT", L"text"));
    expectClosed();
}
