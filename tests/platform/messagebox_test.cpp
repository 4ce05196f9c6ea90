#include "platform/messagebox.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cwchar>
#include <stdexcept>

#include "support/childprocess.h"
#include "support/support.h"

namespace {

class HandlerGuard {
public:
    explicit HandlerGuard(MessageBoxHandler handler) : m_Before(SetMessageBoxHandler(std::move(handler))) {}
    HandlerGuard(const HandlerGuard&) = delete;
    HandlerGuard& operator=(const HandlerGuard&) = delete;
    ~HandlerGuard() { SetMessageBoxHandler(std::move(m_Before)); }

private:
    MessageBoxHandler m_Before;
};

ChildResult Shown(const CString& text, unsigned style) {
    return RunChild([&] { return AfxMessageBox(text, style); });
}

TEST(MessageBox, WritesTheTextToItsStreamWhenNoHandlerIsSet) {
    struct {
        const char* what;
        CString text;
        unsigned style;
        std::string output;
        std::string errors;
    } const cases[] = {
        {"plain", L"text", MB_OK, "", "text\n"},
        {"error", L"a\r\n\tb\r\n", MB_ICONERROR, "", "a\n\tb\n"},
        {"information", L"ä\x1F600", MB_ICONINFORMATION, "\xC3\xA4\xF0\x9F\x98\x80\n", ""},
        {"never a format", L"%s%n100%", MB_ICONINFORMATION, "%s%n100%\n", ""},
        {"other line ends stay", L"a\rb\n\r\r\n", MB_OK, "", "a\rb\n\r\n"},
        {"empty", L"", MB_OK, "", "\n"},
        {"NUL", std::wstring_view{L"a\0b", 3}, MB_OK, "", {"a\0b\n", 4}},
        {"bytes of a file name", CString(0xDCFF, 1), MB_OK, "", "\xFF\n"},
    };
    for (const auto& [what, text, style, output, errors] : cases) {
        SCOPED_TRACE(what);
        const ChildResult child = Shown(text, style);
        EXPECT_EQ(child.exitCode, 1) << "the OK button";
        EXPECT_EQ(child.output, output);
        EXPECT_EQ(child.errors, errors);
    }
}

TEST(MessageBox, StandsBehindWhatTheHostHasPrinted) {
    const ChildResult child = RunChild([] {
        std::fputs("before ", stdout);
        AfxMessageBox(L"box", MB_ICONINFORMATION);
        return 0;
    });
    EXPECT_EQ(child.output, "before box\n");
}

TEST(MessageBox, ReachesAStreamOfWideCharacters) {
    const ChildResult child = RunChild([] {
        std::fwide(stdout, 1);
        AfxMessageBox(L"box", MB_ICONINFORMATION);
        return 0;
    });
    EXPECT_EQ(child.output, "box\n");
}

TEST(MessageBox, IgnoresOutputThatFails) {
    const ChildResult child = RunChild([] {
        int ends[2];
        if (pipe(ends) != 0) return 9;
        close(ends[0]);
        dup2(ends[1], STDERR_FILENO);
        AfxMessageBox(L"to a pipe that nobody reads", MB_ICONERROR);
        dup2(open("/dev/full", O_WRONLY), STDERR_FILENO);
        AfxMessageBox(L"to a full disk", MB_ICONERROR);
        close(STDERR_FILENO);
        return AfxMessageBox(L"to nothing", MB_ICONERROR);
    });
    EXPECT_EQ(child.exitCode, 1);
}

std::string ReadUntil(int handle, const std::string& end) {
    std::string bytes;
    for (char byte; !bytes.ends_with(end) && read(handle, &byte, 1) == 1;) bytes += byte;
    return bytes;
}

TEST(MessageBox, WaitsForEnterOnATerminal) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    ASSERT_GE(child, 0);
    if (child == 0) {
        AfxMessageBox(L"press Enter", MB_ICONERROR);
        _exit(write(STDERR_FILENO, "gone\n", 5) == 5 ? 0 : 1);
    }
    EXPECT_EQ(ReadUntil(terminal, "\n"), "press Enter\r\n");
    pollfd more{terminal, POLLIN, 0};
    EXPECT_EQ(poll(&more, 1, /*milliseconds*/ 100), 0) << "the box is still open";
    EXPECT_EQ(write(terminal, "x\n", 2), 2);
    EXPECT_TRUE(ReadUntil(terminal, "gone\r\n").ends_with("gone\r\n"));
    close(terminal);
    waitpid(child, nullptr, 0);
}

TEST(MessageBox, DoesNotWaitWhenOnlyItsInputIsATerminal) {
    const ChildResult child = RunChild([] {
        int keyboard = -1;
        int terminal = -1;
        if (openpty(&keyboard, &terminal, nullptr, nullptr, nullptr) != 0) return 9;
        dup2(terminal, STDIN_FILENO);
        alarm(/*seconds*/ 5);
        return AfxMessageBox(L"text", MB_ICONERROR);
    });
    EXPECT_EQ(child.exitCode, 1);
    EXPECT_EQ(child.errors, "text\n");
}

TEST(MessageBox, GivesTheHandlerEverythingAndReturnsItsResult) {
    BoxRecorder::Box seen{};
    const HandlerGuard guard{[&](const CString& text, unsigned style, unsigned helpId) {
        seen = {text, style, helpId};
        return 42;
    }};
    EXPECT_EQ(AfxMessageBox(L"a\r\nb", 0x31, 7), 42);
    EXPECT_EQ(seen.text, L"a\r\nb");
    EXPECT_EQ(seen.style, 0x31U);
    EXPECT_EQ(seen.helpId, 7U);
}

TEST(MessageBox, PassesOnWhatTheHandlerThrows) {
    const HandlerGuard guard{[](const CString&, unsigned, unsigned) -> int { throw std::runtime_error("handler"); }};
    EXPECT_THROW(AfxMessageBox(L"x"), std::runtime_error);
}

TEST(MessageBox, KeepsTheStateOfItsHandler) {
    const HandlerGuard guard{[count = 0](const CString&, unsigned, unsigned) mutable { return ++count; }};
    EXPECT_EQ(AfxMessageBox(L"x"), 1);
    EXPECT_EQ(AfxMessageBox(L"x"), 2);
}

TEST(MessageBox, LetsAHandlerShowABoxAndReplaceItself) {
    std::vector<CString> shown;
    const HandlerGuard guard{[&shown, text = CString{L"inner"}](const CString& outer, unsigned, unsigned) {
        shown.push_back(outer);
        if (outer == text) return 2;
        const int result = AfxMessageBox(text);
        SetMessageBoxHandler([](const CString&, unsigned, unsigned) { return 3; });
        shown.push_back(text);  // the handler that runs lives until it returns
        return result;
    }};
    EXPECT_EQ(AfxMessageBox(L"outer"), 2);
    EXPECT_EQ(AfxMessageBox(L"next"), 3);
    EXPECT_EQ(shown, (std::vector<CString>{L"outer", L"inner", L"inner"}));
}

TEST(MessageBox, GivesBackTheHandlerBefore) {
    const HandlerGuard guard{{}};
    EXPECT_FALSE(SetMessageBoxHandler([](const CString&, unsigned, unsigned) { return 5; }));
    const MessageBoxHandler before = SetMessageBoxHandler({});
    ASSERT_TRUE(before);
    EXPECT_EQ(before(L"", 0, 0), 5);
    EXPECT_FALSE(SetMessageBoxHandler({}));
}

}  // namespace
