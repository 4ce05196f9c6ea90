#include "veltrane/platform/process/messagebox.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>

#include "support/childprocess.h"
#include "support/support.h"

namespace {

class MessageBox : public testing::Test {
protected:
    void TearDown() override { SetMessageBoxHandler({}); }
};

TEST_F(MessageBox, WritesTheTextToItsStreamWhenNoHandlerIsSet) {
    struct {
        CString text;
        unsigned style;
        std::string output;
        std::string errors;
    } const cases[] = {
        {L"a\r\n\tb\r\n", MB_ICONERROR, "", "a\n\tb\n"},
        {L"ä%s%n100%", MB_ICONINFORMATION, "\xC3\xA4%s%n100%\n", ""},
        {L"a\rb\n\r\r\n", MB_OK, "", "a\rb\n\r\n"},
        {L"", MB_OK, "", "\n"},
        {std::wstring_view{L"a\0b", 3}, MB_OK, "", {"a\0b\n", 4}},
    };
    for (const auto& [text, style, output, errors] : cases) {
        SCOPED_TRACE(errors);
        const ChildResult child = RunChild([text = text, style = style] { return AfxMessageBox(text, style); });
        EXPECT_EQ(child.exitCode, 1) << "the OK button";
        EXPECT_EQ(child.output, output);
        EXPECT_EQ(child.errors, errors);
    }
}

TEST_F(MessageBox, StandsBehindWhatTheHostHasPrinted) {
    for (const bool isWide : {false, true}) {
        const ChildResult child = RunChild([&] {
            // A stream of its own: the test frame has printed to the one before.
            if (!std::freopen("/proc/self/fd/1", "w", stdout)) return 1;
            isWide ? std::fputws(L"before ", stdout) : std::fputs("before ", stdout);
            AfxMessageBox(L"box", MB_ICONINFORMATION);
            return 0;
        });
        EXPECT_EQ(child.output, "before box\n");
    }
}

TEST_F(MessageBox, IgnoresOutputThatFails) {
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

TEST_F(MessageBox, WaitsForASlowReaderOfAnOutputThatDoesNotBlock) {
    const ChildResult child = RunChild([] {
        fcntl(STDOUT_FILENO, F_SETFL, O_WRONLY | O_NONBLOCK);
        return AfxMessageBox(CString(L'x', 1'000'000), MB_ICONINFORMATION);
    });
    EXPECT_EQ(child.output.size(), 1'000'001U);
}

std::string ReadUntil(int handle, const std::string& end) {
    std::string bytes;
    for (char byte; !bytes.ends_with(end) && read(handle, &byte, 1) == 1;) bytes += byte;
    return bytes;
}

TEST_F(MessageBox, WaitsForEnterOnATerminal) {
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

TEST_F(MessageBox, DoesNotWaitWhenOnlyItsInputIsATerminal) {
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

TEST_F(MessageBox, GivesTheHandlerEverythingAndReturnsItsResult) {
    BoxRecorder::Box seen{};
    EXPECT_FALSE(SetMessageBoxHandler([&, count = 41](const CString& text, unsigned style, unsigned helpId) mutable {
        seen = {text, style, helpId};
        return ++count;
    }));
    EXPECT_EQ(AfxMessageBox(L"x"), 42);
    EXPECT_EQ(AfxMessageBox(L"a\r\nb", 0x31, 7), 43) << "the handler keeps its state";
    EXPECT_EQ(seen.text, L"a\r\nb");
    EXPECT_EQ(seen.style, 0x31U);
    EXPECT_EQ(seen.helpId, 7U);

    const MessageBoxHandler before = SetMessageBoxHandler({});
    EXPECT_EQ(before(L"", 0, 0), 44) << "the handler that was set";
    EXPECT_FALSE(SetMessageBoxHandler([](const CString&, unsigned, unsigned) -> int { throw std::logic_error("x"); }));
    EXPECT_THROW(AfxMessageBox(L"x"), std::logic_error);
}

TEST_F(MessageBox, LetsAHandlerShowABoxAndReplaceItself) {
    std::vector<CString> shown;
    SetMessageBoxHandler([&shown, text = CString{L"inner"}](const CString& outer, unsigned, unsigned) {
        shown.push_back(outer);
        if (outer == text) return 2;
        const int result = AfxMessageBox(text);
        SetMessageBoxHandler([](const CString&, unsigned, unsigned) { return 3; });
        shown.push_back(text);  // the handler that runs lives until it returns
        return result;
    });
    EXPECT_EQ(AfxMessageBox(L"outer"), 2);
    EXPECT_EQ(AfxMessageBox(L"next"), 3);
    EXPECT_EQ(shown, (std::vector<CString>{L"outer", L"inner", L"inner"}));
}

}  // namespace
