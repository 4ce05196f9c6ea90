#include "veltrane/platform/process/messagebox.h"

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <utility>

#include "veltrane/platform/files/internal/foreigncode.h"
#include "veltrane/platform/files/internal/nativefile.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr int ID_OK = 1;

// Never destroyed: a box shown while the process ends must still find it. Shared with the call that runs, since a
// handler may install another one.
std::shared_ptr<MessageBoxHandler>& InstalledHandler() {
    static auto& handler = *new std::shared_ptr<MessageBoxHandler>;
    return handler;
}

std::string ConsoleText(CString text) {
    text.Replace(L"\r\n", L"\n");
    std::string bytes = ToUtf8(text);
    if (!bytes.ends_with('\n')) bytes += '\n';
    return bytes;
}

// A program without a terminal must never wait.
void WaitForEnter(int output) {
    if (isatty(STDIN_FILENO) == 0 || isatty(output) == 0) return;
    char typed = 0;
    while (typed != '\n' && Retried([&] { return read(STDIN_FILENO, &typed, 1); }) == 1) continue;
}

std::FILE* StreamOf(unsigned style) noexcept {
    return (style & MB_ICONINFORMATION) != 0 ? stdout : stderr;
}

int ShowOnConsole(const CString& text, unsigned style) {
    WriteToConsole(text, style);
    WaitForEnter(fileno(StreamOf(style)));
    return ID_OK;
}

}  // namespace

int AfxMessageBox(const CString& text, unsigned style, unsigned helpId) {
    const auto handler = InstalledHandler();
    const ForeignCode runs;  // a handler may read files, and whoever reads a box may change one
    return handler ? (*handler)(text, style, helpId) : ShowOnConsole(text, style);
}

void veltrane::WriteToConsole(const CString& text, unsigned style) {
    std::FILE* const stream = StreamOf(style);
    const std::string bytes = ConsoleText(text);
    const WriteSignalGuard guard;
    // Not through the stream: one that the host has used for wide characters would drop the text.
    std::fflush(stream);
    WriteAll(fileno(stream), bytes);
}

MessageBoxHandler veltrane::SetMessageBoxHandler(MessageBoxHandler handler) {
    auto next = handler ? std::make_shared<MessageBoxHandler>(std::move(handler)) : nullptr;
    const auto before = std::exchange(InstalledHandler(), std::move(next));
    return before ? *before : MessageBoxHandler{};
}
