#include "veltrane/foundation/xexception.h"

#include <utility>

#include "veltrane/foundation/xoci.h"
#include "veltrane/platform/process/messagebox.h"

using namespace veltrane;

namespace {

// With tabulators every 8 columns the continuation comes under the first location, after "location:\t".
constexpr wchar_t LOCATION_JOINT[] = L"\r\n               \t";
constexpr wchar_t REASON_JOINT[] = L"\r\nreason: \t";
constexpr wchar_t MESSAGE_JOINT[] = L"\r\n\t";

}  // namespace

XException::~XException() = default;

CString XException::GetLocationString(CString file, CString method, int line) {
    if (method.IsEmpty()) return {};
    return FormatText(L"<%s> in [%s], line [%d]", method, GetFileName(file), line);
}

CString XException::GetFileName(CString path) {
    return path.Mid(path.ReverseFind(L'\\') + 1);
}

CString XException::GetLocation() const {
    return m_Location.Text();
}

CString XException::GetMessage() const {
    return m_Message.Text();
}

void XException::SetTexts(CString file, CString method, int line, CString message) {
    m_Location = GetLocationString(file, method, line);
    m_Message = std::move(message);
    m_pSubject.reset();
}

void XException::SetError(int number, CString file, CString method, int line, CString message) {
    SetTexts(file, method, line, std::move(message));
    m_nNumber = number;
}

void XException::SetError(const XException& other) {
    const bool isWarning = m_bWarning;
    *this = XException{other};  // all or nothing
    m_bWarning = isWarning;
}

void XException::SetError(const XException* other) {
    SetError(*other);
}

void XException::SetError(const XOCI::XError& record) {
    const XOCI::XErrorEntry* entry = record.GetAt(0);
    if (!entry) return;
    SetError(record.GetNumber(), entry->file, entry->method, entry->line, entry->message);
    for (int i = 1; (entry = record.GetAt(i)) != nullptr; ++i) {
        AddError(entry->file, entry->method, entry->line, entry->message);
    }
}

void XException::SetWarning(CString file, CString method, int line, CString message) {
    SetTexts(file, method, line, std::move(message));
    m_bWarning = true;
}

void XException::AddError(CString file, CString method, int line, CString message) {
    if (m_nNumber == 0) return;
    SetLocation(file, method, line);
    AddReason(message);
}

void XException::AddReason(CString reason) {
    m_Message.PutInFront(reason, REASON_JOINT);
}

void XException::AddMessage(CString message) {
    m_Message.Append(message, MESSAGE_JOINT);
}

void XException::SetLocation(CString location) {
    m_Location.PutInFront(location, LOCATION_JOINT);
}

void XException::SetLocation(CString file, CString method, int line) {
    SetLocation(GetLocationString(file, method, line));
}

void XException::AddSubject(const ErrorSubject& subject) {
    ErrorSubject known = m_pSubject ? *m_pSubject : ErrorSubject{};
    if (known.option.IsEmpty()) known.option = subject.option;
    if (known.argument.IsEmpty()) known.argument = subject.argument;
    if (known.reference.IsEmpty()) known.reference = subject.reference;
    if (known.index == -1) known.index = subject.index;
    if (known.places.empty()) known.places = subject.places;
    m_pSubject = std::make_shared<const ErrorSubject>(std::move(known));
}

void XException::GetErrorText(CString& text) const {
    text.Format(L"An error occured:\r\nlocation:\t%s\r\nmessage:\t%s", m_Location.Text(), m_Message.Text());
    if (m_nNumber != -1) text += FormatText(L"\r\nnumber:\t%d", m_nNumber);
}

void XException::Show() const {
    CString text;
    GetErrorText(text);
    AfxMessageBox(text, MB_ICONERROR);
}

XFileException::XFileException(const CString& fileName) : m_FileName(fileName) {}

XFileException::~XFileException() = default;

CString XFileException::GetMessage(int cause) {
    return detail::CauseText(cause);
}

void XFileException::SetFileNotFoundError(CString file, CString method, int line, CString message) {
    SetError(-1, file, method, line, FormatText(L"File <%s> not found!", m_FileName));
    AddMessage(message);
}

void XFileException::SetPathNotFoundError(CString file, CString method, int line, CString message) {
    SetError(-1, file, method, line, FormatText(L"Folder <%s> does not exist!", m_FileName));
    AddMessage(message);
}

void XFileException::SetOpenError(CString file, CString method, int line, const CFileException& error) {
    const int cause = CFileException::OsErrorToException(error.m_lOsError);
    SetError(cause, file, method, line, FormatText(L"Cannot open file <%s>!", m_FileName));
    AddMessage(GetMessage(cause));
}
