#pragma once

#include <utility>

#include "veltrane/foundation/xexception.h"

namespace veltrane {

/// The place that raises or handles an error.
struct XSite {
    const wchar_t* file;
    const wchar_t* method;
    int line;
};

/// A source file by the name that error locations show; one constant a file, called with the method at each site.
/// @code
/// constexpr XSource Here{L".\\xoption"};
/// throw MakeError(Here(L"XOption::GetOptionDefinition"), L"The option <%s> is not known by the system!", name);
/// @endcode
struct XSource {
    const wchar_t* file;
    constexpr XSite operator()(const wchar_t* method, int line = __builtin_LINE()) const {
        return {file, method, line};
    }
};

/// The two texts of a handler: the reason that it adds to an error that passes, and the message of the new error that
/// replaces any other exception.
template <class... Args>
struct XFailure {
    XFormat<Args...> reason;
    XFormat<Args...> unknown;
};

/// An error without a number.
template <class... Args>
XException MakeError(const XSite& site, XFormatFor<Args...> format, const Args&... args) {
    XException error;
    error.SetError(-1, site.file, site.method, site.line, FormatText(format, args...));
    return error;
}

/// An error about a file that could not be opened, with the cause of the failed opening.
inline XFileException MakeOpenError(const XSite& site, const CString& file, const CFileException& failure) {
    XFileException error{file};
    error.SetOpenError(site.file, site.method, site.line, failure);
    return error;
}

/// An error about a missing file; the text says what it was wanted for.
template <class... Args>
XFileException MakeMissingFile(const XSite& site, const CString& file, XFormatFor<Args...> format,
                               const Args&... args) {
    XFileException error{file};
    error.SetFileNotFoundError(site.file, site.method, site.line, FormatText(format, args...));
    return error;
}

/// As MakeMissingFile, for a folder.
template <class... Args>
XFileException MakeMissingFolder(const XSite& site, const CString& folder, XFormatFor<Args...> format,
                                 const Args&... args) {
    XFileException error{folder};
    error.SetPathNotFoundError(site.file, site.method, site.line, FormatText(format, args...));
    return error;
}

/// An error with its subject.
template <class Error>
Error About(const ErrorSubject& subject, Error error) {
    error.AddSubject(subject);
    return error;
}

/// Puts a site and a reason in front of an error.
template <class... Args>
void AddReasonAt(XException& error, const XSite& site, XFormatFor<Args...> format, const Args&... args) {
    error.AddError(site.file, site.method, site.line, FormatText(format, args...));
}

/// Runs a body; an error that leaves it gets the reason in front, and any other exception becomes a new error. The
/// texts are composed only then.
template <class Body, class... Args>
decltype(auto) WithReason(const XSite& site, const XFailure<std::type_identity_t<Args>...>& failure, Body&& body,
                          const Args&... args) try {
    return std::forward<Body>(body)();
} catch (XException& error) {
    AddReasonAt(error, site, failure.reason, args...);
    throw;  // the same object: a copy would cut an XFileException down to its base
} catch (...) {
    throw MakeError(site, failure.unknown, args...);
}

}  // namespace veltrane
