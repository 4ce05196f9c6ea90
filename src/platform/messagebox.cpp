#include "platform/messagebox.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

#include "platform/encoding.h"

namespace {

constexpr int ID_OK = 1;

// Never destroyed: a box shown while the process ends must still find it.
MessageBoxHandler& InstalledHandler() {
    static MessageBoxHandler& handler = *new MessageBoxHandler;
    return handler;
}

std::string ConsoleText(CString text) {
    text.Replace(L"\r\n", L"\n");
    std::string bytes = ToUtf8(text);
    if (!bytes.ends_with('\n')) bytes += '\n';
    return bytes;
}

// A program without a terminal must never wait.
void WaitForEnter(std::FILE* stream) {
    if (isatty(STDIN_FILENO) == 0 || isatty(fileno(stream)) == 0) return;
    for (int c = std::fgetc(stdin); c != '\n' && c != EOF;) c = std::fgetc(stdin);
}

int ShowOnConsole(const CString& text, unsigned style) {
    std::FILE* const stream = (style & MB_ICONINFORMATION) != 0 ? stdout : stderr;
    const std::string bytes = ConsoleText(text);
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
    std::fflush(stream);
    WaitForEnter(stream);
    return ID_OK;
}

}  // namespace

int AfxMessageBox(const CString& text, unsigned style, unsigned helpId) {
    const MessageBoxHandler handler = InstalledHandler();  // a copy: the handler may install another one
    return handler ? handler(text, style, helpId) : ShowOnConsole(text, style);
}

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler) {
    return std::exchange(InstalledHandler(), std::move(handler));
}
