#include "veltrane/platform/process/process.h"
#include "veltrane/platform/sources/environment.h"

#include <optional>

#include "support/childprocess.h"
#include "support/support.h"

namespace {

TEST(Process, TakesItsArgumentsAsTheSystemSplitThem) {
    const std::vector<std::string> given{
        "", "two words", "\"quoted\"\\", "", "\xC3\xA4\xF0\x9F\x98\x80\xFF\xC3", "line\nend", std::string(100'000, 'x'),
        ""};
    const ChildResult child = RunTestChild(given);
    std::string expected = "child\0"s;
    for (const std::string& argument : given) expected += argument + '\0';
    EXPECT_EQ(child.output, expected);
}

TEST(Process, TakesTheArgumentsThatAreSet) {
    const std::vector<CString> own = GetArguments();
    SetArguments({L"tool", L"", L"-x"});
    EXPECT_EQ(GetArguments(), (std::vector<CString>{L"tool", L"", L"-x"}));
    SetArguments({});
    EXPECT_TRUE(GetArguments().empty()) << "none set is not the same as never set";
    SetArguments(own);
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
        SCOPED_TRACE(ToUtf8(name));
        CString answer{L"untouched"};
        EXPECT_EQ(GetEnvironmentText(answer, name), value.has_value());
        EXPECT_EQ(answer, value.value_or(L"untouched"));
    }
}

TEST(Process, CountsMillisecondsUpwards) {
    const std::int32_t before = TickCount();
    const timespec pause{0, 30'000'000};
    nanosleep(&pause, nullptr);
    const auto passed = static_cast<std::uint32_t>(TickCount()) - static_cast<std::uint32_t>(before);
    EXPECT_GE(passed, 29U);
    EXPECT_LT(passed, 10'000U);
}

}  // namespace
