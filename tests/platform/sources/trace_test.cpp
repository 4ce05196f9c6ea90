#include "veltrane/platform/sources/trace.h"

#include "support/support.h"
#include "veltrane/platform/sources/environment.h"
#include "veltrane/platform/sources/profile.h"
#include "veltrane/platform/sources/winreg.h"

/// The environment stands for the sources where one is enough; it is the simplest one to ask.
class Trace : public testing::Test {
protected:
    void TearDown() override { SetSourceTrace({}); }

    static CString Ask(const CString& name) {
        CString value{L"none"};
        GetEnvironmentText(value, name);
        return value;
    }
    void Record() {
        SetSourceTrace([this](const SourceEvent& event) { m_Events.push_back(event); });
    }

    EnvironmentGuard m_Set{"veltrane_traced", "value"};
    EnvironmentGuard m_Empty{"veltrane_empty", ""};
    std::vector<SourceEvent> m_Events;
};

TEST_F(Trace, ReportsEachQuestionWithItsAnswer) {
    const TempFolder folder;
    const CString profile = folder.Write("a.ini", "; first\r\n[A]\r\n\rk='v'\r\n");
    SetRegistryFile(folder.Write("a.reg", "REGEDIT4\r\n[HKLM\\A]\r\n\"x\"=hex:01,\\\r\n  02\r\n\"v\"=\"ab\""));
    Record();
    for (const wchar_t* name : {L"veltrane_traced", L"veltrane_empty", L"a=b", L""}) Ask(name);
    wchar_t answer[9];
    for (const wchar_t* key : {L"K", L"absent", static_cast<const wchar_t*>(nullptr)}) {
        GetPrivateProfileStringW(L"a ", key, L"default", answer, 9, profile.GetString());
    }
    HKEY key = nullptr;
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"B", 0, KEY_READ, &key);
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"a", 0, KEY_READ, &key);
    unsigned char bytes[6];
    std::uint32_t size = sizeof bytes;
    for (const wchar_t* name : {L"V", L"absent"}) RegQueryValueExW(key, name, nullptr, nullptr, bytes, &size);
    RegCloseKey(key);
    EXPECT_TRUE(SetSourceTrace({})) << "the observer before";
    EXPECT_FALSE(SetSourceTrace({}));
    Ask(L"veltrane_traced");
    SetRegistryFile({});

    std::vector<std::string> events;
    for (const auto& [source, file, line, section, asked, value, found] : m_Events) {
        const CString name = file.Mid(folder.Wide().GetLength());
        events.push_back(
            ToUtf8(FormatText(L"%d%s:%d [%s] %s=%s %d", source, name, line, section, asked, value, found)));
    }
    const std::vector<std::string> expected{
        "2:0 [] veltrane_traced=value 1",
        "2:0 [] veltrane_empty= 1",
        "2:0 [] a=b= 0",
        "2:0 [] = 0",
        "0/a.ini:4 [a ] K=v 1",
        "0/a.ini:0 [a ] absent=default 0",
        "0/a.ini:0 [a ] =k\0 1"s,
        "1/a.reg:0 [B] = 0",
        "1/a.reg:5 [a] V=ab 1",
        "1/a.reg:0 [a] absent= 0",
    };
    EXPECT_EQ(events, expected);
}

TEST_F(Trace, GoesOnWhenTheObserverAsksAndThrows) {
    int calls = 0;
    SetSourceTrace([&](const SourceEvent&) {
        ++calls;
        EXPECT_EQ(Ask(L"veltrane_traced"), L"value") << "not reported";
        throw std::runtime_error("observer");
    });
    for (const int reported : {1, 2}) {
        EXPECT_EQ(Ask(L"veltrane_traced"), L"value");
        EXPECT_EQ(calls, reported);
    }
}

TEST_F(Trace, LetsAnObserverReplaceItself) {
    int calls = 0;
    SetSourceTrace([&, text = CString{L"a text too long to stand in the object itself"}](const SourceEvent&) {
        Record();
        Ask(L"veltrane_missing");
        calls += text.GetLength();  // the observer that runs lives until it returns
    });
    Ask(L"veltrane_traced");
    EXPECT_EQ(calls, 45);
    EXPECT_TRUE(m_Events.empty()) << "one observer a question";
    Ask(L"veltrane_traced");
    EXPECT_EQ(m_Events.size(), 1U);
}
