#include "veltrane/foundation/xdebug.h"

#include <atomic>

#include "veltrane/platform/process/messagebox.h"

namespace {

std::atomic<bool> g_Debug = false;

}  // namespace

bool IsDebug() {
    return g_Debug;
}

void SetDebug(bool on) {
    g_Debug = on;
}

void PrintDebug(const CString& text) {
    if (g_Debug) AfxMessageBox(text, MB_ICONINFORMATION);
}
