#include "config/xregistry.h"

#include <string>

#include "support/environment.h"
#include "support/support.h"

using namespace std::string_literals;

namespace {

class Registry : public testing::Test {
protected:
    Registry() {
        std::string bytes = "REGEDIT4\n";
        bytes += "[HKLM\\SOFTWARE\\VORNAK\\ROOT]\n\"logfile\"=\"machine.log\"\n";
        bytes += "[HKLM\\SOFTWARE\\VORNAK\\tool]\n\"data\"=\"D:\\\\data\"\n";
        bytes += "[HKLM\\SOFTWARE\\VORNAK\\tool\\ROOT]\n";
        bytes += "\"text\"=\"t\xFCr\"\n\"number\"=dword:2a\n\"expand\"=hex(2):25,61,25,00\n";
        bytes += "\"none\"=hex:\n\"zeros\"=hex:00,00\n\"odd\"=hex:61,00,62\n\"several\"=hex(7):61,00,62,00,00\n";
        bytes += "\"edge\"=\"" + std::string(63, 'e') + "\"\n\"long\"=\"" + std::string(64, 'l') + "\"\n";
        bytes += "\"very long\"=\"" + std::string(5000, 'v') + "\"\n";
        SetRegistryFile(m_Folder.Write("machine.reg", bytes));
    }
    ~Registry() override { SetRegistryFile({}); }

    TempFolder m_Folder;
};

TEST_F(Registry, ReadsValuesOfEveryTypeAsText) {
    struct {
        const wchar_t* name;
        std::wstring value;
    } const cases[] = {
        {L"text", L"t\xFCr"},
        {L"number", L"*"},
        {L"expand", L"%a%"},
        {L"zeros", L""},
        {L"odd", L"ab"},
        {L"several", L"a"},
        {L"edge", std::wstring(63, L'e')},
        {L"long", std::wstring(64, L'l')},
        {L"very long", std::wstring(5000, L'v')},
    };
    XRegistry registry{L"tool"};
    for (const auto& [name, value] : cases) {
        CString found = L"before";
        EXPECT_TRUE(registry.GetValue(found, L"ROOT", name)) << ToUtf8(CString{name});
        EXPECT_EQ(found, value.c_str());
    }
}

TEST_F(Registry, AddressesItsKeysBelowTheRoot) {
    CString value;
    EXPECT_TRUE(XRegistry{}.GetValue(value, L"ROOT", L"logfile"));
    EXPECT_EQ(value, L"machine.log");
    EXPECT_TRUE(XRegistry{L"TOOL"}.GetValue(value, L"", L"Data"));
    EXPECT_EQ(value, L"D:\\data");
}

TEST_F(Registry, LeavesTheValueOfWhatItDoesNotFind) {
    XRegistry registry{L"tool"};
    CString value = L"before";
    EXPECT_FALSE(registry.GetValue(value, L"ROOT", L"absent"));
    EXPECT_FALSE(registry.GetValue(value, L"ROOT", L"none"));
    EXPECT_FALSE(registry.GetValue(value, L"absent", L"text"));
    EXPECT_FALSE(XRegistry{L"other"}.GetValue(value, L"ROOT", L"text"));
    EXPECT_EQ(value, L"before");
}

TEST_F(Registry, ReadsFromTheKeyThatIsOpen) {
    XRegistry registry{L"tool"};
    CString value;
    const auto read = [&] { registry.GetValue(value, L"text"); };
    EXPECT_EQ(ErrorOf(read).GetMessage(), L"No opened registry key to get a value from!");
    EXPECT_EQ(ErrorOf(read).GetNumber(), -1);
    EXPECT_EQ(ErrorOf(read).GetLocation().Find(L"<XRegistry::GetValue> in [xregistry], line ["), 0);

    ASSERT_TRUE(registry.Open(L"ROOT"));
    EXPECT_TRUE(registry.GetValue(value, L"text"));
    EXPECT_EQ(value, L"t\xFCr");
    EXPECT_FALSE(registry.GetValue(value, L"absent"));
    registry.Close();
    registry.Close();
    ErrorOf(read);

    EXPECT_TRUE(registry.GetValue(value, L"ROOT", L"text"));
    ErrorOf(read);
}

}  // namespace
