#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "veltrane/platform/text/cstring.h"

namespace XOCI {

/// One failed call of the database client.
struct XErrorEntry {
    CString file;
    CString method;
    int line = 0;
    CString message;
    int number = 0;     ///< client status, or the database's error code
    int oraNumber = 0;  ///< the number after "ORA-" in the database's text; 0 without one
};

/// What went wrong in the database client, call by call. Owns its entries.
/// @code
/// XOCI::XError record;
/// record.Add(status, L".\\xcursor", L"XCursor::Fetch", 88, L"Cannot fetch", errorHandle);
/// XException error;
/// error.SetError(record);
/// @endcode
class VELTRANE_API XError {
public:
    XError() = default;
    XError(const XError&) = delete;
    XError& operator=(const XError&) = delete;
    ~XError();

    /// Records one client status; success, and database error 1405 (a fetched column is null), leave no entry.
    /// @param message      what the caller was about to do; used for status -1 only
    /// @param errorHandle  the client's error handle. If it is null, there is no client library, or the client gives
    /// nothing, the entry is message with number -1; if the client fails with a text but no code, the entry is that
    /// text with number -1.
    void Add(std::int32_t status, const CString& file, const CString& method, int line, const CString& message,
             void* errorHandle);

    [[nodiscard]] int GetNumber() const { return m_nNumber; }  ///< number of the first entry; 0 without one
    [[nodiscard]] int GetCount() const { return m_nCount; }
    [[nodiscard]] const XErrorEntry* GetAt(int index) const;  ///< null outside; the record keeps it
    [[nodiscard]] XErrorEntry* GetAt(int index);

    /// The entries as text after a head, the last one first, lines ended by "\n".
    void GetErrorText(CString& text, const CString& head) const;
    [[nodiscard]] CString GetErrorText(const CString& head) const;

    void Clear();

private:
    int m_nNumber = 0;
    std::vector<std::unique_ptr<XErrorEntry>> m_Entries;
    int m_nCount = 0;
};

}  // namespace XOCI
