#include "veltrane/platform/process/module.h"

#include <stdexcept>
#include <utility>

#include "veltrane/platform/process/internal/loading.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

CDynLinkLibrary* g_Modules = nullptr;  // each one points to the next; the list needs neither constructor nor destructor

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

// Built when the library is loaded, destroyed when it is unloaded.
CDynLinkLibrary g_ThisLibrary = WhileLoading([] { return CDynLinkLibrary{L"veltrane_base"}; });

}  // namespace
