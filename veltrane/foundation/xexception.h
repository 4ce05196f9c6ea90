#pragma once

#include <exception>
#include <memory>

#include "veltrane/foundation/xchain.h"
#include "veltrane/foundation/xsubject.h"
#include "veltrane/platform/files/cfile.h"
#include "veltrane/platform/text/cstring.h"

namespace XOCI {
class XError;
}

/// The one error object: a number, a chain of locations and a chain of reasons, both growing on the way up, newest
/// first. Throw by value, catch by reference, add to it with AddError and rethrow. what() says nothing useful;
/// GetErrorText gives the text. The cost of adding to a chain does not depend on its length.
/// @code
/// try {
///     store.OpenConfiguration();
/// } catch (XException& error) {
///     error.Show();
/// }
/// @endcode
class VELTRANE_API XException : public std::exception {
public:
    XException() = default;
    XException(const XException&) = default;
    XException(XException&&) noexcept = default;  ///< the source keeps number and mark, and loses its texts
    XException& operator=(const XException&) = default;
    XException& operator=(XException&&) noexcept = default;
    ~XException() override;

    [[nodiscard]] int GetNumber() const { return m_nNumber; }  ///< 0 no error recorded, -1 an error without a number
    [[nodiscard]] CString GetLocation() const;
    [[nodiscard]] CString GetMessage() const;
    void SetNumber(int number) { m_nNumber = number; }
    void IsWarning(bool warning) { m_bWarning = warning; }
    [[nodiscard]] bool IsWarning() const { return m_bWarning; }

    /// "<method> in [file], line [n]" with the file's path cut; empty without a method.
    [[nodiscard]] static CString GetLocationString(CString file, CString method, int line);
    /// The part of a path after its last backslash; '/' is not a separator here.
    [[nodiscard]] static CString GetFileName(CString path);

    /// Replaces number, location, message and subject; the warning mark stays.
    void SetError(int number, CString file, CString method, int line, CString message);
    void SetError(const XException& other);
    void SetError(const XException* other);  ///< must not be null
    /// The entries of a database error record, the last one in front; nothing for an empty record.
    void SetError(const XOCI::XError& record);

    /// Marks as warning and replaces location, message and subject; the number stays.
    void SetWarning(CString file, CString method, int line, CString message);
    /// Puts a location and a reason in front; ignored while the number is 0.
    void AddError(CString file, CString method, int line, CString message);
    void AddReason(CString reason);      ///< in front of the messages
    void AddMessage(CString message);    ///< after the messages
    void SetLocation(CString location);  ///< in front of the locations
    void SetLocation(CString file, CString method, int line);

    /// What the error is about; null when not told. Belongs to the error.
    [[nodiscard]] const veltrane::ErrorSubject* GetSubject() const noexcept { return m_pSubject.get(); }
    /// Tells what the error is about; what is known already stays.
    void AddSubject(const veltrane::ErrorSubject& subject);

    /// The whole error as text, lines ended by "\r\n", none at the end.
    void GetErrorText(CString& text) const;
    /// Shows the text in a modal error box.
    void Show() const;

private:
    /// Replaces location and message, and drops the subject, which belonged to them.
    void SetTexts(CString file, CString method, int line, CString message);

    int m_nNumber = 0;
    veltrane::detail::XChain m_Message;
    veltrane::detail::XChain m_Location;
    bool m_bWarning = false;
    std::shared_ptr<const veltrane::ErrorSubject> m_pSubject;  // never changed: copies of the error share it
};

/// An error that concerns one file or folder.
/// @code
/// XFileException error{file};
/// error.SetFileNotFoundError(L".\\xdictionary", L"XDictionary::Open", __LINE__, L"No dictionary!");
/// throw error;
/// @endcode
class VELTRANE_API XFileException : public XException {
public:
    explicit XFileException(const CString& fileName);
    XFileException(const XFileException&) = default;
    XFileException(XFileException&&) noexcept = default;
    XFileException& operator=(const XFileException&) = default;
    XFileException& operator=(XFileException&&) noexcept = default;
    ~XFileException() override;

    using XException::GetMessage;
    /// The fixed text of a file-open cause; "Unknown error!" for any other number.
    [[nodiscard]] static CString GetMessage(int cause);

    void SetFileNotFoundError(CString file, CString method, int line, CString message);
    void SetPathNotFoundError(CString file, CString method, int line, CString message);
    /// Number and text are those of the cause that belongs to the system error number in error.
    void SetOpenError(CString file, CString method, int line, const CFileException& error);

private:
    CString m_FileName;
};
