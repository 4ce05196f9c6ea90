#include "veltrane/platform/process/process.h"

#include <clocale>
#include <ctime>

#include "support/arguments.h"
#include "support/childprocess.h"
#include "support/oci.h"
#include "support/support.h"
#include "veltrane/platform/process/localtime.h"
#include "veltrane/platform/process/module.h"
#include "veltrane/platform/sources/environment.h"

TEST(Process, TakesItsArgumentsAsTheSystemSplitThem) {
    const std::vector<std::string> given{
        "", "two words", "\"quoted\"\\", "", "\xC3\xA4\xF0\x9F\x98\x80\xFF\xC3", "line\nend", std::string(100'000, 'x'),
        ""};
    std::string expected = "child\0"s;
    for (const std::string& argument : given) expected += argument + '\0';
    EXPECT_EQ(RunTestChild(given).output, expected);
    const ArgumentsGuard others{{L"", L"-x"}};
    EXPECT_EQ(GetArguments(), (std::vector<CString>{L"veltrane", L"", L"-x"}));
    SetArguments({});
    EXPECT_TRUE(GetArguments().empty()) << "none set is not the same as never set";
}

TEST(Process, FindsVariablesInExactCase) {
    const EnvironmentGuard set{"veltrane_variable", "\xC3\xA4 = \xFF"};
    const EnvironmentGuard empty{"veltrane_empty", ""};
    const std::pair<CString, std::optional<CString>> cases[] = {
        {L"veltrane_variable", L"ä = \xDCFF"},
        {L"veltrane_empty", L""},
        {L"VELTRANE_VARIABLE", {}},
        {L"", {}},
        {L"veltrane_variable=\xE4 ", {}},
        {std::wstring_view{L"veltrane_variable\0", 18}, {}},
    };
    for (const auto& [name, value] : cases) {
        CString answer{L"untouched"};
        EXPECT_EQ(GetEnvironmentText(answer, name), value.has_value()) << ToUtf8(name);
        EXPECT_EQ(answer, value.value_or(L"untouched")) << ToUtf8(name);
    }
}

TEST(Process, CountsMillisecondsUpwards) {
    const std::int32_t before = TickCount();
    const timespec pause{0, 30'000'000};
    nanosleep(&pause, nullptr);
    const auto passed = static_cast<std::uint32_t>(TickCount()) - static_cast<std::uint32_t>(before);
    EXPECT_TRUE(passed >= 29 && passed < 10'000) << passed;
}

TEST(LocalTime, WritesTheTimeOfTheZone) {
    const std::tuple<const char*, std::int64_t, const wchar_t*> cases[] = {
        {"UTC0", 1794931875, L"Tuesday, November 17, 2026 ; 16:11:15"},
        {"UTC0", -1, L"Wednesday, December 31, 1969 ; 23:59:59"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", 1782000000, L"Sunday, June 21, 2026 ; 02:00:00"},
        {"UTC0", 253402300800, L"Saturday, January 01, 10000 ; 00:00:00"},
        {"EST5", -62135578801, L"Sunday, December 31, 0000 ; 23:59:59"},
        {"UTC0", INT64_MAX, L""},
    };
    std::setlocale(LC_ALL, "de_DE.UTF-8");  // even where the machine has it, the names are English
    for (const auto& [zone, seconds, text] : cases) {
        const EnvironmentGuard guard{"TZ", zone};
        EXPECT_EQ(LocalTimeText(L"%A, %B %d, %Y ; %H:%M:%S", seconds), text) << zone;
    }
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(LocalTimeText(L"100%%Y %n%s%a %", 86400), L"100%1970 %n%s%a %") << "other text stays";
    const std::time_t before = std::time(nullptr);
    const std::int64_t now = CurrentTime();
    EXPECT_TRUE(before <= now && now <= std::time(nullptr)) << now;
}

TEST(Module, IsRegisteredAsLongAsItsObjectLives) {
    EXPECT_THROW(CDynLinkLibrary{L"veltrane_base"}, std::logic_error) << "the library itself";
    std::optional<CDynLinkLibrary> first{L"first"};
    std::optional<CDynLinkLibrary> second{L"second"};
    const CDynLinkLibrary third{L"third"};
    EXPECT_FALSE(IsModuleRegistered(L"Third")) << "case counts";
    second.reset();  // from the middle of the list
    EXPECT_FALSE(IsModuleRegistered(L"second"));
    for (const wchar_t* name : {L"first", L"third"}) EXPECT_TRUE(IsModuleRegistered(name)) << ToUtf8(CString{name});
    first.reset();
    EXPECT_TRUE(IsModuleRegistered(L"veltrane_base")) << "a refused module takes nothing away";
    EXPECT_NO_THROW(CDynLinkLibrary{L"first"}) << "the name is free again";
}

TEST(OCI, AsksOnceForTheFirstRecordAndTakesWhatTheClientHasWritten) {
    const std::tuple<const char*, ClientAnswer, CString> cases[] = {
        {"failed, but with a text", {-1, 12541, "no listener"}, L"no listener"},
        {"UTF-8 and Windows-1252", {0, 1, "\xC3\xA4\xE2\x82\xAC\xE4\x80 \x9F\x81"}, L"ä\x20ACä\x20AC \x178\x81"},
        {"a full buffer without an end", {4711, -7, std::string(2000, 'x')}, CString(L'x', 1023)},
        {"nothing behind the NUL", {0, 1, {"a\0b", 3}}, L"a"},
    };
    for (const auto& [what, answer, text] : cases) {
        const ClientGuard client{answer};
        int handle = 0;
        const OCIErrorText error = ReadOCIError(&handle);
        EXPECT_EQ(client.Asked(), (std::vector<ClientQuestion>{{&handle, 1U, nullptr, 0, true, 1024U, 2U}}));
        EXPECT_EQ(std::tuple(error.available, error.number, error.text), std::tuple(true, answer.number, text)) << what;
    }
    const OCIErrorText none = ReadOCIError(nullptr);
    if (GetOCIErrorGet()) GTEST_SKIP() << "a client library is installed here";
    EXPECT_EQ(std::tuple(none.available, none.number, none.text), std::tuple(false, -1, CString{}));
}
