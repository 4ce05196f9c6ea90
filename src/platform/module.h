#pragma once

/// Extension modules of a host. The library registers itself when it is loaded and unregisters when it is unloaded.
#include "platform/cstring.h"

/// A registered module; the registration lasts as long as the object.
class VELTRANE_API CDynLinkLibrary {
public:
    /// @throws std::logic_error when a module of that name is registered already
    explicit CDynLinkLibrary(const CString& name);
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;
    ~CDynLinkLibrary();

private:
    CString m_Name;
};

/// Whether a module of that name is registered.
VELTRANE_API bool IsModuleRegistered(const CString& name);
