#include "veltrane/platform/process/module.h"

#include <unistd.h>

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <utility>

using namespace veltrane;

namespace {

CDynLinkLibrary* g_Modules = nullptr;  // each one knows the next; the list needs no making and no end of its own

}  // namespace

CDynLinkLibrary::CDynLinkLibrary(const CString& name) : m_Name(name) {
    if (IsModuleRegistered(name)) throw std::logic_error("module is registered already");
    m_Next = std::exchange(g_Modules, this);
}

CDynLinkLibrary::~CDynLinkLibrary() {
    CDynLinkLibrary** link = &g_Modules;
    while (*link != this) link = &(*link)->m_Next;
    *link = m_Next;
}

bool veltrane::IsModuleRegistered(const CString& name) {
    for (const CDynLinkLibrary* module = g_Modules; module; module = module->m_Next) {
        if (module->m_Name == name) return true;
    }
    return false;
}

namespace {

// No exception can pass the loader, so a registration that fails ends the process as a missing library would.
[[noreturn]] void EndLoading(const char* reason) noexcept {
    constexpr int loadFailed = 127;
    std::fprintf(stderr, "veltrane_base: cannot be registered as an extension module: %s\n", reason);
    _exit(loadFailed);
}

CDynLinkLibrary RegisterThisLibrary() noexcept {
    try {
        return CDynLinkLibrary{L"veltrane_base"};
    } catch (const std::exception& error) {
        EndLoading(error.what());
    }
}

// Built when the library is loaded, destroyed when it is unloaded.
CDynLinkLibrary g_ThisLibrary = RegisterThisLibrary();

}  // namespace
