#pragma once

#include "veltrane/foundation/xexception.h"
#include "veltrane/platform/sources/sourceplace.h"
#include "veltrane/platform/sources/winreg.h"
#include "veltrane/platform/text/cstring.h"

/// Reads values below `SOFTWARE\VORNAK` in the machine's registry, whatever their type, as text. A missing key or value
/// is not an error.
/// @code
/// CString file;
/// if (XRegistry{L"tool"}.GetValue(file, L"ROOT", L"logfile")) ...
/// @endcode
class VELTRANE_API XRegistry {
public:
    /// @param subKey  key of the tool below the root; empty is the root itself
    explicit XRegistry(const CString& subKey = {});
    XRegistry(const XRegistry&) = delete;
    XRegistry& operator=(const XRegistry&) = delete;
    virtual ~XRegistry();  ///< does not close: whoever opens must close

    /// Path of a section's key below the machine's root; the tool's key for an empty section.
    CString KeyPath(const CString& section) const;

    /// Opens the key of a section, the tool's key for an empty one. A key that is open already is not closed first.
    /// @return false when it does not exist
    bool Open(const CString& section);
    void Close();  ///< does nothing when no key is open

    /// Opens a section's key, reads a value and closes the key. @return found; otherwise value is unchanged
    /// @param place  receives the place of the value when it was found; may be null
    bool GetValue(CString& value, const CString& section, const CString& name, veltrane::SourcePlace* place = nullptr);
    /// Reads a value of the open key; one without any data counts as missing. @return found; otherwise value is
    /// unchanged
    /// @throws XException  no key is open
    bool GetValue(CString& value, const CString& name);

private:
    CString m_RootPath;
    CString m_KeyPath;
    HKEY m_hKey = nullptr;
};
