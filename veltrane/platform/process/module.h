#pragma once

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// Whether a module of that name, in exact case, is registered.
[[nodiscard]] VELTRANE_API bool IsModuleRegistered(const CString& name);

}  // namespace veltrane

/// An extension module of a host, registered as long as the object lives. The library registers itself as
/// "veltrane_base" when it is loaded and unregisters when it is unloaded; a registration that fails ends the loading,
/// and the process, with a line on standard error and exit code 127.
/// @code
/// static CDynLinkLibrary module{L"reports"};  // in the module's own file
/// @endcode
class VELTRANE_API CDynLinkLibrary {
public:
    /// @throws std::logic_error when a module of that name is registered already
    explicit CDynLinkLibrary(const CString& name);
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;
    ~CDynLinkLibrary();

private:
    friend bool veltrane::IsModuleRegistered(const CString& name);

    CString m_Name;
    CDynLinkLibrary* m_Next = nullptr;
};
