#include "platform/process.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/trace.h"
#include "support/childprocess.h"
#include "support/environment.h"
#include "support/support.h"

namespace {

TEST(Process, TakesItsArgumentsAsTheSystemSplitThem) {
    const std::vector<std::string> given{"",
                                         "two words",
                                         "\"quoted\"",
                                         "back\\slash\\\"",
                                         "",
                                         "\xC3\xA4\xF0\x9F\x98\x80",
                                         "\xFF\xC3",
                                         "--x=%s",
                                         "line\nend",
                                         std::string(200'000 / 2, 'x'),
                                         ""};
    const ChildResult child = RunProgram("ProcessChild.DISABLED_WritesItsArguments", given);
    std::string expected;
    for (const std::string& argument : given) expected += argument + '\0';
    ASSERT_EQ(child.output.substr(0, 15), std::string("veltrane_tests\0", 15));
    ASSERT_GE(child.output.size(), expected.size());
    EXPECT_TRUE(child.output.ends_with('\0' + expected)) << "behind the arguments for the test frame";
}

TEST(ProcessChild, DISABLED_WritesItsArguments) {
    std::string bytes;
    for (const CString& argument : GetArguments()) bytes += ToUtf8(argument) + '\0';
    WriteChildOutput(bytes);
}

TEST(Process, TakesTheArgumentsThatAreSet) {
    const std::vector<CString> own = GetArguments();
    EXPECT_FALSE(own.empty());
    SetArguments({L"tool", L"", L"-x"});
    EXPECT_EQ(GetArguments(), (std::vector<CString>{L"tool", L"", L"-x"}));
    SetArguments({});
    EXPECT_TRUE(GetArguments().empty()) << "none set is not the same as never set";
    SetArguments(own);
}

TEST(Process, FindsVariablesInExactCase) {
    const EnvironmentGuard set{"veltrane_variable", "\xC3\xA4 = \xFF"};
    const EnvironmentGuard empty{"veltrane_empty", ""};
    const EnvironmentGuard unset{"veltrane_unset", std::nullopt};
    struct {
        const char* what;
        CString name;
        std::optional<CString> value;
    } const cases[] = {
        {"set", L"veltrane_variable", L"ä = \xDCFF"},
        {"set to nothing", L"veltrane_empty", L""},
        {"unset", L"veltrane_unset", std::nullopt},
        {"other case", L"VELTRANE_VARIABLE", std::nullopt},
        {"empty name", L"", std::nullopt},
        {"name and part of the value", L"veltrane_variable=\xE4 ", std::nullopt},
        {"NUL behind the name", std::wstring_view{L"veltrane_variable\0", 18}, std::nullopt},
    };
    for (const auto& [what, name, value] : cases) {
        SCOPED_TRACE(what);
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
