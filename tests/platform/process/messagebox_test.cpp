#include "veltrane/platform/process/messagebox.h"

#include <pty.h>

#include "support/childprocess.h"
#include "support/support.h"

TEST(MessageBox, WritesTheTextToItsStreamWhenNoHandlerIsSet) {
    const std::tuple<CString, unsigned, std::string, std::string> cases[] = {
        {L"a\r\n\tb\r\n", MB_ICONERROR, "", "a\n\tb\n"},
        {L"ä%s%n100%", MB_ICONINFORMATION, "\xC3\xA4%s%n100%\n", ""},
        {L"a\rb\n\r\r\n", MB_OK, "", "a\rb\n\r\n"},
        {L"", MB_OK, "", "\n"},
        {std::wstring_view{L"a\0b", 3}, MB_OK, "", "a\0b\n"s},
    };
    for (const auto& [text, style, output, errors] : cases) {
        const ChildResult child = RunChild([shown = text, kind = style] { return AfxMessageBox(shown, kind); });
        EXPECT_EQ(std::tuple(child.exitCode, child.output, child.errors), std::tuple(/*OK*/ 1, output, errors));
    }
}

TEST(MessageBox, ComesAfterWhatTheHostHasPrinted) {
    const ChildResult child = RunChild([] {
        // A new stream: the test framework has already printed to the old one.
        if (!std::freopen("/proc/self/fd/1", "w", stdout)) return 9;
        std::fputws(L"before ", stdout);
        return AfxMessageBox(L"box", MB_ICONINFORMATION);
    });
    EXPECT_EQ(child.output, "before box\n");
}

TEST(MessageBox, IgnoresOutputThatFails) {
    const ChildResult child = RunChild([] {
        int ends[2];
        if (pipe(ends) != 0) return 9;
        close(ends[0]);
        dup2(ends[1], STDERR_FILENO);
        AfxMessageBox(L"to a pipe that nobody reads", MB_ICONERROR);
        close(STDERR_FILENO);
        return AfxMessageBox(L"to nothing", MB_ICONERROR);
    });
    EXPECT_EQ(child.exitCode, 1);
}

TEST(MessageBox, WaitsForASlowReaderOfAnOutputThatDoesNotBlock) {
    const ChildResult child = RunChild([] {
        fcntl(STDOUT_FILENO, F_SETFL, O_WRONLY | O_NONBLOCK);
        return AfxMessageBox(CString(L'x', 1'000'000), MB_ICONINFORMATION);
    });
    EXPECT_EQ(child.output.size(), 1'000'001U);
}

TEST(MessageBox, WaitsForEnterWhereInputAndOutputAreATerminal) {
    for (const bool isOutput : {true, false}) {
        const ChildResult child = RunChild([&] {
            int keyboard = -1;
            int terminal = -1;
            if (openpty(&keyboard, &terminal, nullptr, nullptr, nullptr) != 0) return 9;
            if (write(keyboard, "x\ny\n", 4) != 4 || dup2(terminal, STDIN_FILENO) != STDIN_FILENO) return 9;
            if (isOutput) dup2(terminal, STDERR_FILENO);
            alarm(/*seconds*/ 5);
            AfxMessageBox(L"text", MB_ICONERROR);
            return std::getchar();
        });
        EXPECT_EQ(child.exitCode, isOutput ? 'y' : 'x') << "what is left of the input";
        EXPECT_EQ(child.errors, isOutput ? "" : "text\n");
    }
}

TEST(MessageBox, GivesTheHandlerEverythingAndReturnsItsResult) {
    std::tuple<CString, unsigned, unsigned> seen;
    EXPECT_FALSE(SetMessageBoxHandler([&, count = 41](const auto&... given) mutable {
        seen = {given...};
        return ++count;
    }));
    EXPECT_EQ(AfxMessageBox(L"x"), 42);
    EXPECT_EQ(AfxMessageBox(L"a\r\nb", 0x31, 7), 43) << "the handler keeps its state";
    EXPECT_EQ(seen, std::tuple(CString{L"a\r\nb"}, 0x31U, 7U));
    EXPECT_EQ(SetMessageBoxHandler({})(L"", 0, 0), 44) << "the handler that was set";
    EXPECT_FALSE(SetMessageBoxHandler([](const auto&...) -> int { throw std::logic_error("x"); }));
    EXPECT_THROW(AfxMessageBox(L"x"), std::logic_error);
    SetMessageBoxHandler({});
}

TEST(MessageBox, LetsAHandlerShowABoxAndReplaceItself) {
    std::vector<CString> shown;
    SetMessageBoxHandler([&shown, text = CString{L"inner"}](const CString& outer, unsigned, unsigned) {
        shown.push_back(outer);
        if (outer == text) return 2;
        const int result = AfxMessageBox(text);
        SetMessageBoxHandler({});
        shown.push_back(text);  // the handler that runs lives until it returns
        return result;
    });
    EXPECT_EQ(AfxMessageBox(L"outer"), 2);
    EXPECT_FALSE(SetMessageBoxHandler({}));
    EXPECT_EQ(shown, (std::vector<CString>{L"outer", L"inner", L"inner"}));
}
